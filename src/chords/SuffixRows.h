// The rewriting of chord suffixes as one list of rows: each is a `ReplaceAll` over the whole text,
// and they run in this order.
#pragma once

#include <vector>

#include "base/Text.h"

namespace melvorin {

struct SuffixRow {
    Text find;
    Text replacement;
    // A row of our own making: it keeps the columns of the line and leaves house style alone. The
    // others come from the stored lists and stay as they are there, also where they repeat
    // themselves, change nothing, or can never match because an earlier row took their text.
    bool ours = false;
};

// Stands behind the text while the rows run, so that its last chord is followed by a blank like
// every other one.
inline constexpr TextView kSuffixEndMarker = u" \u00A7";

// Every row from the first to the last, without the end marker. Built once; lives as long as the
// program.
const std::vector<SuffixRow>& suffixRows();

}  // namespace melvorin
