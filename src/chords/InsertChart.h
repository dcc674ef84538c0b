// A created chart put into the open document.
#pragma once

#include <cstddef>
#include <vector>

#include "base/Editor.h"
#include "chords/SongImport.h"

namespace melvorin {

// Charts with more lines are not handed to the control as Rich Text: the time it takes to read that
// grows with the square of the length (Wine).
inline constexpr std::size_t kMostRichLines = 3000;
// Charts with more lines are not coloured; every coloured line takes longer than the one before.
inline constexpr std::size_t kMostColouredLines = 12'000;

// What the creator hands over.
struct CreatedChart {
    std::vector<ImportedLine> lines;
    Text face;
    int points = 0;
};

// Puts the chart in place of the selection, the caret at its beginning. It stands on lines of its
// own: where the selection begins or ends within a line, that line is broken. An empty document
// becomes the chart. Where the editor does not make the chart's text of its Rich Text, the text is
// put in and then formatted. Throws only for want of memory, with the document half changed.
void insertChart(Editor& editor, const CreatedChart& chart);

}  // namespace melvorin
