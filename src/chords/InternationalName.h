// Chord symbols as most other programs and books read them.
#pragma once

#include "base/Text.h"

namespace melvorin {

// The chord, in the house's spelling, with its suffix as it is written elsewhere: "F7+" is "Fmaj7",
// "C4/7" "C7sus4", "Em7/9" "Em9", "C9" "Cadd9", "C°" "Cdim7", "C5/9" "Csus2". It has the same
// tones, and `houseSpelling` makes the same chord of it where a plain ninth has its seventh. Root
// and bass stay as they are. Text that is no chord comes back unchanged; parentheses at either end
// stay.
// Without `plainNinths` it says "Em7(9)", which is the same in any song.
Text internationalName(TextView chord, bool plainNinths = true);

}  // namespace melvorin
