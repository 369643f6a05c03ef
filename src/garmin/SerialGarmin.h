// Garmin units on a serial line: "GRM".
//
// Other codes with the letters "GRM" ("GRMX") are served here, too, since hosts have always reached
// such a unit by them: they take the same transfers, but identify nothing, tell nothing of what an
// earlier unit announced, and are asked for their capabilities less.
#pragma once

#include "garmin/GarminFamily.h"

namespace marlune {

class SerialGarmin : public GarminFamily {
public:
    static constexpr FamilyTraits kTraits = {.code = "GRM"};

    using GarminFamily::GarminFamily;

    [[nodiscard]] bool serves(std::string_view protocolCode) const override;
    [[nodiscard]] std::optional<LineChoice> line() const override;
    bool identify() override;
    [[nodiscard]] std::string getProtocoles() const override;
    [[nodiscard]] bool offers(Member member) const override;

    bool getWaypts() override;
    bool getTracks() override;
    bool GetRoutes() override;
    bool getProximites() override;
    bool SendWaypts(const Upload<Waypoint>& upload) override;
    bool SendRoutes(const Upload<Route>& upload) override;
    bool SendTraces(const Upload<TrackItem>& upload) override;
    bool StartPvtData() override;
    void endRealTime() override;
    double GetTime() override;
    std::string getPosition() override;
    void StopTransfert() override;

private:
    [[nodiscard]] bool isPlain() const { return connection().protocolCode == kTraits.code; }
};

}  // namespace marlune
