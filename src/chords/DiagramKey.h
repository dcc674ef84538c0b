// Chord diagrams in another key. Every root has the same kinds of chords at the same characters of
// its two fonts, so a diagram moves by its face alone.
#pragma once

#include <optional>

#include "base/Text.h"
#include "chords/Note.h"

namespace melvorin {

// The face that shows the diagram of this face `halfSteps` higher (lower where negative). The fonts
// follow the roots A, A#, Bb, B, C, C#, Db, D, D#, Eb, E, F, F#, Gb, G, G#, Ab: 01 and 02 are those
// of A. A root between two naturals is named as `spelling` says, unless the diagram stays where it
// is. Nothing where the face is no diagram font.
std::optional<Text> movedDiagramFace(TextView face, int halfSteps, Spelling spelling);

}  // namespace melvorin
