#include "host/MountedDrives_linux.h"

#include <mntent.h>

#include <array>
#include <charconv>
#include <cstdio>
#include <memory>
#include <system_error>

#include "host/FolderDrive.h"
#include "host/MtpDrives_linux.h"

namespace marlune {
namespace {

namespace fs = std::filesystem;

// The decoded name of the link in the folder that leads to the device; empty when there is none.
std::string linkTo(const fs::path& device, const fs::path& folder) {
    std::error_code error;
    const fs::path target = fs::canonical(device, error);
    if (error) {
        return {};
    }
    for (const fs::directory_entry& link : fs::directory_iterator(folder, error)) {
        std::error_code broken;
        if (fs::canonical(link.path(), broken) == target && !broken) {
            return decodeLinkName(link.path().filename().string());
        }
    }
    return {};
}

Drive driveOf(const mntent& mount, const fs::path& diskFolder) {
    Drive drive = folderDrive(mount.mnt_dir);
    drive.fileSystem = mount.mnt_type;
    drive.serialNumber = linkTo(mount.mnt_fsname, diskFolder / "by-uuid");
    std::string label = linkTo(mount.mnt_fsname, diskFolder / "by-label");
    if (!label.empty()) {
        drive.volumeName = std::move(label);
    }
    return drive;
}

}  // namespace

std::vector<Drive> drivesOfMounts(const std::string& table, const fs::path& diskFolder) {
    std::vector<Drive> drives;
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(::setmntent(table.c_str(), "re"),
                                                               ::endmntent);
    if (!file) {
        return drives;
    }
    mntent mount{};
    std::array<char, 4096> strings{};
    while (::getmntent_r(file.get(), &mount, strings.data(), static_cast<int>(strings.size())) !=
           nullptr) {
        if (std::string_view(mount.mnt_fsname).starts_with("/dev/")) {
            drives.push_back(driveOf(mount, diskFolder));
        } else if (std::string_view(mount.mnt_type) == "fuse.jmtpfs") {
            for (Drive& storage : drivesOfMtpMount(mount.mnt_dir)) {
                drives.push_back(std::move(storage));
            }
        }
    }
    return drives;
}

std::string decodeLinkName(std::string_view name) {
    std::string text;
    while (!name.empty()) {
        unsigned char code = 0;
        const bool escape = name.size() >= 4 && name.starts_with("\\x");
        if (escape &&
            std::from_chars(name.data() + 2, name.data() + 4, code, 16).ptr == name.data() + 4) {
            text += static_cast<char>(code);
            name.remove_prefix(4);
        } else {
            text += name.front();
            name.remove_prefix(1);
        }
    }
    return text;
}

}  // namespace marlune
