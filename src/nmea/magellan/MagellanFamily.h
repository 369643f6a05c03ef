// Magellan receivers: "MGN", or "MGN;9600" with a line rate.
#pragma once

#include "family/Family.h"
#include "nmea/NmeaState.h"
#include "nmea/magellan/MagellanState.h"

namespace marlune {

class MagellanFamily : public Family {
public:
    static constexpr FamilyTraits kTraits = {
        .code = "MGN", .takesRate = true, .routesNeedWaypoints = true};

    // The sentence under assembly is the control's, which has one line only.
    MagellanFamily(ControlServices& services, NmeaState& nmea) : Family(services), nmea_(nmea) {}

    [[nodiscard]] bool serves(std::string_view protocolCode) const override {
        return protocolCode == kTraits.code;
    }
    [[nodiscard]] std::optional<LineChoice> line() const override;
    bool identify() override;
    void refreshIdent() override { identify(); }
    [[nodiscard]] std::string getProtocoles() const override;

    bool getWaypts() override;
    bool getTracks() override;
    bool GetRoutes() override;
    bool SendWaypts(const Upload<Waypoint>& upload) override;
    bool SendRoutes(const Upload<Route>& upload) override;
    bool SendTraces(const Upload<TrackItem>& upload) override;
    bool StartPvtData() override;

private:
    NmeaState& nmea_;
    MagellanState state_;
};

}  // namespace marlune
