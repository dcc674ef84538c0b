// What a line of a pasted song is.
#pragma once

#include <cstddef>
#include <optional>

#include "base/Text.h"
#include "chords/BracketedLine.h"
#include "chords/ChordRow.h"

namespace melvorin {

enum class LineVerdict { Chords, Lyrics, Section, Tablature, Directive };

inline constexpr LineVerdict kLineVerdicts[] = {LineVerdict::Chords, LineVerdict::Lyrics,
                                                LineVerdict::Section, LineVerdict::Tablature,
                                                LineVerdict::Directive};

// "chords", "lyrics", "section", "tablature", "directive".
TextView nameOf(LineVerdict verdict);

// A ChordPro directive: "{name: value}". Views into the line.
struct Directive {
    Text name;       // in lower case, in its long form
    TextView value;  // behind the colon and one blank; empty without one
};

// Nothing where the line is no directive in braces. The name need not be a known one.
std::optional<Directive> readDirective(TextView line);
// True for a name that ChordPro defines, and for "#", as a chart has its remarks.
bool isKnownDirective(const Directive& directive);

// How many UTF-16 units at the start of the line are the label of a section ("Intro:",
// "[Verse 2]", "Chorus", "Solo" with chords behind it), blanks before it included; 0 where there is
// none. `reading` and `memory` are as for `readRow`.
std::size_t sectionLabelLength(TextView line, const ChordReading& reading = {},
                               RowMemory* memory = nullptr);

// True where the label of so many units is one only in a song that has chords elsewhere: behind a
// word that names no section there are lone letters, as in "Vitamins: A, D, E".
bool isDoubtfulLabel(TextView line, std::size_t label, const ChordReading& reading = {},
                     RowMemory* memory = nullptr);

// "Tuning: standard", "Words: me": what stands in front of the colon is no section.
bool statesFact(TextView line);

// A line of a tablature: a string of dashes, strokes or equals signs, and frets, with or without
// its name.
bool isTablature(TextView line);

// True for frets and strokes alone, so close by each other that only a tablature beside the line,
// or the name of its string in front, makes it one: "|-12-15-12-|".
bool mayBeDenseString(TextView line);

// The verdict on a line by itself.
LineVerdict judgeLine(TextView line, const ChordReading& reading = {}, RowMemory* memory = nullptr);

}  // namespace melvorin
