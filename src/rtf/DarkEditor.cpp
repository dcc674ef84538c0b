#include "rtf/DarkEditor.h"

#include <exception>
#include <utility>

namespace melvorin {

std::string DarkEditor::rtf() const {
    return hasOwn_ ? editor_.rtf() : colours_.restored(editor_.rtf());
}

bool DarkEditor::loadRtf(std::string_view rtf) {
    return editor_.loadRtf(hasOwn_ ? std::string(rtf) : colours_.darkened(rtf));
}

bool DarkEditor::loadPlain(const EditorText& text, TextView face, int points) {
    const EditorWork work(*this);
    return editor_.loadPlain(text, face, points);
}

void DarkEditor::setSelectionColour(Rgb colour) {
    editor_.setSelectionColour(hasOwn_ ? colour : colours_.lightOf(colour));
}

SelectionStyle DarkEditor::selectionStyle() const {
    SelectionStyle style = editor_.selectionStyle();
    if (style.colour && !hasOwn_)
        style.colour = colours_.ownOf(*style.colour);
    return style;
}

bool DarkEditor::replaceSelectionRtf(std::string_view rtf) {
    const EditorWork work(*this);
    return editor_.replaceSelectionRtf(rtf);
}

void DarkEditor::beginWork() {
    if (work_ > 0) {
        ++work_;
        return;
    }
    const std::string own = rtf();
    editor_.beginWork();
    ++work_;
    try {
        hasOwn_ = reload(own);
    } catch (const std::exception&) {
        // The command goes on in the colours that are there.
    }
}

void DarkEditor::endWork() {
    if (--work_ > 0)
        return;
    try {
        if (std::exchange(hasOwn_, false))
            reload(colours_.darkened(editor_.rtf()));
    } catch (const std::exception&) {
        // Whatever the colours are, the text is there.
    }
    editor_.endWork();
}

bool DarkEditor::reload(std::string_view rtf) {
    const Selection selection = editor_.selection();
    const ScrollPosition page = editor_.scrollPosition();
    const bool loaded = editor_.loadRtf(rtf);
    editor_.select(selection);
    editor_.scrollTo(page);
    return loaded;
}

}  // namespace melvorin
