#include <cerrno>
#include <system_error>

#include "base/CodePage.h"
#include "base/SystemError.h"

namespace marlune {

std::string systemErrorText(std::int32_t code) {
    constexpr std::size_t kLongest = 255;
    std::string text = std::system_category().message(code);
    if (!isUtf8(text)) {
        text = fromAnsi(text);  // the user's locale is a single-byte one
    }
    if (text.size() > kLongest) {
        text = fromAnsi(toAnsi(text).substr(0, kLongest));
    }
    return std::string(trimBlanks(text));
}

std::int32_t lastSystemError() {
    return errno != 0 ? errno : EIO;
}

}  // namespace marlune
