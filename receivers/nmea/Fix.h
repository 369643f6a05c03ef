// Where a receiver is at the moment, as the sentences that it streams.
#pragma once

#include <string>

#include "receivers/DeviceData.h"

namespace marlune::receivers::nmea {

struct Fix {
    bool valid = true;     // else it knows nothing but the time
    double latitude = 0;   // degrees
    double longitude = 0;  // degrees
    double altitude = 0;   // metres above mean sea level
    double speed = 0;      // metres per second
    double course = 0;     // degrees from north, clockwise
    double date = 0;       // days since 30/12/1899, UTC
};

// After so many seconds of a walk round the place.
Fix walkRound(const Place& centre, double seconds, double date);

// Whole sentences:
// $GPGGA,120000.00,4555.4167,N,00652.2824,E,1,08,1.1,1037.0,M,48.0,M,,*hh
std::string ggaSentence(const Fix& fix);
// $GPRMC,120000.00,A,4555.4167,N,00652.2824,E,2.7,90.0,150107,,,A*hh
std::string rmcSentence(const Fix& fix);
// $GPGSA,A,3,02,05,09,12,17,21,25,29,,,,,1.9,1.1,1.5*hh
std::string gsaSentence(const Fix& fix);
// $GPGLL,4555.4167,N,00652.2824,E,120000.00,A,A*hh
std::string gllSentence(const Fix& fix);

}  // namespace marlune::receivers::nmea
