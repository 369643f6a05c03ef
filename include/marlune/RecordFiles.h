// Files of records in the formats that other programs read and write: GPX 1.1, KML 2.2, GeoJSON
// (RFC 7946), CSV, and the control's own text lines. docs/formats.md tells what each of them keeps.
//
// Records go one by one into a RecordSink: writers are sinks, and readers fill one. So a file may
// be larger than the memory: readers need as much for a long file as for a short one.
//
// Texts and paths are UTF-8. What the system refuses raises std::system_error with its code; a file
// that is not of its format raises FileParseError. An object serves one thread.
#pragma once

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>

#include "marlune/Export.h"
#include "marlune/Records.h"

namespace marlune {

enum class FileFormat { gpx, kml, geojson, csv, lines };

// "gpx", "kml", "geojson", "csv", "lines", in any case.
MARLUNE_EXPORT std::optional<FileFormat> fileFormatNamed(std::string_view name);
// By the name's suffix, in any case: .gpx, .kml, .geojson or .json, .csv, .txt.
MARLUNE_EXPORT std::optional<FileFormat> fileFormatOf(std::string_view path);

// Where and why a file could not be parsed. Lines and positions count from 1; the position is in
// bytes within the line, the offset in bytes from the start of the file.
class MARLUNE_EXPORT FileParseError : public std::runtime_error {
public:
    struct Place {
        std::string source;  // the line's text, or its beginning
        std::size_t line = 0;
        std::size_t position = 0;
        std::size_t offset = 0;
    };

    FileParseError(const std::string& reason, Place place);

    [[nodiscard]] const Place& place() const { return *place_; }

private:
    std::shared_ptr<const Place> place_;  // shared, so that copying an error cannot throw
};

// Takes records in the order in which they come.
class MARLUNE_EXPORT RecordSink {
public:
    RecordSink() = default;
    RecordSink(const RecordSink&) = delete;
    RecordSink& operator=(const RecordSink&) = delete;
    virtual ~RecordSink() = default;

    virtual void waypoint(const WaypointRecord& /*waypoint*/) {}
    // The route of the points that follow; its own list of points is not looked at.
    virtual void route(const RouteRecord& /*head*/) {}
    virtual void routePoint(const RoutePointRecord& /*point*/) {}
    // The track of the points that follow, likewise.
    virtual void track(const TrackRecord& /*head*/) {}
    virtual void trackPoint(const TrackPointRecord& /*point*/) {}
    // Something that a file says and no record can hold, as a sentence for the user.
    virtual void remark(const std::string& /*text*/) {}
};

// Hands all records to the sink: waypoints, proximities, routes, tracks.
MARLUNE_EXPORT void forEachRecord(const Records& records, RecordSink& sink);

// Gathers what it is handed.
class MARLUNE_EXPORT RecordCollector : public RecordSink {
public:
    Records records;

    void waypoint(const WaypointRecord& waypoint) override;
    void route(const RouteRecord& head) override;
    void routePoint(const RoutePointRecord& point) override;
    void track(const TrackRecord& head) override;
    void trackPoint(const TrackPointRecord& point) override;
};

// What a file says about itself.
struct FileHead {
    struct Bounds {
        double south = 0;
        double west = 0;
        double north = 0;
        double east = 0;
    };

    std::string source;            // the receiver that the records came from
    std::optional<double> time;    // of the file's making, seconds since 1970-01-01 00:00:00 UTC
    std::optional<Bounds> bounds;  // GPX only
};

// The smallest area with all the positions; nothing without any.
MARLUNE_EXPORT std::optional<FileHead::Bounds> boundsOf(const Records& records);

// A sink that writes a file while the records come. GPX and KML want waypoints in front of routes,
// and routes in front of tracks.
class MARLUNE_EXPORT RecordWriter : public RecordSink {
public:
    // Ends the file. Without it the file is not whole.
    virtual void finish() = 0;
    // Records so far whose position is not on earth, or not known: no file can express them.
    [[nodiscard]] virtual std::size_t leftOut() const = 0;
};

// The stream stays the caller's and must outlive the writer, whose writes it judges: no error of
// the stream is raised here.
MARLUNE_EXPORT std::unique_ptr<RecordWriter> makeRecordWriter(FileFormat format, std::ostream& out,
                                                              const FileHead& head = {});

// Writes a file beside `path` under another name and renames it, so a failure leaves what was
// there. A device or a pipe is written directly. Returns how many records were left out.
MARLUNE_EXPORT std::size_t saveRecords(const Records& records, FileFormat format,
                                       const std::string& path, FileHead head = {});

// Reads gpx, csv and lines; std::invalid_argument for the other formats. No document type, entity
// or nesting makes reading cost more than some 100 MiB of memory: what would is no such file.
// Points without a position on earth are left out, with a remark.
MARLUNE_EXPORT void readRecords(const std::string& path, FileFormat format, RecordSink& sink);
// The same for a file's content.
MARLUNE_EXPORT void readRecordText(std::string_view content, FileFormat format, RecordSink& sink);

// The name that GPX files give a symbol of Garmin's numbering, empty when it has none, and the way
// back.
MARLUNE_EXPORT std::string symbolName(std::int16_t symbol);
MARLUNE_EXPORT std::optional<std::int16_t> symbolNamed(std::string_view name);

// Receivers of a certain age count the weeks since 1980 in ten bits: dates come out 1024 weeks too
// early, or twice that. Moves each time that lies more than 1024 weeks before the reference forward
// by whole 1024-week steps, not past the reference plus one year; the reference is in seconds since
// 1970-01-01 00:00:00 UTC. Returns how many were moved.
MARLUNE_EXPORT int fixRolledOverDates(Records& records, double reference);
// The same for one time.
MARLUNE_EXPORT bool fixRolledOverDate(std::optional<double>& time, double reference);
// When this library was built: a reference that needs no clock.
MARLUNE_EXPORT double buildDate();

}  // namespace marlune
