// The chords above a line of words, taken off their line so that they can be moved, parted, put
// together and written down again.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "chords/ChordPair.h"

namespace melvorin {

// A chord and the column where it is to stand.
struct StackedChord {
    FollowText text;
    FollowText gap;  // the blanks in front of it, kept where they still fit
    std::size_t column = 0;
};

// A chord of the upper line, over one of the lower.
struct UpperChord {
    StackedChord chord;
    std::size_t below = 0;  // number of that chord
};

// The chords of a line between two indices, each in its column.
std::vector<StackedChord> chordsOf(const FollowText& line, std::size_t begin = 0,
                                   std::size_t end = Text::npos);

// The columns where the chords really stand: each where it wants to be, or one blank behind its
// left neighbour.
std::vector<std::size_t> settledColumns(const std::vector<StackedChord>& chords);

// The chords in their settled columns, and `tail` behind them. Blanks that are there stay, the
// others are new and ordinary ones, behind those that stay.
FollowText writeChords(const std::vector<StackedChord>& chords, const FollowText& tail = {});

class ChordStack {
  public:
    ChordStack() = default;
    ChordStack(const FollowLines& lines, const LinePair& pair);
    // With these chords as the lower line, which has that end.
    ChordStack(std::vector<StackedChord> lower, FollowText end)
        : lower_(std::move(lower)), lowerEnd_(std::move(end)) {}

    bool empty() const { return lower_.empty(); }
    bool hasUpper() const { return hasUpper_; }
    std::size_t size() const { return lower_.size(); }
    const std::vector<StackedChord>& lower() const { return lower_; }
    // Where the chord of this number wants to stand.
    std::size_t& column(std::size_t number) { return lower_[number].column; }

    // Every chord wants to stand where `place` puts its column.
    void move(const std::function<std::size_t(std::size_t)>& place);
    // Only the chords whose column is in [begin, end).
    ChordStack between(std::size_t begin, std::size_t end) const;
    // The chords of `other` behind those that are here.
    void append(const ChordStack& other);
    // The same chords in the same columns, as they are written now in these lines; but for unusual
    // blanks, which are those of this stack. Nothing where the lines hold other chords.
    std::optional<ChordStack> writtenIn(const FollowLines& lines, const LinePair& pair) const;
    // Blanks behind the last chord go.
    void dropTails();
    // The lines are not those that were there.
    void renewEnds() { lowerEnd_ = upperEnd_ = FollowText(u"\r"); }

    FollowText upperLine() const;
    FollowText lowerLine() const { return writeChords(lower_, lowerTail_); }
    // The lines that hold chords, with the ends they had or new ones; none without chords.
    FollowLines lines() const;

  private:
    std::vector<StackedChord> lower_;
    std::vector<UpperChord> upper_;
    FollowText lowerTail_;
    FollowText upperTail_;
    FollowText lowerEnd_{u"\r"};
    FollowText upperEnd_{u"\r"};
    bool hasUpper_ = false;
};

// Where the columns of a line of words have gone. Stretches of it were replaced, from left to right
// and without overlap; what stood over a letter that is left still does, what stood over a stretch
// keeps its distance from the start of it, at most to where its new text ends.
class ColumnMap {
  public:
    // Indices: [begin, end) of the old line is now [nowBegin, nowEnd) of the new one.
    struct Stretch {
        std::size_t begin = 0;
        std::size_t end = 0;
        std::size_t nowBegin = 0;
        std::size_t nowEnd = 0;
        // What stood over it or behind stays at its distance from the start: no letter is behind.
        bool keeps = false;
    };

    ColumnMap(const FollowText& before, const FollowText& now, std::vector<Stretch> stretches);
    std::size_t operator()(std::size_t column) const;

  private:
    std::vector<std::size_t> before_;
    std::vector<std::size_t> now_;
    std::vector<Stretch> stretches_;
};

}  // namespace melvorin
