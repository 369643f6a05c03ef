// Date values as texts. A date value counts days since 30/12/1899 00:00:00.
#pragma once

#include <string>

namespace marlune {

// "dd/mm/yyyy hh:mm:ss", rounded to the nearest second.
std::string formatDate(double date);

}  // namespace marlune
