// The status line, and what a key change left over as it tells of it.
#include <fstream>

#include "Controls.h"
#include "base/ProgramSettings.h"
#include "chords/DocumentKey.h"

namespace melvorin::testing {
namespace {

// Lines that a key change takes, three that it passes over, words that it takes for chords.
constexpr char kSong[] =
    "Key: G\r\nG      Em   | C\r\nOver the hills\r\nAm     D7\r\nBad Dad\r\nGmaj7  Bm\r\n"
    "nobody walks\r\n[Am]word [Cmaj7]more\r\n";

std::string said(Program& program) {
    return shown(program.form->statusLine().message());
}

void pressButton(Program& program, std::string_view caption) {
    for (const StatusNote& note : program.form->statusLine().notes()) {
        for (const StatusNote::Action& action : note.actions) {
            if (shown(action.caption) == caption && action.isEnabled) {
                action.run();
                program.pump();
                return;
            }
        }
    }
    ADD_FAILURE() << "no button " << caption;
}

std::string lineOf(Program& program, std::int32_t line) {
    RichEdit& editor = program.editor();
    const std::int32_t start = editor.firstOfLine(line);
    return shown(editor.textBetween({start, start + editor.lengthOfLine(line)}));
}

TEST(StatusLine, TellsTheCaretAndTheZoom) {
    const ScratchFolder folder;
    Program program(
        folder.add(u"song.txt", "[Verse]\r\nAm  G\r\nla \xE6\x97\xA5 la\r\n\r\ne|--0--|\r\n"));
    StatusLine& line = program.form->statusLine();
    const Text ini = programIniPath(program.program);
    const struct {
        std::int32_t at;
        const char* place;
    } places[] = {{0, "Line 1, Column 1: label"},
                  {12, "Line 2, Column 5: chords"},
                  {18, "Line 3, Column 6: words"},  // behind a letter of two cells
                  {22, "Line 4, Column 1"},
                  {25, "Line 5, Column 3: tablature"}};
    for (const auto& place : places) {
        program.editor().select({place.at, place.at});
        program.waitUntil([&] { return shown(line.placeText()) == place.place; });
        EXPECT_EQ(shown(line.placeText()), place.place);
    }
    const std::int32_t width = program.editor().pointOf(4).x - program.editor().pointOf(0).x;
    program.command(Command::zoomIn);
    program.command(Command::zoomIn);
    EXPECT_EQ(program.editor().zoom(), 125);
    EXPECT_EQ((program.profiles.values[{ini, u"View", u"Zoom"}]), u"125");
    EXPECT_NEAR(program.editor().pointOf(4).x - program.editor().pointOf(0).x, width * 1.25, 4);
    EXPECT_FALSE(program.state().dirty) << "only the view is another";
    ::SendMessageW(program.editor().handle(), WM_MOUSEWHEEL, MAKEWPARAM(MK_CONTROL, -WHEEL_DELTA),
                   0);
    EXPECT_EQ(program.editor().zoom(), 110);
    program.command(Command::zoomReset);
    EXPECT_EQ(program.editor().zoom(), 100);

    EXPECT_TRUE(program.form->menuBar().isChecked(Command::mnuStatus));
    program.command(Command::mnuStatus);
    EXPECT_FALSE(::IsWindowVisible(line.handle()));
    EXPECT_EQ((program.profiles.values[{ini, u"View", u"StatusLine"}]), u"0");
    program.command(Command::mnuStatus);
    EXPECT_TRUE(::IsWindowVisible(line.handle()));
}

TEST(StatusLine, HasTheKeyboardOnlyWhenAsked) {
    const ScratchFolder folder;
    Program program(folder.add(u"song.txt", kSong));
    StatusLine& line = program.form->statusLine();
    program.waitForKeyButtons();
    program.command(Command::mnuUp);
    const HWND editor = program.editor().handle();
    ::SetFocus(editor);
    press(program, editor, VK_F6);
    const HWND first = ::GetFocus();
    EXPECT_EQ(shown(windowText(first)), "Move Them Too");
    press(program, first, VK_TAB);
    EXPECT_EQ(shown(windowText(::GetFocus())), "Show");
    press(program, ::GetFocus(), VK_ESCAPE);
    EXPECT_EQ(::GetFocus(), program.editor().handle());
    press(program, program.editor().handle(), VK_F6);
    press(program, ::GetFocus(), VK_F6);
    EXPECT_EQ(::GetFocus(), program.editor().handle());
    // By the mouse it stays where it was.
    ::SendMessageW(::GetDlgItem(line.handle(), 402), BM_CLICK, 0, 0);
    EXPECT_EQ(::GetFocus(), program.editor().handle());
    EXPECT_EQ(lineOf(program, 1), "G      Em   | C");
    EXPECT_EQ(program.editor().selection().begin, 7) << "the first of them is selected";
}

TEST(LeftOverLines, AreToldMovedAndKeptThroughUndo) {
    const ScratchFolder folder;
    Program program(folder.add(u"song.txt", kSong));
    program.waitForKeyButtons();
    program.command(Command::mnuUp);
    EXPECT_EQ(said(program), "3 lines of chords did not change key");
    program.command(Command::mnuUp);
    EXPECT_EQ(lineOf(program, 3), "Bm     E7 ");
    const std::int16_t steps = program.history().count();
    pressButton(program, "Move Them Too");
    EXPECT_EQ(lineOf(program, 1), "A      F#m  | D");
    EXPECT_EQ(lineOf(program, 5), "Amaj7  C#m");
    EXPECT_EQ(lineOf(program, 7), "[Bm]word [Dmaj7]more");
    EXPECT_EQ(program.history().count(), steps + 1) << "a step of its own";
    EXPECT_EQ(said(program).find("lines of chords"), std::string::npos);
    // Undone twice the lines are one step behind, which then is what they are moved by.
    program.command(Command::mnuEditUndo);
    program.command(Command::mnuEditUndo);
    program.waitUntil([&] { return said(program) == "3 lines of chords did not change key"; });
    pressButton(program, "Move Them Too");
    EXPECT_EQ(lineOf(program, 1), "G#     Fm   | C#");
    // An edited line keeps what it owes, and a new one owes nothing.
    program.command(Command::mnuEditUndo);
    program.editor().select({7, 7});
    program.editor().type(u"Cmaj7 | F\r");
    program.waitUntil([&] { return said(program) == "3 lines of chords did not change key"; });
    pressButton(program, "Move Them Too");
    EXPECT_EQ(lineOf(program, 1), "Cmaj7 | F");
    EXPECT_EQ(lineOf(program, 2), "G#     Fm   | C#");
}

TEST(LeftOverLines, GoWithTheKeyWhereThatIsChosen) {
    const ScratchFolder folder;
    Program program(folder.add(u"song.txt", kSong));
    program.waitForKeyButtons();
    const Text ini = programIniPath(program.program);
    program.command(Command::mnuDwn);
    pressButton(program, "Always");
    EXPECT_EQ((program.profiles.values[{ini, u"Key", u"Others"}]), u"Move");
    EXPECT_TRUE(program.form->menuBar().isChecked(Command::mnuOthersMove));
    EXPECT_EQ(lineOf(program, 5), "F#maj7 A#m");
    const std::int16_t steps = program.history().count();
    program.command(Command::mnuDwn);
    EXPECT_EQ(lineOf(program, 5), "Fmaj7  Am ");
    EXPECT_EQ(lineOf(program, 3), "Gm     C7 ");
    EXPECT_EQ(program.history().count(), steps + 1) << "one step";
    program.command(Command::mnuOthersLeave);
    EXPECT_EQ((program.profiles.values[{ini, u"Key", u"Others"}]), u"Leave");
    program.command(Command::mnuDwn);
    EXPECT_EQ(lineOf(program, 5), "Fmaj7  Am ");
    EXPECT_EQ(said(program), "3 lines of chords did not change key");
}

// B beside Bb and H: nobody knows.
TEST(LeftOverLines, WaitWhereWhatTheSongsBMeansIsOpen) {
    const ScratchFolder folder;
    Program program(folder.add(u"song.txt", "Em  H7 | Am\r\nla la\r\nB  | Bb\r\nG  C\r\n"));
    program.waitForKeyButtons();
    program.command(Command::mnuUp);
    EXPECT_NE(said(program).find("this song writes H"), std::string::npos);
    EXPECT_FALSE(program.form->statusLine().notes()[0].actions[0].isEnabled);
    EXPECT_EQ(lineOf(program, 0), "Em  H7 | Am");
}

// "Undo" leaves the way to the creator; "Tidy It" takes the key change back by itself.
TEST(MisreadNames, AreUndoneAndTidied) {
    const ScratchFolder folder;
    const std::string song = "Am  H7 | Em\r\nla la\r\nB   C\r\nla\r\n";
    for (const bool undoesFirst : {true, false}) {
        SCOPED_TRACE(undoesFirst);
        Program program(folder.add(u"song.txt", song));
        program.waitForKeyButtons();
        program.command(Command::mnuUp);
        EXPECT_EQ(lineOf(program, 2), "C   C#");
        EXPECT_EQ(said(program),
                  "This song writes H: its B is B flat, but was moved as B natural. Undo, and tidy "
                  "it");
        if (undoesFirst) {
            pressButton(program, "Undo");
            EXPECT_EQ(lineOf(program, 2), "B   C");
        }
        const WhileOpen creator(L"MelvorinFrmCifraCreator",
                                [&](HWND window) { ::SendMessageW(window, WM_COMMAND, IDOK, 0); });
        pressButton(program, "Tidy It");
        EXPECT_EQ(creator.seen(), 1);
        EXPECT_EQ(lineOf(program, 2), "Bb  C") << "tidied is the song as it was";
        EXPECT_EQ(said(program), "");
        program.command(Command::mnuUp);
        EXPECT_EQ(lineOf(program, 2), "B   C#");
        EXPECT_EQ(said(program).find("This song writes"), std::string::npos);
    }
}

TEST(ChangedWords, ArePutBackAndLeftAlone) {
    const ScratchFolder folder;
    Program program(folder.add(u"song.txt", "G  C\r\nla la\r\nBad Dad\r\nla\r\n"));
    program.waitForKeyButtons();
    program.command(Command::mnuUp);
    EXPECT_EQ(lineOf(program, 2), "Cad D#ad");
    EXPECT_EQ(said(program), "1 line of words was changed");
    pressButton(program, "Put It Back");
    EXPECT_EQ(lineOf(program, 2), "Bad Dad");
    program.editor().select({program.editor().firstOfLine(2), program.editor().firstOfLine(2) + 3});
    EXPECT_EQ(program.editor().selectionStyle().colour, std::optional(Rgb{0, 0, 0}));
    EXPECT_EQ(said(program), "");
    program.command(Command::mnuUp);
    EXPECT_EQ(lineOf(program, 2), "Bad Dad") << "left alone";
    EXPECT_EQ(lineOf(program, 0), "A  D ");
    EXPECT_EQ(said(program), "");
    // A change that makes it untrue takes the message with it.
    program.command(Command::mnuEditUndo);
    program.command(Command::mnuEditUndo);
    program.command(Command::mnuEditUndo);
    program.command(Command::mnuUp);
    EXPECT_EQ(said(program), "1 line of words was changed");
    program.command(Command::mnuEditUndo);
    program.waitUntil([&] { return said(program).empty(); });
    EXPECT_EQ(said(program), "");
}

TEST(ChangedWords, AreNotPutOverWhatHasComeSince) {
    const ScratchFolder folder;
    Program program(folder.add(u"song.txt", "G  C\r\nla la\r\nBad Dad\r\n"));
    program.waitForKeyButtons();
    program.command(Command::mnuUp);
    ASSERT_EQ(said(program), "1 line of words was changed");
    // Pressed before the line at the foot has heard of the edit.
    const StatusNote note = program.form->statusLine().notes()[0];
    program.editor().select({5, static_cast<std::int32_t>(program.editor().text().chars.size())});
    program.editor().type(u"oh");
    note.actions[1].run();
    EXPECT_EQ(lineOf(program, 0), "G# C#oh");
    EXPECT_EQ(program.text().find("Bad"), std::string::npos);
}

TEST(OldDiagrams, AreMovedByTheirFaces) {
    constexpr char song[] = R"({\rtf1\ansi\deff0{\fonttbl{\f0\fmodern\fcharset0 Courier New;})"
                            R"({\f1\fnil\fcharset0 Melvorin 15;}{\f2\fnil\fcharset0 Melvorin 20;}})"
                            R"(\pard\f0\fs20 C  G\par {\f1 q}  {\f2 we}\par la la\par})";
    const ScratchFolder folder;
    Program program(folder.add(u"song.rtf", song));
    program.waitForKeyButtons();
    program.command(Command::mnuUp);
    program.command(Command::mnuUp);
    EXPECT_EQ(said(program), "3 diagrams show the old chords");
    pressButton(program, "Move Them Too");
    const std::int32_t diagrams = program.editor().firstOfLine(1);
    // From D to E, and from F#, even, to G#.
    EXPECT_EQ(shown(program.editor().faceAt(diagrams)), "Melvorin 21");
    EXPECT_EQ(said(program), "");
    program.command(Command::mnuEditUndo);
    program.waitUntil([&] { return !said(program).empty(); });
    EXPECT_EQ(said(program), "3 diagrams show the old chords");
}

TEST(SongKey, IsShownToldAndFollowed) {
    const ScratchFolder folder;
    Program program(folder.add(
        u"song.txt", "F    A#   C7   F\r\nla   la   la   la\r\nDm   A#   C7   F\r\nla la\r\n"));
    program.waitForKeyButtons();
    StatusLine& line = program.form->statusLine();
    const Text ini = programIniPath(program.program);
    program.waitUntil([&] { return !line.keyText().empty(); });
    EXPECT_EQ(shown(line.keyText()), "Key: F");
    program.command(Command::mnuRespell);
    EXPECT_EQ(lineOf(program, 0), "F    Bb   C7   F");
    EXPECT_EQ(lineOf(program, 2), "Dm   Bb   C7   F");
    program.command(Command::mnuByKey);
    EXPECT_EQ((program.profiles.values[{ini, u"Key", u"FollowKey"}]), u"1");
    EXPECT_EQ(shown(program.form->menuBar().caption(Command::mnuByKey)), ">>    Follow the Key");
    EXPECT_EQ(shown(program.form->menuBar().caption(Command::mnuSus)), "        Use Sharps");
    program.command(Command::mnuDwn);
    EXPECT_EQ(lineOf(program, 0), "E    A    B7   E");
    program.command(Command::mnuDwn);
    EXPECT_EQ(lineOf(program, 0), "Eb   Ab   Bb7  Eb");
    EXPECT_EQ(shown(line.keyText()), "Key: Eb");
    program.command(Command::mnuUp);
    program.command(Command::mnuUp);
    EXPECT_EQ(lineOf(program, 2), "Dm   Bb   C7   F");
    // A key that is told moves with the song, and back with Undo; of two names it has that on the
    // side where the song stood.
    program.form->keyWork().tellKey(Key{2, true});
    program.command(Command::mnuUp);
    EXPECT_EQ(shown(line.keyText()), "Key: D#m");
    program.command(Command::mnuEditUndo);
    program.waitUntil([&] { return shown(line.keyText()) != "Key: D#m"; });
    EXPECT_EQ(shown(line.keyText()), "Key: Dm");
    program.command(Command::mnuSus);
    EXPECT_EQ((program.profiles.values[{ini, u"Key", u"FollowKey"}]), u"0");
    EXPECT_EQ(shown(program.form->menuBar().caption(Command::mnuByKey)), "         Follow the Key");
    program.command(Command::mnuUp);
    EXPECT_EQ(lineOf(program, 0), "F#   B    C#7  F#");
}

}  // namespace
}  // namespace melvorin::testing
