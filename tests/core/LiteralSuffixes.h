// The rewriting of chord suffixes as it is written down: lists, and one replacement over the whole
// text after the other.
#pragma once

#include <functional>

#include "base/Text.h"

namespace melvorin::literal {

// Calls `row` with what to find and what to put there, in order; `ours` tells the rows whose
// strings are not in the stored lists.
void forEachSuffixRow(
    const std::function<void(const Text& find, const Text& replacement, bool ours)>& row);

Text normaliseSuffixes(Text text);

}  // namespace melvorin::literal
