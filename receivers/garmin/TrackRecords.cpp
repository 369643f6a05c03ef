#include "receivers/garmin/TrackRecords.h"

#include <cmath>
#include <limits>

#include "receivers/garmin/Dates.h"
#include "receivers/garmin/Position.h"

namespace marlune::receivers::garmin {
namespace {

constexpr std::uint32_t kNoTime = 0xFFFFFFFF;
constexpr std::int32_t kNoPosition = 0x7FFFFFFF;
constexpr int kNoBeat = 0;     // heart rate
constexpr int kNoTurns = 255;  // cadence
constexpr std::size_t kLongestName = 50;

// Pauses, not flags, separate the segments of these types.
bool pauses(const std::string& type) {
    return type == "D303" || type == "D304";
}

TrackPoint pause() {
    return {180, 180, 0, std::nullopt, false};
}

std::uint32_t secondsOf(double days) {
    const double seconds = std::round((days - kEpochDay) * kSecondsADay);
    const bool fits = seconds > 0 && seconds < std::numeric_limits<std::int32_t>::max();
    return fits ? static_cast<std::uint32_t>(seconds) : kNoTime;
}

double daysOf(std::uint32_t seconds) {
    const bool known = seconds > 0 && seconds < std::numeric_limits<std::int32_t>::max();
    return known ? kEpochDay + seconds / kSecondsADay : 0;
}

}  // namespace

std::vector<std::uint8_t> trackHeaderRecord(const std::string& type, const Track& track,
                                            int index) {
    ByteWriter record;
    if (type == "D311") {
        record.u16(index);
    } else {
        record.u8(1).u8(255).zeroText(track.name, kLongestName);  // shown, in the default colour
    }
    return record.take();
}

std::string trackNameOf(const std::string& type, std::span<const std::uint8_t> record) {
    ByteReader reader(record);
    if (type == "D311") {
        return "Track " + std::to_string(reader.u16() + 1);
    }
    reader.skip(2);
    return reader.zeroText();
}

std::vector<std::uint8_t> trackPointRecord(const std::string& type, const TrackPoint& point) {
    ByteWriter record;
    if (point.hasPosition()) {
        writePosition(record, point.latitude, point.longitude);
    } else {
        record.number(kNoPosition).number(kNoPosition);
    }
    record.number(secondsOf(point.time));
    if (type != "D300") {
        record.number(point.altitude ? static_cast<float>(*point.altitude) : kUnknown);
    }
    if (type == "D303") {
        record.u8(kNoBeat);
    } else if (type == "D304") {
        record.number(kUnknown).u8(kNoBeat).u8(kNoTurns).u8(0);  // distance, beat, turns, sensor
    } else {
        if (type != "D300") {
            record.number(kUnknown);  // depth
        }
        if (type == "D302") {
            record.number(kUnknown);  // temperature
        }
        record.u8(point.newSegment ? 1 : 0);
    }
    return record.take();
}

TrackPoint trackPointOf(const std::string& type, std::span<const std::uint8_t> record) {
    ByteReader reader(record);
    TrackPoint point;
    const auto latitude = reader.number<std::int32_t>();
    const auto longitude = reader.number<std::int32_t>();
    const bool nowhere = latitude == kNoPosition && longitude == kNoPosition;
    point.latitude = nowhere ? 180 : degreesOf(latitude);
    point.longitude = nowhere ? 180 : degreesOf(longitude);
    point.time = daysOf(reader.number<std::uint32_t>());
    if (type != "D300") {
        const float altitude = reader.single();
        if (std::abs(altitude) < 1.0e24F) {
            point.altitude = altitude;
        }
    }
    if (pauses(type)) {
        reader.skip(type == "D303" ? 1 : 7);
        return point;
    }
    reader.skip(type == "D300" ? 0 : type == "D301" ? 4 : 8);
    point.newSegment = reader.u8() != 0;
    return point;
}

std::vector<std::vector<std::uint8_t>> trackPointRecords(const std::string& type,
                                                         const Track& track) {
    std::vector<std::vector<std::uint8_t>> records;
    records.reserve(track.points.size());
    for (const TrackPoint& point : track.points) {
        if (pauses(type) && point.newSegment && !records.empty()) {
            records.insert(records.end(), 2, trackPointRecord(type, pause()));
        }
        records.push_back(trackPointRecord(type, point));
    }
    return records;
}

void joinSegments(const std::string& type, Track& track) {
    if (!pauses(type)) {
        return;
    }
    std::vector<TrackPoint> points;
    std::size_t withoutPosition = 2;  // a track begins as after a pause
    for (const TrackPoint& point : track.points) {
        if (!point.hasPosition()) {
            ++withoutPosition;
            continue;
        }
        points.push_back(point);
        points.back().newSegment = withoutPosition >= 2;
        withoutPosition = 0;
    }
    track.points = std::move(points);
}

}  // namespace marlune::receivers::garmin
