#include "nmea/magellan/WaypointSentence.h"

#include <cmath>

#include "base/CodePage.h"
#include "base/RunTimeError.h"
#include "garmin/values/NumberText.h"
#include "nmea/Geo.h"
#include "nmea/NmeaPacket.h"
#include "nmea/PositionFields.h"
#include "nmea/Sentence.h"

namespace marlune {
namespace {

constexpr std::int16_t kSymbol = 18;

}  // namespace

std::string GetAttributes_MGN(Waypoint& waypoint, std::string_view sentence) {
    const Sentence fields(sentence);
    try {
        waypoint.latitude = readLatitude(fields.field(1), fields.field(2));
        waypoint.longitude = readLongitude(fields.field(3), fields.field(4));
        waypoint.altitude = readAltitude(fields.field(5), fields.field(6));
        waypoint.exact = readExactPosition(fields, 1);
        waypoint.exact->altitude = readExactAltitude(fields.field(5), fields.field(6));
    } catch (const RunTimeError&) {
        return {};
    }
    waypoint.ident = fromAnsi(trimBlanks(fields.field(7)));
    waypoint.comment = fromAnsi(trimBlanks(fields.field(8)));
    waypoint.symbol = kSymbol;
    return fields.computedChecksum();
}

std::string Coder_MGN(const Waypoint& waypoint) {
    Geo geo;
    geo.Position({waypoint.latitude, waypoint.longitude});
    return signedSentence("$PMGNWPL," + geo.DMM() + ',' +
                          numberText(std::trunc(waypoint.altitude), '.') + ",M," +
                          toAnsi(waypoint.ident) + ',' + toAnsi(waypoint.comment) + ",a*");
}

}  // namespace marlune
