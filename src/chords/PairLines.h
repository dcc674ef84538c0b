// Edits that take lines apart or put them together, so that chords stay over their syllables:
// Enter, text with line ends that is pasted, Backspace at a line's start, Delete at its end, and
// whatever else takes line ends away.
//
// The words are what the editing control alone would leave, but where a chord line would be glued
// to words. No chord is lost that was not selected; of those that were, the ones in lines of chords
// between two lines of words stay where their letters stay.
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
