#include "tablature/InsertTab.h"

#include "base/DiagramFont.h"
#include "base/ProgramSettings.h"

namespace melvorin {
namespace {

// A line of the control also ends at a soft line break, and a table's row in CR LF.
bool endsLine(char16_t c) {
    return c == u'\r' || c == u'\n' || c == u'\v';
}

bool isOnEmptyLine(TextView chars, std::size_t caret) {
    return (caret == 0 || endsLine(chars[caret - 1])) &&
           (caret >= chars.size() || endsLine(chars[caret]));
}

}  // namespace

std::optional<Text> TabWriter::insertion(const TabChoice& choice, TextView screenWidth,
                                         TextView chars, std::size_t caret) {
    const auto form =
        choice.order ? tabForm(choice.instrument, *choice.order) : std::optional<TabForm>();
    if (!form)
        return std::nullopt;
    if (auto pattern = staffPattern(screenWidth, choice.dividers))
        X1_ = std::move(*pattern);
    const Text block = tabBlock(*form, X1_);
    return isOnEmptyLine(chars, caret) ? block : u"\r\n" + block;
}

bool TabWriter::insert(Editor& editor, const TabChoice& choice, TextView screenWidth,
                       TextView textFace) {
    const std::int32_t start = editor.selection().begin;
    const auto text =
        insertion(choice, screenWidth, editor.text().chars, static_cast<std::size_t>(start));
    if (!text)
        return false;
    const EditorWork work(editor);
    editor.replaceSelection(*text);
    const std::int32_t end = editor.selection().end;
    // Beside a diagram the letters and dashes would be diagrams too.
    if (isDiagramFace(editor.faceAt(start))) {
        editor.select({start, end});
        editor.setSelectionFont(textFace, kEditorFontPoints);
        editor.setSelectionColour({0, 0, 0});
        editor.select({end, end});
    }
    editor.scrollCaretIntoView();
    return true;
}

}  // namespace melvorin
