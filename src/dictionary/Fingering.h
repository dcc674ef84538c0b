// Changes a chord diagram in the document into the next fingering of the same chord.
#pragma once

#include <cstddef>
#include <optional>

#include "base/Services.h"
#include "dictionary/DiagramEditor.h"

namespace melvorin {

// The number of a diagram font by its face name, "Melvorin 01" to "Melvorin 34"; nothing for any
// other face.
std::optional<int> diagramFontNumber(TextView face);

// The fingering table: rows of characters, in each column the fingerings of one chord from top to
// bottom. "§" stands where a chord has no further one.
inline constexpr std::size_t kFingeringColumns = 94;
inline constexpr std::size_t kFingeringRows = 6;
// The entry at row * kFingeringColumns + column. A few entries are two characters long; no glyph
// equals them.
Text fingeringEntry(std::size_t position);

// Where nothing is selected, selects the diagram that stands before the caret or else behind it.
// False, and nothing is changed, where there is none.
bool selectDiagramBeside(DiagramEditor& editor);

class Fingering {
  public:
    // The command. True when the document was changed; the change notification is the caller's.
    bool change(DiagramEditor& editor, MessageBoxes& messages);

  private:
    std::optional<Text> nextInTable(TextView glyph);

    // Where the last diagram stood in the table. All that outlives a command: a walk that has
    // come to the last row goes on in the first.
    std::optional<std::size_t> position_;
};

}  // namespace melvorin
