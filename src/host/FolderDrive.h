// A folder seen as a drive: its sizes, and whether it can be read now.
#pragma once

#include <string>

#include "marlune/Host.h"

namespace marlune {

// The drive is named after the folder's last component, "/" for the root.
Drive folderDrive(const std::string& folder);

}  // namespace marlune
