// The tuner on the real controls and a real folder; what it tells the multimedia interface is
// recorded.
#include "Controls.h"
#include "sound/FrmSong.h"

namespace melvorin::testing {
namespace {

class Song : public ::testing::Test {
  protected:
    void SetUp() override {
        strings = joinPath(folder.path(), u"Strings");
        ::CreateDirectoryW(wide(strings), nullptr);
        ::CreateDirectoryW(wide(joinPath(strings, u"Bass")), nullptr);
        for (const TextView name : {u"2 B.mid", u"1 E (thin).MID", u"beep.wav", u"read me.txt"})
            add(name);
        add(u"Bass\\4 E.mid");
        program.program.programFolder = folder.path();
        ASSERT_TRUE(program.start());
        program.command(Command::mnuDps);
        ASSERT_TRUE(window().isOpen());
    }
    void TearDown() override {
        for (const Text& file : files)
            ::DeleteFileW(wide(file));
        ::RemoveDirectoryW(wide(joinPath(strings, u"Bass")));
        ::RemoveDirectoryW(wide(strings));
    }
    void add(TextView name) {
        files.push_back(joinPath(strings, name));
        EXPECT_TRUE(program.files.write(files.back(), "x"));
    }

    FrmSong& window() { return program.form->songWindow(); }
    HWND item(int id) { return ::GetDlgItem(window().handle(), id); }
    bool isEnabled(int id) { return ::IsWindowEnabled(item(id)) != FALSE; }
    std::string pathLabel() { return captionOf(item(FrmSong::Path)); }
    std::vector<std::string> rows(int list) { return rowsOf(item(list)); }
    void notify(int list, int code) { testing::notify(item(list), code); }
    void choose(int list, std::size_t row) { chooseRow(item(list), static_cast<int>(row)); }
    void click(int button) { clickOn(item(button)); }
    void press(int control, WPARAM key) {
        pressIn(item(control), key);
        program.pump();
    }
    std::string file(TextView name) const { return shown(joinPath(strings, name)); }
    static std::string openOf(const std::string& path) {
        return "Open \"" + path + "\" type sequencer alias canyon";
    }
    // The commands since the last look.
    std::vector<std::string> sent() { return std::exchange(program.multimedia.commands, {}); }

    using Commands = std::vector<std::string>;
    ScratchFolder folder;
    Text strings;
    std::vector<Text> files;
    Program program;
};

TEST_F(Song, ListsTheSoundsOfTheTunersFolder) {
    EXPECT_EQ(rows(FrmSong::Files), (Commands{"1 E (thin).MID", "2 B.mid", "beep.wav"}));
    const auto folders = rows(FrmSong::Dir);
    ASSERT_GT(folders.size(), 3U);
    EXPECT_EQ(folders.back().substr(folders.back().find_last_of(' ') + 1), "Bass");
    EXPECT_EQ(::SendMessageW(item(FrmSong::Dir), LB_GETCURSEL, 0, 0),
              static_cast<LRESULT>(folders.size()) - 2);
    EXPECT_EQ(pathLabel(), shown(strings));
    EXPECT_EQ(::GetFocus(), item(FrmSong::Files));
    EXPECT_TRUE(isEnabled(FrmSong::Play) && !isEnabled(FrmSong::Stopcmd));
    EXPECT_EQ(sent(), Commands{});
}

TEST_F(Song, PlaysStopsAndClosesInOrder) {
    choose(FrmSong::Files, 1);
    EXPECT_EQ(pathLabel(), file(u"2 B.mid"));
    click(FrmSong::Play);
    EXPECT_EQ(sent(), (Commands{"close canyon", openOf(file(u"2 B.mid")), "play canyon"}));
    EXPECT_FALSE(isEnabled(FrmSong::Play) || isEnabled(FrmSong::Files));
    EXPECT_TRUE(isEnabled(FrmSong::Stopcmd));
    EXPECT_EQ(::GetFocus(), item(FrmSong::Stopcmd));
    // Enter plays wherever the focus is: once more, from a closed device.
    press(FrmSong::Stopcmd, VK_RETURN);
    EXPECT_EQ(sent(), (Commands{"close canyon", openOf(file(u"2 B.mid")), "play canyon"}));

    click(FrmSong::Stopcmd);
    EXPECT_EQ(sent(), Commands{"stop canyon"});
    EXPECT_TRUE(isEnabled(FrmSong::Play) && isEnabled(FrmSong::Files));
    EXPECT_FALSE(isEnabled(FrmSong::Stopcmd));
    EXPECT_TRUE(::IsWindowEnabled(::GetFocus()));

    choose(FrmSong::Files, 0);
    notify(FrmSong::Files, LBN_DBLCLK);
    EXPECT_EQ(sent(), (Commands{"close canyon", openOf(file(u"1 E (thin).MID")), "play canyon"}));
    click(FrmSong::Command1);
    EXPECT_FALSE(window().isOpen());
    EXPECT_EQ(sent(), Commands{"close canyon"});
}

TEST_F(Song, EnterPlaysWhereverTheFocusIs) {
    choose(FrmSong::Files, 0);
    for (const int control : {FrmSong::Dir, FrmSong::Files, FrmSong::Play, FrmSong::Command1}) {
        press(control, VK_RETURN);
        EXPECT_EQ(sent().size(), 3U) << control;
        ASSERT_TRUE(window().isOpen());
        click(FrmSong::Stopcmd);
        EXPECT_EQ(sent().size(), 1U);
    }
}

TEST_F(Song, WithoutAChoiceTheFirstFilePlays) {
    const auto first = [&] { return openOf(file(u"1 E (thin).MID")); };
    const auto playsFirst = [&](const char* how) {
        EXPECT_EQ(sent(), (Commands{"close canyon", first(), "play canyon"})) << how;
        EXPECT_EQ(::SendMessageW(item(FrmSong::Files), LB_GETCURSEL, 0, 0), 0) << how;
        EXPECT_EQ(pathLabel(), file(u"1 E (thin).MID")) << how;
        click(FrmSong::Stopcmd);
        ::SendMessageW(item(FrmSong::Files), LB_SETCURSEL, static_cast<WPARAM>(-1), 0);
        sent();
    };
    click(FrmSong::Play);
    playsFirst("click");
    press(FrmSong::Dir, VK_RETURN);
    playsFirst("Enter");
    press(FrmSong::Files, VK_SPACE);
    playsFirst("Space");
    EXPECT_TRUE(program.messages.boxes.empty());
}

TEST_F(Song, SpacePlaysTheFileInTheList) {
    choose(FrmSong::Files, 1);
    press(FrmSong::Files, VK_SPACE);
    EXPECT_EQ(sent(), (Commands{"close canyon", openOf(file(u"2 B.mid")), "play canyon"}));
}

// What is no MIDI file is refused, the wave files that are listed too, and a folder without any.
TEST_F(Song, RefusesEverythingElse) {
    for (const bool isChosen : {true, false}) {
        if (isChosen) {
            choose(FrmSong::Files, 2);
        } else {
            choose(FrmSong::Dir, rows(FrmSong::Dir).size() - 1);
            ::DeleteFileW(wide(files.back()));
            notify(FrmSong::Dir, LBN_DBLCLK);
            EXPECT_EQ(rows(FrmSong::Files), Commands{});
        }
        click(FrmSong::Play);
        ASSERT_FALSE(program.messages.boxes.empty());
        const ShownMessage& box = program.messages.boxes.back();
        EXPECT_EQ(box.text, "Invalid file type");
        EXPECT_EQ(box.title, "Error");
        EXPECT_EQ(box.icon, MessageIcon::Critical);
        EXPECT_TRUE(!isEnabled(FrmSong::Play) && isEnabled(FrmSong::Stopcmd));
        EXPECT_EQ(sent(), Commands{});
        click(FrmSong::Stopcmd);
        EXPECT_EQ(sent(), Commands{"stop canyon"});
    }
    EXPECT_EQ(program.messages.boxes.size(), 2U);
}

// No device, no file: nobody is told, and the window goes on.
TEST_F(Song, FailuresAreSilent) {
    program.multimedia.result = 263;
    choose(FrmSong::Files, 0);
    ::DeleteFileW(wide(files[1]));
    click(FrmSong::Play);
    EXPECT_EQ(sent().size(), 3U);
    EXPECT_TRUE(program.messages.boxes.empty());
    click(FrmSong::Stopcmd);
    EXPECT_TRUE(isEnabled(FrmSong::Play) && isEnabled(FrmSong::Files));
    // The real interface tells that no device has this name.
    EXPECT_NE(Win32Multimedia().send(u"close canyon"), 0U);
}

TEST_F(Song, OtherFoldersAreOpenedByMouseAndKeyboard) {
    const WPARAM bass = rows(FrmSong::Dir).size() - 1;
    choose(FrmSong::Files, 0);
    choose(FrmSong::Dir, bass);
    EXPECT_EQ(rows(FrmSong::Files).size(), 3U);
    notify(FrmSong::Dir, LBN_DBLCLK);
    EXPECT_EQ(rows(FrmSong::Files), Commands{"4 E.mid"});
    EXPECT_EQ(pathLabel(), file(u"Bass"));
    // The file of the former folder is not the one to play.
    click(FrmSong::Play);
    EXPECT_EQ(sent().at(1), openOf(file(u"Bass\\4 E.mid")));
    click(FrmSong::Stopcmd);
    sent();
    press(FrmSong::Files, VK_RETURN);
    EXPECT_EQ(sent().at(1), openOf(file(u"Bass\\4 E.mid")));
    click(FrmSong::Stopcmd);

    choose(FrmSong::Dir, bass - 1);
    press(FrmSong::Dir, VK_SPACE);
    EXPECT_EQ(pathLabel(), shown(strings));
    // A folder that has gone is an empty one.
    ::DeleteFileW(wide(files.back()));
    ::RemoveDirectoryW(wide(joinPath(strings, u"Bass")));
    choose(FrmSong::Dir, bass);
    notify(FrmSong::Dir, LBN_DBLCLK);
    EXPECT_EQ(rows(FrmSong::Files), Commands{});
}

TEST_F(Song, SongsAreTheOtherFolderAndTheDeviceClosesWithTheProgram) {
    press(FrmSong::Files, VK_ESCAPE);
    EXPECT_FALSE(window().isOpen());
    sent();
    window().open(program.form->handle(), SoundFolder::Song);
    EXPECT_EQ(pathLabel(), shown(joinPath(folder.path(), u"Song")));
    program.close();
    EXPECT_TRUE(program.ended);
    EXPECT_EQ(sent(), Commands{"close canyon"});
}

}  // namespace
}  // namespace melvorin::testing
