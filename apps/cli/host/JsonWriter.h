// What the session tells, one JSON object a line, in the order in which it happens.
#pragma once

#include <string_view>

#include "cli/Output.h"
#include "cli/host/MemberTable.h"
#include "marlune/Host.h"

namespace marlune::cli {

class JsonWriter {
public:
    explicit JsonWriter(Output& output) : output_(output) {}

    // A field of an event: its declared name and its value.
    struct Field {
        std::string_view name;
        std::variant<std::int16_t, std::string_view> value;
    };

    void event(std::string_view name, std::initializer_list<Field> fields);
    void box(std::string_view text, BoxIcon icon);
    void result(std::string_view member, const Result& result);
    void error(std::string_view text);

private:
    Output& output_;
};

}  // namespace marlune::cli
