// The key change on the real editor, through the real window.
#include <numeric>

#include "../core/RtfCharts.h"
#include "Controls.h"
#include "chords/DocumentKey.h"

namespace melvorin::testing {
namespace {

constexpr Rgb kBlack{0, 0, 0};

Rgb colourAt(RichEdit& editor, std::int32_t position) {
    editor.select({position, position + 1});
    return editor.selectionStyle().colour.value_or(Rgb{1, 2, 3});
}

TEST(KeyChange, MovesChordLinesAndColoursThem) {
    const ScratchFolder folder;
    Program program;
    ASSERT_TRUE(program.start(folder.add(
        u"song.txt", "C     Am7/G   F#m7(9)\r\nIs a song by the river\r\n\r\nG7  C\r\n")));
    program.waitForKeyButtons();
    program.editor().select({30, 30});
    const std::int16_t before = program.history().count();
    program.command(Command::mnuUp);

    EXPECT_EQ(program.text(), "C#    A#m7/G# Gm7(9) \rIs a song by the river\r\rG#7 C#");
    EXPECT_EQ(program.history().count(), before + 1);
    EXPECT_EQ(program.editor().selection(), (Selection{30, 30}));
    EXPECT_TRUE(program.state().dirty && program.state().undo);
    EXPECT_EQ(program.form->halfSteps(), 1);
    EXPECT_EQ(colourAt(program.editor(), 0), kChordColour);
    EXPECT_EQ(colourAt(program.editor(), 25), kBlack);
    EXPECT_EQ(colourAt(program.editor(), 48), kChordColour);

    program.command(Command::mnuEditUndo);
    EXPECT_EQ(program.text(), "C     Am7/G   F#m7(9)\rIs a song by the river\r\rG7  C");
    EXPECT_EQ(colourAt(program.editor(), 0), kBlack);
    program.command(Command::mnuEditRedo);
    program.command(Command::mnuDwn);
    EXPECT_EQ(program.text(), "C     Am7/G   F#m7(9)\rIs a song by the river\r\rG7  C ");
    EXPECT_EQ(program.form->halfSteps(), 0);
}

TEST(KeyChange, SpellingIsChosenOnceAndMarked) {
    const ScratchFolder folder;
    Program program(folder.add(u"song.txt", "C  D\r\n"));
    const auto captions = [&] {
        return std::pair(shown(program.form->menuBar().caption(Command::mnuSus)),
                         shown(program.form->menuBar().caption(Command::mnuBem)));
    };
    program.command(Command::mnuBem);
    EXPECT_EQ(captions(),
              std::pair(std::string("        Use Sharps"), std::string(">>    Use Flats")));
    EXPECT_FALSE(program.state().dirty);
    program.command(Command::mnuUp);
    EXPECT_EQ(program.text(), "Db Eb");
    program.command(Command::mnuSus);
    EXPECT_EQ(captions(),
              std::pair(std::string(">>    Use Sharps"), std::string("         Use Flats")));
    program.command(Command::mnuUp);
    EXPECT_EQ(program.text(), "D  E ");
    program.command(Command::mnuUp);
    EXPECT_EQ(program.text(), "D# F ");
}

Program* running = nullptr;
int looksWhileRunning = 0;

// Runs inside the modal loop of the key change, where nothing else may begin.
void CALLBACK lookWhileRunning(HWND, UINT, UINT_PTR, DWORD) {
    if (::IsWindowEnabled(running->form->handle()))
        return;
    ++looksWhileRunning;
    for (const Command item : {Command::mnuUp, Command::mnuDwn, Command::mnuSus, Command::mnuBem})
        EXPECT_FALSE(running->form->isEnabled(item));
    EXPECT_FALSE(running->form->toolbar().isEnabled(Command::mnuUp));
    running->command(Command::mnuFileNew);
    ::SendMessageW(running->form->handle(), WM_CLOSE, 0, 0);
}

// While the window is up, neither menu nor button starts another change.
TEST(KeyChange, ItsCommandsAreOffMeanwhile) {
    const ScratchFolder folder;
    Program program(folder.add(u"song.txt", "C  D\r\n"));
    program.waitForKeyButtons();
    running = &program;
    looksWhileRunning = 0;
    const UINT_PTR timer = ::SetTimer(nullptr, 0, 1, lookWhileRunning);
    for (int i = 0; i < 40 && looksWhileRunning == 0; ++i)
        program.command(i % 2 == 0 ? Command::mnuUp : Command::mnuDwn);
    ::KillTimer(nullptr, timer);
    EXPECT_GT(looksWhileRunning, 0);
    EXPECT_FALSE(program.ended);
    EXPECT_TRUE(program.form->isEnabled(Command::mnuUp));
    EXPECT_EQ(program.form->keyTag(), keyTag(program.form->halfSteps()));
}

std::vector<int> drawn;

LRESULT CALLBACK watchBar(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                          DWORD_PTR) {
    if (message == PBM_SETPOS)
        drawn.push_back(static_cast<int>(wParam));
    return subclassDefault(watchBar, id, window, message, wParam, lParam);
}

// The bar goes through all its steps, and shows those that a screen can.
TEST(KeyChange, DrawsNoMoreThanAScreenShows) {
    std::vector<int> all(100);
    std::iota(all.begin(), all.end(), 1);
    for (const int line : {0, 2, 4})  // the way back, and two lines
        all.push_back(line);
    all.push_back(100);
    const ScratchFolder folder;
    Program program(folder.add(u"song.txt", "C  D\r\nla"));
    for (const int step : {15, 5, 0}) {
        drawn.clear();
        const WhenActive watch("MelvorinFrmCifra", [](HWND window) {
            const HWND bar = ::FindWindowExW(window, nullptr, PROGRESS_CLASSW, nullptr);
            ::SetWindowSubclass(bar, watchBar, 1, 0);
        });
        program.clock.step = step;
        program.command(Command::mnuUp);
        program.clock.step = 0;
        EXPECT_EQ(watch.seen(), 1);
        if (step == 15)
            EXPECT_EQ(drawn, all);
        else if (step == 5)
            EXPECT_EQ(drawn.size(), all.size() / 3);
        else
            EXPECT_TRUE(drawn.empty());
    }
    EXPECT_EQ(program.text(), "D# F \rla");
}

TEST(KeyChange, EmptyDocumentOnlyMovesTheCounter) {
    Program program(kNoSong);
    program.command(Command::mnuDwn);
    EXPECT_EQ(program.form->halfSteps(), -1);
    EXPECT_FALSE(program.state().dirty);
    EXPECT_EQ(program.history().count(), 1);
}

TEST(KeyChange, ButtonsGoOffWithEveryChangeAndComeBackWhenIdle) {
    Program program(kNoSong);
    // Sent, so that no idle moment comes between.
    ::SendMessageW(program.editor().handle(), WM_CHAR, u'C', 1);
    EXPECT_FALSE(program.form->toolbar().isEnabled(Command::mnuUp));
    program.waitForKeyButtons();
    EXPECT_TRUE(program.form->toolbar().isEnabled(Command::mnuUp));
    ::SendMessageW(program.editor().handle(), WM_KEYDOWN, VK_BACK, 1);
    EXPECT_FALSE(program.form->toolbar().isEnabled(Command::mnuDwn));
    EXPECT_FALSE(program.state().saveAs);
}

struct Character {
    char16_t c;
    Text face;
    Rgb colour;
    bool bold;

    friend bool operator==(const Character&, const Character&) = default;
};

std::vector<Character> charactersOf(RichEdit& editor, std::int32_t count) {
    const Text text = editor.text().chars;
    std::vector<Character> characters;
    for (std::int32_t i = 0; i < count; ++i) {
        editor.select({i, i + 1});
        const SelectionStyle style = editor.selectionStyle();
        characters.push_back(
            {text[static_cast<std::size_t>(i)], *style.face, *style.colour, *style.bold});
    }
    return characters;
}

// What is not a chord stays as it is, and so does the formatting of what is; a diagram is no note
// although its character may be a letter.
TEST(KeyChange, KeepsFormattingAndDiagrams) {
    const Text plain = u"Courier New";
    const Text diagram = u"Melvorin 01";
    constexpr Rgb blue{0, 0, 255};
    const std::vector<Character> expected = {
        {u'C', plain, kChordColour, false}, {u'#', plain, kChordColour, false},
        {u' ', plain, kChordColour, false}, {u'G', plain, kChordColour, true},
        {u'#', plain, kChordColour, true},  {u'm', plain, kChordColour, false},
        {u' ', plain, kChordColour, false}, {u'A', diagram, blue, false},
        {u' ', plain, kChordColour, false}, {u' ', plain, kChordColour, false},
        {u'F', plain, kChordColour, false}, {u'#', plain, kChordColour, false},
        {u'\r', plain, kBlack, false},      {u'b', plain, kBlack, true},
        {u'y', plain, kBlack, false},
    };
    const std::string song =
        R"({\rtf1\ansi\ansicpg1252\deff0{\fonttbl{\f0\fmodern\fcharset0 Courier New;})"
        R"({\f1\fnil\fcharset0 Melvorin 01;}}{\colortbl ;\red0\green0\blue255;\red0\green0\blue0;})"
        R"(\pard\cf2\f0\fs20 C  {\b G}m \cf1\f1\fs48 A\cf2\f0\fs20    F\par {\b b}y the river\par)";
    // A table cannot be mapped exactly, so its document goes the slow way.
    const std::string table = R"(\trowd\cellx2000\pard\intbl x\cell\row\pard end\par)";
    for (const std::string& rtf : {song + "}", song + table + "}"}) {
        const ScratchFolder folder;
        Program program(folder.add(u"song.rtf", rtf));
        program.command(Command::mnuUp);
        const auto got = charactersOf(program.editor(), static_cast<int>(expected.size()));
        for (std::size_t i = 0; i < expected.size(); ++i)
            EXPECT_EQ(got[i], expected[i])
                << i << " " << shown(got[i].face) << " " << shown(Text(1, got[i].c));
    }
}

// The row of a table ends in CR LF, which is one line end and two positions.
TEST(KeyChange, FindsTheChordLineBehindATable) {
    const ScratchFolder folder;
    Program program;
    ASSERT_TRUE(program.start(folder.add(
        u"song.rtf", R"({\rtf1\ansi\deff0{\fonttbl{\f0\fcharset0 Courier New;}}\pard la\par)"
                     R"(\trowd\cellx2000\cellx4000\pard\intbl x\cell y\cell\row)"
                     R"(\pard C  G/B\par by the river\par})")));
    const auto position = [&](TextView what) {
        return static_cast<std::int32_t>(program.editor().text().chars.find(what));
    };
    const std::int32_t begin = position(u"river");
    ASSERT_GT(begin, 0);
    program.editor().select({begin, begin + 5});
    program.command(Command::mnuUp);
    EXPECT_NE(program.text().find("\nC# G#/C\rby the river"), std::string::npos) << program.text();
    EXPECT_EQ(shown(program.editor().textBetween(program.editor().selection())), "river");
    EXPECT_EQ(colourAt(program.editor(), position(u"G#")), kChordColour);
    EXPECT_EQ(colourAt(program.editor(), position(u"y\t")), kBlack);
}

// Lines that the key change leaves over, moved afterwards: in one load, and, with a table, one by
// one.
TEST(KeyChange, MovesWhatItLeftOver) {
    const ScratchFolder folder;
    for (const std::string table :
         {"", R"(\trowd\cellx2000\cellx4000\pard\intbl C7\cell F\cell\row)"}) {
        Program program;
        ASSERT_TRUE(program.start(folder.add(
            u"song.rtf",
            R"({\rtf1\ansi\deff0{\fonttbl{\f0\fcharset0 Courier New;}}\pard la\par)" + table +
                R"(\pard Cmaj7\tab{\i G} |\par by the river\line |Am\'a0\'a0G/B|\par C\par})")));
        RichEdit& editor = program.editor();
        program.command(Command::mnuUp);
        const LeftOver found = leftOverInDocument(editor);
        ASSERT_EQ(found.lines.size(), table.empty() ? 2U : 3U) << program.text();
        moveOthersInDocument(
            editor,
            [](const LeftOver& left, TextView) {
                std::vector<OtherMove> moves;
                for (const LeftOverLine& line : left.lines)
                    moves.push_back({line, KeyChange(Direction::Up, Spelling::Sharps)});
                return moves;
            },
            [] {});
        const Text text = editor.text().chars;
        EXPECT_NE(text.find(u"\rby the river"), Text::npos);
        EXPECT_EQ(text.find(u"C#7\tF#\t") != Text::npos, !table.empty()) << shown(text);
        EXPECT_NE(text.find(u"C#maj7  G# |\r"), Text::npos) << shown(text);
        EXPECT_NE(text.find(u"|A#m\u00A0G#/C|\rC#"), Text::npos) << shown(text);
        const auto note = static_cast<std::int32_t>(text.find(u"G# |"));
        EXPECT_EQ(colourAt(editor, note), kChordColour);
        EXPECT_EQ(editor.selectionStyle().italic, std::optional(true));
        EXPECT_EQ(colourAt(editor, static_cast<std::int32_t>(text.find(u"river"))), kBlack);
    }
}

// A picture among the chords is no blank that a longer name may take.
TEST(KeyChange, KeepsThePicturesBetweenChords) {
    const ScratchFolder folder;
    Program program;
    ASSERT_TRUE(program.start(folder.add(
        u"song.rtf", R"({\rtf1\ansi\deff0{\fonttbl{\f0\fcharset0 Courier New;}}\pard C )" +
                         std::string(charts::kPicture) + R"( G\par by the river\par})")));
    const auto pictures = [&] {
        const std::string rtf = program.editor().rtf();
        std::size_t count = 0;
        for (std::size_t at = rtf.find("{\\pict"); at != std::string::npos;
             at = rtf.find("{\\pict", at + 1))
            ++count;
        return count;
    };
    ASSERT_EQ(pictures(), 1u);
    for (int i = 0; i < 13; ++i)
        program.command(Command::mnuUp);
    EXPECT_EQ(pictures(), 1u);
    EXPECT_EQ(program.text().substr(0, 2), "C#");
}

TEST(KeyChange, UpAndDownAgainAndAgainComesBack) {
    const ScratchFolder folder;
    const std::string chart = "C     Am7/G   Gm7(9)     F\r\nwords of the song go here\r\n";
    std::string song;
    for (int i = 0; i < 50; ++i)
        song += chart;
    Program program(folder.add(u"song.txt", song));
    // Growing chords may lengthen a line by blanks, and they stay; nothing else may change.
    const auto withoutTrailingBlanks = [&] {
        std::string lines;
        const Text text = program.editor().text().chars;
        for (const TextView line : splitLines(text))
            lines += shown(line.substr(0, line.find_last_not_of(u' ') + 1)) + "\n";
        return lines;
    };
    const std::string before = withoutTrailingBlanks();
    for (int round = 0; round < 3; ++round) {
        for (int i = 0; i < 12; ++i)
            program.command(Command::mnuUp);
        for (int i = 0; i < 12; ++i)
            program.command(Command::mnuDwn);
    }
    EXPECT_EQ(withoutTrailingBlanks(), before);
}

TEST(KeyChange, KeepsTheViewWhereItWas) {
    const ScratchFolder folder;
    std::string song;
    for (int i = 0; i < 400; ++i)
        song += "C     Am7/G   Gm7(9)     F\r\nwords of the song go here\r\n";
    Program program(folder.add(u"song.txt", song));
    const std::int32_t position = program.editor().firstOfLine(501) + 7;
    program.editor().select({position, position + 3});
    program.editor().scrollCaretIntoView();
    const std::int32_t top = program.editor().firstVisibleLine();
    ASSERT_GT(top, 300);
    program.command(Command::mnuUp);
    EXPECT_EQ(program.editor().firstVisibleLine(), top);
    EXPECT_EQ(program.editor().lineOf(program.editor().selection().begin), 501);
    EXPECT_EQ(shown(program.editor().textBetween(program.editor().selection())), "f t");
}

std::vector<WPARAM> tipsSwitched;
LRESULT CALLBACK watchTips(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                           DWORD_PTR) {
    if (message == TTM_ACTIVATE)
        tipsSwitched.push_back(wParam);
    return subclassDefault(watchTips, id, window, message, wParam, lParam);
}

void CALLBACK closeMenu(HWND window, UINT, UINT_PTR timer, DWORD) {
    if (tipsSwitched.empty())
        return;
    EXPECT_EQ(tipsSwitched, std::vector<WPARAM>{FALSE}) << "while the menu is open";
    ::KillTimer(window, timer);
    ::EndMenu();
}

// The tip of the button would lie over its own menu.
TEST(KeyButtons, NoTipCoversTheMenu) {
    Program program(kNoSong);
    const HWND bar = program.form->toolbar().handle();
    const auto tips = reinterpret_cast<HWND>(::SendMessageW(bar, TB_GETTOOLTIPS, 0, 0));
    ASSERT_NE(tips, nullptr);
    ::SetWindowSubclass(tips, watchTips, 79, 0);
    tipsSwitched.clear();
    ::SetTimer(program.form->handle(), 4711, 50, closeMenu);
    NMTOOLBARW dropped{};
    dropped.hdr = {bar, 0, static_cast<UINT>(TBN_DROPDOWN)};
    ::SendMessageW(program.form->handle(), WM_NOTIFY, 0, lparamOf(&dropped));
    EXPECT_EQ(tipsSwitched, (std::vector<WPARAM>{FALSE, TRUE}));
}

}  // namespace
}  // namespace melvorin::testing
