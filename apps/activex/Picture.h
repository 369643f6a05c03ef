// The picture that the control shows on a form.
#pragma once

#include <windows.h>

namespace marlune::activex {

class Picture {
public:
    Picture();
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;
    ~Picture();

    [[nodiscard]] HBITMAP bitmap() const { return bitmap_; }
    // Its size in the pixels of a screen.
    [[nodiscard]] SIZE pixels() const { return pixels_; }
    // Its size in hundredths of a millimetre, as containers measure controls.
    [[nodiscard]] SIZE himetric() const;
    // Draws it at its own size, whatever the context's units, with its upper left corner at (x, y).
    void draw(HDC context, int x, int y) const;

private:
    HBITMAP bitmap_;
    SIZE pixels_{};
};

}  // namespace marlune::activex
