// Plays the user in front of message boxes: reads each one that the thread shows, tells it, and
// presses OK.
#pragma once

#include <windows.h>

#include <functional>
#include <string>

namespace marlune {

class BoxReader {
public:
    // A box: its text, and "critical", "exclamation", "information" or "none".
    using Reader = std::function<void(const std::wstring& text, const std::string& icon)>;

    explicit BoxReader(Reader reader);
    BoxReader(const BoxReader&) = delete;
    BoxReader& operator=(const BoxReader&) = delete;
    ~BoxReader();

private:
    static void CALLBACK look(HWND window, UINT message, UINT_PTR self, DWORD now);
    static BOOL CALLBACK lookAt(HWND window, LPARAM self);
    void read(HWND box);

    Reader reader_;
    // Has a timer whose messages the box's own message loop hands out as well.
    HWND window_;
    HWND last_ = nullptr;  // the box that was read
};

}  // namespace marlune
