#include "receivers/nmea/RouteSentences.h"

#include <algorithm>

#include "receivers/nmea/SentenceText.h"

namespace marlune::receivers::nmea {
namespace {

constexpr std::size_t kFirstField = 5;  // behind the route's number

}  // namespace

std::vector<std::string> routeSentences(const RouteStyle& style, const Route& route) {
    const std::size_t count = route.points.size();
    const std::size_t total = (count + style.pointsPerSentence - 1) / style.pointsPerSentence;
    std::vector<std::string> sentences;
    for (std::size_t at = 0; at < count; at += style.pointsPerSentence) {
        std::string body = std::string(style.name) + ',' + std::to_string(total) + ',' +
                           std::to_string(sentences.size() + 1) + ",c," +
                           std::to_string(route.number);
        if (style.named) {
            body += ',' + wireText(route.name);
        }
        const std::size_t end = std::min(at + style.pointsPerSentence, count);
        for (std::size_t point = at; point < end; ++point) {
            body += ',' + wireText(route.points[point].ident) + (style.named ? ",a" : "");
        }
        sentences.push_back(sentence(body));
    }
    return sentences;
}

std::optional<RoutePart> readRoute(const RouteStyle& style, const HeardSentence& heard) {
    const std::optional<int> total = readWhole(heard.field(1));
    const std::optional<int> index = readWhole(heard.field(2));
    const std::optional<int> number = readWhole(heard.field(4));
    if (!total || !index || !number || *index < 1 || *index > *total) {
        return std::nullopt;
    }
    RoutePart part = {*total, *index, *number, "", {}};
    part.name = style.named ? heldText(heard.field(kFirstField)) : "";
    const std::size_t step = style.named ? 2 : 1;
    for (std::size_t at = kFirstField + (style.named ? 1 : 0); at < heard.fieldCount();
         at += step) {
        if (std::string point = heldText(heard.field(at)); !point.empty()) {
            part.points.push_back(std::move(point));
        }
    }
    return part;
}

}  // namespace marlune::receivers::nmea
