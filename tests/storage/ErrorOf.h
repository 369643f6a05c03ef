// The system's error that an action raises; none when it raises none.
#pragma once

#include <system_error>

namespace marlune {

template <class Action>
std::error_code errorOf(const Action& action) {
    try {
        action();
    } catch (const std::system_error& error) {
        return error.code();
    }
    return {};
}

}  // namespace marlune
