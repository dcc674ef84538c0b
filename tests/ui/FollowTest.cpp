// Chords that follow the words, in the real control and by its keys: what comes of each, and what
// one Undo makes of it.
#include "DrawnSong.h"
#include "base/ProgramSettings.h"

namespace melvorin::testing {
namespace {

struct Case {
    std::string_view before;
    std::string_view keys;
    std::string_view after;
    // Steps of Undo; the song is then what it was.
    int steps = 1;
};

const Case kCases[] = {
    // In the words.
    {"Am      G\nOver ^the hill", "wide ", "Am           G\nOver wide ^the hill", 5},
    {"Am   G    C\nOver the^ hill", "<bs><bs><bs>river", "Am   G      C\nOver river^ hill", 8},
    {"Am   G    C\nOver ^the ^hill", "<cut>", "Am   G C\nOver ^hill"},
    {"Am   G    C\nOver ^the ^hill", "<del>", "Am   G C\nOver ^hill"},
    {"Am   G    C\nOver ^the hill", "<paste>", "Am           G    C\nOver hop hop ^the hill"},
    {"C  G\nla la^", "!", "C  G\nla la!^"},
    // Lines taken apart and put together.
    {"Am      G\nOver the^ hill", "<enter>", "Am\nOver the\nG\n^ hill"},
    {"Am      G\nOver the^ hill", "<shift+enter>", "Am\nOver the\nG\n^ hill"},
    {"C\nla\nG\n^lo", "<bs>", "C G\nla^lo"},
    {"C\nla^\nG\nlo", "<del>", "C G\nla^lo"},
    {"C  G\n^\nla", "<bs>", "C  G^\nla"},
    {"Am  G\n^la la", "<enter>", "\nAm  G\n^la la"},
    // In the chord line.
    {"C^    G    Am\nla   la   la", "m7", "Cm7^  G    Am\nla   la   la", 2},
    {"C^ G  Am\nla la la", "m7", "Cm7^ G Am\nla la la", 2},
    {"Cm7^  G\nla   la", "<bs><bs>", "C^    G\nla   la", 2},
    {"C  ^G  Am\nla la la", " ", "C   ^G Am\nla la la"},
    {"C   ^G  Am\nla  la la", "<bs>", "C  ^G   Am\nla  la la"},
    {"C  ^G  Am\nla la la", "<alt+right>", "C   ^G Am\nla la la"},
    {"C   ^G  Am\nla  la la", "<alt+left>", "C  ^G   Am\nla  la la"},
    {"^C\nla la la", "<alt+shift+right>", "   ^C\nla la la"},
    // Tablature.
    {"e|--^0--1--|", "7<del><del><del>", "e|--7---^--|", 2},
    {"e|--0^--1--|", "<bs>", "e|--^---1--|"},
};

TEST(ChordsFollow, ByEachKeyAndBackByUndo) {
    for (const Case& c : kCases) {
        SCOPED_TRACE(std::string(c.before) + c.keys.data());
        const Drawn song(c.before);
        const ScratchFolder folder;
        Program program(folder.add(u"song.txt", song.bytes()));
        program.clipboard.plain = u"hop hop ";
        program.editor().select(song.selection);
        program.pump();
        const std::int16_t snapshots = program.history().count();
        give(program, program.editor(), c.keys);
        EXPECT_EQ(drawn(program.editor()), c.after);
        EXPECT_EQ(program.history().count(), snapshots + c.steps);
        for (int i = 0; i < c.steps; ++i)
            program.command(Command::mnuEditUndo);
        EXPECT_EQ(program.editor().text().chars, song.chars);
        for (int i = 0; i < c.steps; ++i)
            program.command(Command::mnuEditRedo);
        EXPECT_EQ(program.editor().text().chars, Drawn(c.after).chars);
    }
}

// Songs as they are written: what comes of it, and back to the beginning by Undo.
TEST(ChordsFollow, AsASongIsWritten) {
    const struct {
        const char* what;
        std::string_view before;
        std::string_view keys;
        std::string_view after;
    } songs[] = {
        {"words first", "^",
         "Over the hill<home><ctrl+enter>Am<enter><ctrl+right><ctrl+right>"
         "<ctrl+enter>G<enter>wide ",
         "Am            G\nOver the wide ^hill"},
        {"chords first", "^", "Am   G<enter>Over the hill", "Am   G\nOver the hill^"},
        {"under chords that are there", "Am   G\n^\nla", "Ovr<bs>er the", "Am   G\nOver the^\nla"},
        {"a slip at the end", "Am   G\nOver the hilk^", "<bs>l", "Am   G\nOver the hill^"},
        {"a slip in the middle", "Am   G   C\nOvet^ the hill", "<bs>r",
         "Am   G   C\nOver^ the hill"},
        {"a verse pasted within a line", "Am   G\nOver ^hill", "<paste>",
         "Am\nOver \nC   F\nfar away\nG\n^hill"},
        {"a line parted twice and joined again", "Am   G   C\nOver ^the hill",
         "<enter><ctrl+right><enter><bs><home><bs>", "Am   G   C\nOver ^the hill"},
        {"two lines of chords", "     D7\nC    G\nover ^hills", "wide ",
         "          D7\nC         G\nover wide ^hills"},
        {"words of chord letters", "C   G\nBad ^Dad", "Mad ", "C       G\nBad Mad ^Dad"},
        {"a chord put between two", "C         G\nover wide^ hills", "<up><shift+tab>Am",
         "C    Am^   G\nover wide hills"},
    };
    for (const auto& song : songs) {
        SCOPED_TRACE(song.what);
        const Drawn before(song.before);
        const ScratchFolder folder;
        Program program(folder.add(u"song.txt", before.bytes()));
        program.clipboard.plain = u"C   F\r\nfar away\r\n";
        program.editor().select(before.selection);
        program.pump();
        const std::int16_t snapshots = program.history().count();
        give(program, program.editor(), song.keys);
        EXPECT_EQ(drawn(program.editor()), song.after);
        const int steps = program.history().count() - snapshots;
        EXPECT_GT(steps, 0);
        for (int i = 0; i < steps; ++i)
            program.command(Command::mnuEditUndo);
        EXPECT_EQ(program.editor().text().chars, before.chars);
    }
}

// A double click takes the chord alone; with the mouse a stretch of words is cut as with keys.
TEST(ChordsFollow, ByTheMouse) {
    const ScratchFolder folder;
    Program program(folder.add(u"song.txt", "Am7  G  C\r\nOver the hill\r\n"));
    RichEdit& editor = program.editor();
    const auto click = [&](UINT message, std::int32_t position) {
        const POINT at = editor.pointOf(position);
        ::SendMessageW(editor.handle(), message, MK_LBUTTON, MAKELPARAM(at.x + 1, at.y + 4));
    };
    click(WM_LBUTTONDBLCLK, 1);
    EXPECT_EQ(editor.selection(), (Selection{0, 3}));
    press(program, editor.handle(), 'X', {VK_CONTROL});
    EXPECT_EQ(drawn(editor), "^     G  C\nOver the hill");
    click(WM_LBUTTONDOWN, 15);
    click(WM_MOUSEMOVE, 19);
    click(WM_LBUTTONUP, 19);
    press(program, editor.handle(), VK_DELETE, {});
    EXPECT_EQ(drawn(editor), "     G C\nOver ^hill");
}

TEST(ChordsFollow, OnlyWhileSwitchedOn) {
    const ScratchFolder folder;
    const Text path = folder.add(u"song.txt", "Am      G\r\nOver the hill\r\n");
    Program program(path);
    const Text ini = programIniPath(program.program);
    EXPECT_TRUE(program.form->menuBar().isChecked(Command::mnuFollow));
    program.command(Command::mnuFollow);
    EXPECT_FALSE(program.form->menuBar().isChecked(Command::mnuFollow));
    EXPECT_EQ((program.profiles.values[{ini, u"Edit", u"Follow"}]), u"0");
    program.editor().select({15, 15});
    give(program, program.editor(), "wide ");
    EXPECT_EQ(program.text(), "Am      G\rOver wide the hill");
    program.command(Command::mnuFollow);
    EXPECT_EQ((program.profiles.values[{ini, u"Edit", u"Follow"}]), u"1");
    program.editor().select({15, 15});
    give(program, program.editor(), "x");
    EXPECT_EQ(program.text(), "Am       G\rOver xwide the hill");
}

// Blanks on the way to a place are no change until something is written there.
TEST(ChordsFollow, AVisitToTheChordsLeavesNothingBehind) {
    struct Visit {
        std::string_view before;
        std::string_view keys;
        std::string_view after;
        int steps;
    };
    const Visit visits[] = {
        {"Am\nOver the ^hill", "<ctrl+enter>", "Am       ^\nOver the hill", 0},
        {"Am\nOver the ^hill", "<ctrl+enter><enter>", "Am\nOver the ^hill", 0},
        {"Am\nOver the ^hill", "<ctrl+enter>G<down>", "Am       G\nOver the ^hill", 1},
        {"Over the ^hill", "<ctrl+enter>G7<enter>", "         G7\nOver the ^hill", 2},
        {"Over the ^hill", "<ctrl+enter><down>", "Over the ^hill", 0},
        {"A^m\nOver the hill", "<tab>", "Am   ^\nOver the hill", 0},
        {"A^m\nOver the hill", "<tab><tab>C", "Am       C^\nOver the hill", 1},
        {"Am   G^\nOver the hill", "<shift+tab>", "Am   ^G\nOver the hill", 0},
    };
    for (const Visit& visit : visits) {
        SCOPED_TRACE(std::string(visit.before) + visit.keys.data());
        const Drawn song(visit.before);
        const ScratchFolder folder;
        Program program(folder.add(u"song.txt", song.bytes()));
        program.editor().select(song.selection);
        program.pump();
        const std::int16_t snapshots = program.history().count();
        give(program, program.editor(), visit.keys);
        EXPECT_EQ(drawn(program.editor()), visit.after);
        EXPECT_EQ(program.history().count(), snapshots + visit.steps);
        EXPECT_EQ(program.state().dirty, visit.steps > 0);
        // A command finds none of it, nor does the caret elsewhere.
        program.command(Command::mnuSelectAll);
        if (visit.steps == 0) {
            EXPECT_EQ(program.editor().text().chars, song.chars);
        }
        for (int i = 0; i < visit.steps; ++i)
            program.command(Command::mnuEditUndo);
        EXPECT_EQ(program.editor().text().chars, song.chars);
    }
}

// Colours and diagrams keep their characters.
TEST(ChordsFollow, FormatsStayWithTheirCharacters) {
    constexpr char song[] =
        R"({\rtf1\ansi\deff0{\fonttbl{\f0\fmodern\fcharset0 Courier New;})"
        R"({\f1\fnil\fcharset0 Melvorin 01;}}{\colortbl ;\red0\green0\blue255;})"
        R"(\pard\f0\fs20\cf1 Am  {\b G}  {\f1 a}\cf0\par la la {\i la}\par})";
    const ScratchFolder folder;
    Program program(folder.add(u"song.rtf", song));
    const std::string before = program.text();
    RichEdit& editor = program.editor();
    const auto styleOf = [&](char16_t c, std::size_t from) {
        const auto at = static_cast<std::int32_t>(editor.text().chars.find(c, from));
        editor.select({at, at + 1});
        return editor.selectionStyle();
    };
    const auto expectFormats = [&] {
        EXPECT_EQ(styleOf(u'G', 0).bold, true);
        EXPECT_EQ(styleOf(u'G', 0).colour, (Rgb{0, 0, 255}));
        EXPECT_EQ(styleOf(u'a', 5).face, u"Melvorin 01");
        EXPECT_EQ(styleOf(u' ', 0).bold, false);
    };
    const std::size_t words = before.find("la la");
    const auto place = static_cast<std::int32_t>(words) + 3;
    editor.select({place, place});
    give(program, editor, "oh ");
    EXPECT_EQ(program.text(), "Am     G  a\rla oh la la") << "was " << before;
    expectFormats();
    // The second half gets its chords with all that they are.
    const auto half = static_cast<std::int32_t>(program.text().find("la la"));
    editor.select({half, half});
    give(program, editor, "<enter>");
    EXPECT_EQ(program.text(), "Am\rla oh \r G  a\rla la");
    expectFormats();
}

// Columns mean nothing in other fonts and at the middle of the page.
TEST(ChordsFollow, OnlyWhereColumnsMeanSomething) {
    for (const bool isCentred : {false, true}) {
        const ScratchFolder folder;
        Program program(folder.add(u"song.txt", "C  G\r\nla la\r\n"));
        program.editor().select({0, 10});
        if (isCentred)
            program.command(Command::alignCenter);
        else
            program.editor().setSelectionFace(u"Arial");
        program.editor().select({5, 5});
        give(program, program.editor(), "x");
        EXPECT_EQ(program.text(), "C  G\rxla la") << isCentred;
    }
}

TEST(ChordsFollow, OnStageToo) {
    const ScratchFolder folder;
    Program program(folder.add(u"song.txt", "Am      G\r\nOver the hill\r\n"));
    program.command(Command::mnuFullScreen);
    frmFScreen& stage = program.form->fullScreen();
    program.waitUntil([&] { return stage.panel().isPrepared(); });
    stage.FSRTB().select({15, 15});
    give(program, stage.FSRTB(), "wide <bs>");
    EXPECT_EQ(shown(stage.FSRTB().text().chars), "Am          G\rOver widethe hill");
    EXPECT_EQ(program.text(), "Am          G\rOver widethe hill") << "and in the song";
    stage.FSRTB().select({18, 23});
    give(program, stage.FSRTB(), "<cut>");
    EXPECT_EQ(program.text(), "Am     G\rOverthe hill");
}

// What an input method composes is one change.
TEST(ChordsFollow, ACompositionCountsAtItsEnd) {
    const ScratchFolder folder;
    Program program(folder.add(u"song.txt", "C  G\r\nla la\r\n"));
    program.editor().select({8, 8});
    program.pump();
    const HWND control = program.editor().handle();
    ::SendMessageW(control, WM_IME_STARTCOMPOSITION, 0, 0);
    for (const char16_t c : Text(u"oh "))
        ::SendMessageW(control, WM_CHAR, c, 1);
    EXPECT_EQ(program.text(), "C  G\rla oh la");
    ::SendMessageW(control, WM_IME_ENDCOMPOSITION, 0, 0);
    EXPECT_EQ(program.text(), "C     G\rla oh la");
}

}  // namespace
}  // namespace melvorin::testing
