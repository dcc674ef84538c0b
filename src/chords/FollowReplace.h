// Replacements all over a song, as Replace All makes them, with the chord lines set afterwards:
// what follows the words does so as if each match had been replaced by hand.
#pragma once

#include <vector>

#include "chords/ChordFollow.h"

namespace melvorin {

// `replacements` in the order of the text, without overlap, in positions of `before`, the whole
// text. The result holds them and what the chord lines need besides, as edits of `before`; it is
// the new text for applyEdits. A replacement that takes or brings a line end is made as it is. In a
// chord line every chord keeps its column as far as there is room, so blanks there stay what they
// are, whatever is replaced in them.
std::vector<FollowEdit> followReplacements(const Excerpt& before,
                                           const std::vector<TextEdit>& replacements);

}  // namespace melvorin
