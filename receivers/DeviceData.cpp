#include "receivers/DeviceData.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <system_error>

#include "base/CodePage.h"

namespace marlune::receivers {
namespace {

std::vector<std::string> split(std::string_view line) {
    std::vector<std::string> fields;
    while (true) {
        const std::size_t end = line.find(';');
        fields.emplace_back(trimBlanks(line.substr(0, end)));
        if (end == std::string_view::npos) {
            return fields;
        }
        line.remove_prefix(end + 1);
    }
}

// The fields of one line; what goes wrong with them is told with the line's number by the reader.
class Fields {
public:
    explicit Fields(std::string_view line) : fields_(split(line)) {}

    void need(std::size_t count) const {
        if (fields_.size() < count) {
            throw std::invalid_argument("has too few fields");
        }
    }
    [[nodiscard]] std::string text(std::size_t at) const {
        return at < fields_.size() ? fields_[at] : std::string();
    }
    [[nodiscard]] std::optional<double> number(std::size_t at) const {
        std::string field = text(at);
        if (field.empty()) {
            return std::nullopt;
        }
        std::replace(field.begin(), field.end(), ',', '.');
        double value = 0;
        const auto [stop, error] =
            std::from_chars(field.data(), field.data() + field.size(), value);
        if (error != std::errc() || stop != field.data() + field.size() || !std::isfinite(value)) {
            throw std::invalid_argument("\"" + text(at) + "\" is no number");
        }
        return value;
    }
    [[nodiscard]] double number(std::size_t at, double low, double high, double without) const {
        const double value = number(at).value_or(without);
        if (value < low || value > high) {
            throw std::invalid_argument("\"" + text(at) + "\" is out of range");
        }
        return value;
    }

private:
    std::vector<std::string> fields_;
};

constexpr double kLargest = 1e9;  // metres, days: beyond anything that a record holds

class Reader {
public:
    void take(std::string_view line);
    DeviceData data;

private:
    static Place place(const Fields& fields);
    static TrackPoint point(const Fields& fields);
    Route& route();

    bool inRoute_ = false;
};

Place Reader::place(const Fields& fields) {
    fields.need(4);
    Place place;
    place.ident = fields.text(1);
    place.latitude = fields.number(2, -90, 90, 0);
    place.longitude = fields.number(3, -180, 180, 0);
    place.comment = fields.text(4);
    place.altitude = fields.number(5);
    place.symbol = static_cast<int>(fields.number(6, 0, 65535, 18));
    place.display = static_cast<int>(fields.number(7, 0, 255, 0));
    return place;
}

TrackPoint Reader::point(const Fields& fields) {
    fields.need(3);
    TrackPoint point;
    point.latitude = fields.number(1, -180, 180, 0);
    point.longitude = fields.number(2, -180, 180, 0);
    point.time = fields.number(3, 0, kLargest, 0);
    point.altitude = fields.number(4);
    point.newSegment = fields.number(5, -kLargest, kLargest, 0) != 0;
    return point;
}

Route& Reader::route() {
    if (!inRoute_) {
        throw std::invalid_argument("stands in no route");
    }
    return data.routes.back();
}

// What follows "N;", whatever is in it.
std::string trackName(std::string_view line) {
    line.remove_prefix(line.starts_with("N;") ? 2 : 1);
    return std::string(trimBlanks(line));
}

void Reader::take(std::string_view line) {
    const char letter = line.empty() ? ' ' : line.front();
    const Fields fields(line);
    switch (letter) {
        case 'W':
            (inRoute_ ? route().points : data.places).push_back(place(fields));
            break;
        case 'L': {
            Route& current = route();
            constexpr std::string_view kLink = "RteLink ";
            const std::string text = fields.text(1);
            current.links.resize(std::max<std::size_t>(current.points.size(), 1));
            current.links.back() = text.starts_with(kLink) ? text.substr(kLink.size()) : "";
            break;
        }
        case 'R':
            fields.need(3);
            inRoute_ = true;
            data.routes.push_back(
                {static_cast<int>(fields.number(1, 0, 255, 0)), fields.text(2), {}, {}});
            break;
        case 'P':
            inRoute_ = false;
            data.proximities.push_back({place(fields), fields.number(8, 0, kLargest, 0)});
            break;
        case 'N':
            inRoute_ = false;
            data.tracks.push_back({trackName(line), {}});
            break;
        case 'T':
            inRoute_ = false;
            if (data.tracks.empty()) {
                data.tracks.emplace_back();
            }
            data.tracks.back().points.push_back(point(fields));
            break;
        case '-':
            inRoute_ = false;
            break;
        default:
            break;
    }
}

std::string placeFields(const Place& place) {
    return place.ident + ";" + numberText(place.latitude, 6) + ";" +
           numberText(place.longitude, 6) + ";" + place.comment + ";" +
           (place.altitude ? numberText(*place.altitude, 0) : "") + ";" +
           std::to_string(place.symbol) + ";" + std::to_string(place.display);
}

std::string pointLine(const TrackPoint& point) {
    return "T;" + numberText(point.latitude, 6) + ";" + numberText(point.longitude, 6) + ";" +
           numberText(point.time) + ";" + (point.altitude ? numberText(*point.altitude, 0) : "") +
           ";" + (point.newSegment ? "-1" : "0");
}

std::string withoutZeros(std::string text) {
    if (text.find('.') != std::string::npos) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.') {
            text.pop_back();
        }
    }
    return text == "-0" ? "0" : text;
}

// Room for every finite number: 309 digits, and as many decimals as are asked.
using Digits = std::array<char, 400>;

}  // namespace

DeviceData readData(std::string_view bytes) {
    constexpr std::string_view kMark = "\xEF\xBB\xBF";
    if (bytes.starts_with(kMark)) {
        bytes.remove_prefix(kMark.size());
    }
    const std::string text = isUtf8(bytes) ? std::string(bytes) : fromAnsi(bytes);
    std::string_view rest = text;
    Reader reader;
    for (int number = 1; !rest.empty(); ++number) {
        const std::size_t end = std::min(rest.find('\n'), rest.size());
        std::string_view line = rest.substr(0, end);
        rest.remove_prefix(std::min(end + 1, rest.size()));
        try {
            // A CR inside a line ends it as well, so that none gets into a text.
            while (!line.empty()) {
                const std::size_t cr = std::min(line.find('\r'), line.size());
                reader.take(line.substr(0, cr));
                line.remove_prefix(std::min(cr + 1, line.size()));
            }
        } catch (const std::invalid_argument& fault) {
            throw std::invalid_argument("line " + std::to_string(number) + ": " + fault.what());
        }
    }
    return std::move(reader.data);
}

DeviceData readDataFile(const std::string& path) {
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) {
        throw std::invalid_argument(path + ": the file is a folder");
    }
    std::ifstream file(path, std::ios::binary);
    if (!file.is_open()) {
        throw std::invalid_argument(path + ": " + std::generic_category().message(errno));
    }
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    try {
        return readData(bytes);
    } catch (const std::invalid_argument& fault) {
        throw std::invalid_argument(path + ": " + fault.what());
    }
}

Place whereabouts(const std::vector<Place>& places) {
    return places.empty() ? Place{"HERE", 45.923611, 6.869444, "", 1037, 18, 0} : places.front();
}

std::string placeLine(const Place& place) {
    return "W;" + placeFields(place);
}

std::vector<std::string> linesOf(const DeviceData& data) {
    std::vector<std::string> lines;
    for (const Place& place : data.places) {
        lines.push_back(placeLine(place));
    }
    for (const Proximity& each : data.proximities) {
        lines.push_back("P;" + placeFields(each.place) + ";" + numberText(each.distance, 0));
    }
    for (const Track& track : data.tracks) {
        lines.push_back("N;" + track.name);
        for (const TrackPoint& point : track.points) {
            lines.push_back(pointLine(point));
        }
    }
    for (const Route& route : data.routes) {
        lines.push_back("R;" + std::to_string(route.number) + ";" + route.name);
        for (std::size_t at = 0; at < route.points.size(); ++at) {
            lines.push_back(placeLine(route.points[at]));
            if (at < route.links.size()) {
                lines.push_back("L;RteLink " + route.links[at]);
            }
        }
    }
    return lines;
}

std::string numberText(double value, int decimals) {
    Digits digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                   std::chars_format::fixed, decimals);
    return withoutZeros({digits.data(), end.ptr});
}

std::string numberText(double value) {
    Digits digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                   std::chars_format::fixed);
    return withoutZeros({digits.data(), end.ptr});
}

}  // namespace marlune::receivers
