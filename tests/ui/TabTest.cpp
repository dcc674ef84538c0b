// The tablature window on the real controls, and its blocks in the real editor.
#include "Controls.h"
#include "tablature/FrmTab.h"

namespace melvorin::testing {
namespace {

constexpr auto kGuitar5 =
    "E|-----------------------|-----------------------|-----------------------|"
    "-----------------------|-----------------------|";

class Tab : public ::testing::Test {
  protected:
    void SetUp() override { start({}); }
    void start(std::string_view song) {
        program = std::make_unique<Program>();
        ASSERT_TRUE(program->start(song.empty() ? Text() : folder.add(u"song.rtf", song)));
        program->command(Command::mnuTab);
        ASSERT_TRUE(window().isOpen() && ::IsWindowVisible(window().handle()));
    }
    FrmTab& window() { return program->form->tabWindow(); }
    HWND item(int id) { return ::GetDlgItem(window().handle(), id); }
    std::string caption(int id) { return captionOf(item(id)); }
    void choose(int list, WPARAM index) {
        ::SendMessageW(item(list), CB_SETCURSEL, index, 0);
        notify(item(list), CBN_SELCHANGE);
    }
    void click(int button) { clickOn(item(button)); }
    void press(int control, WPARAM key) {
        pressIn(item(control), key);
        program->pump();
    }
    // The preview as the user sees it, and as far as it is in view.
    std::string preview() {
        std::string lines;
        for (int id = FrmTab::M1; id <= FrmTab::M8; ++id)
            lines += caption(id) + (id < FrmTab::M7 ? "" : "|");
        for (int k = 0; k < 5; ++k) {
            if (::IsWindowVisible(item(FrmTab::L1 + k)))
                lines += caption(FrmTab::L1 + k).substr(0, caption(FrmTab::L1 + k).find('\r'));
        }
        return lines;
    }

    ScratchFolder folder;
    std::unique_ptr<Program> program;
};

TEST_F(Tab, BeginsWithAGuitarOfFiveColumnsAndNoOrder) {
    EXPECT_EQ(::SendMessageW(item(FrmTab::C1), CB_GETCURSEL, 0, 0), 0);
    EXPECT_EQ(::SendMessageW(item(FrmTab::C2), CB_GETCURSEL, 0, 0), 4);
    EXPECT_EQ(::SendMessageW(item(FrmTab::Ot1), BM_GETCHECK, 0, 0), BST_UNCHECKED);
    EXPECT_EQ(::SendMessageW(item(FrmTab::Ot2), BM_GETCHECK, 0, 0), BST_UNCHECKED);
    EXPECT_EQ(preview(),
              "EBGDAEGuitar Tablature|================|"
              "|----------|----------|----------|----------|----------|");
    // Nothing is inserted before the order is known, and the window says why.
    EXPECT_NE(caption(FrmTab::Hint), "");
    program->type(u"la");
    const auto before = program->history().count();
    click(FrmTab::InserTab);
    EXPECT_EQ(program->text(), "la");
    EXPECT_EQ(program->history().count(), before);
    click(FrmTab::Ot2);
    EXPECT_EQ(caption(FrmTab::Hint), "");
}

TEST_F(Tab, PreviewIsInTheEditorsFontOfTheMoment) {
    const auto face = [&] {
        LOGFONTW font{};
        ::GetObjectW(reinterpret_cast<HFONT>(::SendMessageW(item(FrmTab::M1), WM_GETFONT, 0, 0)),
                     sizeof font, &font);
        return shown(textOf(font.lfFaceName));
    };
    EXPECT_EQ(face(), "Lucida Console");
    choose(FrmTab::C1, 1);
    click(FrmTab::Ot2);
    const std::string before = preview();
    program->profiles.write(u"Tela", u"Option", u"0",
                            joinPath(program->program.programFolder, u"Melvorin.ini"));
    program->command(Command::mnuTab);
    EXPECT_EQ(face(), "Courier New");
    EXPECT_EQ(preview(), before);
}

TEST_F(Tab, PreviewFollowsEveryChoice) {
    const struct {
        int instrument, dividers, option;
        const char* shows;
    } cases[] = {
        {0, 0, FrmTab::Ot2, "EADGBEGuitar Tablature|================||"},
        {1, 1, FrmTab::Ot1, "GDAEBass Tablature|==============||"},
        {1, 2, FrmTab::Ot2, "EADGBass Tablature|==============||"},
        {2, 3, FrmTab::Ot2, "DGBDSmall Guitar Tablature|======================||"},
        {2, 4, FrmTab::Ot1, "DBGDSmall Guitar Tablature|======================||"},
    };
    for (const auto& example : cases) {
        choose(FrmTab::C1, static_cast<WPARAM>(example.instrument));
        choose(FrmTab::C2, static_cast<WPARAM>(example.dividers));
        click(example.option);
        const std::string got = preview();
        EXPECT_TRUE(got.starts_with(example.shows)) << got;
        EXPECT_EQ(std::count(got.begin(), got.end(), '|'), 2 + 2 + example.dividers) << got;
        EXPECT_EQ(got.size() - got.rfind("||") - 1, 56U) << got;
    }
}

// What stands where, how wide the screen is, and what comes of it.
TEST_F(Tab, InsertsABlockThatOneUndoTakesBack) {
    const std::string guitar = std::string("-¬ \r") + kGuitar5 + "\r";
    const std::string end = "\rGuitar Tablature\r================";
    const struct {
        TextView typed;
        Selection selection;
        int screenWidth;
        std::size_t staff;  // characters of a string's line
        std::string before, after;
    } cases[] = {
        {u"", {0, 0}, 1366, 122, "-¬ \r", ""},
        {u"words", {2, 2}, 800, 94, "wo\r-¬ \r", "rds"},
        {u"words\r", {6, 6}, 640, 74, "words\r-¬ \r", ""},
        {u"some words here", {5, 10}, 1280, 122, "some \r-¬ \r", " here"},
    };
    for (const auto& example : cases) {
        start({});
        program->screen.screen.width = example.screenWidth;
        program->type(example.typed);
        const std::string typed = program->text();
        program->editor().select(example.selection);
        click(FrmTab::Ot1);
        const auto before = program->history().count();
        click(FrmTab::InserTab);
        const std::string text = program->text();
        EXPECT_TRUE(text.starts_with(example.before + "E|---")) << text;
        EXPECT_TRUE(text.ends_with(end + example.after)) << text;
        EXPECT_EQ(text.size(), example.before.size() + 6 * (example.staff + 1) - 1 + end.size() +
                                   example.after.size());
        EXPECT_EQ(program->history().count(), before + 1);
        EXPECT_TRUE(program->state().dirty);
        program->command(Command::mnuEditUndo);
        EXPECT_EQ(program->text(), typed);
    }
}

// The bars of all strings stand one above the other in every format of the text before, and a
// diagram before the caret does not turn the block into diagrams.
TEST_F(Tab, BlocksLineUpAtEverySizeAndBesideDiagrams) {
    const struct {
        const char* format;
        const char* face;
    } cases[] = {{"\\f0\\fs16", "Courier New"},
                 {"\\f0\\fs20\\b", "Courier New"},
                 {"\\f1\\fs56\\i", "Lucida Console"},
                 {"\\f2\\fs144", "Lucida Console"}};
    for (const auto& example : cases) {
        start(std::string(R"({\rtf1\ansi{\fonttbl{\f0 Courier New;}{\f1 Lucida Console;})"
                          R"({\f2 Melvorin 07;}}\pard)") +
              example.format + " A\\plain\\f0\\fs20 bc\\par}");
        RichEdit& editor = program->editor();
        editor.select({1, 1});
        click(FrmTab::Ot1);
        click(FrmTab::InserTab);
        const std::int32_t first = editor.firstOfLine(2);
        const std::int32_t length = editor.firstOfLine(3) - first;
        EXPECT_EQ(length, 123);
        EXPECT_EQ(shown(editor.faceAt(0)), example.format[2] == '2' ? "Melvorin 07" : example.face);
        std::set<LONG> columns;
        for (std::int32_t line = 2; line < 8; ++line) {
            const std::int32_t bar = editor.firstOfLine(line) + 121;
            EXPECT_EQ(shown(editor.textBetween({bar, bar + 1})), "|");
            EXPECT_EQ(shown(editor.faceAt(bar)), example.face);
            POINTL point{};
            ::SendMessageW(editor.handle(), EM_POSFROMCHAR, reinterpret_cast<WPARAM>(&point), bar);
            columns.insert(point.x);
        }
        EXPECT_EQ(columns.size(), 1U) << example.format;
    }
}

TEST_F(Tab, KeyChangeLeavesTheBlockAlone) {
    program->type(u"C  Am\r");
    click(FrmTab::Ot1);
    click(FrmTab::InserTab);
    const std::string block = program->text().substr(6);
    program->command(Command::mnuUp);
    EXPECT_EQ(program->text().substr(0, 2), "C#");
    EXPECT_EQ(program->text().substr(program->text().find('\r') + 1), block);
}

TEST_F(Tab, WorksByKeyboardBesideTheSong) {
    EXPECT_EQ(::GetFocus(), item(FrmTab::C1));
    click(FrmTab::Ot1);
    press(FrmTab::C2, VK_RETURN);
    EXPECT_EQ(program->editor().lineCount(), 9);
    program->type(u"\r");
    press(FrmTab::Ot1, VK_RETURN);
    EXPECT_EQ(program->editor().lineCount(), 18);
    // The choices stay while the window does, and begin again with the next one.
    choose(FrmTab::C1, 1);
    program->command(Command::mnuTab);
    EXPECT_EQ(::SendMessageW(item(FrmTab::C1), CB_GETCURSEL, 0, 0), 1);
    press(FrmTab::C1, VK_ESCAPE);
    EXPECT_FALSE(window().isOpen());
    program->command(Command::mnuTab);
    EXPECT_EQ(::SendMessageW(item(FrmTab::C1), CB_GETCURSEL, 0, 0), 0);
    press(FrmTab::TabOut, VK_RETURN);
    EXPECT_FALSE(window().isOpen());
    EXPECT_EQ(program->editor().lineCount(), 18);
}

// While a box waits for an answer the document is not touched.
TEST_F(Tab, WaitsWhileACommandAsks) {
    program->type(u"la");
    click(FrmTab::Ot1);
    program->messages.whileOpen = [&] { click(FrmTab::InserTab); };
    program->messages.answer(Answer::Cancel);
    program->command(Command::mnuFileNew);
    EXPECT_EQ(program->text(), "la");
}

}  // namespace
}  // namespace melvorin::testing
