#include "garmin/UploadFiles.h"

#include <cstdint>
#include <fstream>
#include <ios>
#include <optional>
#include <utility>

#include "base/CodePage.h"
#include "base/FilePath.h"
#include "base/RunTimeError.h"
#include "base/SystemError.h"
#include "garmin/values/Fichier.h"
#include "host/Services.h"

namespace marlune {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// The file is there, but the system does not open it; its text tells why.
struct NotOpened {
    std::string text;
};

// The lines of one upload file, as UTF-8, with their commas replaced.
class UploadLines {
public:
    UploadLines(const Fichier& file, std::string commaReplacement)
        : commaReplacement_(std::move(commaReplacement)),
          file_(filePath(file.Chemin), std::ios::binary) {
        if (!file_) {
            throw NotOpened{systemErrorText(lastSystemError())};
        }
        isUtf8_ = readsAsUtf8();
        file_.clear();
        file_.seekg(isUtf8_ ? static_cast<std::streamoff>(kByteOrderMark.size()) : 0);
    }

    // The next line, valid until the next call; nothing at the file's end.
    std::optional<std::string_view> next() {
        if (!readRaw()) {
            return std::nullopt;
        }
        line_.clear();
        for (const char c : isUtf8_ ? raw_ : fromAnsi(raw_)) {
            if (c == ',') {
                line_ += commaReplacement_;
            } else {
                line_ += c;
            }
        }
        return line_;
    }

private:
    bool readRaw() {
        if (!std::getline(file_, raw_)) {
            if (file_.bad()) {
                throw RunTimeError(RunTimeError::fileNotFound);
            }
            return false;
        }
        if (raw_.ends_with('\r')) {
            raw_.pop_back();
        }
        return true;
    }

    // A character never goes beyond its line, so the file is judged line by line.
    bool readsAsUtf8() {
        if (!readRaw() || !raw_.starts_with(kByteOrderMark)) {
            return false;
        }
        do {
            if (!isUtf8(raw_)) {
                return false;
            }
        } while (readRaw());
        return true;
    }

    std::string commaReplacement_;
    std::ifstream file_;
    bool isUtf8_ = false;
    std::string raw_;
    std::string line_;
};

// The file of that name, or the one that the user chooses in its place.
std::optional<Fichier> uploadFile(Host& host, std::string_view path) {
    Fichier file{std::string(path)};
    if (!file.isThere()) {
        std::string chosen = host.chooseFile(".txt", host.applicationFolder());
        if (!chosen.empty()) {
            file.Chemin = std::move(chosen);
        }
    }
    return file.Existant(host) ? std::optional(file) : std::nullopt;
}

// Takes a record's line; false for one that is no such record.
template <class TakeLine>
bool takes(TakeLine& take, std::string_view line) {
    try {
        take(line);
        return true;
    } catch (const RunTimeError&) {
        return false;
    }
}

// Hands the lines that begin with one of the letters to take, up to the first that it refuses;
// those behind it are counted only. Good when all were taken.
template <class TakeLine>
FileReading readRecords(Host& host, std::string_view path, const UploadFormat& format,
                        std::string_view letters, TakeLine&& take) {
    FileReading reading;
    const std::optional<Fichier> file = uploadFile(host, path);
    if (!file) {
        return reading;
    }
    try {
        UploadLines lines(*file, format.decimalSeparator);
        for (int number = 1; const auto line = lines.next(); ++number) {
            if (line->empty() || letters.find(line->front()) == std::string_view::npos) {
                continue;
            }
            if (reading.leftOut > 0 || !takes(take, *line)) {
                reading.firstLeftOut = reading.leftOut > 0 ? reading.firstLeftOut : number;
                ++reading.leftOut;
            }
        }
        reading.good = reading.leftOut == 0;
    } catch (const RunTimeError& error) {
        reading.detail = error.what();  // what was gathered is kept
    } catch (const NotOpened& error) {
        reading.detail = error.text;
        host.messageBox(error.text, BoxIcon::critical);
    }
    return reading;
}

bool isGarmin(const UploadFormat& format) {
    return format.protocolCode.find("GRM") != std::string::npos;
}

// What the points of a track file have in common until the next header.
class TrackReader {
public:
    TrackReader(const UploadFormat& format, std::vector<TrackItem>& items)
        : format_(format), keepsHeaders_(keepsTrackHeaders(format)), items_(items) {}

    void takeHeader(std::string_view line) {
        TrkHeader header;
        // The index has the 16 bits of its field.
        header.SetAttributes(format_.trackHeaderType, line, static_cast<std::int16_t>(headers_++));
        name_ = header.getNom();
        first_ = true;
        if (keepsHeaders_) {
            items_.emplace_back(std::move(header));
        }
    }

    void takePoint(std::string_view line) {
        Trace point;
        point.SetName(name_);
        point.SetAttributes("", line);
        point.pFirst = point.pFirst || first_;
        items_.emplace_back(std::move(point));
        first_ = false;
    }

private:
    const UploadFormat& format_;
    bool keepsHeaders_;
    std::vector<TrackItem>& items_;
    std::string name_;
    std::uint32_t headers_ = 0;
    bool first_ = false;
};

}  // namespace

std::string_view waypointType(const UploadFormat& format) {
    return isGarmin(format) ? format.waypointType : format.protocolCode;
}

std::string_view routePointType(const UploadFormat& format) {
    if (!isGarmin(format)) {
        return "D108";
    }
    return format.routeWaypointType.empty() ? format.waypointType : format.routeWaypointType;
}

bool keepsTrackHeaders(const UploadFormat& format) {
    return isGarmin(format) && (format.trackProtocol == "A301" || format.trackProtocol == "A302");
}

FileReading readWaypointFile(Host& host, std::string_view path, const UploadFormat& format,
                             std::vector<Waypoint>& waypoints) {
    waypoints.clear();
    const std::string_view type = waypointType(format);
    FileReading reading = readRecords(host, path, format, "W", [&](std::string_view line) {
        Waypoint waypoint;
        waypoint.SetAttributes(type, line);
        waypoints.push_back(std::move(waypoint));
    });
    reading.good = !waypoints.empty();
    return reading;
}

FileReading readRouteFile(Host& host, std::string_view path, const UploadFormat& format,
                          std::vector<Route>& routes) {
    routes.clear();
    const std::string_view type = routePointType(format);
    return readRecords(host, path, format, "RW", [&](std::string_view line) {
        if (line.front() == 'R') {
            Route route;
            route.SetAttributes(line);
            routes.push_back(std::move(route));
            return;
        }
        Waypoint point;
        point.SetAttributes(type, line);
        if (routes.empty()) {
            throw RunTimeError(RunTimeError::index);
        }
        routes.back().AddWaypt(std::move(point));
    });
}

FileReading readTrackFile(Host& host, std::string_view path, const UploadFormat& format,
                          std::vector<TrackItem>& items) {
    items.clear();
    TrackReader reader(format, items);
    FileReading reading = readRecords(host, path, format, "NT", [&](std::string_view line) {
        if (line.front() == 'N') {
            reader.takeHeader(line);
        } else {
            reader.takePoint(line);
        }
    });
    reading.good = !items.empty();
    return reading;
}

}  // namespace marlune
