#include "BoxReader.h"

#include <array>
#include <cwchar>
#include <utility>

namespace marlune {
namespace {

constexpr UINT kEveryMilliseconds = 10;

struct BoxContent {
    std::wstring text;
    std::string icon = "none";
};

std::string nameOf(HICON icon) {
    const std::array<std::pair<LPSTR, const char*>, 3> kIcons = {
        {{IDI_HAND, "critical"}, {IDI_EXCLAMATION, "exclamation"}, {IDI_ASTERISK, "information"}}};
    for (const auto& [resource, name] : kIcons) {
        if (LoadIconW(nullptr, reinterpret_cast<LPCWSTR>(resource)) == icon) {
            return name;
        }
    }
    return "none";
}

// A box holds a button, a text, and perhaps a picture.
BOOL CALLBACK readItem(HWND item, LPARAM content) {
    auto& box = *reinterpret_cast<BoxContent*>(content);
    std::array<wchar_t, 32> kind{};
    GetClassNameW(item, kind.data(), static_cast<int>(kind.size()));
    if (_wcsicmp(kind.data(), L"static") != 0) {
        return TRUE;
    }
    const auto icon = reinterpret_cast<HICON>(SendMessageW(item, STM_GETICON, 0, 0));
    if (icon != nullptr) {
        box.icon = nameOf(icon);
        return TRUE;
    }
    std::array<wchar_t, 2048> text{};
    GetWindowTextW(item, text.data(), static_cast<int>(text.size()));
    box.text = text.data();
    return TRUE;
}

}  // namespace

BoxReader::BoxReader(Reader reader) : reader_(std::move(reader)) {
    window_ = CreateWindowW(L"STATIC", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                            GetModuleHandleW(nullptr), nullptr);
    SetTimer(window_, reinterpret_cast<UINT_PTR>(this), kEveryMilliseconds, look);
}

BoxReader::~BoxReader() {
    DestroyWindow(window_);
}

void CALLBACK BoxReader::look(HWND /*window*/, UINT /*message*/, UINT_PTR self, DWORD /*now*/) {
    EnumThreadWindows(GetCurrentThreadId(), lookAt, static_cast<LPARAM>(self));
}

BOOL CALLBACK BoxReader::lookAt(HWND window, LPARAM self) {
    std::array<wchar_t, 32> kind{};
    GetClassNameW(window, kind.data(), static_cast<int>(kind.size()));
    if (std::wcscmp(kind.data(), L"#32770") != 0 || IsWindowVisible(window) == FALSE) {
        return TRUE;
    }
    reinterpret_cast<BoxReader*>(self)->read(window);
    return FALSE;
}

void BoxReader::read(HWND box) {
    if (box == last_) {
        return;  // it is closing
    }
    last_ = box;
    BoxContent content;
    EnumChildWindows(box, readItem, reinterpret_cast<LPARAM>(&content));
    reader_(content.text, content.icon);
    SendMessageW(box, WM_COMMAND, IDOK, 0);
    last_ = nullptr;
}

}  // namespace marlune
