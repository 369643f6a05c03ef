// MLR receivers: "MLR".
#pragma once

#include "family/Family.h"
#include "nmea/NmeaState.h"
#include "nmea/mlr/MlrState.h"

namespace marlune {

class MlrFamily : public Family {
public:
    static constexpr FamilyTraits kTraits = {.code = "MLR"};

    // The sentence under assembly is the control's, which has one line only.
    MlrFamily(ControlServices& services, NmeaState& nmea) : Family(services), nmea_(nmea) {}

    [[nodiscard]] bool serves(std::string_view protocolCode) const override {
        return protocolCode == kTraits.code;
    }
    [[nodiscard]] std::optional<LineChoice> line() const override;
    bool identify() override;
    void refreshIdent() override { identify(); }
    // The waypoints heard so far stay, as they do for the routes of every family.
    void forget() override { state_.sendsBlocks = false; }
    [[nodiscard]] std::string getProtocoles() const override;

    bool getWaypts() override;
    bool getTracks() override;
    bool GetRoutes() override;
    bool SendWaypts(const Upload<Waypoint>& upload) override;
    bool SendRoutes(const Upload<Route>& upload) override;
    bool SendTraces(const Upload<TrackItem>& upload) override;

private:
    NmeaState& nmea_;
    MlrState state_;
};

}  // namespace marlune
