// What there is to say of a song on paper.
#pragma once

#include <set>

#include "paper/PageMaker.h"

namespace melvorin {

// "no font has U+1F600 (line 3), U+05D0 (line 7)": each character with its first line. Not for
// an empty set.
Text unwritableInWords(const std::set<std::pair<char32_t, std::size_t>>& unwritable);
// "The font Papyrus is not there; another stands for it.", or, of a document, cannot be put into
// it. Empty where none is missing.
Text missingInWords(const std::set<Text>& faces, bool isDocument = false);
// "Page 1 of 2, set in 11.5 points, in 2 columns"; `page` counts from 0.
Text pageInWords(const LaidSong& laid, std::size_t page, std::size_t pages);

}  // namespace melvorin
