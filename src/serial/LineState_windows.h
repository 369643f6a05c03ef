// How a line of Windows is set: from the state that its driver reports to the one that a receiver
// on a plain cable needs.
#pragma once

#include <windows.h>

#include <string>

namespace marlune {

// The driver's two calls; tests stand in for them.
struct LineCalls {
    BOOL(WINAPI* get)(HANDLE port, DCB* state) = GetCommState;
    BOOL(WINAPI* set)(HANDLE port, DCB* state) = SetCommState;
};

// Applies a settings text ("baud=9600 parity=n data=8 stop=1"). What the text does not name stays
// as the driver has it, but for what would spoil a binary dialogue over three wires: no flow
// control, no byte replaced or dropped, no read that fails until an error is cleared, DTR and RTS
// on. Returns 0 or the system's error code.
DWORD setLine(HANDLE port, const std::string& settings, const LineCalls& calls = {});

}  // namespace marlune
