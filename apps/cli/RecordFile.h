// The file that downloaded records go to besides standard output, or in its place.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "marlune/RecordFiles.h"
#include "words/Speech.h"

namespace marlune::cli {

class RecordFile {
public:
    // path: "-" is standard output. Without a format its suffix tells, or else it is GPX. Throws
    // std::system_error, with the path as its text, when nothing could be written there: better now
    // than after the transfer.
    RecordFile(std::string path, std::optional<FileFormat> format, const words::Speech& say);

    // Nothing else may be printed there then.
    [[nodiscard]] bool takesStandardOutput() const { return standardOutput_; }

    // A record came, of which this is the control's line.
    void add(std::string_view line);

    // Writes what came: the records, or the lines for a file of these. What is there already makes
    // place for whole transfers only: of others, keepPartial writes a file beside it. Returns what
    // the user should know. Throws std::system_error.
    std::vector<std::string> save(const Records& records, const FileHead& head, bool whole,
                                  bool keepPartial);

    [[nodiscard]] const std::string& path() const { return path_; }

private:
    // How many records have no place in a file.
    [[nodiscard]] std::size_t write(const Records& records, const FileHead& head,
                                    const std::string& path) const;

    const words::Speech& say_;
    std::string path_;
    FileFormat format_;
    bool standardOutput_;
    bool stream_ = false;  // a device or a pipe, which holds nothing to lose
    std::vector<std::string> lines_;
    std::size_t records_ = 0;
};

}  // namespace marlune::cli
