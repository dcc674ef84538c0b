// The line of a song that tells where the capo goes: "Capo 3", "Capo: 2nd fret", "{capo: 3}",
// "Capotraste na 2ª casa". The song is written in the key of the shapes; what it sounds in may
// stand behind: "Capo 3 (sounds in Bb)".
//
// Columns are 0-based, in UTF-16 units. Nothing here throws but for want of memory.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "base/Text.h"
#include "chords/SongKey.h"
#include "chords/Transpose.h"

namespace melvorin {

// Frets that songs are written for; a capo higher up is read all the same.
inline constexpr int kHighestCapo = 9;

struct CapoLine {
    int fret = 0;           // 1 to 11
    std::size_t line = 0;   // 0-based, in the song
    ColumnRange number;     // "3", "III"
    ColumnRange ordinal;    // "rd" of "3rd"; empty where there is none
    ColumnRange statement;  // from the word to the number, and what belongs to it
    // False where the words go on ("Capo 3 or 5"): it can be read, but not rewritten.
    bool isPlain = true;
    // The note of the key that it sounds in, and what has to go with the statement: "(sounds in
    // Bb)", ", sounds in Bb", "(Bb)", the blanks before included. Both are empty where it does not
    // say so.
    ColumnRange sounding;
    ColumnRange soundsIn;
};

// Nothing where the line tells of no capo: words that have one in them ("the capo I knew", "without
// capo 3") do not. In front of the statement may stand another one that ends there.
std::optional<CapoLine> readCapo(TextView line);
// The line of a song that does: the first plain one, else the first. What stands behind the first
// chords with words counts only as a directive. Lines end as `takeEditorLine` has it.
std::optional<CapoLine> findCapo(TextView song);

// "Capo 3 (sounds in Bb)"; `sounds` may be empty.
Text capoText(int fret, TextView sounds);

// A stretch of a song and what takes its place; an insertion has no length. Positions count every
// unit of the song, line ends included.
struct SongEdit {
    std::size_t position = 0;
    std::size_t length = 0;
    Text text;

    friend bool operator==(const SongEdit&, const SongEdit&) = default;
};

// What makes the song tell of a capo at this fret, or of none for fret 0: the line that is there
// changes where it is plain, or one comes under the title, which is a "{title}", else the first
// line that is neither blank, chords, a label nor a fact of the song ("Key: G"). A song that has
// chords before such a line has no title: there it comes first. From the first position to the
// last.
std::vector<SongEdit> capoEdits(TextView song, int fret, TextView sounds, TextView lineEnd);

}  // namespace melvorin
