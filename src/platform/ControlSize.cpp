#include "platform/ControlSize.h"

#include <algorithm>

#include "platform/Handles.h"
#include "platform/Window.h"

namespace melvorin {
namespace {

// Pixels at 96 dpi.
constexpr int kMarkWidth = 20;   // of a check box or an option, with its gap to the text
constexpr int kMarkHeight = 16;  // and with the row that it stands in
constexpr int kFrameEnds = 18;   // of a group: what of its line is left and right of the caption
constexpr int kArrowWidth = 26;  // of a drop-down list, with the room around its text
constexpr int kEdgeHeight = 8;   // of a box to type in

bool isOf(HWND control, const wchar_t* className) {
    wchar_t name[32] = L"";
    ::GetClassNameW(control, name, 32);
    return ::lstrcmpiW(name, className) == 0;
}

DWORD styleOf(HWND control) {
    return static_cast<DWORD>(::GetWindowLongPtrW(control, GWL_STYLE));
}

HFONT fontOf(HWND control) {
    const auto font = reinterpret_cast<HFONT>(::SendMessageW(control, WM_GETFONT, 0, 0));
    return font != nullptr ? font : uiFont();
}

// Measures texts in the font of a control.
class Extents {
  public:
    explicit Extents(HWND control) : dc_(control), selected_(dc_.get(), fontOf(control)) {
        ::GetTextMetricsW(dc_.get(), &metrics_);
    }
    // A text without characters still has a line.
    Size of(const Text& text, int width, UINT format) const {
        RECT area{0, 0, width, 0};
        ::DrawTextW(dc_.get(), wide(text), -1, &area, DT_CALCRECT | format);
        return {static_cast<int>(area.right),
                static_cast<int>(std::max(area.bottom, metrics_.tmHeight))};
    }

  private:
    WindowDc dc_;
    SelectedObject selected_;
    TEXTMETRICW metrics_{};
};

Size extentOf(HWND control, const Text& text, int width, UINT format) {
    return Extents(control).of(text, width, format);
}

Size labelSize(HWND label, int width) {
    const DWORD style = styleOf(label);
    const UINT prefix = style & SS_NOPREFIX ? DT_NOPREFIX : 0;
    const bool wraps = !(style & (SS_CENTERIMAGE | SS_ELLIPSISMASK)) &&
                       (style & SS_TYPEMASK) <= SS_RIGHT && width > 0;
    const bool breaks = wraps && (style & SS_EDITCONTROL) != 0;  // words longer than a line too
    Size size = extentOf(label, windowText(label), width,
                         prefix | (wraps ? DT_WORDBREAK : 0) | (breaks ? DT_EDITCONTROL : 0));
    // Measured and drawn, a text may differ by a pixel: its last sign would go.
    size.width = style & SS_ELLIPSISMASK ? 0 : size.width + (wraps ? 0 : 2);
    return size;
}

Size buttonSize(HWND button) {
    const Size text = extentOf(button, windowText(button), 0, DT_SINGLELINE);
    if ((styleOf(button) & BS_TYPEMASK) == BS_GROUPBOX)
        return {text.width + scaled(kFrameEnds), text.height};
    return {text.width + scaled(kMarkWidth), std::max(text.height + 2, scaled(kMarkHeight))};
}

Size dropDownSize(HWND box) {
    RECT own{};
    ::GetWindowRect(box, &own);
    Size size{0, static_cast<int>(own.bottom - own.top)};
    if ((styleOf(box) & 3) != CBS_DROPDOWNLIST)
        return size;
    const Extents extents(box);
    const LRESULT count = ::SendMessageW(box, CB_GETCOUNT, 0, 0);
    for (WPARAM i = 0; static_cast<LRESULT>(i) < count; ++i) {
        Text entry(static_cast<std::size_t>(::SendMessageW(box, CB_GETLBTEXTLEN, i, 0)) + 1, u'\0');
        ::SendMessageW(box, CB_GETLBTEXT, i, lparamOf(wideBuffer(entry)));
        const Size text = extents.of(entry, 0, DT_SINGLELINE | DT_NOPREFIX);
        size.width = std::max(size.width, text.width + scaled(kArrowWidth));
    }
    return size;
}

Size editSize(HWND edit, int width) {
    const DWORD style = styleOf(edit);
    if (style & (WS_VSCROLL | WS_HSCROLL))
        return {};
    if (!(style & ES_MULTILINE))
        return {0, extentOf(edit, {}, 0, DT_SINGLELINE).height + scaled(kEdgeHeight)};
    Size size = extentOf(edit, windowText(edit), width,
                         DT_WORDBREAK | DT_EDITCONTROL | DT_NOPREFIX | DT_EXPANDTABS);
    // The control shows no line that ends at its very edge.
    size.height += scaled(2);
    return size;
}

}  // namespace

bool isDropDown(HWND control) {
    return isOf(control, L"ComboBox");
}

Size neededSize(HWND control, int width) {
    if (isOf(control, L"Static"))
        return labelSize(control, width);
    if (isOf(control, L"Button"))
        return buttonSize(control);
    if (isOf(control, L"Edit"))
        return editSize(control, width);
    if (isDropDown(control))
        return dropDownSize(control);
    SIZE ideal{};
    ::SendMessageW(control, BCM_GETIDEALSIZE, 0, lparamOf(&ideal));
    return {static_cast<int>(ideal.cx), static_cast<int>(ideal.cy)};
}

}  // namespace melvorin
