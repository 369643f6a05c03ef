#include "storage/EventLines.h"

#include <algorithm>
#include <optional>

#include "garmin/values/NumberText.h"
#include "storage/formats/GpxValues.h"

namespace marlune {
namespace {

// A text as a field of a line: the separator of fields cannot stand in it.
std::string field(std::string text) {
    std::replace(text.begin(), text.end(), ';', ',');
    return text;
}

void appendPosition(std::string& line, double latitude, double longitude, char separator) {
    appendRounded(line, latitude, 6, separator);
    line += ';';
    appendRounded(line, longitude, 6, separator);
    line += ';';
}

void appendAltitude(std::string& line, std::optional<float> metres, char separator) {
    appendRounded(line, metres.value_or(0.0F), 0, separator);
}

}  // namespace

std::string eventLine(const WaypointRecord& waypoint, char decimalSeparator) {
    std::string line = "W;" + field(waypoint.name) + ";";
    appendPosition(line, waypoint.latitude, waypoint.longitude, decimalSeparator);
    line += field(waypoint.comment) + ";";
    appendAltitude(line, waypoint.altitude, decimalSeparator);
    return line + ";18;0";
}

std::string eventLine(const TrackPointRecord& point, char decimalSeparator) {
    std::string line = "T;";
    appendPosition(line, point.latitude, point.longitude, decimalSeparator);
    appendNumber(line, daysOfSeconds(point.time), decimalSeparator);
    line += ';';
    appendAltitude(line, point.altitude, decimalSeparator);
    return line + (point.segmentStart ? ";-1" : ";0");
}

std::string routeEventLine(int number, const std::string& name) {
    const std::string text = std::to_string(number);
    return "R;" + text + ";" + (name.empty() ? "ROUTE " + text : field(name));
}

std::string trackEventLine(const std::string& name) {
    return "N;" + field(name);
}

}  // namespace marlune
