// Edits that take lines apart or put them together, so that chords stay over their syllables:
// Enter, text with line ends that is pasted, Backspace at a line's start, Delete at its end, and
// whatever else takes line ends away.
//
// The words are what the editing control alone would leave, but where a chord line would be glued
// to words. No chord is lost that was not selected; of those that were, the ones in lines of chords
// between two lines of words stay where their letters stay.
//
// - A selection of whole chord lines and nothing else takes them away; so does one of the end of a
//   chord line with the chords in it.
// - Chords that are left in front of a selection that ends in another chord line stand in that one,
//   where they do not come to stand behind its chords; else the line end between stays.
// - Bars without a chord are no chord line: they stay with the half that has chords.
// - A chord line with no words below is put to the one above it with a blank between.
#pragma once

#include "chords/ChordPair.h"

namespace melvorin {

struct EditedLines {
    FollowLines lines;
    LinePlace caret;
    // Nothing could be joined: the text is what it was, and the caret has moved as by an arrow key.
    bool refused = false;
};

// What the control alone does: the text between two places gives way to `incoming`.
EditedLines editedPlainly(const FollowLines& lines, LinePlace from, LinePlace to,
                          const FollowText& incoming);

// Takes away what is between two places in different lines. `backward` is Backspace's: the caret
// stood at `to`.
EditedLines erasedLines(const FollowLines& lines, LinePlace from, LinePlace to, bool backward);

// Puts text that holds a line end in at a place.
EditedLines insertedLines(const FollowLines& lines, LinePlace at, const FollowText& incoming);

}  // namespace melvorin
