// Chords as they are written in songs from the web, and the house's spelling of them.
//
// The house writes degrees behind slashes and their accidentals behind them: C7+ is a major
// seventh, C4 a suspended fourth, C5/9 a suspended second (the fifth by name tells that there is no
// third), C9 an added ninth, C7/9b a seventh with a flat ninth, Cm5b/7 the half-diminished chord,
// C5# the augmented one, C° the diminished one (with its seventh).
#pragma once

#include <optional>
#include <vector>

#include "base/Text.h"
#include "chords/NoteNames.h"
#include "chords/Transpose.h"

namespace melvorin {

// The house's spelling of one chord, without blanks around it, in any usual notation: words,
// signs, parentheses, bass by note ("C/E") or by degree ("C/3"), German names ("Hm", "Fis7"). It is
// made of the characters of chord lines alone, and the suffix normaliser leaves it as it is. It has
// the tones of the chord, but for a fifth that is left out ("C7(no5)" is C7) and the seventh of
// every diminished chord. Nothing when some part of the text cannot be read, or says too little
// ("C7alt", "C+9").
//
// What B, a small letter and a plain "C9" mean is in `reading`; without it a "C9", "C11" or "C13"
// stays as it is.
std::optional<Text> houseSpelling(TextView chord, const ChordReading& reading = {});

// True for text that is no chord one could spell but can only be meant as one: "C7alt".
bool resemblesChord(TextView text, const ChordReading& reading = {});

// Where the root of a chord stands in its text, and behind it an added note ("C(add G#)") and the
// bass note, where there are such: each a letter with its accidentals or its ending ("Fis"), also
// in full-width or musical signs. The chord is one that can be read, or resembles one, and may have
// a parenthesis at either end. Degrees ("C/3") are no notes.
std::vector<ColumnRange> notesOfChord(TextView chord, const ChordReading& reading = {});

// A note as such a range has it, in its usual signs: "F\u266F" is "F#". One unit for one.
Text usualNote(TextView note);

}  // namespace melvorin
