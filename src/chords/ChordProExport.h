// Charts as ChordPro songs.
#pragma once

#include <cstddef>
#include <optional>

#include "base/Text.h"
#include "chords/ChordNames.h"
#include "chords/SongImport.h"

namespace melvorin {

// The chart as a ChordPro song: every chord in brackets in front of its syllable, the first line
// as the title where it can be one, labels as sections or comments, what `Directives.h` tells as
// directives, tablature in its environment. Importing the
// result gives the chart back, up to blanks at line ends, where its chords are in the house's
// spelling already; others come back in it. Lines end as they do in the chart. By other names than
// the house's the chords stand in the same places; what is not a chord in brackets keeps its words.
// Where German names and syllables could not be told from letters, a directive of our own says what
// they are.
Text exportChordPro(TextView chart, ChordNames names = ChordNames::House);
// The same for a part of a song whose names are known.
Text exportChordPro(TextView part, const SongChordNames& names);

// A line of chords and the words below it as one line: every run of the chord line in brackets in
// front of its syllable, hyphens that stretch a word left out. `reading` is what the symbols mean.
Text pairInBrackets(TextView chords, TextView words, const ChordReading& reading = {});

// Line `number` of the song with the chords in its brackets by other names; nothing where it has
// none.
std::optional<Text> withNamedBrackets(const SongImport& song, std::size_t number,
                                      const SongChordNames& names);

}  // namespace melvorin
