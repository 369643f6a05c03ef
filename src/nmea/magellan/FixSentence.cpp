#include "nmea/magellan/FixSentence.h"

#include <string>

#include "base/RunTimeError.h"
#include "garmin/values/NumberText.h"
#include "nmea/PositionFields.h"
#include "nmea/Sentence.h"
#include "nmea/magellan/TimeFields.h"

namespace marlune {
namespace {

// Through the text line, as the fixes of all receivers are; always with the "." that reading it
// takes, so that nothing is lost on the way.
Trace makePoint(const PvtData& fix, bool first) {
    constexpr char kPoint = '.';
    std::string line = "T";
    for (const double value : {fix.latitude, fix.longitude, fix.time}) {
        line += ';' + numberText(value, kPoint);
    }
    line += ';' + numberText(fix.altitude, kPoint) + (first ? ";-1" : ";0");
    Trace point;
    point.SetAttributes("MGN", line);
    return point;
}

void readFields(PvtData& fix, const Sentence& fields, double today) {
    fix.time = readFixTime(today, fields.field(1));
    fix.altitude = readAltitude(fields.field(9), fields.field(10));
    fix.latitude = readLatitude(fields.field(2), fields.field(3));
    fix.longitude = readLongitude(fields.field(4), fields.field(5));
}

}  // namespace

void GetAttributes_MGN(PvtData& fix, std::string_view sentence, double today, bool first) {
    constexpr std::int16_t kThreeDimensional = 3;
    const Sentence fields(sentence);
    const bool valid = fields.field(6) != "0";
    fix.fix = valid ? kThreeDimensional : std::int16_t{0};
    if (!valid || fields.field(2).empty()) {
        return;
    }
    try {
        readFields(fix, fields, today);
        fix.point = makePoint(fix, first);
    } catch (const RunTimeError&) {
        fix.point.reset();
    }
}

}  // namespace marlune
