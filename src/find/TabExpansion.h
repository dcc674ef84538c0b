// Tabs turned into blanks, so that chords and syllables stay in their columns.
#pragma once

#include "app/Text.h"

namespace melvorin {

// Replaces every TAB by 1 to 8 blanks, up to the next column that is a multiple of 8. Columns
// count UTF-16 units since the last line end (CR, LF, CR LF or a soft line break, VT); the first
// line starts at `startColumn`, for text that is inserted within a line. Linear; everything else is
// unchanged.
Text expandTabs(TextView text, std::size_t startColumn = 0);

}  // namespace melvorin
