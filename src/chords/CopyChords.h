// The chords of one verse put over the words of another.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "chords/ChordFollow.h"

namespace melvorin {

// Chord lines on their way to other words.
struct CopiedChords {
    struct Row {
        bool hasUpper = false;  // two lines of `chords`, the upper one first
        Text words;             // that they stood over; empty where there were none
    };

    Excerpt chords;  // the chord lines alone, from position 0; the text for the clipboard
    std::vector<Row> rows;
    // Where each line of `chords` was in the text that it comes from.
    std::vector<std::size_t> places;

    bool empty() const { return rows.empty(); }
};

// The chord lines that the selection touches, a line behind its last line end not included. `text`
// reaches kLinesAbove lines above the selection and kLinesBelow below, or further. Positions; with
// nothing selected both are the caret's.
CopiedChords copyChords(const Excerpt& text, std::size_t begin, std::size_t end);

// Where the columns of a line of words belong over other words: over the same letter of the word
// with the same number, at most the last one of it, or at the same distance before the first word,
// behind the word in front, or behind all words. Words that the other line lacks are as if they
// stood behind it.
class OtherWords {
  public:
    OtherWords(const FollowText& words, const FollowText& other);
    std::size_t operator()(std::size_t column) const;

  private:
    struct Line {
        std::vector<std::size_t> columns;
        std::vector<ChordRun> words;
    };
    static Line read(const FollowText& text);

    Line own_;
    Line other_;
};

struct PastedChords {
    // What is carried has Origin::Incoming: indices of the copied text.
    FollowAnswer answer;
    std::size_t placed = 0;  // chord lines over words, an upper line not counted
    std::size_t left = 0;    // those that no line of words was left for: the user is told
};

// Puts the chords over the lines of words that the selection touches, line by line, in place of
// chord lines that stand there; from the caret's line on to the end of `text`, where nothing is
// selected. Lines of words that no chords are left for stay as they are. `text` reaches kLinesAbove
// lines above. Nothing where there are no words.
std::optional<PastedChords> pasteChords(const Excerpt& text, std::size_t begin, std::size_t end,
                                        const CopiedChords& copied);

}  // namespace melvorin
