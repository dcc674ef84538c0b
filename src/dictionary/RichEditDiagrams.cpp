#include "dictionary/RichEditDiagrams.h"

#include "base/DiagramFont.h"

namespace melvorin {

DiagramStyle RichEditDiagrams::style() const {
    const SelectionStyle style = editor_.selectionStyle();
    return {style.face.value_or(Text()), style.halfPoints.value_or(0),
            style.colour.value_or(Rgb())};
}

void RichEditDiagrams::put(TextView glyph, const DiagramStyle& style) {
    const EditorWork work(editor_);
    const SelectionStyle former = editor_.selectionStyle();
    const std::int32_t begin = editor_.selection().begin;
    const std::int32_t end = begin + static_cast<std::int32_t>(glyph.size());
    editor_.replaceSelection(glyph);
    editor_.select({begin, end});
    typeIn(style);
    // A picture that is bold, slanted or underlined can no longer be read.
    const auto emphasise = [&](bool bold, bool italic, bool underline) {
        editor_.setBold(bold);
        editor_.setItalic(italic);
        editor_.setUnderline(underline);
    };
    emphasise(false, false, false);
    editor_.select({end, end});
    emphasise(former.bold == true, former.italic == true, former.underline == true);
}

bool RichEditDiagrams::selectAt(POINT point) {
    std::int32_t position = editor_.positionAt(point);
    // The nearest place between two characters may be the one behind.
    if (position > 0 && editor_.pointOf(position).x > point.x)
        --position;
    const Text glyph = editor_.textBetween({position, position + 1});
    if (glyph.size() != 1 || glyph[0] <= u' ' || !isDiagramFace(editor_.faceAt(position)))
        return false;
    ::SetFocus(editor_.handle());
    editor_.select({position, position + 1});
    return true;
}

void RichEditDiagrams::typeIn(const DiagramStyle& style) {
    const EditorWork work(editor_);
    // A mixed selection had no face or size of its own.
    if (!style.face.empty())
        editor_.setSelectionFace(style.face);
    if (style.halfPoints > 0)
        editor_.setSelectionSize(style.halfPoints);
    editor_.setSelectionColour(style.colour);
}

}  // namespace melvorin
