// Words that were stretched with hyphens under chords by longer names.
#pragma once

#include <vector>

#include "base/Text.h"
#include "chords/ChordRow.h"

namespace melvorin {

// "ri----ver" under "Fmaj7 G" is "ri--ver" under "F7+ G", and "gold--en" under "Cmaj7 G" is
// "golden": takes the hyphens out of the words that only made room for what the chord in front was
// written like. The items of the row, which stand above the words, keep their syllables. A hyphen
// or two that make no such room are the words' own.
void joinStretchedWords(std::vector<RowItem>& row, Text& words);

}  // namespace melvorin
