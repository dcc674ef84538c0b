#include "present/Form3.h"

#include "platform/HeldKeys.h"
#include "present/StageLayout.h"

namespace melvorin {
namespace {

// Pixels at 96 dpi.
constexpr int kMargin = 8;
constexpr int kGap = 8;
constexpr int kButtonWidth = 92;
constexpr int kButtonHeight = 28;

// kept: pause-caption
constexpr TextView kPause = u"| |  Pause";
constexpr TextView kRestart = u"Restart";

}  // namespace

Form3::Form3(const Services& services, Callbacks callbacks)
    : Form(services),
      callbacks_(std::move(callbacks)),
      sounds_(services),
      Cmd_(sounds_),
      Cmd2_(sounds_) {}

bool Form3::open(HWND owner, const Area& screen) {
    if (!isOpen() && !createWindow(owner))
        return false;
    showPaused(false);
    moveBar(handle(), screen);
    bringForward();
    ::SetFocus(Cmd_.handle());
    return true;
}

bool Form3::createWindow(HWND owner) {
    if (!create(smallWindow(L"MelvorinForm3", L"0:00",
                            scaled(2 * kMargin + 2 * kButtonWidth + kGap),
                            scaled(2 * kMargin + kButtonHeight), owner)))
        return false;
    const auto at = [](int left) {
        return RECT{scaled(left), scaled(kMargin), scaled(left + kButtonWidth),
                    scaled(kMargin + kButtonHeight)};
    };
    Cmd_.create(handle(), Cmd, at(kMargin), kPause);
    Cmd2_.create(handle(), Cmd2, at(kMargin + kButtonWidth + kGap), u"Return");
    return true;
}

void moveBar(HWND bar, const Area& screen) {
    RECT own{};
    if (!::GetWindowRect(bar, &own))
        return;
    const Area place = placeBar(screen, areaOf(own).width, areaOf(own).height);
    moveTopLeft(bar, place.left, place.top);
}

void Form3::showPaused(bool paused) {
    ::SetWindowTextW(Cmd_.handle(), wide(Text(paused ? kRestart : kPause)));
}

LRESULT Form3::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_COMMAND:
            if (LOWORD(wParam) == Cmd)
                callbacks_.pauseOrResume();
            else if (LOWORD(wParam) == Cmd2)
                callbacks_.returned();
            return 0;
        case WM_CLOSE:
            callbacks_.returned();
            return 0;
        case WM_HELP:
            // On stage a slip beside F2 must not bring a window up.
            return TRUE;
        case WM_SYSCOMMAND:
            return callbacks_.refuses(wParam) ? 0 : passOn(message, wParam, lParam);
        default:
            return passOn(message, wParam, lParam);
    }
}

bool Form3::onKeyDown(WPARAM key) {
    const auto moves = runWithoutShift(kRunKeys, strokeOf(key));
    if (!moves)
        return callbacks_.viewKey(key);
    callbacks_.key(*moves);
    return true;
}

}  // namespace melvorin
