// What the session tells, one JSON object a line, in the order in which it happens.
#pragma once

#include <string_view>

#include "cli/Output.h"
#include "control/Surface.h"
#include "marlune/Host.h"

namespace marlune::cli {

class JsonWriter {
public:
    explicit JsonWriter(Output& output) : output_(output) {}

    void event(const surface::Event& event, std::span<const surface::EventValue> values);
    void box(std::string_view text, BoxIcon icon);
    void result(std::string_view member, const surface::Result& result);
    void error(std::string_view text);

private:
    Output& output_;
};

}  // namespace marlune::cli
