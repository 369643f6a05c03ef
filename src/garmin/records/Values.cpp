#include "garmin/records/Values.h"

#include <cmath>
#include <numbers>
#include <optional>
#include <utility>

#include "garmin/records/DataType.h"
#include "garmin/values/ByteAccess.h"
#include "garmin/values/Nombre.h"
#include "garmin/values/jour.h"

namespace marlune {
namespace {

// What stands for "unknown" in a length or a temperature, and in a time.
constexpr float kUnknownSingle = 1.0e25F;
constexpr std::uint32_t kNoTime = 0xFFFFFFFF;

// Where the waypoint types keep what their text line has no field for; 0 where they have none.
struct MoreFields {
    int type;
    std::size_t depth;
    std::size_t proximity;
    std::size_t temperature;
    std::size_t time;
};
// clang-format off
constexpr MoreFields kMoreFields[] = {
    {101, 0, 58, 0, 0},
    {102, 0, 58, 0, 0},
    {104, 0, 58, 0, 0},
    {107, 0, 60, 0, 0},
    {108, 36, 40, 0, 0},
    {109, 36, 40, 0, 0},
    {110, 36, 40, 52, 56},
    {151, 0, 58, 0, 0},
    {152, 0, 58, 0, 0},
    {154, 0, 58, 0, 0},
    {155, 0, 58, 0, 0},
};
// clang-format on

// The same for the track point types.
struct PointFields {
    std::string_view format;
    bool altitude;
    std::size_t depth;
    std::size_t temperature;
};
constexpr PointFields kPointFields[] = {
    {"D301", true, 16, 0},
    {"D302", true, 16, 20},
    {"D303", true, 0, 0},
    {"D304", true, 0, 0},
};

std::optional<float> known(float value) {
    return value == kUnknownSingle || !std::isfinite(value) ? std::nullopt : std::optional(value);
}

// Where 0 stands for none, too.
std::optional<float> positive(std::optional<float> value) {
    return value > 0.0F ? value : std::nullopt;
}

// A field of four bytes; nothing where the type lacks it (offset 0) or the record ends before it.
std::optional<float> knownSingleAt(Bytes data, std::size_t offset) {
    if (offset == 0 || data.size() < offset + 4) {
        return std::nullopt;
    }
    return known(static_cast<float>(Nombre::BytestoSingle(bytesAt(data, offset, 4))));
}

std::optional<double> garminTimeAt(Bytes data, std::size_t offset) {
    if (offset == 0 || data.size() < offset + 4) {
        return std::nullopt;
    }
    const auto seconds = static_cast<std::uint32_t>(Nombre::BytestoLong(bytesAt(data, offset, 4)));
    if (seconds == kNoTime) {
        return std::nullopt;
    }
    return unixTime(jour::kGarminEpoch) + seconds;
}

void addMoreFields(WaypointRecord& record, int type, Bytes data) {
    for (const MoreFields& fields : kMoreFields) {
        if (fields.type == type) {
            record.depth = knownSingleAt(data, fields.depth);
            record.proximity = positive(knownSingleAt(data, fields.proximity));
            record.temperature = knownSingleAt(data, fields.temperature);
            record.time = garminTimeAt(data, fields.time);
        }
    }
}

template <class Record>
void placeAt(Record& record, const ExactPosition& position) {
    record.latitude = position.latitude;
    record.longitude = position.longitude;
    record.altitude = position.altitude;
}

std::optional<double> timeOf(const Trace& point) {
    return point.pTime > 0 ? std::optional(unixTime(point.pTime)) : std::nullopt;
}

}  // namespace

double unixTime(double date) {
    constexpr double kUnixEpoch = 25569;  // 01/01/1970
    constexpr double kSecondsPerDay = 86400;
    // The day count carries some ten microseconds; milliseconds are what a receiver can mean.
    return std::nearbyint((date - kUnixEpoch) * kSecondsPerDay * 1000) / 1000;
}

WaypointRecord recordOf(Waypoint waypoint) {
    WaypointRecord record;
    record.name = std::move(waypoint.ident);
    record.comment = std::move(waypoint.comment);
    record.latitude = waypoint.latitude;
    record.longitude = waypoint.longitude;
    if (waypoint.exact) {  // sentences have no such symbols, and no way to show them
        placeAt(record, *waypoint.exact);
        return record;
    }
    record.altitude = waypoint.altitude;
    record.symbol = waypoint.symbol;
    record.display = waypoint.display;
    return record;
}

WaypointRecord recordOf(Waypoint waypoint, std::string_view format,
                        std::span<const std::uint8_t> data) {
    const DataType& type = Waypoint::typeOf(format, data);
    WaypointRecord record = recordOf(std::move(waypoint));
    if (!type.altitude.exists()) {
        record.altitude.reset();
    } else if (type.altitude.size() == 4) {
        record.altitude = knownSingleAt(data, type.altitude.at());
    } else {
        record.altitude = Nombre::BytestoInt(bytesAt(data, type.altitude.at(), 2));
    }
    if (!type.symbol.exists()) {
        record.symbol.reset();
    }
    if (!type.display.exists()) {
        record.display.reset();
    }
    addMoreFields(record, type.number, data);
    return record;
}

TrackPointRecord recordOf(const Trace& point) {
    TrackPointRecord record;
    record.latitude = point.latitude;
    record.longitude = point.longitude;
    record.time = timeOf(point);
    record.altitude = point.altitude;
    record.segmentStart = point.pFirst;
    if (point.exact) {
        placeAt(record, *point.exact);
    }
    return record;
}

TrackPointRecord recordOf(const Trace& point, std::string_view format,
                          std::span<const std::uint8_t> data) {
    constexpr std::size_t kAltitudeAt = 12;
    TrackPointRecord record = recordOf(point);
    record.altitude.reset();
    for (const PointFields& fields : kPointFields) {
        if (fields.format == format) {
            record.altitude = knownSingleAt(data, kAltitudeAt);
            record.depth = knownSingleAt(data, fields.depth);
            record.temperature = knownSingleAt(data, fields.temperature);
        }
    }
    return record;
}

TrackRecord recordOf(const TrkHeader& header, std::string_view format) {
    TrackRecord record;
    record.name = header.name;
    if (format != "D311") {  // which carries a number only
        record.display = header.display;
        record.colour = header.colour;
    }
    return record;
}

std::optional<float> alarmDistance(std::string_view proximityType,
                                   std::span<const std::uint8_t> data) {
    constexpr std::size_t kBehindD100 = 58;
    constexpr std::size_t kBehindD103 = 60;
    if (proximityType == "D400") {
        return positive(knownSingleAt(data, kBehindD100));
    }
    return proximityType == "D403" ? positive(knownSingleAt(data, kBehindD103)) : std::nullopt;
}

RouteRecord recordOf(const Route& route) {
    RouteRecord record;
    record.number = route.numRte;
    record.name = route.Description();
    return record;
}

RouteLinkRecord recordOf(const RteLink& link) {
    return {link.linkClass, link.subclass, link.ident};
}

FixRecord recordOf(const PvtData& fix) {
    FixRecord record;
    // Without the factor that the lines' degrees come by.
    constexpr double kDegrees = 180 / std::numbers::pi / PvtData::kDegreesPerRadian;
    record.latitude = fix.latitude * kDegrees;
    record.longitude = fix.longitude * kDegrees;
    record.altitude = known(fix.altitude);
    record.time = unixTime(fix.time);
    record.quality = fix.fix;
    record.error = positive(known(fix.epe));
    record.horizontalError = positive(known(fix.eph));
    record.verticalError = positive(known(fix.epv));
    record.eastSpeed = known(fix.east);
    record.northSpeed = known(fix.north);
    record.upSpeed = known(fix.up);
    return record;
}

void addPoint(Records& records, TrackPointRecord point) {
    if (records.tracks.empty()) {
        records.tracks.emplace_back();
    }
    std::vector<TrackPointRecord>& points = records.tracks.back().points;
    point.segmentStart = point.segmentStart || points.empty();
    points.push_back(point);
}

void addPoint(Records& records, WaypointRecord routePoint) {
    if (records.routes.empty()) {
        records.routes.emplace_back();
    }
    records.routes.back().points.push_back({std::move(routePoint), std::nullopt});
}

void addLink(Records& records, RouteLinkRecord link) {
    if (!records.routes.empty() && !records.routes.back().points.empty()) {
        records.routes.back().points.back().link = std::move(link);
    }
}

}  // namespace marlune
