// Chords as they are written in songs from the web, and the house's spelling of them.
//
// The house writes degrees behind slashes and their accidentals behind them: C7+ is a major
// seventh, C4 a suspended fourth, C9 an added ninth, C7/9b a seventh with a flat ninth, Cm5b/7 the
// half-diminished chord, C5# the augmented one, C° the diminished one (with its seventh).
#pragma once

#include <optional>
#include <vector>

#include "base/Text.h"
#include "chords/Transpose.h"

namespace melvorin {

// The house's spelling of one chord, without blanks around it, in any usual notation: words,
// signs, parentheses, bass by note ("C/E") or by degree ("C/3"). It is made of the characters of
// chord lines alone, and the suffix normaliser leaves it as it is. Nothing when the text is no
// chord, or is one whose spelling says too little to write it so ("C7alt").
//
// A plain "C9", "C11" or "C13" stays as it is: whether its seventh is meant depends on where the
// song comes from. A sus2 is written as the 9 that it is played as.
std::optional<Text> houseSpelling(TextView chord);

// True for text that is no chord one could spell but can only be meant as one: "C7alt", "Hm".
bool resemblesChord(TextView text);

// Where the root of a chord stands in its text, and behind it the bass note, where there is one:
// each a letter with its accidentals, also in full-width or musical signs. The chord is one that
// can be read, or resembles one, and may have a parenthesis at either end. Degrees ("C/3") are no
// notes.
std::vector<ColumnRange> notesOfChord(TextView chord);

// A note as such a range has it, in its usual signs: "F\u266F" is "F#". One unit for one.
Text usualNote(TextView note);

}  // namespace melvorin
