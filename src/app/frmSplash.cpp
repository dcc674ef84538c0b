#include "app/frmSplash.h"

#include <exception>

#include "app/ThemeManifest.h"

namespace melvorin {
namespace {

constexpr UINT_PTR kTimer1 = 1;
constexpr UINT kSplashMs = 300;
// Resource id of the splash picture for a DPI of 96; 144 and 192 stand at their own numbers.
constexpr int kPictureBase = 1000;
constexpr int kVersionStrip = 40;  // pixels at 96 dpi that the picture leaves free at its foot

int pictureDpi() {
    const int dpi = systemDpi();
    return dpi >= 192 ? 192 : dpi >= 144 ? 144 : 96;
}

}  // namespace

frmSplash::frmSplash(const Services& services, std::function<void()> whenDone)
    : services_(services), whenDone_(std::move(whenDone)) {}

bool frmSplash::show() {
    try {
        writeManifestIfMissing(services_.program);
    } catch (const std::exception&) {
        // The program runs without the visual style as well.
    }
    services_.system.initCommonControls();

    picture_.reset(static_cast<HBITMAP>(::LoadImageW(::GetModuleHandleW(nullptr),
                                                     MAKEINTRESOURCEW(kPictureBase + pictureDpi()),
                                                     IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION)));
    BITMAP size{};
    if (picture_)
        ::GetObjectW(picture_.get(), sizeof size, &size);
    WindowSpec spec;
    spec.className = L"MelvorinSplash";
    spec.caption = L"Melvorin";
    spec.style = WS_POPUP;
    spec.extendedStyle = WS_EX_TOOLWINDOW;
    spec.width = static_cast<int>(size.bmWidth);
    spec.height = static_cast<int>(size.bmHeight);
    spec.x = (::GetSystemMetrics(SM_CXSCREEN) - spec.width) / 2;
    spec.y = (::GetSystemMetrics(SM_CYSCREEN) - spec.height) / 2;
    if (!create(spec))
        return false;
    if (picture_)
        ::ShowWindow(handle(), SW_SHOWNOACTIVATE);
    ::UpdateWindow(handle());
    return ::SetTimer(handle(), kTimer1, kSplashMs, nullptr) != 0;
}

LRESULT frmSplash::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_PAINT:
            onPaint();
            return 0;
        case WM_TIMER:
            if (wParam == kTimer1)
                onTimer1();
            return 0;
        default:
            return passOn(message, wParam, lParam);
    }
}

void frmSplash::onPaint() {
    const PaintScope paint(handle());
    if (!picture_)
        return;
    RECT client{};
    ::GetClientRect(handle(), &client);
    const UniqueMemoryDc memory(::CreateCompatibleDC(paint.dc()));
    const SelectedObject selected(memory.get(), picture_.get());
    ::BitBlt(paint.dc(), 0, 0, client.right, client.bottom, memory.get(), 0, 0, SRCCOPY);

    RECT foot = client;
    foot.top = foot.bottom - scaled(kVersionStrip);
    foot.right -= scaled(16);
    const SelectedObject font(paint.dc(), uiFont());
    ::SetBkMode(paint.dc(), TRANSPARENT);
    ::SetTextColor(paint.dc(), RGB(96, 80, 72));
    ::DrawTextW(paint.dc(), L"Version " MELVORIN_VERSION, -1, &foot,
                DT_RIGHT | DT_VCENTER | DT_SINGLELINE);
}

void frmSplash::onTimer1() {
    ::KillTimer(handle(), kTimer1);
    try {
        switchFontSmoothingOff(services_.system);
    } catch (const std::exception&) {
        // The letters then look as they do elsewhere.
    }
    // The main window is shown before the splash goes, else another program would come up.
    whenDone_();
    picture_.reset();
    destroy();
}

}  // namespace melvorin
