#include "receivers/garmin/RouteRecords.h"

#include "receivers/garmin/Bytes.h"

namespace marlune::receivers::garmin {
namespace {

constexpr std::size_t kRouteComment = 20;
constexpr std::size_t kLongestText = 50;
constexpr int kDirect = 3;

}  // namespace

std::vector<std::uint8_t> routeHeaderRecord(const std::string& type, const Route& route) {
    ByteWriter record;
    if (type == "D202") {
        record.zeroText(route.name, kLongestText);
    } else {
        record.u8(route.number);
    }
    if (type == "D201") {
        record.text(route.name, kRouteComment);
    }
    return record.take();
}

Route routeOf(const std::string& type, std::span<const std::uint8_t> record) {
    ByteReader reader(record);
    Route route;
    if (type == "D202") {
        route.name = reader.zeroText();
    } else {
        route.number = reader.u8();
    }
    if (type == "D201") {
        route.name = reader.text(kRouteComment);
    }
    return route;
}

// class, subclass (6 zeros, 12 times 255), ident
std::vector<std::uint8_t> linkRecord(const std::string& ident) {
    ByteWriter record;
    record.u16(kDirect).fill(0, 6).fill(255, 12).zeroText(ident, kLongestText);
    return record.take();
}

std::string linkOf(std::span<const std::uint8_t> record) {
    ByteReader reader(record);
    reader.skip(2 + 18);
    return reader.zeroText();
}

}  // namespace marlune::receivers::garmin
