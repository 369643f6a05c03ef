#include "nmea/RouteSentence.h"

#include <algorithm>
#include <cstdint>
#include <limits>

#include "base/CodePage.h"
#include "garmin/values/NumberText.h"
#include "nmea/NmeaPacket.h"
#include "nmea/Sentence.h"

namespace marlune {
namespace {

constexpr RouteDialect kMagellan = {"$PMGNRTE", true, true, 2,
                                    std::numeric_limits<std::size_t>::max()};
constexpr RouteDialect kMlr = {"$GPRTE", false, false, 4, 6};

std::string pointText(const RouteDialect& dialect, const Waypoint& point) {
    const std::string name = toAnsi(point.ident).substr(0, dialect.longestPointName);
    return ',' + std::string(trimBlanks(name)) + (dialect.hasIcons ? ",a" : "");
}

// Where the route's name stands, or the first point where there is no name.
constexpr std::size_t kName = 5;

bool hasName(const RouteDialect& dialect, const Sentence& fields, const KnownPoints& known) {
    const auto isPoint = [&](std::size_t field) {
        return known.count(fromAnsi(trimBlanks(fields.field(field)))) > 0;
    };
    return dialect.hasName && (!isPoint(kName) || isPoint(kName + 1));
}

}  // namespace

RoutePhrase readRouteSentence(const RouteDialect& dialect, std::string_view sentence,
                              const KnownPoints& known) {
    const Sentence fields(sentence);
    const bool named = hasName(dialect, fields, known);
    RoutePhrase phrase;
    phrase.total = roundTo<std::int16_t>(readNumber(fields.field(1)));
    phrase.index = roundTo<std::int16_t>(readNumber(fields.field(2)));
    phrase.number = roundTo<std::uint8_t>(readNumber(fields.field(4)));
    if (named) {
        phrase.name = fromAnsi(trimBlanks(fields.field(kName)));
    }
    const std::size_t step = dialect.hasIcons ? 2 : 1;
    for (std::size_t i = named ? kName + 1 : kName; i < fields.fieldCount(); i += step) {
        if (const std::string_view point = trimBlanks(fields.field(i)); !point.empty()) {
            phrase.points.push_back(fromAnsi(point));
        }
    }
    return phrase;
}

std::vector<std::string> routeSentences(const RouteDialect& dialect, const Route& route) {
    const std::vector<Waypoint>& points = route.Waypoints();
    const std::size_t perSentence = dialect.pointsPerSentence;
    const std::size_t total = (points.size() + perSentence - 1) / perSentence;
    std::vector<std::string> sentences;
    for (std::size_t index = 0; index < total; ++index) {
        std::string text = dialect.identifier + (',' + std::to_string(total)) + ',' +
                           std::to_string(index + 1) + ",c," + std::to_string(route.numRte);
        if (dialect.hasName) {
            text += ',' + toAnsi(route.Description());
        }
        const std::size_t end = std::min((index + 1) * perSentence, points.size());
        for (std::size_t i = index * perSentence; i < end; ++i) {
            text += pointText(dialect, points[i]);
        }
        sentences.push_back(signedSentence(text + '*'));
    }
    return sentences;
}

RoutePhrase RouteMGN(std::string_view sentence, const KnownPoints& known) {
    return readRouteSentence(kMagellan, sentence, known);
}

std::vector<std::string> PhraseRouteMGN(const Route& route) {
    return routeSentences(kMagellan, route);
}

RoutePhrase RouteMLR(std::string_view sentence) {
    return readRouteSentence(kMlr, sentence);
}

std::vector<std::string> PhraseRouteMLR(const Route& route) {
    return routeSentences(kMlr, route);
}

}  // namespace marlune
