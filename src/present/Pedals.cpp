#include "present/Pedals.h"

#include <algorithm>

#include "base/Hex.h"
#include "base/ProgramSettings.h"
#include "chords/CellWidth.h"
#include "present/StageKeys.h"

namespace melvorin {
namespace {

constexpr TextView kSection = u"Pedals";
constexpr TextView kKey = u"key ";
constexpr TextView kMidi = u"midi ";
constexpr TextView kCtrl = u"ctrl+";
constexpr TextView kShift = u"shift+";

struct Act {
    PedalAct act;
    TextView words;
    TextView key;  // in the file
};
constexpr Act kActs[kPedalActs] = {
    {PedalAct::OneLine, u"One line on", u"OneLine"},
    {PedalAct::FiveLines, u"Five lines on", u"FiveLines"},
    {PedalAct::TenLines, u"Ten lines on", u"TenLines"},
    {PedalAct::Back, u"Back", u"Back"},
    {PedalAct::Pause, u"Pause", u"Pause"},
    {PedalAct::Restart, u"Restart", u"Restart"},
};

// Status bytes, as the MIDI standard has them.
constexpr std::uint8_t kNoteOn = 0x90;
constexpr std::uint8_t kController = 0xB0;
constexpr std::uint8_t kProgram = 0xC0;
constexpr std::uint8_t kStart = 0xFA;
constexpr std::uint8_t kContinue = 0xFB;
constexpr std::uint8_t kStop = 0xFC;
// From there on a switch is on.
constexpr std::uint8_t kUpperHalf = 64;

// The kind of a message without its channel; those of a machine have none.
std::uint8_t kindOf(std::uint8_t status) {
    return status >= 0xF0 ? status : static_cast<std::uint8_t>(status & 0xF0);
}

bool isPressed(std::uint8_t status) {
    constexpr std::uint8_t kinds[] = {kNoteOn, kController, kProgram, kStart, kContinue, kStop};
    return std::find(std::begin(kinds), std::end(kinds), kindOf(status)) != std::end(kinds);
}

// ---- Keys

// Virtual-key codes.
constexpr std::uint16_t kModifiers[] = {0x10, 0x11, 0x12, 0x14, 0x5B, 0x5C, 0x90, 0x91};
constexpr std::uint16_t kInputMethod = 0xE5;  // what a key says that an input method has taken

bool movesCaret(std::uint16_t key) {
    return key >= keys::kPageUp && key <= keys::kDown;  // End and Home are among them
}

// Whatever could change a text.
bool types(const KeyStroke& stroke) {
    const std::uint16_t key = stroke.key;
    const auto among = [key](std::uint16_t first, std::uint16_t last) {
        return key >= first && key <= last;
    };
    return stroke.control || key == keys::kBackspace || key == keys::kEnter ||
           key == keys::kSpace || key == keys::kInsert || key == keys::kDelete ||
           among(u'0', u'9') || among(u'A', u'Z') || among(0x60, 0x6F) || among(0xBA, 0xE2);
}

// ---- The file

std::optional<unsigned> numberOf(TextView text, unsigned base, unsigned most) {
    unsigned number = 0;
    for (const char16_t c : text) {
        const int digit = hexDigit(c);
        if (digit < 0 || static_cast<unsigned>(digit) >= base)
            return std::nullopt;
        number = number * base + static_cast<unsigned>(digit);
        if (number > most)
            return std::nullopt;
    }
    return text.empty() ? std::nullopt : std::optional(number);
}

bool take(TextView& text, TextView start) {
    if (!text.starts_with(start))
        return false;
    text.remove_prefix(start.size());
    return true;
}

// The next word, without the blank behind it.
TextView takeWord(TextView& text) {
    const TextView word = text.substr(0, text.find(u' '));
    text.remove_prefix(std::min(word.size() + 1, text.size()));
    return word;
}

PedalSignal readSignal(TextView text) {
    if (take(text, kKey)) {
        KeyStroke stroke;
        stroke.control = take(text, kCtrl);
        stroke.shift = take(text, kShift);
        const auto key = numberOf(text, 10, 0xFE);
        if (!key)
            return {};
        stroke.key = static_cast<std::uint16_t>(*key);
        if (isNoKey(stroke.key) || !whyNotLearned(stroke).empty())
            return {};
        return {stroke, {}};
    }
    if (!take(text, kMidi))
        return {};
    const auto status = numberOf(takeWord(text), 16, 0xFF);
    const auto number = numberOf(takeWord(text), 16, 0x7F);
    if (!status || !number || !isPressed(static_cast<std::uint8_t>(*status)) || text.empty())
        return {};
    return {{},
            {static_cast<std::uint8_t>(*status), static_cast<std::uint8_t>(*number), Text(text)}};
}

Text writeSignal(const PedalSignal& signal) {
    if (signal.isKey())
        return Text(kKey) + Text(signal.key.control ? kCtrl : u"") +
               Text(signal.key.shift ? kShift : u"") + decimal(signal.key.key);
    if (!signal.isMidi())
        return {};
    Text text(kMidi);
    for (const std::uint8_t byte : {signal.midi.status, signal.midi.number}) {
        appendHex(text, byte, 2, 'A');
        text += u' ';
    }
    return text + signal.midi.device;
}

// ---- Words

Text midiInWords(const MidiSignal& signal) {
    const Text of = u" of " + signal.device;
    const Text channel = u", channel " + decimal((signal.status & 0xFU) + 1);
    switch (kindOf(signal.status)) {
        case kNoteOn:
            return u"MIDI note " + decimal(signal.number) + channel + of;
        case kController:
            return u"MIDI controller " + decimal(signal.number) + channel + of;
        case kProgram:
            // Devices count them from 1.
            return u"MIDI program " + decimal(signal.number + 1) + channel + of;
        case kStart:
            return u"MIDI start" + of;
        case kContinue:
            return u"MIDI continue" + of;
        default:
            return u"MIDI stop" + of;
    }
}

// The first act that has a signal, of those that may be meant.
std::optional<PedalAct> actWith(const Pedals& pedals, const PedalSignal& signal, bool runGoes) {
    const auto has = [&](PedalAct act) { return pedals[static_cast<std::size_t>(act)] == signal; };
    if (has(PedalAct::Pause) && has(PedalAct::Restart))
        return runGoes ? PedalAct::Pause : PedalAct::Restart;
    for (const Act& act : kActs) {
        if (has(act.act))
            return act.act;
    }
    return std::nullopt;
}

}  // namespace

TextView actInWords(PedalAct act) {
    return kActs[static_cast<std::size_t>(act)].words;
}

Text signalInWords(const PedalSignal& signal) {
    if (signal.isKey()) {
        Text name = nameOf(signal.key);
        return name.empty() ? u"Key " + decimal(signal.key.key) : name;
    }
    return signal.isMidi() ? midiInWords(signal.midi) : Text();
}

bool isNoKey(std::uint16_t key) {
    // Left and right Shift, Ctrl and Alt too, which some drivers send by themselves.
    return key == 0 || key == kInputMethod || key >= 0xFF || (key >= 0xA0 && key <= 0xA5) ||
           std::find(std::begin(kModifiers), std::end(kModifiers), key) != std::end(kModifiers);
}

Text whyNotLearned(const KeyStroke& stroke) {
    const auto because = [&stroke](TextView reason) {
        return signalInWords({stroke, {}}) + u" cannot be learned: " + Text(reason);
    };
    if (stroke.key == keys::kEscape)
        return because(u"it always leads back to the panel.");
    if (stroke.key == keys::kTab)
        return because(u"it goes from button to button.");
    if (stroke.alt)
        return because(u"keys with Alt are the system's.");
    if (runBy(kShiftedViewKeys, stroke) || runWithoutShift(kViewKeys, stroke))
        return because(u"it has its meaning on stage.");
    return {};
}

std::vector<PedalAct> learn(Pedals& pedals, PedalAct act, const PedalSignal& signal) {
    std::vector<PedalAct> former;
    const auto shares = [](PedalAct one) {
        return one == PedalAct::Pause || one == PedalAct::Restart;
    };
    for (const Act& other : kActs) {
        PedalSignal& has = pedals[static_cast<std::size_t>(other.act)];
        const bool mayKeep = other.act == act || (shares(act) && shares(other.act));
        if (mayKeep || has != signal || signal.isNone())
            continue;
        has = {};
        former.push_back(other.act);
    }
    pedals[static_cast<std::size_t>(act)] = signal;
    return former;
}

Pedals pedalSettings(const Services& services) {
    constexpr std::uint32_t capacity = 128;
    Pedals pedals;
    const Text file = programIniPath(services.program);
    for (const Act& act : kActs)
        learn(pedals, act.act,
              readSignal(services.profiles.read(kSection, act.key, u"", file, capacity)));
    return pedals;
}

bool storePedals(const Services& services, const Pedals& pedals) {
    bool stored = true;
    for (const Act& act : kActs)
        stored = storeSetting(services, kSection, act.key,
                              writeSignal(pedals[static_cast<std::size_t>(act.act)])) &&
                 stored;
    return stored;
}

std::optional<PedalAct> actOf(const Pedals& pedals, const KeyStroke& stroke,
                              const KeyPlace& place) {
    if (!place.runGoes && (types(stroke) || (movesCaret(stroke.key) && !place.onBar)))
        return std::nullopt;
    return actWith(pedals, {stroke, {}}, place.runGoes);
}

std::optional<PedalAct> actOf(const Pedals& pedals, const MidiSignal& signal, bool runGoes) {
    return actWith(pedals, {{}, signal}, runGoes);
}

Text deviceName(TextView systemName) {
    const std::size_t digits = systemName.find_first_not_of(u"0123456789");
    if (digits != TextView::npos && digits > 0 && systemName.substr(digits).starts_with(u"- "))
        systemName.remove_prefix(digits + 2);
    Text name(trimmed(systemName));
    std::replace_if(
        name.begin(), name.end(), [](char16_t c) { return c < u' ' || c > u'~'; }, u'?');
    return name.empty() ? Text(u"?") : name;
}

std::vector<Text> devicesOf(const Pedals& pedals) {
    std::vector<Text> devices;
    for (const auto& [key, midi] : pedals) {
        const bool isNew = std::find(devices.begin(), devices.end(), midi.device) == devices.end();
        if (!midi.device.empty() && isNew)
            devices.push_back(midi.device);
    }
    return devices;
}

std::optional<MidiSignal> MidiPresses::press(TextView device, const MidiMessage& message) {
    const std::uint8_t kind = kindOf(message.status);
    if (!isPressed(message.status))
        return std::nullopt;
    MidiSignal signal{message.status, message.first, deviceName(device)};
    if (kind == kNoteOn && message.second == 0)
        return std::nullopt;  // this is how many keyboards say that a key is let go
    if (kind >= 0xF0)
        signal.number = 0;
    if (kind != kController)
        return signal;
    const auto key = std::pair(signal.device, message.status * 256 + message.first);
    const auto former = values_.find(key);
    const bool isSweep =
        former != values_.end() && former->second >= kUpperHalf && former->second != message.second;
    values_[key] = message.second;
    if (message.second < kUpperHalf || isSweep)
        return std::nullopt;
    return signal;
}

}  // namespace melvorin
