// What the system says when it refuses something.
#pragma once

#include <cstdint>
#include <string>

namespace marlune {

// The system's own text for an error code, without surrounding blanks and at most 255 characters.
std::string systemErrorText(std::int32_t code);

// The code of the operation that the system has just refused; never 0.
std::int32_t lastSystemError();

}  // namespace marlune
