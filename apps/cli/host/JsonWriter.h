// What the session tells, one JSON object a line, in the order in which it happens.
#pragma once

#include <string_view>

#include "cli/Output.h"
#include "cli/host/CommandParser.h"
#include "control/Surface.h"
#include "marlune/Host.h"

namespace marlune::cli {

class JsonWriter {
public:
    explicit JsonWriter(Output& output) : output_(output) {}

    // From now on events carry their records, results their reports, and errors what they are
    // about, as values. The control must outlive what is written.
    void tellDetailsOf(const GpsControl& control) { control_ = &control; }

    void event(const surface::Event& event, std::span<const surface::EventValue> values);
    void box(std::string_view text, BoxIcon icon);
    // With the call's id, if it has one.
    void result(const Call& call, const surface::Result& result);
    void error(const Fault& fault);

private:
    Output& output_;
    const GpsControl* control_ = nullptr;  // whose details are told; null for none
};

}  // namespace marlune::cli
