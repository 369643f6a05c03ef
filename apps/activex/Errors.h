// How a host learns why a member could not be called.
#pragma once

#include <windows.h>

#include <string_view>

namespace marlune::activex {

// Leaves the text (UTF-8) as the thread's error object, named as coming from the control, and
// returns the code.
HRESULT refuse(HRESULT code, std::string_view text);

// The same with the text that users know for the code, in French, or the system's own.
HRESULT refuse(HRESULT code);

}  // namespace marlune::activex
