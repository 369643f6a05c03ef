// Automation's strings.
#pragma once

#include <windows.h>
// After windows.h:
#include <oleauto.h>

#include <string>
#include <string_view>
#include <utility>

#include "base/WideText_windows.h"

namespace marlune::activex {

// A string of its own, from UTF-8. Null when there is no memory.
class Bstr {
public:
    explicit Bstr(std::string_view utf8) : text_(allocate(toWide(utf8))) {}
    Bstr(const Bstr&) = delete;
    Bstr& operator=(const Bstr&) = delete;
    ~Bstr() { SysFreeString(text_); }

    [[nodiscard]] BSTR get() const { return text_; }
    // Hands the string over to the caller.
    [[nodiscard]] BSTR release() { return std::exchange(text_, nullptr); }

private:
    static BSTR allocate(std::wstring_view wide) {
        return SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
    }

    BSTR text_;
};

// The UTF-8 of a string of automation; a null string is an empty text.
inline std::string fromBstr(BSTR text) {
    return fromWide({text, SysStringLen(text)});
}

}  // namespace marlune::activex
