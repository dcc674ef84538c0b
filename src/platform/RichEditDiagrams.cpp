#include "platform/RichEditDiagrams.h"

namespace melvorin {

DiagramStyle RichEditDiagrams::style() const {
    const SelectionStyle style = editor_.selectionStyle();
    return {style.face.value_or(Text()), style.halfPoints.value_or(0),
            style.colour.value_or(Rgb())};
}

void RichEditDiagrams::put(TextView glyph, const DiagramStyle& style) {
    const EditorWork work(editor_);
    const std::int32_t begin = editor_.selection().begin;
    const std::int32_t end = begin + static_cast<std::int32_t>(glyph.size());
    editor_.replaceSelection(glyph);
    editor_.select({begin, end});
    typeIn(style);
    editor_.select({end, end});
}

void RichEditDiagrams::typeIn(const DiagramStyle& style) {
    const EditorWork work(editor_);
    editor_.setSelectionFace(style.face);
    editor_.setSelectionSize(style.halfPoints);
    editor_.setSelectionColour(style.colour);
}

}  // namespace melvorin
