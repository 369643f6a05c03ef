#include "receivers/BuiltIn.h"

#include "receivers/PtyRunner.h"

namespace marlune::receivers {
namespace {

ReceiverOptions optionsFor(const std::string& unit) {
    ReceiverOptions options;
    options.unit = unit;
    return options;
}

}  // namespace

BuiltIn::BuiltIn(std::string_view family, const std::string& unit)
    : BuiltIn(family, optionsFor(unit), false) {}

BuiltIn::BuiltIn(std::string_view family, const ReceiverOptions& options, bool paced)
    : runner_(std::make_unique<PtyRunner>(receiverFamily(family).make(options),
                                          PtyRunner::Options{paced, ""})) {
    runner_->start();
}

BuiltIn::~BuiltIn() = default;

const std::string& BuiltIn::path() const {
    return runner_->path();
}

std::vector<std::string> BuiltIn::lines() const {
    return runner_->lines();
}

std::vector<std::string> BuiltIn::complaints() const {
    return runner_->complaints();
}

}  // namespace marlune::receivers
