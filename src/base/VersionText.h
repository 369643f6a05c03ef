#pragma once

#include <string>

namespace marlune {

// This library's version as "major.minor.revision".
std::string versionText();

}  // namespace marlune
