// A whole chart: lyrics with lines of chords above them, as one text.
//
// Lines may end in CR, LF or CR LF, also mixed; every end is kept as it is. The work grows with the
// length of the text and with nothing else. Nothing here throws except for want of memory.
#pragma once

#include <vector>

#include "base/Text.h"
#include "chords/ChordLine.h"
#include "chords/LeftOver.h"
#include "chords/Transpose.h"

namespace melvorin {

// The chart with every chord line moved to the new key; all other lines are the same. Where
// `leavesSome` is given and false, it becomes true if some line may be left over (`LeftOver.h`).
Text transposeChart(TextView chart, const KeyChange& change, bool* leavesSome = nullptr);

// The same, and with it these lines, found in this chart, which a key change leaves over.
Text transposeChartWith(TextView chart, const KeyChange& change,
                        const std::vector<LeftOverLine>& others);

// What a line of a chart is. `chars` and the tokens are views into the chart.
struct ChartLine {
    TextView chars;
    bool isChordLine = false;
    // From left to right; empty for a lyric line.
    std::vector<ChordToken> tokens;
};

// Walks over the lines of a chart. A line end ends a line and does not begin another, so the empty
// chart has no line and "C\n" has one.
class ChartReader {
  public:
    // The characters of `chart` must outlive the reader.
    explicit ChartReader(TextView chart) : rest_(chart) {}

    // Puts the next line into `line`, or returns false behind the last one. Handing in the same
    // `line` every time saves allocations.
    bool next(ChartLine& line);

  private:
    TextView rest_;
};

}  // namespace melvorin
