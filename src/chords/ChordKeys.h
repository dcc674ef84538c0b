// Keys that take the caret through the chords: Tab to the next syllable, Ctrl+Enter to the chords
// above a word and back.
//
// Blanks that a chord line lacks up to the place are put in and are nobody's change: until a
// character is typed there, they vanish again when the caret leaves or a command runs, and so does
// a chord line that was made for it.
#pragma once

#include <cstddef>
#include <optional>
#include <utility>

#include "chords/ChordFollow.h"

namespace melvorin {

// The next place for a chord right of a column, or left of it: where a syllable of the words below
// begins (ChordPair.h); beyond the last one, and without words, every eighth column. To the left
// it ends at column 0. `line` is a chord line.
std::size_t nextChordStop(const FollowLines& lines, std::size_t line, std::size_t column,
                          bool backward);

// Positions of the chord that a double click at `position` takes, without blanks; nothing where
// there is none.
std::optional<std::pair<std::size_t, std::size_t>> chordAround(const Excerpt& text,
                                                               std::size_t position);

// Where the caret has been taken, and what was put in for that. A value. The lines that the
// functions get hold the place of the last answer. Its edits are made without a change event.
class ChordVisit {
  public:
    // Tab and Shift+Tab; nothing where the caret is in no chord line. A place within a chord is
    // passed over.
    std::optional<FollowAnswer> tab(const Excerpt& text, std::size_t caret, bool backward);
    // Ctrl+Enter: from words to their column of the chord line above, which is made where there is
    // none. Nothing where the caret is in no words.
    std::optional<FollowAnswer> toChords(const Excerpt& text, std::size_t caret);
    // Enter or Down in the chord line that toChords has led to: back into the words. Nothing
    // elsewhere; the key has its ordinary meaning then.
    std::optional<FollowAnswer> toWords(const Excerpt& text, std::size_t caret);
    // The caret has left, or a command is to run: what was put in goes. Nothing where nothing is to
    // go.
    std::optional<FollowAnswer> leave(const Excerpt& text, std::size_t caret);
    // A character was typed where something was put in: that is text from now on.
    void typed() { padding_ = {}; }
    // Another text: Undo, a load. What was put in is not there any more.
    void forget() { *this = {}; }
    // The caret has been taken to chords, and has not come back.
    bool isAway() const { return line_.has_value(); }
    // The stretch that was put in and may vanish: position and length.
    std::optional<std::pair<std::size_t, std::size_t>> padding() const;

  private:
    struct Padding {
        std::size_t position = 0;
        std::size_t blanks = 0;
        bool hasLine = false;  // a line end behind the blanks
    };

    void dropPadding(FollowLines& lines, std::size_t start, LinePlace& caret, bool andLine);
    FollowAnswer goTo(FollowLines& lines, const Excerpt& text, std::size_t line,
                      std::size_t column);

    Padding padding_;
    std::optional<std::size_t> line_;  // position of the chord line of toChords
    std::size_t wordsColumn_ = 0;
};

}  // namespace melvorin
