// What the two halves of the font window share.
#pragma once

#include <optional>

#include "platform/RichEdit.h"
#include "widgets/frmFont.h"

namespace melvorin {

// A font of `height` pixels with the effects of `style`; what is mixed there is off.
inline UniqueFont makeFont(TextView face, int height, const SelectionStyle& style) {
    return UniqueFont(::CreateFontW(
        -height, 0, 0, 0, style.bold.value_or(false) ? FW_BOLD : FW_NORMAL,
        style.italic.value_or(false), style.underline.value_or(false), FALSE, DEFAULT_CHARSET,
        OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH, wide(Text(face))));
}

inline COLORREF colourRef(Rgb colour) {
    return RGB(colour.red, colour.green, colour.blue);
}

// Checked, unchecked, or in between for no value.
inline void setChecked(HWND control, std::optional<bool> state) {
    const WPARAM shown = !state ? BST_INDETERMINATE : *state ? BST_CHECKED : BST_UNCHECKED;
    ::SendMessageW(control, BM_SETCHECK, shown, 0);
}

}  // namespace melvorin
