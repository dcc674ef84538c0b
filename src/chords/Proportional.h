// Chords that were put over their words in a proportional font. There a blank is about half as wide
// as a letter, so the chords stand far to the right as soon as every character is as wide as any
// other.
#pragma once

#include <cstddef>
#include <vector>

#include "base/Text.h"
#include "chords/ChordRow.h"

namespace melvorin {

// Judges the lines of one song together.
class ProportionalTest {
  public:
    // A line of chords and the words below it.
    void addPair(TextView chords, TextView words);
    // True when most lines of chords run past the end of their words, and would not in a
    // proportional font.
    bool isProportional() const { return overshooting_ >= 2 && overshooting_ * 2 > pairs_; }

  private:
    std::size_t pairs_ = 0;
    std::size_t overshooting_ = 0;
};

// Gives every item of the row, which was read from `chords`, the column of the character of
// `words` that it stood over.
void moveToSyllables(std::vector<RowItem>& row, TextView chords, TextView words);

}  // namespace melvorin
