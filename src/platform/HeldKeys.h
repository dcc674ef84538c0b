// What is held down while a key message is dealt with.
#pragma once

#include "base/Keys.h"
#include "platform/Win.h"

namespace melvorin {

inline bool isHeld(int key) {
    return ::GetKeyState(key) < 0;
}

// The stroke of a WM_KEYDOWN by its virtual-key code.
inline KeyStroke strokeOf(WPARAM key) {
    return {static_cast<std::uint16_t>(key), isHeld(VK_CONTROL), isHeld(VK_MENU), isHeld(VK_SHIFT)};
}

// A key goes down that is no access key. Without Alt, F10 comes as if it were one.
inline bool isKeyDown(const MSG& message) {
    return message.message == WM_KEYDOWN ||
           (message.message == WM_SYSKEYDOWN && message.wParam == VK_F10 && !isHeld(VK_MENU));
}

// It comes because its key is held.
inline bool isRepeat(const MSG& message) {
    return (message.lParam & 1L << 30) != 0;
}

}  // namespace melvorin
