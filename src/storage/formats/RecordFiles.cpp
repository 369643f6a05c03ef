#include "marlune/RecordFiles.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>

#include "base/FilePath.h"
#include "base/NoCase.h"
#include "storage/formats/RecordValues.h"
#include "storage/formats/SaveFile.h"
#include "storage/formats/Writers.h"

namespace marlune {
namespace {

struct FormatName {
    std::string_view name;
    FileFormat format;
};

constexpr auto kFormats = std::to_array<FormatName>({{"gpx", FileFormat::gpx},
                                                     {"kml", FileFormat::kml},
                                                     {"geojson", FileFormat::geojson},
                                                     {"csv", FileFormat::csv},
                                                     {"lines", FileFormat::lines}});

constexpr auto kSuffixes = std::to_array<FormatName>({{".gpx", FileFormat::gpx},
                                                      {".kml", FileFormat::kml},
                                                      {".geojson", FileFormat::geojson},
                                                      {".json", FileFormat::geojson},
                                                      {".csv", FileFormat::csv},
                                                      {".txt", FileFormat::lines}});

template <class Table>
std::optional<FileFormat> find(const Table& table, std::string_view name) {
    const auto* const found = std::find_if(table.begin(), table.end(), [&](const FormatName& each) {
        return equalsNoCase(each.name, name);
    });
    return found == table.end() ? std::nullopt : std::optional(found->format);
}

// Grows an area by the records' positions.
class BoundsFinder : public RecordSink {
public:
    std::optional<FileHead::Bounds> bounds;

    void waypoint(const WaypointRecord& waypoint) override {
        add(waypoint.latitude, waypoint.longitude);
    }
    void routePoint(const RoutePointRecord& point) override { waypoint(point.point); }
    void trackPoint(const TrackPointRecord& point) override {
        add(point.latitude, point.longitude);
    }

private:
    void add(double latitude, double longitude) {
        const auto at = filePosition(latitude, longitude);
        if (!at) {
            return;
        }
        if (!bounds) {
            bounds = {at->latitude, at->longitude, at->latitude, at->longitude};
        }
        bounds->south = std::min(bounds->south, at->latitude);
        bounds->north = std::max(bounds->north, at->latitude);
        bounds->west = std::min(bounds->west, at->longitude);
        bounds->east = std::max(bounds->east, at->longitude);
    }
};

}  // namespace

std::optional<FileFormat> fileFormatNamed(std::string_view name) {
    return find(kFormats, name);
}

std::optional<FileFormat> fileFormatOf(std::string_view path) {
    return find(kSuffixes, pathText(filePath(path).extension()));
}

FileParseError::FileParseError(const std::string& reason, Place place)
    : std::runtime_error(reason), place_(std::make_shared<const Place>(std::move(place))) {}

void forEachRecord(const Records& records, RecordSink& sink) {
    for (const auto* list : {&records.waypoints, &records.proximities}) {
        for (const WaypointRecord& waypoint : *list) {
            sink.waypoint(waypoint);
        }
    }
    for (const RouteRecord& route : records.routes) {
        sink.route(route);
        for (const RoutePointRecord& point : route.points) {
            sink.routePoint(point);
        }
    }
    for (const TrackRecord& track : records.tracks) {
        sink.track(track);
        for (const TrackPointRecord& point : track.points) {
            sink.trackPoint(point);
        }
    }
}

void RecordCollector::waypoint(const WaypointRecord& waypoint) {
    records.waypoints.push_back(waypoint);
}

void RecordCollector::route(const RouteRecord& head) {
    records.routes.push_back({head.number, head.name, {}});
}

void RecordCollector::routePoint(const RoutePointRecord& point) {
    if (records.routes.empty()) {
        records.routes.emplace_back();
    }
    records.routes.back().points.push_back(point);
}

void RecordCollector::track(const TrackRecord& head) {
    records.tracks.push_back({head.name, head.display, head.colour, {}});
}

void RecordCollector::trackPoint(const TrackPointRecord& point) {
    if (records.tracks.empty()) {
        records.tracks.emplace_back();
    }
    records.tracks.back().points.push_back(point);
}

std::optional<FileHead::Bounds> boundsOf(const Records& records) {
    BoundsFinder finder;
    forEachRecord(records, finder);
    return finder.bounds;
}

std::unique_ptr<RecordWriter> makeRecordWriter(FileFormat format, std::ostream& out,
                                               const FileHead& head) {
    switch (format) {
        case FileFormat::gpx:
            return makeGpxWriter(out, head);
        case FileFormat::kml:
            return makeKmlWriter(out, head);
        case FileFormat::geojson:
            return makeGeoJsonWriter(out, head);
        case FileFormat::csv:
            return makeCsvWriter(out);
        case FileFormat::lines:
            break;
    }
    return makeLineWriter(out);
}

std::size_t saveRecords(const Records& records, FileFormat format, const std::string& path,
                        FileHead head) {
    if (!head.bounds) {
        head.bounds = boundsOf(records);
    }
    std::size_t leftOut = 0;
    saveFile(path, [&](std::ostream& out) {
        const auto writer = makeRecordWriter(format, out, head);
        forEachRecord(records, *writer);
        writer->finish();
        leftOut = writer->leftOut();
    });
    return leftOut;
}

}  // namespace marlune
