// What the session tells, one JSON object a line, in the order in which it happens.
#pragma once

#include <string_view>

#include "cli/Output.h"
#include "cli/host/MemberTable.h"
#include "control/NamedEvents.h"
#include "marlune/Host.h"

namespace marlune::cli {

class JsonWriter {
public:
    explicit JsonWriter(Output& output) : output_(output) {}

    void event(std::string_view name, std::initializer_list<NamedEvents::Parameter> parameters);
    void box(std::string_view text, BoxIcon icon);
    void result(std::string_view member, const Result& result);
    void error(std::string_view text);

private:
    Output& output_;
};

}  // namespace marlune::cli
