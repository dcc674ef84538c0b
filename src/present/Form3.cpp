#include "present/Form3.h"

#include "platform/HeldKeys.h"
#include "present/StageLayout.h"

namespace melvorin {
namespace {

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
    if (!createForm(L"MelvorinForm3", L"0:00", owner))
        return false;
    const Cell note =
        label(L"then line 9999, the longest label", SS_NOPREFIX | SS_ENDELLIPSIS, kNote);
    layOut(columnOf({rowOf({button(Cmd_, Cmd, kPause), button(Cmd2_, Cmd2, u"Return")}), note})
               .close(),
           owner);
    showNote({});
    return true;
}

void moveBar(HWND bar, const Area& screen) {
    RECT own{};
    if (!::GetWindowRect(bar, &own))
        return;
    const Area place = placeBar(screen, areaOf(own).width, areaOf(own).height);
    moveTopLeft(bar, place.left, place.top);
}

void Form3::showNote(TextView note) {
    if (isOpen())
        ::SetWindowTextW(item(kNote), wide(Text(note)));
}

void Form3::showPaused(bool paused) {
    ::SetWindowTextW(Cmd_.handle(), wide(Text(paused ? kRestart : kPause)));
}

LRESULT Form3::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_HELP:
            // On stage a slip beside F2 must not bring a window up.
            return TRUE;
        case WM_SYSCOMMAND:
            return callbacks_.refuses(wParam) ? 0 : passOn(message, wParam, lParam);
        default:
            return Form::onMessage(message, wParam, lParam);
    }
}

void Form3::onCommand(int id, int event) {
    if (id == Cmd)
        callbacks_.pauseOrResume();
    else
        Form::onCommand(id, event);
}

void Form3::onClose() {
    callbacks_.returned();
}

bool Form3::onKeyDown(WPARAM key) {
    const auto moves = runWithoutShift(kRunKeys, strokeOf(key));
    if (!moves)
        return callbacks_.viewKey(key);
    callbacks_.key(*moves);
    return true;
}

}  // namespace melvorin
