// Pedals and keys of one's own: the window that learns them, what they do on stage, and MIDI inputs
// as the system tells of them.
#include "OnStage.h"
#include "base/ProgramSettings.h"
#include "platform/Win32Midi.h"

namespace melvorin::testing {
namespace {

constexpr MidiMessage kPress{0xB0, 64, 127};
constexpr MidiMessage kRelease{0xB0, 64, 0};

class WithPedals : public OnStage {
  protected:
    // Opens the window that learns and works it.
    void inWindow(const std::function<void(HWND)>& steps) {
        const WhileOpen window(L"MelvorinfrmPedals", [&](HWND form) {
            steps(form);
            ::PostMessageW(form, WM_COMMAND, IDCANCEL, 0);
        });
        click(item(frmFScreenB::kPedals));
        EXPECT_EQ(window.seen(), 1);
    }
    void learnKey(PedalAct act, WPARAM key) {
        learn(act, [&] { testing::press(program, list(), key); });
    }
    void learnMidi(PedalAct act, TextView device, const MidiMessage& message) {
        learn(act, [&] { program.midi.send(device, message); });
    }
    HWND list() { return ::GetDlgItem(pedals().handle(), frmPedals::kActs); }
    std::string row(PedalAct act) { return rowOf(list(), static_cast<LRESULT>(act)); }
    std::string told() { return captionOf(::GetDlgItem(pedals().handle(), frmPedals::kState)); }
    std::string stored(TextView key) {
        return shown(
            program.profiles.values[{programIniPath(program.program), u"Pedals", Text(key)}]);
    }
    frmPedals& pedals() { return panel().pedalWindow(); }
    int line() { return panel().run().currentLine(); }
    void openSmall(const Text& song) {
        program.screen.screen = {600, 300};
        open(song);
    }
    void startRun() {
        choose(frmFScreenB::Seconds, 30);
        click(item(frmFScreenB::Command4));
        ASSERT_TRUE(isShown(panel().bar().handle()));
    }

  private:
    void learn(PedalAct act, const std::function<void()>& signal) {
        chooseRow(list(), static_cast<int>(act));
        clickOn(::GetDlgItem(pedals().handle(), frmPedals::kLearn));
        EXPECT_TRUE(pedals().isLearning());
        signal();
        EXPECT_FALSE(pedals().isLearning());
    }
};

TEST_F(WithPedals, TheWindowLearnsKeysAndMidi) {
    program.midi.inputs = {u"2- Foot", u"Keys"};
    program.midi.taken = {u"Keys"};
    open(songOf(20));
    EXPECT_TRUE(program.midi.listensTo.empty());
    ::SetFocus(item(frmFScreenB::kPedals));
    inWindow([&](HWND form) {
        EXPECT_EQ(row(PedalAct::OneLine), "One line on\t\u2013");
        EXPECT_EQ(captionOf(::GetDlgItem(form, frmPedals::kInputs)),
                  "MIDI inputs: Foot, Keys. Another program has Keys.");
        learnKey(PedalAct::OneLine, VK_RETURN);
        EXPECT_EQ(row(PedalAct::OneLine), "One line on\tEnter");
        EXPECT_EQ(told(),
                  "One line on: Enter. It acts while the clock of a run goes, and types "
                  "otherwise.");
        EXPECT_EQ(stored(u"OneLine"), "key 13") << "at once";
        learnMidi(PedalAct::Pause, u"2- Foot", kPress);
        learnMidi(PedalAct::Restart, u"2- Foot", kPress);
        EXPECT_EQ(row(PedalAct::Pause), "Pause\tMIDI controller 64, channel 1 of Foot");
        EXPECT_EQ(row(PedalAct::Restart), "Restart\tMIDI controller 64, channel 1 of Foot");
        learnMidi(PedalAct::Back, u"2- Foot", kPress);
        EXPECT_NE(told().find("has none now"), std::string::npos);
        EXPECT_EQ(stored(u"Restart"), "");
        EXPECT_EQ(stored(u"Back"), "midi B0 40 Foot");

        // What is not meant: a release, a key of the stage, Shift alone, a key that is held down;
        // Esc leaves it as it was.
        chooseRow(list(), 1);
        clickOn(::GetDlgItem(form, frmPedals::kLearn));
        program.midi.send(u"2- Foot", kRelease);
        testing::press(program, list(), VK_F7);
        EXPECT_EQ(told(), "F7 cannot be learned: it has its meaning on stage.");
        testing::press(program, list(), VK_SHIFT);
        ::PostMessageW(list(), WM_KEYDOWN, VK_SPACE, 1 | 1 << 30);
        program.pump();
        EXPECT_TRUE(pedals().isLearning());
        testing::press(program, list(), VK_ESCAPE);
        EXPECT_FALSE(pedals().isLearning());
        EXPECT_TRUE(pedals().isOpen());
        EXPECT_EQ(row(PedalAct::FiveLines), "Five lines on\t\u2013");

        // What is pressed shows what it does; Del forgets it.
        program.midi.send(u"2- Foot", kPress);
        EXPECT_EQ(chosenRowOf(list()), "Back\tMIDI controller 64, channel 1 of Foot");
        testing::press(program, list(), VK_DELETE);
        EXPECT_EQ(row(PedalAct::Back), "Back\t\u2013");
        EXPECT_EQ(stored(u"Back"), "");
        program.midi.plug({});
        EXPECT_NE(captionOf(::GetDlgItem(form, frmPedals::kInputs)).find("No MIDI input"),
                  std::string::npos);
    });
    EXPECT_FALSE(pedals().isOpen());
    EXPECT_TRUE(isShown(panel().handle()));
    EXPECT_EQ(::GetFocus(), item(frmFScreenB::kPedals));
    EXPECT_TRUE(program.messages.boxes.empty());
    // The next time of this run of the program, and where it cannot be stored.
    program.profiles.writable = false;
    inWindow([&](HWND) {
        EXPECT_EQ(row(PedalAct::OneLine), "One line on\tEnter");
        learnKey(PedalAct::OneLine, VK_F9);
        learnKey(PedalAct::OneLine, VK_F11);
        EXPECT_EQ(row(PedalAct::OneLine), "One line on\tF11");
    });
    EXPECT_EQ(program.messages.boxes.size(), 1U);
}

TEST_F(WithPedals, AFootLeadsTheRun) {
    program.midi.inputs = {u"Foot"};
    for (const auto& [key, value] :
         {std::pair(u"OneLine", u"midi 90 3C Foot"), std::pair(u"TenLines", u"midi 90 3E Foot"),
          std::pair(u"Back", u"midi C0 05 Foot"), std::pair(u"Pause", u"midi B0 40 Foot"),
          std::pair(u"Restart", u"midi B0 40 Foot")})
        program.profiles.values[{programIniPath(program.program), u"Pedals", key}] = value;
    openSmall(songOf(60));
    setJump(1, 12, 1, 1);
    const auto send = [&](std::uint8_t status, std::uint8_t number, std::uint8_t value = 127) {
        program.midi.send(u"Foot", {status, number, value});
        program.pump();
    };
    // Without a run it moves the view.
    send(0x90, 0x3E);
    EXPECT_EQ(topLine(), 11);
    send(0xC0, 5);
    EXPECT_EQ(topLine(), 1);
    // It begins one, pauses it and goes on with it.
    choose(frmFScreenB::Seconds, 30);
    send(0xB0, 0x40);
    EXPECT_TRUE(panel().run().isRunning());
    EXPECT_TRUE(isShown(panel().bar().handle()));
    send(0xB0, 0x40, 0);
    send(0xB0, 0x40);
    EXPECT_TRUE(panel().run().isPaused());
    EXPECT_EQ(captionOf(onBar(Form3::Cmd)), "Restart");
    send(0xB0, 0x40);
    EXPECT_TRUE(panel().run().isRunning());
    // By ten over the jump from line 12 to line 1, which shows line 2; and back.
    send(0x90, 0x3E);
    EXPECT_EQ(topLine(), 11);
    send(0x90, 0x3E);
    EXPECT_EQ(topLine(), 10);
    EXPECT_EQ(line(), 10);
    send(0xC0, 5);
    EXPECT_EQ(topLine(), 11);
    send(0x90, 0x3C);
    EXPECT_EQ(topLine(), 12);
    send(0x90, 0x3C, 0);  // let go
    EXPECT_EQ(topLine(), 12);

    // Pulled out: the run goes on, and the bar says so where nothing else is to be said.
    send(0x90, 0x3E);
    send(0x90, 0x3E);
    program.midi.plug({});
    EXPECT_EQ(captionOf(onBar(Form3::kNote)), "without Foot");
    const int here = topLine();
    for (int second = 0; second < 31; ++second)
        nextSecond();
    EXPECT_EQ(topLine(), here + 1);
    program.midi.plug({u"4- Foot"});
    EXPECT_EQ(captionOf(onBar(Form3::kNote)), "");
    program.midi.send(u"4- Foot", {0x90, 0x3C, 1});
    EXPECT_EQ(topLine(), here + 2);
    // Nobody listens once the stage is left.
    view().close();
    EXPECT_TRUE(program.midi.listensTo.empty());
}

TEST_F(WithPedals, AKeyThatTypesIsOneOnlyWhileTheClockGoes) {
    for (const auto& [key, value] :
         {std::pair(u"OneLine", u"key 13"), std::pair(u"FiveLines", u"key 120"),
          std::pair(u"TenLines", u"key 34"), std::pair(u"Pause", u"key 32")})
        program.profiles.values[{programIniPath(program.program), u"Pedals", key}] = value;
    openSmall(songOf(60));
    const Text song = text().text().chars;
    startRun();
    // On the bar, where Enter and Space press its buttons; and in the text.
    for (const HWND focus : {onBar(Form3::Cmd), text().handle()}) {
        ::SetFocus(focus);
        const int before = line();
        press(VK_RETURN);
        press(VK_F9);
        press(VK_NEXT);
        EXPECT_EQ(line(), before + 16);
        EXPECT_TRUE(panel().run().isRunning());
        // A foot that stays down is one press.
        ::PostMessageW(focus, WM_KEYDOWN, VK_RETURN, 1 | 1 << 30);
        program.pump();
        EXPECT_EQ(line(), before + 16);
    }
    EXPECT_EQ(text().text().chars, song);
    press(VK_SPACE);
    EXPECT_TRUE(panel().run().isPaused());
    // Now the song can be written into: these keys type, but for the one that never does.
    const int before = topLine();
    const std::int32_t start = text().firstOfLine(before - 1);
    text().select({start, start});
    press(VK_F9);
    EXPECT_EQ(topLine(), before + 5);
    text().select({start, start});
    testing::press(program, text().handle(), VK_SPACE);
    EXPECT_TRUE(panel().run().isPaused());
    EXPECT_EQ(text().text().chars.size(), song.size() + 1);
}

// What a press has done may have taken the key its meaning; it is held all the same.
class HeldPedal : public WithPedals, public ::testing::WithParamInterface<WPARAM> {};

TEST_P(HeldPedal, IsOnePress) {
    program.profiles.values[{programIniPath(program.program), u"Pedals", u"Pause"}] =
        u"key " + decimal(static_cast<int>(GetParam()));
    openSmall(songOf(60));
    const Text song = program.editor().text().chars;
    for (const bool inText : {true, false}) {
        startRun();
        ::SetFocus(inText ? text().handle() : onBar(Form3::Cmd));
        press(GetParam());
        EXPECT_TRUE(panel().run().isPaused());
        for (int i = 0; i < 3; ++i) {
            ::PostMessageW(::GetFocus(), WM_KEYDOWN, GetParam(), 1 | 1 << 30);
            program.pump();
        }
        ::PostMessageW(::GetFocus(), WM_KEYUP, GetParam(), static_cast<LPARAM>(0xC0000001));
        program.pump();
        EXPECT_TRUE(panel().run().isPaused()) << inText;
        EXPECT_EQ(shown(program.editor().text().chars), shown(song));
        click(onBar(Form3::Cmd2));
    }
}

INSTANTIATE_TEST_SUITE_P(Keys, HeldPedal, ::testing::Values(VK_RETURN, VK_SPACE));

TEST_F(WithPedals, RestartGoesOnWhereTheRunWasLeft) {
    program.midi.inputs = {u"Foot"};
    for (const auto& [key, value] :
         {std::pair(u"TenLines", u"midi 90 3C Foot"), std::pair(u"Restart", u"midi 90 3E Foot")})
        program.profiles.values[{programIniPath(program.program), u"Pedals", key}] = value;
    openSmall(songOf(40));
    startRun();
    for (int i = 0; i < 4; ++i)
        program.midi.send(u"Foot", {0x90, 0x3C, 100});
    EXPECT_EQ(line(), 40);
    EXPECT_LT(topLine(), 40) << "the last screenful";
    click(onBar(Form3::Cmd2));
    program.midi.send(u"Foot", {0x90, 0x3E, 100});
    program.pump();
    EXPECT_EQ(line(), 40);
    // Whoever turns the page goes on from there.
    click(onBar(Form3::Cmd2));
    text().bringToTop(4);
    program.midi.send(u"Foot", {0x90, 0x3E, 100});
    program.pump();
    EXPECT_EQ(line(), 5);
    // Nobody listens where the windows go without being closed.
    program.form->endRun();
    program.form->destroy();
    EXPECT_TRUE(program.midi.listensTo.empty());
    program.ended = true;
}

// While something is asked, a foot does nothing.
TEST_F(WithPedals, NothingMovesUnderAWindow) {
    program.midi.inputs = {u"Foot"};
    program.profiles.values[{programIniPath(program.program), u"Pedals", u"OneLine"}] =
        u"midi 90 3C Foot";
    openSmall(songOf(60));
    inWindow([&](HWND) {
        program.midi.send(u"Foot", {0x90, 0x3C, 100});
        EXPECT_EQ(topLine(), 1);
        EXPECT_EQ(chosenRowOf(list()), "One line on\tMIDI note 60, channel 1 of Foot");
        EXPECT_FALSE(::IsWindowEnabled(view().handle()));
        EXPECT_FALSE(::IsWindowEnabled(panel().handle()));
        program.command(Command::mnuFileNew);
        EXPECT_TRUE(view().isOpen()) << "no command begins";
    });
    program.midi.send(u"Foot", {0x90, 0x3C, 100});
    EXPECT_EQ(topLine(), 2);
}

// ---- The system's MIDI ------------------------------------------------------------------------

// Devices in place of those of the machine.
struct Device {
    Text name;
    bool isTaken = false;
    bool isOpen = false;
    bool isStarted = false;
};
std::vector<Device> devices;
std::size_t pluggedIn = 0;  // of them, the first ones
HWND callbackWindow = nullptr;

HMIDIIN handleOf(std::size_t device) {
    return reinterpret_cast<HMIDIIN>(static_cast<UINT_PTR>(device + 1));
}
Device& deviceOf(HMIDIIN handle) {
    return devices.at(reinterpret_cast<UINT_PTR>(handle) - 1);
}
MMRESULT endOf(HMIDIIN handle, bool Device::*flag, bool value) {
    deviceOf(handle).*flag = value;
    return MMSYSERR_NOERROR;
}

const MidiFunctions& scriptedFunctions() {
    static const MidiFunctions all = [] {
        MidiFunctions made;
        made.count = []() WINAPI -> UINT { return static_cast<UINT>(pluggedIn); };
        made.capabilities = [](UINT_PTR device, MIDIINCAPSW* what, UINT) WINAPI -> MMRESULT {
            ::lstrcpynW(what->szPname, wide(devices.at(device).name), MAXPNAMELEN);
            return MMSYSERR_NOERROR;
        };
        made.open = [](HMIDIIN* handle, UINT device, DWORD_PTR window, DWORD_PTR, DWORD flags)
                        WINAPI -> MMRESULT {
            EXPECT_EQ(flags, DWORD{CALLBACK_WINDOW});
            if (devices.at(device).isTaken)
                return MMSYSERR_ALLOCATED;
            callbackWindow = reinterpret_cast<HWND>(window);
            *handle = handleOf(device);
            return endOf(*handle, &Device::isOpen, true);
        };
        made.start = [](HMIDIIN handle)
                         WINAPI -> MMRESULT { return endOf(handle, &Device::isStarted, true); };
        made.reset = [](HMIDIIN handle)
                         WINAPI -> MMRESULT { return endOf(handle, &Device::isStarted, false); };
        made.close = [](HMIDIIN handle) WINAPI -> MMRESULT {
            // The system tells the window of it.
            ::PostMessageW(callbackWindow, MM_MIM_CLOSE, reinterpret_cast<WPARAM>(handle), 0);
            return endOf(handle, &Device::isOpen, false);
        };
        return made;
    }();
    return all;
}

class HeardMidi : public MidiListener {
  public:
    void heard(TextView device, const MidiMessage& message) override {
        lines.push_back(shown(device) + " " + std::to_string(message.status) + " " +
                        std::to_string(message.first) + " " + std::to_string(message.second));
    }
    void inputsChanged() override { ++changes; }

    std::vector<std::string> lines;
    int changes = 0;
};

TEST(SystemMidi, HearsTheInputsThatItOpened) {
    devices = {{u"Foot"}, {u"Keys"}, {u"Drums"}, {u"Foot"}};
    devices[2].isTaken = true;
    pluggedIn = 4;
    Win32Midi midi(scriptedFunctions);
    HeardMidi listener;
    EXPECT_EQ(midi.names().size(), 4U);
    EXPECT_EQ(midi.listen({u"Foot", u"Drums", u"Gone"}, listener), std::vector<Text>{u"Drums"});
    EXPECT_TRUE(devices[0].isStarted && !devices[1].isOpen && devices[3].isStarted);
    const auto send = [](std::size_t device, LPARAM packed) {
        ::PostMessageW(callbackWindow, MM_MIM_DATA, reinterpret_cast<WPARAM>(handleOf(device)),
                       packed);
        dispatchWaiting(0, [](const MSG&) { return true; });
    };
    send(0, 0x007F40B0);
    send(3, 0x00643C90);
    send(1, 0x00643C90);  // which nobody opened
    EXPECT_EQ(listener.lines, (std::vector<std::string>{"Foot 176 64 127", "Foot 144 60 100"}));

    // Something that is no MIDI is plugged in, and then a pedal goes.
    const auto settle = [&](UINT message, WPARAM wParam) {
        ::SendMessageW(callbackWindow, message, wParam, 0);
        // The timer that would wait for the system to settle.
        ::SendMessageW(callbackWindow, WM_TIMER, 1, 0);
    };
    settle(WM_DEVICECHANGE, 7);
    EXPECT_EQ(listener.changes, 0);
    pluggedIn = 3;
    settle(WM_DEVICECHANGE, 7);
    EXPECT_EQ(listener.changes, 1);
    // What it closes itself is no loss, even where the next input has the same handle.
    midi.listen({u"Foot"}, listener);
    dispatchWaiting(0, [](const MSG&) { return true; });
    ::SendMessageW(callbackWindow, WM_TIMER, 1, 0);
    EXPECT_EQ(listener.changes, 1);
    settle(MM_MIM_CLOSE, reinterpret_cast<WPARAM>(handleOf(0)));
    EXPECT_EQ(listener.changes, 2) << "closed by the system";
    midi.stop();
    EXPECT_FALSE(devices[0].isOpen);
    EXPECT_FALSE(::IsWindow(callbackWindow));
}

// The machine of the tests has none; asking for them does no harm.
TEST(SystemMidi, AsksTheSystem) {
    Win32Midi midi;
    HeardMidi listener;
    midi.names();
    EXPECT_EQ(midi.listen({u"no such device"}, listener), std::vector<Text>());
    midi.stop();
    EXPECT_TRUE(systemMidi().areThere());
}

}  // namespace
}  // namespace melvorin::testing
