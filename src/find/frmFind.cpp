#include "find/frmFind.h"

#include <algorithm>

namespace melvorin {
namespace {

enum ControlId {
    kFindme = 101,
    kReplaceme,
    kChWord,
    kChCase,
    kFindNext,
    kReplace,
    kReplaceAll,
    kChordsOnly
};

bool isInput(UINT message) {
    return (message >= WM_KEYFIRST && message <= WM_KEYLAST) ||
           (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST) ||
           (message >= WM_NCMOUSEMOVE && message <= WM_NCXBUTTONDBLCLK);
}

}  // namespace

frmFind::frmFind(const Services& services, RichEdit& rtftext, ReplaceFollower& chords,
                 Callbacks callbacks)
    : Form(services),
      rtftext_(rtftext),
      isBusy_(std::move(callbacks.isBusy)),
      finder_(rtftext, services.messages, chords, std::move(callbacks.changed),
              [this] { ::SetFocus(rtftext_.handle()); }),
      sounds_(services),
      cmdFindNext_(sounds_),
      cmdReplace_(sounds_),
      cmdReplaceAll_(sounds_),
      cmdCancel_(sounds_) {}

Text frmFind::HistoryBox::text() const {
    return windowText(window);
}

void frmFind::HistoryBox::remember(TextView text) {
    // The list box compares without case, so the comparison is made here.
    if (std::find(items.begin(), items.end(), text) != items.end())
        return;
    items.emplace_back(text);
    ::SendMessageW(window, CB_ADDSTRING, 0, lparamOf(wide(items.back())));
}

// ---- The window -------------------------------------------------------------------------------

bool frmFind::open(HWND owner, TextView what) {
    if (!isOpen()) {
        if (!createForm(L"MelvorinfrmFind", L"Find and Replace", owner))
            return false;
        createControls(owner);
        finder_.reset();
        ::ShowWindow(handle(), SW_SHOW);
    }
    if (!what.empty()) {
        ::SetWindowTextW(Findme_.window, wide(Text(what)));
        enableActions(what);
    }
    ::SetActiveWindow(handle());
    ::SetFocus(Findme_.window);
    ::SendMessageW(Findme_.window, CB_SETEDITSEL, 0, MAKELPARAM(0, -1));
    return true;
}

// In the order in which Tab walks them.
void frmFind::createControls(HWND owner) {
    const auto box = [this](int id) {
        return dropDown(id, CBS_DROPDOWN | CBS_AUTOHSCROLL).least(270).grows(1, 0);
    };
    const Cell what = label(L"Find what:");
    const Cell whatBox = box(kFindme);
    const Cell with = label(L"Replace with:");
    const Cell withBox = box(kReplaceme);
    const Cell word = check(L"Match whole word only", kChWord);
    const Cell letterCase = check(L"Match Case", kChCase);
    const Cell chords = check(L"Chords only", kChordsOnly);
    const Cell next = button(cmdFindNext_, kFindNext, u"Find Next", WS_TABSTOP | BS_DEFPUSHBUTTON);
    const Cell replace = button(cmdReplace_, kReplace, u"Replace");
    const Cell all = button(cmdReplaceAll_, kReplaceAll, u"Replace All");
    const Cell cancel = button(cmdCancel_, IDCANCEL, u"Exit");
    Findme_ = {windowOf(whatBox), {}};
    Replaceme_ = {windowOf(withBox), {}};
    ChWord_ = windowOf(word);
    ChCase_ = windowOf(letterCase);
    chordsOnly_ = windowOf(chords);
    enableActions({});
    layOut(gridOf(3, {what, whatBox, next,          //
                      with, withBox, replace,       //
                      blank(), word, all,           //
                      blank(), letterCase, cancel,  //
                      blank(), chords, blank()}),
           owner);
}

LRESULT frmFind::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case DM_GETDEFID:
            return MAKELRESULT(kFindNext, DC_HASDEFID);
        case WM_SETFOCUS:
            // Coming back from the song, the search text is what is wanted next.
            ::SetFocus(Findme_.window);
            return 0;
        default:
            return Form::onMessage(message, wParam, lParam);
    }
}

void frmFind::onCommand(int control, int code) {
    switch (control) {
        case kFindme:
            if (code == CBN_EDITCHANGE)
                enableActions(Findme_.text());
            if (code == CBN_SELCHANGE)
                onItemChosen();
            if (code == CBN_CLOSEUP)
                enableActions(Findme_.text());
            break;
        case kFindNext:
        case kReplace:
        case kReplaceAll:
            // Neither inside another command, which waits for an answer, nor inside itself.
            if (!isBusy_() && isSearchText(Findme_.text()))
                onAction(control);
            break;
        default:
            Form::onCommand(control, code);
            break;
    }
}

void frmFind::onAction(int control) {
    if (control == kFindNext)
        onFindNext();
    else if (control == kReplace)
        onReplace();
    else
        onReplaceAll();
}

// The box shows the chosen item only afterwards.
void frmFind::onItemChosen() {
    const LRESULT item = ::SendMessageW(Findme_.window, CB_GETCURSEL, 0, 0);
    if (item >= 0 && item < static_cast<LRESULT>(Findme_.items.size()))
        enableActions(Findme_.items[static_cast<std::size_t>(item)]);
}

void frmFind::enableActions(TextView what) {
    for (TarnelButton* const button : {&cmdFindNext_, &cmdReplace_, &cmdReplaceAll_})
        button->setEnabled(isSearchText(what));
}

// ---- Commands ---------------------------------------------------------------------------------

FindReplace::Request frmFind::request() const {
    const auto isChecked = [](HWND box) {
        return ::SendMessageW(box, BM_GETCHECK, 0, 0) == BST_CHECKED;
    };
    return {Findme_.text(),
            Replaceme_.text(),
            {isChecked(ChCase_), isChecked(ChWord_)},
            isChecked(chordsOnly_)};
}

bool frmFind::findNext() {
    if (!isOpen() || !isSearchText(Findme_.text()))
        return false;
    onFindNext();
    return true;
}

void frmFind::onFindNext() {
    const FindReplace::Request wanted = request();
    Findme_.remember(wanted.what);
    if (finder_.findNext(wanted)) {
        cmdReplace_.setEnabled(true);
        keepClearOf(rtftext_.selection().begin);
    }
}

void frmFind::onReplace() {
    const FindReplace::Request wanted = request();
    finder_.replaceOne(wanted);
    Findme_.remember(wanted.what);
    Replaceme_.remember(wanted.with);
}

void frmFind::onReplaceAll() {
    const FindReplace::Request wanted = request();
    Findme_.remember(wanted.what);
    Replaceme_.remember(wanted.with);
    const HWND others[] = {Findme_.window,
                           Replaceme_.window,
                           ChWord_,
                           ChCase_,
                           chordsOnly_,
                           cmdFindNext_.handle(),
                           cmdReplace_.handle(),
                           cmdReplaceAll_.handle()};
    for (const HWND control : others)
        ::EnableWindow(control, FALSE);
    ::UpdateWindow(handle());
    const HWND formerFocus = ::GetFocus();
    const auto restore = [&] {
        for (const HWND control : others)
            ::EnableWindow(control, TRUE);
        // A disabled control has lost it; after a match it is in the song.
        if (::GetFocus() == nullptr || ::GetFocus() == handle())
            ::SetFocus(formerFocus);
    };
    try {
        finder_.replaceEach(wanted, [this] { pump(); });
    } catch (...) {
        restore();
        throw;
    }
    restore();
}

void frmFind::onClose() {
    if (finder_.isBusy())
        finder_.stop();
    else
        Form::onClose();
}

// Lets messages run between two replacements; of input, only what ends them.
void frmFind::pump() {
    const bool goesOn = dispatchWaiting(0, [this](const MSG& message) {
        const bool isEscape = message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE;
        if (isEscape)
            finder_.stop();
        return !isEscape && (!isInput(message.message) || message.hwnd == cmdCancel_.handle());
    });
    if (!goesOn)
        finder_.stop();
}

// A match must not be hidden behind the window that found it.
void frmFind::keepClearOf(std::int32_t position) {
    POINT match = rtftext_.pointOf(position);
    ::ClientToScreen(rtftext_.handle(), &match);
    RECT window{};
    ::GetWindowRect(handle(), &window);
    const LONG lineHeight = scaled(24);
    const RECT line{window.left, match.y, window.right, match.y + lineHeight};
    RECT overlap{};
    if (!::IntersectRect(&overlap, &window, &line))
        return;
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    ::GetMonitorInfoW(::MonitorFromWindow(handle(), MONITOR_DEFAULTTONEAREST), &monitor);
    const LONG height = window.bottom - window.top;
    const LONG below = line.bottom + lineHeight;
    const LONG above = line.top - lineHeight - height;
    const LONG top = below + height <= monitor.rcWork.bottom ? below : above;
    if (top >= monitor.rcWork.top)
        moveTopLeft(handle(), static_cast<int>(window.left), static_cast<int>(top));
}

}  // namespace melvorin
