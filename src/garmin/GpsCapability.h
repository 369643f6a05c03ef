// What the connected Garmin unit speaks: the protocol and the data type for each role.
//
// Tags are a letter and three digits: "P" physical, "L" link, "A" application protocol, "D" data
// type. A unit announces them in its protocol array; for a unit that does not, the product table
// knows them.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "family/UploadFormat.h"
#include "host/DebugTrace.h"
#include "marlune/Report.h"

namespace marlune {

class GpsCapability {
public:
    // Each field holds the tag that the unit named for that role, and is empty when it named none.
    std::string physicalProtocol;
    std::string linkProtocol;
    std::string commandProtocol;
    std::string a001;
    std::string a000;
    std::string waypointProtocol;
    std::string waypointType;
    std::string routeProtocol;
    std::string routeHeaderType;
    std::string routeLinkType;
    // D106 is kept apart from the other waypoint types: it is the type of route points.
    std::string d106;
    std::string trackProtocol;
    std::string trackPointType;
    std::string trackHeaderType;
    std::string proximityProtocol;
    std::string proximityType;
    std::string almanacProtocol;
    std::string almanacType;
    std::string timeProtocol;
    std::string timeType;
    std::string positionProtocol;
    std::string positionType;
    std::string pvtProtocol;
    std::string pvtType;
    // From where the tags are known.
    CapabilitySource source = CapabilitySource::none;
    // All tags, in the order of their arrival.
    std::vector<std::string> tags;

    // Appends the tags of a protocol array: 3 bytes each, a letter and a 16-bit little-endian
    // number. An incomplete last entry is ignored.
    void takeProtocolArray(std::span<const std::uint8_t> array);

    // Takes the tags from the product table: from the unit's own rows, else from the generic one.
    // softwareVersion is in hundredths. False when not even that helped.
    bool GetCapability(std::uint16_t productId, std::uint16_t softwareVersion, DebugTrace& trace);

    // Puts every tag into its field, in order: a later tag of the same role replaces an earlier
    // one.
    void Decoder();

    // The tags, separated by one blank.
    [[nodiscard]] std::string getProtocoles() const;

    // The type of route points: the D106 slot, or the waypoint type when that is empty.
    [[nodiscard]] const std::string& routePointType() const {
        return d106.empty() ? waypointType : d106;
    }

    // How upload files are read for the unit: the connection's format with the unit's types.
    [[nodiscard]] UploadFormat uploadFormat(UploadFormat format) const;

private:
    bool takeProductRows(int productId, int softwareVersion);
};

}  // namespace marlune
