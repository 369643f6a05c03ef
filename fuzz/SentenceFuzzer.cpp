// Every sentence codec. Input: a sentence.
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

#include "Require.h"
#include "nmea/NmeaPacket.h"
#include "nmea/RouteSentence.h"
#include "nmea/Sentence.h"
#include "nmea/magellan/FixSentence.h"
#include "nmea/magellan/TrackSentence.h"
#include "nmea/magellan/WaypointSentence.h"
#include "nmea/mlr/MlrRecords.h"

namespace {

using namespace marlune;

constexpr double kToday = 39234;

// What is written ends as a sentence must; a "*" inside a text makes it another sentence.
void requireSigned(const std::string& written) {
    require(written.size() >= 6 && written.substr(written.size() - 2) == "\r\n");
    const std::string_view body(written.data(), written.size() - 2);
    if (body.find('*') == body.size() - 3) {
        const Sentence sentence(body);
        require(sentence.receivedChecksum() == sentence.computedChecksum());
    }
}

void waypoints(std::string_view text) {
    Waypoint waypoint;
    if (GetAttributes_MGN(waypoint, text).empty()) {
        return;
    }
    const std::string written = Coder_MGN(waypoint);
    requireSigned(written);
    Waypoint again;
    require(
        !GetAttributes_MGN(again, std::string_view(written).substr(0, written.size() - 2)).empty());
    // Three decimals of a minute, and a single's precision, on the way there and back.
    require(std::abs(again.latitude - waypoint.latitude) <=
                2e-5 * (1 + std::abs(waypoint.latitude)) ||
            std::abs(waypoint.latitude) >= 100);
    require(again.ident == waypoint.ident || waypoint.ident.find('*') != std::string::npos ||
            std::abs(waypoint.latitude) >= 100);
}

void mlrWaypoints(std::string_view text) {
    Waypoint waypoint;
    (void)GetAttributes_MLR(waypoint, text);
    requireSigned(Coder_MLR(waypoint));
    Trace point;
    (void)GetAttributes_MLR(point, text, kToday);
    require(point.pTime == 0 || std::abs(point.pTime - kToday) < 4);
}

void trackPoints(std::string_view text) {
    Trace point;
    if (!GetAttributes_MGN(point, text, kToday).empty()) {
        requireSigned(CoderMgn(point));
    }
    if (text.size() >= kMlrTrackRecordLength) {
        (void)GetAttributes_MLR_SP(point, text, kToday);
        (void)point.getIdent('.');
    }
}

void fixes(std::string_view text) {
    PvtData fix;
    GetAttributes_MGN(fix, text, kToday, true);
    require(fix.getIdent(',').empty() == !fix.point.has_value());
}

// A route that is written and read again names the same points.
void routes(std::string_view text) {
    const RoutePhrase phrase = RouteMGN(text);
    Route route;
    route.numRte = phrase.number;
    for (const std::string& name : phrase.points) {
        Waypoint point;
        point.ident = name;
        route.AddWaypt(point);
    }
    std::size_t read = 0;
    for (const std::string& sentence : PhraseRouteMGN(route)) {
        requireSigned(sentence);
        read += RouteMGN(sentence).points.size();
    }
    require(read == phrase.points.size());
    for (const std::string& sentence : PhraseRouteMLR(route)) {
        requireSigned(sentence);
        (void)RouteMLR(sentence);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(bytes), size);
    tolerate([&] { waypoints(text); });
    tolerate([&] { mlrWaypoints(text); });
    tolerate([&] { trackPoints(text); });
    fixes(text);
    tolerate([&] { routes(text); });
    require(upperCase(text).size() == text.size());
    return 0;
}
