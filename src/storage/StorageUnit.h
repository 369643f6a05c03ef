// A unit that shows up as a drive of GPX files: found among the host's drives, described by a file
// of its own.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <system_error>
#include <vector>

#include "family/ConnectionState.h"
#include "host/Services.h"
#include "marlune/Gpx.h"
#include "storage/formats/SaveFile.h"

namespace marlune {

class StorageUnit {
public:
    // Walks the drives, tracing each that is ready, and keeps the first whose volume is named
    // "GARMIN" and that holds a description file, else the first of that name. False when there is
    // none.
    bool find(Services& services);

    // Reads the unit's description file and fills what the connection knows about the receiver.
    // False, with the reason in the trace, when that cannot be done.
    bool identify(Services& services, ConnectionState& state);

    // Forgets the drive.
    void close();
    [[nodiscard]] bool isOpen() const { return drive_.has_value(); }

    // The drive's root; empty when no drive was found.
    [[nodiscard]] std::filesystem::path root() const;
    // Where GPX files for the unit stand; nothing when the unit names no such folder, or one
    // outside its drive.
    [[nodiscard]] const std::optional<std::filesystem::path>& inputFolder() const {
        return inputFolder_;
    }
    // Where GPX files from the unit stand: the folders that it names, without those outside its
    // drive.
    [[nodiscard]] const std::vector<std::filesystem::path>& outputFolders() const {
        return outputFolders_;
    }
    // How a file on the drive is replaced.
    [[nodiscard]] Replacement replacement() const;

private:
    std::optional<Drive> drive_;
    std::optional<std::filesystem::path> inputFolder_;
    std::vector<std::filesystem::path> outputFolders_;
};

// What the trace tells about a file that could not be parsed, or read.
void traceParseError(DebugTrace& trace, const std::string& path, const GpxParseError& error);
void traceReadError(DebugTrace& trace, const std::string& path, const std::system_error& error);

// The system's words for an error.
std::string systemText(const std::system_error& error);

}  // namespace marlune
