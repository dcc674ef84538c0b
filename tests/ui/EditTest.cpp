// The daily commands on the real editor: clipboard, formats, case, keys, recent files, examples.
#include "Controls.h"

namespace melvorin::testing {
namespace {

SelectionStyle styleAt(RichEdit& editor, std::int32_t position) {
    editor.select({position, position + 1});
    return editor.selectionStyle();
}

constexpr char kRich[] = R"({\rtf1\ansi\deff0{\fonttbl{\f0\fmodern\fcharset0 Courier New;})"
                         R"({\f1\fnil\fcharset0 Melvorin 01;}}\pard\f0\fs24 so{\b bo}ld {\f1 a}})";

TEST(Paste, PlainTextArrivesInColumnsAndInTheEditorsFont) {
    struct Case {
        Text document;
        Selection selection;
        Text clipboard;
        std::string result;
    };
    const Case cases[] = {
        {u"", {0, 0}, u"C\tG\r\n\tAm", "C       G\r        Am"},
        {u"line\r\nabXXXcd", {7, 10}, u"\tx\ty", "line\rab      x       ycd"},
        {u"end", {3, 3}, u"a\r\n\nb\rc\n", "enda\r\rb\rc\r"},
        {u"song", {0, 4}, u"♯ é 日本", "♯ é 日本"},
    };
    for (const Case& c : cases) {
        const ScratchFolder folder;
        Program program(folder.add(u"a.txt", toUtf8(c.document)));
        const std::string before = program.text();
        const std::int16_t snapshots = program.history().count();
        program.clipboard.plain = c.clipboard;
        program.editor().select(c.selection);
        program.editor().setSelectionFace(u"Arial");
        program.command(Command::mnuEditPaste);
        EXPECT_EQ(program.text(), c.result);
        const SelectionStyle style = styleAt(program.editor(), c.selection.begin);
        EXPECT_EQ(style.face, u"Lucida Console");
        EXPECT_EQ(style.halfPoints, 20);
        EXPECT_EQ(style.colour, (Rgb{0, 0, 0}));
        EXPECT_TRUE(program.state().dirty);
        program.command(Command::mnuEditUndo);
        EXPECT_EQ(program.text(), before);
        EXPECT_EQ(program.history().count(), snapshots + 1);
    }
}

TEST(Paste, RichTextKeepsItsFormats) {
    Program program(kNoSong);
    program.type(u"xy");
    program.editor().select({1, 1});
    program.clipboard.rich = kRich;
    program.clipboard.plain = u"sobold\ta";
    program.command(Command::mnuEditPaste);
    EXPECT_EQ(program.text(), "xsobold ay");
    EXPECT_EQ(styleAt(program.editor(), 3).bold, true);
    EXPECT_EQ(styleAt(program.editor(), 1).halfPoints, 24);
    EXPECT_EQ(styleAt(program.editor(), 8).face, u"Melvorin 01");
    program.command(Command::mnuEditUndo);
    EXPECT_EQ(program.text(), "xy");
}

// An equation or a note would be gone with the formats; the plain text beside has it.
TEST(Paste, WordsThatTheFormatsLoseAreOffered) {
    for (const Answer answer : {Answer::No, Answer::Yes}) {
        Program program(kNoSong);
        program.type(u"xy");
        program.editor().select({1, 1});
        program.clipboard.rich =
            R"({\rtf1\ansi{\fonttbl{\f0 Arial;}}\f0 one {\mmath{\*\moMath {\mr two}}} three})";
        program.clipboard.plain = u"one two three";
        program.messages.answer(answer);
        program.command(Command::mnuEditPaste);
        expectOneBox(program, "1 word of what was copied is missing");
        EXPECT_EQ(program.text(), answer == Answer::Yes ? "xone two threey" : "xone  threey");
        program.command(Command::mnuEditUndo);
        EXPECT_EQ(program.text(), "xy");
    }
}

// Nothing is changed where nothing can be pasted, and the user is told.
TEST(Paste, BadClipboards) {
    struct Case {
        std::optional<std::string> rich;
        std::optional<Text> plain;
        bool vanishes;
        std::string result, message;
    };
    const Case cases[] = {
        {std::nullopt, std::nullopt, false, "Am", "The clipboard holds no text"},
        {"{\\rtf1 broken", u"plain", false, "plain", "only its plain text"},
        {"{\\rtf1 broken", std::nullopt, false, "Am", "cannot be pasted"},
        {std::nullopt, u"gone", true, "Am", "It is no longer there."},
        {std::nullopt, Text(25u << 20, u'x'), false, "Am", "It is too large."},
        {"{\\rtf1 " + std::string(9u << 20, 'x') + "}", u"short", false, "short",
         "It is too large."},
    };
    for (const Case& c : cases) {
        Program program(kNoSong);
        program.type(u"Am");
        program.clipboard.rich = c.rich;
        program.clipboard.plain = c.plain;
        program.clipboard.vanishes = c.vanishes;
        program.editor().select({0, 2});
        const std::int16_t snapshots = program.history().count();
        program.command(Command::mnuEditPaste);
        EXPECT_EQ(program.text(), c.result);
        ASSERT_EQ(program.messages.boxes.size(), c.message.empty() ? 0U : 1U) << c.result;
        if (!c.message.empty()) {
            EXPECT_NE(program.messages.boxes[0].text.find(c.message), std::string::npos);
            EXPECT_EQ(program.history().count(), snapshots + (c.result == "Am" ? 0 : 1));
        }
    }
}

// A long text shows its progress meanwhile, and nothing else begins.
TEST(Paste, LongTextIsConvertedInParts) {
    Program program(kNoSong);
    program.type(u"la");
    Text text;
    while (text.size() <= FrmTxt::kLongText)
        text += Text(40'000, u'x') + u"\tG\tAm7\r";
    program.clipboard.plain = text;
    ::PostMessageW(program.form->handle(), WM_COMMAND, idOf(Command::mnuFileNew), 0);
    program.command(Command::mnuEditPaste);
    EXPECT_TRUE(program.editor().text().chars == u"la" + expandTabs(text, 2))
        << "New was refused meanwhile";
    EXPECT_TRUE(program.messages.boxes.empty());
    EXPECT_TRUE(::IsWindowEnabled(program.form->handle()));
}

// The system's own clipboard, with characters that the control drops from its Rich Text.
TEST(Clipboard, CutAndCopyGoThroughTheSystem) {
    Program program;
    Win32Clipboard clipboard;
    ASSERT_TRUE(program.start());
    program.type(u"B\u266D x");
    program.editor().select({0, 2});
    program.command(Command::mnuBold);
    program.command(Command::mnuEditCopy);
    EXPECT_TRUE(clipboard.hasRichText());
    program.clipboard.rich = clipboard.richText(1000).value;
    program.clipboard.plain = clipboard.text(1000).value;
    EXPECT_EQ(shown(program.clipboard.plain.value_or(u"")), "B♭");
    program.editor().select({4, 4});
    program.command(Command::mnuEditPaste);
    EXPECT_EQ(program.text(), "B♭ xB♭");
    EXPECT_EQ(styleAt(program.editor(), 4).bold, true);
    program.editor().select({2, 4});
    program.command(Command::mnuEditCut);
    EXPECT_EQ(program.text(), "B♭B♭");
    EXPECT_EQ(shown(clipboard.text(1000).value.value_or(u"")), " x");
    EXPECT_FALSE(clipboard.text(2)) << "larger than allowed";
    program.editor().select({1, 3});
    program.command(Command::mnuEditDelete);
    EXPECT_EQ(program.text(), "B♭");
    program.command(Command::mnuEditUndo);
    program.command(Command::mnuEditUndo);
    EXPECT_EQ(program.text(), "B♭ xB♭");
    EXPECT_TRUE(clipboard.put(toCrLf(u"B\u266D\rx"), "{\\rtf1 B}"));
    EXPECT_EQ(clipboard.richText(1000).value, "{\\rtf1 B}");
    EXPECT_EQ(clipboard.text(1000).value, u"B\u266D\r\nx");
    EXPECT_TRUE(clipboard.put(toCrLf(u"y")));
    EXPECT_FALSE(clipboard.hasRichText());
    ::OpenClipboard(nullptr);
    ::EmptyClipboard();
    ::CloseClipboard();
    EXPECT_FALSE(clipboard.hasText() || clipboard.hasRichText());
    EXPECT_FALSE(clipboard.text(1000));
}

TEST(Keys, ShortcutsDoWhatTheirMenuEntriesDo) {
    Program program(kNoSong);
    program.clipboard.plain = u"x\ty";
    program.type(u"ab");
    press(program, 'V', {VK_CONTROL});
    EXPECT_EQ(program.text(), "abx     y") << "once, and with its tab expanded";
    press(program, VK_INSERT, {VK_SHIFT});
    EXPECT_EQ(program.text(), "abx     yx      y");
    press(program, 'A', {VK_CONTROL});
    EXPECT_EQ(program.editor().selection(), (Selection{0, 17}));
    press(program, 'B', {VK_CONTROL});
    EXPECT_EQ(program.editor().selectionStyle().bold, true);
    press(program, 'E', {VK_CONTROL});
    EXPECT_EQ(program.editor().selectionStyle().alignment, Alignment::Center);
    program.type(u"C\tG");
    EXPECT_EQ(program.text(), "C       G") << "a typed tab is blanks too";
    press(program, 'F', {VK_CONTROL});
    EXPECT_TRUE(program.form->findWindow().isOpen());
    EXPECT_TRUE(program.messages.boxes.empty());
}

// Typed text takes the editor's font, unless the clipboard holds Rich Text.
TEST(Keys, TypingFollowsTheClipboard) {
    const ScratchFolder folder;
    Program program(folder.add(u"a.rtf", kRich));
    for (const bool rich : {true, false}) {
        program.clipboard.rich = rich ? std::optional<std::string>(kRich) : std::nullopt;
        program.editor().select({8, 8});  // behind a diagram
        const std::int16_t snapshots = program.history().count();
        program.type(u"z");
        EXPECT_EQ(styleAt(program.editor(), 8).face, u"Lucida Console") << "and no diagram";
        EXPECT_EQ(program.history().count(), snapshots + 1) << "one character, one step";
        EXPECT_EQ(styleAt(program.editor(), 7).face, u"Melvorin 01");
    }
}

TEST(Styles, ToggleAndFollowTheCaret) {
    const ScratchFolder folder;
    Program program(folder.add(u"a.rtf", kRich));
    const auto checked = [&](Command button) {
        const Toolbar& bar = program.form->toolbar();
        return ::SendMessageW(bar.handle(), TB_ISBUTTONCHECKED, idOf(button), 0) != 0;
    };
    struct Case {
        Command command;
        std::optional<bool> SelectionStyle::*attribute;
    };
    const Case cases[] = {
        {Command::mnuBold, &SelectionStyle::bold},
        {Command::mnuItalic, &SelectionStyle::italic},
        {Command::mnuUnderline, &SelectionStyle::underline},
    };
    for (const Case& c : cases) {
        program.editor().select({0, 6});  // for bold a mixed selection: it becomes bold
        for (const bool on : {true, false}) {
            const std::int16_t snapshots = program.history().count();
            program.command(c.command);
            EXPECT_EQ(program.editor().selectionStyle().*c.attribute, on);
            EXPECT_EQ(checked(c.command), on);
            EXPECT_EQ(program.history().count(), snapshots + 1);
        }
    }
    program.command(Command::alignRight);
    EXPECT_TRUE(checked(Command::alignRight) && !checked(Command::alignLeft));
    program.command(Command::alignLeft);
    EXPECT_TRUE(checked(Command::alignLeft) && !checked(Command::alignRight));
    program.editor().select({2, 4});
    program.command(Command::mnuBold);
    EXPECT_TRUE(checked(Command::mnuBold));
    program.editor().select({6, 6});
    program.pump();
    EXPECT_FALSE(checked(Command::mnuBold));
    program.editor().select({3, 3});
    program.pump();
    EXPECT_TRUE(checked(Command::mnuBold));
}

// Letters change, pictures and formats stay; a long selection goes another way than a short one.
TEST(Case, ConvertsLettersInPlace) {
    constexpr TextView line = u"é ß \u044F a b7 ";
    for (const int copies : {1, 60}) {
        Program program(kNoSong);
        Text song;
        for (int i = 0; i < copies; ++i)
            song += line;
        program.clipboard.plain = song;
        program.command(Command::mnuEditPaste);
        RichEdit& editor = program.editor();
        editor.select({6, 7});
        editor.setSelectionFace(u"Melvorin 02");
        editor.select({8, 9});
        editor.setBold(true);
        const Selection all{0, static_cast<std::int32_t>(song.size())};
        editor.select(all);
        const std::int16_t snapshots = program.history().count();
        program.command(Command::mnuUpper);
        EXPECT_EQ(program.text().substr(0, 14), "É ß Я a B7 ");
        EXPECT_EQ(program.editor().selection(), all);
        EXPECT_EQ(program.history().count(), snapshots + 1);
        if (copies > 1) {
            EXPECT_EQ(shown(program.editor().textBetween({11, 22})), "É ß Я A B7 ");
        }
        EXPECT_EQ(styleAt(program.editor(), 6).face, u"Melvorin 02");
        EXPECT_EQ(styleAt(program.editor(), 8).bold, true);
        EXPECT_EQ(styleAt(program.editor(), 9).bold, false);
        program.editor().select(all);
        program.command(Command::mnuLowe);
        EXPECT_EQ(program.text(), shown(song));
    }
}

// ---- Recent files, examples, pages ------------------------------------------------------------

std::string visibleRecent(Program& program) {
    const MenuBar& menu = program.form->menuBar();
    std::string items;
    for (const CommandRow& row : commands()) {
        if (row.menu.parent == Command::mnuRecent && menu.isVisible(row.id))
            items += shown(fileNamePart(menu.caption(row.id))) + "|";
    }
    return items;
}

TEST(Recent, TheMenuOpensWhatItLists) {
    const ScratchFolder folder;
    const Text first = folder.add(u"a & b.txt", "A\n");
    const Text second = folder.add(u"c.txt", "C\n");
    Program program(first);
    EXPECT_EQ(visibleRecent(program), "(Empty)|") << "the command line adds nothing";
    for (const Text& path : {first, second}) {
        program.dialogs.choose(FileChoice{path, 3});
        program.command(Command::mnuFileOpen);
    }
    EXPECT_EQ(visibleRecent(program), "c.txt|a && b.txt||Clean List of Recent Files|");
    program.type(u"x");
    program.messages.answer(Answer::Cancel);
    program.command(Command::mnuRecentFile2);
    EXPECT_EQ(program.text(), "xC");
    program.messages.answer(Answer::No);
    program.command(Command::mnuRecentFile2);
    EXPECT_EQ(program.text(), "A");
    EXPECT_FALSE(program.state().undo);

    ::DeleteFileW(wide(second));
    program.messages.boxes.clear();
    program.command(Command::mnuRecentFile1);
    expectOneBox(program, "Please verify");
    EXPECT_EQ(program.text(), "A");
    EXPECT_EQ(visibleRecent(program), "c.txt|a && b.txt||Clean List of Recent Files|");

    program.profiles.writable = false;
    program.command(Command::mnuReset);
    EXPECT_EQ(program.messages.boxes.size(), 2U);
    EXPECT_NE(visibleRecent(program), "(Empty)|");
    program.profiles.writable = true;
    program.command(Command::mnuReset);
    EXPECT_EQ(visibleRecent(program), "(Empty)|");
}

// The real profile functions: a new file is Unicode, an old one stays what it is.
// Another run may have written the list, and a path may be longer than what is read again.
TEST(Recent, TheMenuFollowsTheFileAndLongPathsAreToldOnce) {
    const ScratchFolder folder;
    const Text path = folder.add(u"a.txt", "A\n");
    Program program(kNoSong);
    program.dialogs.otherwise = FileChoice{path, 3};
    program.command(Command::mnuFileOpen);
    program.profiles.write(u"Recent Files", u"RecentFile2", u"C:\\other.mlv", u"Melvorin.INI");
    program.command(Command::mnuFileOpen);
    EXPECT_EQ(visibleRecent(program), "a.txt|other.mlv||Clean List of Recent Files|");

    const Text longName(255 - folder.path().size() - 5, u'n');
    for (const auto& [name, messages] :
         {std::pair{longName + u".mlv", 1U}, {longName + u"m.mlv", 1U}}) {
        program.type(u"x");
        program.dialogs.choose(FileChoice{folder.file(name), 1});
        program.command(Command::mnuFileSaveAs);
        EXPECT_FALSE(program.state().dirty);
        EXPECT_EQ(program.messages.boxes.size(), messages);
    }
    EXPECT_EQ(visibleRecent(program), "a.txt|other.mlv||Clean List of Recent Files|");
}

TEST(Recent, TheIniFileKeepsItsEncoding) {
    const ScratchFolder folder;
    Win32ProfileFiles profiles;
    const Text unicode = folder.file(u"new.ini");
    EXPECT_TRUE(profiles.write(u"S", u"K", u"日本\\é.mvt", unicode));
    EXPECT_EQ(shown(profiles.read(u"S", u"K", u"", unicode, 255)), "日本\\é.mvt");
    EXPECT_TRUE(folder.content(u"new.ini").starts_with("\xFF\xFE"));
    const Text ansi = folder.add(u"old.ini", "[S]\r\nK=caf\xE9\r\n");
    EXPECT_EQ(shown(profiles.read(u"S", u"K", u"", ansi, 255)), "café");
    EXPECT_TRUE(profiles.write(u"S", u"L", u"x", ansi));
    EXPECT_TRUE(folder.content(u"old.ini").starts_with("[S]\r\nK=caf\xE9\r\n"));
    ::SetFileAttributesW(wide(ansi), FILE_ATTRIBUTE_READONLY);
    EXPECT_FALSE(profiles.write(u"S", u"M", u"x", ansi));
}

class ProgramInFolder : public ScriptedProgram {
  public:
    explicit ProgramInFolder(Text folder) : folder_(std::move(folder)) {}
    Text folder() override { return folder_; }

  private:
    Text folder_;
};

TEST(Examples, OpenUntitledAndTellWhatIsMissing) {
    Program program(kNoSong);
    program.type(u"x");
    program.messages.answer(Answer::No);
    program.command(Command::mnuEpl);
    ASSERT_EQ(program.messages.boxes.size(), 2U);
    EXPECT_NE(program.messages.boxes[1].text.find("Abc Song.mvt"), std::string::npos);
    EXPECT_EQ(program.text(), "x");
    EXPECT_EQ(program.shell.opened, std::vector<std::string>{"C:\\Program\\Help\\example-1.html"});

    program.shell.works = false;
    for (const auto& [page, missing] : {std::pair(Command::mnuHlpTcs, "Program\\Melvorin.chm"),
                                        std::pair(Command::ExMovie1, "Help\\first-song.html"),
                                        std::pair(Command::ExMovie4, "Help\\questions.html")}) {
        program.messages.boxes.clear();
        program.command(page);
        ASSERT_EQ(program.messages.boxes.size(), 1U);
        for (const char* const part : {"The file was not found.", missing})
            EXPECT_NE(program.messages.boxes[0].text.find(part), std::string::npos) << part;
    }
}

TEST(Help, OpensAtThePageOfTheWindow) {
    Program program(kNoSong);
    program.program.present = {u"C:\\Program\\Melvorin.chm"};
    std::vector<std::string>& shown = program.shell.helpShown;
    const auto expectPage = [&](const std::string& page) {
        ASSERT_EQ(shown.size(), 1U) << page;
        EXPECT_EQ(shown[0], "C:\\Program\\Melvorin.chm::" + page);
        shown.clear();
    };
    program.command(Command::mnuHlpTcs);
    expectPage("index.html");
    askForHelp(program.editor().handle());
    expectPage("main-window.html");
    askForHelp(program.editor().handle(), HELPINFO_MENUITEM);
    expectPage("commands.html");

    // In the control that has the focus.
    const std::pair<Command, const char*> windows[] = {
        {Command::mnuEditDic, "dictionary.html"}, {Command::mnuFind, "find.html"},
        {Command::mnuFont, "font.html"},          {Command::mnuTab, "tablature.html"},
        {Command::mnuDps, "tuner.html"},          {Command::mnuFullScreen, "on-stage.html"},
    };
    program.editor().replaceSelection(u"C\rla\rla");
    for (const auto& [command, page] : windows) {
        program.command(command);
        program.waitUntil([] { return ::GetFocus() != nullptr; });
        askForHelp(::GetFocus());
        expectPage(page);
    }
    askForHelp(program.form->fullScreen().FSRTB().handle());
    expectPage("on-stage.html");

    // On the bar of a run F1 stands beside the keys that move the text.
    frmFScreenB& panel = program.form->fullScreen().panel();
    ::SendMessageW(panel.handle(), WM_COMMAND, frmFScreenB::Command4, 0);
    ASSERT_TRUE(panel.bar().isOpen());
    askForHelp(::GetDlgItem(panel.bar().handle(), Form3::Cmd));
    EXPECT_TRUE(shown.empty());

    // Without a viewer the same page is for the browser.
    program.shell.hasViewer = false;
    askForHelp(program.form->findWindow().handle());
    EXPECT_EQ(program.shell.opened, std::vector<std::string>{"C:\\Program\\Help\\find.html"});
    EXPECT_TRUE(program.messages.boxes.empty());
}

TEST(Examples, CannotBeOverwritten) {
    const ScratchFolder folder;
    const Text path = folder.add(u"example.rtf", kRich);
    Program program(kNoSong);
    program.type(u"x");
    auto& documents = const_cast<Documents&>(program.form->documents());
    EXPECT_TRUE(documents.openExample(path));
    EXPECT_EQ(program.caption(), "Chord Notation - Melvorin");
    EXPECT_TRUE(program.state().dirty);
    EXPECT_FALSE(program.state().undo);
    program.dialogs.choose(std::nullopt);  // Save asks for a name
    program.command(Command::mnuFileSave);
    EXPECT_EQ(folder.content(u"example.rtf"), kRich);
    EXPECT_EQ(program.dialogs.requests.size(), 1U);
}

TEST(CommandMap, EveryEntryHasItsHandler) {
    Program program(kNoSong);
    for (const CommandRow& row : commands()) {
        if (row.menu.kind != MenuKind::Entry || row.menu.startsHidden ||
            row.id == Command::mnuRecentFile0)
            continue;
        const bool waits = row.id == Command::mnuFileSaveAs || row.id == Command::mnuEditUndo ||
                           row.id == Command::mnuEditRedo;
        EXPECT_EQ(program.form->isEnabled(row.id), !waits) << shown(row.menu.caption);
    }
    EXPECT_EQ(shown(program.form->menuBar().caption(Command::mnuSus)), ">> Use Sharps");
    EXPECT_EQ(shown(program.form->menuBar().caption(Command::mnuBem)), "Use Flats");
    EXPECT_EQ(::GetMenuItemCount(program.form->menuBar().bar()), 7);
}

}  // namespace
}  // namespace melvorin::testing
