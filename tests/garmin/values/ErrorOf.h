#pragma once

#include "base/RunTimeError.h"

namespace marlune {

// The number of the run-time error that the action raises, 0 when it raises none.
template <class Action>
int errorOf(Action&& action) {
    try {
        action();
    } catch (const RunTimeError& error) {
        return error.number();
    }
    return 0;
}

}  // namespace marlune
