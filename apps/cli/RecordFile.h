// The file that downloaded records go to besides standard output, or in its place.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "cli/Speech.h"
#include "marlune/Gpx.h"

namespace marlune::cli {

class RecordFile {
public:
    // path: "-" is standard output. Throws std::system_error, with the path as its text, when
    // nothing could be written there: better now than after the transfer.
    RecordFile(std::string path, const Speech& say);

    // Nothing else may be printed there then.
    [[nodiscard]] bool takesStandardOutput() const { return standardOutput_; }

    void add(std::string_view line);

    // Writes what came. What is there already makes place for whole transfers only: of others,
    // keepPartial writes a file beside it. Returns what the user should know. Throws
    // std::system_error.
    std::vector<std::string> save(bool whole, bool keepPartial);

    [[nodiscard]] const std::string& path() const { return path_; }

private:
    const Speech& say_;
    std::string path_;
    bool standardOutput_;
    bool stream_ = false;  // a device or a pipe, which holds nothing to lose
    GpxWriter gpx_;
    std::size_t records_ = 0;
};

}  // namespace marlune::cli
