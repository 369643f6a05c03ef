#include "receivers/magellan/MagellanSentences.h"

#include <algorithm>
#include <cmath>

#include "receivers/nmea/SentenceText.h"

namespace marlune::receivers::magellan {
namespace {

constexpr int kDecimals = 3;

std::string altitudeText(const std::optional<double>& altitude, int digits) {
    constexpr double kHighest = 99999;
    const double metres = std::clamp(altitude.value_or(0), -kHighest, kHighest);
    return nmea::padded(std::llround(metres), digits) + ",M,";
}

std::string pointBody(const TrackPoint& point) {
    return "PMGNTRK," + nmea::coordinates(point.latitude, point.longitude, kDecimals) + ',' +
           altitudeText(point.altitude, 5) + nmea::timeText(point.time) + ",A";
}

bool hasDay(const TrackPoint& point) {
    return point.time >= 1;
}

// An altitude may be missing, but not be nonsense.
bool mayBeAltitude(const nmea::HeardSentence& heard, const std::optional<double>& altitude) {
    return altitude || heard.field(5).empty();
}

}  // namespace

std::string placeSentence(const Place& place) {
    return nmea::sentence("PMGNWPL," +
                          nmea::coordinates(place.latitude, place.longitude, kDecimals) + ',' +
                          altitudeText(place.altitude, 7) + nmea::wireText(place.ident) + ',' +
                          nmea::wireText(place.comment) + ",a");
}

std::string pointSentence(const TrackPoint& point, const std::string& track) {
    return nmea::sentence(pointBody(point) + ',' + nmea::wireText(track) +
                          (hasDay(point) ? ',' + nmea::dayText(point.time) : ""));
}

std::string shortPointSentence(const TrackPoint& point) {
    return nmea::sentence(pointBody(point));
}

std::optional<Place> readPlace(const nmea::HeardSentence& heard) {
    const auto latitude = nmea::readLatitude(heard.field(1), heard.field(2));
    const auto longitude = nmea::readLongitude(heard.field(3), heard.field(4));
    const auto altitude = nmea::readAltitude(heard.field(5), heard.field(6));
    if (!latitude || !longitude || !mayBeAltitude(heard, altitude)) {
        return std::nullopt;
    }
    Place place;
    place.ident = nmea::heldText(heard.field(7));
    place.latitude = *latitude;
    place.longitude = *longitude;
    place.comment = nmea::heldText(heard.field(8));
    place.altitude = altitude;
    return place;
}

std::optional<HeardPoint> readPoint(const nmea::HeardSentence& heard) {
    const auto latitude = nmea::readLatitude(heard.field(1), heard.field(2));
    const auto longitude = nmea::readLongitude(heard.field(3), heard.field(4));
    const auto altitude = nmea::readAltitude(heard.field(5), heard.field(6));
    const auto time = nmea::readTime(heard.field(7));
    const auto day =
        heard.field(10).empty() ? std::optional<double>(0) : nmea::readDay(heard.field(10));
    if (!latitude || !longitude || !mayBeAltitude(heard, altitude) || !time || !day ||
        heard.field(8) != "A") {
        return std::nullopt;
    }
    return HeardPoint{nmea::heldText(heard.field(9)),
                      {*latitude, *longitude, *day + *time, altitude, false}};
}

}  // namespace marlune::receivers::magellan
