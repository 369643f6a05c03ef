// A position as the coordinate fields of a sentence.
#pragma once

#include <array>
#include <string>

namespace marlune {

class Geo {
public:
    // Latitude, longitude in degrees, north and east positive.
    void Position(const std::array<double, 2>& latitudeLongitude) {
        latitude_ = latitudeLongitude[0];
        longitude_ = latitudeLongitude[1];
    }

    // "4807.038,N,01131.000,E": degrees and minutes with three decimals. 0 is "S" and "W", and
    // minutes that round to 60 stay 60.000: receivers read both, and programs compare what is sent
    // with what they saw sent before. Raises overflow when the whole degrees do not fit 16 bits.
    [[nodiscard]] std::string DMM() const;

private:
    double latitude_ = 0;
    double longitude_ = 0;
};

}  // namespace marlune
