// What a key change passes over in silence, or changes although it is no chord.
//
// A key change moves the lines that `IsChordLine` takes. Songs have other lines of chords: with
// bars, tabs, remarks, "Cmaj7" or chords in brackets; and now and then a line of words that looks
// like chords. The importer tells them apart, so what it finds over the whole song is what counts.
// The song comes as text whose lines end in CR, LF or CR LF. Nothing here fails; what this throws
// is want of memory.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "base/Text.h"
#include "chords/NoteNames.h"
#include "chords/Transpose.h"

namespace melvorin {

// A line of chords that a key change does not move. It stays what it is through key changes.
struct LeftOverLine {
    std::size_t number = 0;  // of the line in the song, from 0
    // The roots and bass notes of its chords, from left to right, each within the line.
    std::vector<ColumnRange> notes;
    bool inBrackets = false;  // "[Am]word": the chords have no columns of their own
    // Other than None where the song has German names: its B is a flat one, its H moves as B.
    GermanSigns signs = GermanSigns::None;
    bool smallMinors = false;  // a small "a" is a note too
    // Other than None where the song writes syllables: its notes stay such.
    Solfege solfege = Solfege::None;

    friend bool operator==(const LeftOverLine&, const LeftOverLine&) = default;
};

// A line that states the key of the song, or the one that it sounds in with its capo, and where
// that note stands.
struct KeyLine {
    std::size_t number = 0;
    ColumnRange note;
    bool isGerman = false;  // "B-Dur", "fis-moll", "H"

    friend bool operator==(const KeyLine&, const KeyLine&) = default;
};

struct LeftOver {
    std::vector<LeftOverLine> lines;
    // Numbers of the lines of words that a key change moves: "Bad Dad".
    std::vector<std::size_t> changedWords;
    // Lines that state a key; those without chords are not among `lines`.
    std::vector<KeyLine> keyLines;
    // Numbers of the lines with chord diagrams, which a key change of their letters leaves. Only
    // what looks at a document with its fonts knows them.
    std::vector<std::size_t> diagramLines;
    // The song writes H, "Fis" or "Es", so its B is B flat, and the lines left over are moved so.
    bool hasGermanNames = false;
    // A line that a key change takes has names that it reads in another way than the song: a B that
    // is flat, "Fis", a small "a", "FA". It moves the first as B natural, the last as F and A, and
    // leaves the others.
    bool misreadsNames = false;
    // Among those is a B that is flat, in a song that leaves no doubt.
    bool misreadsB = false;
    // Such a song writes "Bb" too, so what its B means is open; its other lines cannot be moved.
    bool hasH = false;
};

// The lines left over, and those that state a key as such lines; by number, each once.
std::vector<LeftOverLine> linesWithKeys(const LeftOver& found);

// A line that does not go with the key change of the others: one left over that is moved as well,
// a line of either kind that is behind, or one that is to stay.
struct OtherMove {
    LeftOverLine line;                // a line of nothing but chords needs no notes
    std::optional<KeyChange> change;  // nothing: it stays
};

// Looks through a song. `pictures` are characters that are no writing (diagrams, pictures): sorted
// ranges of `song` without overlap. Each line is looked at briefly; only where one is found that
// belongs to the result is the song imported as a whole.
LeftOver findLeftOver(TextView song, std::span<const ColumnRange> pictures = {});

// Whether the line, which `IsChordLine` refuses, may be among the lines left over: true for all
// that are, and for those that the song around them makes something else. Costs next to nothing
// for most lines of words.
bool mayBeLeftOver(TextView line);

// The line with its notes moved by `change`, and its chords put back to their columns unless they
// stand in brackets, as KeyChange::moveLine does it; a gap between two chords or words keeps one
// blank at least. Tabs become the blanks up to the next column of eight. Every other character
// stays: suffixes, bars, labels, remarks, no-break blanks. Columns are cells of a monospaced font.
// A note in full-width or musical signs stays in these, and one of a song with German names gets a
// name as that song writes it: "Hm" becomes "Cm", "F" down "E", "A" up "B" where flats are chosen.
// `fixed` is as there; a tab in it stays.
// Notes outside the line, or in `fixed`, are left out.
MovedLine moveLeftOver(TextView line, const LeftOverLine& found, const KeyChange& change,
                       std::span<const ColumnRange> fixed = {});

}  // namespace melvorin
