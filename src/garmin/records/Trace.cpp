#include "garmin/records/Trace.h"

#include <algorithm>
#include <iterator>

#include "garmin/values/ByteAccess.h"
#include "garmin/values/DegreeMinuteText.h"
#include "garmin/values/LineFields.h"
#include "garmin/values/Nombre.h"
#include "garmin/values/NumberText.h"
#include "garmin/values/Semicircles.h"
#include "garmin/values/jour.h"

namespace marlune {
namespace {

constexpr float kNoAltitude = 1.0e25F;

// Latitude, longitude and time lie at 0, 4 and 8 in every type, the altitude at 12.
constexpr std::size_t kLatitudeAt = 0;
constexpr std::size_t kLongitudeAt = 4;
constexpr std::size_t kTimeAt = 8;
constexpr std::size_t kAltitudeAt = 12;

// Room for a line of long numbers, so that it is allocated once.
constexpr std::size_t kUsualLine = 64;

struct Layout {
    std::string_view format;
    bool hasAltitude;
    std::size_t firstAt;  // the new-segment byte, 0 where there is none
    std::size_t length;   // of the encoded record, 0 where the type is only read
};

constexpr Layout kLayouts[] = {
    {"D300", false, 12, 13}, {"D301", true, 20, 21}, {"D302", true, 24, 25},
    {"D303", true, 0, 0},    {"D304", true, 0, 0},
};

Layout layoutOf(std::string_view format) {
    const auto* const found =
        std::find_if(std::begin(kLayouts), std::end(kLayouts),
                     [format](const Layout& layout) { return layout.format == format; });
    return found == std::end(kLayouts) ? Layout{format, false, 0, 0} : *found;
}

std::int32_t longAt(Bytes data, std::size_t offset) {
    return Nombre::BytestoLong(bytesAt(data, offset, 4));
}

}  // namespace

bool Trace::GetAttributes(std::string_view format, std::span<const std::uint8_t> data) {
    latitude = degreesFromSemicircles(longAt(data, kLatitudeAt));
    longitude = degreesFromSemicircles(longAt(data, kLongitudeAt));
    if (roundHalfEven(latitude, 0) == 180 && roundHalfEven(longitude, 0) == 180) {
        return false;
    }
    const std::int32_t seconds = longAt(data, kTimeAt);
    pTime = seconds > 0 ? jour::GarminTimeToDate(seconds) : 0;
    const Layout layout = layoutOf(format);
    if (layout.hasAltitude) {
        const auto metres =
            static_cast<float>(Nombre::BytestoSingle(bytesAt(data, kAltitudeAt, 4)));
        altitude = metres == kNoAltitude ? 0.0F : metres;
    }
    if (layout.firstAt != 0) {
        pFirst = byteAt(data, layout.firstAt) != 0;
    }
    return true;
}

std::vector<std::uint8_t> Trace::Coder(std::string_view format) const {
    const Layout layout = layoutOf(format);
    std::vector<std::uint8_t> record(layout.length);
    putBytes(record, kLatitudeAt, Nombre::LongToBytes(semicirclesFromDegrees(latitude)));
    putBytes(record, kLongitudeAt, Nombre::LongToBytes(semicirclesFromDegrees(longitude)));
    putBytes(record, kTimeAt, Nombre::LongToBytes(jour::DateToGarminTime(pTime)));
    if (layout.hasAltitude) {
        putBytes(record, kAltitudeAt, Nombre::FloattoBytes(altitude));
    }
    // True is all bits set, not 1: units look for "not 0", and have always been sent it so.
    putByte(record, layout.firstAt, pFirst ? 255 : 0);
    return record;
}

std::string Trace::getIdent(char decimalSeparator) const {
    std::string line;
    line.reserve(kUsualLine);
    line += "T;";
    appendRounded(line, latitude, 6, decimalSeparator);
    line += ';';
    appendRounded(line, longitude, 6, decimalSeparator);
    line += ';';
    appendNumber(line, pTime, decimalSeparator);
    line += ';';
    appendRounded(line, altitude, 0, decimalSeparator);
    line += pFirst ? ";-1" : ";0";
    return line;
}

std::string Trace::latitudeText(char decimalSeparator) const {
    return degreeMinuteText(latitude, decimalSeparator);
}

std::string Trace::longitudeText(char decimalSeparator) const {
    return degreeMinuteText(longitude, decimalSeparator);
}

void Trace::SetAttributes(std::string_view /*format*/, std::string_view line) {
    const auto fields = lineFields<6>(line);
    latitude = readNumber(fields[1]);
    longitude = readNumber(fields[2]);
    pTime = readNumber(fields[3]);
    altitude = toSingle(readNumber(fields[4]));
    pFirst = readNumber(fields[5]) != 0;
}

}  // namespace marlune
