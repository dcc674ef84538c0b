// Commands on the editor's selection that are more than one message to it.
#pragma once

#include <functional>
#include <optional>

#include "base/Editor.h"
#include "base/LetterCase.h"
#include "base/Services.h"

namespace melvorin {

// Gives the selection a face. A chord diagram among other characters keeps its own, in which
// alone it is a diagram; where only diagrams are selected they take it.
void setFace(Editor& editor, TextView face);

// An attribute that is on or off.
struct TextEffect {
    std::optional<bool> SelectionStyle::*state;
    void (Editor::*set)(bool on);
};
inline constexpr TextEffect kBold{&SelectionStyle::bold, &Editor::setBold};
inline constexpr TextEffect kItalic{&SelectionStyle::italic, &Editor::setItalic};
inline constexpr TextEffect kUnderline{&SelectionStyle::underline, &Editor::setUnderline};

// Switches it off where the whole selection has it, else on for all of the selection.
void toggle(Editor& editor, TextEffect effect);

// Whether the document has chord diagrams.
bool hasDiagrams(Editor& editor);

// Gives the selection, or what is typed next, the format of text that comes in: the editor's
// face, its usual size, black. Diagrams keep their face, as above.
void setIncomingFormat(Editor& editor, TextView face);

// After the document was replaced by an earlier or later state of itself: the page is what it
// was, if it shows where the two differ; else that stands in the middle. Where the texts are
// alike, only formats differ, and `otherwise` is the place.
void showDifference(Editor& editor, ScrollPosition page, TextView before, std::int32_t otherwise);

// Characters between the start of the selection's line and the selection; a soft line break
// starts a line too.
std::size_t columnOfSelection(const Editor& editor);

// More than this many bytes are not pasted: the control needs some fifty times as many for
// them.
inline constexpr std::uint64_t kLargestPaste = 8u << 20;

// Expands the tabs of a text whose first line starts at a column; nothing when the user gave
// up.
using ExpandTabs = std::function<std::optional<Text>(Text text, std::size_t startColumn)>;

// Replaces the selection by what the clipboard holds: Rich Text as it is, plain text in the
// given face with blanks for its tabs. Where Rich Text would lose words that the plain text
// beside it has, the user says which of the two it is to be. Where nothing can be pasted the
// user is told and the document is as it was. True when the document was changed.
bool pasteClipboard(Editor& editor, Clipboard& clipboard, MessageBoxes& messages, TextView face,
                    const ExpandTabs& expand);

// Converts the selected letters, which stay selected. Formats stay; characters in a diagram
// font are pictures and stay as they are.
void convertCase(Editor& editor, LetterCase to);

// Loads a rewritten form of the document that `rtf` and `text` describe. False when the control
// does not read `expected` out of it; the document is then what it was. Throws
// std::runtime_error when the control does not even take that back.
bool loadRewritten(Editor& editor, const std::string& rtf, TextView text,
                   const std::string& rewritten, TextView expected);

}  // namespace melvorin
