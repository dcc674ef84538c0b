// Charts as ChordPro songs.
#pragma once

#include "base/Text.h"

namespace melvorin {

// The chart as a ChordPro song: every chord in brackets in front of its syllable, the first line
// as the title where it can be one, labels as comments, tablature in its environment. Importing the
// result gives the chart back, up to blanks at line ends, where its chords are in the house's
// spelling already; others come back in it. Lines end as they do in the chart.
Text exportChordPro(TextView chart);

}  // namespace melvorin
