#include "cli/host/Details.h"

#include <array>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <nlohmann/json.hpp>

#include "control/ToldRecord.h"
#include "garmin/values/NumberText.h"
#include "marlune/RecordFiles.h"

namespace marlune::cli {
namespace {

using Json = nlohmann::ordered_json;

// "2007-01-15T12:34:56Z", with milliseconds when there are any; null for what is no such time.
Json isoTime(double seconds) {
    using namespace std::chrono;
    constexpr double kLatest = 253402300799.0;  // the last second of the year 9999
    if (!(std::abs(seconds) <= kLatest)) {
        return nullptr;
    }
    const sys_time<milliseconds> time{milliseconds(std::llround(seconds * 1000))};
    const auto day = floor<days>(time);
    const year_month_day date(day);
    const hh_mm_ss clock(time - day);
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), "%04d-%02u-%02uT%02d:%02d:%02d",
                  static_cast<int>(date.year()), static_cast<unsigned>(date.month()),
                  static_cast<unsigned>(date.day()), static_cast<int>(clock.hours().count()),
                  static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    std::string iso = text.data();
    if (const auto fraction = clock.subseconds().count(); fraction != 0) {
        std::snprintf(text.data(), text.size(), ".%03d", static_cast<int>(fraction));
        iso += text.data();
    }
    return iso + "Z";
}

// With the digits that a single has, not those of the double that it becomes.
Json number(float value) {
    return std::isfinite(value) ? Json(readNumber(numberText(value, '.'))) : Json(nullptr);
}
Json number(double value) {
    return std::isfinite(value) ? Json(value) : Json(nullptr);
}
Json number(auto whole) {
    return whole;
}

template <class Value>
void put(Json& object, const char* name, const std::optional<Value>& value) {
    if (value) {
        object[name] = number(*value);
    }
}

void putTime(Json& object, const std::optional<double>& time) {
    if (time) {
        object["time"] = isoTime(*time);
    }
}

Json position(double latitude, double longitude) {
    return {{"latitude", number(latitude)}, {"longitude", number(longitude)}};
}

Json jsonOf(const WaypointRecord& record) {
    Json object = {{"name", record.name}, {"comment", record.comment}};
    object.update(position(record.latitude, record.longitude));
    put(object, "altitude", record.altitude);
    put(object, "depth", record.depth);
    put(object, "temperature", record.temperature);
    put(object, "proximity", record.proximity);
    putTime(object, record.time);
    put(object, "symbol", record.symbol);
    if (const std::string name = symbolName(record.symbol.value_or(-1)); !name.empty()) {
        object["symbolName"] = name;
    }
    put(object, "display", record.display);
    return object;
}

Json jsonOf(const TrackRecord& record) {
    Json object = {{"name", record.name}};
    put(object, "display", record.display);
    put(object, "colour", record.colour);
    return object;
}

Json jsonOf(const TrackPointRecord& record) {
    Json object = position(record.latitude, record.longitude);
    putTime(object, record.time);
    put(object, "altitude", record.altitude);
    put(object, "depth", record.depth);
    put(object, "temperature", record.temperature);
    object["segmentStart"] = record.segmentStart;
    return object;
}

Json jsonOf(const RouteRecord& record) {
    return {{"number", record.number}, {"name", record.name}};
}

Json jsonOf(const RoutePointRecord& record) {
    return jsonOf(record.point);
}

Json jsonOf(const RouteLinkRecord& record) {
    return {{"class", record.linkClass}, {"subclass", record.subclass}, {"name", record.name}};
}

Json jsonOf(const FixRecord& record) {
    Json object = position(record.latitude, record.longitude);
    put(object, "altitude", record.altitude);
    putTime(object, record.time);
    put(object, "quality", record.quality);
    put(object, "error", record.error);
    put(object, "horizontalError", record.horizontalError);
    put(object, "verticalError", record.verticalError);
    put(object, "eastSpeed", record.eastSpeed);
    put(object, "northSpeed", record.northSpeed);
    put(object, "upSpeed", record.upSpeed);
    return object;
}

// What the event is about; null when that is none of the records.
Json recordOf(surface::Tells about, const Records& records) {
    Json object;
    surface::visitTold(about, records, [&](const auto& record) { object = jsonOf(record); });
    return object;
}

// The names of the enumerations, in their order.
constexpr std::array kKinds = {"none", "waypoints", "tracks",   "routes",   "proximities",
                               "time", "position",  "realTime", "sentences"};
constexpr std::array kEndings = {"complete",      "nothingThere",  "interrupted", "endMissing",
                                 "cancelled",     "disconnected",  "deviceGone",  "refused",
                                 "protocolError", "notOffered",    "fileError",   "unsendable",
                                 "noSession",     "needsWaypoints"};
constexpr std::array kOutcomes = {"none",   "identified",    "opened",        "notOpened",
                                  "silent", "otherLanguage", "protocolError", "abandoned"};
constexpr std::array kSources = {"none", "announced", "table", "generic"};

template <class Names, class Value>
const char* nameOf(const Names& names, Value value) {
    return names.at(static_cast<std::size_t>(value));
}

Json jsonOf(const TransferReport& report) {
    return {{"kind", nameOf(kKinds, report.kind)},
            {"direction", report.direction == TransferDirection::upload ? "upload" : "download"},
            {"ending", nameOf(kEndings, report.ending)},
            {"whole", report.isWhole()},
            {"pid", report.pid},
            {"detail", report.detail},
            {"announced", report.announced ? Json(*report.announced) : Json()},
            {"transferred", report.transferred},
            {"rejected", report.rejected()},
            {"undecodable", report.undecodable},
            {"wrongChecksum", report.wrongChecksum},
            {"unknown", report.unknown},
            {"positionless", report.positionless},
            {"duplicates", report.duplicates},
            {"oversized", report.oversized},
            {"damaged", report.damaged},
            {"acknowledged", report.acknowledged},
            {"unacknowledged", report.unacknowledged},
            {"leftOut", report.leftOut},
            {"firstLeftOut", report.firstLeftOut}};
}

Json jsonOf(const ConnectionReport& report) {
    return {{"outcome", nameOf(kOutcomes, report.outcome)},
            {"connected", report.isConnected()},
            {"protocolCode", report.protocolCode},
            {"device", report.device},
            {"systemError", report.systemError},
            {"detail", report.detail},
            {"pid", report.pid},
            {"damaged", report.damaged},
            {"capabilities", nameOf(kSources, report.capabilities)}};
}

}  // namespace

void addRecord(Json& object, const surface::Event& event, const Records& records) {
    if (Json record = recordOf(event.tells, records); !record.is_null()) {
        object["record"] = std::move(record);
    }
}

void addReport(Json& object, const surface::Member& member, const GpsControl& control) {
    if (member.role == surface::Role::connects) {
        object["connection"] = jsonOf(control.lastConnection());
    } else if (member.role == surface::Role::transfers) {
        object["transfer"] = jsonOf(control.lastTransfer());
    }
    if (const auto& fix = control.records().fix;
        member.name == "getPosition" && fix && control.lastTransfer().isWhole()) {
        object["record"] = jsonOf(*fix);  // its text is in radians
    }
}

}  // namespace marlune::cli
