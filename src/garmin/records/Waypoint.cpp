#include "garmin/records/Waypoint.h"

#include <algorithm>
#include <utility>

#include "base/CodePage.h"
#include "garmin/values/ByteAccess.h"
#include "garmin/values/Chaine.h"
#include "garmin/values/DegreeMinuteText.h"
#include "garmin/values/LineFields.h"
#include "garmin/values/Nombre.h"
#include "garmin/values/NumberText.h"
#include "garmin/values/Semicircles.h"

namespace marlune {
namespace {

// The value that stands for "unknown" in altitude and depth fields.
constexpr float kUnknown = 1.0e25F;

// Room for all of a line but its texts, so that it is allocated once.
constexpr std::size_t kUsualNumbers = 64;

// Bytes of a record that are the same for every waypoint of a type.
struct Fill {
    int type;
    std::uint8_t first;
    std::uint8_t last;
    std::uint8_t value;
};

constexpr Fill kFills[] = {
    {108, 0, 0, 0},      // class: user waypoint
    {108, 1, 1, 0},      // colour
    {108, 3, 3, 96},     // attribute
    {108, 6, 11, 0},     // subclass
    {108, 12, 23, 255},  // subclass
    {109, 0, 0, 1},      // data packet type
    {109, 1, 1, 0},      // class
    {109, 3, 3, 112},    // attribute
    {109, 6, 11, 0},     // subclass
    {109, 12, 23, 255},  // subclass
    {109, 48, 51, 255},  // estimated time en route: unknown
    {110, 0, 0, 1},      {110, 1, 1, 0},      {110, 3, 3, 128},
    {110, 6, 11, 0},     {110, 12, 23, 255},  {110, 48, 51, 255},
    {110, 52, 52, 0x51},  // temperature: unknown, the single 1.0e25
    {110, 53, 53, 0x59}, {110, 54, 54, 0x04}, {110, 55, 55, 0x69},
    {110, 56, 59, 255},  // time: unknown
    {110, 60, 61, 0},    // category
    {150, 8, 8, 4},      // class: user waypoint
    {151, 123, 123, 4},  // class
    {151, 62, 117, 32},  // facility and city
    {151, 120, 122, 32}, {152, 123, 123, 4},  {152, 62, 117, 32},
    {152, 120, 122, 32}, {154, 123, 123, 4},  {154, 62, 117, 32},
    {154, 120, 122, 32}, {155, 123, 123, 4},  {155, 62, 117, 32},
    {155, 120, 122, 32},
};

// Colour and display share a byte in D109 and D110: the default colour and display 0, 1 or 2.
constexpr std::array<std::uint8_t, 3> kColouredDisplays = {31, 63, 95};

bool hasColouredDisplay(int type) {
    return type == 109 || type == 110;
}

bool hasSpreadDisplay(int type) {
    return type == 104 || type == 155;
}

bool hasMappedSymbol(int type) {
    return type == 103 || type == 107;
}

// The unit may announce D109 and send D110, or the reverse; the attribute byte tells.
std::string_view actualFormat(std::string_view format, Bytes data) {
    if (format == "D109" && byteAt(data, 3) == 128) {
        return "D110";
    }
    if (format == "D110" && byteAt(data, 3) == 112) {
        return "D109";
    }
    return format;
}

Bytes fieldOf(const DataType::Field& field, Bytes data) {
    return bytesAt(data, field.at(), field.size());
}

double degreesOf(const DataType::Field& field, Bytes data) {
    return degreesFromSemicircles(Nombre::BytestoLong(fieldOf(field, data)));
}

std::uint16_t unsignedOf(Bytes field) {
    return static_cast<std::uint16_t>(field[0] + 256 * field[1]);
}

// A comment of fixed length ends at a zero byte, or with a record that reaches as far as it begins:
// units send D150 ten bytes shorter than its layout here.
std::string fixedComment(const DataType::Field& field, Bytes data) {
    (void)bytesAt(data, field.at(), 0);
    return trimmedText(untilZero(data, field.at(), field.size()));
}

// Cut or padded with blanks to the field's length.
std::string toLength(std::string ansi, const DataType::Field& field) {
    ansi.resize(field.size(), ' ');
    return ansi;
}

void putFills(int type, std::span<std::uint8_t> record) {
    for (const Fill& fill : kFills) {
        if (fill.type == type) {
            const auto bytes = record.subspan(fill.first, std::size_t{fill.last} - fill.first + 1);
            std::fill(bytes.begin(), bytes.end(), fill.value);
        }
    }
}

}  // namespace

const DataType& Waypoint::typeOf(std::string_view format, std::span<const std::uint8_t> data) {
    return DataType::Lire(actualFormat(format, data));
}

void Waypoint::GetAttributes(std::string_view format, std::span<const std::uint8_t> data) {
    const DataType& type = typeOf(format, data);
    latitude = degreesOf(type.latitude, data);
    longitude = degreesOf(type.longitude, data);
    readTexts(type, data);
    readSymbol(type, data);
    readDisplay(type, data);
    readAltitude(type, data);
}

void Waypoint::readTexts(const DataType& type, std::span<const std::uint8_t> data) {
    constexpr std::size_t kLongestIdent = 51;
    constexpr std::size_t kLongestIdentAlone = 40;
    constexpr std::size_t kLongestComment = 52;
    comment.clear();
    if (!type.ident.isOpen()) {
        // Zero bytes inside the field belong to the ident.
        ident = trimmedText(fieldOf(type.ident, data));
        comment = fixedComment(type.comment, data);
    } else if (!type.comment.exists()) {
        ident = trimmedText(untilZero(data, type.ident.at(), kLongestIdentAlone));
    } else {
        const Bytes name = untilZero(data, type.ident.at(), kLongestIdent);
        ident = trimmedText(name);
        const bool ended = name.size() < kLongestIdent;
        const std::size_t behind = type.ident.at() + name.size() + (ended ? 1 : 0);
        comment = trimmedText(untilZero(data, behind, kLongestComment));
    }
}

void Waypoint::readSymbol(const DataType& type, std::span<const std::uint8_t> data) {
    symbol = kSymbolMap[0];
    if (!type.symbol.exists()) {
        return;
    }
    const Bytes field = fieldOf(type.symbol, data);
    if (field.size() == 2) {
        symbol = Nombre::BytestoInt(field);
    } else if (!hasMappedSymbol(type.number)) {
        symbol = field[0];  // D101 carries a full number in its one byte
    } else if (field[0] < kSymbolMap.size()) {
        symbol = kSymbolMap[field[0]];
    } else {
        throw RunTimeError(RunTimeError::index);
    }
}

void Waypoint::readDisplay(const DataType& type, std::span<const std::uint8_t> data) {
    display = 0;
    if (!type.display.exists()) {
        return;
    }
    display = byteAt(data, type.display.at());
    if (hasColouredDisplay(type.number)) {
        display &= 0x60;  // kept where it lies in the byte: 0, 32, 64 or 96
    } else if (hasSpreadDisplay(type.number)) {
        switch (display) {
            case 0:
                display = 1;
                break;
            case 3:
                display = 0;
                break;
            case 5:
                display = 2;
                break;
            default:
                break;
        }
    }
}

void Waypoint::readAltitude(const DataType& type, std::span<const std::uint8_t> data) {
    if (!type.altitude.exists()) {
        return;
    }
    const Bytes field = fieldOf(type.altitude, data);
    if (field.size() == 4) {
        const auto metres = static_cast<float>(Nombre::BytestoSingle(field));
        altitude = metres == kUnknown ? 0.0F : metres;
    } else {
        // Unsigned: what lies below the sea comes out as 65536 minus its depth.
        altitude = unsignedOf(field);
    }
}

std::vector<std::uint8_t> Waypoint::Coder(std::string_view format) const {
    const DataType& type = DataType::Lire(format);
    Record record(type.total);
    putTexts(type, record);
    putBytes(record, type.latitude.at(), Nombre::LongToBytes(semicirclesFromDegrees(latitude)));
    putBytes(record, type.longitude.at(), Nombre::LongToBytes(semicirclesFromDegrees(longitude)));
    if (type.altitude.exists()) {
        // Four bytes even where the field has two; the fixed bytes may overwrite the rest.
        putBytes(record, type.altitude.at(), Nombre::FloattoBytes(altitude));
    }
    putSymbol(type, record);
    putDisplay(type, record);
    putFills(type.number, record);
    return record;
}

void Waypoint::putTexts(const DataType& type, Record& record) const {
    const std::string name = toAnsi(ident);
    const std::string remark = toAnsi(trimBlanks(comment));
    if (type.ident.isOpen()) {
        const std::string_view trimmed = trimBlanks(name);
        putText(record, type.ident.at(), trimmed);
        putByte(record, type.ident.at() + trimmed.size(), 0);
        if (type.comment.exists()) {
            putText(record, type.ident.at() + trimmed.size() + 1, remark);
        }
        return;
    }
    putText(record, type.ident.at(), toLength(name, type.ident));
    std::string field = toLength(remark + '^', type.comment);
    std::replace(field.begin(), field.end(), '^', '\0');
    putText(record, type.comment.at(), field);
}

void Waypoint::putSymbol(const DataType& type, Record& record) const {
    if (!type.symbol.exists()) {
        return;
    }
    if (hasMappedSymbol(type.number)) {
        // One behind the map's last entry when the symbol is not in it.
        const auto* const found = std::find(kSymbolMap.begin(), kSymbolMap.end(), symbol);
        putByte(record, type.symbol.at(), static_cast<std::uint8_t>(found - kSymbolMap.begin()));
    } else if (type.symbol.length == 1) {
        putByte(record, type.symbol.at(), static_cast<std::uint8_t>(symbol & 0xFF));
    } else {
        putBytes(record, type.symbol.at(), Nombre::InttoBytes(symbol));
    }
}

void Waypoint::putDisplay(const DataType& type, Record& record) const {
    if (!type.display.exists()) {
        return;
    }
    std::uint8_t byte = display;
    if (hasSpreadDisplay(type.number)) {
        constexpr std::array<std::uint8_t, 3> kSpread = {3, 1, 5};
        byte = display < kSpread.size() ? kSpread[display] : std::uint8_t{0};
    } else if (hasColouredDisplay(type.number) && display < kColouredDisplays.size()) {
        byte = kColouredDisplays[display];
    }
    putByte(record, type.display.at(), byte);
}

std::string Waypoint::getIdent(char decimalSeparator) const {
    const std::string_view remark = trimBlanks(comment);
    std::string line;
    line.reserve(ident.size() + remark.size() + kUsualNumbers);
    line += "W;";
    line += ident;
    line += ';';
    appendRounded(line, latitude, 6, decimalSeparator);
    line += ';';
    appendRounded(line, longitude, 6, decimalSeparator);
    line += ';';
    line += remark;
    line += ';';
    appendRounded(line, altitude, 0, decimalSeparator);
    line += ';';
    appendRounded(line, symbol, 0, decimalSeparator);
    line += ';';
    appendRounded(line, display, 0, decimalSeparator);
    return line;
}

std::string Waypoint::latitudeText(char decimalSeparator) const {
    return degreeMinuteText(latitude, decimalSeparator);
}

std::string Waypoint::longitudeText(char decimalSeparator) const {
    return degreeMinuteText(longitude, decimalSeparator);
}

void Waypoint::SetAttributes(std::string_view format, std::string_view line) {
    const auto fields = lineFields<8>(line);
    ident = trimBlanks(fields[1]);
    if (format != "D108") {
        ident = Chaine::Remplace(ident, "-");
    }
    latitude = readNumber(fields[2]);
    longitude = readNumber(fields[3]);
    comment = trimBlanks(fields[4]);
    altitude = toSingle(readNumber(fields[5]));
    symbol = roundTo<std::int16_t>(readNumber(fields[6]));
    display = roundTo<std::uint8_t>(readNumber(fields[7]));
}

std::string Waypoint::getPosition(char decimalSeparator) const {
    return ident + "Latitude: " + numberText(roundHalfEven(latitude, 6), decimalSeparator) +
           " - Longitude: " + numberText(roundHalfEven(longitude, 6), decimalSeparator);
}

void Waypoint::SetPosition(double newLatitude, double newLongitude) {
    latitude = newLatitude;
    longitude = newLongitude;
}

}  // namespace marlune
