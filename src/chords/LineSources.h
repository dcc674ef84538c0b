// Which line of an edited text came from which line of the text before.
#pragma once

#include <cstddef>
#include <vector>

#include "base/Text.h"

namespace melvorin {

// Stands for "from no line".
inline constexpr std::size_t kNoLine = static_cast<std::size_t>(-1);

// For every line of `after` the number of the line of `before` that it is, unchanged or edited, or
// a part of, or that is the longest part of it; kNoLine for new ones. Lines are those of
// `takeEditorLine`, numbered from 0. Where one edit changes lines in several places and their
// number too, an edited line may count as new. In proportion to the text where the edit is in one
// place, and never more than a thousand times that.
std::vector<std::size_t> lineSources(TextView before, TextView after);

}  // namespace melvorin
