// The key change of the open document.
#pragma once

#include <functional>

#include "base/Editor.h"
#include "chords/Transpose.h"

namespace melvorin {

// The colour of chord lines after a key change.
inline constexpr Rgb kChordColour{192, 0, 0};

// Moves every chord line of the document and colours it. Characters in diagram fonts keep
// character, face and colour; formatting, caret and scroll position stay. `lineDone` is called
// once per line of the document. The document is loaded once where its Rich Text can be mapped
// exactly to its text, else its chord lines are edited one by one. What this throws (memory)
// leaves the document as it was.
void changeDocumentKey(Editor& editor, const KeyChange& change,
                       const std::function<void()>& lineDone);

}  // namespace melvorin
