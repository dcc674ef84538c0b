// Which lines of a document are the widest ones.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "base/Text.h"

namespace melvorin {

// At most `count` of them, from 0, the likely widest first: by their cells and the largest size in
// them. `text` is what the document shows, as the control gives it; where its source does not
// explain that, the sizes do not count.
std::vector<std::int32_t> widestLines(std::string_view rtf, TextView text, std::size_t count);

}  // namespace melvorin
