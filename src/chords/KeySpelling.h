// Accidentals that follow the key: what the roots and basses of a song are called in it.
//
// A note is called by its place on the line of fifths (F -1, C 0, G 1, F# 6, Bb -2) as seen from
// the tonic: those of the scale as the scale has them, others by what they do (Piston, "Harmony",
// on chromatic chords): a leading-tone chord is the sharp of what it leads to, a dominant and its
// preparation go with their goal, #IV is a sharp, borrowed chords, bII and tritone substitutes are
// flats. There are no double accidentals, and E#, B#, Cb and Fb are called F, C, B and E.
//
// Nothing here throws but for want of memory.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "base/Text.h"
#include "chords/SongKey.h"
#include "chords/Transpose.h"

namespace melvorin {

// The chord that follows, another than the one asked about.
struct NextChord {
    int root = 0;    // half steps above C
    int fifths = 0;  // its place seen from the tonic of the signature's major key
};

// The place of a chord's root on the line of fifths, seen from the tonic of the major key with the
// signature of `key` (for Am from C): -6 to 8. `root` is in half steps above C.
int rootFifths(Key key, int root, ChordQuality quality, const std::optional<NextChord>& next);

// The same of a bass note below that chord; a note of the chord is called as the chord calls it.
int bassFifths(Key key, int bass, int root, int fifthsOfRoot, ChordQuality quality);

// The name of a place seen from the signature's major tonic, in this key: "Ab".
TextView noteNameIn(Key key, Spelling side, int fifths);

// What a root is of its key: "bVI", "#IV", "II"; of a minor key by its own scale ("VI" for F in
// Am). `fifths` is seen from the signature's major tonic.
Text degreeName(Key key, int fifths);

// On which side of F# and Gb, D#m and Ebm a song stands: that of its accidentals, else sharps.
Spelling sideOf(TextView song);

// A line of a song. Characters in `fixed` are pictures (see KeyChange).
struct SpelledLine {
    TextView chars;
    std::span<const ColumnRange> fixed;
};

// Why a chord is called as it is: "Ab: bVI of C", of the one whose characters the column of a line
// lies among or right behind; where the song calls it otherwise, "G#: bVI of C, which is Ab". Empty
// where there is no chord, or the key is not sure. The lines are that one and some that follow it.
Text reasonOfName(std::span<const SpelledLine> lines, std::size_t column, const FoundKey& found,
                  Spelling side);

// Where the roots and basses of a line stand, and what they are called.
struct LineNames {
    std::vector<ColumnRange> notes;
    std::vector<TextView> names;  // one for each of `notes`
};

// What a song's notes are called after a change by `steps` half steps, -11 to 11, in the key that
// it is in then. 0 steps respell it. The lines are the whole song; only its chord lines have notes.
//
// A song that is written with care (its scale rightly, and most of the rest as here) keeps its
// author's choice where it moves; a respelled one does not. Where the key is not sure, all
// accidentals are of the one kind that fits the likeliest key better.
class KeyRespelling {
  public:
    KeyRespelling(std::span<const SpelledLine> song, const FoundKey& found, int steps,
                  Spelling side);

    // Of a line by its 0-based number; empty for one that is no chord line.
    const LineNames& line(std::size_t number) const { return lines_[number]; }
    // The line with its new names, realigned as a key change does; one that is no chord line as it
    // is.
    MovedLine moveLine(std::size_t number) const;

    struct Note;

  private:
    void nameNotes(std::vector<Note>& notes, const FoundKey& found, int steps, Spelling side);

    std::vector<SpelledLine> song_;
    std::vector<LineNames> lines_;
};

// A whole chart moved with accidentals that follow its key; 0 steps respell it. Lines and their
// ends stay. `movesStated` moves the note of the line that states the key, too, unless its name is
// German.
Text followKey(TextView chart, const FoundKey& found, int steps, Spelling side,
               bool movesStated = false);

}  // namespace melvorin
