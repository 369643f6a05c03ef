#include "receivers/garmin/Holdings.h"

#include <algorithm>
#include <iterator>
#include <stdexcept>
#include <unordered_map>
#include <utility>

#include "receivers/garmin/PlaceRecords.h"
#include "receivers/garmin/RouteRecords.h"
#include "receivers/garmin/TrackRecords.h"

namespace marlune::receivers::garmin {
namespace {

constexpr const char* kTrackLog = "ACTIVE LOG";

const char* nameOf(RecordKind kind) {
    switch (kind) {
        case RecordKind::waypoint:
            return "waypoint";
        case RecordKind::routeHeader:
            return "route header";
        case RecordKind::routePoint:
            return "route point";
        case RecordKind::routeLink:
            return "route link";
        case RecordKind::trackHeader:
            return "track header";
        case RecordKind::trackPoint:
            return "track point";
        case RecordKind::proximity:
            return "proximity waypoint";
    }
    return "";
}

// Replaces the item of the same ident, or adds it.
template <typename Item, typename Ident>
void putEach(std::vector<Item>& items, std::vector<Item>&& added, Ident ident) {
    std::unordered_map<std::string, std::size_t> where;
    for (std::size_t at = 0; at < items.size(); ++at) {
        where.emplace(ident(items[at]), at);
    }
    for (Item& item : added) {
        const auto [found, isNew] = where.emplace(ident(item), items.size());
        if (isNew) {
            items.push_back(std::move(item));
        } else {
            items[found->second] = std::move(item);
        }
    }
}

// Takes out every item that one of the new ones stands for, then adds those: a name that comes
// twice in one upload is kept twice.
template <typename Item, typename Same>
void putAll(std::vector<Item>& items, std::vector<Item>&& added, Same same) {
    items.erase(std::remove_if(items.begin(), items.end(),
                               [&](const Item& each) {
                                   return std::any_of(
                                       added.begin(), added.end(),
                                       [&](const Item& other) { return same(each, other); });
                               }),
                items.end());
    std::move(added.begin(), added.end(), std::back_inserter(items));
}

}  // namespace

Holdings::Holdings(Abilities abilities, const DeviceData& data) : abilities_(std::move(abilities)) {
    data_ = data;
    if (abilities_.trackHeader.empty()) {
        // Without headers there is one log, whose parts are segments.
        Track log = {kTrackLog, {}};
        for (Track& track : data_.tracks) {
            if (!track.points.empty()) {
                track.points.front().newSegment = true;
            }
            std::move(track.points.begin(), track.points.end(), std::back_inserter(log.points));
        }
        data_.tracks.assign(log.points.empty() ? 0 : 1, log);
    }
    std::vector<Record> records;
    for (const auto& list : {waypoints(), proximities(), routes(), tracks()}) {
        records.insert(records.end(), list.begin(), list.end());
    }
    data_ = {};
    store(records);
}

std::string Holdings::typeOf(RecordKind kind) const {
    switch (kind) {
        case RecordKind::waypoint:
            return abilities_.waypoint;
        case RecordKind::routeHeader:
            return abilities_.routeHeader;
        case RecordKind::routePoint:
            return abilities_.routePoint;
        case RecordKind::routeLink:
            return abilities_.routeLink;
        case RecordKind::trackHeader:
            return abilities_.trackHeader;
        case RecordKind::trackPoint:
            return abilities_.trackPoint;
        case RecordKind::proximity:
            return abilities_.proximity;
    }
    return {};
}

std::optional<std::vector<Record>> Holdings::listOf(Command command) const {
    const auto ifSpoken = [](bool spoken, const auto& list) {
        return spoken ? std::optional(list()) : std::nullopt;
    };
    switch (command) {
        case Command::waypoints:
            return ifSpoken(!abilities_.waypoint.empty(), [this] { return waypoints(); });
        case Command::routes:
            return ifSpoken(!abilities_.routeHeader.empty(), [this] { return routes(); });
        case Command::tracks:
            return ifSpoken(!abilities_.trackPoint.empty(), [this] { return tracks(); });
        case Command::proximities:
            return ifSpoken(!abilities_.proximity.empty(), [this] { return proximities(); });
        case Command::almanac:
            // It has not received any yet.
            return ifSpoken(abilities_.almanac, [] { return std::vector<Record>(); });
        default:
            return std::nullopt;
    }
}

std::vector<Record> Holdings::waypoints() const {
    std::vector<Record> records;
    for (const Place& place : data_.places) {
        if (!abilities_.waypoint.empty()) {
            records.push_back({RecordKind::waypoint, placeRecord(abilities_.waypoint, place)});
        }
    }
    return records;
}

std::vector<Record> Holdings::proximities() const {
    std::vector<Record> records;
    for (const Proximity& each : data_.proximities) {
        if (!abilities_.proximity.empty()) {
            const int index = static_cast<int>(records.size());
            records.push_back(
                {RecordKind::proximity, proximityRecord(abilities_.proximity, each, index)});
        }
    }
    return records;
}

std::vector<Record> Holdings::routes() const {
    std::vector<Record> records;
    if (abilities_.routeHeader.empty()) {
        return records;
    }
    for (const Route& route : data_.routes) {
        records.push_back(
            {RecordKind::routeHeader, routeHeaderRecord(abilities_.routeHeader, route)});
        for (std::size_t at = 0; at < route.points.size(); ++at) {
            records.push_back(
                {RecordKind::routePoint, placeRecord(abilities_.routePoint, route.points[at])});
            if (!abilities_.routeLink.empty() && at + 1 < route.points.size()) {
                const std::string link = at < route.links.size() ? route.links[at] : "";
                records.push_back({RecordKind::routeLink, linkRecord(link)});
            }
        }
    }
    return records;
}

std::vector<Record> Holdings::tracks() const {
    std::vector<Record> records;
    if (abilities_.trackPoint.empty()) {
        return records;
    }
    int index = 0;
    for (const Track& track : data_.tracks) {
        if (!abilities_.trackHeader.empty()) {
            records.push_back({RecordKind::trackHeader,
                               trackHeaderRecord(abilities_.trackHeader, track, index++)});
        }
        for (auto& point : trackPointRecords(abilities_.trackPoint, track)) {
            records.push_back({RecordKind::trackPoint, std::move(point)});
        }
    }
    return records;
}

std::vector<std::string> Holdings::store(const std::vector<Record>& records) {
    std::vector<std::string> complaints;
    DeviceData upload;
    int number = 0;
    for (const Record& record : records) {
        ++number;
        try {
            take(record, upload);
        } catch (const std::logic_error& fault) {
            complaints.push_back("record " + std::to_string(number) + ", a " + nameOf(record.kind) +
                                 " of " + std::to_string(record.data.size()) + " bytes, " +
                                 fault.what());
        }
    }
    settle(upload);
    merge(std::move(upload));
    return complaints;
}

void Holdings::take(const Record& record, DeviceData& into) const {
    const std::string type = typeOf(record.kind);
    if (type.empty()) {
        throw std::invalid_argument("is of a kind that this unit lacks");
    }
    const bool inRoute =
        record.kind == RecordKind::routePoint || record.kind == RecordKind::routeLink;
    if (inRoute && into.routes.empty()) {
        throw std::invalid_argument("stands in front of every route header");
    }
    switch (record.kind) {
        case RecordKind::waypoint:
            into.places.push_back(placeOf(type, record.data));
            break;
        case RecordKind::proximity:
            into.proximities.push_back(proximityOf(type, record.data));
            break;
        case RecordKind::routeHeader:
            into.routes.push_back(routeOf(type, record.data));
            break;
        case RecordKind::routePoint:
            into.routes.back().points.push_back(placeOf(type, record.data));
            break;
        case RecordKind::routeLink: {
            Route& route = into.routes.back();
            route.links.resize(std::max<std::size_t>(route.points.size(), 1));
            route.links.back() = linkOf(record.data);
            break;
        }
        case RecordKind::trackHeader:
            into.tracks.push_back({trackNameOf(type, record.data), {}});
            break;
        case RecordKind::trackPoint:
            if (into.tracks.empty()) {
                into.tracks.push_back({kTrackLog, {}});
            }
            into.tracks.back().points.push_back(trackPointOf(type, record.data));
            break;
    }
}

void Holdings::settle(DeviceData& data) const {
    for (Track& track : data.tracks) {
        joinSegments(abilities_.trackPoint, track);
    }
}

void Holdings::merge(DeviceData&& upload) {
    putEach(data_.places, std::move(upload.places), [](const Place& each) { return each.ident; });
    putEach(data_.proximities, std::move(upload.proximities),
            [](const Proximity& each) { return each.place.ident; });
    const bool byName = abilities_.routeHeader == "D202";
    putAll(data_.routes, std::move(upload.routes), [byName](const Route& one, const Route& other) {
        return byName ? one.name == other.name : one.number == other.number;
    });
    putAll(data_.tracks, std::move(upload.tracks),
           [](const Track& one, const Track& other) { return one.name == other.name; });
    numberRoutes();
}

void Holdings::numberRoutes() {
    if (abilities_.routeHeader != "D202") {
        return;
    }
    int number = 0;
    for (Route& route : data_.routes) {
        route.number = ++number;
    }
}

}  // namespace marlune::receivers::garmin
