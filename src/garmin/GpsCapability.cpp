#include "garmin/GpsCapability.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <optional>
#include <string_view>
#include <utility>

#include "base/CodePage.h"
#include "garmin/values/LineFields.h"
#include "resources/ProductTable.h"

namespace marlune {
namespace {

using Field = decltype(&GpsCapability::linkProtocol);  // or any other of them

struct Role {
    Field field;
    std::string_view tags;  // those that fill it, separated by a blank

    [[nodiscard]] bool isFilledBy(std::string_view tag) const {
        constexpr std::size_t kTag = 4;  // all have a letter and three digits
        const std::size_t at = tags.find(tag);
        return tag.size() == kTag && at != std::string_view::npos && at % (kTag + 1) == 0;
    }
};

// One row per field. "P000" has none: only the product table sets the physical protocol.
constexpr Role kRoles[] = {
    {&GpsCapability::linkProtocol, "L001 L002"},
    {&GpsCapability::commandProtocol, "A010 A011"},
    {&GpsCapability::a001, "A001"},
    {&GpsCapability::a000, "A000"},
    {&GpsCapability::waypointProtocol, "A100"},
    {&GpsCapability::waypointType,
     "D100 D101 D102 D103 D104 D105 D107 D108 D109 D110 D150 D151 D152 D154 D155"},
    {&GpsCapability::routeProtocol, "A200 A201"},
    {&GpsCapability::routeHeaderType, "D200 D201 D202"},
    {&GpsCapability::routeLinkType, "D210"},
    {&GpsCapability::d106, "D106"},
    {&GpsCapability::trackProtocol, "A300 A301 A302"},
    {&GpsCapability::trackPointType, "D300 D301 D302 D303 D304"},
    {&GpsCapability::trackHeaderType, "D310 D311 D312"},
    {&GpsCapability::proximityProtocol, "A400"},
    {&GpsCapability::proximityType, "D400 D403 D450"},
    {&GpsCapability::almanacProtocol, "A500"},
    {&GpsCapability::almanacType, "D500 D501 D550 D551"},
    {&GpsCapability::timeProtocol, "A600"},
    {&GpsCapability::timeType, "D600"},
    {&GpsCapability::positionProtocol, "A700"},
    {&GpsCapability::positionType, "D700"},
    {&GpsCapability::pvtProtocol, "A800"},
    {&GpsCapability::pvtType, "D800"},
};

// Every unit of the product table is taken to tell its time and position; the rows never say so.
constexpr std::array<const char*, 4> kTagsOfEveryRow = {"A600", "D600", "A700", "D700"};

std::string tagText(std::uint8_t letter, unsigned number) {
    std::string digits = std::to_string(number);
    digits.insert(0, digits.size() < 3 ? 3 - digits.size() : 0, '0');
    return fromAnsi(std::span<const std::uint8_t>(&letter, 1)) + digits;
}

int number(std::string_view digits) {
    int value = 0;
    std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return value;
}

// The fields of a product row, when its version range holds for the unit.
std::optional<std::vector<std::string_view>> matchingFields(std::string_view row, int version) {
    std::vector<std::string_view> fields = splitText(row, ';');
    if (version < number(fields[0]) || version > number(fields[1])) {
        return std::nullopt;
    }
    return fields;
}

}  // namespace

void GpsCapability::takeProtocolArray(std::span<const std::uint8_t> array) {
    constexpr std::size_t kEntry = 3;
    source = CapabilitySource::announced;
    for (; array.size() >= kEntry; array = array.subspan(kEntry)) {
        tags.push_back(tagText(array[0], array[1] + 256U * array[2]));
    }
}

bool GpsCapability::GetCapability(std::uint16_t productId, std::uint16_t softwareVersion,
                                  DebugTrace& trace) {
    trace.traceLine("GetCapability");
    if (takeProductRows(productId, softwareVersion)) {
        source = CapabilitySource::table;
        return true;
    }
    source = CapabilitySource::generic;
    return takeProductRows(kGenericProductId, 0);
}

bool GpsCapability::takeProductRows(int productId, int softwareVersion) {
    constexpr int kFirstRow = 10000;
    constexpr int kRowsPerProduct = 10;
    int rowNumber = kFirstRow + productId * kRowsPerProduct;
    for (auto row = productRow(rowNumber); row; row = productRow(++rowNumber)) {
        const auto fields = matchingFields(*row, softwareVersion);
        if (!fields) {
            continue;
        }
        physicalProtocol = "P000";
        tags = {physicalProtocol};
        std::for_each(fields->begin() + 2, fields->end(), [this](std::string_view tag) {
            if (!tag.empty()) {
                tags.emplace_back(tag);
            }
        });
        tags.insert(tags.end(), kTagsOfEveryRow.begin(), kTagsOfEveryRow.end());
        return true;
    }
    return false;
}

void GpsCapability::Decoder() {
    for (const std::string& tag : tags) {
        for (const Role& role : kRoles) {
            if (role.isFilledBy(tag)) {
                this->*role.field = tag;
            }
        }
    }
}

std::string GpsCapability::getProtocoles() const {
    std::string text;
    for (const std::string& tag : tags) {
        text += text.empty() ? "" : " ";
        text += tag;
    }
    return text;
}

UploadFormat GpsCapability::uploadFormat(UploadFormat format) const {
    format.waypointType = waypointType;
    format.routeWaypointType = d106;
    format.trackProtocol = trackProtocol;
    format.trackHeaderType = trackHeaderType;
    return format;
}

}  // namespace marlune
