// GPX 1.1 files to and from the control's text lines, for hosts that keep what a receiver gives, or
// send what a file holds.
//
// Texts and paths are UTF-8. Files that cannot be opened, read or written raise std::system_error
// with the system's code; files that are no GPX raise GpxParseError. An object serves one thread.
#pragma once

#include <cstddef>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "marlune/Export.h"

namespace marlune {

// The kind of records that a file is read for.
enum class GpxKind { waypoints, routes, tracks };

// Where and why a file could not be parsed. Lines and positions count from 1; the position is in
// bytes within the line, the offset in bytes from the start of the file.
class MARLUNE_EXPORT GpxParseError : public std::runtime_error {
public:
    struct Place {
        std::string source;  // the line's text
        std::size_t line = 0;
        std::size_t position = 0;
        std::size_t offset = 0;
    };

    GpxParseError(const std::string& reason, Place place);

    [[nodiscard]] const Place& place() const { return *place_; }

private:
    std::shared_ptr<const Place> place_;  // shared, so that copying an error cannot throw
};

// Turns text lines into a GPX file: "W;" lines become waypoints, and points of the route after an
// "R;" line; "N;" begins a track, "T;" adds a point to it, in a new segment where the line says so.
// Other lines are ignored. Numbers may carry either decimal separator.
class MARLUNE_EXPORT GpxWriter {
public:
    GpxWriter();
    GpxWriter(const GpxWriter&) = delete;
    GpxWriter& operator=(const GpxWriter&) = delete;
    ~GpxWriter();

    void addLine(std::string_view line);

    // The lines so far whose position is missing or not on earth: GPX cannot express them.
    [[nodiscard]] std::size_t leftOut() const;

    // Writes the file beside `path` under another name and renames it, so a failure leaves what was
    // there. A device or a pipe is written directly.
    void save(const std::string& path) const;

private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

// Turns GPX files into text lines of one kind. Routes are numbered from 1 in the order in which the
// reader meets them, across files.
class MARLUNE_EXPORT GpxReader {
public:
    // decimalSeparator: what the numbers of the lines are written with; upload files take '.'.
    explicit GpxReader(GpxKind kind, char decimalSeparator = '.')
        : kind_(kind), decimalSeparator_(decimalSeparator) {}

    // Refuses files of more than 256 MiB, as it does those that cannot be read.
    std::vector<std::string> readFile(const std::string& path);
    // The same for a file's content.
    std::vector<std::string> readText(std::string_view content);

private:
    GpxKind kind_;
    char decimalSeparator_;
    int routes_ = 0;
};

}  // namespace marlune
