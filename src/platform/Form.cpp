#include "platform/Form.h"

#include <algorithm>

#include "platform/ControlSize.h"
#include "platform/HeldKeys.h"

namespace melvorin {
namespace {

// Of a window, whether it deals with a message of the loop; lParam is the MSG.
constexpr UINT kTranslate = WM_APP + 0x100;
constexpr int kDropHeight = 200;  // of a drop-down box's list, at 96 dpi

}  // namespace

// ---- Messages ---------------------------------------------------------------------------------

bool Form::translate(MSG& message) {
    const bool isMine = isOpen() && (message.hwnd == handle() || ::IsChild(handle(), message.hwnd));
    if (!isMine)
        return false;
    keyRepeats_ = isRepeat(message);
    if (isKeyDown(message) && onKeyDown(message.wParam))
        return true;
    return ::IsDialogMessageW(handle(), &message) != FALSE;
}

bool Form::translateAny(MSG& message) {
    const HWND root = message.hwnd != nullptr ? ::GetAncestor(message.hwnd, GA_ROOT) : nullptr;
    return root != nullptr && ::SendMessageW(root, kTranslate, 0, lparamOf(&message)) != 0;
}

LRESULT Form::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_COMMAND:
            onCommand(LOWORD(wParam), HIWORD(wParam));
            return 0;
        case WM_CLOSE:
            onClose();
            return 0;
        default:
            return passOn(message, wParam, lParam);
    }
}

LRESULT Form::passOn(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case kTranslate:
            return translate(*reinterpret_cast<MSG*>(lParam));
        case WM_ACTIVATE:
            if (LOWORD(wParam) == WA_INACTIVE && ::IsChild(handle(), ::GetFocus()))
                focus_ = ::GetFocus();
            break;
        case WM_SETFOCUS:
            if (::IsChild(handle(), focus_) && ::IsWindowEnabled(focus_)) {
                ::SetFocus(focus_);
                return 0;
            }
            break;
        case WM_SIZE:
            if (wParam != SIZE_MINIMIZED)
                placeParts();
            break;
        case WM_GETMINMAXINFO:
            limitSize(*reinterpret_cast<MINMAXINFO*>(lParam));
            return 0;
        case WM_NEXTDLGCTL:
            moveFocus(wParam, LOWORD(lParam) != 0);
            return 0;
        case WM_NCDESTROY:
            focus_ = nullptr;
            tips_ = nullptr;
            break;
        default:
            break;
    }
    return Window::passOn(message, wParam, lParam);
}

// What the access key of a label asks for: first the label itself, then what is behind it.
void Form::moveFocus(WPARAM which, bool isControl) {
    const HWND next = isControl ? reinterpret_cast<HWND>(which)
                                : ::GetNextDlgTabItem(handle(), ::GetFocus(), which != 0);
    if (next == nullptr)
        return;
    ::SetFocus(next);
    if ((::SendMessageW(next, WM_GETDLGCODE, 0, 0) & DLGC_HASSETSEL) != 0)
        ::SendMessageW(next, EM_SETSEL, 0, -1);
}

void Form::onCommand(int id, int) {
    if (id == IDCANCEL)
        onClose();
}

void Form::onClose() {
    if (isModal_)
        endModal();
    else
        destroy();
}

bool Form::onKeyDown(WPARAM) {
    return false;
}

void Form::onException(const std::exception& error) {
    reportException(services_.messages, error);
}

void Form::runModal(HWND owner) {
    const HWND formerFocus = ::GetFocus();
    ::EnableWindow(owner, FALSE);
    ::ShowWindow(handle(), SW_SHOW);
    MSG message{};
    bool quit = false;
    isModal_ = true;
    while (isOpen() && isModal_ && !quit) {
        const BOOL got = ::GetMessageW(&message, nullptr, 0, 0);
        if (got <= 0) {
            quit = true;
        } else if (!translate(message)) {
            ::TranslateMessage(&message);
            ::DispatchMessageW(&message);
        }
    }
    isModal_ = false;
    // The owner is enabled before the window goes, else another program's would come up.
    ::EnableWindow(owner, TRUE);
    destroy();
    // The control that had the focus may be gone; the owner then knows where it belongs.
    ::SetFocus(::IsWindow(formerFocus) ? formerFocus : owner);
    if (quit)
        ::PostQuitMessage(static_cast<int>(message.wParam));
}

void Form::bringForward() {
    ::ShowWindow(handle(), SW_SHOW);
    ::SetActiveWindow(handle());
}

// ---- Controls ---------------------------------------------------------------------------------

bool Form::createForm(const wchar_t* className, const wchar_t* caption, HWND owner) {
    return createForm(smallWindow(className, caption, 0, 0, owner));
}

bool Form::createForm(const WindowSpec& spec) {
    parts_.clear();
    layout_ = {};
    return create(spec);
}

Cell Form::added(HWND made) {
    parts_.push_back({made, {}, {}});
    return partOf(static_cast<int>(parts_.size()) - 1);
}

Cell Form::space(Size needed) {
    Cell cell = added(nullptr);
    parts_.back().needed = needed;
    return cell;
}

Cell Form::control(const wchar_t* className, const wchar_t* text, DWORD style, int id,
                   DWORD extendedStyle) {
    return added(createControl(handle(), className, text, style, id, {}, extendedStyle));
}

Cell Form::label(const wchar_t* text, DWORD style, int id) {
    return control(L"STATIC", text, style, id);
}

Cell Form::check(const wchar_t* text, int id) {
    return control(L"BUTTON", text, WS_TABSTOP | BS_AUTOCHECKBOX, id);
}

Cell Form::option(const wchar_t* text, int id, bool isFirst) {
    const DWORD first = isFirst ? WS_GROUP | WS_TABSTOP : 0;
    return control(L"BUTTON", text, BS_AUTORADIOBUTTON | first, id);
}

Cell Form::edit(int id, DWORD style) {
    return control(L"EDIT", L"", WS_TABSTOP | style, id, WS_EX_CLIENTEDGE);
}

Cell Form::songPreview(int id, TextView face, int points, UniqueFont& font) {
    Cell made = edit(id, WS_VSCROLL | WS_HSCROLL | ES_MULTILINE | ES_READONLY | ES_AUTOHSCROLL);
    font.reset(songFont(face, points));
    ::SendMessageW(windowOf(made), WM_SETFONT, reinterpret_cast<WPARAM>(font.get()), FALSE);
    return made;
}

Cell Form::list(int id) {
    return control(L"LISTBOX", L"", WS_TABSTOP | WS_VSCROLL | LBS_NOTIFY | LBS_NOINTEGRALHEIGHT, id,
                   WS_EX_CLIENTEDGE);
}

Cell Form::dropDown(int id, DWORD style) {
    return control(L"COMBOBOX", L"", WS_TABSTOP | WS_VSCROLL | style, id);
}

Cell Form::group(const wchar_t* caption, const Cell& content) {
    // A frame does not paint what is inside it.
    const Cell frame = control(L"BUTTON", caption, BS_GROUPBOX, -1, WS_EX_TRANSPARENT);
    putBefore(windowOf(frame), content);
    return groupOf(frame.part, content);
}

// A screen reader names what is in a frame by the frame before it.
void Form::putBefore(HWND frame, const Cell& content) {
    const Cell* first = &content;
    while (first->part < 0 && !first->cells.empty())
        first = &first->cells.front();
    if (first->part < 0)
        return;
    const HWND before = ::GetWindow(windowOf(*first), GW_HWNDPREV);
    ::SetWindowPos(frame, before != nullptr ? before : HWND_TOP, 0, 0, 0, 0,
                   SWP_NOMOVE | SWP_NOSIZE | SWP_NOACTIVATE);
}

void Form::addTip(HWND over, TextView text) {
    if (tips_ == nullptr) {
        tips_ = ::CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr,
                                  WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT,
                                  CW_USEDEFAULT, CW_USEDEFAULT, CW_USEDEFAULT, handle(), nullptr,
                                  ::GetModuleHandleW(nullptr), nullptr);
    }
    Text title(text);
    TTTOOLINFOW tool{};
    tool.cbSize = TTTOOLINFOW_V1_SIZE;
    tool.uFlags = TTF_SUBCLASS | TTF_IDISHWND;
    tool.hwnd = handle();
    tool.uId = reinterpret_cast<UINT_PTR>(over);
    tool.lpszText = wideBuffer(title);
    ::SendMessageW(tips_, TTM_DELTOOLW, 0, lparamOf(&tool));
    if (!text.empty())
        ::SendMessageW(tips_, TTM_ADDTOOLW, 0, lparamOf(&tool));
}

// ---- Places -----------------------------------------------------------------------------------

void Form::layOut(const Cell& root, HWND owner, Size usual) {
    layout_ = Layout(root, systemDpi(), [this](int part, int width) {
        const Part& it = parts_[static_cast<std::size_t>(part)];
        return it.window != nullptr ? neededSize(it.window, width) : it.needed;
    });
    const bool isPanel = (::GetWindowLongPtrW(handle(), GWL_STYLE) & WS_CHILD) != 0;
    hasPlaces_ = false;
    if (!isPanel)
        giveSize(owner, usual);
    if (!hasPlaces_)
        placeParts();
    if (!isPanel)
        centreOver(handle(), owner);
}

void Form::giveSize(HWND owner, Size usual) {
    if (layout_.growsAcross() || layout_.growsDown()) {
        const LONG_PTR style = ::GetWindowLongPtrW(handle(), GWL_STYLE);
        ::SetWindowLongPtrW(handle(), GWL_STYLE, style | LONG_PTR{WS_THICKFRAME});
    }
    RECT over{};
    ::GetWindowRect(owner, &over);
    const Area room = services_.screen.monitorOf(areaOf(over)).work;
    const Size frame = frameSize();
    const Size least = layout_.least();
    const int width = std::min(frame.width + scaled(usual.width), room.width);
    const int height = std::min(frame.height + scaled(usual.height), room.height);
    ::SetWindowPos(handle(), nullptr, 0, 0, std::max(frame.width + least.width, width),
                   std::max(frame.height + least.height, height),
                   SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_FRAMECHANGED);
}

void Form::placeParts() {
    if (layout_.isEmpty())
        return;
    RECT client{};
    ::GetClientRect(handle(), &client);
    for (const auto& [index, area] :
         layout_.place({static_cast<int>(client.right), static_cast<int>(client.bottom)})) {
        Part& part = parts_[static_cast<std::size_t>(index)];
        part.place = area;
        if (part.window == nullptr)
            continue;
        const int height = isDropDown(part.window) ? scaled(kDropHeight) : area.height;
        ::SetWindowPos(part.window, nullptr, area.left, area.top, area.width, height,
                       SWP_NOZORDER | SWP_NOACTIVATE);
    }
    hasPlaces_ = true;
    onPlaced();
    // Labels and frames do not draw themselves anew when only their size changes.
    ::RedrawWindow(handle(), nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

// What caption and border add to the client area.
Size Form::frameSize() const {
    RECT frame{};
    ::AdjustWindowRectEx(&frame, static_cast<DWORD>(::GetWindowLongPtrW(handle(), GWL_STYLE)),
                         FALSE, static_cast<DWORD>(::GetWindowLongPtrW(handle(), GWL_EXSTYLE)));
    return {static_cast<int>(frame.right - frame.left), static_cast<int>(frame.bottom - frame.top)};
}

void Form::limitSize(MINMAXINFO& limits) const {
    if (!(layout_.growsAcross() || layout_.growsDown()))
        return;
    const Size frame = frameSize();
    const Size least = layout_.least();
    limits.ptMinTrackSize = {frame.width + least.width, frame.height + least.height};
    if (!layout_.growsAcross())
        limits.ptMaxTrackSize.x = limits.ptMinTrackSize.x;
    if (!layout_.growsDown())
        limits.ptMaxTrackSize.y = limits.ptMinTrackSize.y;
}

LRESULT onPaper(WPARAM dc) {
    ::SetTextColor(reinterpret_cast<HDC>(dc), ::GetSysColor(COLOR_WINDOWTEXT));
    ::SetBkColor(reinterpret_cast<HDC>(dc), ::GetSysColor(COLOR_WINDOW));
    return reinterpret_cast<LRESULT>(::GetSysColorBrush(COLOR_WINDOW));
}

}  // namespace melvorin
