#include "Picture.h"

#include <array>

#include "Library.h"
#include "resource.h"

namespace marlune::activex {

Picture::Picture()
    : bitmap_(static_cast<HBITMAP>(LoadImageW(libraryInstance(), MAKEINTRESOURCEW(IDB_PICTURE),
                                              IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION))) {
    BITMAP header{};
    GetObjectW(bitmap_, sizeof header, &header);
    pixels_ = {header.bmWidth, header.bmHeight};
}

Picture::~Picture() {
    DeleteObject(bitmap_);
}

SIZE Picture::himetric() const {
    constexpr int kPerInch = 2540;
    const HDC screen = GetDC(nullptr);
    const SIZE size = {MulDiv(pixels_.cx, kPerInch, GetDeviceCaps(screen, LOGPIXELSX)),
                       MulDiv(pixels_.cy, kPerInch, GetDeviceCaps(screen, LOGPIXELSY))};
    ReleaseDC(nullptr, screen);
    return size;
}

void Picture::draw(HDC context, int x, int y) const {
    std::array<POINT, 2> corners = {{{0, 0}, {pixels_.cx, pixels_.cy}}};
    DPtoLP(context, corners.data(), static_cast<int>(corners.size()));
    const HDC source = CreateCompatibleDC(context);
    const HGDIOBJ before = SelectObject(source, bitmap_);
    StretchBlt(context, x, y, corners[1].x - corners[0].x, corners[1].y - corners[0].y, source, 0,
               0, pixels_.cx, pixels_.cy, SRCCOPY);
    SelectObject(source, before);
    DeleteDC(source);
}

}  // namespace marlune::activex
