// The version of the library whose headers these are, by the rules of semantic versioning: a
// program that was built with 1.2 runs with every later 1.x.
//
// This file is the one place that says it; the build, the packages and the documents read it here.
#pragma once

#include <string>

#include "marlune/Export.h"

#define MARLUNE_VERSION_MAJOR 1
#define MARLUNE_VERSION_MINOR 0
#define MARLUNE_VERSION_PATCH 0

namespace marlune {

// The version of the library that the program runs with, "1.0.0".
MARLUNE_EXPORT std::string version();

}  // namespace marlune
