#include "receivers/garmin/PlaceRecords.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <limits>
#include <optional>
#include <stdexcept>

#include "receivers/garmin/Position.h"

namespace marlune::receivers::garmin {
namespace {

constexpr int kDot = 18;
constexpr std::size_t kIdent = 6;
constexpr std::size_t kComment = 40;
constexpr std::size_t kLongIdent = 50;
constexpr std::size_t kLongComment = 50;
constexpr int kUserClass = 4;

// The full numbers of the sixteen symbols of D103 and D107, by their byte: dot, house, fuel, car,
// fish, boat, anchor, wreck, exit, skull, flag, camp, crossed circle, deer, first aid, back track.
constexpr std::array<int, 16> kSixteen = {18,  10, 8,   170, 7,   150, 0,   19,
                                          177, 14, 178, 151, 179, 171, 156, 8196};

int sixteenthOf(int symbol) {
    const auto* const found = std::find(kSixteen.begin(), kSixteen.end(), symbol);
    return found == kSixteen.end() ? 0 : static_cast<int>(found - kSixteen.begin());
}

int symbolOfSixteen(int byte) {
    return static_cast<std::size_t>(byte) < kSixteen.size()
               ? kSixteen.at(static_cast<std::size_t>(byte))
               : kDot;
}

// D104 and D155 number their display options 1 symbol only, 3 with name, 5 with comment.
int oddDisplay(int display) {
    switch (display) {
        case 1:
            return 1;
        case 2:
            return 5;
        default:
            return 3;
    }
}

int displayOfOdd(int byte) {
    switch (byte) {
        case 3:
            return 0;
        case 5:
            return 2;
        default:
            return 1;
    }
}

float altitudeNumber(const Place& place) {
    return place.altitude ? static_cast<float>(*place.altitude) : kUnknown;
}

std::optional<double> altitudeOf(float number) {
    // Beyond every height is the mark for "unknown", and what no unit means.
    if (!(std::abs(number) < 1.0e24F)) {
        return std::nullopt;
    }
    return number;
}

constexpr std::int16_t kUnknownMetres = 0x7FFF;

std::int16_t metresNumber(const Place& place) {
    if (!place.altitude) {
        return kUnknownMetres;
    }
    return static_cast<std::int16_t>(std::clamp(std::round(*place.altitude), -32768.0, 32766.0));
}

void readMetres(ByteReader& record, Place& place) {
    const auto metres = record.number<std::int16_t>();
    if (metres != kUnknownMetres) {
        place.altitude = metres;
    }
}

bool isModern(const std::string& type) {
    return type == "D108" || type == "D109" || type == "D110";
}

bool isAviation(const std::string& type) {
    return type >= "D151" && type <= "D155";
}

// ident 6, position, 4 unused, comment 40: how D100 to D104, D107 and D151 to D155 begin.
void writeCore(ByteWriter& record, const Place& place) {
    record.text(place.ident, kIdent);
    writePosition(record, place.latitude, place.longitude);
    record.fill(0, 4).text(place.comment, kComment);
}

void readCore(ByteReader& record, Place& place) {
    place.ident = record.text(kIdent);
    readPosition(record, place);
    record.skip(4);
    place.comment = record.text(kComment);
}

// D100 to D104 and D107 after their common beginning.
void writeClassic(ByteWriter& record, const std::string& type, const Place& place, float distance) {
    writeCore(record, place);
    if (type == "D101") {
        record.number(distance).u8(place.symbol < 256 ? place.symbol : kDot);
    } else if (type == "D102") {
        record.number(distance).u16(place.symbol);
    } else if (type == "D103") {
        record.u8(sixteenthOf(place.symbol)).u8(place.display);
    } else if (type == "D104") {
        record.number(distance).u16(place.symbol).u8(oddDisplay(place.display));
    } else if (type == "D107") {
        record.u8(sixteenthOf(place.symbol)).u8(place.display).number(distance).u8(0);
    }
}

double readClassic(ByteReader& record, const std::string& type, Place& place) {
    readCore(record, place);
    double distance = 0;
    if (type == "D101" || type == "D102" || type == "D104") {
        distance = record.single();
        place.symbol = type == "D101" ? record.u8() : record.u16();
        place.display = type == "D104" ? displayOfOdd(record.u8()) : 0;
    } else if (type == "D103" || type == "D107") {
        place.symbol = symbolOfSixteen(record.u8());
        place.display = record.u8();
        distance = type == "D107" ? record.single() : 0;
    }
    return distance;
}

// position, symbol, ident; D106 has its class in front and a link's ident behind.
void writeRoad(ByteWriter& record, const std::string& type, const Place& place) {
    if (type == "D106") {
        record.fill(0, 14);
    }
    writePosition(record, place.latitude, place.longitude);
    record.u16(place.symbol).zeroText(place.ident, kLongIdent);
    if (type == "D106") {
        record.zeroText("", 0);
    }
}

void readRoad(ByteReader& record, const std::string& type, Place& place) {
    record.skip(type == "D106" ? 14 : 0);
    readPosition(record, place);
    place.symbol = record.u16();
    place.ident = record.zeroText();
}

// D108 to D110. The later two begin with a data type and hold colour and display in one byte; every
// type ends in ident, comment and four texts that stay empty here.
void writeModern(ByteWriter& record, const std::string& type, const Place& place, float distance) {
    if (type == "D108") {
        record.u8(0).u8(255).u8(place.display).u8(0x60);
    } else {
        record.u8(1).u8(0).u8(place.display * 32 + 31).u8(type == "D109" ? 0x70 : 0x80);
    }
    record.u16(place.symbol).fill(0, 6).fill(255, 12);
    writePosition(record, place.latitude, place.longitude);
    record.number(altitudeNumber(place)).number(kUnknown).number(distance).text("", 2).text("", 2);
    if (type != "D108") {
        record.fill(255, 4);  // time to go: unknown
    }
    if (type == "D110") {
        record.number(kUnknown).fill(255, 4).u16(0);  // temperature, time, categories
    }
    record.zeroText(place.ident, kLongIdent).zeroText(place.comment, kLongComment).fill(0, 4);
}

double readModern(ByteReader& record, std::string type, Place& place) {
    record.skip(2);
    const int display = record.u8();
    const int attribute = record.u8();
    if (type != "D108") {
        // These two are told apart by their attribute, whatever was announced.
        type = attribute == 0x70 ? "D109" : attribute == 0x80 ? "D110" : type;
    }
    place.display = type == "D108" ? display : display / 32 % 4;
    place.symbol = record.u16();
    record.skip(18);
    readPosition(record, place);
    place.altitude = altitudeOf(record.single());
    record.skip(4);
    const double distance = record.single();
    record.skip(type == "D108" ? 4 : type == "D109" ? 8 : 18);
    place.ident = record.zeroText();
    place.comment = record.zeroText();
    return distance;
}

// D151 to D155: the common beginning, then distance, name, city, state, altitude, country, class.
void writeAviation(ByteWriter& record, const std::string& type, const Place& place,
                   float distance) {
    writeCore(record, place);
    record.number(distance).text("", 30).text("", 24).text("", 2).number(metresNumber(place));
    // D151 knows fewer classes: the user's own waypoints are its third.
    record.text("", 2).u8(0).u8(type == "D151" ? 2 : kUserClass);
    if (type == "D154" || type == "D155") {
        record.u16(place.symbol);
    }
    if (type == "D155") {
        record.u8(oddDisplay(place.display));
    }
}

double readAviation(ByteReader& record, const std::string& type, Place& place) {
    readCore(record, place);
    const double distance = record.single();
    record.skip(30 + 24 + 2);
    readMetres(record, place);
    record.skip(2 + 1 + 1);
    if (type == "D154" || type == "D155") {
        place.symbol = record.u16();
    }
    if (type == "D155") {
        place.display = displayOfOdd(record.u8());
    }
    return distance;
}

// D150: ident, country, class, position, altitude, city, state, name, comment. The comment is the
// last 40 bytes of a record of 125; a shorter record of 115 has it right after the name.
constexpr std::size_t kNameToComment = 10;

void writePanel(ByteWriter& record, const Place& place) {
    record.text(place.ident, kIdent).text("", 2).u8(kUserClass);
    writePosition(record, place.latitude, place.longitude);
    record.number(metresNumber(place)).text("", 24).text("", 2).text("", 30);
    record.text("", kNameToComment).text(place.comment, kComment);
}

void readPanel(ByteReader& record, Place& place) {
    place.ident = record.text(kIdent);
    record.skip(2 + 1);
    readPosition(record, place);
    readMetres(record, place);
    record.skip(24 + 2 + 30);
    record.skip(record.left() >= kNameToComment + kComment ? kNameToComment : 0);
    place.comment = record.text(kComment);
}

void write(ByteWriter& record, const std::string& type, const Place& place, float distance) {
    if (isModern(type)) {
        writeModern(record, type, place, distance);
    } else if (type == "D105" || type == "D106") {
        writeRoad(record, type, place);
    } else if (type == "D150") {
        writePanel(record, place);
    } else if (isAviation(type)) {
        writeAviation(record, type, place, distance);
    } else {
        writeClassic(record, type, place, distance);
    }
}

double read(ByteReader& record, const std::string& type, Place& place) {
    if (isModern(type)) {
        return readModern(record, type, place);
    }
    if (type == "D105" || type == "D106") {
        readRoad(record, type, place);
        return 0;
    }
    if (type == "D150") {
        readPanel(record, place);
        return 0;
    }
    return isAviation(type) ? readAviation(record, type, place) : readClassic(record, type, place);
}

// The proximity types of their own are a waypoint type with the distance behind it.
struct OwnType {
    const char* type;
    const char* waypoint;
    bool indexed;  // D450 begins with the number of the proximity waypoint
};
constexpr OwnType kOwnTypes[] = {
    {"D400", "D100", false}, {"D403", "D103", false}, {"D450", "D150", true}};

const OwnType* ownType(const std::string& type) {
    const auto* const found = std::find_if(std::begin(kOwnTypes), std::end(kOwnTypes),
                                           [&](const OwnType& each) { return type == each.type; });
    return found == std::end(kOwnTypes) ? nullptr : found;
}

double metresOf(double distance) {
    return distance >= 0 && distance < 1.0e24 ? distance : 0;
}

}  // namespace

std::vector<std::uint8_t> placeRecord(const std::string& type, const Place& place,
                                      double distance) {
    ByteWriter record;
    const bool none = distance <= 0 && isModern(type);
    write(record, type, place, none ? kUnknown : static_cast<float>(distance));
    return record.take();
}

Place placeOf(const std::string& type, std::span<const std::uint8_t> record) {
    ByteReader reader(record);
    Place place;
    read(reader, type, place);
    return place;
}

std::vector<std::uint8_t> proximityRecord(const std::string& type, const Proximity& proximity,
                                          int index) {
    const OwnType* const own = ownType(type);
    if (own == nullptr) {
        return placeRecord(type, proximity.place, proximity.distance);
    }
    ByteWriter record;
    if (own->indexed) {
        record.u16(index);
    }
    write(record, own->waypoint, proximity.place, 0);
    record.number(static_cast<float>(proximity.distance));
    return record.take();
}

Proximity proximityOf(const std::string& type, std::span<const std::uint8_t> record) {
    ByteReader reader(record);
    Proximity proximity;
    const OwnType* const own = ownType(type);
    if (own == nullptr) {
        proximity.distance = metresOf(read(reader, type, proximity.place));
        return proximity;
    }
    reader.skip(own->indexed ? 2 : 0);
    // With 4 bytes of distance behind, a D150 of 115 bytes must not be taken for a longer one.
    ByteReader place(record.subspan(own->indexed ? 2 : 0,
                                    reader.left() - std::min<std::size_t>(4, reader.left())));
    read(place, own->waypoint, proximity.place);
    ByteReader tail(record.last(std::min<std::size_t>(4, record.size())));
    proximity.distance = metresOf(tail.single());
    return proximity;
}

}  // namespace marlune::receivers::garmin
