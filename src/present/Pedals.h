// Pedals and keys of one's own on stage: what the user has had learned, what a signal does, how it
// is told in words and kept in the INI file.
#pragma once

#include <array>
#include <map>
#include <optional>
#include <vector>

#include "base/Keys.h"
#include "base/Services.h"

namespace melvorin {

enum class PedalAct { OneLine, FiveLines, TenLines, Back, Pause, Restart };
inline constexpr std::size_t kPedalActs = 6;

// What a MIDI device says when something is pressed: the status byte with its channel, and the
// number of the note, controller or program (0 where the status has none).
struct MidiSignal {
    std::uint8_t status = 0;
    std::uint8_t number = 0;
    Text device;  // as `deviceName` writes it

    friend bool operator==(const MidiSignal&, const MidiSignal&) = default;
};

// A key with what is held with it, a MIDI signal, or neither.
struct PedalSignal {
    KeyStroke key;
    MidiSignal midi;

    bool isKey() const { return key.key != 0; }
    bool isMidi() const { return midi.status != 0; }
    bool isNone() const { return !isKey() && !isMidi(); }

    friend bool operator==(const PedalSignal&, const PedalSignal&) = default;
};

// By PedalAct.
using Pedals = std::array<PedalSignal, kPedalActs>;

// "One line on", "Restart".
TextView actInWords(PedalAct act);
// "Ctrl+Right", "MIDI note 60, channel 1 of FCB1010"; empty for nothing.
Text signalInWords(const PedalSignal& signal);

// ---- What is learned

// Why a key cannot be learned, as a sentence; empty where it can.
Text whyNotLearned(const KeyStroke& stroke);
// Another key goes down before the one that is meant, or none that anyone could press again.
bool isNoKey(std::uint16_t key);
// Gives a signal to an act and takes it from the others that have it, which are returned: Pause and
// Restart alone may share one.
std::vector<PedalAct> learn(Pedals& pedals, PedalAct act, const PedalSignal& signal);

// From section "Pedals" of the INI file; what is not readable there is nothing.
Pedals pedalSettings(const Services& services);
// False when the INI file cannot be written.
bool storePedals(const Services& services, const Pedals& pedals);

// ---- What a signal does

// Where a key was pressed.
struct KeyPlace {
    bool runGoes = false;  // the clock of a run goes
    bool onBar = false;    // nothing there has a caret or a list
};

// What a key does there. One that types does nothing unless the clock goes, one that moves a caret
// or a list leaves texts and lists alone.
std::optional<PedalAct> actOf(const Pedals& pedals, const KeyStroke& stroke, const KeyPlace& place);
// What a MIDI signal does. Pause where a run goes and Restart where none does, if both have learned
// the signal.
std::optional<PedalAct> actOf(const Pedals& pedals, const MidiSignal& signal, bool runGoes);

// The name of a MIDI input as it is kept: without what the system puts before it where it is
// plugged in elsewhere ("2- "), and with what every INI file can hold.
Text deviceName(TextView systemName);
// The devices of what is learned, each once.
std::vector<Text> devicesOf(const Pedals& pedals);

// Makes presses of messages: a note that sounds, a controller that rises to its upper half, a
// program, and the start, go on and stop of a machine. What a device says when something is let go,
// or says all the time, is none.
class MidiPresses {
  public:
    std::optional<MidiSignal> press(TextView device, const MidiMessage& message);

  private:
    // The last value of each controller; some pedals send their upper value alone, again and again,
    // and a sweep sends many, each another.
    std::map<std::pair<Text, int>, std::uint8_t> values_;
};

}  // namespace melvorin
