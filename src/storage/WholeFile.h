// Reading the files of a drive.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "marlune/Gpx.h"

namespace marlune {

// A file's bytes. Throws std::system_error with the system's code; a file of more than `largest`
// bytes is one that the system finds too large.
std::string readWholeFile(const std::string& path, std::size_t largest = 256U << 20U);

// Where an offset of a text stands: its line and the position in it.
GpxParseError::Place placeAt(std::string_view content, std::size_t offset);

}  // namespace marlune
