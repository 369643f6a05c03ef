// A position as a sentence says it. What the text lines and the records of the protocols carry of
// it has single precision, about a metre, and takes a foot for a third of a metre.
#pragma once

#include <optional>

namespace marlune {

struct ExactPosition {
    double latitude = 0;  // degrees, north and east positive
    double longitude = 0;
    std::optional<float> altitude;  // metres; none where the sentence has none
};

}  // namespace marlune
