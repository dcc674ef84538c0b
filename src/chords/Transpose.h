// Moving the chords of one line to another key.
//
// A column is the 0-based number of a UTF-16 unit within its line; lines come without their line
// ends. The functions expect chord lines (see `IsChordLine`); on another line they still end and
// move whatever looks like a note, but its "&" become blanks where chords are put in columns.
// Nothing here throws except for want of memory.
#pragma once

#include <array>
#include <cstddef>
#include <span>
#include <vector>

#include "base/Text.h"
#include "chords/Note.h"

namespace melvorin {

enum class Direction { Down = 1, Up = 2 };

// Replaces the leftmost `find` and searches again from the start, until none is left, so that an
// occurrence which a replacement completes is replaced too. Compares with case. Returns the text
// unchanged where that could not end because `replacement` contains `find`, or `find` is empty.
// The work is in proportion to the length of the text and of all that is put in; nothing is
// searched again from far back. Other rules that feed themselves without end ("ba" by "aabb") are
// the caller's to avoid.
Text ReplaceAll(TextView text, TextView find, TextView replacement);

// The line with every note name a half step higher or lower. Chords stay one behind the other as
// they are: those behind a name that changed its length leave their columns.
Text TransposeLine(TextView line, Direction direction, Spelling spelling);

// Puts the tokens of `transposed` back to the columns of the tokens of `before`. A token whose
// left neighbour has grown into its place, or up to it, stands one blank behind that neighbour.
// The result is as long as `before`, or as the end of its last token if that is more, so nothing
// is cut. Tokens are paired from the left; those without a partner follow one blank behind.
Text RealignLine(TextView before, TextView transposed);

struct ColumnRange {
    std::size_t column = 0;
    std::size_t length = 0;

    friend bool operator==(const ColumnRange&, const ColumnRange&) = default;
};

// A stretch of the line and what it has become.
struct MovedRange {
    ColumnRange before;
    ColumnRange after;

    friend bool operator==(const MovedRange&, const MovedRange&) = default;
};

// A line after a key change, and how to get there from the line before it.
struct MovedLine {
    Text line;
    // Whether `line` differs from the line before.
    bool changed = false;
    // Every token, from left to right.
    std::vector<MovedRange> tokens;
    // The stretches that differ, from left to right and without overlap: renamed notes, and
    // blanks inserted (`before` is empty) or taken out (`after` is empty) behind a token. All
    // other characters are the same, one for one, so whoever replaces just these stretches, from
    // right to left, keeps the formatting of everything else.
    std::vector<MovedRange> edits;
};

// The notes of a line, from left to right (see `noteLength`). Characters in `fixed` are pictures
// (see `KeyChange::moveLine`).
std::vector<ColumnRange> noteColumns(TextView line, std::span<const ColumnRange> fixed = {});

// The line with the notes that `noteColumns` finds called by `names`, one for each, and realigned;
// notes without a name stay. A line that ends in a chord still does. `fixed` is as with
// `KeyChange::moveLine`.
MovedLine renameNotes(TextView line, std::span<const TextView> names,
                      std::span<const ColumnRange> fixed = {});

// One key change, made ready to be used on many lines.
class KeyChange {
  public:
    // Names are moved `steps` half steps one after the other, each from what the one before wrote;
    // chords are put into their columns once, at the end. `steps` is at least 1.
    KeyChange(Direction direction, Spelling spelling, unsigned steps = 1);

    // Appends the transposed and realigned line to `out`.
    void appendMoved(TextView line, Text& out) const;

    // The transposed and realigned line. The characters in `fixed` are pictures and not writing:
    // they come through unchanged, are neither note nor accidental nor separator, and move with
    // the token they stand in, which may be a token of pictures alone. The ranges are sorted, do
    // not overlap and lie within the line.
    MovedLine moveLine(TextView line, std::span<const ColumnRange> fixed = {}) const;

    // Appends the line with its names moved and nothing realigned.
    void appendTransposed(TextView line, Text& out) const;

  private:
    // What a letter and at most one accidental become: at most a letter and two accidentals.
    struct Name {
        std::array<char16_t, 3> chars{};
        std::size_t length = 0;
    };
    class ColumnWriter;

    char16_t* writeLongNote(TextView note, char16_t* out) const;
    template <class Watcher>
    std::size_t moveNote(TextView line, std::size_t column, Watcher& watcher,
                         ColumnWriter& out) const;
    template <class Watcher>
    char16_t* moveInto(char16_t* begin, TextView line, Watcher& watcher) const;

    Direction direction_;
    Spelling spelling_;
    unsigned steps_;
    // By letter, then without accidental, with '#', with 'b'.
    std::array<std::array<Name, 3>, 7> names_{};
};

}  // namespace melvorin
