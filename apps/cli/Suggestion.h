// The word that a misspelt one was probably meant to be.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace marlune::cli {

// Empty when none is near.
std::string nearest(std::string_view word, const std::vector<std::string>& known);

}  // namespace marlune::cli
