#include "receivers/garmin/Units.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <stdexcept>
#include <string_view>

#include "receivers/garmin/Abilities.h"
#include "resources/ProductTable.h"

namespace marlune::receivers::garmin {
namespace {

constexpr std::size_t kTagsInRow = 13;

std::string versionText(int version) {
    const std::string digits = std::to_string(1000 + version % 100).substr(2);
    return std::to_string(version / 100) + "." + digits;
}

int numberAt(std::string_view& row) {
    int number = -1;
    std::from_chars(row.data(), row.data() + row.size(), number);
    row.remove_prefix(std::min(row.find(';') + 1, row.size()));
    return number;
}

// The tags of a row that holds for the version.
std::optional<std::string> rowTags(std::string_view row, int version) {
    const int lowest = numberAt(row);
    const int highest = numberAt(row);
    if (version < lowest || version > highest) {
        return std::nullopt;
    }
    std::string tags;
    for (std::size_t column = 0; column < kTagsInRow && !row.empty(); ++column) {
        const std::string_view tag = row.substr(0, row.find(';'));
        tags += std::string(tag) + (tag.empty() ? "" : " ");
        row.remove_prefix(std::min(row.find(';') + 1, row.size()));
    }
    return tags + "A600 D600 A700 D700";
}

GarminUnit named(std::string name, std::string about, int productId, int version,
                 const std::string& description) {
    GarminUnit unit;
    unit.name = std::move(name);
    unit.about = std::move(about);
    unit.productId = productId;
    unit.version = version;
    unit.description = description + " Software " + versionText(version);
    return unit;
}

GarminUnit ofTable(std::string name, std::string about, int productId, int version,
                   const std::string& description) {
    GarminUnit unit = named(std::move(name), std::move(about), productId, version, description);
    unit.tags = tableTags(productId, version);
    return unit;
}

GarminUnit announcing(std::string name, std::string about, int productId, int version,
                      const std::string& description, const std::string& tags) {
    GarminUnit unit = named(std::move(name), std::move(about), productId, version, description);
    unit.announces = true;
    unit.tags = "P000 L001 A010 " + tags + " A500 D501 A600 D600 A700 D700 A800 D800";
    return unit;
}

std::vector<GarminUnit> makeUnits() {
    std::vector<GarminUnit> units = {
        announcing("map162", "D108, linked routes, named tracks, proximities", 197, 262, "MAP 162",
                   "A100 D108 A201 D202 D108 D210 A301 D310 D301 A400 D108"),
        announcing("etrex", "D108, linked routes, named tracks, no proximities", 130, 214, "eTrex",
                   "A100 D108 A201 D202 D108 D210 A301 D310 D301"),
        announcing("map76", "D109, linked routes, tracks with depth and temperature", 439, 390,
                   "MAP 76", "A100 D109 A201 D202 D109 D210 A301 D310 D302 A400 D109"),
        announcing("map60", "D110, linked routes, tracks by A302", 291, 370, "MAP 60",
                   "A100 D110 A201 D202 D110 D210 A302 D312 D302 A400 D110"),
        announcing("forerunner", "D109, numbered tracks with heart rate", 484, 270, "Forerunner",
                   "A100 D109 A201 D202 D109 D210 A302 D311 D304"),
        announcing("forerunner2", "D109, numbered tracks with heart rate, shorter points", 396, 250,
                   "Forerunner", "A100 D109 A201 D202 D109 D210 A302 D311 D303"),
        announcing("streetpilot", "D105 waypoints, D106 route points", 67, 252, "StreetPilot",
                   "A100 D105 A201 D202 D106 D210 A301 D310 D301"),
        announcing("gps12cx", "D107, commented routes, one track log", 116, 201, "GPS 12CX",
                   "A100 D107 A200 D201 D107 A300 D300 A400 D107"),
        announcing("gps12xl", "D103, commented routes, one track log", 77, 458, "GPS 12 XL",
                   "A100 D103 A200 D201 D103 A300 D300 A400 D403"),
        ofTable("gps12", "D103, announces nothing, no proximities", 77, 353, "GPS 12"),
        ofTable("gps45", "D100, announces nothing, no proximities", 31, 242, "GPS 45"),
        ofTable("gps75", "D100, numbered routes, announces nothing", 13, 303, "GPS 75"),
        ofTable("gps3", "D104, announces nothing", 72, 201, "GPS III"),
        ofTable("map205", "D101, announces nothing", 44, 310, "MAP 205"),
        ofTable("map130", "D102, announces nothing", 49, 222, "MAP 130"),
        ofTable("gps89", "D151, aviation", 39, 210, "GPS 89"),
        ofTable("gps90", "D152, aviation", 45, 306, "GPS 90"),
        ofTable("map195", "D154, aviation", 48, 230, "MAP 195"),
        ofTable("gps3pilot", "D155, aviation", 71, 206, "GPS III Pilot"),
        ofTable("gps155", "D150, aviation", 34, 304, "GPS 155"),
        ofTable("unknown", "in no table: the generic entry holds", 990, 100, "GPS"),
    };
    units.front().further = {"WORLDWIDE AUTOROUTE DEM BASEMAP", "BAUD 9600"};
    return units;
}

// A unit that no name describes.
GarminUnit describedUnit(const ReceiverOptions& options) {
    GarminUnit unit;
    unit.productId = options.productId.value_or(kGenericProductId);
    unit.version = options.version.value_or(100);
    unit.description =
        "GPS " + std::to_string(unit.productId) + " Software " + versionText(unit.version);
    unit.announces = options.tags.has_value();
    unit.tags = options.tags ? *options.tags : tableTags(unit.productId, unit.version);
    return unit;
}

}  // namespace

const std::vector<GarminUnit>& garminUnits() {
    static const std::vector<GarminUnit> kUnits = makeUnits();
    return kUnits;
}

std::string tableTags(int productId, int version) {
    for (int number = 10000 + productId * 10;; ++number) {
        const std::optional<std::string_view> row = productRow(number);
        if (!row) {
            break;
        }
        if (const auto tags = rowTags(*row, version)) {
            return *tags;
        }
    }
    return rowTags(*productRow(10000 + kGenericProductId * 10), 0).value();
}

GarminUnit chooseUnit(const ReceiverOptions& options) {
    for (const std::optional<int>& number : {options.productId, options.version}) {
        if (number.value_or(0) < 0 || number.value_or(0) > 65535) {
            throw std::invalid_argument(std::to_string(*number) +
                                        ": product id and version lie between 0 and 65535");
        }
    }
    if (options.unit.empty() && (options.productId || options.version || options.tags)) {
        return describedUnit(options);
    }
    if (options.productId || options.version || options.tags) {
        throw std::invalid_argument("a unit is either named or described, not both");
    }
    const std::vector<GarminUnit>& units = garminUnits();
    const auto found = std::find_if(units.begin(), units.end(), [&](const GarminUnit& each) {
        return options.unit.empty() || each.name == options.unit;
    });
    if (found == units.end()) {
        throw std::invalid_argument("no Garmin unit is called \"" + options.unit + "\"");
    }
    return *found;
}

}  // namespace marlune::receivers::garmin
