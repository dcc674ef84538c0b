// Which characters of an edited line are those of the line before.
#pragma once

#include <cstddef>
#include <vector>

#include "base/Text.h"

namespace melvorin {

// Stands for "no column".
inline constexpr std::size_t kNoColumn = static_cast<std::size_t>(-1);

struct LineAlignment {
    // For every UTF-16 unit of the line after, its column in the line before; ascending.
    std::vector<std::size_t> columns;
    std::size_t weight = 0;  // how much is the same; blanks count least, diagrams most
};

// The characters that both lines have in one order, as many as can be; in long lines only those at
// the beginning and the end. `before` and `after` may have diagram tokens.
LineAlignment alignLine(TextView before, TextView after);

}  // namespace melvorin
