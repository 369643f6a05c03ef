#include "receivers/Families.h"

#include <algorithm>
#include <chrono>
#include <stdexcept>

#include "receivers/garmin/GarminReceiver.h"
#include "receivers/magellan/MagellanReceiver.h"
#include "receivers/mlr/MlrReceiver.h"
#include "receivers/nmea/NmeaReceiver.h"

namespace marlune::receivers {
namespace {

std::vector<Unit> unitsOfGarmin() {
    std::vector<Unit> units;
    for (const garmin::GarminUnit& each : garmin::garminUnits()) {
        units.push_back({each.name, each.about});
    }
    return units;
}

}  // namespace

double firstDate(const ReceiverOptions& options) {
    constexpr double kUnixDay = 25569;  // 01/01/1970
    constexpr double kSecondsADay = 86400;
    const auto since = std::chrono::system_clock::now().time_since_epoch();
    return options.now.value_or(kUnixDay +
                                std::chrono::duration<double>(since).count() / kSecondsADay);
}

const std::vector<Family>& receiverFamilies() {
    static const std::vector<Family> kFamilies = {
        {"garmin", "GRM", unitsOfGarmin, garmin::makeGarminReceiver},
        {"magellan", "MGN", magellan::magellanUnits, magellan::makeMagellanReceiver},
        {"mlr", "MLR", mlr::mlrUnits, mlr::makeMlrReceiver},
        {"nmea", "", nmea::nmeaUnits, nmea::makeNmeaReceiver},
    };
    return kFamilies;
}

const Family& receiverFamily(std::string_view nameOrCode) {
    const std::vector<Family>& families = receiverFamilies();
    const auto found = std::find_if(families.begin(), families.end(), [=](const Family& each) {
        return each.name == nameOrCode || (!each.code.empty() && each.code == nameOrCode);
    });
    if (found != families.end()) {
        return *found;
    }
    std::string names;
    for (const Family& each : families) {
        names += (names.empty() ? "" : ", ") + std::string(each.name);
    }
    throw std::invalid_argument("no family of receivers is called \"" + std::string(nameOrCode) +
                                "\"; there are: " + names);
}

}  // namespace marlune::receivers
