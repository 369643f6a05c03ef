// Why a connection failed, for whoever has to mend it: the device, the cause and the remedy.
#pragma once

#include <string>
#include <vector>

#include "marlune/Report.h"
#include "words/Speech.h"

namespace marlune::words {

// Sentences, at least one. mark: the family that was asked for.
std::vector<std::string> adviceOn(const ConnectionReport& report, const std::string& mark,
                                  const Speech& say);

// Why the system refused a device with that error. Nothing for an error that speaks for itself.
std::vector<std::string> causesOf(int error, const std::string& device, const Speech& say);

}  // namespace marlune::words
