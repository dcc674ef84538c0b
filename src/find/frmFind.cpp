#include "find/frmFind.h"

#include <algorithm>

namespace melvorin {
namespace {

enum ControlId { kFindme = 101, kReplaceme, kChWord, kChCase, kFindNext, kReplace, kReplaceAll };

// Pixels at 96 dpi: one spacing for everything.
constexpr int kMargin = 12;
constexpr int kGap = 8;
constexpr int kLabelWidth = 92;
constexpr int kBoxWidth = 270;
constexpr int kBoxHeight = 24;
constexpr int kListHeight = 200;
constexpr int kButtonWidth = 96;
constexpr int kButtonHeight = 26;
constexpr int kCheckHeight = 20;

bool isInput(UINT message) {
    return (message >= WM_KEYFIRST && message <= WM_KEYLAST) ||
           (message >= WM_MOUSEFIRST && message <= WM_MOUSELAST) ||
           (message >= WM_NCMOUSEMOVE && message <= WM_NCXBUTTONDBLCLK);
}

}  // namespace

frmFind::frmFind(const Services& services, RichEdit& rtftext, Callbacks callbacks)
    : rtftext_(rtftext),
      messages_(services.messages),
      isBusy_(std::move(callbacks.isBusy)),
      finder_(rtftext, services.messages, std::move(callbacks.changed),
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
        const int width = kMargin + kLabelWidth + kGap + kBoxWidth + kGap + kButtonWidth + kMargin;
        const int height = 2 * kMargin + 4 * kButtonHeight + 3 * kGap;
        if (!create(smallWindow(L"MelvorinfrmFind", L"Find and Replace", scaled(width),
                                scaled(height), owner)))
            return false;
        createControls();
        finder_.reset();
        centreOver(handle(), owner);
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

HWND frmFind::addControl(const wchar_t* className, const wchar_t* text, DWORD style, int id,
                         const RECT& place) {
    return createControl(
        handle(), className, text, style, id,
        {scaled(static_cast<int>(place.left)), scaled(static_cast<int>(place.top)),
         scaled(static_cast<int>(place.right)), scaled(static_cast<int>(place.bottom))});
}

void frmFind::createControls() {
    constexpr int boxLeft = kMargin + kLabelWidth + kGap;
    constexpr int firstRow = kMargin;
    constexpr int secondRow = firstRow + kButtonHeight + kGap;
    constexpr int checkRow = secondRow + kButtonHeight + kGap;
    const auto box = [&](const wchar_t* label, int id, int top) {
        const HWND text = addControl(L"STATIC", label, SS_CENTERIMAGE, -1,
                                     {kMargin, top, kMargin + kLabelWidth, top + kBoxHeight});
        const HWND combo =
            addControl(L"COMBOBOX", L"", WS_TABSTOP | WS_VSCROLL | CBS_DROPDOWN | CBS_AUTOHSCROLL,
                       id, {boxLeft, top, boxLeft + kBoxWidth, top + kListHeight});
        // The font gives the box its height; the label's text is on its line.
        RECT place{};
        ::GetWindowRect(combo, &place);
        ::SetWindowPos(text, nullptr, 0, 0, scaled(kLabelWidth),
                       static_cast<int>(place.bottom - place.top), SWP_NOMOVE | SWP_NOZORDER);
        return combo;
    };
    const auto check = [&](const wchar_t* text, int id, int top) {
        return addControl(L"BUTTON", text, WS_TABSTOP | BS_AUTOCHECKBOX, id,
                          {boxLeft, top, boxLeft + kBoxWidth, top + kCheckHeight});
    };
    int top = firstRow;
    const auto addButton = [&](TarnelButton& button, TextView text, int id, DWORD style) {
        const int left = scaled(boxLeft + kBoxWidth + kGap);
        button.create(handle(), id,
                      {left, scaled(top), left + scaled(kButtonWidth), scaled(top + kButtonHeight)},
                      text, WS_TABSTOP | style);
        top += kButtonHeight + kGap;
    };
    Findme_ = {box(L"Find what:", kFindme, firstRow), {}};
    Replaceme_ = {box(L"Replace with:", kReplaceme, secondRow), {}};
    ChWord_ = check(L"Match whole word only", kChWord, checkRow);
    ChCase_ = check(L"Match Case", kChCase, checkRow + kCheckHeight + kGap / 2);
    addButton(cmdFindNext_, u"Find Next", kFindNext, BS_DEFPUSHBUTTON);
    addButton(cmdReplace_, u"Replace", kReplace, 0);
    addButton(cmdReplaceAll_, u"Replace All", kReplaceAll, 0);
    addButton(cmdCancel_, u"Exit", IDCANCEL, 0);
    enableActions({});
}

bool frmFind::translate(MSG& message) {
    const bool isMine = isOpen() && (message.hwnd == handle() || ::IsChild(handle(), message.hwnd));
    return isMine && ::IsDialogMessageW(handle(), &message);
}

LRESULT frmFind::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_COMMAND:
            onCommand(LOWORD(wParam), HIWORD(wParam));
            return 0;
        case DM_GETDEFID:
            return MAKELRESULT(kFindNext, DC_HASDEFID);
        case WM_ACTIVATE:
            // Coming back from the song, the search text is what is wanted next.
            if (LOWORD(wParam) != WA_INACTIVE && ::GetFocus() == handle())
                ::SetFocus(Findme_.window);
            return passOn(message, wParam, lParam);
        case WM_CLOSE:
            onExit();
            return 0;
        default:
            return passOn(message, wParam, lParam);
    }
}

void frmFind::onException(const std::exception& error) {
    reportException(messages_, error);
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
        case IDCANCEL:
            onExit();
            break;
        default:
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
    return {Findme_.text(), Replaceme_.text(), {isChecked(ChCase_), isChecked(ChWord_)}};
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
    const HWND others[] = {
        Findme_.window,       Replaceme_.window,      ChWord_, ChCase_, cmdFindNext_.handle(),
        cmdReplace_.handle(), cmdReplaceAll_.handle()};
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

void frmFind::onExit() {
    if (finder_.isBusy())
        finder_.stop();
    else
        destroy();
}

// Lets messages run between two replacements; of input, only what ends them.
void frmFind::pump() {
    MSG message{};
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
        if (message.message == WM_QUIT) {
            ::PostQuitMessage(static_cast<int>(message.wParam));
            finder_.stop();
            return;
        }
        if (message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE)
            finder_.stop();
        else if (!isInput(message.message) || message.hwnd == cmdCancel_.handle()) {
            ::TranslateMessage(&message);
            ::DispatchMessageW(&message);
        }
    }
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
