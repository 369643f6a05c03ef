#include "Picture.h"

#include "Library.h"
#include "resource.h"

namespace marlune::activex {
namespace {

constexpr int kDrawnFor = 96;  // dots per inch

// A bitmap of the screen's kind with the picture in it.
HBITMAP scaled(const Picture& picture, HDC screen, SIZE size) {
    const HBITMAP bitmap = CreateCompatibleBitmap(screen, size.cx, size.cy);
    const HDC context = CreateCompatibleDC(screen);
    const HGDIOBJ before = SelectObject(context, bitmap);
    picture.draw(context, {0, 0, size.cx, size.cy});
    SelectObject(context, before);
    DeleteDC(context);
    return bitmap;
}

}  // namespace

Picture::Picture()
    : source_(static_cast<HBITMAP>(LoadImageW(libraryInstance(), MAKEINTRESOURCEW(IDB_PICTURE),
                                              IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION))) {
    BITMAP header{};
    GetObjectW(source_, sizeof header, &header);
    sourcePixels_ = {header.bmWidth, header.bmHeight};
    const HDC screen = GetDC(nullptr);
    pixels_ = {MulDiv(header.bmWidth, GetDeviceCaps(screen, LOGPIXELSX), kDrawnFor),
               MulDiv(header.bmHeight, GetDeviceCaps(screen, LOGPIXELSY), kDrawnFor)};
    screen_ = scaled(*this, screen, pixels_);
    ReleaseDC(nullptr, screen);
}

Picture::~Picture() {
    DeleteObject(screen_);
    DeleteObject(source_);
}

SIZE Picture::himetric() const {
    constexpr int kPerInch = 2540;
    return {MulDiv(sourcePixels_.cx, kPerInch, kDrawnFor),
            MulDiv(sourcePixels_.cy, kPerInch, kDrawnFor)};
}

void Picture::draw(HDC context, const RECTL& bounds) const {
    DIBSECTION pixels{};
    GetObjectW(source_, sizeof pixels, &pixels);
    // The picture has a colour in each pixel, and no table of colours.
    BITMAPINFO format{};
    format.bmiHeader = pixels.dsBmih;
    // From memory: a metafile has no context that a bitmap could be selected into beside it.
    const int mode = SetStretchBltMode(context, COLORONCOLOR);
    StretchDIBits(context, bounds.left, bounds.top, bounds.right - bounds.left,
                  bounds.bottom - bounds.top, 0, 0, sourcePixels_.cx, sourcePixels_.cy,
                  pixels.dsBm.bmBits, &format, DIB_RGB_COLORS, SRCCOPY);
    if (mode != 0) {
        SetStretchBltMode(context, mode);
    }
}

}  // namespace marlune::activex
