#include "receivers/garmin/Abilities.h"

#include <algorithm>
#include <cctype>
#include <sstream>
#include <stdexcept>
#include <string_view>
#include <vector>

namespace marlune::receivers::garmin {
namespace {

// Tags, blank-separated.
using Types = std::string_view;

constexpr Types kWaypoints =
    "D100 D101 D102 D103 D104 D105 D106 D107 D108 D109 D110 D150 D151 D152 D154 D155";
constexpr Types kRouteHeaders = "D200 D201 D202";
constexpr Types kRouteLinks = "D210";
constexpr Types kTrackHeaders = "D310 D311 D312";
constexpr Types kTrackPoints = "D300 D301 D302 D303 D304";
constexpr Types kProximities =
    "D400 D403 D450 D100 D101 D102 D103 D104 D105 D106 D107 D108 D109 D110 D150 D151 D152 D154 "
    "D155";

bool isTag(const std::string& tag) {
    return tag.size() == 4 && std::isupper(static_cast<unsigned char>(tag[0])) != 0 &&
           std::all_of(tag.begin() + 1, tag.end(),
                       [](unsigned char each) { return std::isdigit(each) != 0; });
}

// Walks through the tags, taking each protocol's record types.
class TagReader {
public:
    explicit TagReader(const std::string& tags) {
        std::istringstream words(tags);
        for (std::string tag; words >> tag;) {
            if (!isTag(tag)) {
                throw std::invalid_argument("\"" + tag +
                                            "\" is no tag: a capital letter and three digits");
            }
            tags_.push_back(tag);
        }
    }

    // The next protocol; false at the end.
    bool nextProtocol(std::string& protocol) {
        while (at_ < tags_.size()) {
            protocol = tags_[at_++];
            if (protocol[0] != 'D') {
                return true;
            }
        }
        return false;
    }

    // The protocol's next record type, which must be one of these.
    std::string type(const std::string& protocol, const char* what, Types allowed) {
        if (at_ == tags_.size() || tags_[at_][0] != 'D') {
            throw std::invalid_argument(protocol + " needs the tag of its " + what);
        }
        const std::string& tag = tags_[at_++];
        if (allowed.find(tag) == Types::npos) {
            throw std::invalid_argument(tag + " is no " + what);
        }
        return tag;
    }

    [[nodiscard]] bool typeFollows() const { return at_ < tags_.size() && tags_[at_][0] == 'D'; }

private:
    std::vector<std::string> tags_;
    std::size_t at_ = 0;
};

void takeRoutes(const std::string& protocol, TagReader& tags, Abilities& abilities) {
    abilities.routeHeader = tags.type(protocol, "route header type", kRouteHeaders);
    abilities.routePoint = tags.type(protocol, "route point type", kWaypoints);
    if (protocol == "A201") {
        // The table's generic entry names no link type; there is only this one.
        abilities.routeLink =
            tags.typeFollows() ? tags.type(protocol, "route link type", kRouteLinks) : "D210";
    }
}

void takeTracks(const std::string& protocol, TagReader& tags, Abilities& abilities) {
    if (protocol != "A300") {
        abilities.trackHeader = tags.type(protocol, "track header type", kTrackHeaders);
        if (!tags.typeFollows()) {
            // The table's generic entry has room for one type only.
            abilities.trackPoint = "D301";
            return;
        }
    }
    abilities.trackPoint = tags.type(protocol, "track point type", kTrackPoints);
}

}  // namespace

Abilities abilitiesOf(const std::string& tags) {
    Abilities abilities;
    TagReader reader(tags);
    for (std::string protocol; reader.nextProtocol(protocol);) {
        if (protocol == "A100") {
            abilities.waypoint = reader.type(protocol, "waypoint type", kWaypoints);
        } else if (protocol == "A200" || protocol == "A201") {
            takeRoutes(protocol, reader, abilities);
        } else if (protocol == "A300" || protocol == "A301" || protocol == "A302") {
            takeTracks(protocol, reader, abilities);
        } else if (protocol == "A400") {
            abilities.proximity = reader.type(protocol, "proximity type", kProximities);
        }
        abilities.almanac |= protocol == "A500";
        abilities.time |= protocol == "A600";
        abilities.position |= protocol == "A700";
        abilities.pvt |= protocol == "A800";
    }
    return abilities;
}

}  // namespace marlune::receivers::garmin
