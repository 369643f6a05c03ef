#include "storage/StorageTransfers.h"

#include <algorithm>
#include <limits>
#include <system_error>

#include "base/FilePath.h"
#include "garmin/Messages.h"
#include "storage/DriveFolder.h"
#include "storage/Messages.h"
#include "storage/NoCase.h"
#include "storage/WholeFile.h"

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
    GpxKind gpx;
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
    .gpx = GpxKind::waypoints,
    .kind = TransferKind::waypoints,
    .letter = "W",
    .header = text::kWaypointsHeader,
    .nothing = text::kNoWaypoints,
    .uploadLabel = text::kUploadWaypoints,
    .data = &GpsControlEvents::WayptData,
};

const StorageTransfers::Kind StorageTransfers::kTracks = {
    .gpx = GpxKind::tracks,
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
    .gpx = GpxKind::routes,
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

bool StorageTransfers::download(const Kind& kind) {
    TransferLog log(services_, kind.kind, TransferDirection::download);
    const std::vector<std::string> lines = readFolder(kind.gpx, log);
    if (lines.empty()) {
        services_.host.messageBox(kind.nothing, BoxIcon::information);
        log.end(Ending::nothingThere);
        return false;
    }
    log->announced = static_cast<int>(lines.size());
    services_.events.StartDownload(kind.letter, shortNumber(lines.size()), kind.header);
    std::size_t delivered = 0;
    while (delivered < lines.size() && mayGoOn()) {
        const std::string& line = lines[delivered];
        raise(kind, ++delivered, line, "D");
    }
    services_.events.EndDownload(kind.letter);
    log->transferred = static_cast<int>(delivered);
    log.end(delivered == lines.size() ? Ending::complete : endingOfStop());
    return delivered > 0;
}

Ending StorageTransfers::endingOfStop() const {
    return endingOfSilentLine(services_.host, state_.connected && unit_.isOpen(), false);
}

std::vector<std::string> StorageTransfers::readFolder(GpxKind kind, TransferLog& log) {
    std::vector<std::string> lines;
    const fs::path root = unit_.root();
    if (!unit_.outputFolder()) {
        return lines;
    }
    std::vector<fs::path> files;
    std::error_code error;
    fs::directory_iterator entry(*unit_.outputFolder(), error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        if (isGpxFile(root, entry->path())) {
            files.push_back(entry->path());
        }
    }
    if (error) {
        traceReadError(services_.trace, pathText(*unit_.outputFolder()), std::system_error(error));
    }
    std::sort(files.begin(), files.end());
    GpxReader reader(kind, services_.host.decimalSeparator());
    for (const fs::path& file : files) {
        readFile(reader, file, lines, log);
    }
    return lines;
}

void StorageTransfers::readFile(GpxReader& reader, const fs::path& file,
                                std::vector<std::string>& lines, TransferLog& log) {
    const std::string path = pathText(file);
    try {
        std::vector<std::string> more = reader.readFile(path);
        std::move(more.begin(), more.end(), std::back_inserter(lines));
    } catch (const GpxParseError& error) {
        traceParseError(services_.trace, path, error);
        ++log->undecodable;
    } catch (const std::system_error& error) {
        traceReadError(services_.trace, path, error);
        ++log->undecodable;
    }
}

bool StorageTransfers::SendWaypts(const Upload<Waypoint>& upload) {
    const char separator = services_.host.decimalSeparator();
    std::vector<std::string> lines;
    lines.reserve(upload.records.size());
    for (const Waypoint& waypoint : upload.records) {
        lines.push_back(waypoint.getIdent(separator));
    }
    return send(kWaypoints, lines, upload.path, upload.reading);
}

bool StorageTransfers::SendRoutes(const Upload<Route>& upload) {
    const char separator = services_.host.decimalSeparator();
    std::vector<std::string> lines;
    for (const Route& route : upload.records) {
        lines.push_back(route.getIdent());
        for (const Waypoint& point : route.Waypoints()) {
            lines.push_back(point.getIdent(separator));
        }
    }
    return send(kRoutes, lines, upload.path, upload.reading);
}

bool StorageTransfers::SendTraces(const Upload<TrackItem>& upload) {
    const char separator = services_.host.decimalSeparator();
    std::vector<std::string> lines;
    lines.reserve(upload.records.size());
    for (const TrackItem& item : upload.records) {
        const auto* header = std::get_if<TrkHeader>(&item);
        lines.push_back(header != nullptr ? header->getIdent()
                                          : std::get<Trace>(item).getIdent(separator));
    }
    return send(kTracks, lines, upload.path, upload.reading);
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

bool StorageTransfers::save(const GpxWriter& writer, const fs::path& file, TransferLog& log) const {
    try {
        writer.save(pathText(file));
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
                            const std::string& path, const FileReading& reading) {
    TransferLog log(services_, kind.kind, TransferDirection::upload);
    reportReading(log, reading);
    log->announced = static_cast<int>(lines.size());
    const std::optional<fs::path> file = target(path, log);
    if (!file) {
        return log.end(Ending::fileError);
    }
    services_.events.StartUpload(kind.letter, shortNumber(lines.size()), kind.uploadLabel);
    GpxWriter writer;
    for (std::size_t i = 0; i < lines.size() && mayGoOn(); ++i) {
        raise(kind, i + 1, lines[i], "U");
        writer.addLine(lines[i]);
    }
    const bool goesOn = mayGoOn();
    const bool written = goesOn && save(writer, *file, log);
    services_.events.EndUpload(kind.letter);
    if (written) {
        log->transferred = static_cast<int>(lines.size() - writer.leftOut());
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
