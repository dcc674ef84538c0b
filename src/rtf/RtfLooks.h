// Size, style and alignment along the source of a Rich Text document. Face and colour are the map's
// (RtfMap.h).
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "base/Editor.h"

namespace melvorin {

struct RtfLook {
    int halfPoints = 24;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    Alignment alignment = Alignment::Left;

    friend bool operator==(const RtfLook&, const RtfLook&) = default;
};

// From this byte of the source on.
struct RtfLookChange {
    std::size_t begin = 0;
    RtfLook look;
};

// In the order of the source; the first begins at 0. Whatever the source is, it ends, in linear
// time.
std::vector<RtfLookChange> looksOf(std::string_view rtf);

}  // namespace melvorin
