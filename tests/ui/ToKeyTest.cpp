// To another key at once, the capo, and the keys for half steps in the editor and on stage.
#include "Controls.h"
#include "chords/FrmToKey.h"

namespace melvorin::testing {
namespace {

constexpr wchar_t kWindow[] = L"MelvorinFrmToKey";
constexpr char kSong[] =
    "Hills\r\n\r\nBb   Gm7  | Eb\r\nla la\r\nBb   Gm    Eb  F7\r\nover the hills we go\r\n"
    "Gm   Eb    F7  Bb\r\nla\r\n";

// Presses the key of the window and works it.
void askFor(Program& program, const std::function<void(HWND)>& steps) {
    program.waitForKeyButtons();
    const WhileOpen work(kWindow, steps);
    press(program, 'K', {VK_CONTROL});
    EXPECT_EQ(work.seen(), 1);
}

void changeTo(HWND window, int tonic) {
    const HWND to = ::GetDlgItem(window, FrmToKey::kTo);
    ::SendMessageW(to, CB_SETCURSEL, static_cast<WPARAM>(tonic), 0);
    notify(to, CBN_SELCHANGE);
}

// The row of a fret, and what the window has in it.
int rowOfFret(HWND list, const std::string& fret) {
    int row = 0;
    while (row < ListView_GetItemCount(list) && cellOf(list, row, 0) != fret)
        ++row;
    return row;
}

void writeFor(HWND window, const std::string& fret) {
    const HWND list = ::GetDlgItem(window, FrmToKey::kFrets);
    ListView_SetItemState(list, rowOfFret(list, fret), LVIS_SELECTED, LVIS_SELECTED);
    clickOn(::GetDlgItem(window, FrmToKey::kWrite));
}

std::string keyOf(Program& program) {
    return shown(program.form->statusLine().keyText());
}

std::string lineOf(Program& program, std::int32_t line) {
    const std::int32_t start = program.editor().firstOfLine(line);
    return shown(
        program.editor().textBetween({start, start + program.editor().lengthOfLine(line)}));
}

TEST(ToKey, MovesTheSongInOneStepWhateverIsOpenOrSelected) {
    const struct {
        const char* name;
        Command first;
        Command spelling;
        Selection selection;
        int tonic;
        const char* chords;
        const char* bars;
    } cases[] = {
        {"sharps",
         Command::none,
         Command::mnuSus,
         {0, 0},
         7,
         "G    Em    C   D7",
         "Bb   Gm7  | Eb"},
        {"by the key",
         Command::none,
         Command::mnuByKey,
         {0, 5},
         3,
         "Eb   Cm    Ab  Bb7",
         "Bb   Gm7  | Eb"},
        {"flats",
         Command::mnuEditDic,
         Command::mnuBem,
         {0, 60},
         1,
         "Db   Bbm   Gb  Ab7",
         "Bb   Gm7  | Eb"},
        {"with the others",
         Command::mnuOthersMove,
         Command::mnuByKey,
         {9, 9},
         0,
         "C    Am    F   G7",
         "C    Am7  | F "},
    };
    for (const auto& c : cases) {
        const ScratchFolder folder;
        Program program;
        program.program.programFolder = Win32ProgramFolder().folder();
        ASSERT_TRUE(program.start(folder.add(u"song.txt", kSong)));
        if (c.first != Command::none)
            program.command(c.first);
        program.command(c.spelling);
        ::SetFocus(program.editor().handle());
        program.editor().select(c.selection);
        const std::string before = program.text();
        const std::int16_t steps = program.history().count();
        askFor(program, [&](HWND window) {
            const auto preview = [&] {
                return captionOf(::GetDlgItem(window, FrmToKey::kPreview));
            };
            EXPECT_EQ(captionOf(::GetDlgItem(window, FrmToKey::kFrom)), "Bb");
            EXPECT_NE(preview().find("Bb   Gm    Eb  F7\r\nover"), std::string::npos);
            EXPECT_FALSE(::IsWindowEnabled(::GetDlgItem(window, FrmToKey::kOk)));
            changeTo(window, c.tonic);
            EXPECT_NE(preview().find(std::string(c.chords) + "\r\nover"), std::string::npos)
                << preview();
            clickOn(::GetDlgItem(window, FrmToKey::kOk));
        });
        EXPECT_EQ(lineOf(program, 4), c.chords) << c.name;
        EXPECT_EQ(lineOf(program, 2), c.bars) << c.name;
        EXPECT_EQ(program.history().count(), steps + 1) << c.name;
        program.command(Command::mnuEditUndo);
        EXPECT_EQ(program.text(), before) << c.name;
        EXPECT_TRUE(program.messages.boxes.empty());
    }
}

TEST(ToKey, WritesForACapoAndTakesItOff) {
    const ScratchFolder folder;
    Program program;
    program.program.programFolder = Win32ProgramFolder().folder();
    ASSERT_TRUE(program.start(folder.add(u"song.txt", kSong)));
    program.command(Command::mnuByKey);
    const std::string before = program.text();
    std::vector<std::string> first;
    askFor(program, [&](HWND window) {
        const HWND list = ::GetDlgItem(window, FrmToKey::kFrets);
        for (int column = 0; column < 5; ++column)
            first.push_back(cellOf(list, 0, column));
        writeFor(window, "3");
    });
    // G, Em7, C, Em and D7 are all open.
    EXPECT_EQ(first, (std::vector<std::string>{"3", "G", "5", "0", "0"}));
    EXPECT_EQ(lineOf(program, 1), "Capo 3 (sounds in Bb)");
    EXPECT_EQ(lineOf(program, 5), "G    Em    C   D7");
    EXPECT_EQ(keyOf(program), "Key: G, capo 3, sounds Bb");
    const std::int32_t capo = program.editor().firstOfLine(1);
    program.editor().select({capo, capo + 21});
    EXPECT_EQ(program.editor().selectionStyle().bold, false);
    // A key change keeps its number; the line is named until it says the new key.
    press(program, VK_F8);
    EXPECT_EQ(keyOf(program), "Key: Ab, capo 3, sounds B");
    EXPECT_EQ(shown(program.form->statusLine().notes()[1].text),
              "\"Capo 3 (sounds in Bb)\" names the key before");
    program.form->statusLine().notes()[1].actions[0].run();
    EXPECT_EQ(lineOf(program, 1), "Capo 3 (sounds in B)");
    EXPECT_EQ(lineOf(program, 3), "Ab   Fm7  | Db");
    EXPECT_TRUE(program.form->statusLine().notes().empty());
    press(program, VK_F7);
    program.form->keyWork().moveOthers();
    askFor(program, [](HWND window) { writeFor(window, "1"); });
    EXPECT_EQ(lineOf(program, 1), "Capo 1 (sounds in Bb)");
    program.form->keyWork().moveOthers();
    askFor(program, [](HWND window) { clickOn(::GetDlgItem(window, FrmToKey::kTakeOff)); });
    program.form->keyWork().moveOthers();
    EXPECT_EQ(program.text(), before);
    EXPECT_EQ(keyOf(program), "Key: Bb");
}

// A line that tells of the capo and has notes of its own is in one key as a whole.
TEST(ToKey, TheLineOfTheCapoComesAlong) {
    const struct {
        const char* line;
        const char* written;
    } cases[] = {
        {"Capo 3   Intro: G D Em C", "Capo 5 (sounds in Bb)   Intro: F C Dm Bb"},
        {"Key: G, Capo 3", "Key: F, Capo 5 (sounds in Bb)"},
        {"Capo 3 (sounds in Bb)", "Capo 5 (sounds in Bb)"},
    };
    for (const auto& c : cases) {
        const ScratchFolder folder;
        const std::string song = "Hills\r\n" + std::string(c.line) +
                                 "\r\nG    C   D    G\r\nover the hills\r\nG  D7  G\r\nla\r\n";
        Program program;
        program.program.programFolder = Win32ProgramFolder().folder();
        ASSERT_TRUE(program.start(folder.add(u"song.txt", song)));
        program.command(Command::mnuByKey);
        const std::string before = program.text();
        askFor(program, [](HWND window) { writeFor(window, "5"); });
        EXPECT_EQ(lineOf(program, 1), c.written);
        EXPECT_EQ(lineOf(program, 2), "F    Bb  C    F");
        EXPECT_TRUE(program.form->statusLine().notes().empty()) << c.line;
        program.command(Command::mnuEditUndo);
        EXPECT_EQ(program.text(), before);
    }
}

TEST(ToKey, SaysWhereThereIsNoKey) {
    const ScratchFolder folder;
    Program program(folder.add(u"song.txt", "words alone\r\nwithout music\r\n"));
    askFor(program, [&](HWND window) {
        EXPECT_EQ(captionOf(::GetDlgItem(window, FrmToKey::kFrom)), "there are no chords");
        for (const int id : {int{FrmToKey::kOk}, int{FrmToKey::kTo}, int{FrmToKey::kFrets},
                             int{FrmToKey::kWrite}, int{FrmToKey::kTakeOff}})
            EXPECT_FALSE(::IsWindowEnabled(::GetDlgItem(window, id))) << id;
        clickOn(::GetDlgItem(window, FrmToKey::kCancel));
    });
    EXPECT_FALSE(program.state().dirty);
    EXPECT_EQ(keyOf(program), "");
}

TEST(StatusLine, TellsWhyAChordIsCalledSo) {
    const ScratchFolder folder;
    Program program(folder.add(u"song.txt", "C  F  G7 C\r\nla\r\nC  Ab G7 C\r\nla\r\n"));
    program.waitUntil([&] { return keyOf(program) == "Key: C"; });
    const std::int32_t chords = program.editor().firstOfLine(2);
    for (const auto& [column, reason] :
         {std::pair(4, std::string("Ab: bVI of C")), std::pair(13, std::string())}) {
        program.editor().select({chords + column, chords + column});
        program.waitUntil(
            [&, wanted = reason] { return shown(program.form->statusLine().reason()) == wanted; });
    }
}

TEST(SongKey, TheLettersOfDiagramsAreNoChords) {
    constexpr char song[] =
        R"({\rtf1\ansi\deff0{\fonttbl{\f0\fmodern\fcharset0 Courier New;})"
        R"({\f1\fnil\fcharset0 Melvorin 15;}})"
        R"(\pard\f0\fs20 C  F  G7 C\par la\par {\f1 E A B E}\par {\f1 E A B E}\par)"
        R"({\f1 E A B E}\par})";
    const ScratchFolder folder;
    Program program(folder.add(u"song.rtf", song));
    program.waitUntil([&] { return !keyOf(program).empty(); });
    EXPECT_EQ(keyOf(program), "Key: C");
    const auto reasonAtStartOf = [&](std::int32_t line) {
        return shown(program.form->keyWork().reasonAt(program.editor().firstOfLine(line)));
    };
    EXPECT_EQ(reasonAtStartOf(0), "C: I of C");
    EXPECT_EQ(reasonAtStartOf(2), "");
}

// Who plays goes on from the page that is shown, wherever the caret is.
TEST(HalfSteps, KeepThePageOnStage) {
    std::string song;
    for (int pair = 0; pair < 100; ++pair)
        song += "A  E\r\nla la\r\n";
    const ScratchFolder folder;
    Program program(folder.add(u"song.txt", song));
    program.waitForKeyButtons();
    program.command(Command::mnuFullScreen);
    frmFScreen& view = program.form->fullScreen();
    program.waitUntil([&] { return view.panel().isPrepared(); });
    RichEdit& text = view.FSRTB();
    ::SetFocus(text.handle());
    ::SendMessageW(text.handle(), WM_VSCROLL, SB_PAGEDOWN, 0);
    const LONG top = text.page().y;
    ASSERT_GT(top, 0);
    press(program, text.handle(), VK_F8);
    EXPECT_EQ(lineOf(program, 0), "A# F");
    EXPECT_EQ(text.page().y, top);
    view.close();
}

TEST(HalfSteps, GoInTheEditorAndOnStageWhereNothingRuns) {
    const ScratchFolder folder;
    Program program(folder.add(u"song.txt", kSong));
    program.waitForKeyButtons();
    press(program, VK_F7);
    EXPECT_EQ(lineOf(program, 4), "A    F#m   D   E7");
    program.command(Command::mnuFullScreen);
    frmFScreen& view = program.form->fullScreen();
    program.waitUntil([&] { return view.panel().isPrepared(); });
    const auto chordsOnStage = [&] {
        RichEdit& text = view.FSRTB();
        const std::int32_t start = text.firstOfLine(4);
        return shown(text.textBetween({start, start + text.lengthOfLine(4)}));
    };
    const std::int16_t steps = program.history().count();
    for (const bool inPanel : {false, true}) {
        // The song gets another control with every change.
        const auto window = [&] { return inPanel ? view.panel().handle() : view.FSRTB().handle(); };
        ::SetFocus(window());
        press(program, window(), VK_F8);
        EXPECT_EQ(lineOf(program, 4), "A#   Gm    D#  F7");
        EXPECT_EQ(chordsOnStage(), "A#   Gm    D#  F7");
        EXPECT_TRUE(view.isOpen() && ::IsWindowEnabled(view.handle()));
        EXPECT_TRUE(::IsWindowEnabled(view.panel().handle()));
        EXPECT_FALSE(::IsWindowEnabled(program.form->handle()));
        press(program, window(), VK_F7);
        EXPECT_EQ(chordsOnStage(), "A    F#m   D   E7");
    }
    EXPECT_EQ(program.history().count(), steps + 4);
    clickOn(::GetDlgItem(view.panel().handle(), frmFScreenB::Command4));
    press(program, view.FSRTB().handle(), VK_F8);
    EXPECT_EQ(lineOf(program, 4), "A    F#m   D   E7") << "a running song stays";
    view.close();
    program.command(Command::mnuUp);
    EXPECT_EQ(lineOf(program, 4), "A#   Gm    D#  F7");
}

}  // namespace
}  // namespace melvorin::testing
