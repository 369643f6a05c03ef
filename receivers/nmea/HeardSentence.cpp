#include "receivers/nmea/HeardSentence.h"

#include <algorithm>
#include <charconv>

#include "receivers/nmea/SentenceText.h"

namespace marlune::receivers::nmea {
namespace {

constexpr std::size_t kLongest = 512;

bool isChecksum(std::string_view digits, std::uint8_t expected) {
    std::uint8_t value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [stop, error] = std::from_chars(digits.data(), end, value, 16);
    return digits.size() == 2 && error == std::errc() && stop == end && value == expected;
}

}  // namespace

bool SentenceReader::take(std::uint8_t byte) {
    const auto character = static_cast<char>(byte);
    if (character == '$') {
        text_.assign(1, character);
        ended_ = false;
        return false;
    }
    if (ended_) {
        return false;
    }
    if (character == '\r' || character == '\n') {
        ended_ = true;
        return true;
    }
    text_ += character;
    ended_ = text_.size() > kLongest;
    return false;
}

HeardSentence::HeardSentence(std::string_view text) : text_(text) {
    const std::size_t star = text.rfind('*');
    body_ = text.substr(0, star);
    if (star != std::string_view::npos) {
        digits_ = text.substr(star + 1);
        intact_ = isChecksum(digits_, checksum(body_.substr(std::min<std::size_t>(1, star))));
    }
    std::string_view rest = body_;
    while (true) {
        const std::size_t comma = rest.find(',');
        fields_.push_back(rest.substr(0, comma));
        if (comma == std::string_view::npos) {
            return;
        }
        rest.remove_prefix(comma + 1);
    }
}

std::string_view HeardSentence::field(std::size_t number) const {
    return number < fields_.size() ? fields_[number] : std::string_view();
}

std::string_view HeardSentence::from(std::size_t number) const {
    if (number >= fields_.size()) {
        return {};
    }
    return body_.substr(static_cast<std::size_t>(fields_[number].data() - body_.data()));
}

}  // namespace marlune::receivers::nmea
