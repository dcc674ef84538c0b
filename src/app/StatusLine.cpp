#include "app/StatusLine.h"

#include <algorithm>
#include <utility>

#include "platform/ControlSize.h"

namespace melvorin {
namespace {

enum ControlId { kFirstAction = 401, kNext = 411, kKey, kZoom, kMessage, kPlace };

// Pixels at 96 dpi.
constexpr int kInset = 2;
constexpr int kGap = 6;
constexpr int kLeastMessage = 60;

// Wide enough for most places, so that nothing moves from line to line.
constexpr wchar_t kUsualPlace[] = L"Line 8888, Column 88: tablature";

constexpr TextView kTellKey = u"Tell the key of this song";

int lineHeight() {
    const WindowDc screen(nullptr);
    const SelectedObject font(screen.get(), uiFont());
    TEXTMETRICW metrics{};
    ::GetTextMetricsW(screen.get(), &metrics);
    return metrics.tmHeight;
}

int widthOf(const wchar_t* text) {
    const WindowDc screen(nullptr);
    const SelectedObject font(screen.get(), uiFont());
    SIZE size{};
    ::GetTextExtentPoint32W(screen.get(), text, ::lstrlenW(text), &size);
    return size.cx;
}

void show(HWND control, bool visible) {
    ::ShowWindow(control, visible ? SW_SHOWNA : SW_HIDE);
}

}  // namespace

StatusLine::StatusLine(const Services& services, Actions actions)
    : Form(services),
      actions_(std::move(actions)),
      sounds_(services),
      buttons_{TarnelButton(sounds_), TarnelButton(sounds_), TarnelButton(sounds_)},
      next_(sounds_),
      key_(sounds_),
      zoom_(sounds_) {}

bool StatusLine::create(HWND parent) {
    if (!createForm(panelIn(parent, L"MelvorinStatusLine", L"Status Line")))
        return false;
    constexpr DWORD oneLine = SS_CENTERIMAGE | SS_ENDELLIPSIS | SS_NOPREFIX;
    message_ = windowOf(label(L"", oneLine, kMessage));
    for (std::size_t i = 0; i < kActions; ++i)
        buttons_[i].create(handle(), kFirstAction + static_cast<int>(i), {}, {});
    next_.create(handle(), kNext, {}, {});
    // It has a tip at times.
    place_ = windowOf(label(L"", oneLine | SS_NOTIFY, kPlace));
    key_.create(handle(), kKey, {}, {});
    melvorin::show(key_.handle(), false);
    addTip(key_.handle(), kTellKey);
    zoom_.create(handle(), kZoom, {}, u"100 %");
    addTip(zoom_.handle(), u"Back to 100 % (Ctrl+0)");
    showNote();
    return true;
}

int StatusLine::height() const {
    if (!shown_)
        return 0;
    return std::max(lineHeight() + 2 * scaled(kInset), static_cast<int>(zoom_.idealSize().height)) +
           scaled(kInset);
}

void StatusLine::place(const Area& area) {
    ::SetWindowPos(handle(), nullptr, area.left, area.top, area.width, area.height,
                   SWP_NOZORDER | SWP_NOACTIVATE);
}

void StatusLine::show(bool visible) {
    shown_ = visible;
    melvorin::show(handle(), visible);
}

void StatusLine::say(std::vector<StatusNote> notes) {
    const bool isNew =
        !std::equal(notes.begin(), notes.end(), notes_.begin(), notes_.end(),
                    [](const StatusNote& a, const StatusNote& b) { return a.text == b.text; });
    notes_ = std::move(notes);
    if (isNew)
        current_ = 0;
    showNote();
    if (isNew)
        ::NotifyWinEvent(EVENT_OBJECT_NAMECHANGE, message_, OBJID_CLIENT, CHILDID_SELF);
}

void StatusLine::showNote() {
    const StatusNote* const note = notes_.empty() ? nullptr : &notes_[current_];
    const HWND focus = ::GetFocus();
    ::SetWindowTextW(message_, note == nullptr ? L"" : wide(note->text));
    for (std::size_t i = 0; i < kActions; ++i) {
        const bool isThere = note != nullptr && i < note->actions.size();
        if (isThere) {
            buttons_[i].setCaption(note->actions[i].caption);
            buttons_[i].setEnabled(note->actions[i].isEnabled);
        }
        melvorin::show(buttons_[i].handle(), isThere);
    }
    const auto count = static_cast<std::int64_t>(notes_.size());
    if (count > 1)
        next_.setCaption(decimal(static_cast<std::int64_t>(current_) + 1) + u" of " +
                         decimal(count));
    melvorin::show(next_.handle(), count > 1);
    // Whoever was at a button that is gone goes on in the document.
    if (focus != nullptr && ::IsChild(handle(), focus) && !::IsWindowVisible(focus))
        actions_.leave();
    arrange();
}

void StatusLine::tellPlace(TextView place) {
    if (windowText(place_) != place)
        ::SetWindowTextW(place_, wide(Text(place)));
}

void StatusLine::tellZoom(int percent) {
    zoom_.setCaption(decimal(percent) + u" %");
    arrange();
}

void StatusLine::tellKey(TextView key) {
    if (keyText() == key)
        return;
    key_.setCaption(key);
    melvorin::show(key_.handle(), !key.empty());
    arrange();
}

void StatusLine::tellReason(TextView reason) {
    if (reason_ == reason)
        return;
    reason_ = reason;
    addTip(place_, reason);
    addTip(key_.handle(), reason.empty() ? kTellKey : reason);
}

void StatusLine::enter() {
    if (const HWND first = ::GetNextDlgTabItem(handle(), nullptr, FALSE))
        ::SetFocus(first);
}

// Puts a control at the right of what is free; where it begins is the new right.
int StatusLine::placeFromRight(HWND control, int right, int least) {
    RECT client{};
    ::GetClientRect(handle(), &client);
    const int width = std::max(least, neededSize(control, 0).width);
    const int left = std::max(0, right - width);
    ::SetWindowPos(control, nullptr, left, scaled(kInset) / 2, right - left,
                   static_cast<int>(client.bottom) - scaled(kInset), SWP_NOZORDER | SWP_NOACTIVATE);
    return left - scaled(kGap);
}

// From the right: zoom, place, and behind the message the buttons; the message is shortened.
void StatusLine::arrange() {
    RECT client{};
    ::GetClientRect(handle(), &client);
    int right = placeFromRight(zoom_.handle(), static_cast<int>(client.right), 0);
    if (!keyText().empty())
        right = placeFromRight(key_.handle(), right, 0);
    right = placeFromRight(place_, right, widthOf(kUsualPlace));
    std::vector<HWND> shown;
    for (const TarnelButton& button : buttons_) {
        if ((::GetWindowLongPtrW(button.handle(), GWL_STYLE) & WS_VISIBLE) != 0)
            shown.push_back(button.handle());
    }
    if (notes_.size() > 1)
        shown.push_back(next_.handle());
    int needed = 0;
    for (const HWND button : shown)
        needed += neededSize(button, 0).width + scaled(kGap);
    const int words = widthOf(wide(windowText(message_))) + scaled(kGap);
    const int message = std::min(std::max(right - needed, scaled(kLeastMessage)), words);
    ::SetWindowPos(message_, nullptr, scaled(kGap), 0, message, static_cast<int>(client.bottom),
                   SWP_NOZORDER | SWP_NOACTIVATE);
    // A label does not draw itself anew when only its size changes.
    ::InvalidateRect(message_, nullptr, TRUE);
    int end = scaled(kGap) + message + needed;
    for (auto button = shown.rbegin(); button != shown.rend(); ++button)
        end = placeFromRight(*button, end, 0);
}

LRESULT StatusLine::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_SIZE:
            if (zoom_.handle() != nullptr)
                arrange();
            return 0;
        case WM_MOUSEACTIVATE:
            return MA_NOACTIVATE;
        default:
            return Form::onMessage(message, wParam, lParam);
    }
}

void StatusLine::onCommand(int id, int event) {
    if (event != BN_CLICKED || id == kPlace)
        return;
    const std::vector<StatusNote> notes = notes_;
    const auto action = static_cast<std::size_t>(id - kFirstAction);
    if (id == kNext) {
        current_ = (current_ + 1) % notes_.size();
        return showNote();
    }
    // A click takes the keyboard; nobody wants it to stay here.
    actions_.leave();
    if (id == kZoom) {
        actions_.resetZoom();
    } else if (id == kKey) {
        RECT button{};
        ::GetWindowRect(key_.handle(), &button);
        actions_.chooseKey({button.left, button.top});
    } else if (!notes.empty() && action < notes[current_].actions.size()) {
        notes[current_].actions[action].run();
    }
}

bool StatusLine::onKeyDown(WPARAM key) {
    if (key != VK_ESCAPE)
        return false;
    actions_.leave();
    return true;
}

}  // namespace melvorin
