#include "widgets/ButtonLogic.h"

namespace melvorin {
namespace {

ButtonEvent mouseEvent(ButtonEventKind kind, const PointerState& pointer) {
    return {kind, pointer.shift, 0, 0, pointer.button, pointer.x, pointer.y};
}

}  // namespace

void ButtonLogic::mouseMove(const PointerState& pointer) {
    if (pointer.inside && !hovering_) {
        surface_.runOverTimer(true);
        hovering_ = true;
        surface_.raise({ButtonEventKind::MouseIn, pointer.shift});
        redraw();
        surface_.processPending();
        surface_.play(ButtonSound::Over);
    }
    surface_.raise(mouseEvent(ButtonEventKind::MouseMove, pointer));
}

void ButtonLogic::overTimer(bool pointerIsOver, int shift) {
    if (pointerIsOver || !hovering_)
        return;
    surface_.runOverTimer(false);
    hovering_ = false;
    pressed_ = false;
    surface_.raise({ButtonEventKind::MouseOut, shift});
    redraw();
}

void ButtonLogic::mouseDown(const PointerState& pointer) {
    if (pointer.button != MouseButton::Right) {
        pressed_ = true;
        redraw();
    }
    surface_.raise(mouseEvent(ButtonEventKind::MouseDown, pointer));
}

void ButtonLogic::mouseUp(const PointerState& pointer) {
    if (pointer.button != MouseButton::Right) {
        pressed_ = false;
        redraw();
        if (pointer.inside)
            clickNow();
    }
    surface_.raise(mouseEvent(ButtonEventKind::MouseUp, pointer));
}

void ButtonLogic::clickNow() {
    surface_.play(ButtonSound::Click);
    surface_.raise({ButtonEventKind::Click});
}

void ButtonLogic::keyDown(int keyCode, int shift) {
    if (keyCode == kSpaceKey && !pressed_) {
        pressed_ = true;
        redraw();
    }
    surface_.raise({ButtonEventKind::KeyDown, shift, keyCode});
}

void ButtonLogic::keyUp(int keyCode, int shift) {
    if (keyCode == kSpaceKey) {
        reset();
        mouseUp({MouseButton::Left, shift, 0, 0, true});
    }
    surface_.raise({ButtonEventKind::KeyUp, shift, keyCode});
}

void ButtonLogic::keyPress(char16_t character) {
    surface_.raise({ButtonEventKind::KeyPress, 0, 0, character});
}

void ButtonLogic::click() {
    release();
    clickNow();
}

void ButtonLogic::release() {
    if (!pressed_)
        return;
    pressed_ = false;
    redraw();
}

void ButtonLogic::reset() {
    if (hovering_)
        surface_.runOverTimer(false);
    pressed_ = false;
    hovering_ = false;
    redraw();
}

}  // namespace melvorin
