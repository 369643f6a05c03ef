#include "Bitmap.h"

#include <cstring>

namespace {

BITMAPINFOHEADER headerOf(int width, int height) {
    BITMAPINFOHEADER header{};
    header.biSize = sizeof header;
    header.biWidth = width;
    header.biHeight = height;  // positive: rows stand from the bottom up
    header.biPlanes = 1;
    header.biBitCount = 32;
    header.biCompression = BI_RGB;
    return header;
}

}  // namespace

Bitmap::Bitmap(int width, int height)
    : width_(width), height_(height), context_(CreateCompatibleDC(nullptr)) {
    BITMAPINFO info{};
    info.bmiHeader = headerOf(width, height);
    bitmap_ = CreateDIBSection(context_, &info, DIB_RGB_COLORS, &bits_, nullptr, 0);
    before_ = SelectObject(context_, bitmap_);
}

Bitmap::~Bitmap() {
    SelectObject(context_, before_);
    DeleteObject(bitmap_);
    DeleteDC(context_);
}

std::uint32_t Bitmap::pixel(int x, int y) const {
    GdiFlush();
    std::uint32_t value = 0;
    const auto row = static_cast<std::size_t>(height_ - 1 - y);
    const std::size_t at = row * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x);
    std::memcpy(&value, static_cast<const char*>(bits_) + at * sizeof value, sizeof value);
    return value & 0xFFFFFFU;
}

void Bitmap::drawWindow(HWND window) {
    drawTree(window, {0, 0});
}

void Bitmap::drawTree(HWND window, POINT corner) {
    RECT client{};
    GetClientRect(window, &client);
    // Each window in a picture of its own: some reckon their clipping from its corner.
    Bitmap picture(client.right, client.bottom);
    const auto context = reinterpret_cast<WPARAM>(picture.context_);
    BitBlt(picture.context_, 0, 0, client.right, client.bottom, context_, corner.x, corner.y,
           SRCCOPY);
    SendMessageW(window, WM_ERASEBKGND, context, 0);
    SendMessageW(window, WM_PRINTCLIENT, context, PRF_CLIENT | PRF_ERASEBKGND);
    BitBlt(context_, corner.x, corner.y, client.right, client.bottom, picture.context_, 0, 0,
           SRCCOPY);
    for (HWND child = GetWindow(window, GW_CHILD); child != nullptr;
         child = GetWindow(child, GW_HWNDNEXT)) {
        if ((GetWindowLongW(child, GWL_STYLE) & WS_VISIBLE) != 0) {
            POINT at = {0, 0};
            MapWindowPoints(child, window, &at, 1);
            drawTree(child, {corner.x + at.x, corner.y + at.y});
        }
    }
}

bool Bitmap::save(const std::wstring& path) const {
    GdiFlush();
    const BITMAPINFOHEADER info = headerOf(width_, height_);
    const auto size = static_cast<DWORD>(width_ * height_ * 4);
    BITMAPFILEHEADER file{};
    file.bfType = 0x4D42;  // "BM"
    file.bfOffBits = sizeof file + sizeof info;
    file.bfSize = file.bfOffBits + size;
    const HANDLE out =
        CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    if (out == INVALID_HANDLE_VALUE) {
        return false;
    }
    DWORD done = 0;
    const bool written = WriteFile(out, &file, sizeof file, &done, nullptr) != FALSE &&
                         WriteFile(out, &info, sizeof info, &done, nullptr) != FALSE &&
                         WriteFile(out, bits_, size, &done, nullptr) != FALSE;
    CloseHandle(out);
    return written;
}
