#include "storage/StorageUnit.h"

#include <algorithm>
#include <system_error>

#include "base/FilePath.h"
#include "base/NoCase.h"
#include "base/SystemError.h"
#include "storage/DeviceDescription.h"
#include "storage/DriveFolder.h"
#include "storage/Messages.h"
#include "storage/WholeFile.h"

namespace marlune {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kVolume = "GARMIN";
constexpr std::string_view kDescriptionFile = "GARMIN/Garmindevice.xml";
constexpr std::size_t kLargestDescription = 16U << 20U;

void traceDrive(DebugTrace& trace, const Drive& drive) {
    const auto line = [&](const char* label, const std::string& value) {
        trace.traceLineOf([&] { return label + value; });
    };
    line("DriveLetter     : ", drive.driveLetter);
    line("DriveType       : ", drive.driveType);
    line("FileSystem      : ", drive.fileSystem);
    line("AvailableSpace  : ", std::to_string(drive.availableSpace));
    line("FreeSpace       : ", std::to_string(drive.freeSpace));
    line("IsReady         : ", drive.isReady ? "Vrai" : "Faux");
    line("Path            : ", drive.path);
    line("RootFolder      : ", drive.rootFolder);
    line("SerialNumber    : ", drive.serialNumber);
    line("ShareName       : ", drive.shareName);
    line("VolumeName      : ", drive.volumeName);
    line("TotalSize       : ", std::to_string(drive.totalSize));
}

// The volume's label; for a drive without one, what it was mounted as.
std::string nameOf(const Drive& drive) {
    if (!drive.volumeName.empty()) {
        return drive.volumeName;
    }
    const fs::path root = filePath(drive.rootFolder);
    return pathText(root.has_filename() ? root.filename() : root.parent_path().filename());
}

std::optional<fs::path> descriptionFile(const Drive& drive) {
    auto file = insideDrive(filePath(drive.rootFolder), kDescriptionFile);
    std::error_code ignored;
    return file && fs::is_regular_file(*file, ignored) ? file : std::nullopt;
}

// A folder that the unit names; the trace tells of one that is refused.
std::optional<fs::path> folderOf(DebugTrace& trace, const fs::path& root, const std::string& name) {
    if (name.empty()) {
        return std::nullopt;
    }
    auto folder = insideDrive(root, name);
    if (!folder) {
        trace.traceLine(storagetext::kPathRefused + name);
    }
    return folder;
}

}  // namespace

bool StorageUnit::find(Services& services) {
    close();
    for (const Drive& drive : services.host.drives()) {
        if (!drive.isReady) {
            continue;
        }
        traceDrive(services.trace, drive);
        if (!equalsNoCase(nameOf(drive), kVolume)) {
            continue;
        }
        const bool described = descriptionFile(drive).has_value();
        // The card of a unit may carry the same name as the unit's own memory.
        if (!drive_ || described) {
            drive_ = drive;
        }
        if (described) {
            break;
        }
    }
    return drive_.has_value();
}

void StorageUnit::close() {
    drive_.reset();
    inputFolder_.reset();
    outputFolders_.clear();
}

fs::path StorageUnit::root() const {
    return drive_ ? filePath(drive_->rootFolder) : fs::path();
}

Replacement StorageUnit::replacement() const {
    // Mounts of units that speak MTP do not rename over a file.
    return drive_ && drive_->fileSystem == "mtp" ? Replacement::newName : Replacement::rename;
}

bool StorageUnit::identify(Services& services, ConnectionState& state) {
    state.connected = false;
    if (!drive_) {
        return false;
    }
    const auto file = descriptionFile(*drive_);
    const std::string path = pathText(file.value_or(root() / filePath(kDescriptionFile)));
    try {
        const DeviceDescription device =
            readDeviceDescription(readWholeFile(path, kLargestDescription));
        state.description = device.description;
        state.productId = device.id;
        state.softwareVersion = device.softwareVersion;
        inputFolder_ = folderOf(services.trace, root(), device.inputFolder);
        outputFolders_.clear();
        for (const std::string& name : device.outputFolders) {
            if (auto folder = folderOf(services.trace, root(), name)) {
                outputFolders_.push_back(std::move(*folder));
            }
        }
        state.connected = true;
        services.trace.traceLine(identText(state));
    } catch (const GpxParseError& error) {
        traceParseError(services.trace, path, error);
    } catch (const std::system_error& error) {
        traceReadError(services.trace, path, error);
    }
    return state.connected;
}

void traceParseError(DebugTrace& trace, const std::string& path, const GpxParseError& error) {
    const GpxParseError::Place& place = error.place();
    trace.traceLine(storagetext::kError + path);
    trace.traceLine(storagetext::kErrorSource + place.source);
    trace.traceLine(std::string(storagetext::kErrorText) + error.what());
    trace.traceLine(storagetext::kErrorLine + std::to_string(place.line));
    trace.traceLine(storagetext::kErrorPosition + std::to_string(place.position));
    trace.traceLine(storagetext::kErrorOffset + std::to_string(place.offset));
}

void traceReadError(DebugTrace& trace, const std::string& path, const std::system_error& error) {
    trace.traceLine(storagetext::kError + path + " - " + systemText(error));
}

std::string systemText(const std::system_error& error) {
    return error.code().category() == std::system_category() ? systemErrorText(error.code().value())
                                                             : error.code().message();
}

}  // namespace marlune
