// Making the control known to the system, and forgetting it again.
#pragma once

#include <windows.h>

namespace marlune::activex {

enum class Scope { allUsers, currentUser };

// For all users; for the current user when the program has not the right to that.
HRESULT registerControl();

HRESULT registerControlFor(Scope scope);

// Removes what was registered for the current user and, as far as the rights go, for all users.
HRESULT unregisterControl();

}  // namespace marlune::activex
