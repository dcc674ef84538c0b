#include "present/Form3b.h"

#include "present/Form3.h"

namespace melvorin {
namespace {

// Pixels at 96 dpi.
constexpr int kMargin = 8;
constexpr int kButtonWidth = 108;
constexpr int kButtonHeight = 28;

}  // namespace

Form3b::Form3b(const Services& services, Callbacks callbacks)
    : Form(services), callbacks_(std::move(callbacks)), sounds_(services), Cmd3_(sounds_) {}

bool Form3b::open(HWND owner, const Area& screen) {
    if (!isOpen() && !createWindow(owner))
        return false;
    moveBar(handle(), screen);
    bringForward();
    ::SetFocus(Cmd3_.handle());
    return true;
}

bool Form3b::createWindow(HWND owner) {
    if (!create(smallWindow(L"MelvorinForm3b", L"Full Screen", scaled(2 * kMargin + kButtonWidth),
                            scaled(2 * kMargin + kButtonHeight), owner)))
        return false;
    return Cmd3_.create(handle(), Cmd3,
                        {scaled(kMargin), scaled(kMargin), scaled(kMargin + kButtonWidth),
                         scaled(kMargin + kButtonHeight)},
                        u"Enlarge");
}

LRESULT Form3b::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    const bool isButton = message == WM_COMMAND && LOWORD(wParam) == Cmd3;
    if (isButton || message == WM_CLOSE) {
        callbacks_.enlarged();
        return 0;
    }
    return passOn(message, wParam, lParam);
}

}  // namespace melvorin
