// Windows texts: UTF-16 for its calls and for COM, and the user's code page where a call without a
// wide form is used.
#pragma once

#include <string>
#include <string_view>

namespace marlune {

// UTF-8 to UTF-16 and back. What is malformed becomes U+FFFD.
std::wstring toWide(std::string_view utf8);
std::string fromWide(std::wstring_view wide);

// Text in the user's code page to UTF-8.
std::string fromUserCodePage(std::string_view text);

}  // namespace marlune
