#include "words/UploadFile.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <memory>
#include <optional>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "base/CodePage.h"
#include "words/Phrases.h"

namespace marlune::words {
namespace {

// The format of a file that is no upload file yet.
std::optional<FileFormat> formatToConvert(const std::string& path) {
    const auto format = fileFormatOf(path);
    return format == FileFormat::gpx || format == FileFormat::csv ? format : std::nullopt;
}

const Phrase& kindName(GpxKind kind) {
    switch (kind) {
        case GpxKind::waypoints:
            return phrase::kWaypoints;
        case GpxKind::routes:
            return phrase::kRoutes;
        case GpxKind::tracks:
            break;
    }
    return phrase::kTracks;
}

// Writes the records of one kind as the lines of an upload file, as they are read.
class LinesOfKind : public RecordSink {
public:
    LinesOfKind(GpxKind kind, std::ostream& out)
        : kind_(kind), lines_(makeRecordWriter(FileFormat::lines, out)) {}

    std::size_t count = 0;
    std::vector<std::string> remarks;

    void waypoint(const WaypointRecord& waypoint) override {
        if (counts(GpxKind::waypoints)) {
            lines_->waypoint(waypoint);
        }
    }
    void route(const RouteRecord& head) override {
        if (counts(GpxKind::routes)) {
            lines_->route(head);
        }
    }
    void routePoint(const RoutePointRecord& point) override {
        if (counts(GpxKind::routes)) {
            lines_->routePoint({point.point, std::nullopt});
        }
    }
    void track(const TrackRecord& head) override {
        if (counts(GpxKind::tracks)) {
            lines_->track(head);
        }
    }
    void trackPoint(const TrackPointRecord& point) override {
        if (counts(GpxKind::tracks)) {
            lines_->trackPoint(point);
        }
    }
    void remark(const std::string& text) override { remarks.push_back(text); }

private:
    bool counts(GpxKind kind) {
        count += kind == kind_ ? 1 : 0;
        return kind == kind_;
    }

    GpxKind kind_;
    std::unique_ptr<RecordWriter> lines_;
};

void readOrTell(const std::string& path, FileFormat format, RecordSink& sink) {
    try {
        readRecords(path, format, sink);
    } catch (const FileParseError& error) {
        throw std::runtime_error(path + ":" + std::to_string(error.place().line) + ":" +
                                 std::to_string(error.place().position) + ": " + error.what());
    } catch (const std::system_error& error) {
        throw std::runtime_error(path + ": " + error.code().message());
    }
}

constexpr const char* kByteOrderMark = "\xEF\xBB\xBF";

bool isAscii(const std::string& text) {
    return std::all_of(text.begin(), text.end(), [](char c) { return (c & 0x80) == 0; });
}

// The control's own box for a file that is not there names no file, and comes only once a receiver
// is connected.
void requireReadable(const std::string& path, const Speech& say) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (std::filesystem::is_directory(status)) {
        throw std::runtime_error(say(phrase::kIsFolder, {path}));
    }
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        throw std::runtime_error(say(phrase::kNoRegularFile, {path}));
    }
    if (access(path.c_str(), R_OK) != 0) {
        throw std::runtime_error(path + ": " + std::system_category().message(errno));
    }
}

// Whether a file is UTF-8 beyond ASCII without the mark that tells the control so: what a download
// printed, for one. In Windows-1252 such a file would hold nonsense.
bool isUnmarkedUtf8(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    bool beyondAscii = false;
    bool first = true;
    for (std::string line; std::getline(file, line); first = false) {
        if ((first && line.starts_with(kByteOrderMark)) || !isUtf8(line)) {
            return false;
        }
        beyondAscii = beyondAscii || !isAscii(line);
    }
    return beyondAscii;
}

// A new folder of a name that nobody else has.
std::filesystem::path makeTemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "marlune-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) {
        throw std::system_error(errno, std::system_category(), name);
    }
    return name;
}

}  // namespace

UploadFile::UploadFile(const std::string& path, GpxKind kind, const Speech& say)
    : say_(say), path_(path) {
    requireReadable(path, say);
    if (const auto format = formatToConvert(path)) {
        convert(path, *format, kind);
    } else if (isUnmarkedUtf8(path)) {
        const std::ifstream text(path, std::ios::binary);
        write([&text](std::ostream& out) { out << text.rdbuf(); });
    }
}

UploadFile::~UploadFile() {
    removeFolder();
}

void UploadFile::removeFolder() {
    if (!folder_.empty()) {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
}

void UploadFile::convert(const std::string& file, FileFormat format, GpxKind kind) {
    keepsLines_ = false;
    std::size_t count = 0;
    write([&](std::ostream& out) {
        LinesOfKind lines(kind, out);
        readOrTell(file, format, lines);
        count = lines.count;
        remarks_ = std::move(lines.remarks);
    });
    if (count == 0) {
        removeFolder();
        throw std::runtime_error(say_(phrase::kHoldsNone, {file, say_(kindName(kind))}));
    }
}

void UploadFile::write(const std::function<void(std::ostream&)>& writeText) {
    folder_ = makeTemporaryFolder();
    // The user's own name: a unit that is a drive keeps what it is sent under it.
    const auto file = folder_ / std::filesystem::path(path_).stem();
    path_ = file.string() + ".txt";
    std::ofstream out(path_, std::ios::binary);
    out << kByteOrderMark;  // with this mark the control takes the file for UTF-8
    try {
        writeText(out);
    } catch (...) {
        removeFolder();  // the destructor does not run
        throw;
    }
    out.close();
    if (!out) {
        removeFolder();
        throw std::runtime_error(say_(phrase::kNotWritten, {path_}));
    }
}

}  // namespace marlune::words
