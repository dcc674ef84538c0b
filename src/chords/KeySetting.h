// The spelling that a key change uses, and how many half steps the run has moved songs by.
#pragma once

#include "chords/Transpose.h"

namespace melvorin {

// The menu entries of the choice; the chosen one is marked. The blanks that stand for the mark
// differ by one between the first two.
struct SpellingCaptions {
    TextView sharps;
    TextView flats;
    TextView followKey;
};

// Where accidentals follow the key, neither of the two is chosen.
SpellingCaptions captionsOf(Spelling spelling, bool followsKey);

// "Melvorin " and the count in two digits, from 01 to 34: a count outside that range, which also
// runs below zero, is taken by its size and wrapped into it.
Text keyTag(int halfSteps);

}  // namespace melvorin
