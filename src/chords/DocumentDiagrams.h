// The diagrams of the open document, where chords show as pictures.
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "base/Editor.h"
#include "chords/Note.h"

namespace melvorin {

// Neighbours in one line that have one face.
struct DiagramRun {
    std::size_t line = 0;  // from 0, as `takeEditorLine` counts them
    Selection place;
    Text face;
};

// In the order of the document; quick where no face is that of a diagram.
std::vector<DiagramRun> diagramsOfDocument(Editor& editor);

// Half steps to go up for the diagrams of a line, from 0 to 11; 0 for those that stay.
using DiagramSteps = std::function<unsigned(std::size_t line)>;
// Gives each diagram the face that shows its chord so much higher (`DiagramKey.h`); characters,
// colours and selection stay.
void moveDiagramsInDocument(Editor& editor, Spelling spelling, const DiagramSteps& steps);

}  // namespace melvorin
