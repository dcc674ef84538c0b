// What is typed into the rich-text control: one change per character, in the format for it.
#include <exception>
#include <utility>

#include "platform/RichEdit.h"
#include "platform/Window.h"

namespace melvorin {
namespace {

// Keys that put something into the text, as far as the control takes them.
bool isTyping(UINT message, WPARAM wParam) {
    return (message == WM_CHAR && (wParam >= u' ' || wParam == u'\r')) ||
           (message == WM_KEYDOWN && wParam == VK_RETURN);
}

// No change event while it lives.
class Unheard {
  public:
    explicit Unheard(HWND control)
        : control_(control), events_(::SendMessageW(control, EM_SETEVENTMASK, 0, 0)) {}
    Unheard(const Unheard&) = delete;
    Unheard& operator=(const Unheard&) = delete;
    ~Unheard() { ::SendMessageW(control_, EM_SETEVENTMASK, 0, static_cast<LPARAM>(events_)); }

  private:
    HWND control_;
    LRESULT events_;
};

}  // namespace

// A character outside the first 65,536 comes in two halves and is one change. Shift and Enter begin
// a line like any other: to some controls it would be a blank, and the chords before it no line.
bool RichEdit::onTyped(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id) {
    if (!isTyping(message, wParam))
        return false;
    const WPARAM first = std::exchange(firstHalf_, 0);
    const bool isReturnTyped = std::exchange(returnTyped_, false);
    const bool isSecond = message == WM_CHAR && IS_LOW_SURROGATE(wParam);
    if (message == WM_CHAR && IS_HIGH_SURROGATE(wParam)) {
        firstHalf_ = wParam;
        return true;
    }
    if ((isSecond && first == 0) || (message == WM_CHAR && wParam == u'\r' && isReturnTyped))
        return true;
    if (message == WM_KEYDOWN && ::GetKeyState(VK_SHIFT) < 0) {
        returnTyped_ = true;
        type(u"\r");
        return true;
    }
    typeBy([&] {
        if (isSecond)
            subclassDefault(filterInput, id, window, message, first, lParam);
        subclassDefault(filterInput, id, window, message, wParam, lParam);
    });
    return true;
}

void RichEdit::type(TextView text) {
    typeBy([&] { replaceSelection(text); });
}

// The format is set at what has come in, not at what is selected before: many keys put nothing in
// its place.
void RichEdit::typeBy(const std::function<void()>& action) {
    if (atWork())
        return action();
    const Selection before = selection();
    const std::int32_t lengthBefore = length();
    bool changed = false;
    {
        const Unheard unheard(handle_);
        action();
        changed = selection() != before || length() != lengthBefore;
        try {
            if (changed)
                formatTyped(before.begin);
        } catch (const std::exception&) {
            // It stands there in another format; that it does has to be heard all the same.
        }
    }
    if (!changed)
        return;
    ::SendMessageW(parent_, WM_COMMAND, MAKEWPARAM(id_, EN_CHANGE),
                   reinterpret_cast<LPARAM>(handle_));
    tellSelection();
}

void RichEdit::formatTyped(std::int32_t begin) {
    // At the caret stands the format of what has just come in.
    const SelectionStyle style = selectionStyle();
    const auto wanted =
        typingRule_ ? typingRule_(style.face.value_or(Text())) : std::optional<TypingFormat>();
    if (!wanted || (style.face == wanted->face && style.halfPoints == wanted->points * 2 &&
                    style.colour == Rgb{0, 0, 0}))
        return;
    const std::int32_t end = selection().end;
    select({begin, end});
    setSelectionFont(wanted->face, wanted->points);
    setSelectionColour({0, 0, 0});
    select({end, end});
}

}  // namespace melvorin
