#include "cli/LiveFeed.h"

#include <cstdint>
#include <span>

#include "nmea/FixSentences.h"
#include "receivers/PtyLine.h"

namespace marlune::cli {
namespace {

constexpr int kNmeaBaud = 4800;

}  // namespace

LiveFeed::LiveFeed(const std::string& link)
    : line_(std::make_unique<receivers::PtyLine>(kNmeaBaud, link)) {}

LiveFeed::~LiveFeed() = default;

void LiveFeed::say(const FixRecord& fix) {
    line_->noteOpenings();
    const std::string text = sentences(fix);
    // Whole pairs only: a reader that is behind gets the next ones.
    if (!line_->hasUnread()) {
        (void)line_->write({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    }
}

std::string LiveFeed::sentences(const FixRecord& fix) {
    return ggaSentence(fix) + rmcSentence(fix);
}

}  // namespace marlune::cli
