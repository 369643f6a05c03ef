// GPX 1.1 files to and from the control's text lines, for hosts that know nothing else of records.
// The lines are rounded and lack what RecordFiles.h keeps: new hosts use that.
//
// Texts and paths are UTF-8. Files that cannot be opened, read or written raise std::system_error
// with the system's code; files that are no GPX raise GpxParseError. An object serves one thread.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "marlune/Export.h"
#include "marlune/RecordFiles.h"

namespace marlune {

// The kind of records that a file is read for.
enum class GpxKind { waypoints, routes, tracks };

using GpxParseError = FileParseError;

// Turns text lines into a GPX file: "W;" lines become waypoints, and points of the route after an
// "R;" line, "L;" lines the links between these; "N;" begins a track, "T;" adds a point to it, in a
// new segment where the line says so. Other lines are ignored. Numbers may carry either decimal
// separator; an altitude of 0 is unknown.
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

// Turns GPX files into text lines of one kind, with symbol 18 and display 0. Routes are numbered
// from 1 in the order in which the reader meets them, across files.
class MARLUNE_EXPORT GpxReader {
public:
    // decimalSeparator: what the numbers of the lines are written with; upload files take '.'.
    explicit GpxReader(GpxKind kind, char decimalSeparator = '.')
        : kind_(kind), decimalSeparator_(decimalSeparator) {}

    std::vector<std::string> readFile(const std::string& path);
    // The same for a file's content.
    std::vector<std::string> readText(std::string_view content);

private:
    GpxKind kind_;
    char decimalSeparator_;
    int routes_ = 0;
};

}  // namespace marlune
