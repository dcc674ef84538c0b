// The dictionary panel, its diagrams in the document and their fingerings, on the real controls
// with the chord book of this build.
#include <algorithm>

#include "Controls.h"
#include "dictionary/AdoSource.h"
#include "dictionary/RichEditDiagrams.h"

namespace melvorin::testing {
namespace {

using enum PanelPart;

constexpr Rgb kBlue{0, 0, 255};
constexpr PanelPart kDiagrams[] = {GB1, GB2, GB3, GB4, GB5, GB6};

class DictionaryTest : public ::testing::Test {
  protected:
    DictionaryTest() { program.program.programFolder = Win32ProgramFolder().folder(); }

    void start(std::string_view song = "C     F\r\nsong by the river\r\n") {
        ASSERT_TRUE(program.start(folder.add(u"song.txt", song)));
        program.command(Command::mnuEditDic);
    }
    DictionaryPanel& panel() { return program.form->dictionaryPanel(); }
    std::string text(PanelPart part) { return captionOf(panel().part(part)); }
    bool isVisible(PanelPart part) { return ::IsWindowVisible(panel().part(part)) != FALSE; }
    std::string captions() {
        std::string result;
        for (const PanelPart part : kDiagrams) {
            const ShownEntry& entry = panel().dictionary().shown();
            const auto index = static_cast<std::size_t>(part) - static_cast<std::size_t>(GB1);
            result += isVisible(part) ? shown(entry.captions[index]) : "-";
        }
        return result;
    }
    void key(HWND window, WPARAM key) {
        ::PostMessageW(window, WM_KEYDOWN, key, 1);
        program.pump();
    }
    void find(const char16_t* what) {
        ::SetWindowTextW(panel().part(TS1), wide(what));
        panel().press(Command1);
    }
    int selectedRow() {
        return static_cast<int>(::SendMessageW(panel().part(dtaDel), LVM_GETNEXTITEM,
                                               static_cast<WPARAM>(-1), LVNI_SELECTED));
    }
    std::string cell(int row, int column) { return cellOf(panel().part(dtaDel), row, column); }
    DiagramStyle styleAt(std::int32_t position) {
        const Selection former = program.editor().selection();
        program.editor().select({position, position + 1});
        const DiagramStyle style = RichEditDiagrams(program.editor()).style();
        program.editor().select(former);
        return style;
    }

    ScratchFolder folder;
    Program program;
};

TEST_F(DictionaryTest, FindsBySymbolAndByName) {
    start();
    EXPECT_TRUE(isVisible(TS1));
    EXPECT_EQ(::GetFocus(), panel().part(TS1));
    EXPECT_EQ(shown(panel().dictionary().shown().face), "Melvorin 01");
    for (const char16_t c : std::u16string_view(u" cm7 "))
        ::SendMessageW(panel().part(TS1), WM_CHAR, c, 1);
    key(panel().part(TS1), VK_RETURN);
    EXPECT_EQ(text(TS1), "cm7");
    EXPECT_EQ(text(LB), "C Minor Seventh");
    EXPECT_EQ(shown(panel().dictionary().shown().face), "Melvorin 09");
    EXPECT_EQ(captions(), "3Ø4Ÿ½J");
    // The button's own text tells a screen reader what its picture shows.
    EXPECT_EQ(text(GB2), "C Minor Seventh, diagram 2");

    panel().choose(SearchField::Name);
    find(u"g sixth");
    EXPECT_EQ(text(LB), "G Sixth");
    EXPECT_EQ(captions(), "gGhHj-");
    EXPECT_TRUE(program.messages.boxes.empty());

    find(u"C");
    ASSERT_EQ(program.messages.boxes.size(), 1U);
    EXPECT_EQ(program.messages.boxes[0].text, "Chord Not Found");
    EXPECT_EQ(text(LB), "G Sixth");
    EXPECT_EQ(selectedRow(), -1);
    EXPECT_TRUE(text(Record).starts_with("- of "));

    find(u"C' or 'a'='a");
    ASSERT_EQ(program.messages.boxes.size(), 2U);
    EXPECT_EQ(program.messages.boxes[1].icon, MessageIcon::Critical);
    EXPECT_EQ(text(LB), "G Sixth");
    EXPECT_EQ(selectedRow(), -1) << "no other row than the one that is shown";
    find(u"   ");
    EXPECT_EQ(program.messages.boxes.size(), 2U);
}

// "CM7" finds Cm7, as the table is searched without case; what it means is one key away.
TEST_F(DictionaryTest, ACapitalMOffersTheMajorChord) {
    start();
    EXPECT_FALSE(isVisible(Other));
    for (const WPARAM pressed : {WPARAM{VK_RETURN}, WPARAM{VK_SPACE}, WPARAM{0}}) {
        panel().choose(SearchField::Symbol);
        find(u"CM7");
        EXPECT_EQ(text(LB), "C Minor Seventh");
        ASSERT_TRUE(isVisible(Other));
        EXPECT_EQ(text(Other), "Major seventh: C7+");
        ::SetFocus(panel().part(Command1));
        for (int i = 0; i < 40 && pressed != 0 && ::GetFocus() != panel().part(Other); ++i)
            key(::GetFocus(), VK_TAB);
        if (pressed != 0) {
            ASSERT_EQ(::GetFocus(), panel().part(Other));
            ::PostMessageW(panel().part(Other), WM_KEYDOWN, pressed, 1);
            ::PostMessageW(panel().part(Other), WM_KEYUP, pressed, 1);
            program.pump();
        } else {
            panel().press(Other);
        }
        EXPECT_EQ(text(LB), "C Major Seventh") << pressed;
        EXPECT_EQ(text(TS1), "C7+");
        EXPECT_FALSE(isVisible(Other));
        EXPECT_EQ(::GetFocus(), panel().part(TS1));
    }
    find(u"CM/G");
    EXPECT_EQ(text(Other), "Major over G: C/G");
    // The line belongs to the search.
    panel().press(Next);
    EXPECT_FALSE(isVisible(Other));
    find(u"CM");
    EXPECT_EQ(text(Other), "Major: C");
    panel().press(GB10);
    EXPECT_FALSE(isVisible(Other));
    find(u"Cm");
    EXPECT_FALSE(isVisible(Other));
    EXPECT_TRUE(program.messages.boxes.empty());
}

TEST_F(DictionaryTest, GridAndDataControlShowTheSameRecord) {
    start();
    panel().press(GB10);
    EXPECT_EQ(panel().view(), PanelView::Grid);
    EXPECT_EQ(::GetFocus(), panel().part(dtaDel));
    const int count =
        static_cast<int>(::SendMessageW(panel().part(dtaDel), LVM_GETITEMCOUNT, 0, 0));
    EXPECT_GT(count, 1581);
    EXPECT_EQ(cell(0, 0) + "|" + cell(0, 1) + "|" + cell(0, 2), "A|A Major|01");

    key(panel().part(dtaDel), VK_DOWN);
    EXPECT_EQ(selectedRow(), 1);
    EXPECT_EQ(text(LB), cell(1, 1));
    EXPECT_EQ(text(Record), "2 of " + std::to_string(count));
    panel().press(Last);
    EXPECT_EQ(selectedRow(), count - 1);
    EXPECT_EQ(text(LB), cell(count - 1, 1));
    panel().press(Next);
    EXPECT_EQ(selectedRow(), count - 1);
    key(panel().part(dtaDel), VK_HOME);
    EXPECT_EQ(text(Record), "1 of " + std::to_string(count));
    // Typing goes to the next symbol that begins so.
    ::SendMessageW(panel().part(dtaDel), WM_CHAR, u'F', 1);
    EXPECT_EQ(cell(selectedRow(), 0), "F");
    EXPECT_EQ(text(LB), "F Major");
    // An exact row comes before the next that begins so, as "A7/9" behind "A7" does.
    for (const wchar_t* typed : {L"a", L"A7", L"F#m"}) {
        LVFINDINFOW wanted{};
        wanted.flags = LVFI_STRING | LVFI_PARTIAL | LVFI_WRAP;
        wanted.psz = typed;
        const int from = selectedRow();
        const auto row = ::SendMessageW(panel().part(dtaDel), LVM_FINDITEMW,
                                        static_cast<WPARAM>(from), lparamOf(&wanted));
        EXPECT_TRUE(equalWithoutCase(fromUtf8(cell(static_cast<int>(row), 0)), textOf(typed)));
        ListView_SetItemState(panel().part(dtaDel), row, LVIS_SELECTED, LVIS_SELECTED);
    }
    panel().press(GB7);
    panel().choose(SearchField::Symbol);
    find(u"Bb");
    EXPECT_EQ(cell(selectedRow(), 0), "Bb");
}

TEST_F(DictionaryTest, EachViewHasItsButtonsAndCloses) {
    start();
    const HWND editor = program.editor().handle();
    const auto widthOfEditor = [&] {
        RECT area{};
        ::GetWindowRect(editor, &area);
        return area.right - area.left;
    };
    const LONG beside = widthOfEditor();
    const struct {
        PanelPart open;
        PanelView view;
        PanelPart close;
        std::vector<PanelPart> visible;
    } cases[] = {
        {GB14, PanelView::Search, GB14, {TS1, Command1, Gb9, GB10}},
        {Gb9, PanelView::Diagrams, GB13, {TS1, Command1, GB7, GB15}},
        {GB10, PanelView::Grid, GB8, {dtaDel, GB7}},
    };
    for (const auto& [open, view, close, visible] : cases) {
        if (open != close)
            panel().press(open);
        EXPECT_EQ(panel().view(), view);
        for (const PanelPart part : visible)
            EXPECT_TRUE(isVisible(part)) << static_cast<int>(view);
        EXPECT_TRUE(isVisible(LB) && isVisible(GB1) && isVisible(Record));
        EXPECT_EQ(widthOfEditor() < beside, view != PanelView::Search);
        for (const PanelPart part : {GB8, GB13, GB14})
            EXPECT_EQ(isVisible(part), part == close);
        panel().press(close);
        EXPECT_EQ(panel().width(), PanelWidth::Closed);
        EXPECT_GT(widthOfEditor(), beside);
        EXPECT_EQ(::GetFocus(), editor);
        program.command(Command::mnuEditDic);
        EXPECT_EQ(widthOfEditor(), beside);
    }
    program.command(Command::mnuEditDic);
    EXPECT_EQ(panel().width(), PanelWidth::Closed);
}

TEST_F(DictionaryTest, FindAndTablatureTakeTheRoom) {
    start();
    for (const Command command : {Command::mnuFind, Command::mnuTab}) {
        EXPECT_NE(panel().width(), PanelWidth::Closed);
        program.command(command);
        EXPECT_EQ(panel().width(), PanelWidth::Closed);
        program.command(Command::mnuEditDic);
    }
}

TEST_F(DictionaryTest, TabWalksThroughEveryControlAndEscLeaves) {
    start();
    std::set<HWND> reached;
    for (int i = 0; i < 40; ++i) {
        key(::GetFocus(), VK_TAB);
        reached.insert(::GetFocus());
    }
    for (const PanelPart part : {TS1, Option1, Command1, GB1, GB2, First, Next, Gb9, GB10, GB14})
        EXPECT_TRUE(reached.contains(panel().part(part))) << static_cast<int>(part);
    EXPECT_FALSE(reached.contains(panel().part(GB7)));
    key(::GetFocus(), VK_ESCAPE);
    EXPECT_EQ(::GetFocus(), program.editor().handle());
    EXPECT_NE(panel().width(), PanelWidth::Closed);
}

TEST_F(DictionaryTest, ADiagramIsOneBlueCharacterAndOneStep) {
    start();
    find(u"C");
    const DiagramStyle before = styleAt(0);
    program.editor().select({2, 4});
    const std::int16_t steps = program.history().count();
    panel().press(GB2);
    EXPECT_EQ(program.text(), "C A F\rsong by the river");
    EXPECT_EQ(program.history().count(), steps + 1);
    EXPECT_TRUE(program.state().dirty);
    // The song goes on in its own font.
    EXPECT_EQ(::GetFocus(), program.editor().handle());
    program.type(u"x");
    EXPECT_EQ(program.text(), "C Ax F\rsong by the river");
    EXPECT_EQ(styleAt(3), before);
    const DiagramStyle diagram = styleAt(2);
    EXPECT_EQ(shown(diagram.face), "Melvorin 09");
    EXPECT_EQ(diagram.colour, kBlue);
    EXPECT_GE(diagram.halfPoints, 48);
    program.command(Command::mnuEditUndo);
    program.command(Command::mnuEditUndo);
    EXPECT_EQ(program.text(), "C     F\rsong by the river");
    EXPECT_EQ(styleAt(2), before);
    // Beside a diagram its size holds.
    program.editor().select({0, 0});
    panel().press(GB1);
    program.editor().select({0, 1});
    program.editor().setSelectionSize(44);
    program.editor().select({1, 1});
    panel().press(GB6);
    EXPECT_EQ(styleAt(1).halfPoints, 44);
    EXPECT_EQ(program.text().substr(0, 2), "aJ");
}

// In the place of text in several formats, with formatted text on the clipboard.
TEST_F(DictionaryTest, ADiagramIsPlainAndLeavesAFormatToTypeIn) {
    start();
    program.clipboard.rich = "{\\rtf1 x}";
    program.type(u"abc");
    RichEdit& editor = program.editor();
    editor.select({0, 1});
    editor.setSelectionFont(u"Arial", 20);
    editor.setBold(true);
    editor.setUnderline(true);
    editor.select({0, 2});
    panel().press(GB1);
    program.type(u"x");
    editor.select({0, 1});
    EXPECT_EQ(editor.selectionStyle().bold, false);
    EXPECT_EQ(editor.selectionStyle().underline, false);
    editor.select({1, 2});
    EXPECT_GT(editor.selectionStyle().halfPoints.value_or(0), 0);
    EXPECT_FALSE(editor.selectionStyle().face.value_or(Text()).empty());
}

TEST_F(DictionaryTest, DiagramsSurviveSavingKeyChangeAndTheClipboard) {
    start("\r\nC     F\r\nsong by the river\r\n");
    program.editor().select({0, 0});
    for (const char16_t* chord : {u"C", u"Bb", u"F#m7", u"G°"}) {
        find(chord);
        panel().press(GB1);
        panel().press(GB2);
    }
    std::vector<DiagramStyle> styles;
    const auto stylesNow = [&] {
        std::vector<DiagramStyle> now;
        for (std::int32_t i = 0; i < 8; ++i)
            now.push_back(styleAt(i));
        return now;
    };
    styles = stylesNow();
    EXPECT_EQ(shown(styles[6].face), "Melvorin 29");
    const std::string glyphs = program.text().substr(0, program.text().find('\r'));
    program.dialogs.choose(FileChoice{folder.file(u"kept.mlv"), 1});
    program.command(Command::mnuFileSaveAs);
    program.command(Command::mnuUp);
    EXPECT_EQ(program.text(), glyphs + "\rC#    F#\rsong by the river");
    EXPECT_EQ(stylesNow(), styles);

    ASSERT_TRUE(program.editor().loadRtf(folder.content(u"kept.mlv")));
    EXPECT_EQ(program.text(), glyphs + "\rC     F\rsong by the river");
    EXPECT_EQ(stylesNow(), styles);

    program.editor().select({8, -1});
    program.editor().replaceSelection(u"");
    std::string copied = program.editor().rtf();
    copied.erase(copied.rfind("\\par"), 4);  // a part of a line
    program.clipboard.rich = copied;
    ASSERT_TRUE(program.editor().loadRtf(folder.content(u"kept.mlv")));
    program.editor().select({9, 10});
    program.command(Command::mnuEditPaste);
    EXPECT_EQ(program.text(), glyphs + "\r" + glyphs + " F\rsong by the river");
    for (std::int32_t i = 0; i < 8; ++i)
        EXPECT_EQ(styleAt(9 + i), styles[static_cast<std::size_t>(i)]);
}

TEST_F(DictionaryTest, CtrlDWalksThroughTheFingerings) {
    start();
    find(u"C");
    program.editor().select({6, 6});
    panel().press(GB1);
    program.editor().select({6, 7});
    program.editor().setSelectionSize(60);
    program.editor().setSelectionColour({200, 0, 0});
    const DiagramStyle style = styleAt(6);
    std::string walk;
    for (int i = 0; i < 5; ++i) {
        program.editor().select({6, 7});
        const std::int16_t steps = program.history().count();
        program.command(Command::mnuChDigt);
        EXPECT_EQ(program.history().count(), steps + 1);
        EXPECT_EQ(program.editor().selection(), (Selection{6, 7}));
        EXPECT_EQ(styleAt(6), style);
        walk += program.text().substr(6, program.text().find('F') - 6);
    }
    EXPECT_EQ(walk, "AsS²a");
    program.command(Command::mnuEditUndo);
    EXPECT_EQ(program.text(), "C     ²F\rsong by the river");
    EXPECT_EQ(styleAt(6), style);

    program.editor().select({9, 10});
    const std::int16_t steps = program.history().count();
    program.command(Command::mnuChDigt);
    ASSERT_EQ(program.messages.boxes.size(), 1U);
    EXPECT_EQ(program.messages.boxes[0].title, "Melvorin");
    EXPECT_EQ(program.editor().selection(), (Selection{9, 9}));
    EXPECT_EQ(program.history().count(), steps);
}

// A program folder with a Dbase of its own.
TEST_F(DictionaryTest, AMissingOrDamagedDatabaseIsToldAndTriedAgain) {
    const Text base = folder.file(u"Dbase");
    const Text file = joinPath(base, u"MlvDbase.db");
    ::CreateDirectoryW(wide(base), nullptr);
    const Text real = joinPath(joinPath(program.program.programFolder, u"Dbase"), u"MlvDbase.db");
    program.program.programFolder = folder.path();
    start();
    EXPECT_TRUE(isVisible(Notice));
    EXPECT_NE(text(Notice).find("MlvDbase.db\r\n\r\nThe file does not exist"), std::string::npos)
        << text(Notice);
    EXPECT_FALSE(isVisible(GB1) || isVisible(LB) || isVisible(Record));
    EXPECT_FALSE(::IsWindowEnabled(panel().part(Command1)));
    program.type(u"x");
    EXPECT_TRUE(program.text().starts_with("xC    F")) << program.text();
    panel().press(GB10);
    panel().press(GB7);

    Win32Files().write(file, std::string(5000, 'x'));
    program.command(Command::mnuEditDic);
    program.command(Command::mnuEditDic);
    EXPECT_NE(text(Notice).find("damaged"), std::string::npos) << text(Notice);

    ::CopyFileW(wide(real), wide(file), FALSE);
    program.command(Command::mnuEditDic);
    program.command(Command::mnuEditDic);
    EXPECT_TRUE(isVisible(GB1));
    // The fonts are not there yet, which does not keep anyone from searching.
    EXPECT_TRUE(isVisible(Notice));
    EXPECT_NE(text(Notice).find("None of the 34 diagram fonts"), std::string::npos) << text(Notice);
    find(u"C");
    EXPECT_EQ(text(LB), "C Major");
    EXPECT_TRUE(program.messages.boxes.empty());
    program.form->dictionaryPanel().destroy();
    program.form->endRun();
    program.form.reset();
    ::DeleteFileW(wide(file));
    ::RemoveDirectoryW(wide(base));
}

// ---- The older database -----------------------------------------------------------------------

class ScriptedCursor : public AdoCursor {
  public:
    long columns() override { return 3; }
    Text name(long column) override { return Text(1, static_cast<char16_t>(u'A' + column)); }
    VARIANT value(long column) override {
        if (row_ == failingRow)
            throw AdoFailure{E_FAIL};
        VARIANT value{};
        if (column == 0) {
            value.vt = VT_BSTR;
            value.bstrVal = ::SysAllocString(row_ == 0 ? L"C" : L"C\u00B0");
        } else if (column == 1) {
            value.vt = row_ == 0 ? VT_NULL : VT_BSTR;  // an empty string is no null
        } else {
            value.vt = VT_I4;
            value.lVal = 7 + row_;
        }
        return value;
    }
    bool atEnd() override { return row_ == 2; }
    void next() override { ++row_; }

    int failingRow = -1;

  private:
    int row_ = 0;
};

TEST(AdoSource, MapsRows) {
    ScriptedCursor cursor;
    const Table table = readTable(cursor);
    EXPECT_EQ(table.fields, (std::vector<Text>{u"A", u"B", u"C"}));
    const std::vector<Row> rows{{u"C", std::nullopt, u"7"}, {u"C\u00B0", u"", u"8"}};
    EXPECT_EQ(table.rows, rows);
    ScriptedCursor broken;
    broken.failingRow = 1;
    EXPECT_THROW(readTable(broken), AdoFailure);
}

// Wine has no Jet provider, as a 64-bit Windows has none.
TEST(AdoSource, TellsWhyItCannotOpen) {
    AdoSource source;
    const Result<Done> opened = source.open(jetConnection(u"C:\\Nowhere"));
    EXPECT_FALSE(opened);
    EXPECT_FALSE(opened.cause.empty());
}

}  // namespace
}  // namespace melvorin::testing
