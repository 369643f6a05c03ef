#include "cli/UploadFile.h"

#include <strings.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <vector>

#include "base/CodePage.h"
#include "cli/Phrases.h"

namespace marlune::cli {
namespace {

bool isGpx(const std::string& path) {
    const std::string extension = std::filesystem::path(path).extension().string();
    return strcasecmp(extension.c_str(), ".gpx") == 0;
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

std::vector<std::string> readLines(const std::string& path, GpxKind kind) {
    try {
        return GpxReader(kind).readFile(path);
    } catch (const GpxParseError& error) {
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
    if (isGpx(path)) {
        convert(path, kind);
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

void UploadFile::convert(const std::string& gpxFile, GpxKind kind) {
    const std::vector<std::string> lines = readLines(gpxFile, kind);
    if (lines.empty()) {
        throw std::runtime_error(say_(phrase::kHoldsNone, {gpxFile, say_(kindName(kind))}));
    }
    keepsLines_ = false;
    write([&lines](std::ostream& out) {
        for (const std::string& line : lines) {
            out << line << "\r\n";
        }
    });
}

void UploadFile::write(const std::function<void(std::ostream&)>& writeText) {
    folder_ = makeTemporaryFolder();
    // The user's own name: a unit that is a drive keeps what it is sent under it.
    const auto file = folder_ / std::filesystem::path(path_).stem();
    path_ = file.string() + ".txt";
    std::ofstream out(path_, std::ios::binary);
    out << kByteOrderMark;  // with this mark the control takes the file for UTF-8
    writeText(out);
    out.close();
    if (!out) {
        removeFolder();
        throw std::runtime_error(say_(phrase::kNotWritten, {path_}));
    }
}

}  // namespace marlune::cli
