#include "serial/LineState_windows.h"

namespace marlune {
namespace {

void prepareForReceiver(DCB& line) {
    line.fBinary = TRUE;  // the system knows no other mode
    line.fParity = FALSE;
    line.fOutxCtsFlow = FALSE;
    line.fOutxDsrFlow = FALSE;
    line.fDsrSensitivity = FALSE;
    line.fOutX = FALSE;
    line.fInX = FALSE;
    line.fErrorChar = FALSE;
    line.fNull = FALSE;
    line.fAbortOnError = FALSE;
    // Level converters and some receivers draw their power from these two.
    line.fDtrControl = DTR_CONTROL_ENABLE;
    line.fRtsControl = RTS_CONTROL_ENABLE;
    // Unused without flow control, yet refused when they are the same.
    if (line.XonChar == line.XoffChar) {
        line.XonChar = 0x11;
        line.XoffChar = 0x13;
    }
}

}  // namespace

DWORD setLine(HANDLE port, const std::string& settings, const LineCalls& calls) {
    DCB line{};
    line.DCBlength = sizeof line;
    if (calls.get(port, &line) == FALSE) {
        return GetLastError();
    }
    prepareForReceiver(line);
    const bool set =
        BuildCommDCBA(settings.c_str(), &line) != FALSE && calls.set(port, &line) != FALSE;
    return set ? ERROR_SUCCESS : GetLastError();
}

}  // namespace marlune
