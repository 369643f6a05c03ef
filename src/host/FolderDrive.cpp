#include "host/FolderDrive.h"

#include <filesystem>
#include <system_error>

#include "base/FilePath.h"

namespace marlune {
namespace {

namespace fs = std::filesystem;

fs::path withoutTrailingSeparator(const fs::path& path) {
    return path.has_filename() || !path.has_relative_path() ? path : path.parent_path();
}

}  // namespace

Drive folderDrive(const std::string& folder) {
    std::error_code error;
    const fs::path path =
        withoutTrailingSeparator(fs::absolute(filePath(folder), error).lexically_normal());
    Drive drive;
    drive.path = pathText(path);
    drive.rootFolder = drive.path;
    drive.driveLetter = path.has_filename() ? pathText(path.filename()) : drive.path;
    drive.volumeName = drive.driveLetter;
    drive.isReady = fs::is_directory(path, error);
    if (const fs::space_info space = fs::space(path, error); !error) {
        drive.availableSpace = space.available;
        drive.freeSpace = space.free;
        drive.totalSize = space.capacity;
    }
    return drive;
}

}  // namespace marlune
