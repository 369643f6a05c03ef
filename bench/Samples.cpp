#include "Samples.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <string>

#include "garmin/records/DataType.h"

namespace marlune::bench {
namespace {

// Writes little-endian numbers and texts one behind the other.
class Writer {
public:
    template <class Whole>
    Writer& number(Whole value, std::size_t bytes = sizeof(Whole)) {
        for (std::size_t i = 0; i < bytes; ++i) {
            record.push_back(static_cast<std::uint8_t>(static_cast<std::uint64_t>(value) >> 8 * i));
        }
        return *this;
    }
    Writer& real(float value) { return number(std::bit_cast<std::uint32_t>(value)); }
    Writer& real(double value) { return number(std::bit_cast<std::uint64_t>(value)); }
    Writer& text(const std::string& value) {
        record.insert(record.end(), value.begin(), value.end());
        return number(std::uint8_t{0});
    }
    Writer& fill(std::size_t count, std::uint8_t value) {
        record.insert(record.end(), count, value);
        return *this;
    }

    Record record;
};

constexpr std::uint32_t kSemicirclesPerDegree = 11930465;

// A walk northwards from 45 degrees north, 6 degrees east.
std::uint32_t latitude(std::uint32_t number) {
    return 45 * kSemicirclesPerDegree + number * 1237;
}
std::uint32_t longitude(std::uint32_t number) {
    return 6 * kSemicirclesPerDegree + number * 411;
}
float altitude(std::uint32_t number) {
    return 250.0F + 0.37F * static_cast<float>(number % 4000);
}
std::uint32_t garminTime(std::uint32_t number) {
    return 550000000 + 5 * number;
}

std::string ident(std::uint32_t number) {
    std::string digits = std::to_string(number);
    return "P" + digits.insert(0, 5 - std::min<std::size_t>(5, digits.size()), '0');
}

const std::string kComment = "12-JUN-07 10:23:45";

void put(Record& record, std::size_t at, const Record& bytes) {
    record.resize(std::max(record.size(), at + bytes.size()));
    std::copy(bytes.begin(), bytes.end(), record.begin() + static_cast<std::ptrdiff_t>(at));
}

void putText(Record& record, const DataType::Field& field, const std::string& text) {
    if (field.exists()) {
        std::string padded = text.substr(0, field.size());
        padded.resize(field.size(), ' ');
        put(record, field.at(), {padded.begin(), padded.end()});
    }
}

// Everything that the type's layout names, and nothing behind the texts, as receivers do.
Record waypoint(std::string_view type, std::uint32_t number) {
    const DataType& layout = DataType::Lire(type);
    Record record(layout.ident.isOpen() ? layout.ident.at() : layout.total);
    put(record, layout.latitude.at(), Writer().number(latitude(number)).record);
    put(record, layout.longitude.at(), Writer().number(longitude(number)).record);
    if (layout.altitude.exists() && layout.altitude.size() == 4) {
        put(record, layout.altitude.at(), Writer().real(altitude(number)).record);
    }
    if (layout.symbol.exists()) {
        put(record, layout.symbol.at(), Record(layout.symbol.size(), 8));
    }
    if (layout.ident.isOpen()) {
        // Comment, facility, city, address, cross road.
        put(record, layout.ident.at(),
            Writer().text(ident(number)).text(kComment).fill(4, 0).record);
    } else {
        putText(record, layout.ident, ident(number));
        putText(record, layout.comment, kComment);
    }
    return record;
}

Record trackPoint(std::string_view type, std::uint32_t number) {
    Writer out;
    out.number(latitude(number)).number(longitude(number)).number(garminTime(number));
    const std::uint8_t newSegment = number % 500 == 0 ? 1 : 0;
    if (type == "D300") {
        return out.number(newSegment).record;
    }
    out.real(altitude(number));
    if (type == "D301") {
        return out.real(1.0e25F).number(newSegment).record;
    }
    if (type == "D302") {
        return out.real(1.0e25F).real(1.0e25F).number(newSegment).record;
    }
    // Heart rate; distance, heart rate, cadence, sensor.
    return type == "D303" ? out.fill(1, 120).record : out.real(1234.5F).fill(3, 90).record;
}

Record trackHeader(std::string_view type, std::uint32_t number) {
    Writer out;
    if (type == "D311") {
        return out.number(static_cast<std::uint16_t>(number)).record;
    }
    return out.number(std::uint8_t{1}).number(std::uint8_t{255}).text("ACTIVE LOG").record;
}

Record routeHeader(std::string_view type, std::uint32_t number) {
    Writer out;
    if (type == "D202") {
        return out.text("GRENOBLE-CHAMBERY").record;
    }
    out.number(static_cast<std::uint8_t>(number));
    return type == "D201" ? out.text("GRENOBLE-CHAMBERY  ").record : out.record;
}

Record routeLink(std::uint32_t number) {
    Writer out;
    out.number(std::uint16_t{3}).fill(6, 0).fill(12, 255);
    return out.text(ident(number)).text("").record;
}

Record fix(std::uint32_t number) {
    constexpr double kRadian = 57.29577951308232;
    Writer out;
    out.real(300.5F).real(12.5F).real(8.25F).real(9.5F);  // altitude and errors
    out.number(std::uint16_t{3});                         // three dimensions
    out.real(208800.0 + number);                          // seconds of the week
    out.real((45.0 + 1e-5 * number) / kRadian).real((6.0 + 1e-5 * number) / kRadian);
    out.real(1.5F).real(-0.25F).real(0.0F).real(-48.5F);  // velocity, height above the sea
    return out.number(std::uint16_t{14}).number(std::uint32_t{6370}).record;
}

}  // namespace

Record sampleRecord(std::string_view type, std::uint32_t number) {
    if (type == "D210") {
        return routeLink(number);
    }
    if (type == "D800") {
        return fix(number);
    }
    if (type.starts_with("D31")) {
        return trackHeader(type, number);
    }
    if (type.starts_with("D3")) {
        return trackPoint(type, number);
    }
    if (type.starts_with("D2")) {
        return routeHeader(type, number);
    }
    return waypoint(type, number);
}

}  // namespace marlune::bench
