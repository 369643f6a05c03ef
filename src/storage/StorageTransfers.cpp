#include "storage/StorageTransfers.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <system_error>
#include <utility>

#include "base/FilePath.h"
#include "base/NoCase.h"
#include "garmin/Messages.h"
#include "garmin/records/Values.h"
#include "marlune/RecordFiles.h"
#include "resources/SymbolTable.h"
#include "storage/DriveFolder.h"
#include "storage/EventLines.h"
#include "storage/Messages.h"
#include "storage/WholeFile.h"
#include "storage/formats/SaveFile.h"

namespace marlune {
namespace {

namespace fs = std::filesystem;

using LineEvent = void (GpsControlEvents::*)(std::int16_t, const std::string&, const std::string&);

// Counts and numbers of events have 16 bits; a track of more points goes on at the last one.
std::int16_t shortNumber(std::size_t number) {
    constexpr std::size_t kLast = std::numeric_limits<std::int16_t>::max();
    return static_cast<std::int16_t>(std::min(number, kLast));
}

// Regular files only: opening anything else could wait for ever.
bool isGpxFile(const fs::path& root, const fs::path& path) {
    std::error_code error;
    return equalsNoCase(pathText(path.extension()), ".gpx") && fs::is_regular_file(path, error) &&
           staysInside(root, path);
}

// The host's file as a name that the unit's file system takes.
std::string nameOnUnit(const std::string& path) {
    std::string name = pathText(filePath(path).stem());
    for (char& c : name) {
        const bool forbidden = std::string_view("<>:\"/\\|?*").find(c) != std::string_view::npos;
        c = forbidden || static_cast<unsigned char>(c) < ' ' ? '_' : c;
    }
    name.erase(name.find_last_not_of(" .") + 1);
    return (name.empty() ? "Marlune" : name) + ".gpx";
}

}  // namespace

// What differs between the kinds of records.
struct StorageTransfers::Kind {
    TransferKind kind;
    const char* letter;
    const char* header;
    const char* nothing;
    const char* uploadLabel;
    char headLetter = 0;  // lines of this letter raise `head`, the others `data`
    LineEvent head = nullptr;
    LineEvent data;
};

const StorageTransfers::Kind StorageTransfers::kWaypoints = {
    .kind = TransferKind::waypoints,
    .letter = "W",
    .header = text::kWaypointsHeader,
    .nothing = text::kNoWaypoints,
    .uploadLabel = text::kUploadWaypoints,
    .data = &GpsControlEvents::WayptData,
};

const StorageTransfers::Kind StorageTransfers::kTracks = {
    .kind = TransferKind::tracks,
    .letter = "T",
    .header = text::kTracksHeader,
    .nothing = text::kNoTracks,
    .uploadLabel = text::kUploadTracks,
    .headLetter = 'N',
    .head = &GpsControlEvents::TrackHeader,
    .data = &GpsControlEvents::TrackData,
};

const StorageTransfers::Kind StorageTransfers::kRoutes = {
    .kind = TransferKind::routes,
    .letter = "R",
    .header = text::kRoutesHeader,
    .nothing = text::kNoRoutes,
    .uploadLabel = text::kUploadRoutes,
    .headLetter = 'R',
    .head = &GpsControlEvents::RouteHeader,
    .data = &GpsControlEvents::RouteData,
};

bool StorageTransfers::getWaypts() {
    return download(kWaypoints);
}

bool StorageTransfers::getTracks() {
    return download(kTracks);
}

bool StorageTransfers::GetRoutes() {
    return download(kRoutes);
}

bool StorageTransfers::mayGoOn() const {
    return state_.connected && unit_.isOpen() && !services_.host.stopRequested();
}

void StorageTransfers::raise(const Kind& kind, std::size_t number, const std::string& line,
                             const std::string& sens) {
    const LineEvent event = line.front() == kind.headLetter ? kind.head : kind.data;
    (services_.events.*event)(shortNumber(number), line, sens);
}

// Hands records to the host, one event each, and keeps them as its values. Once the host wants no
// more, the rest is passed over.
class StorageTransfers::Delivery : public RecordSink {
public:
    // lines: what the events carry, where that is more than the records tell.
    Delivery(StorageTransfers& transfers, const Kind& kind, std::string sens,
             const std::vector<std::string>* lines = nullptr)
        : transfers_(transfers), kind_(kind), sens_(std::move(sens)), lines_(lines) {}

    [[nodiscard]] std::size_t count() const { return count_; }

    void waypoint(const WaypointRecord& waypoint) override {
        deliver([&] { return eventLine(waypoint, separator()); },
                [&] { kept_.records.waypoints.push_back(waypoint); });
    }
    void route(const RouteRecord& head) override {
        const auto line = [&] { return routeEventLine(head.number, head.name); };
        deliver(line, [&] { kept_.records.routes.push_back({head.number, head.name, {}}); });
    }
    void routePoint(const RoutePointRecord& point) override {
        deliver([&] { return eventLine(point.point, separator()); },
                [&] { kept_.records.routes.back().points.push_back(point); });
    }
    void track(const TrackRecord& head) override {
        const TrackRecord track = {head.name, head.display, head.colour, {}};
        deliver([&] { return trackEventLine(head.name); },
                [&] { kept_.records.tracks.push_back(track); });
    }
    void trackPoint(const TrackPointRecord& point) override {
        deliver([&] { return eventLine(point, separator()); },
                [&] { addPoint(kept_.records, point); });
    }

private:
    [[nodiscard]] char separator() const { return kept_.host.decimalSeparator(); }

    template <class MakeLine, class Keep>
    void deliver(const MakeLine& makeLine, const Keep& keep) {
        if (stopped_ || !transfers_.mayGoOn()) {
            stopped_ = true;
            return;
        }
        keep();
        const std::string line = lines_ != nullptr ? (*lines_)[count_] : makeLine();
        transfers_.raise(kind_, ++count_, line, sens_);
    }

    StorageTransfers& transfers_;
    Services& kept_ = transfers_.services_;
    const Kind& kind_;
    std::string sens_;
    const std::vector<std::string>* lines_;
    std::size_t count_ = 0;
    bool stopped_ = false;
};

namespace {

// Gathers the records of one kind from a file. Routes are numbered on from those of other files.
class KindCollector : public RecordCollector {
public:
    KindCollector(TransferKind kind, std::size_t routesBefore)
        : kind_(kind), routesBefore_(routesBefore) {}

    void waypoint(const WaypointRecord& waypoint) override {
        if (counts(TransferKind::waypoints)) {
            RecordCollector::waypoint(waypoint);
        }
    }
    void route(const RouteRecord& head) override {
        if (counts(TransferKind::routes)) {
            RecordCollector::route(head);
            records.routes.back().number = static_cast<int>(routesBefore_ + records.routes.size());
        }
    }
    void routePoint(const RoutePointRecord& point) override {
        if (counts(TransferKind::routes)) {
            RecordCollector::routePoint(point);
        }
    }
    void track(const TrackRecord& head) override {
        if (counts(TransferKind::tracks)) {
            RecordCollector::track(head);
        }
    }
    void trackPoint(const TrackPointRecord& point) override {
        if (counts(TransferKind::tracks)) {
            RecordCollector::trackPoint(point);
        }
    }

private:
    [[nodiscard]] bool counts(TransferKind kind) const { return kind == kind_; }

    TransferKind kind_;
    std::size_t routesBefore_;
};

template <class Record>
void append(std::vector<Record>& all, std::vector<Record>& more) {
    std::move(more.begin(), more.end(), std::back_inserter(all));
}

std::size_t countOf(const Records& records) {
    std::size_t count = records.waypoints.size();
    for (const RouteRecord& route : records.routes) {
        count += 1 + route.points.size();
    }
    for (const TrackRecord& track : records.tracks) {
        count += 1 + track.points.size();
    }
    return count;
}

// Of the upload file's lines, in which 0, 18 and 0 stand for what nobody said.
WaypointRecord sentRecordOf(const Waypoint& waypoint) {
    WaypointRecord record = recordOf(waypoint);
    if (waypoint.altitude == 0) {
        record.altitude.reset();
    }
    if (waypoint.symbol == kDefaultSymbol) {
        record.symbol.reset();
    }
    if (waypoint.display == 0) {
        record.display.reset();
    }
    return record;
}

TrackPointRecord sentRecordOf(const Trace& point) {
    TrackPointRecord record = recordOf(point);
    if (point.altitude == 0) {
        record.altitude.reset();
    }
    return record;
}

void clear(Records& records, TransferKind kind) {
    if (kind == TransferKind::waypoints) {
        records.waypoints.clear();
    } else if (kind == TransferKind::tracks) {
        records.tracks.clear();
    } else {
        records.routes.clear();
    }
}

}  // namespace

bool StorageTransfers::download(const Kind& kind) {
    TransferLog log(services_, kind.kind, TransferDirection::download);
    clear(services_.records, kind.kind);
    const Records found = readFolders(kind, log);
    const std::size_t count = countOf(found);
    if (count == 0) {
        services_.host.messageBox(kind.nothing, BoxIcon::information);
        log.end(Ending::nothingThere);
        return false;
    }
    log->announced = static_cast<int>(count);
    services_.events.StartDownload(kind.letter, shortNumber(count), kind.header);
    Delivery delivery(*this, kind, "D");
    forEachRecord(found, delivery);
    services_.events.EndDownload(kind.letter);
    log->transferred = static_cast<int>(delivery.count());
    log.end(delivery.count() == count ? Ending::complete : endingOfStop());
    return delivery.count() > 0;
}

Ending StorageTransfers::endingOfStop() const {
    return endingOfSilentLine(services_.host, state_.connected && unit_.isOpen(), false);
}

// The files of the unit's folders, in which Current holds what the unit is writing.
std::vector<fs::path> StorageTransfers::files() const {
    std::vector<fs::path> files;
    for (const fs::path& folder : unit_.outputFolders()) {
        addFiles(folder, files);
        std::error_code ignored;
        const auto current = insideDrive(folder, "Current");
        if (current && fs::is_directory(*current, ignored)) {
            addFiles(*current, files);
        }
    }
    return files;
}

// In the order of their names; a file that two folders lead to is there once.
void StorageTransfers::addFiles(const fs::path& folder, std::vector<fs::path>& files) const {
    const fs::path root = unit_.root();
    std::vector<fs::path> more;
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const bool known = std::any_of(files.begin(), files.end(), [&](const fs::path& file) {
            std::error_code ignored;
            return fs::equivalent(file, entry->path(), ignored);
        });
        if (!known && isGpxFile(root, entry->path())) {
            more.push_back(entry->path());
        }
    }
    if (error) {
        traceReadError(services_.trace, pathText(folder), std::system_error(error));
    }
    std::sort(more.begin(), more.end());
    files.insert(files.end(), more.begin(), more.end());
}

Records StorageTransfers::readFolders(const Kind& kind, TransferLog& log) {
    Records all;
    for (const fs::path& file : files()) {
        const std::string path = pathText(file);
        try {
            KindCollector found(kind.kind, all.routes.size());
            readRecords(path, FileFormat::gpx, found);
            append(all.waypoints, found.records.waypoints);
            append(all.routes, found.records.routes);
            append(all.tracks, found.records.tracks);
            continue;
        } catch (const FileParseError& error) {
            traceParseError(services_.trace, path, error);
        } catch (const std::system_error& error) {
            traceReadError(services_.trace, path, error);
        }
        ++log->undecodable;
    }
    return all;
}

bool StorageTransfers::SendWaypts(const Upload<Waypoint>& upload) {
    const char separator = services_.host.decimalSeparator();
    std::vector<std::string> lines;
    Records records;
    lines.reserve(upload.records.size());
    for (const Waypoint& waypoint : upload.records) {
        lines.push_back(waypoint.getIdent(separator));
        records.waypoints.push_back(sentRecordOf(waypoint));
    }
    return send(kWaypoints, lines, records, upload.path, upload.reading);
}

bool StorageTransfers::SendRoutes(const Upload<Route>& upload) {
    const char separator = services_.host.decimalSeparator();
    std::vector<std::string> lines;
    Records records;
    for (const Route& route : upload.records) {
        lines.push_back(route.getIdent());
        records.routes.push_back(recordOf(route));
        for (const Waypoint& point : route.Waypoints()) {
            lines.push_back(point.getIdent(separator));
            records.routes.back().points.push_back({sentRecordOf(point), std::nullopt});
        }
    }
    return send(kRoutes, lines, records, upload.path, upload.reading);
}

bool StorageTransfers::SendTraces(const Upload<TrackItem>& upload) {
    const char separator = services_.host.decimalSeparator();
    std::vector<std::string> lines;
    Records records;
    lines.reserve(upload.records.size());
    for (const TrackItem& item : upload.records) {
        if (const auto* header = std::get_if<TrkHeader>(&item)) {
            lines.push_back(header->getIdent());
            records.tracks.emplace_back().name = header->getNom();
        } else {
            const auto& point = std::get<Trace>(item);
            lines.push_back(point.getIdent(separator));
            addPoint(records, sentRecordOf(point));
        }
    }
    return send(kTracks, lines, records, upload.path, upload.reading);
}

// The file on the unit, in the name's own case there. A box tells why there can be none.
std::optional<fs::path> StorageTransfers::target(const std::string& path, TransferLog& log) const {
    const auto& folder = unit_.inputFolder();
    std::error_code ignored;
    auto reason = std::errc::no_such_file_or_directory;
    if (folder && fs::is_directory(*folder, ignored)) {
        if (auto file = insideDrive(*folder, nameOnUnit(path))) {
            return file;
        }
        reason = std::errc::permission_denied;
    }
    showError(std::system_error(std::make_error_code(reason)), log);
    return std::nullopt;
}

bool StorageTransfers::save(const Records& records, const fs::path& file, TransferLog& log,
                            std::size_t& leftOut) const {
    try {
        saveFile(
            pathText(file),
            [&](std::ostream& out) {
                const auto writer =
                    makeRecordWriter(FileFormat::gpx, out, {{}, {}, boundsOf(records)});
                forEachRecord(records, *writer);
                writer->finish();
                leftOut = writer->leftOut();
            },
            unit_.replacement());
        return true;
    } catch (const std::system_error& error) {
        showError(error, log);
        return false;
    }
}

void StorageTransfers::showError(const std::system_error& error, TransferLog& log) const {
    log->detail = systemText(error);
    services_.host.messageBox(log->detail, BoxIcon::critical);
}

bool StorageTransfers::send(const Kind& kind, const std::vector<std::string>& lines,
                            const Records& records, const std::string& path,
                            const FileReading& reading) {
    TransferLog log(services_, kind.kind, TransferDirection::upload);
    reportReading(log, reading);
    log->announced = static_cast<int>(lines.size());
    clear(services_.records, kind.kind);
    const std::optional<fs::path> file = target(path, log);
    if (!file) {
        return log.end(Ending::fileError);
    }
    services_.events.StartUpload(kind.letter, shortNumber(lines.size()), kind.uploadLabel);
    Delivery delivery(*this, kind, "U", &lines);
    forEachRecord(records, delivery);
    const bool goesOn = mayGoOn();
    std::size_t leftOut = 0;
    const bool written = goesOn && save(records, *file, log, leftOut);
    services_.events.EndUpload(kind.letter);
    if (written) {
        log->transferred = static_cast<int>(lines.size() - leftOut);
    }
    return log.end(written ? Ending::complete : goesOn ? Ending::fileError : endingOfStop());
}

UploadFormat storageUploadFormat(const std::string& protocolCode,
                                 const std::string& decimalSeparator) {
    return {.protocolCode = protocolCode,
            .waypointType = "D108",
            .routeWaypointType = "",
            .trackProtocol = "A301",
            .trackHeaderType = "D310",
            .decimalSeparator = decimalSeparator};
}

std::string storageProtocols(const ConnectionState& state) {
    return storagetext::kProtocols + state.description;
}

}  // namespace marlune
