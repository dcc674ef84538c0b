// Chord charts in the Rich Text of programs that musicians use, composed as each of them writes it:
// its font tables, style sheets, ways of spelling a character, and what it puts around the words.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "base/Text.h"

namespace melvorin::dialects {

// A line of a chart. Words in asterisks are bold and red, as chords are.
struct Line {
    enum class Kind {
        Paragraph,
        Soft,    // ends with a line break
        Bullet,  // a list
        Link,    // the whole line leads somewhere
        Row      // of a table with two cells, "chords|words"
    };
    TextView text;
    Kind kind = Kind::Paragraph;
};

struct Chart {
    const char* name;
    std::vector<Line> lines;
    bool hasPicture = false;
};

struct Dialect {
    const char* name;
    std::string (*write)(const Chart& chart);
};

// Eight charts of the kinds that songs come in: accents, other alphabets, line breaks, lists,
// links, tables.
std::span<const Chart> charts();
std::span<const Dialect> all();

// What the chart says, as a control should show it: lines end with CR, the cells of a row with TAB;
// bullets are left out.
Text textOf(const Chart& chart);

}  // namespace melvorin::dialects
