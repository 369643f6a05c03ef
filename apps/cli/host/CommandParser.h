// One line of input into what it asks for.
#pragma once

#include <cstdint>
#include <string>
#include <variant>
#include <vector>

#include "cli/host/LineReader.h"
#include "control/Surface.h"

namespace marlune::cli {

// {"call":"setNumPort","args":[3]}
struct Call {
    const surface::Member* member = nullptr;
    std::vector<surface::Argument> arguments;
    std::string id;  // of the caller's choice, as JSON; empty without one
};

// {"when":"WayptData","nth":1,"call":"StopTransfert","args":[]}
struct When {
    const surface::Event* event = nullptr;
    std::uint64_t events = 1;  // until the call is made, that event included
    Call call;
};

// A line that asks for nothing that can be done, and why.
struct Fault {
    std::string text;
    std::string call;  // what it wanted to call, as far as that can be told
    std::string id;    // as a call's
};

using Command = std::variant<Call, When, Fault>;

// Any bytes are welcome; the text of a Fault is UTF-8.
Command parseCommand(const InputLine& line);

}  // namespace marlune::cli
