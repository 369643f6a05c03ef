#include "cli/UploadFile.h"

#include <strings.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>
#include <vector>

namespace marlune::cli {
namespace {

bool isGpx(const std::string& path) {
    const std::string extension = std::filesystem::path(path).extension().string();
    return strcasecmp(extension.c_str(), ".gpx") == 0;
}

const char* kindName(GpxKind kind) {
    switch (kind) {
        case GpxKind::waypoints:
            return "waypoints";
        case GpxKind::routes:
            return "routes";
        case GpxKind::tracks:
            break;
    }
    return "tracks";
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

// A new file of a name that nobody else has.
std::string makeTemporaryFile() {
    std::string name = (std::filesystem::temp_directory_path() / "marlune-XXXXXX").string();
    const int descriptor = mkstemp(name.data());
    if (descriptor < 0) {
        throw std::system_error(errno, std::system_category(), name);
    }
    close(descriptor);
    return name;
}

}  // namespace

UploadFile::UploadFile(const std::string& path, GpxKind kind) : path_(path) {
    if (isGpx(path)) {
        convert(path, kind);
    }
}

UploadFile::~UploadFile() {
    if (temporary_) {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }
}

void UploadFile::convert(const std::string& gpxFile, GpxKind kind) {
    const std::vector<std::string> lines = readLines(gpxFile, kind);
    if (lines.empty()) {
        throw std::runtime_error(gpxFile + ": the file holds no " + kindName(kind));
    }
    path_ = makeTemporaryFile();
    temporary_ = true;
    std::ofstream out(path_, std::ios::binary);
    out << "\xEF\xBB\xBF";  // with this mark the control takes the file for UTF-8
    for (const std::string& line : lines) {
        out << line << "\r\n";
    }
    out.close();
    if (!out) {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
        throw std::runtime_error(path_ + ": the file cannot be written");
    }
}

}  // namespace marlune::cli
