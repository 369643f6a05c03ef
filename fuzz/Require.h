// What fuzzers say of what they tried.
#pragma once

#include <cstdlib>
#include <utility>

#include "base/RunTimeError.h"

namespace marlune {

// A finding unless it holds.
inline void require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

// The control's own error is its answer to bad input; anything else is a finding.
template <class Action>
void tolerate(Action&& action) {
    try {
        std::forward<Action>(action)();
    } catch (const RunTimeError&) {
    }
}

}  // namespace marlune
