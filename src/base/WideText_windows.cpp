#include "base/WideText_windows.h"

#include <windows.h>

namespace marlune {
namespace {

std::wstring widen(UINT codePage, std::string_view text) {
    const int length = static_cast<int>(text.size());
    std::wstring wide(
        static_cast<std::size_t>(MultiByteToWideChar(codePage, 0, text.data(), length, nullptr, 0)),
        L'\0');
    MultiByteToWideChar(codePage, 0, text.data(), length, wide.data(),
                        static_cast<int>(wide.size()));
    return wide;
}

}  // namespace

std::wstring toWide(std::string_view utf8) {
    return widen(CP_UTF8, utf8);
}

std::string fromWide(std::wstring_view wide) {
    const int length = static_cast<int>(wide.size());
    std::string utf8(static_cast<std::size_t>(WideCharToMultiByte(CP_UTF8, 0, wide.data(), length,
                                                                  nullptr, 0, nullptr, nullptr)),
                     '\0');
    WideCharToMultiByte(CP_UTF8, 0, wide.data(), length, utf8.data(), static_cast<int>(utf8.size()),
                        nullptr, nullptr);
    return utf8;
}

std::string fromUserCodePage(std::string_view text) {
    return fromWide(widen(CP_ACP, text));
}

}  // namespace marlune
