#include "garmin/records/TrkHeader.h"

#include "base/CodePage.h"
#include "garmin/values/ByteAccess.h"
#include "garmin/values/LineFields.h"
#include "garmin/values/Nombre.h"

namespace marlune {
namespace {

constexpr std::size_t kDisplayAt = 0;
constexpr std::size_t kColourAt = 1;
constexpr std::size_t kIndexAt = 0;
constexpr std::size_t kNameAt = 2;

bool hasColour(std::string_view format) {
    return format == "D310" || format == "D312";
}

}  // namespace

void TrkHeader::GetAttributes(std::string_view format, std::span<const std::uint8_t> data) {
    if (format == "D311") {
        return;
    }
    if (hasColour(format)) {
        display = byteAt(data, kDisplayAt) != 0;
        colour = byteAt(data, kColourAt);
    }
    name = trimmedText(untilZero(data, kNameAt, data.size()));
}

std::vector<std::uint8_t> TrkHeader::Coder(std::string_view format) const {
    const std::vector<std::uint8_t> text = toAnsiBytes(trimBlanks(name));
    // Two zero bytes follow the name.
    std::vector<std::uint8_t> record(text.size() + 4);
    if (hasColour(format)) {
        putByte(record, kDisplayAt, display ? 255 : 0);
        putByte(record, kColourAt, colour);
    } else if (format == "D311") {
        putBytes(record, kIndexAt, Nombre::InttoBytes(index));
    }
    putBytes(record, kNameAt, text);
    return record;
}

std::string TrkHeader::getIdent() const {
    return "N;" + name;
}

void TrkHeader::SetAttributes(std::string_view /*format*/, std::string_view text,
                              std::int16_t newIndex) {
    name = text.find(';') == std::string_view::npos ? trimBlanks(text) : lineFields<2>(text)[1];
    index = newIndex;
}

}  // namespace marlune
