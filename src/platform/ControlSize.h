// How large a control has to be for its text.
#pragma once

#include "platform/Layout.h"
#include "platform/Win.h"

namespace melvorin {

// Device pixels that the control needs in its font: for its caption, for the longest entry of a
// drop-down list, of a frame for what stands in its line. Where a text wraps it does so at `width`,
// and is that wide; 0: it stays on its lines. What scrolls, shortens or can be typed in needs no
// width. A push button of our own answers BCM_GETIDEALSIZE.
Size neededSize(HWND control, int width);

// A drop-down box is as high as its font makes it; the height that it is given is that of its list.
bool isDropDown(HWND control);

}  // namespace melvorin
