// The records' text lines, number and date texts. Input: a line.
#include <cmath>
#include <cstdint>
#include <string>
#include <string_view>

#include "Require.h"
#include "garmin/records/Route.h"
#include "garmin/records/Trace.h"
#include "garmin/records/TrkHeader.h"
#include "garmin/records/Waypoint.h"
#include "garmin/values/Chaine.h"
#include "garmin/values/NumberText.h"
#include "garmin/values/jour.h"

namespace {

using namespace marlune;

void numbers(std::string_view line) {
    const LeadingNumber number = leadingNumber(line);
    require(number.length <= line.size());
    if (std::isfinite(number.value)) {
        require(readNumber(numberText(number.value, '.')) == number.value);
    }
    tolerate([&] {
        const float single = toSingle(number.value);
        require(toSingle(readNumber(numberText(single, '.'))) == single);
    });
}

// Reads the line as a record; what that writes is read again and written alike.
template <class Record>
Record record(const char* type, std::string_view line) {
    Record read;
    read.SetAttributes(type, line);
    const std::string written = read.getIdent('.');
    Record again;
    again.SetAttributes(type, written);
    require(again.getIdent('.') == written);
    return read;
}

void route(std::string_view line) {
    Route route;
    route.SetAttributes(line);
    Route again;
    again.SetAttributes(route.getIdent());
    require(again.getIdent() == route.getIdent());
    (void)route.Coder("D201");
}

void header(std::string_view line) {
    TrkHeader header;
    header.SetAttributes("D310", line, 1);
    (void)header.Coder("D310");
    (void)header.getIdent();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view line(reinterpret_cast<const char*>(bytes), size);
    numbers(line);
    tolerate([&] {
        const auto waypoint = record<Waypoint>("D108", line);
        (void)waypoint.Coder("D103");
        (void)waypoint.Coder("D110");
    });
    tolerate([&] { (void)record<Trace>("", line).Coder("D302"); });
    tolerate([&] { route(line); });
    tolerate([&] { header(line); });
    tolerate([&] { (void)jour::ParseDateText(line); });
    require(Chaine::Inverse(line, 3).size() >= Chaine::Inverse(line, 0).size());
    return 0;
}
