#include "host/MtpDrives_linux.h"

#include <algorithm>
#include <charconv>
#include <string_view>
#include <system_error>

#include "host/FolderDrive.h"

namespace marlune {
namespace {

namespace fs = std::filesystem;

constexpr const char* kGarmin = "GARMIN";

std::string upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    return text;
}

// "Garmin_fenix%206" without its percent codes.
std::string decodeUnitName(std::string_view name) {
    std::string text;
    while (!name.empty()) {
        unsigned char code = 0;
        const bool escape = name.size() >= 3 && name.front() == '%';
        if (escape &&
            std::from_chars(name.data() + 1, name.data() + 3, code, 16).ptr == name.data() + 3) {
            text += static_cast<char>(code);
            name.remove_prefix(3);
        } else {
            text += name.front();
            name.remove_prefix(1);
        }
    }
    return text;
}

// The folders in a folder, in the order of their names.
std::vector<fs::path> foldersIn(const fs::path& folder) {
    std::vector<fs::path> folders;
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        std::error_code ignored;
        if (fs::is_directory(entry->path(), ignored)) {
            folders.push_back(entry->path());
        }
    }
    std::sort(folders.begin(), folders.end());
    return folders;
}

void addStorages(std::vector<Drive>& drives, const fs::path& unit, const std::string& name) {
    for (const fs::path& storage : foldersIn(unit)) {
        Drive drive = folderDrive(storage.string());
        drive.fileSystem = kMtpFileSystem;
        drive.volumeName =
            upper(name).find(kGarmin) != std::string::npos ? std::string(kGarmin) : name;
        drives.push_back(std::move(drive));
    }
}

}  // namespace

std::vector<Drive> drivesOfMtp(const fs::path& runtimeFolder) {
    constexpr std::string_view kUnit = "mtp:host=";
    std::vector<Drive> drives;
    for (const fs::path& mount : foldersIn(runtimeFolder / "gvfs")) {
        const std::string name = mount.filename().string();
        if (name.starts_with(kUnit)) {
            addStorages(drives, mount, decodeUnitName(name.substr(kUnit.size())));
        }
    }
    for (const fs::path& folder : foldersIn(runtimeFolder)) {
        if (folder.filename().string().starts_with("kio-fuse-")) {
            for (const fs::path& unit : foldersIn(folder / "mtp")) {
                addStorages(drives, unit, unit.filename().string());
            }
        }
    }
    return drives;
}

std::vector<Drive> drivesOfMtpMount(const fs::path& mountPoint) {
    std::vector<Drive> drives;
    addStorages(drives, mountPoint, {});
    for (Drive& drive : drives) {
        const auto inside = foldersIn(drive.rootFolder);
        if (std::any_of(inside.begin(), inside.end(), [](const fs::path& folder) {
                return upper(folder.filename().string()) == kGarmin;
            })) {
            drive.volumeName = kGarmin;
        } else {
            drive.volumeName = drive.driveLetter;
        }
    }
    return drives;
}

}  // namespace marlune
