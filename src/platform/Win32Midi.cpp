#include "platform/Win32Midi.h"

#include <algorithm>

#include "platform/SystemLibrary.h"

namespace melvorin {
namespace {

constexpr UINT_PTR kChanged = 1;
// The system says several times that something was plugged in, the first time before it can be
// used.
constexpr UINT kSettledMs = 500;

}  // namespace

const MidiFunctions& systemMidi() {
    const auto load = [](auto& function, const char* name) {
        function = systemFunction<std::remove_reference_t<decltype(function)>>(L"winmm.dll", name);
    };
    static const MidiFunctions all = [&load] {
        MidiFunctions made;
        load(made.count, "midiInGetNumDevs");
        load(made.capabilities, "midiInGetDevCapsW");
        load(made.open, "midiInOpen");
        load(made.start, "midiInStart");
        load(made.reset, "midiInReset");
        load(made.close, "midiInClose");
        return made;
    }();
    return all;
}

std::vector<Text> Win32Midi::names() {
    std::vector<Text> names;
    const MidiFunctions& midi = functions_();
    if (!midi.areThere())
        return names;
    const UINT count = midi.count();
    names.reserve(count);
    for (UINT device = 0; device < count; ++device) {
        MIDIINCAPSW what{};
        // One that has gone meanwhile keeps its number, without a name.
        names.push_back(midi.capabilities(device, &what, sizeof what) == MMSYSERR_NOERROR
                            ? Text(textOf(what.szPname))
                            : Text());
    }
    return names;
}

std::vector<Text> Win32Midi::listen(const std::vector<Text>& names, MidiListener& listener) {
    close();
    listener_ = &listener;
    WindowSpec spec;
    spec.className = L"MelvorinMidi";
    spec.style = WS_POPUP;  // never shown; a window for messages only would not hear of devices
    create(spec);
    known_ = this->names();
    std::vector<Text> refused;
    const MidiFunctions& midi = functions_();
    for (UINT device = 0; device < known_.size(); ++device) {
        const Text& name = known_[device];
        if (name.empty() || std::find(names.begin(), names.end(), name) == names.end())
            continue;
        HMIDIIN input = nullptr;
        const bool opened =
            isOpen() && midi.open(&input, device, reinterpret_cast<DWORD_PTR>(handle()), 0,
                                  CALLBACK_WINDOW) == MMSYSERR_NOERROR;
        if (!opened) {
            refused.push_back(name);
            continue;
        }
        open_.push_back({input, name});
        midi.start(input);
    }
    return refused;
}

void Win32Midi::stop() {
    close();
    listener_ = nullptr;
}

// A device that was pulled out refuses these calls, which is no harm. What they still tell goes
// with the window: the next input may have the same handle.
void Win32Midi::close() {
    isLost_ = false;
    for (const Input& input : std::exchange(open_, {})) {
        functions_().reset(input.handle);
        functions_().close(input.handle);
    }
    destroy();
}

LRESULT Win32Midi::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    const auto input = [wParam] { return reinterpret_cast<HMIDIIN>(wParam); };
    switch (message) {
        case MM_MIM_DATA:
            onData(input(), static_cast<DWORD_PTR>(lParam));
            return 0;
        case MM_MIM_CLOSE:
            // Those that we close are no longer among the open ones.
            if (std::any_of(open_.begin(), open_.end(),
                            [&](const Input& one) { return one.handle == input(); })) {
                isLost_ = true;
                ::SetTimer(handle(), kChanged, kSettledMs, nullptr);
            }
            return 0;
        case WM_DEVICECHANGE:
            ::SetTimer(handle(), kChanged, kSettledMs, nullptr);
            return TRUE;
        case WM_TIMER:
            ::KillTimer(handle(), kChanged);
            tellChange();
            return 0;
        default:
            return passOn(message, wParam, lParam);
    }
}

// The bytes lie in one number, the status lowest.
void Win32Midi::onData(HMIDIIN from, DWORD_PTR packed) const {
    const auto byte = [packed](unsigned number) {
        return static_cast<std::uint8_t>(packed >> (8U * number) & 0xFFU);
    };
    const auto input = std::find_if(open_.begin(), open_.end(),
                                    [from](const Input& one) { return one.handle == from; });
    if (input == open_.end() || listener_ == nullptr)
        return;
    const Text name = input->name;  // the listener may listen to others
    listener_->heard(name, {byte(0), byte(1), byte(2)});
}

// Much else is plugged in, too.
void Win32Midi::tellChange() {
    if (listener_ != nullptr && (isLost_ || names() != known_))
        listener_->inputsChanged();
}

}  // namespace melvorin
