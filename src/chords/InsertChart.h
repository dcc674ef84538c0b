// A created chart put into the open document.
#pragma once

#include <cstddef>
#include <vector>

#include "base/Editor.h"
#include "chords/SongDiagrams.h"
#include "chords/SongImport.h"

namespace melvorin {

// Charts with more lines are not handed to the control as Rich Text: the time it takes to read that
// grows with the square of the length (Wine).
inline constexpr std::size_t kMostRichLines = 3000;
// Charts with more lines are not coloured; every coloured line takes longer than the one before.
inline constexpr std::size_t kMostColouredLines = 12'000;

// What the creator hands over.
struct CreatedChart {
    std::vector<ImportedLine> lines;  // those of chords have the colour of chords
    Text face;
    int points = 0;
    SongDiagrams diagrams{};  // that stand in the lines as tokens
    Text source{};            // the text that the lines came from
};

// Puts the chart in place of the selection, the caret at its beginning. It stands on lines of its
// own, with a blank line between it and what is above and below: where the selection begins or ends
// within a line, that line is broken. An empty document
// becomes the chart. Where the editor does not make the chart's text of its Rich Text, the text is
// put in and then formatted. Throws only for want of memory, with the document half changed.
void insertChart(Editor& editor, const CreatedChart& chart);

}  // namespace melvorin
