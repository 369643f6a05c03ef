// The program's icons: SVG drawings in one colour, which takes that of the palette's text.
#pragma once

#include <QtGui/QIcon>
#include <QtGui/QPalette>

namespace marlune::desktop {

// "zoom-in": the drawing of that name in the program's resources.
QIcon iconNamed(const char* name, const QPalette& palette);

}  // namespace marlune::desktop
