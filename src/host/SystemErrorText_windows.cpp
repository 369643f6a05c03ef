#include <windows.h>

#include <array>

#include "host/CodePage.h"
#include "host/Services.h"
#include "host/WideText_windows.h"

namespace marlune {

std::string systemErrorText(std::int32_t code) {
    std::array<char, 256> text{};  // zeroed: one character more than the system may fill
    FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                   static_cast<DWORD>(code), 0, text.data(), text.size() - 1, nullptr);
    return std::string(trimBlanks(fromUserCodePage(text.data())));
}

std::int32_t lastSystemError() {
    const DWORD error = GetLastError();
    return static_cast<std::int32_t>(error != ERROR_SUCCESS ? error : ERROR_GEN_FAILURE);
}

}  // namespace marlune
