// The creator of charts: the real window over the real editor.
#include <cstring>

#include "Controls.h"
#include "chords/DocumentKey.h"
#include "chords/FrmCifraCreator.h"

namespace melvorin::testing {
namespace {

using Creator = FrmCifraCreator;

// Gives the command and runs `steps` while the window is open; then it must be gone by itself.
void creatorRun(Program& program, const std::function<void(Creator&)>& steps) {
    const WhileOpen run(L"MelvorinFrmCifraCreator", [&](HWND window) {
        // A second one does not begin meanwhile.
        program.command(Command::mnuEditCifra);
        steps(*static_cast<Creator*>(
            reinterpret_cast<Window*>(::GetWindowLongPtrW(window, GWLP_USERDATA))));
    });
    program.command(Command::mnuEditCifra);
    EXPECT_EQ(run.seen(), 1) << "the window did not come";
}

void press(const Creator& creator, int id) {
    ::SendMessageW(creator.handle(), WM_COMMAND, MAKEWPARAM(id, BN_CLICKED),
                   lparamOf(creator.item(id)));
}

// Types the song into the box, as a paste at its caret does.
void fill(Program& program, Creator& creator, TextView song) {
    creator.rb1().select({0, -1});
    creator.rb1().replaceSelection(Text(song));
    const Text chars = creator.rb1().text().chars;
    Text before;
    program.waitUntil([&] {
        before.clear();
        for (const SourceLine& line : creator.draft().song().source)
            before.append(line.text).append(line.end);
        return before == chars;
    });
}

void key(const Creator& creator, int row, WORD virtualKey) {
    const HWND lines = creator.item(Creator::kLines);
    ListView_SetItemState(lines, -1, 0, LVIS_SELECTED);
    ListView_SetItemState(lines, row, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
    ::SendMessageW(lines, WM_KEYDOWN, virtualKey, 1);
}

std::string cell(const Creator& creator, int row, int column) {
    return cellOf(creator.item(Creator::kLines), row, column);
}

std::string entries(const Creator& creator, int list) {
    std::string all;
    for (const std::string& row : rowsOf(creator.item(list)))
        all += row + ";";
    return all;
}

void pick(const Creator& creator, int list, int entry) {
    chooseRow(creator.item(list), entry);
}

SelectionStyle styleAt(RichEdit& editor, std::int32_t position) {
    editor.select({position, position + 1});
    return editor.selectionStyle();
}

bool isInPlace(const Creator& creator) {
    return ::IsDlgButtonChecked(creator.handle(), Creator::kInPlace) == BST_CHECKED;
}

constexpr char kFormatted[] =
    "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fmodern\\fcharset0 Courier New;}"
    "{\\f1\\fnil\\fcharset0 Melvorin 05;}}{\\colortbl "
    ";\\red0\\green0\\blue255;}\\pard\\f0\\fs20\\cf1 "
    "Cmaj7 G {\\f1\\fs60 q}\\par\\cf0{\\b la} la\\par [Am]lo}";
constexpr TextView kSong = u"Intro: Am  Gmaj7\rLa [C7alt]la\rDad\r";

TEST(Creator, HasAPageInTheHelp) {
    Program program(kNoSong);
    program.program.present = {u"C:\\Program\\Melvorin.chm"};
    creatorRun(program, [&](Creator& creator) {
        askForHelp(creator.item(Creator::kLines));
        press(creator, IDCANCEL);
    });
    EXPECT_EQ(program.shell.helpShown,
              std::vector<std::string>{"C:\\Program\\Melvorin.chm::creator.html"});
}

TEST(Creator, ShowsWhatItUnderstoodAndMakesTheChart) {
    Program program;
    program.profiles.write(u"Tela", u"Option", u"0", u"C:\\Program\\Melvorin.ini");
    ASSERT_TRUE(program.start());
    const std::int16_t steps = program.history().count();
    creatorRun(program, [&](Creator& creator) {
        fill(program, creator, kSong);
        EXPECT_EQ(shown(creator.rtb2().text().chars),
                  "Intro:\r       Am  G7+\r   C7alt\rLa la\rDad");
        EXPECT_EQ(cell(creator, 0, 1) + cell(creator, 1, 1) + cell(creator, 2, 2),
                  "sectionlyricsDad");
        EXPECT_EQ(cell(creator, 1, 3), "will not change key; has chords that cannot be read");
        EXPECT_EQ(entries(creator, Creator::kResearched), "Am;Gmaj7 = G7+;C7alt;");
        EXPECT_EQ(entries(creator, Creator::kFound), "Am;G7+;");
        EXPECT_EQ(entries(creator, Creator::kNotFound), "C7alt;");
        // A click goes to the place, in the song and in the chart.
        pick(creator, Creator::kNotFound, 0);
        EXPECT_EQ(creator.rb1().selection(), (Selection{21, 26}));
        EXPECT_EQ(shown(creator.rtb2().textBetween(creator.rtb2().selection())), "C7alt");
        press(creator, IDOK);
    });
    EXPECT_EQ(program.text(), "Intro:\r       Am  G7+\r   C7alt\rLa la\rDad");
    EXPECT_EQ(program.history().count(), steps + 1);
    EXPECT_TRUE(program.state().dirty);
    const SelectionStyle words = styleAt(program.editor(), 0);
    const SelectionStyle chords = styleAt(program.editor(), 14);
    EXPECT_EQ(words.face, u"Courier New");
    EXPECT_EQ(words.halfPoints, 20);
    EXPECT_EQ(words.colour, (Rgb{0, 0, 0}));
    EXPECT_EQ(chords.colour, kChordColour);
    EXPECT_EQ(chords.face, u"Courier New");
    program.command(Command::mnuEditUndo);
    EXPECT_EQ(program.text(), "");
}

TEST(Creator, OneKeyChangesAVerdict) {
    Program program(kNoSong);
    creatorRun(program, [&](Creator& creator) {
        fill(program, creator, u"A bad cab\rAm  G\r");
        const struct {
            WORD key;
            std::string verdict;
            std::string chart;
        } cases[] = {{'C', "chords *", "  bad cab\rA\rAm  G"},
                     {'S', "section *", "A bad cab\rAm  G"},
                     {'T', "tablature *", "A bad cab\rAm  G"},
                     {'D', "directive *", "Am  G"},
                     {'X', "directive *", "Am  G"},
                     {'L', "lyrics *", "A bad cab\rAm  G"},
                     {'A', "lyrics", "A bad cab\rAm  G"}};
        for (const auto& example : cases) {
            key(creator, 0, example.key);
            EXPECT_EQ(cell(creator, 0, 1), example.verdict);
            EXPECT_EQ(shown(creator.rtb2().text().chars), example.chart);
        }
        key(creator, 1, 'L');
        EXPECT_EQ(cell(creator, 1, 3), "looks like chords to a key change");
        EXPECT_EQ(captionOf(creator.item(Creator::kSummary)),
                  "Line 2, lyrics: looks like chords to a key change.");
        // Typing elsewhere leaves the verdict where it is.
        creator.rb1().select({0, 0});
        creator.rb1().replaceSelection(u"New\r");
        program.waitUntil([&] { return creator.draft().song().source.size() == 3; });
        EXPECT_EQ(cell(creator, 2, 1), "lyrics *");
        press(creator, IDCANCEL);
    });
    EXPECT_EQ(program.text(), "");
}

TEST(Creator, ConverterTextoRewritesTheSuffixesAndNothingElse) {
    Program program(kNoSong);
    creatorRun(program, [&](Creator& creator) {
        fill(program, creator, u"A-7  C7M  x2\r[G]Cb Cmaj7");
        press(creator, Creator::kCmd1);
        EXPECT_EQ(shown(creator.rtb2().text().chars), "Am7  C7+  x2\r[G]B Cmaj7");
        press(creator, Creator::kMakeChart);
        EXPECT_EQ(shown(creator.rtb2().text().chars), "          x2\rAm7  C7+\rG\rCb Cmaj7");
        press(creator, Creator::kCmd1);
        press(creator, IDOK);
    });
    EXPECT_EQ(program.text(), "Am7  C7+  x2\r[G]B Cmaj7");
}

// Tabs keep their columns, and what nobody sees in the song is not to be seen in the chart.
TEST(Creator, ConverterTextoShowsNoControlCharacters) {
    Program program(kNoSong);
    creatorRun(program, [&](Creator& creator) {
        fill(program, creator, u"C7M\tG\u0001A-\rla\t\tla\u0085");
        const std::string chart = "C7+     G Am\rla              la ";
        press(creator, Creator::kCmd1);
        EXPECT_EQ(shown(creator.rtb2().text().chars), chart);
        press(creator, IDOK);
    });
    EXPECT_EQ(program.text(), "C7+     G Am\rla              la ");
}

// The chart goes where the caret is, on lines of its own; Cancel, Esc and a close change nothing.
TEST(Creator, PutsTheChartAtTheCaretOrNothing) {
    const ScratchFolder folder;
    Program program(folder.add(u"song.txt", "first\r\nlast\r\n"));
    program.editor().select({2, 2});
    for (const int way : {0, 1, 2}) {
        creatorRun(program, [&](Creator& creator) {
            EXPECT_TRUE(isInPlace(creator));
            fill(program, creator, kSong);
            if (way == 0)
                press(creator, IDCANCEL);
            else if (way == 1)
                ::PostMessageW(creator.rb1().handle(), WM_KEYDOWN, VK_ESCAPE, 1);
            else
                ::SendMessageW(creator.handle(), WM_CLOSE, 0, 0);
        });
        EXPECT_EQ(program.text(), "first\rlast");
        EXPECT_FALSE(program.state().dirty);
        EXPECT_EQ(program.editor().selection(), (Selection{2, 2}));
    }
    creatorRun(program, [&](Creator& creator) {
        fill(program, creator, u"");
        press(creator, IDOK);  // nothing to create
        EXPECT_TRUE(creator.isOpen());
        fill(program, creator, u"Am\u266D \\{\u65E5\u2019}\rD7");
        clickOn(creator.item(Creator::kInPlace));
        press(creator, IDOK);
    });
    EXPECT_EQ(program.text(), shown(u"fi\r\rAm\u266D \\{\u65E5\u2019}\rD7\r\rrst\rlast"));
    program.command(Command::mnuEditUndo);
    EXPECT_EQ(program.text(), "first\rlast");
    EXPECT_TRUE(::IsWindowEnabled(program.form->handle()));
    EXPECT_TRUE(program.form->isEnabled(Command::mnuUp));
}

TEST(Creator, OpensFilesAndTellsWhatIsNone) {
    const ScratchFolder folder;
    Program program(kNoSong);
    program.dialogs.choose(FileChoice{folder.add(u"a.cho", "{t: Caf\xC3\xA9}\r\n\tG\n"), 1});
    program.dialogs.choose(FileChoice{folder.add(u"b.txt", std::string("C\0\0\1\2", 5)), 1});
    program.dialogs.choose(FileChoice{folder.file(u"none.txt"), 1});
    program.dialogs.choose(std::nullopt);
    creatorRun(program, [&](Creator& creator) {
        for (int i = 0; i < 4; ++i) {
            press(creator, Creator::kOpenFile);
            EXPECT_EQ(shown(creator.rtb2().text().chars), "Caf\xC3\xA9\r\r        G");
        }
        EXPECT_EQ(program.messages.boxes.size(), 2U);
        press(creator, IDCANCEL);
    });
    EXPECT_EQ(program.text(), "");
}

// Tab walks from box to box and to the buttons, and Enter is a line end in the song.
TEST(Creator, IsUsedByTheKeyboard) {
    Program program(kNoSong);
    creatorRun(program, [&](Creator& creator) {
        fill(program, creator, u"Am");
        EXPECT_EQ(::GetFocus(), creator.rb1().handle());
        std::vector<int> walked;
        for (int i = 0; i < 11; ++i) {
            ::PostMessageW(::GetFocus(), WM_KEYDOWN, VK_TAB, 1);
            const HWND before = ::GetFocus();
            // The window's own loop is below us; this is what it does with a key.
            MSG message{};
            while (::PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
                if (!::IsDialogMessageW(creator.handle(), &message))
                    ::DispatchMessageW(&message);
            }
            EXPECT_NE(::GetFocus(), before);
            walked.push_back(::GetDlgCtrlID(::GetFocus()));
        }
        EXPECT_EQ(walked, (std::vector<int>{Creator::kLines, Creator::kRtb2, Creator::kResearched,
                                            Creator::kFound, Creator::kNotFound, IDOK, IDCANCEL,
                                            Creator::kOpenFile, Creator::kPaste, Creator::kCmd1,
                                            Creator::kMakeChart}));
        press(creator, IDCANCEL);
    });
}

// Long songs take the plain way, with every line and every colour, into an empty document and into
// another one.
TEST(Creator, TakesLongSongs) {
    const ScratchFolder folder;
    Text song;
    for (std::size_t i = 0; i < kMostRichLines / 2 + 100; ++i)
        song += u"Am   G\rwords of it\r";
    for (const Text& document : {Text(), folder.add(u"a.txt", "first\r\nlast")}) {
        Program program(document);
        const Text before = document.empty() ? u"" : u"first\r\r";
        program.editor().select({6, 6});
        creatorRun(program, [&](Creator& creator) {
            fill(program, creator, song);
            if (isInPlace(creator))
                clickOn(creator.item(Creator::kInPlace));
            press(creator, IDOK);
        });
        const Text expected = before + song + (document.empty() ? u"" : u"\rlast");
        const Text text = program.editor().text().chars;
        // Not printed: it is long.
        EXPECT_TRUE(text == expected || text + u"\r" == expected);
        const auto last = static_cast<std::int32_t>(before.size() + song.size()) - 18;
        EXPECT_EQ(styleAt(program.editor(), last).colour, kChordColour);
        EXPECT_EQ(styleAt(program.editor(), last + 8).colour, (Rgb{0, 0, 0}));
        EXPECT_EQ(styleAt(program.editor(), last).halfPoints, 20);
    }
}

// The song of the document is there, judged and selected; what comes of it takes its place, and one
// Undo brings it back.
TEST(Creator, TidiesTheSong) {
    const ScratchFolder folder;
    Program program(folder.add(u"song.rtf", kFormatted));
    RichEdit& editor = program.editor();
    const std::string before = editor.rtf();
    const std::int16_t steps = program.history().count();
    creatorRun(program, [&](Creator& creator) {
        EXPECT_EQ(captionOf(creator.item(Creator::kInPlace)), "&In place of the song");
        EXPECT_TRUE(isInPlace(creator));
        EXPECT_EQ(creator.rb1().selection().begin, 0);
        EXPECT_GE(creator.rb1().selection().end, creator.rb1().length());
        EXPECT_EQ(cell(creator, 0, 1) + cell(creator, 1, 1), "chordslyrics");
        EXPECT_EQ(entries(creator, Creator::kResearched), "Cmaj7 = C7+;G;Am;");
        // The diagram is a diagram in the chart too.
        const Text chart = creator.rtb2().text().chars;
        EXPECT_EQ(shown(chart), "C7+   G q\rla la\rAm\rlo");
        EXPECT_EQ(creator.rtb2().faceAt(8), u"Melvorin 05");
        EXPECT_EQ(styleAt(creator.rtb2(), 0).colour, (Rgb{0, 0, 0})) << "no key change takes it";
        EXPECT_EQ(styleAt(creator.rtb2(), 16).colour, kChordColour);
        press(creator, IDOK);
    });
    EXPECT_EQ(program.text(), "C7+   G q\rla la\rAm\rlo");
    EXPECT_EQ(program.history().count(), steps + 1);
    EXPECT_EQ(editor.faceAt(8), u"Melvorin 05");
    EXPECT_EQ(styleAt(editor, 8).halfPoints, 60);
    EXPECT_EQ(styleAt(editor, 0).colour, (Rgb{0, 0, 255}));
    EXPECT_EQ(styleAt(editor, 10).bold, true);
    EXPECT_EQ(styleAt(editor, 13).bold, false);
    EXPECT_EQ(styleAt(editor, 16).colour, kChordColour);
    program.command(Command::mnuEditUndo);
    EXPECT_EQ(program.text(), "Cmaj7 G q\rla la\r[Am]lo");
    EXPECT_EQ(styleAt(editor, 10).bold, true);
    // What is tidy already is no step; a paste over all of it is another song.
    editor.select({10, 15});
    program.clipboard.plain = u"D7M";
    creatorRun(program, [&](Creator& creator) {
        EXPECT_EQ(captionOf(creator.item(Creator::kInPlace)), "&In place of the selection");
        EXPECT_EQ(shown(creator.rb1().text().chars), "la la");
        creator.rb1().select({0, 2});
        ::SendMessageW(creator.rb1().handle(), WM_PASTE, 0, 0);
        EXPECT_TRUE(isInPlace(creator)) << "a correction";
        fill(program, creator, u"la la");
        press(creator, IDOK);
    });
    EXPECT_EQ(program.history().count(), steps + 1);
    EXPECT_EQ(editor.selection(), (Selection{10, 15}));
    creatorRun(program, [&](Creator& creator) {
        ::SendMessageW(creator.rb1().handle(), WM_PASTE, 0, 0);
        EXPECT_FALSE(isInPlace(creator));
        program.waitUntil([&] { return creator.rtb2().text().chars == u"D7+"; });
        press(creator, IDCANCEL);
    });
    EXPECT_EQ(shown(editor.text().chars), "Cmaj7 G q\rla la\r[Am]lo");
}

// A diagram that goes to another line, or with the chart to a place of its own, is the same there.
TEST(Creator, DiagramsMove) {
    const ScratchFolder folder;
    const Text path = folder.add(u"song.rtf", kFormatted);
    for (const bool inPlace : {true, false}) {
        Program program(path);
        creatorRun(program, [&](Creator& creator) {
            Text song = creator.rb1().text().chars;
            const Text token = song.substr(8, 1);
            song.erase(7, 2);
            fill(program, creator, song.append(u" ").append(token));
            if (!inPlace)
                clickOn(creator.item(Creator::kInPlace));
            press(creator, IDOK);
        });
        const Text text = program.editor().text().chars;
        const auto at = static_cast<std::int32_t>(text.rfind(u"lo q")) + 3;
        EXPECT_EQ(shown(text), inPlace ? "C7+   G\rla la\rAm\rlo q"
                                       : "C7+   G\rla la\rAm\rlo q\r\rCmaj7 G q\rla la\r[Am]lo");
        EXPECT_EQ(program.editor().faceAt(at), u"Melvorin 05");
        EXPECT_EQ(styleAt(program.editor(), at).halfPoints, 60);
        EXPECT_NE(program.editor().faceAt(at - 3), u"Melvorin 05");
    }
}

// A key that comes before the typing has paused is for the text as it is now.
TEST(Creator, KeysMeanTheTextOfTheMoment) {
    Program program(kNoSong);
    creatorRun(program, [&](Creator& creator) {
        fill(program, creator, u"Am  G\rla la\r");
        creator.rb1().select({0, 0});
        creator.rb1().replaceSelection(u"Dad\r");
        key(creator, 0, 'S');
        EXPECT_EQ(cell(creator, 0, 1) + cell(creator, 0, 2), "section *Dad");
        EXPECT_EQ(cell(creator, 1, 1), "chords");
        press(creator, IDCANCEL);
    });
}

// What the clipboard has besides text does not count, and a song that is too long for its box is
// there all the same.
TEST(Creator, PastesTextAlone) {
    Program program(kNoSong);
    const auto copy = [&](TextView text, bool rich) {
        program.clipboard.plain = text;
        if (rich)
            program.clipboard.rich = "{\\rtf1 {\\b other}}";
    };
    Text song;
    while (song.size() < 1'200'000)
        song.append(5000, u'o').append(u"h\r");
    creatorRun(program, [&](Creator& creator) {
        press(creator, Creator::kPaste);
        EXPECT_EQ(program.messages.boxes.size(), 1U) << "there is nothing to paste";
        copy(u"Am7\r\nla", true);
        ::SendMessageW(creator.rb1().handle(), WM_PASTE, 0, 0);
        EXPECT_EQ(shown(creator.rb1().text().chars), "Am7\rla");
        press(creator, Creator::kPaste);
        EXPECT_EQ(shown(creator.rtb2().text().chars), "Am7\rla");
        copy(song, false);
        press(creator, Creator::kPaste);
        EXPECT_LT(creator.rb1().text().chars.size(), song.size());
        Text whole;
        for (const SourceLine& line : creator.draft().song().source)
            whole.append(line.text).append(line.end);
        EXPECT_TRUE(whole == song);
        creator.rb1().select({0, -1});
        creator.rb1().replaceSelection(u"");
        program.waitUntil([&] { return creator.draft().song().source.empty(); });
        press(creator, IDCANCEL);
    });
}

TEST(Creator, ReadsASongAsTheUserSays) {
    Program program(kNoSong);
    const auto isOn = [](const Creator& creator, int id) {
        return ::IsDlgButtonChecked(creator.handle(), id) == BST_CHECKED;
    };
    const auto isOpen = [](const Creator& creator, int id) {
        return ::IsWindowEnabled(creator.item(id)) != FALSE;
    };
    const auto choose = [](const Creator& creator, int id) {
        ::SendMessageW(creator.item(id), BM_CLICK, 0, 0);
    };
    creatorRun(program, [&](Creator& creator) {
        const auto chart = [&] { return toUtf8(creator.rtb2().text().chars); };
        fill(program, creator, u"Am  H7  B\rla  la  la");
        EXPECT_TRUE(isOpen(creator, Creator::kFlatB));
        EXPECT_TRUE(isOn(creator, Creator::kFlatB));
        EXPECT_FALSE(isOpen(creator, Creator::kSeventhInNinth)) << "there is none";
        EXPECT_EQ(chart(), "Am  B7  Bb\rla  la  la");
        // No sign of its own, but the user knows.
        program.clipboard.plain = u"Am  B  C9\r\nla  la la\r\n";
        press(creator, Creator::kPaste);
        EXPECT_TRUE(isOpen(creator, Creator::kFlatB));
        EXPECT_FALSE(isOn(creator, Creator::kFlatB)) << "another song";
        EXPECT_FALSE(isOn(creator, Creator::kSeventhInNinth));
        EXPECT_EQ(chart(), "Am  B  C9\rla  la la");
        choose(creator, Creator::kFlatB);
        choose(creator, Creator::kSeventhInNinth);
        EXPECT_TRUE(isOn(creator, Creator::kFlatB));
        EXPECT_TRUE(isOn(creator, Creator::kSeventhInNinth));
        EXPECT_EQ(chart(), "Am  Bb C7/9\rla  la la");
        // Typing goes on in the same song.
        fill(program, creator, u"Dm  B  C9\rla  la la");
        EXPECT_EQ(chart(), "Dm  Bb C7/9\rla  la la");
        choose(creator, Creator::kFlatB);
        EXPECT_EQ(chart(), "Dm  B  C7/9\rla  la la");
        creator.rb1().select({0, 0});
        press(creator, IDCANCEL);
    });
}

}  // namespace
}  // namespace melvorin::testing
