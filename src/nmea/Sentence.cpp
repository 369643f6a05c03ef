#include "nmea/Sentence.h"

#include <algorithm>
#include <cstdint>

#include "garmin/values/LineFields.h"
#include "nmea/NmeaPacket.h"

namespace marlune {
namespace {

char capital(char c) {
    const auto code = static_cast<std::uint8_t>(c);
    const bool accented = code >= 0xE0 && code <= 0xFE && code != 0xF7;
    if ((c >= 'a' && c <= 'z') || accented) {
        return static_cast<char>(code - 0x20);
    }
    if (code == 0x9A || code == 0x9C || code == 0x9E) {  // š œ ž
        return static_cast<char>(code - 0x10);
    }
    return code == 0xFF ? '\x9F' : c;  // ÿ
}

}  // namespace

Sentence::Sentence(std::string_view wireText) : text_(wireText) {
    const std::size_t star = std::min(wireText.find('*'), wireText.size());
    fields_ = splitText(wireText.substr(0, star), ',');
    if (star < wireText.size()) {
        text_ = wireText.substr(0, star + 1);
        received_ = wireText.substr(star + 1);
    }
}

std::string_view Sentence::field(std::size_t number) const {
    return number < fields_.size() ? fields_[number] : std::string_view{};
}

std::string Sentence::computedChecksum() const {
    NmeaPacket packet;
    packet.SetAttributes(text_);
    return packet.Signer();
}

std::string upperCase(std::string_view wireText) {
    std::string capitals(wireText);
    std::transform(capitals.begin(), capitals.end(), capitals.begin(), capital);
    return capitals;
}

}  // namespace marlune
