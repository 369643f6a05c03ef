// The library that the control lives in: marlune.ocx.
#pragma once

#include <windows.h>

#include <string>

namespace marlune::activex {

HINSTANCE libraryInstance();
// The library's own file.
std::wstring libraryPath();

// Keeps the library loaded as long as one lives.
class LibraryUse {
public:
    LibraryUse() { hold(true); }
    LibraryUse(const LibraryUse&) = delete;
    LibraryUse& operator=(const LibraryUse&) = delete;
    ~LibraryUse() { hold(false); }

    // The same by hand: every true is followed by a false, some day.
    static void hold(bool use);
    [[nodiscard]] static bool any();
};

}  // namespace marlune::activex
