// One line of input into what it asks for.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

#include "cli/host/LineReader.h"
#include "cli/host/MemberTable.h"

namespace marlune::cli {

// {"call":"setNumPort","args":[3]}
struct Call {
    const Member* member = nullptr;
    Arguments arguments;
};

// {"when":"WayptData","nth":1,"call":"StopTransfert","args":[]}
struct When {
    std::string_view event;    // one of eventNames()
    std::uint64_t events = 1;  // until the call is made, that event included
    Call call;
};

// A line that asks for nothing that can be done, and why.
struct Fault {
    std::string text;
};

using Command = std::variant<Call, When, Fault>;

// Any bytes are welcome; the text of a Fault is UTF-8.
Command parseCommand(const InputLine& line);

}  // namespace marlune::cli
