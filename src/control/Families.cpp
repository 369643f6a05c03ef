#include "control/Families.h"

#include <algorithm>
#include <array>
#include <type_traits>

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

// A family is made of the control's services and of what it shares with others of its kind.
template <class Each>
std::unique_ptr<Family> make(ControlServices& services, GarminUnit& unit, NmeaState& nmea) {
    if constexpr (std::is_constructible_v<Each, ControlServices&, GarminUnit&>) {
        return std::make_unique<Each>(services, unit);
    } else if constexpr (std::is_constructible_v<Each, ControlServices&, NmeaState&>) {
        return std::make_unique<Each>(services, nmea);
    } else {
        return std::make_unique<Each>(services);
    }
}

template <class... Each>
struct FamilyList {
    static constexpr std::array kTraits = {Each::kTraits...};

    static std::vector<std::unique_ptr<Family>> makeAll(ControlServices& services, GarminUnit& unit,
                                                        NmeaState& nmea) {
        std::vector<std::unique_ptr<Family>> all;
        (all.push_back(make<Each>(services, unit, nmea)), ...);
        return all;
    }
};

// In the order in which they are asked. A unit on USB goes before one that is a drive.
using KnownFamilies = FamilyList<SerialGarmin,    //
                                 UsbGarmin,       //
                                 DriveGarmin,     //
                                 MagellanFamily,  //
                                 MlrFamily>;

}  // namespace

std::span<const FamilyTraits> familyTraits() {
    return KnownFamilies::kTraits;
}

Families::Families(ControlServices& services, NmeaState& nmea)
    : connection_(services.connection), all_(KnownFamilies::makeAll(services, unit_, nmea)) {
    all_.push_back(std::make_unique<UnknownFamily>(services));
}

Family& Families::chosen() const {
    return **std::find_if(all_.begin(), all_.end(), [this](const auto& family) {
        return family->serves(connection_.protocolCode);
    });
}

}  // namespace marlune
