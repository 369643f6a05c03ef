#include "nmea/magellan/TrackSentence.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>

#include "base/CodePage.h"
#include "base/DateText.h"
#include "base/RunTimeError.h"
#include "garmin/values/NumberText.h"
#include "nmea/Geo.h"
#include "nmea/NmeaPacket.h"
#include "nmea/PositionFields.h"
#include "nmea/Sentence.h"
#include "nmea/magellan/TimeFields.h"

namespace marlune {
namespace {

unsigned twoDigits(std::string_view text) {
    const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
    if (text.size() != 2 || !std::all_of(text.begin(), text.end(), isDigit)) {
        throw RunTimeError(RunTimeError::typeMismatch);
    }
    return static_cast<unsigned>(text[0] - '0') * 10 + static_cast<unsigned>(text[1] - '0');
}

std::string_view piece(std::string_view text, std::size_t from, std::size_t length) {
    return text.substr(std::min(from, text.size()), length);
}

// "150325" as whole days since 30/12/1899.
double readDate(std::string_view ddmmyy) {
    using namespace std::chrono;
    const unsigned day = twoDigits(piece(ddmmyy, 0, 2));
    const unsigned month = twoDigits(piece(ddmmyy, 2, 2));
    const unsigned year = 2000 + twoDigits(piece(ddmmyy, 4, 2));
    const year_month_day date{std::chrono::year{static_cast<int>(year)}, std::chrono::month{month},
                              std::chrono::day{day}};
    if (!date.ok()) {
        throw RunTimeError(RunTimeError::typeMismatch);
    }
    constexpr sys_days kDayZero = std::chrono::year{1899} / December / 30;
    return static_cast<double>((sys_days{date} - kDayZero).count());
}

void readFields(Trace& point, const Sentence& fields, double defaultDate) {
    const double date = isDated(fields) ? readDate(fields.field(10)) : defaultDate;
    point.latitude = readLatitude(fields.field(1), fields.field(2));
    point.longitude = readLongitude(fields.field(3), fields.field(4));
    point.altitude = readAltitude(fields.field(5), fields.field(6));
    point.exact = readExactPosition(fields, 1);
    point.exact->altitude = readExactAltitude(fields.field(5), fields.field(6));
    point.pTime = readTrackTime(date, fields.field(7));
    if (!fields.field(9).empty()) {
        point.SetName(fromAnsi(fields.field(9)));
    }
}

// Whole metres, at least five digits behind the sign.
std::string altitudeText(float altitude) {
    const double metres = roundHalfEven(altitude, 0);
    const std::string digits = numberText(std::abs(metres), '.');
    const std::size_t missing = digits.size() < 5 ? 5 - digits.size() : 0;
    return (metres < 0 ? "-" : "") + std::string(missing, '0') + digits;
}

// "hhnnss" of a date value.
std::string timeText(double time) {
    const std::string date = formatDate(time);
    return date.substr(11, 2) + date.substr(14, 2) + date.substr(17, 2);
}

}  // namespace

bool isDated(const Sentence& trackPoint) {
    return trackPoint.fieldCount() > 10;
}

std::string GetAttributes_MGN(Trace& point, std::string_view sentence, double defaultDate) {
    const Sentence fields(sentence);
    if (fields.fieldCount() < 8) {
        return {};
    }
    try {
        readFields(point, fields, defaultDate);
    } catch (const RunTimeError&) {
        return {};
    }
    return fields.computedChecksum();
}

std::string CoderMgn(const Trace& point) {
    Geo geo;
    geo.Position({point.latitude, point.longitude});
    return signedSentence("$PMGNTRK," + geo.DMM() + ',' + altitudeText(point.altitude) + ",M," +
                          timeText(point.pTime) + ".00,A," + upperCase(toAnsi(point.GetName())) +
                          '*');
}

}  // namespace marlune
