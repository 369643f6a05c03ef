#include "EventSource.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <vector>

#include "Bstr.h"
#include "ConnectionPoint.h"

namespace marlune::activex {
namespace {

// In the order of their dispatch ids, which begin with 1.
constexpr std::array<std::string_view, 16> kEvents = {
    "StartDownload", "StartUpload", "EndDownload", "EndUpload", "GpsInfo",   "TrackData",
    "TrackHeader",   "WayptData",   "RouteHeader", "RouteData", "RouteLink", "ProxData",
    "Startpvt",      "PvtData",     "EndPvt",      "PhraseNMEA"};

VARIANT valueOf(const NamedEvents::Parameter& parameter) {
    VARIANT value{};
    if (const auto* number = std::get_if<std::int16_t>(&parameter.value)) {
        value.vt = VT_I2;
        value.iVal = *number;
    } else {
        value.vt = VT_BSTR;
        value.bstrVal = Bstr(std::get<std::string_view>(parameter.value)).release();
    }
    return value;
}

}  // namespace

void EventSource::raise(std::string_view name, std::initializer_list<Parameter> parameters) {
    const auto event = std::find(kEvents.begin(), kEvents.end(), name) - kEvents.begin() + 1;
    std::vector<VARIANT> reversed;
    std::transform(std::rbegin(parameters), std::rend(parameters), std::back_inserter(reversed),
                   valueOf);
    sinks_.raise(static_cast<DISPID>(event), reversed);
    for (VARIANT& value : reversed) {
        VariantClear(&value);
    }
}

}  // namespace marlune::activex
