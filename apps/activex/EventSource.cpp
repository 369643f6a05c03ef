#include "EventSource.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "Bstr.h"
#include "ConnectionPoint.h"

namespace marlune::activex {
namespace {

VARIANT valueOf(const surface::EventValue& from) {
    VARIANT value{};
    if (const auto* number = std::get_if<std::int16_t>(&from)) {
        value.vt = VT_I2;
        value.iVal = *number;
    } else {
        value.vt = VT_BSTR;
        value.bstrVal = Bstr(std::get<std::string_view>(from)).release();
    }
    return value;
}

}  // namespace

void EventSource::raise(const surface::Event& event, std::span<const surface::EventValue> values) {
    std::vector<VARIANT> reversed;
    std::transform(values.rbegin(), values.rend(), std::back_inserter(reversed), valueOf);
    sinks_.raise(event.id, reversed);
    for (VARIANT& value : reversed) {
        VariantClear(&value);
    }
}

}  // namespace marlune::activex
