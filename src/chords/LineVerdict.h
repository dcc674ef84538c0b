// What a line of a pasted song is.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "base/Text.h"
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
// True for a name that ChordPro defines.
bool isKnownDirective(const Directive& directive);

// Words with chords in brackets between them: "[Am]word".
struct BracketedLine {
    Text lyrics;  // without the chords; blanks at its end are left out
    // In the columns of their syllables. Where a chord needs more room than its syllables give,
    // the blank behind them is stretched.
    std::vector<RowItem> chords;
};

// Nothing where no bracket holds a chord. Other brackets, and those without a partner, are text.
// `index` is where the line begins in the numbers of the items, `column` where on the screen.
// `reading` is what the symbols of the song mean.
std::optional<BracketedLine> readBrackets(TextView line, std::size_t column = 0,
                                          std::size_t index = 0, const ChordReading& reading = {});

// How many UTF-16 units at the start of the line are the label of a section ("Intro:",
// "[Verse 2]", "Chorus"), blanks before it included; 0 where there is none.
std::size_t sectionLabelLength(TextView line);

// A line of a tablature: a string of dashes and frets, with or without its name.
bool isTablature(TextView line);

// The verdict on a line by itself.
LineVerdict judgeLine(TextView line);

}  // namespace melvorin
