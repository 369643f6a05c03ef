// Garmin units that are a drive of GPX files: "GRM_USB_GPX", which gpsConnect sets when no unit
// answers on USB and a drive of theirs is mounted.
#pragma once

#include "family/Family.h"
#include "storage/StorageTransfers.h"
#include "storage/StorageUnit.h"

namespace marlune {

class DriveGarmin : public Family {
public:
    static constexpr FamilyTraits kTraits = {
        .code = "GRM_USB_GPX", .isChosen = false, .isOnUsb = true, .isDrive = true};

    using Family::Family;

    [[nodiscard]] bool serves(std::string_view protocolCode) const override {
        return protocolCode == kTraits.code;
    }
    [[nodiscard]] bool isOnUsb() const override { return true; }
    Opening open() override;
    void close() override { unit_.close(); }
    bool identify() override;
    [[nodiscard]] std::string getProtocoles() const override;
    [[nodiscard]] UploadFormat uploadFormat() const override;

    bool getWaypts() override { return transfers().getWaypts(); }
    bool getTracks() override { return transfers().getTracks(); }
    bool GetRoutes() override { return transfers().GetRoutes(); }
    bool SendWaypts(const Upload<Waypoint>& upload) override {
        return transfers().SendWaypts(upload);
    }
    bool SendRoutes(const Upload<Route>& upload) override { return transfers().SendRoutes(upload); }
    bool SendTraces(const Upload<TrackItem>& upload) override {
        return transfers().SendTraces(upload);
    }

private:
    StorageTransfers transfers() { return {services(), unit_, connection()}; }

    StorageUnit unit_;
};

}  // namespace marlune
