// What the symbols of a row are in the company of the others.
#pragma once

#include <cstddef>
#include <vector>

#include "base/Text.h"
#include "chords/ChordRow.h"

namespace melvorin {

// True for a symbol that cannot be read, but between clear chords can be nothing else: "C7?",
// "C/Eb/G", "Clyd", "(C7alt)". By itself it may be a word.
bool mayBeRefused(TextView text, const ChordReading& reading);

// A chord that is hardly a word, not even in front of other words: "G", "Am7", but not "A", "Em".
bool isFirm(const RowItem& item);

// Settles items whose marks are joined. What cannot be read of a row of clear chords is one of them
// and stays as it is ("G C7? Am7"); a dot is a beat; letters beside syllables are words, and
// so are initials ("G. H."). `line` is
// what the items were read from, `index` where it begins.
void settleSymbols(std::vector<RowItem>& items, TextView line, std::size_t index,
                   const ChordReading& reading);

}  // namespace melvorin
