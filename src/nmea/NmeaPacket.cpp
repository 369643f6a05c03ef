#include "nmea/NmeaPacket.h"

#include <cstddef>
#include <cstdint>
#include <utility>

namespace marlune {

std::string NmeaPacket::Signer() const {
    std::uint8_t sum = 0;
    for (std::size_t i = 1; i + 1 < text_.size(); ++i) {
        sum ^= static_cast<std::uint8_t>(text_[i]);
    }
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    return {kDigits[sum >> 4U], kDigits[sum & 15U]};
}

std::string NmeaPacket::AckMgn(std::string_view checksum) {
    text_ = "$PMGNCSM," + std::string(checksum) + '*';
    return text_ + Signer() + "\r\n";
}

std::string signedSentence(std::string text) {
    NmeaPacket packet;
    packet.SetAttributes(text);
    text += packet.Signer();
    text += "\r\n";
    return text;
}

}  // namespace marlune
