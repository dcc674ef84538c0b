// MIDI inputs by winmm.
#pragma once

#include <utility>
#include <vector>

#include "platform/Window.h"

// clang-format off
#include <mmsystem.h>
// clang-format on

namespace melvorin {

// What of winmm it calls.
struct MidiFunctions {
    decltype(&::midiInGetNumDevs) count = nullptr;
    decltype(&::midiInGetDevCapsW) capabilities = nullptr;
    decltype(&::midiInOpen) open = nullptr;
    decltype(&::midiInStart) start = nullptr;
    decltype(&::midiInReset) reset = nullptr;
    decltype(&::midiInClose) close = nullptr;

    bool areThere() const { return count && capabilities && open && start && reset && close; }
};
// Those of the system, which are loaded when somebody asks, as most never do.
const MidiFunctions& systemMidi();

// Its messages come by way of a hidden window, so in the thread of the message loop.
class Win32Midi : public MidiInputs, private Window {
  public:
    explicit Win32Midi(const MidiFunctions& (*functions)() = systemMidi) : functions_(functions) {}
    ~Win32Midi() override { close(); }
    std::vector<Text> names() override;
    std::vector<Text> listen(const std::vector<Text>& names, MidiListener& listener) override;
    void stop() override;

  private:
    struct Input {
        HMIDIIN handle = nullptr;
        Text name;
    };

    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void onData(HMIDIIN from, DWORD_PTR packed) const;
    void tellChange();
    void close();

    const MidiFunctions& (*functions_)();
    std::vector<Input> open_;
    std::vector<Text> known_;  // that were there when listening began
    bool isLost_ = false;      // one has closed by itself
    MidiListener* listener_ = nullptr;
};

}  // namespace melvorin
