// Units that speak MTP, as the desktop or a program mounts them: folders of files whose file
// system neither renames over a file nor seeks while writing.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "marlune/Host.h"

namespace marlune {

// What Drive::fileSystem is for such units.
inline constexpr const char* kMtpFileSystem = "mtp";

// The storages of the units that stand below the user's runtime folder ("/run/user/1000"):
// gvfs/mtp:host=UNIT/STORAGE by GNOME's file systems, kio-fuse-*/mtp/UNIT/STORAGE by KDE's. The
// volume is named GARMIN when the unit's name says so, else after the unit.
std::vector<Drive> drivesOfMtp(const std::filesystem::path& runtimeFolder);

// The storages of a unit that is mounted at a folder. Nothing tells the unit's name there: the
// volume of a storage with a folder GARMIN is named so.
std::vector<Drive> drivesOfMtpMount(const std::filesystem::path& mountPoint);

}  // namespace marlune
