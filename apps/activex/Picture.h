// The picture that the control shows on a form. It is drawn for a screen of 96 dots per inch, and
// keeps its size in millimetres on others.
#pragma once

#include <windows.h>

namespace marlune::activex {

class Picture {
public:
    Picture();
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;
    ~Picture();

    // At its size on the screen.
    [[nodiscard]] HBITMAP bitmap() const { return screen_; }
    // Its size in the pixels of the screen.
    [[nodiscard]] SIZE pixels() const { return pixels_; }
    // Its size in hundredths of a millimetre, as containers measure controls.
    [[nodiscard]] SIZE himetric() const;
    // Draws it into the rectangle, which is in the context's units. The context may be a metafile.
    void draw(HDC context, const RECTL& bounds) const;

private:
    HBITMAP source_;  // as it was drawn
    SIZE sourcePixels_{};
    HBITMAP screen_ = nullptr;
    SIZE pixels_{};
};

}  // namespace marlune::activex
