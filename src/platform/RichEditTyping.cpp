// What is typed into the rich-text control: one change per character, in the format for it.
#include <exception>
#include <utility>

#include "platform/HeldKeys.h"
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
    const auto act = [&] {
        if (isSecond)
            subclassDefault(filterInput, id, window, message, first, lParam);
        subclassDefault(filterInput, id, window, message, wParam, lParam);
    };
    changeBy(act, true);
    return true;
}

bool RichEdit::onDeleted(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id) {
    const bool cuts = wParam == 'X' && isHeld(VK_CONTROL) && !isHeld(VK_MENU);
    const bool deletes =
        (message == WM_KEYDOWN && (wParam == VK_BACK || wParam == VK_DELETE || cuts)) ||
        (message == WM_CHAR && wParam == VK_BACK);
    if (!deletes)
        return false;
    changeBy([&] { subclassDefault(filterInput, id, window, message, wParam, lParam); }, false);
    return true;
}

// What an input method composes is one change, at its end.
void RichEdit::onComposition(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id) {
    const bool begins = message == WM_IME_STARTCOMPOSITION;
    if (begins)
        observe([&] {
            observer_->editBegins(selection(), length());
            return true;
        });
    composes_ = begins;
    subclassDefault(filterInput, id, window, message, wParam, lParam);
    if (begins || observer_ == nullptr)
        return;
    bool tells = false;
    {
        const Unheard unheard(handle_);
        tells = observe([&] { return observer_->editEnds(selection(), length()); });
    }
    if (tells)
        tellChange();
}

void RichEdit::type(TextView text) {
    changeBy([&] { replaceSelection(text); }, true);
}

// The format is set at what has come in, not at what is selected before: many keys put nothing in
// its place.
void RichEdit::changeBy(const std::function<void()>& action, bool types) {
    if (atWork())
        return action();
    const bool isObserved = observer_ != nullptr && !composes_;
    const Selection before = selection();
    const std::int32_t lengthBefore = length();
    bool changed = false;
    bool tells = true;
    {
        const Unheard unheard(handle_);
        if (isObserved)
            observe([&] {
                observer_->editBegins(before, lengthBefore);
                return true;
            });
        action();
        Selection after = selection();
        const std::int32_t lengthAfter = length();
        changed = after != before || lengthAfter != lengthBefore;
        try {
            if (changed && types)
                formatTyped(before.begin);
        } catch (const std::exception&) {
            // It stands there in another format; that it does has to be heard all the same.
        }
        if (changed && isObserved)
            tells = observe([&] { return observer_->editEnds(after, lengthAfter); });
    }
    if (!changed)
        return;
    if (tells)
        tellChange();
    else
        tellSelection();
}

// An observer that fails must not cost the key that was pressed.
bool RichEdit::observe(const std::function<bool()>& hear) {
    try {
        return observer_ == nullptr || hear();
    } catch (const std::exception&) {
        return true;
    }
}

void RichEdit::tellChange() const {
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
                    style.colour == wanted->colour))
        return;
    const std::int32_t end = selection().end;
    select({begin, end});
    setSelectionFont(wanted->face, wanted->points);
    setSelectionColour(wanted->colour);
    select({end, end});
}

}  // namespace melvorin
