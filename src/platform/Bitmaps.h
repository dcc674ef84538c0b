// Pictures in memory.
#pragma once

#include "platform/Win.h"

namespace melvorin {

// Of 32 bits a pixel, the first line at the top.
inline BITMAPINFO topDownInfo(int width, int height) {
    BITMAPINFO info{};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    return info;
}

}  // namespace melvorin
