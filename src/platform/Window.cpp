#include "platform/Window.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "platform/Handles.h"

namespace melvorin {

int systemDpi() {
    static const int dpi = [] {
        const WindowDc screen(nullptr);
        return ::GetDeviceCaps(screen.get(), LOGPIXELSX);
    }();
    return dpi;
}

int scaled(int pixelsAt96) {
    return ::MulDiv(pixelsAt96, systemDpi(), 96);
}

int pixelsFromTwips(int twips) {
    return ::MulDiv(twips, systemDpi(), 1440);
}

RECT rectOf(const Area& area) {
    return {area.left, area.top, area.left + area.width, area.top + area.height};
}

Area areaOf(const RECT& rectangle) {
    return {static_cast<int>(rectangle.left), static_cast<int>(rectangle.top),
            static_cast<int>(rectangle.right - rectangle.left),
            static_cast<int>(rectangle.bottom - rectangle.top)};
}

WindowSpec panelIn(HWND parent, const wchar_t* className, const wchar_t* caption) {
    WindowSpec spec;
    spec.className = className;
    spec.caption = caption;
    spec.style = WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS;
    spec.extendedStyle = WS_EX_CONTROLPARENT;
    spec.x = spec.y = spec.width = spec.height = 0;
    spec.parent = parent;
    return spec;
}

WindowSpec smallWindow(const wchar_t* className, const wchar_t* caption, int width, int height,
                       HWND owner) {
    WindowSpec spec;
    spec.className = className;
    spec.caption = caption;
    spec.style = WS_POPUP | WS_CAPTION | WS_SYSMENU | WS_CLIPCHILDREN;
    spec.extendedStyle = WS_EX_DLGMODALFRAME;
    spec.parent = owner;
    RECT frame{0, 0, width, height};
    ::AdjustWindowRectEx(&frame, spec.style, FALSE, spec.extendedStyle);
    spec.width = static_cast<int>(frame.right - frame.left);
    spec.height = static_cast<int>(frame.bottom - frame.top);
    return spec;
}

Window::~Window() {
    // What is left of the object has no handlers any more.
    if (handle_ != nullptr) {
        ::SetWindowLongPtrW(handle_, GWLP_USERDATA, 0);
        ::DestroyWindow(std::exchange(handle_, nullptr));
    }
}

void Window::setCaption(TextView caption) {
    ::SetWindowTextW(handle_, wide(Text(caption)));
}

void Window::destroy() {
    if (handle_ != nullptr)
        ::DestroyWindow(handle_);
}

bool Window::registerClass(const WindowSpec& spec) {
    WNDCLASSEXW existing{};
    existing.cbSize = sizeof existing;
    const HINSTANCE instance = ::GetModuleHandleW(nullptr);
    if (::GetClassInfoExW(instance, spec.className, &existing))
        return true;
    WNDCLASSEXW windowClass{};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = &Window::procedure;
    windowClass.hInstance = instance;
    windowClass.hCursor = ::LoadCursorW(nullptr, IDC_ARROW);
    windowClass.hbrBackground =
        spec.background != nullptr ? spec.background : ::GetSysColorBrush(COLOR_BTNFACE);
    windowClass.lpszClassName = spec.className;
    if (spec.iconResource != 0) {
        const auto load = [&](int metric) {
            const int size = ::GetSystemMetrics(metric);
            return static_cast<HICON>(::LoadImageW(instance, MAKEINTRESOURCEW(spec.iconResource),
                                                   IMAGE_ICON, size, size, LR_SHARED));
        };
        windowClass.hIcon = load(SM_CXICON);
        windowClass.hIconSm = load(SM_CXSMICON);
    }
    return ::RegisterClassExW(&windowClass) != 0;
}

bool Window::create(const WindowSpec& spec) {
    if (!registerClass(spec))
        return false;
    ::CreateWindowExW(spec.extendedStyle, spec.className, spec.caption, spec.style, spec.x, spec.y,
                      spec.width, spec.height, spec.parent, spec.menu, ::GetModuleHandleW(nullptr),
                      this);
    return handle_ != nullptr;
}

LRESULT CALLBACK Window::procedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCCREATE) {
        auto* self = static_cast<Window*>(reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
        self->handle_ = window;
        ::SetWindowLongPtrW(window, GWLP_USERDATA, lparamOf(self));
    }
    auto* self = reinterpret_cast<Window*>(::GetWindowLongPtrW(window, GWLP_USERDATA));
    if (self == nullptr)
        return ::DefWindowProcW(window, message, wParam, lParam);
    LRESULT result = 0;
    // No exception may cross into Windows.
    try {
        result = self->onMessage(message, wParam, lParam);
    } catch (const std::exception& error) {
        self->onException(error);
    }
    if (message == WM_NCDESTROY) {
        ::SetWindowLongPtrW(window, GWLP_USERDATA, 0);
        self->handle_ = nullptr;
    }
    return result;
}

LRESULT Window::passOn(UINT message, WPARAM wParam, LPARAM lParam) {
    return ::DefWindowProcW(handle_, message, wParam, lParam);
}

namespace {

HFONT& currentUiFont() {
    static HFONT font = [] {
        NONCLIENTMETRICSW metrics{};
        metrics.cbSize = sizeof metrics;
        ::SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
        return ::CreateFontIndirectW(&metrics.lfMessageFont);
    }();
    return font;
}

}  // namespace

HFONT songFont(TextView face, int points) {
    return ::CreateFontW(-::MulDiv(points, systemDpi(), 72), 0, 0, 0, FW_NORMAL, FALSE, FALSE,
                         FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS, CLIP_DEFAULT_PRECIS,
                         DEFAULT_QUALITY, FIXED_PITCH | FF_MODERN, wide(Text(face)));
}

HFONT uiFont() {
    return currentUiFont();
}

HFONT exchangeUiFont(HFONT font) {
    return std::exchange(currentUiFont(), font);
}

HWND createControl(HWND parent, const wchar_t* className, const wchar_t* text, DWORD style, int id,
                   const RECT& place, DWORD extendedStyle) {
    const HWND control = ::CreateWindowExW(
        extendedStyle, className, text, WS_CHILD | WS_VISIBLE | style, static_cast<int>(place.left),
        static_cast<int>(place.top), static_cast<int>(place.right - place.left),
        static_cast<int>(place.bottom - place.top), parent, reinterpret_cast<HMENU>(INT_PTR{id}),
        ::GetModuleHandleW(nullptr), nullptr);
    ::SendMessageW(control, WM_SETFONT, reinterpret_cast<WPARAM>(uiFont()), FALSE);
    return control;
}

LRESULT subclassDefault(SUBCLASSPROC procedure, UINT_PTR id, HWND window, UINT message,
                        WPARAM wParam, LPARAM lParam) {
    if (message == WM_NCDESTROY)
        ::RemoveWindowSubclass(window, procedure, id);
    return ::DefSubclassProc(window, message, wParam, lParam);
}

Text windowText(HWND window) {
    Text text(static_cast<std::size_t>(::GetWindowTextLengthW(window)) + 1, u'\0');
    text.resize(static_cast<std::size_t>(
        ::GetWindowTextW(window, wideBuffer(text), static_cast<int>(text.size()))));
    return text;
}

void moveTopLeft(HWND window, int left, int top) {
    ::SetWindowPos(window, nullptr, left, top, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

void centreOver(HWND window, HWND owner) {
    RECT inner{};
    RECT outer{};
    ::GetWindowRect(window, &inner);
    ::GetWindowRect(owner, &outer);
    MONITORINFO monitor{};
    monitor.cbSize = sizeof monitor;
    ::GetMonitorInfoW(::MonitorFromWindow(owner, MONITOR_DEFAULTTONEAREST), &monitor);
    const LONG width = inner.right - inner.left;
    const LONG height = inner.bottom - inner.top;
    const auto place = [](LONG from, LONG to, LONG extent, LONG low, LONG high) {
        const LONG wanted = from + (to - from - extent) / 2;
        return std::max(low, std::min(wanted, high - extent));
    };
    const LONG x = place(outer.left, outer.right, width, monitor.rcWork.left, monitor.rcWork.right);
    const LONG y =
        place(outer.top, outer.bottom, height, monitor.rcWork.top, monitor.rcWork.bottom);
    moveTopLeft(window, static_cast<int>(x), static_cast<int>(y));
}

int runMessageLoop(const std::function<bool(MSG&)>& translate) {
    MSG message{};
    while (::GetMessageW(&message, nullptr, 0, 0) > 0) {
        if (translate(message))
            continue;
        ::TranslateMessage(&message);
        ::DispatchMessageW(&message);
    }
    return static_cast<int>(message.wParam);
}

bool dispatchWaiting(UINT which, const std::function<bool(const MSG&)>& takes) {
    MSG message{};
    while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE | which)) {
        if (message.message == WM_QUIT) {
            ::PostQuitMessage(static_cast<int>(message.wParam));
            return false;
        }
        if (takes(message)) {
            ::TranslateMessage(&message);
            ::DispatchMessageW(&message);
        }
    }
    return true;
}

}  // namespace melvorin
