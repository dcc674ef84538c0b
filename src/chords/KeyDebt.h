// How far lines of a song are behind its key.
//
// A key change leaves lines of chords over (`LeftOver.h`). They can be moved later, after more key
// changes, after an undo or in another run, so it is kept with every state of the song how many
// half steps each of them owes. Lines are numbered from 0, as `takeEditorLine` counts them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/Text.h"
#include "chords/LeftOver.h"

namespace melvorin {

class KeyDebt {
  public:
    // True where no line is behind, and where none is left alone.
    bool isZero() const { return lines_.empty(); }
    // Half steps that the line would have to go up to be in the key of the song, from 0 to 11.
    unsigned stepsBehind(std::size_t line) const;
    // The change that brings the line into the key, in the direction and spelling of the last key
    // change; nothing where it is not behind.
    std::optional<KeyChange> changeOf(std::size_t line) const;

    // The song was moved, and these lines of it were not.
    void keyChanged(Direction direction, Spelling spelling, unsigned steps,
                    std::span<const LeftOverLine> leftOver);
    // All lines that were behind are in the key again. Lines left alone stay so.
    void moved();
    // This one is, by another way.
    void moved(std::size_t line);
    // A line of words that key changes are to pass over from now on.
    void leaveAlone(std::size_t line);
    bool isLeftAlone(std::size_t line) const;

    // The song was edited. Unchanged lines and edited ones keep what they have, also the parts of a
    // line that was parted; two that were joined have what the longer one has. New ones have
    // nothing. No work where all is zero.
    void edited(TextView before, TextView after);
    // The same where it is known which line each line came from (`LineSources.h`).
    void follow(std::span<const std::size_t> sources);

    // What goes otherwise than a key change that is about to be made: lines left alone stay. With
    // `moveAll`, which leaves no line of chords over, also those that it would pass over, and those
    // that were behind before; moved() tells then that they have been moved.
    std::vector<OtherMove> othersOfKeyChange(const LeftOver& found, Direction direction,
                                             Spelling spelling, unsigned steps, bool moveAll) const;

    // One line of ASCII text without line end, for a journal: "up sharps 4:1 9:1 12:-".
    std::string text() const;
    // Zero for text that text() does not write.
    static KeyDebt parse(std::string_view text);

    friend bool operator==(const KeyDebt&, const KeyDebt&) = default;

  private:
    struct Line {
        std::size_t number = 0;
        unsigned behind = 0;
        bool isAlone = false;

        friend bool operator==(const Line&, const Line&) = default;
    };

    const Line* find(std::size_t number) const;
    Line& at(std::size_t number);
    void dropEmpty();

    std::vector<Line> lines_;  // by number, none of them empty
    Direction direction_ = Direction::Up;
    Spelling spelling_ = Spelling::Sharps;
};

// What "Move Them Too" has to move: the lines of chords that are behind, and those that state a
// key. `song` is the text that `found` was found in.
std::vector<OtherMove> linesBehind(const KeyDebt& debt, const LeftOver& found, TextView song);

}  // namespace melvorin
