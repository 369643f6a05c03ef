// A picture in memory that windows can be drawn into and that can be saved.
#pragma once

#include <windows.h>

#include <cstdint>
#include <string>
#include <vector>

class Bitmap {
public:
    Bitmap(int width, int height);
    Bitmap(const Bitmap&) = delete;
    Bitmap& operator=(const Bitmap&) = delete;
    ~Bitmap();

    [[nodiscard]] HDC context() const { return context_; }
    // The colour of a place, as 0x00RRGGBB.
    [[nodiscard]] std::uint32_t pixel(int x, int y) const;
    // Draws a window and the windows in it, as they would look on the screen.
    void drawWindow(HWND window);
    // Writes a .bmp file. False when that failed.
    [[nodiscard]] bool save(const std::wstring& path) const;

private:
    void drawTree(HWND window, POINT corner);

    int width_;
    int height_;
    HDC context_;
    void* bits_ = nullptr;
    HBITMAP bitmap_;
    HGDIOBJ before_;
};
