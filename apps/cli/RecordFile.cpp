#include "cli/RecordFile.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <ostream>
#include <system_error>
#include <utility>

#include "storage/formats/SaveFile.h"
#include "words/Phrases.h"

namespace marlune::cli {
namespace {

namespace fs = std::filesystem;

bool isStandardOutput(const std::string& path) {
    struct stat file = {};
    struct stat output = {};
    return path == "-" || (stat(path.c_str(), &file) == 0 && fstat(STDOUT_FILENO, &output) == 0 &&
                           file.st_dev == output.st_dev && file.st_ino == output.st_ino);
}

// Files are written beside their place and renamed.
void requireWritable(const fs::path& path) {
    const fs::path folder = path.has_parent_path() ? path.parent_path() : fs::path(".");
    const bool isFolder = fs::is_directory(path);
    if (isFolder || access(folder.c_str(), W_OK | X_OK) != 0) {
        throw std::system_error(isFolder ? EISDIR : errno, std::generic_category(), path.string());
    }
}

// "tracks.partial.gpx"
std::string partialName(const fs::path& path) {
    return (path.parent_path() / path.stem()).string() + ".partial" + path.extension().string();
}

}  // namespace

RecordFile::RecordFile(std::string path, std::optional<FileFormat> format, const words::Speech& say)
    : say_(say),
      path_(std::move(path)),
      format_(format.value_or(fileFormatOf(path_).value_or(FileFormat::gpx))),
      standardOutput_(isStandardOutput(path_)) {
    std::error_code ignored;
    const auto type = fs::status(path_, ignored).type();
    stream_ =
        standardOutput_ || (type != fs::file_type::not_found && type != fs::file_type::regular &&
                            type != fs::file_type::directory);
    if (standardOutput_) {
        path_ = "/dev/stdout";
    } else if (!stream_) {
        requireWritable(path_);
    }
}

void RecordFile::add(std::string_view line) {
    ++records_;
    if (format_ == FileFormat::lines) {
        lines_.emplace_back(line);
    }
}

std::size_t RecordFile::write(const Records& records, const FileHead& head,
                              const std::string& path) const {
    if (format_ != FileFormat::lines) {
        return saveRecords(records, format_, path, head);
    }
    saveFile(path, [&](std::ostream& out) {
        for (const std::string& line : lines_) {
            out << line << '\n';
        }
    });
    return 0;
}

std::vector<std::string> RecordFile::save(const Records& records, const FileHead& head, bool whole,
                                          bool keepPartial) {
    if (!whole && records_ == 0) {
        return {};  // no empty file in the place of a full one
    }
    std::error_code ignored;
    std::vector<std::string> remarks;
    std::size_t leftOut = 0;
    if (whole || stream_) {
        leftOut = write(records, head, path_);
    } else if (keepPartial || !fs::exists(path_, ignored)) {
        const std::string target = keepPartial ? partialName(path_) : path_;
        leftOut = write(records, head, target);
        remarks.push_back(say_(words::phrase::kPartial, {target}));
    } else {
        return {say_(words::phrase::kKept, {path_})};
    }
    if (leftOut > 0) {
        remarks.push_back(say_(words::phrase::kLeftOutOfFile, {path_, std::to_string(leftOut)}));
    }
    return remarks;
}

}  // namespace marlune::cli
