// Pedals and keys of one's own: what is learned, kept and heard, and what it does to a run.
#include <gtest/gtest.h>

#include "MemoryFiles.h"
#include "StandIns.h"
#include "base/ProgramSettings.h"
#include "present/StagePedals.h"

namespace melvorin {
namespace {

using testing::shown;

constexpr std::uint8_t kNote1 = 0x90;        // note on, channel 1
constexpr std::uint8_t kController1 = 0xB0;  // controller, channel 1

PedalSignal& of(Pedals& pedals, PedalAct act) {
    return pedals[static_cast<std::size_t>(act)];
}

class PedalsTest : public ::testing::Test {
  protected:
    Text& value(TextView key) {
        return all_.profiles.values[{programIniPath(all_.program), u"Pedals", Text(key)}];
    }

    testing::StandIns all_;
    testing::MemoryFiles files_;
    Services services_ = testing::ServicesBuilder(all_, files_, windows1252()).build();
};

// ---- Kept -------------------------------------------------------------------------------------

TEST_F(PedalsTest, AreKeptAsALineEach) {
    EXPECT_EQ(pedalSettings(services_), Pedals());
    Pedals own;
    of(own, PedalAct::OneLine) = {{keys::kRight, true, false, true}, {}};
    of(own, PedalAct::FiveLines) = {plainKey(keys::kSpace), {}};
    of(own, PedalAct::Back) = {{}, {0xBF, 0x40, u"Foot \"8\" = board"}};
    of(own, PedalAct::Pause) = {{}, {0xFA, 0, u"Drums"}};
    of(own, PedalAct::Restart) = {{}, {0xFA, 0, u"Drums"}};
    EXPECT_TRUE(storePedals(services_, own));
    EXPECT_EQ(shown(value(u"OneLine")), "key ctrl+shift+39");
    EXPECT_EQ(shown(value(u"FiveLines")), "key 32");
    EXPECT_EQ(shown(value(u"TenLines")), "");
    EXPECT_EQ(shown(value(u"Back")), "midi BF 40 Foot \"8\" = board");
    EXPECT_EQ(shown(value(u"Pause")), "midi FA 00 Drums");
    EXPECT_EQ(pedalSettings(services_), own);
    all_.profiles.writable = false;
    EXPECT_FALSE(storePedals(services_, own));
}

TEST_F(PedalsTest, WhatMakesNoSenseInTheFileIsNothing) {
    for (const TextView bad : {u"key",
                               u"key ",
                               u"key x",
                               u"key 27",
                               u"key 9",
                               u"key 16",
                               u"key 0",
                               u"key 255",
                               u"key 99999999999",
                               u"key shift+ctrl+39",
                               u"key ctrl+48",
                               u"Key 33",
                               u"33",
                               u"midi",
                               u"midi 90",
                               u"midi 90 40",
                               u"midi 90 40 ",
                               u"midi 90 80 A",
                               u"midi 80 40 A",
                               u"midi F8 00 A",
                               u"midi GG 40 A",
                               u"midi 190 40 A"}) {
        value(u"TenLines") = bad;
        EXPECT_EQ(pedalSettings(services_), Pedals()) << shown(bad);
    }
    // Of two that have one key, the later one keeps it.
    value(u"OneLine") = u"key 33";
    value(u"TenLines") = u"key 33";
    Pedals pedals = pedalSettings(services_);
    EXPECT_EQ(of(pedals, PedalAct::OneLine), PedalSignal());
    EXPECT_EQ(of(pedals, PedalAct::TenLines), (PedalSignal{plainKey(keys::kPageUp), {}}));
}

TEST_F(PedalsTest, ASignalDoesOneThingButForPauseAndRestart) {
    Pedals pedals;
    const PedalSignal f9{plainKey(keys::kF1 + 8), {}};
    EXPECT_TRUE(learn(pedals, PedalAct::Pause, f9).empty());
    EXPECT_TRUE(learn(pedals, PedalAct::Restart, f9).empty());
    EXPECT_EQ(actOf(pedals, plainKey(keys::kF1 + 8), {.runGoes = true}), PedalAct::Pause);
    EXPECT_EQ(actOf(pedals, plainKey(keys::kF1 + 8), {}), PedalAct::Restart);
    learn(pedals, PedalAct::Restart, {});
    EXPECT_EQ(actOf(pedals, plainKey(keys::kF1 + 8), {}), PedalAct::Pause);
    learn(pedals, PedalAct::Restart, f9);
    EXPECT_EQ(learn(pedals, PedalAct::Back, f9),
              (std::vector<PedalAct>{PedalAct::Pause, PedalAct::Restart}));
    EXPECT_EQ(of(pedals, PedalAct::Pause), PedalSignal());
    EXPECT_TRUE(learn(pedals, PedalAct::Back, f9).empty()) << "once more the same";
}

// ---- Keys -------------------------------------------------------------------------------------

TEST_F(PedalsTest, WhichKeysCanBeLearned) {
    for (const KeyStroke& key :
         {plainKey(keys::kEscape), shift(keys::kEscape), plainKey(keys::kTab), shift(keys::kTab),
          alt(u'A'), plainKey(keys::kF7), plainKey(keys::kF8), ctrl(u'9'), ctrl(u'0'), ctrl(u'Z'),
          KeyStroke{u'D', true, false, true}, KeyStroke{keys::kPlus, true, false, true}})
        EXPECT_FALSE(whyNotLearned(key).empty()) << shown(nameOf(key));
    for (const KeyStroke& key :
         {plainKey(keys::kEnter), plainKey(keys::kSpace), plainKey(keys::kPageDown),
          plainKey(keys::kF2), plainKey(keys::kVolumeUp), plainKey(u'D'), ctrl(keys::kRight)})
        EXPECT_TRUE(whyNotLearned(key).empty()) << shown(nameOf(key));
    EXPECT_EQ(shown(whyNotLearned(plainKey(keys::kEscape))),
              "Esc cannot be learned: it always leads back to the panel.");
    // Shift, Ctrl, Alt, the Windows keys, Caps Lock and what input methods say are no keys.
    for (const int key : {0x10, 0x11, 0x12, 0x14, 0x5B, 0x90, 0xA2, 0xE5, 0xFF, 0})
        EXPECT_TRUE(isNoKey(static_cast<std::uint16_t>(key))) << key;
    for (const int key : {0x0D, 0x22, 0x5D, 0x87, 0xB3})
        EXPECT_FALSE(isNoKey(static_cast<std::uint16_t>(key))) << key;
}

TEST_F(PedalsTest, AKeyThatTypesActsOnlyWhileTheClockGoes) {
    struct Case {
        KeyStroke key;
        bool inText;  // acts there while no clock goes
        bool onBar;
    };
    const Case cases[] = {
        {plainKey(keys::kEnter), false, false},   {plainKey(keys::kSpace), false, false},
        {plainKey(keys::kDelete), false, false},  {plainKey(keys::kBackspace), false, false},
        {plainKey(u'B'), false, false},           {shift(u'7'), false, false},
        {plainKey(0x61), false, false},           {plainKey(0xBC), false, false},
        {ctrl(keys::kRight), false, false},       {plainKey(keys::kRight), false, true},
        {plainKey(keys::kPageDown), false, true}, {plainKey(keys::kEnd), false, true},
        {shift(keys::kUp), false, true},          {plainKey(keys::kF1 + 8), true, true},
        {plainKey(keys::kVolumeUp), true, true},  {plainKey(keys::kPlayPause), true, true},
    };
    for (const Case& row : cases) {
        Pedals pedals;
        learn(pedals, PedalAct::FiveLines, {row.key, {}});
        const auto acts = [&](const KeyPlace& place) {
            return actOf(pedals, row.key, place) == PedalAct::FiveLines;
        };
        const std::string name = shown(signalInWords({row.key, {}}));
        EXPECT_TRUE(acts({.runGoes = true})) << name;
        EXPECT_TRUE(acts({.runGoes = true, .onBar = true})) << name;
        EXPECT_EQ(acts({}), row.inText) << name;
        EXPECT_EQ(acts({.onBar = true}), row.onBar) << name;
    }
    EXPECT_EQ(actOf(Pedals(), plainKey(keys::kEnter), {.runGoes = true}), std::nullopt);
}

// ---- MIDI -------------------------------------------------------------------------------------

TEST_F(PedalsTest, WhatIsPressedAndWhatIsLetGo) {
    struct Case {
        MidiMessage message;
        const char* press;  // in words; empty for none
    };
    // One device, one message after the other.
    const Case cases[] = {
        {{kNote1, 60, 100}, "MIDI note 60, channel 1 of A"},
        {{kNote1, 60, 0}, ""},  // let go
        {{0x80, 60, 64}, ""},   // let go
        {{0x9F, 60, 1}, "MIDI note 60, channel 16 of A"},
        {{kController1, 64, 127}, "MIDI controller 64, channel 1 of A"},
        {{kController1, 64, 0}, ""},
        {{kController1, 64, 127}, "MIDI controller 64, channel 1 of A"},
        // A pedal that never says that it is let go.
        {{kController1, 64, 127}, "MIDI controller 64, channel 1 of A"},
        // A sweep is one press, when it comes to the upper half.
        {{kController1, 11, 10}, ""},
        {{kController1, 11, 63}, ""},
        {{kController1, 11, 66}, "MIDI controller 11, channel 1 of A"},
        {{kController1, 11, 80}, ""},
        {{kController1, 11, 127}, ""},
        {{kController1, 11, 90}, ""},
        {{kController1, 11, 20}, ""},
        {{kController1, 11, 64}, "MIDI controller 11, channel 1 of A"},
        {{0xC2, 0, 0}, "MIDI program 1, channel 3 of A"},
        {{0xC2, 0, 0}, "MIDI program 1, channel 3 of A"},
        {{0xFA, 0, 0}, "MIDI start of A"},
        {{0xFB, 0, 0}, "MIDI continue of A"},
        {{0xFC, 7, 7}, "MIDI stop of A"},
        // The clock of a machine, that it is there, bends and pressure come all the time.
        {{0xF8, 0, 0}, ""},
        {{0xFE, 0, 0}, ""},
        {{0xE0, 0, 64}, ""},
        {{0xD0, 100, 0}, ""},
        {{0xA0, 60, 100}, ""},
    };
    MidiPresses presses;
    std::size_t row = 0;
    for (const auto& [message, press] : cases) {
        const auto signal = presses.press(u"A", message);
        EXPECT_EQ(signal ? shown(signalInWords({{}, *signal})) : "", press) << "row " << row++;
    }
    // Each device has its own values.
    presses = {};
    EXPECT_TRUE(presses.press(u"A", {kController1, 11, 100}));
    EXPECT_TRUE(presses.press(u"B", {kController1, 11, 90}));
}

TEST_F(PedalsTest, ADeviceIsKnownAgainWhereverItIsPluggedIn) {
    const std::pair<TextView, const char*> names[] = {{u"Foot Board", "Foot Board"},
                                                      {u"2- Foot Board", "Foot Board"},
                                                      {u"13- Foot ", "Foot"},
                                                      {u"2 Foot", "2 Foot"},
                                                      {u"- Foot", "- Foot"},
                                                      {u"Fu\u00dfpedal", "Fu?pedal"},
                                                      {u"", "?"},
                                                      {u"2- ", "?"}};
    for (const auto& [system, kept] : names)
        EXPECT_EQ(shown(deviceName(system)), kept);
}

TEST_F(PedalsTest, ListensToWhatIsLearnedAndTellsWhatIsMissing) {
    std::vector<PedalAct> acts;
    int changes = 0;
    bool goes = true;
    StagePedals pedals(services_, {[&] { return goes; }, [&](PedalAct act) { acts.push_back(act); },
                                   [&] { ++changes; }});
    all_.midi.inputs = {u"Keys", u"2- Foot", u"Foot"};
    pedals.listen();
    EXPECT_TRUE(all_.midi.listensTo.empty()) << "nothing is learned";
    Pedals learned;
    of(learned, PedalAct::TenLines) = {{}, {kController1, 80, u"Foot"}};
    of(learned, PedalAct::Pause) = {{}, {kController1, 81, u"Foot"}};
    of(learned, PedalAct::Restart) = {{}, {kController1, 81, u"Foot"}};
    pedals.take(learned);
    pedals.listen();
    EXPECT_EQ(all_.midi.listensTo, (std::vector<Text>{u"2- Foot", u"Foot"}));
    EXPECT_EQ(pedals.missing(), u"");
    all_.midi.send(u"Foot", {kController1, 80, 127});
    all_.midi.send(u"Foot", {kController1, 80, 0});
    all_.midi.send(u"2- Foot", {kController1, 80, 127});
    all_.midi.send(u"Foot", {kController1, 81, 127});
    goes = false;
    all_.midi.send(u"Foot", {kController1, 81, 127});
    all_.midi.send(u"Foot", {kController1, 82, 127});  // nobody taught it
    all_.midi.send(u"Keys", {kController1, 80, 127});
    EXPECT_EQ(acts, (std::vector<PedalAct>{PedalAct::TenLines, PedalAct::TenLines, PedalAct::Pause,
                                           PedalAct::Restart}));
    // Pulled out, plugged in elsewhere, taken by another program.
    all_.midi.plug({u"Keys"});
    EXPECT_EQ(pedals.missing(), u"Foot");
    EXPECT_EQ(changes, 1);
    all_.midi.plug({u"Keys", u"Mouse"});
    EXPECT_EQ(changes, 1) << "it is none of ours";
    all_.midi.plug({u"3- Foot"});
    EXPECT_EQ(pedals.missing(), u"");
    EXPECT_EQ(changes, 2);
    acts.clear();
    all_.midi.send(u"3- Foot", {kController1, 80, 127});
    EXPECT_EQ(acts, std::vector<PedalAct>{PedalAct::TenLines});
    all_.midi.taken = {u"3- Foot"};
    pedals.listen();
    EXPECT_EQ(pedals.missing(), u"Foot");
    pedals.stop();
    EXPECT_TRUE(all_.midi.listensTo.empty());
}

}  // namespace
}  // namespace melvorin
