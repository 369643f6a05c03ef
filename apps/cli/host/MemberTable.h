// The control's members as data: what they are called, what they take, and how they are called.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "marlune/GpsControl.h"

namespace marlune::cli {

using Argument = std::variant<std::string, std::int16_t>;
using Arguments = std::vector<Argument>;
// Nothing, for the members that give nothing back.
using Result = std::variant<std::monostate, bool, double, std::string>;

enum class Parameter { text, integer };

// When a call of a member is made whose line arrives while another member runs.
enum class Urgency {
    waits,        // in its turn
    disconnects,  // at once
    stops         // at once; it means the member that runs, and nothing later
};

struct Member {
    std::string_view name;
    std::vector<Parameter> parameters;
    // The arguments must be as the parameters say.
    Result (*call)(GpsControl&, const Arguments&);
    Urgency urgency;
};

// In the order in which the control declares them.
const std::vector<Member>& members();
// Null when the control has no member of that name.
const Member* findMember(std::string_view name);

// The names of the sixteen events.
const std::vector<std::string_view>& eventNames();

}  // namespace marlune::cli
