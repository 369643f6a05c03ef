// What a Garmin unit's list of tags amounts to: the record types of each kind. A protocol tag ("A")
// is followed by the tags of its record types ("D"), in the protocol's own order.
#pragma once

#include <string>

namespace marlune::receivers::garmin {

// Types are texts such as "D108"; an empty one means that the unit lacks the kind.
struct Abilities {
    std::string waypoint;
    std::string routeHeader;
    std::string routePoint;
    std::string routeLink;    // empty for routes without links
    std::string trackHeader;  // empty for a track log without headers
    std::string trackPoint;
    std::string proximity;
    bool almanac = false;
    bool time = false;
    bool position = false;
    bool pvt = false;
};

// Throws std::invalid_argument naming the tag that cannot be: not a letter and three digits, or a
// protocol whose record type is missing or unknown.
Abilities abilitiesOf(const std::string& tags);

}  // namespace marlune::receivers::garmin
