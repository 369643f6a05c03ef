// The mounted drives of a Linux system.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "marlune/Host.h"

namespace marlune {

// The drives of a table of mounts ("/proc/self/mounts"): the file systems that stand on a block
// device, in the table's order, and the storages of units that jmtpfs mounted. diskFolder
// ("/dev/disk") holds the folders by-label and by-uuid, whose links give a drive its volume name
// and its serial number; without a label the volume is named after the mount point's last
// component.
std::vector<Drive> drivesOfMounts(const std::string& table,
                                  const std::filesystem::path& diskFolder);

// The text of a name in /dev/disk/by-label, where "\x20" stands for a blank.
std::string decodeLinkName(std::string_view name);

}  // namespace marlune
