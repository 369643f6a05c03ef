// A Garmin unit's memory: what it holds, in the record types that it speaks.
//
// The unit keeps only what its records have room for, so what lines() tells is what a download
// brings: data given to it at the start goes through its records too.
//
// An upload changes the memory as the unit's user would expect:
//   waypoints and proximity waypoints: one of the same ident is replaced, others are added;
//   routes: those of the same number (D200, D201) or name (D202) are replaced, others are added;
//   tracks: those of the same name are replaced, others are added; a unit without track headers has
//   one track log, which is replaced as a whole.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "receivers/DeviceData.h"
#include "receivers/garmin/Abilities.h"
#include "receivers/garmin/PacketIds.h"

namespace marlune::receivers::garmin {

// A kind's value is the id of its packets.
enum class RecordKind : std::uint8_t {
    proximity = 19,
    routeHeader = 29,
    routePoint = 30,
    trackPoint = 34,
    waypoint = 35,
    routeLink = 98,
    trackHeader = 99
};

struct Record {
    RecordKind kind = RecordKind::waypoint;
    std::vector<std::uint8_t> data;
};

class Holdings {
public:
    Holdings(Abilities abilities, const DeviceData& data);

    [[nodiscard]] const Abilities& abilities() const { return abilities_; }
    [[nodiscard]] const DeviceData& data() const { return data_; }

    // The records that a command asks for, in the order in which they are sent. Nothing when it
    // asks for no list, or for one that the unit lacks.
    [[nodiscard]] std::optional<std::vector<Record>> listOf(Command command) const;

    // Takes an upload in. What cannot be understood is left out, with a text for each such record.
    std::vector<std::string> store(const std::vector<Record>& records);

private:
    [[nodiscard]] std::vector<Record> waypoints() const;
    [[nodiscard]] std::vector<Record> proximities() const;
    [[nodiscard]] std::vector<Record> routes() const;
    [[nodiscard]] std::vector<Record> tracks() const;
    void take(const Record& record, DeviceData& into) const;
    void settle(DeviceData& data) const;
    void merge(DeviceData&& upload);
    void numberRoutes();
    [[nodiscard]] std::string typeOf(RecordKind kind) const;

    Abilities abilities_;
    DeviceData data_;
};

}  // namespace marlune::receivers::garmin
