#include "widgets/TarnelButton.h"

#include <windowsx.h>

#include <algorithm>

namespace melvorin {
namespace {

constexpr UINT_PTR kOverTimer = 1;
constexpr DWORD kDefaultBit = BS_DEFPUSHBUTTON;
// The index by which accessibility takes a control for a push button.
constexpr LRESULT kButtonClassIndex = 65536 + 2;
constexpr LPARAM kQueryClassIndex = static_cast<LONG>(0xFFFFFFF4);

int shiftState() {
    const auto held = [](int key, int bit) { return ::GetKeyState(key) < 0 ? bit : 0; };
    return held(VK_SHIFT, kShiftHeld) | held(VK_CONTROL, kCtrlHeld) | held(VK_MENU, kAltHeld);
}

}  // namespace

// ---- Settings ---------------------------------------------------------------------------------

bool TarnelButton::create(HWND parent, int id, const RECT& place, TextView caption, DWORD style) {
    properties_.Caption = caption;
    isDefault_ = (style & kDefaultBit) != 0;
    WindowSpec spec;
    spec.className = L"TarnelButton";
    const Text text(caption);
    spec.caption = wide(text);
    spec.style = WS_CHILD | WS_VISIBLE | style;
    spec.x = static_cast<int>(place.left);
    spec.y = static_cast<int>(place.top);
    spec.width = static_cast<int>(place.right - place.left);
    spec.height = static_cast<int>(place.bottom - place.top);
    spec.parent = parent;
    spec.menu = reinterpret_cast<HMENU>(INT_PTR{id});
    return Window::create(spec);
}

void TarnelButton::place(const RECT& place) {
    ::SetWindowPos(handle(), nullptr, place.left, place.top, place.right - place.left,
                   place.bottom - place.top, SWP_NOZORDER | SWP_NOACTIVATE);
}

void TarnelButton::setProperties(const ButtonProperties& properties) {
    isInert_ = true;
    properties_ = properties;
    picture_ = loadPicture(properties.Picture);
    hoverPicture_ = loadPicture(properties.PictureHover);
    mouseIcon_ = loadPointer(properties.MouseIcon);
    const ButtonFont font = parseButtonFont(properties.Font);
    ownFont_.reset();
    if (!font.face.empty()) {
        const int height = ::MulDiv(font.points, systemDpi(), 72);
        ownFont_.reset(::CreateFontW(-height, 0, 0, 0, font.bold ? FW_BOLD : FW_NORMAL, font.italic,
                                     FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                                     CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH,
                                     wide(font.face)));
    }
    if (isOpen())
        ::SetWindowTextW(handle(), wide(properties.Caption));
    isInert_ = false;
    redraw();
}

void TarnelButton::setPicture(TextView source, TextView hoverSource) {
    setPicture(loadPicture(source), loadPicture(hoverSource));
    properties_.Picture = source;
    properties_.PictureHover = hoverSource;
}

void TarnelButton::setPicture(Pixels picture, Pixels hoverPicture) {
    picture_ = std::move(picture);
    hoverPicture_ = std::move(hoverPicture);
    properties_.OriginalPicSizeW = picture_.width;
    properties_.OriginalPicSizeH = picture_.height;
    properties_.PictureSize = kSizeOfSource;
    redraw();
}

void TarnelButton::setName(TextView name) {
    passOn(WM_SETTEXT, 0, lparamOf(wide(Text(name))));
}

LRESULT TarnelButton::onSetText(WPARAM wParam, LPARAM lParam) {
    const LRESULT result = passOn(WM_SETTEXT, wParam, lParam);
    const auto* const text = reinterpret_cast<const wchar_t*>(lParam);
    properties_.Caption = text != nullptr ? Text(textOf(text)) : Text();
    redraw();
    return result;
}

HFONT TarnelButton::font() const {
    if (ownFont_)
        return ownFont_.get();
    return windowFont_ != nullptr ? windowFont_ : uiFont();
}

// ---- Messages ---------------------------------------------------------------------------------

LRESULT TarnelButton::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    for (const auto handler : {&TarnelButton::onMouse, &TarnelButton::onKey,
                               &TarnelButton::onDialogMessage, &TarnelButton::onState}) {
        if (const auto result = (this->*handler)(message, wParam, lParam))
            return *result;
    }
    return passOn(message, wParam, lParam);
}

std::optional<LRESULT> TarnelButton::onMouse(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_MOUSEMOVE:
            logic_.mouseMove(pointerState(held_, lParam));
            return 0;
        case WM_LBUTTONDOWN:
            onMouseDown(MouseButton::Left, lParam);
            return 0;
        case WM_MBUTTONDOWN:
            onMouseDown(MouseButton::Middle, lParam);
            return 0;
        case WM_RBUTTONDOWN:
            onMouseDown(MouseButton::Right, lParam);
            return 0;
        case WM_LBUTTONUP:
            onMouseUp(MouseButton::Left, lParam);
            return 0;
        case WM_MBUTTONUP:
            onMouseUp(MouseButton::Middle, lParam);
            return 0;
        case WM_RBUTTONUP:
            onMouseUp(MouseButton::Right, lParam);
            return 0;
        case WM_CAPTURECHANGED:
            held_ = MouseButton::None;
            logic_.release();
            return 0;
        case WM_TIMER:
            if (wParam == kOverTimer)
                onOverTimer();
            return 0;
        case WM_SETCURSOR:
            if (LOWORD(lParam) == HTCLIENT && showPointer())
                return TRUE;
            return std::nullopt;
        default:
            return std::nullopt;
    }
}

// The button keeps the mouse until it is released, wherever that happens.
void TarnelButton::onMouseDown(MouseButton button, LPARAM lParam) {
    if (button == MouseButton::Left)
        ::SetFocus(handle());
    held_ = button;
    ::SetCapture(handle());
    logic_.mouseDown(pointerState(button, lParam));
}

void TarnelButton::onMouseUp(MouseButton button, LPARAM lParam) {
    // A press that began elsewhere, or came to nothing meanwhile, is none of the button's.
    if (held_ != button)
        return;
    held_ = MouseButton::None;
    const PointerState pointer = pointerState(button, lParam);
    ::ReleaseCapture();
    logic_.mouseUp(pointer);
}

void TarnelButton::onOverTimer() {
    POINT pointer{};
    ::GetCursorPos(&pointer);
    logic_.overTimer(::WindowFromPoint(pointer) == handle(), shiftState());
}

PointerState TarnelButton::pointerState(MouseButton button, LPARAM lParam) const {
    const POINT point{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    RECT client{};
    ::GetClientRect(handle(), &client);
    return {button, shiftState(), static_cast<int>(point.x), static_cast<int>(point.y),
            ::PtInRect(&client, point) != FALSE};
}

bool TarnelButton::showPointer() const {
    const std::int32_t kind = properties_.MousePointer;
    const wchar_t* name = nullptr;
    switch (kind) {
        case kPointerCustom:
            if (mouseIcon_)
                ::SetCursor(mouseIcon_.get());
            return static_cast<bool>(mouseIcon_);
        case kPointerCross:
            name = IDC_CROSS;
            break;
        case kPointerIBeam:
            name = IDC_IBEAM;
            break;
        case kPointerWait:
            name = IDC_WAIT;
            break;
        case kPointerNo:
            name = IDC_NO;
            break;
        default:
            name = kind == kPointerHand || (kind != kPointerArrow && properties_.DefCurHand)
                       ? IDC_HAND
                       : IDC_ARROW;
    }
    ::SetCursor(::LoadCursorW(nullptr, name));
    return true;
}

std::optional<LRESULT> TarnelButton::onKey(UINT message, WPARAM wParam, LPARAM lParam) {
    const int key = static_cast<int>(wParam);
    switch (message) {
        case WM_KEYDOWN: {
            constexpr LPARAM repeated = 1 << 30;
            logic_.keyDown(key, shiftState());
            if (key == kEnterKey && enterClicks_ && !(lParam & repeated))
                logic_.click();
            return 0;
        }
        case WM_KEYUP:
            logic_.keyUp(key, shiftState());
            return 0;
        case WM_CHAR:
            logic_.keyPress(static_cast<char16_t>(wParam));
            return 0;
        default:
            return std::nullopt;
    }
}

// What dialogs and accessibility ask of a push button.
std::optional<LRESULT> TarnelButton::onDialogMessage(UINT message, WPARAM, LPARAM lParam) {
    switch (message) {
        case WM_GETDLGCODE:
            return dialogCode(lParam);
        case BM_CLICK:
            if (::IsWindowEnabled(handle()))
                logic_.click();
            return 0;
        case BM_GETSTATE:
            return (logic_.isPressed() ? BST_PUSHED : 0) |
                   (::GetFocus() == handle() ? BST_FOCUS : 0);
        case BM_SETSTYLE:
            return 0;  // Enter always means the button with the focus, and its frame shows that
        case WM_GETOBJECT:
            if (static_cast<LONG>(lParam) == kQueryClassIndex)
                return kButtonClassIndex;
            return std::nullopt;
        default:
            return std::nullopt;
    }
}

bool TarnelButton::meansEnter() const {
    return isDefault_ || (enterClicks_ && ::GetFocus() == handle());
}

LRESULT TarnelButton::dialogCode(LPARAM lParam) const {
    LRESULT code = DLGC_BUTTON | (meansEnter() ? DLGC_DEFPUSHBUTTON : DLGC_UNDEFPUSHBUTTON);
    if (takesArrows_)
        code |= DLGC_WANTARROWS;
    const auto* const asked = reinterpret_cast<const MSG*>(lParam);
    // The button that has the focus is the one that Enter means, unless the window has a rule.
    if (asked != nullptr && asked->message == WM_KEYDOWN && asked->wParam == VK_RETURN &&
        enterClicks_)
        code |= DLGC_WANTMESSAGE;
    return code;
}

std::optional<LRESULT> TarnelButton::onState(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT:
            onPaint();
            return 0;
        case WM_PRINTCLIENT:
            draw(reinterpret_cast<HDC>(wParam));
            return 0;
        case WM_ERASEBKGND:
            return 1;  // everything is painted in one go
        case WM_SETTEXT:
            return onSetText(wParam, lParam);
        case WM_SETFONT:
            windowFont_ = reinterpret_cast<HFONT>(wParam);
            if (lParam)
                redraw();
            return 0;
        case BCM_GETIDEALSIZE: {
            const Extent ideal = idealSize();
            *reinterpret_cast<SIZE*>(lParam) = {ideal.width, ideal.height};
            return TRUE;
        }
        case WM_GETFONT:
            return reinterpret_cast<LRESULT>(font());
        case WM_ENABLE:
            logic_.reset();
            return 0;
        case WM_DESTROY:
            // The button may be created again; nothing of the pointer stays with it.
            logic_.reset();
            return std::nullopt;
        case WM_SHOWWINDOW:
            if (!wParam)
                logic_.reset();
            return std::nullopt;
        case WM_SETFOCUS:
            redraw();
            return 0;
        case WM_KILLFOCUS:
            logic_.release();
            redraw();
            return 0;
        case WM_SIZE:
        case WM_SYSCOLORCHANGE:
        case WM_THEMECHANGED:
            redraw();
            return 0;
        default:
            return std::nullopt;
    }
}

// ---- What the logic asks for ------------------------------------------------------------------

void TarnelButton::redraw() {
    // A null window would stand for the whole screen.
    if (isOpen() && !isInert_)
        ::InvalidateRect(handle(), nullptr, FALSE);
}

void TarnelButton::runOverTimer(bool on) {
    if (on && isOpen())
        ::SetTimer(handle(), kOverTimer, kOverTimerMs, nullptr);
    else if (isOpen())
        ::KillTimer(handle(), kOverTimer);
}

// Keys stay where they are: they belong to the dialog around the button.
void TarnelButton::processPending() {
    MSG message{};
    const auto take = [&](UINT first, UINT last) {
        return isOpen() && ::PeekMessageW(&message, handle(), first, last, PM_REMOVE);
    };
    if (isOpen())
        ::UpdateWindow(handle());
    while (take(0, WM_KEYFIRST - 1) || take(WM_KEYLAST + 1, 0xFFFF)) {
        // The end of the program is for the loop around.
        if (message.message == WM_QUIT) {
            ::PostQuitMessage(static_cast<int>(message.wParam));
            return;
        }
        ::DispatchMessageW(&message);
    }
}

void TarnelButton::play(ButtonSound sound) {
    if (isOpen())
        sounds_.play(sound);
}

void TarnelButton::raise(const ButtonEvent& event) {
    if (!isOpen())
        return;
    if (handler_)
        handler_(event);
    if (event.kind != ButtonEventKind::Click)
        return;
    if (isOpen())
        ::SendMessageW(
            ::GetParent(handle()), WM_COMMAND,
            MAKEWPARAM(static_cast<WORD>(::GetDlgCtrlID(handle())), static_cast<WORD>(BN_CLICKED)),
            reinterpret_cast<LPARAM>(handle()));
}

}  // namespace melvorin
