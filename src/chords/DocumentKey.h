// The key change of the open document, and what it leaves over.
#pragma once

#include <functional>
#include <vector>

#include "base/Editor.h"
#include "chords/LeftOver.h"
#include "chords/SongKey.h"
#include "chords/Transpose.h"

namespace melvorin {

// The colour of chord lines after a key change.
inline constexpr Rgb kChordColour{192, 0, 0};

// Says which lines do not go with the key change of the others, sorted by number, once it is known
// what the key change leaves over.
using ChooseOthers = std::function<std::vector<OtherMove>(const LeftOver&, TextView song)>;

// Moves every chord line of the document and colours it, and with them the lines that `others`
// names, where it is given. Characters in diagram fonts keep character, face and colour;
// formatting, caret and scroll position stay. `lineDone` is called once per line of the document.
// The document is loaded once where its Rich Text can be mapped exactly to its text, else its
// lines are edited one by one. What this throws (memory) leaves the document as it was.
void changeDocumentKey(Editor& editor, const KeyChange& change,
                       const std::function<void()>& lineDone, const ChooseOthers& others = {});

// The same with accidentals that follow the key: the chord lines are called by `found`, the key of
// the song as it is (KeySpelling.h). 0 steps respell them where they stand; only lines that change
// are coloured then. `side` is that of the song.
void followKeyInDocument(Editor& editor, const FoundKey& found, int steps, Spelling side,
                         const std::function<void()>& lineDone, const ChooseOthers& others = {});

// Moves only the lines that `others` names, in the same way.
void moveOthersInDocument(Editor& editor, const ChooseOthers& others,
                          const std::function<void()>& lineDone);

// What a key change of the document as it is would leave over. Lines are numbered from 0, as
// `takeEditorLine` counts them; diagrams and pictures are no letters of the song.
LeftOver leftOverInDocument(Editor& editor);

}  // namespace melvorin
