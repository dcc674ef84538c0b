// How well a colour is read on another.
#pragma once

#include "base/Editor.h"

namespace melvorin {

// The relative luminance of a colour, 0 (black) to 1 (white), and the contrast of two, 1 (none) to
// 21 (black on white), both as WCAG 2 defines them.
double luminance(Rgb colour);
double contrast(Rgb a, Rgb b);

}  // namespace melvorin
