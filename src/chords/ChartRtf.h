// A chart as Rich Text.
#pragma once

#include <string>
#include <vector>

#include "base/Text.h"
#include "chords/SongDiagrams.h"
#include "chords/SongImport.h"

namespace melvorin {

// The lines as a Rich Text document in one face at `points` size, black, and lines of chords in
// the colour of chords. Lines are separated, not ended, so that inserting the document into another
// one does not begin a line of its own. Control characters become blanks, so tabs are expanded
// before. Tokens of `diagrams` are diagrams; pictures are blanks.
std::string chartRtf(const std::vector<ImportedLine>& lines, TextView face, int points,
                     const SongDiagrams& diagrams = {});

// The same lines as the control counts them.
EditorText chartText(const std::vector<ImportedLine>& lines, const SongDiagrams& diagrams = {});

// Makes the character at `position` of the editor's text, which is the letter of a diagram, that
// diagram.
void setDiagram(Editor& editor, std::size_t position, const SongDiagram& diagram);

}  // namespace melvorin
