// Which Garmin unit a receiver plays.
//
// Units of Garmin's published table are described by product id and version alone; those that
// announce their protocols carry the list of them. Product ids of the announcing units are theirs
// as far as they are known, but nothing depends on them.
#pragma once

#include <string>
#include <vector>

#include "receivers/Families.h"

namespace marlune::receivers::garmin {

struct GarminUnit {
    std::string name;
    std::string about;  // for the help: what it is good for
    int productId = 0;
    int version = 0;  // hundredths
    std::string description;
    std::vector<std::string> further;  // texts of the further product data packets
    bool announces = false;            // sends its protocols by itself
    std::string tags;                  // "A100 D108 ...": all of them, announced or not
};

// The named units; the first is the default.
const std::vector<GarminUnit>& garminUnits();

// The unit that the options name or describe. Throws std::invalid_argument.
GarminUnit chooseUnit(const ReceiverOptions& options);

// What the published table says of a unit that announces nothing: its tags, blank-separated.
std::string tableTags(int productId, int version);

}  // namespace marlune::receivers::garmin
