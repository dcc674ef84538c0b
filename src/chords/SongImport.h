// Pasted songs turned into charts: chords over lyrics, chords in brackets, ChordPro, labels,
// tablature, in any mixture.
//
// Every line of the source has a verdict, which the user may overrule, and becomes lines of the
// chart by it. Nothing is dropped silently: what is not in the chart has a remark that says so.
// The work is in proportion to the length of the text, whatever is in it. Throws only for want of
// memory.
#pragma once

#include <cstddef>
#include <map>
#include <vector>

#include "base/Text.h"
#include "chords/LineVerdict.h"
#include "chords/SongNotation.h"

namespace melvorin {

// What the user should know about a line; several may hold at once.
enum LineRemark : unsigned {
    // A line of chords that a key change will not touch, as it has characters chord lines have not.
    WillNotChangeKey = 1U << 0,
    // A line of lyrics that looks like chords to a key change.
    WillChangeWithKey = 1U << 1,
    // A directive that has no place in a chart.
    LeftOut = 1U << 2,
    // Dashes, commas and the like between chords are not in the chart.
    SeparatorsLeftOut = 1U << 3,
    // Chords typed in a proportional font, moved to where they stood over the words.
    MovedToSyllables = 1U << 4,
    // Some chord cannot be read.
    HasUnknownChords = 1U << 5,
    // Repeat marks, words and the like between the chords stand on a line of their own above them.
    RemarksAbove = 1U << 6,
    // A bracket of a song with chords in brackets has no partner, and is text.
    HasLooseBracket = 1U << 7,
};

// The remarks as a phrase, "will not change key; ..."; empty without remarks.
Text remarkText(unsigned remarks);

struct SourceLine {
    TextView text;  // without its line end; a view into the source
    TextView end;
    LineVerdict verdict = LineVerdict::Lyrics;
    bool chosen = false;  // by the user
    unsigned remarks = 0;
    std::size_t firstChartLine = 0;
    std::size_t chartLines = 0;
};

struct ImportedLine {
    Text text;
    bool isChords = false;
    std::size_t source = 0;  // number of the source line
};

// A chord, or what can only be one, where it was found and where it went.
struct ImportedChord {
    TextView written;     // a view into the source
    Text chord;           // in the house's spelling; as written where it cannot be read
    bool isRead = false;  // false where it cannot be read
    std::size_t sourceLine = 0;
    std::size_t sourceIndex = 0;  // in UTF-16 units within its line
    std::size_t chartLine = 0;
    std::size_t chartIndex = 0;
};

struct SongImport {
    std::vector<SourceLine> source;
    std::vector<ImportedLine> lines;
    std::vector<ImportedChord> chords;  // in the order of the source
    SongNotation notation;              // what the symbols were read as

    // The chart as one text. A line takes the end of the line it came from.
    Text chart() const;
};

// Verdicts of the user, by the number of the source line.
using ChosenVerdicts = std::map<std::size_t, LineVerdict>;

// What the user says about the whole song. Each is a switch of its own, and Auto means what the
// song tells (`SongImport::notation` has what was found, and whether there is anything to decide).
struct ImportOptions {
    PlainB plainB = PlainB::Auto;              // B is B flat, or B
    PlainNinth plainNinth = PlainNinth::Auto;  // C9 is C7/9, or C with an added ninth
    // The source is one line of a song that is not known: it is a line of chords if it is one in
    // some song.
    bool isLoneLine = false;
    // The source is a part of a ChordPro song.
    bool isChordPro = false;

    friend bool operator==(const ImportOptions&, const ImportOptions&) = default;
};

// The characters of `source` must outlive the result.
SongImport importSong(TextView source, const ChosenVerdicts& chosen = {},
                      const ImportOptions& options = {});

}  // namespace melvorin
