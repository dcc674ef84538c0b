// Charts for other programs and for the browser.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "base/Text.h"
#include "chords/ChordNames.h"

namespace melvorin {

enum class SongFormat { ChordPro, PlainText, Html };

// A line of a chart, or two of them: chords and the words below.
struct ChartBlock {
    enum class Kind { Blank, Title, Label, Words, Chords, Pair, Tablature, Directive };

    Kind kind = Kind::Blank;
    Text chords;
    Text words;          // of what holds no chords, all of it
    TextView chordsEnd;  // a view into the chart
    TextView end;        // the same
};

// The chart in its lines, with its chords by other names, each over its syllable: where a name
// needs more room than there was, blanks come between words, and hyphens into one ("ri--ver"). By
// the house's names all is as it was. `chart` must outlive the result.
std::vector<ChartBlock> chartBlocks(TextView chart, ChordNames names);

// The chart as text. By the house's names it is the chart.
Text exportText(TextView chart, ChordNames names);
// The same for a part of a song whose names are known.
Text exportText(TextView part, const SongChordNames& names);

// What shows a diagram in a page: an element of it, for a token of `SongDiagrams`. Nothing where it
// cannot be drawn.
using DrawDiagram = std::function<std::optional<Text>(char16_t token)>;

// The chart as one page for the browser, with all that it needs. Chords stay over their syllables
// at any width, and lines wrap between words; tablature is scrolled instead. On paper it is black
// on white. `title` is used where the chart names no song itself. Lines end in LF.
Text exportHtml(TextView chart, ChordNames names, TextView title, const DrawDiagram& draw = {});

// The usual end of a file's name: "cho", "txt", "html".
TextView fileEnd(SongFormat format);

}  // namespace melvorin
