// Where picture and caption of a button stand, and what the picture looks like on its face.
#pragma once

#include <cstdint>
#include <vector>

#include "base/Services.h"
#include "widgets/ButtonProperties.h"

namespace melvorin {

// Rows from the top, each pixel 0xAARRGGBB.
struct Pixels {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> argb;
    bool hasAlpha = false;  // else the topmost byte means nothing
};

struct Extent {
    int width = 0;
    int height = 0;

    friend bool operator==(const Extent&, const Extent&) = default;
};

struct ButtonLayout {
    Area picture;
    Area caption;  // the caption is centred in it
};

// Both are centred as one group in the button; `gap` pixels part them. An empty extent means that
// there is no picture, or no caption. A picture that is too large reaches over the edges; the
// caption never does.
ButtonLayout layoutButton(Extent button, Extent picture, Extent caption, std::int32_t position,
                          int gap);

// What the drawn size of a picture is, in device pixels: `source` is its own size, `given` that of
// the properties, `room` what the button has.
Extent drawnSize(std::int32_t mode, Extent source, Extent given, Extent room);

// The picture's upper left part of `size` as it looks on `face` (0xRRGGBB), opaque. Where the
// picture ends, there is face. Alpha lets the face through; with `transparent` so does the
// colour of the first pixel. `faded` is the look of a disabled button.
Pixels onFace(const Pixels& picture, Extent size, std::uint32_t face, bool transparent, bool faded);

}  // namespace melvorin
