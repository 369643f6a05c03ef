#include "resources/SymbolTable.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace marlune {
namespace {

constexpr std::int16_t kFirstCustom = 7680;
constexpr std::int16_t kLastCustom = 8191;
constexpr std::string_view kCustom = "Custom ";

// clang-format off
constexpr auto kSymbols = std::to_array<SymbolRow>({
    {0, "Anchor"},
    {1, "Bell"},
    {2, "Diamond, Green"},
    {3, "Diamond, Red"},
    {4, "Diver Down Flag 1"},
    {5, "Diver Down Flag 2"},
    {6, "Bank"},
    {7, "Fishing Area"},
    {8, "Gas Station"},
    {9, "Horn"},
    {10, "Residence"},
    {11, "Restaurant"},
    {12, "Light"},
    {13, "Bar"},
    {14, "Skull and Crossbones"},
    {15, "Square, Green"},
    {16, "Square, Red"},
    {17, "Buoy, White"},
    {18, "Waypoint"},
    {19, "Shipwreck"},
    {21, "Man Overboard"},
    {22, "Navaid, Amber"},
    {23, "Navaid, Black"},
    {24, "Navaid, Blue"},
    {25, "Navaid, Green"},
    {26, "Navaid, Green/Red"},
    {27, "Navaid, Green/White"},
    {28, "Navaid, Orange"},
    {29, "Navaid, Red"},
    {30, "Navaid, Red/Green"},
    {31, "Navaid, Red/White"},
    {32, "Navaid, Violet"},
    {33, "Navaid, White"},
    {34, "Navaid, White/Green"},
    {35, "Navaid, White/Red"},
    {36, "Dot, White"},
    {37, "Radio Beacon"},
    {150, "Boat Ramp"},
    {151, "Campground"},
    {152, "Restroom"},
    {153, "Shower"},
    {154, "Drinking Water"},
    {155, "Telephone"},
    {156, "Medical Facility"},
    {157, "Information"},
    {158, "Parking Area"},
    {159, "Park"},
    {160, "Picnic Area"},
    {161, "Scenic Area"},
    {162, "Skiing Area"},
    {163, "Swimming Area"},
    {164, "Dam"},
    {165, "Controlled Area"},
    {166, "Danger Area"},
    {167, "Restricted Area"},
    {168, "Null"},
    {169, "Ball Park"},
    {170, "Car"},
    {171, "Hunting Area"},
    {172, "Shopping Center"},
    {173, "Lodging"},
    {174, "Mine"},
    {175, "Trail Head"},
    {176, "Truck Stop"},
    {177, "Exit"},
    {178, "Flag"},
    {179, "Circle with X"},
    {180, "Open 24 Hours"},
    {181, "Fishing Hot Spot Facility"},
    {182, "Bottom Conditions"},
    {183, "Tide/Current Prediction Station"},
    {184, "Anchor Prohibited"},
    {185, "Beacon"},
    {186, "Coast Guard"},
    {187, "Reef"},
    {188, "Weed Bed"},
    {189, "Dropoff"},
    {190, "Dock"},
    {191, "Marina"},
    {192, "Bait and Tackle"},
    {193, "Stump"},
    {8193, "US hwy"},
    {8194, "State Hwy"},
    {8195, "Mile Marker"},
    {8196, "TracBack Point"},
    {8197, "Golf Course"},
    {8198, "City (Small)"},
    {8199, "City (Medium)"},
    {8200, "City (Large)"},
    {8201, "Intl freeway hwy"},
    {8202, "Intl national hwy"},
    {8203, "City (Capitol)"},
    {8204, "Amusement Park"},
    {8205, "Bowling"},
    {8206, "Car Rental"},
    {8207, "Car Repair"},
    {8208, "Fast Food"},
    {8209, "Fitness Center"},
    {8210, "Movie Theater"},
    {8211, "Museum"},
    {8212, "Pharmacy"},
    {8213, "Pizza"},
    {8214, "Post Office"},
    {8215, "RV Park"},
    {8216, "School"},
    {8217, "Stadium"},
    {8218, "Department Store"},
    {8219, "Zoo"},
    {8220, "Convenience Store"},
    {8221, "Live Theater"},
    {8222, "Ramp intersection"},
    {8223, "Street Intersection"},
    {8226, "Scales"},
    {8227, "Toll Booth"},
    {8228, "Elevation point"},
    {8229, "Exit without services"},
    {8230, "Geographic place name, Man-made"},
    {8231, "Geographic place name, water"},
    {8232, "Geographic place name, land"},
    {8233, "Bridge"},
    {8234, "Building"},
    {8235, "Cemetery"},
    {8236, "Church"},
    {8237, "Civil"},
    {8238, "Crossing"},
    {8239, "Ghost Town"},
    {8240, "Levee"},
    {8241, "Military"},
    {8242, "Oil Field"},
    {8243, "Tunnel"},
    {8244, "Beach"},
    {8245, "Forest"},
    {8246, "Summit"},
    {8247, "Large Ramp intersection"},
    {8248, "Large exit without services"},
    {8249, "Police Station"},
    {8250, "Gambling/casino"},
    {8251, "Ski Resort"},
    {8252, "Ice Skating"},
    {8253, "Wrecker"},
    {8254, "Border Crossing (Port Of Entry)"},
    {8255, "Geocache"},
    {8256, "Geocache Found"},
    {8257, "Contact, Smiley"},
    {8258, "Contact, Ball Cap"},
    {8259, "Contact, Big Ears"},
    {8260, "Contact, Spike"},
    {8261, "Contact, Goatee"},
    {8262, "Contact, Afro"},
    {8263, "Contact, Dreadlocks"},
    {8264, "Contact, Female1"},
    {8265, "Contact, Female2"},
    {8266, "Contact, Female3"},
    {8267, "Contact, Ranger"},
    {8268, "Contact, Kung-Fu"},
    {8269, "Contact, Sumo"},
    {8270, "Contact, Pirate"},
    {8271, "Contact, Biker"},
    {8272, "Contact, Alien"},
    {8273, "Contact, Bug"},
    {8274, "Contact, Cat"},
    {8275, "Contact, Dog"},
    {8276, "Contact, Pig"},
    {8282, "Water Hydrant"},
    {8284, "Flag, Blue"},
    {8285, "Flag, Green"},
    {8286, "Flag, Red"},
    {8287, "Pin, Blue"},
    {8288, "Pin, Green"},
    {8289, "Pin, Red"},
    {8290, "Block, Blue"},
    {8291, "Block, Green"},
    {8292, "Block, Red"},
    {8293, "Bike Trail"},
    {8294, "Circle, Red"},
    {8295, "Circle, Green"},
    {8296, "Circle, Blue"},
    {8299, "Diamond, Blue"},
    {8300, "Oval, Red"},
    {8301, "Oval, Green"},
    {8302, "Oval, Blue"},
    {8303, "Rectangle, Red"},
    {8304, "Rectangle, Green"},
    {8305, "Rectangle, Blue"},
    {8308, "Square, Blue"},
    {8309, "Letter A, Red"},
    {8310, "Letter B, Red"},
    {8311, "Letter C, Red"},
    {8312, "Letter D, Red"},
    {8313, "Letter A, Green"},
    {8314, "Letter C, Green"},
    {8315, "Letter B, Green"},
    {8316, "Letter D, Green"},
    {8317, "Letter A, Blue"},
    {8318, "Letter B, Blue"},
    {8319, "Letter C, Blue"},
    {8320, "Letter D, Blue"},
    {8321, "Number 0, Red"},
    {8322, "Number 1, Red"},
    {8323, "Number 2, Red"},
    {8324, "Number 3, Red"},
    {8325, "Number 4, Red"},
    {8326, "Number 5, Red"},
    {8327, "Number 6, Red"},
    {8328, "Number 7, Red"},
    {8329, "Number 8, Red"},
    {8330, "Number 9, Red"},
    {8331, "Number 0, Green"},
    {8332, "Number 1, Green"},
    {8333, "Number 2, Green"},
    {8334, "Number 3, Green"},
    {8335, "Number 4, Green"},
    {8336, "Number 5, Green"},
    {8337, "Number 6, Green"},
    {8338, "Number 7, Green"},
    {8339, "Number 8, Green"},
    {8340, "Number 9, Green"},
    {8341, "Number 0, Blue"},
    {8342, "Number 1, Blue"},
    {8343, "Number 2, Blue"},
    {8344, "Number 3, Blue"},
    {8345, "Number 4, Blue"},
    {8346, "Number 5, Blue"},
    {8347, "Number 6, Blue"},
    {8348, "Number 7, Blue"},
    {8349, "Number 8, Blue"},
    {8350, "Number 9, Blue"},
    {8351, "Triangle, Blue"},
    {8352, "Triangle, Green"},
    {8353, "Triangle, Red"},
    {8359, "Asian Food"},
    {8360, "Deli"},
    {8361, "Italian food"},
    {8362, "Seafood"},
    {8363, "Steak"},
    {16384, "Airport"},
    {16385, "Intersection"},
    {16386, "Non-directional beacon"},
    {16387, "VHF Omni-range"},
    {16388, "Heliport"},
    {16389, "Private Field"},
    {16390, "Soft Field"},
    {16391, "Tall Tower"},
    {16392, "Short Tower"},
    {16393, "Glider Area"},
    {16394, "Ultralight Area"},
    {16395, "Parachute Area"},
    {16396, "VOR/TACAN"},
    {16397, "VOR-DME"},
    {16398, "First approach fix"},
    {16399, "Localizer Outer Marker"},
    {16400, "Missed approach point"},
    {16401, "TACAN"},
    {16402, "Seaplane Base"},
});
// clang-format on

// The same rows by name.
const std::array<SymbolRow, kSymbols.size()>& rowsByName() {
    static const auto kRows = [] {
        auto rows = kSymbols;
        std::sort(rows.begin(), rows.end(), [](const SymbolRow& left, const SymbolRow& right) {
            return left.name < right.name;
        });
        return rows;
    }();
    return kRows;
}

std::optional<std::int16_t> customSymbol(std::string_view name) {
    if (!name.starts_with(kCustom)) {
        return std::nullopt;
    }
    name.remove_prefix(kCustom.size());
    int number = 0;
    const char* end = name.data() + name.size();
    const auto [stop, error] = std::from_chars(name.data(), end, number);
    if (error != std::errc() || stop != end || number < 0 || number > kLastCustom - kFirstCustom) {
        return std::nullopt;
    }
    return static_cast<std::int16_t>(kFirstCustom + number);
}

}  // namespace

std::span<const SymbolRow> symbolRows() {
    return kSymbols;
}

std::string symbolName(std::int16_t symbol) {
    if (symbol >= kFirstCustom && symbol <= kLastCustom) {
        return std::string(kCustom) + std::to_string(symbol - kFirstCustom);
    }
    const auto* const row = std::lower_bound(
        kSymbols.begin(), kSymbols.end(), symbol,
        [](const SymbolRow& each, std::int16_t wanted) { return each.number < wanted; });
    const bool found = row != kSymbols.end() && row->number == symbol;
    return std::string(found ? row->name : std::string_view());
}

std::optional<std::int16_t> symbolNamed(std::string_view name) {
    const auto& rows = rowsByName();
    const auto* const row = std::lower_bound(
        rows.begin(), rows.end(), name,
        [](const SymbolRow& each, std::string_view wanted) { return each.name < wanted; });
    return row != rows.end() && row->name == name ? std::optional(row->number) : customSymbol(name);
}

}  // namespace marlune
