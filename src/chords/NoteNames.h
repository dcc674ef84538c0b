// Notes by the names that songs give them: letters, the German and Slavic names ("H", "Fis", "As"),
// where H is the note that others call B, and B a half step below it, and the syllables of the
// Romance languages ("DO", "Re", "Sib").
#pragma once

#include <cstddef>
#include <optional>

#include "base/Text.h"
#include "chords/Note.h"

namespace melvorin {

// What a plain B is. H, "Fis", "Es" and "Eses" mean the same in both. With syllables letters are
// notes too, but "FA" and "DO" are syllables, and a row that has such takes "A" for a word.
enum class Naming { Letters, German, Solfege };

// What the symbols of a song mean, as far as a symbol by itself does not tell.
struct ChordReading {
    Naming naming = Naming::Letters;
    // "a" is A minor, and "C/g" has a small bass.
    bool smallMinors = false;
    // A plain "C9", "C11" and "C13" has a seventh; else the degree is an added one.
    bool ninthsHaveSevenths = false;
    // The song is ChordPro: whatever stands in brackets is a chord or a remark.
    bool everyBracket = false;

    friend bool operator==(const ChordReading&, const ChordReading&) = default;
};

struct NamedNote {
    std::size_t length = 0;  // in UTF-16 units
    int steps = 0;           // half steps above C, from 0 to 11
    Spelling spelling = Spelling::Sharps;
    bool isSmall = false;
    // "H", "Fis", "As", "Hes": only songs with German names have these.
    bool isGerman = false;
    bool isSyllable = false;
};

enum class NotePlace { Root, Bass };

// The note that the text begins with, in its usual signs ("#", not a musical sharp). Nothing where
// it begins with none.
std::optional<NamedNote> readNoteName(TextView text, const ChordReading& reading,
                                      NotePlace place = NotePlace::Root);

// How a song with German names writes its accidentals.
enum class GermanSigns { None, Signs, Endings };  // no such song, "F#", "Fis"

// A name in letters ("Bb", "F#", "B") as such a song writes it: "B", "Fis" or "F#", "H".
Text germanName(TextView name, GermanSigns signs);

// Units of the syllable that the text begins with ("SOL", "Re"), without an accidental; 0 where
// there is none. Its first letter is a capital.
std::size_t solfegeLength(TextView text);

// Which accents a song with syllables writes.
enum class Solfege { None, Plain, French, Portuguese };  // none, "Re", "Ré", "Dó"

// A name in letters as such a song writes it, in capitals or not: "Bb" is "SIb".
Text solfegeName(TextView name, Solfege accents, bool capitals);

}  // namespace melvorin
