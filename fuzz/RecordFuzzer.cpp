// Every decoder of Garmin records in every type, and what is made of the records it accepts.
// Input: one byte that chooses the type, then the record.
#include <cstdint>
#include <iterator>
#include <span>
#include <string>
#include <string_view>

#include "Require.h"
#include "garmin/records/PvtData.h"
#include "garmin/records/Route.h"
#include "garmin/records/RteLink.h"
#include "garmin/records/Trace.h"
#include "garmin/records/TrkHeader.h"
#include "garmin/records/Waypoint.h"
#include "garmin/values/Nombre.h"
#include "garmin/values/jour.h"

namespace {

using namespace marlune;
using Data = std::span<const std::uint8_t>;

constexpr std::string_view kTypes[] = {
    "D100", "D101", "D102", "D103", "D104", "D105", "D106", "D107", "D108", "D109", "D110",
    "D150", "D151", "D152", "D154", "D155", "D200", "D201", "D202", "D210", "D300", "D301",
    "D302", "D303", "D304", "D310", "D311", "D312", "D600", "D800", ""};

void waypoint(std::string_view type, Data data) {
    Waypoint decoded;
    decoded.GetAttributes(type, data);
    (void)decoded.getIdent(',');
    (void)decoded.getPosition('.');
    for (const std::string_view other : kTypes) {
        tolerate([&] { (void)decoded.Coder(other); });
    }
}

void trackPoint(std::string_view type, Data data) {
    Trace point;
    if (!point.GetAttributes(type, data)) {
        return;
    }
    const std::string line = point.getIdent('.');
    Trace read;
    read.SetAttributes(type, line);
    require(read.getIdent('.') == line);
    for (const std::string_view other : kTypes) {
        tolerate([&] { (void)point.Coder(other); });
    }
}

void route(std::string_view type, Data data) {
    Route decoded;
    decoded.GetAttributes(type, data);
    (void)decoded.getIdent();
    require(decoded.Coder(type).size() == 21);
}

void routeLink(std::string_view type, Data data) {
    RteLink link;
    link.GetAttributes(type, data);
    (void)link.getIdent();
    require(link.Coder(type).size() == 30);
}

void trackHeader(std::string_view type, Data data) {
    TrkHeader header;
    header.GetAttributes(type, data);
    (void)header.getIdent();
    (void)header.Coder(type);
}

void fix(Data data) {
    DebugTrace trace("");
    PvtData pvt;
    if (pvt.GetAttributes(data, -1, trace, '.')) {
        require(!pvt.getIdent('.').empty());
    }
}

void date(Data data) {
    (void)jour::GarminDateToDate(data);
    (void)jour::GarminTimeToDate(Nombre::BytestoLong(data));
    (void)jour::DateToGarminTime(Nombre::BytestoDbl(data));
}

void decode(std::string_view type, Data data) {
    if (type.starts_with("D1")) {
        waypoint(type, data);
    } else if (type == "D210") {
        routeLink(type, data);
    } else if (type.starts_with("D2")) {
        route(type, data);
    } else if (type.starts_with("D31")) {
        trackHeader(type, data);
    } else if (type == "D600") {
        date(data);
    } else if (type == "D800") {
        fix(data);
    } else {
        trackPoint(type, data);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const Data input(bytes, size);
    if (!input.empty()) {
        const std::string_view type = kTypes[input[0] % std::size(kTypes)];
        tolerate([&] { decode(type, input.subspan(1)); });
    }
    return 0;
}
