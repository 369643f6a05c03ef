#include <windows.h>

#include <array>

#include "base/CodePage.h"
#include "base/SystemError.h"
#include "base/WideText_windows.h"

namespace marlune {

std::string systemErrorText(std::int32_t code) {
    std::array<char, 256> text{};  // zeroed: one character more than the system may fill
    FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                   static_cast<DWORD>(code), 0, text.data(), text.size() - 1, nullptr);
    std::string message = fromUserCodePage(text.data());
    message.erase(message.find_last_not_of("\r\n") + 1);  // a box needs no line of its own for it
    return std::string(trimBlanks(message));
}

std::int32_t lastSystemError() {
    const DWORD error = GetLastError();
    return static_cast<std::int32_t>(error != ERROR_SUCCESS ? error : ERROR_GEN_FAILURE);
}

}  // namespace marlune
