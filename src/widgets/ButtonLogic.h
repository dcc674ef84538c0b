// How a picture button answers mouse, keys and time: its pressed and hovering states, the events
// that it raises, and when it sounds. The control that draws it implements ButtonSurface.
#pragma once

#include "base/Text.h"

namespace melvorin {

inline constexpr int kSpaceKey = 32;
inline constexpr int kEnterKey = 13;
// How often a button looks whether the pointer has left it, in ms; only while it is over it.
inline constexpr unsigned kOverTimerMs = 10;

enum class ButtonSound { Click, Over };

enum class ButtonEventKind {
    Click,
    KeyDown,
    KeyUp,
    KeyPress,
    MouseDown,
    MouseMove,
    MouseUp,
    MouseIn,
    MouseOut
};

// Bits of ButtonEvent::shift.
inline constexpr int kShiftHeld = 1;
inline constexpr int kCtrlHeld = 2;
inline constexpr int kAltHeld = 4;

enum class MouseButton { None = 0, Left = 1, Right = 2, Middle = 4 };

struct ButtonEvent {
    ButtonEventKind kind;
    int shift = 0;                           // keys and mouse: kShiftHeld and so on
    int keyCode = 0;                         // KeyDown, KeyUp: virtual key
    char16_t character = 0;                  // KeyPress
    MouseButton button = MouseButton::None;  // MouseDown, MouseUp, MouseMove
    int x = 0;                               // mouse: device pixels from the button's corner
    int y = 0;
};

// What the mouse did: `inside` tells whether the point is over the button.
struct PointerState {
    MouseButton button = MouseButton::None;
    int shift = 0;
    int x = 0;
    int y = 0;
    bool inside = false;
};

class ButtonSurface {
  public:
    virtual ~ButtonSurface() = default;
    virtual void redraw() = 0;
    virtual void runOverTimer(bool on) = 0;
    // Lets what waits for this button be done, so that it shows its new face before it sounds.
    virtual void processPending() = 0;
    virtual void play(ButtonSound sound) = 0;
    virtual void raise(const ButtonEvent& event) = 0;
};

class ButtonLogic {
  public:
    // `surface` outlives the object.
    explicit ButtonLogic(ButtonSurface& surface) : surface_(surface) {}

    bool isPressed() const { return pressed_; }
    bool isHovering() const { return hovering_; }

    void mouseMove(const PointerState& pointer);
    void mouseDown(const PointerState& pointer);
    void mouseUp(const PointerState& pointer);
    // A tick of the timer that runs while the button hovers.
    void overTimer(bool pointerIsOver, int shift);
    void keyDown(int keyCode, int shift);
    void keyUp(int keyCode, int shift);
    void keyPress(char16_t character);
    // A click that neither mouse nor Space made: Enter, a mnemonic, a screen reader.
    void click();
    // The press comes to nothing: the focus or the mouse went to another window.
    void release();
    // As `release`, and the pointer no longer counts: the button was disabled or hidden.
    void reset();

  private:
    void redraw() { surface_.redraw(); }
    void clickNow();

    ButtonSurface& surface_;
    bool pressed_ = false;
    bool hovering_ = false;
};

}  // namespace melvorin
