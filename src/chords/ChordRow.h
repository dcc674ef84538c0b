// A line of chords as people type it, with bars, repeat marks and separators between the chords.
#pragma once

#include <cstddef>
#include <memory>
#include <vector>

#include "base/Text.h"
#include "chords/NoteNames.h"

namespace melvorin {

enum class RowItemKind {
    Chord,    // written in the house's spelling
    Unknown,  // can only be meant as a chord, but cannot be read: "C7alt", "C7?" between chords
    Word,
    Bar,        // "|", "|:"
    Beat,       // "/", "(", ")": signs that chord lines may have; "." between chords
    NoChord,    // "N.C.", "D.C. al Fine"
    Repeat,     // "x2", "x 2", "} 2"
    Meter,      // "3/4"
    Remark,     // "(let ring)", "[Lick 1]", "2 times"
    Unread,     // a bracket that has to hold a chord, and holds none that can be read
    Sign,       // "%", "*", the mark of "C!", a beat's dot among bars, a diagram
    Separator,  // "-", ",", ">" between chords; not part of a chart
};

// Whether the text of a chord is a word too: where it stands alone ("Ami", "Hm"), or anywhere
// ("Go", "As").
enum class WordToo { No, Alone, Anywhere };

WordToo wordToo(TextView chord, const ChordReading& reading = {});

struct RowItem {
    RowItemKind kind = RowItemKind::Word;
    std::size_t index = 0;   // of its first UTF-16 unit in the line
    std::size_t length = 0;  // in UTF-16 units
    std::size_t column = 0;  // cell it begins in
    std::size_t cells = 0;
    Text shown;  // as the chart has it; empty for a separator
    WordToo wordToo = WordToo::No;
};

// What runs of characters were read as: songs repeat their chords, and most of their words. It is
// good for one reading, and of one size however long the song is.
class RowMemory {
  public:
    RowMemory() noexcept;
    ~RowMemory();
    RowMemory(RowMemory&&) noexcept;
    RowMemory& operator=(RowMemory&&) noexcept;

    struct Slots;
    Slots& slots();  // made when they are asked for

  private:
    std::unique_ptr<Slots> slots_;
};

// Every item of the line from left to right. Columns begin at `column`, indices at `index`.
// `reading` is what the symbols of the song mean. `memory`, where there is one, serves the reading
// alone.
std::vector<RowItem> readRow(TextView line, std::size_t column = 0, std::size_t index = 0,
                             const ChordReading& reading = {}, RowMemory* memory = nullptr);

// True for a line with so many words that it is no row of chords: a look instead of a reading. It
// may say no too often.
bool isClearlyWords(TextView line, const ChordReading& reading = {});

// True when chords, or "N.C.", are all that the row tells, but for a remark or two. A chord that is
// a word too counts only beside others.
bool isRowOfChords(const std::vector<RowItem>& row);

// True for a row that is one where the song around it has chords: of nothing but chords, all of
// them words too.
bool mayBeRowOfChords(const std::vector<RowItem>& row);

// The chart line with every item in its column, or behind its left neighbour where that reaches
// so far. Items that touched each other still do, but for bars. `places` receives the index of
// every item in the line, in UTF-16 units.
Text writeRow(const std::vector<RowItem>& row, std::vector<std::size_t>* places = nullptr);

}  // namespace melvorin
