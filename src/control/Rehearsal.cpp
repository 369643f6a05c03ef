#include "control/Rehearsal.h"

#include <algorithm>
#include <cmath>
#include <sstream>
#include <utility>

#include "base/Contains.h"
#include "base/RunTimeError.h"
#include "garmin/UploadFiles.h"
#include "garmin/records/Route.h"
#include "garmin/records/Trace.h"
#include "garmin/records/TrkHeader.h"
#include "garmin/records/Values.h"
#include "marlune/RecordFiles.h"
#include "nmea/magellan/MagellanFamily.h"
#include "nmea/magellan/TrackSentence.h"
#include "nmea/magellan/WaypointSentence.h"
#include "nmea/mlr/MlrFamily.h"
#include "nmea/mlr/MlrRecords.h"
#include "storage/DriveGarmin.h"

namespace marlune {
namespace {

// Commas stand for decimal points in upload files, in texts as well.
constexpr const char* kSeparator = ".";

// The record's line of an upload file, as its reader sees it.
template <class Write>
std::string uploadLine(Write&& write) {
    std::ostringstream out;
    write(*makeRecordWriter(FileFormat::lines, out));
    std::string line = out.str();
    line.erase(std::min(line.find('\r'), line.size()));
    std::replace(line.begin(), line.end(), ',', *kSeparator);
    if (line.empty()) {
        throw RunTimeError(RunTimeError::overflow);  // no position on earth
    }
    return line;
}

std::vector<std::string> tagsOf(const std::string& protocols) {
    std::istringstream text(protocols);
    std::vector<std::string> tags;
    for (std::string tag; text >> tag;) {
        tags.push_back(tag);
    }
    return tags;
}

// Nothing for what the codecs refuse.
template <class Make>
auto ifSendable(Make&& make) -> std::optional<decltype(make())> {
    try {
        return make();
    } catch (const RunTimeError&) {
        return std::nullopt;
    }
}

// An altitude of 0 is how the lines say that there is none.
bool isLost(std::optional<float> before, std::optional<float> after) {
    constexpr float kRounding = 0.51F;
    return before.value_or(0.0F) != 0.0F &&
           (!after || std::abs(*after - before.value_or(0.0F)) > kRounding);
}

bool isTimeLost(const std::optional<double>& before, const std::optional<double>& after) {
    return before && (!after || std::abs(*after - *before) > 1);
}

Losses lossesOf(const TrackPointRecord& record, const TrackPointRecord& kept) {
    Losses losses;
    losses.altitude = isLost(record.altitude, kept.altitude);
    losses.time = isTimeLost(record.time, kept.time);
    losses.more = isLost(record.depth, kept.depth) || isLost(record.temperature, kept.temperature);
    return losses;
}

}  // namespace

Rehearsal::Rehearsal(std::string protocolCode, const std::string& protocols) {
    if (protocolCode == DriveGarmin::kTraits.code) {
        codec_ = Codec::drive;
    } else if (contains(protocolCode, "GRM")) {
        codec_ = Codec::garmin;
    } else if (protocolCode == MagellanFamily::kTraits.code) {
        codec_ = Codec::magellan;
    } else {
        codec_ = protocolCode == MlrFamily::kTraits.code ? Codec::mlr : Codec::none;
    }
    if (codec_ == Codec::drive) {
        format_ = storageUploadFormat(protocolCode, kSeparator);
        return;
    }
    if (codec_ == Codec::garmin) {
        capability_.tags = tagsOf(protocols);
        capability_.Decoder();
        format_ = capability_.uploadFormat({});
    }
    format_.protocolCode = std::move(protocolCode);
}

bool Rehearsal::takes(GpxKind kind) const {
    if (codec_ != Codec::garmin) {
        return codec_ == Codec::mlr ? kind != GpxKind::tracks : codec_ != Codec::none;
    }
    switch (kind) {
        case GpxKind::waypoints:
            return !capability_.waypointProtocol.empty();
        case GpxKind::routes:
            return !capability_.routeProtocol.empty();
        case GpxKind::tracks:
            break;
    }
    return !capability_.trackProtocol.empty();
}

WaypointRecord Rehearsal::coded(const Waypoint& waypoint, const std::string& type) const {
    Waypoint kept;
    switch (codec_) {
        case Codec::garmin: {
            const auto record = waypoint.Coder(type);
            kept.GetAttributes(type, record);
            return recordOf(std::move(kept), type, record);
        }
        case Codec::magellan:
            GetAttributes_MGN(kept, Coder_MGN(waypoint));
            return recordOf(std::move(kept));
        case Codec::mlr: {
            GetAttributes_MLR(kept, Coder_MLR(waypoint));
            WaypointRecord record = recordOf(std::move(kept));
            record.name.erase(record.name.find_last_not_of(' ') + 1);  // it is padded
            return record;
        }
        case Codec::drive:
        case Codec::none:
            break;
    }
    return recordOf(waypoint);
}

std::optional<WaypointRecord> Rehearsal::point(const WaypointRecord& record,
                                               std::string_view readFor,
                                               const std::string& type) const {
    return ifSendable([&] {
        Waypoint waypoint;
        waypoint.SetAttributes(readFor, uploadLine([&](auto& line) { line.waypoint(record); }));
        return coded(waypoint, type);
    });
}

std::optional<WaypointRecord> Rehearsal::waypoint(const WaypointRecord& record) const {
    return point(record, waypointType(format_), format_.waypointType);
}

std::string Rehearsal::coded(const std::string& routeLine) const {
    Route route;
    route.SetAttributes(routeLine);
    if (codec_ == Codec::garmin) {
        Route kept;
        kept.GetAttributes(capability_.routeHeaderType, route.Coder(capability_.routeHeaderType));
        return kept.Description();
    }
    if (codec_ == Codec::mlr) {
        return {};  // its sentences have a number only
    }
    return route.Description();
}

std::optional<RouteRecord> Rehearsal::route(const RouteRecord& record) const {
    RouteRecord kept;
    const auto name =
        ifSendable([&] { return coded(uploadLine([&](auto& line) { line.route(record); })); });
    if (!name) {
        return std::nullopt;
    }
    kept.number = record.number;
    kept.name = *name;
    for (const RoutePointRecord& each : record.points) {
        auto its = point(each.point, routePointType(format_), capability_.routePointType());
        if (!its) {
            return std::nullopt;
        }
        kept.points.push_back({std::move(*its), std::nullopt});
    }
    return kept;
}

TrackRecord Rehearsal::codedHead(const TrackRecord& record) const {
    TrackRecord kept;
    if (codec_ == Codec::drive) {
        kept.name = record.name;
    } else if (codec_ == Codec::garmin && keepsTrackHeaders(format_)) {
        TrkHeader head;
        head.SetAttributes(format_.trackHeaderType,
                           uploadLine([&](auto& line) { line.track(record); }), 0);
        TrkHeader its;
        its.GetAttributes(format_.trackHeaderType, head.Coder(format_.trackHeaderType));
        kept.name = its.name;
    }
    return kept;
}

TrackPointRecord Rehearsal::codedPoint(const std::string& line, std::string& name) const {
    Trace point;
    point.SetAttributes("", line);
    Trace kept;
    if (codec_ == Codec::garmin) {
        const std::string& type = capability_.trackPointType;
        const auto record = point.Coder(type);
        kept.GetAttributes(type, record);
        return recordOf(kept, type, record);
    }
    if (codec_ == Codec::magellan) {
        point.SetName(name);
        GetAttributes_MGN(kept, CoderMgn(point), 0);
        name = kept.GetName();
        return recordOf(kept);
    }
    return recordOf(point);
}

std::optional<TrackRecord> Rehearsal::track(const TrackRecord& record) const {
    return ifSendable([&] {
        TrackRecord kept = codedHead(record);
        // Where each point carries the name, that is the one which stays.
        std::string name = record.name;
        for (const TrackPointRecord& each : record.points) {
            kept.points.push_back(
                codedPoint(uploadLine([&](auto& line) { line.trackPoint(each); }), name));
        }
        if (codec_ == Codec::magellan) {
            kept.name = name;
        }
        return kept;
    });
}

Losses& Losses::operator|=(const Losses& other) {
    name = name || other.name;
    comment = comment || other.comment;
    symbol = symbol || other.symbol;
    altitude = altitude || other.altitude;
    time = time || other.time;
    more = more || other.more;
    return *this;
}

Losses lossesOf(const WaypointRecord& record, const WaypointRecord& kept) {
    Losses losses;
    losses.name = record.name != kept.name;
    losses.comment = record.comment != kept.comment;
    losses.symbol = record.symbol && record.symbol != kept.symbol;
    losses.altitude = isLost(record.altitude, kept.altitude);
    losses.time = isTimeLost(record.time, kept.time);
    losses.more = isLost(record.depth, kept.depth) || isLost(record.proximity, kept.proximity) ||
                  isLost(record.temperature, kept.temperature);
    return losses;
}

Losses lossesOf(const RouteRecord& record, const RouteRecord& kept) {
    Losses losses;
    losses.name = record.name != kept.name;
    for (std::size_t i = 0; i < std::min(record.points.size(), kept.points.size()); ++i) {
        losses |= lossesOf(record.points[i].point, kept.points[i].point);
    }
    return losses;
}

Losses lossesOf(const TrackRecord& record, const TrackRecord& kept) {
    Losses losses;
    losses.name = record.name != kept.name;
    for (std::size_t i = 0; i < std::min(record.points.size(), kept.points.size()); ++i) {
        losses |= lossesOf(record.points[i], kept.points[i]);
    }
    return losses;
}

}  // namespace marlune
