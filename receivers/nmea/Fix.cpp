#include "receivers/nmea/Fix.h"

#include <cmath>
#include <numbers>

#include "receivers/Walk.h"
#include "receivers/nmea/SentenceText.h"

namespace marlune::receivers::nmea {
namespace {

constexpr double kKnot = 1852.0 / 3600;
constexpr int kDecimals = 4;

std::string oneDecimal(double value) {
    const std::string text = numberText(value, 1);
    return text.find('.') == std::string::npos ? text + ".0" : text;
}

// "4555.4167,N,00652.2824,E", or as many empty fields.
std::string positionFields(const Fix& fix) {
    return fix.valid ? coordinates(fix.latitude, fix.longitude, kDecimals) : ",,,";
}

}  // namespace

Fix walkRound(const Place& centre, double seconds, double date) {
    const Motion motion = walk(centre, seconds);
    const double heading = std::atan2(motion.east, motion.north) * 180 / std::numbers::pi;
    return {true,
            motion.latitude,
            motion.longitude,
            motion.altitude,
            std::hypot(motion.east, motion.north),
            heading < 0 ? heading + 360 : heading,
            date};
}

std::string ggaSentence(const Fix& fix) {
    return sentence("GPGGA," + timeText(fix.date) + ',' + positionFields(fix) +
                    (fix.valid ? ",1,08,1.1," + oneDecimal(fix.altitude) + ",M,48.0,M,,"
                               : std::string(",0,00,99.9,,M,,M,,")));
}

std::string rmcSentence(const Fix& fix) {
    const std::string motion =
        fix.valid ? oneDecimal(fix.speed / kKnot) + ',' + oneDecimal(fix.course) : ",";
    return sentence("GPRMC," + timeText(fix.date) + (fix.valid ? ",A," : ",V,") +
                    positionFields(fix) + ',' + motion + ',' + dayText(fix.date) + ",,," +
                    (fix.valid ? 'A' : 'N'));
}

std::string gsaSentence(const Fix& fix) {
    return sentence(fix.valid ? "GPGSA,A,3,02,05,09,12,17,21,25,29,,,,,1.9,1.1,1.5"
                              : "GPGSA,A,1,,,,,,,,,,,,,99.9,99.9,99.9");
}

std::string gllSentence(const Fix& fix) {
    return sentence("GPGLL," + positionFields(fix) + ',' + timeText(fix.date) +
                    (fix.valid ? ",A,A" : ",V,N"));
}

}  // namespace marlune::receivers::nmea
