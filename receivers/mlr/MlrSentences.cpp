#include "receivers/mlr/MlrSentences.h"

#include <algorithm>
#include <cstdint>
#include <numeric>

#include "receivers/nmea/SentenceText.h"

namespace marlune::receivers::mlr {
namespace {

std::string checkField(std::string_view text) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    const unsigned sum = std::accumulate(text.begin(), text.end(), 0U, [](unsigned all, char c) {
        return all + static_cast<std::uint8_t>(c);
    });
    std::string field;
    for (const unsigned shift : {12U, 8U, 4U, 0U}) {
        field += kDigits[sum >> shift & 0xFU];
    }
    return field;
}

std::string waypoint(double latitude, double longitude, std::string name,
                     const std::string& comment) {
    constexpr int kDecimals = 3;
    name.resize(kNameWidth, ' ');
    return nmea::sentence("GPWPL," + nmea::coordinates(latitude, longitude, kDecimals) + ',' +
                          name + ' ' + comment);
}

}  // namespace

std::string command(std::string_view body) {
    return std::string(body) + checkField(body) + "\r\n";
}

bool isChecked(std::string_view text) {
    const std::size_t comma = text.rfind(',');
    return comma != std::string_view::npos &&
           text.substr(comma + 1) == checkField(text.substr(0, comma + 1));
}

std::string placeSentence(const Place& place) {
    return waypoint(place.latitude, place.longitude, nmea::wireText(place.ident),
                    nmea::wireText(place.comment));
}

std::string pointSentence(const TrackPoint& point, int number) {
    const std::string name =
        number < 1000 ? "TRC" + nmea::padded(number, 3) : "TR" + nmea::padded(number, 4);
    return waypoint(point.latitude, point.longitude, name, point.newSegment ? "C" : "");
}

std::optional<Place> readPlace(const nmea::HeardSentence& heard) {
    constexpr std::size_t kText = 5;
    const std::optional<double> latitude = nmea::readLatitude(heard.field(1), heard.field(2));
    const std::optional<double> longitude = nmea::readLongitude(heard.field(3), heard.field(4));
    if (!latitude || !longitude) {
        return std::nullopt;
    }
    const std::string_view text = heard.from(kText);
    Place place;
    place.ident = nmea::heldText(text.substr(0, kNameWidth));
    place.latitude = *latitude;
    place.longitude = *longitude;
    place.comment = nmea::heldText(text.substr(std::min(kNameWidth + 1, text.size())));
    return place;
}

}  // namespace marlune::receivers::mlr
