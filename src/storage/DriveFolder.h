// Names inside a unit's drive, as the unit writes them: relative to the drive's root, in any case
// (its file system knows no case, the system's mount of it may), with either separator.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace marlune {

// The file or folder of that name; what does not exist keeps the name as given. Nothing for a name
// that leads out of the root: "..", absolute names, other drives, links to elsewhere.
std::optional<std::filesystem::path> insideDrive(const std::filesystem::path& root,
                                                 std::string_view name);

// Whether a path, its links followed, stays inside the root.
bool staysInside(const std::filesystem::path& root, const std::filesystem::path& path);

}  // namespace marlune
