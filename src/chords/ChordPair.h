// Which lines belong together: a line of chords and the words below it.
//
// A chord line here is what a reader of songs takes for one (ChordRow.h), so "Cmaj7   A2" and
// "C | G | x2" are chord lines; the narrower test of the key change does not matter. Labels,
// tablature, directives and chord lines are no words; an empty line is.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "chords/FollowText.h"

namespace melvorin {

// Diagrams do not count; a line of nothing else is a chord line.
bool holdsChords(const FollowText& line);
// The same while somebody types between two indices: what is there or touches them may be half
// written and does not count, unless it is all there is.
bool mayHoldChords(const FollowText& line, std::size_t begin, std::size_t end);
// Whether what else is in the line leaves it open: bars and the like, or nothing. A chord line that
// somebody types in is still one then.
bool mayStayChords(const FollowText& line, std::size_t begin, std::size_t end);
// True for an empty line too.
bool holdsWords(const FollowText& line);

// Line numbers.
struct LinePair {
    std::size_t words = 0;
    std::size_t chords = 0;  // directly above the words
    // A second chord line directly above, each of whose items starts where one of `chords` does.
    std::optional<std::size_t> upper;

    std::size_t top() const { return upper.value_or(chords); }
};

std::optional<LinePair> pairOfWords(const FollowLines& lines, std::size_t words);
// The pair that a chord line belongs to, as the lower or the upper one; nothing where no words are
// below it.
std::optional<LinePair> pairOfChords(const FollowLines& lines, std::size_t chords);

// What stands in a chord line between two blanks, and moves as a whole: "Am", "|:", "Am-G". Blanks
// of no width belong to it.
struct ChordRun {
    std::size_t index = 0;
    std::size_t length = 0;
    std::size_t column = 0;
    std::size_t cells = 0;

    std::size_t end() const { return index + length; }
};

std::vector<ChordRun> chordRuns(const FollowText& line);
// The run that `index` is in or beside, the one behind it before the one in front.
std::optional<ChordRun> chordRunAt(const FollowText& line, std::size_t index);

// The columns at which a chord may want to stand over these words: where a word starts, or the
// letter behind a hyphen.
std::vector<std::size_t> syllableColumns(const FollowText& words);

// Whether the stretch of a line is a whole chord of a chord line: "C" in "C  Am", not in "Cm",
// "C/E" or in words. Parentheses around a chord are not part of it. `pictures` are the indices of
// diagrams in the line.
bool isWholeChord(TextView line, std::size_t index, std::size_t length,
                  std::span<const std::size_t> pictures = {});

}  // namespace melvorin
