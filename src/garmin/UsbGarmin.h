// Garmin units on USB: "GRM_USB". Every service is a session of its own.
#pragma once

#include "garmin/GarminFamily.h"

namespace marlune {

class UsbGarmin : public GarminFamily {
public:
    static constexpr FamilyTraits kTraits = {.code = "GRM_USB", .isOnUsb = true};

    using GarminFamily::GarminFamily;

    [[nodiscard]] bool serves(std::string_view protocolCode) const override {
        return protocolCode == kTraits.code;
    }
    [[nodiscard]] bool isOnUsb() const override { return true; }
    Opening open() override;
    bool identify() override;

    bool getWaypts() override;
    bool getTracks() override;
    bool GetRoutes() override;
    bool SendWaypts(const Upload<Waypoint>& upload) override;
    bool SendRoutes(const Upload<Route>& upload) override;
    bool SendTraces(const Upload<TrackItem>& upload) override;
    bool StartPvtData() override;
    void endRealTime() override;
    double GetTime() override;
    std::string getPosition() override;

private:
    int sessions_ = 0;  // that run now, one inside the other
};

}  // namespace marlune
