#include "control/Families.h"

#include <algorithm>

#include "base/Contains.h"
#include "garmin/SerialGarmin.h"
#include "garmin/UsbGarmin.h"
#include "nmea/magellan/MagellanFamily.h"
#include "nmea/mlr/MlrFamily.h"
#include "storage/DriveGarmin.h"

namespace marlune {
namespace {

// Whatever else the host chose: it is opened, and nothing is offered.
class UnknownFamily : public Family {
public:
    using Family::Family;

    [[nodiscard]] bool serves(std::string_view /*protocolCode*/) const override { return true; }
    [[nodiscard]] bool isOnUsb() const override {
        return contains(connection().protocolCode, "GRM_USB");
    }
};

}  // namespace

Families::Families(ControlServices& services, NmeaState& nmea) : connection_(services.connection) {
    // In the order in which they are asked. A unit on USB goes before one that is a drive.
    all_.push_back(std::make_unique<SerialGarmin>(services, unit_));
    all_.push_back(std::make_unique<UsbGarmin>(services, unit_));
    all_.push_back(std::make_unique<DriveGarmin>(services));
    all_.push_back(std::make_unique<MagellanFamily>(services, nmea));
    all_.push_back(std::make_unique<MlrFamily>(services, nmea));
    all_.push_back(std::make_unique<UnknownFamily>(services));
}

Family& Families::chosen() const {
    return **std::find_if(all_.begin(), all_.end(), [this](const auto& family) {
        return family->serves(connection_.protocolCode);
    });
}

}  // namespace marlune
