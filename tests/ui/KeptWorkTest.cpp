// Keys and commands that once cost work: each with something selected, with nothing, with diagrams.
#include <shlobj.h>

#include "Scripted.h"
#include "rtf/EditCommands.h"

namespace melvorin::testing {
namespace {

constexpr char kSong[] =
    R"({\rtf1\ansi\deff0{\fonttbl{\f0\fmodern\fcharset0 Courier New;}{\f1\fnil\fcharset0 Melvorin 01;})"
    R"({\f2\fnil\fcharset0 Melvorin 02;}}{\colortbl;\red192\green0\blue0;\red0\green0\blue255;}\pard\f0\fs24 )"
    R"(\cf1 C  G\par\cf0 la {\f1\cf2\fs56 a}{\f2\cf2\fs56 n} la})";
// "C  G", "la an la": the diagrams stand at 8 and 9.
constexpr Selection kAll{0, 13};
constexpr Selection kDiagrams{8, 10};

class KeptWork : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(program.start(folder.add(u"song.rtf", kSong)));
        ASSERT_EQ(program.text(), "C  G\rla an la");
        steps = program.history().count();
    }
    void select(Selection selection) { program.editor().select(selection); }
    std::string faceAt(std::int32_t position) { return shown(program.editor().faceAt(position)); }
    SelectionStyle styleAt(std::int32_t position) {
        select({position, position + 1});
        return program.editor().selectionStyle();
    }
    void key(WPARAM character) {
        ::SendMessageW(program.editor().handle(), WM_CHAR, character, 1);
        program.pump();
    }
    int recorded() const { return program.history().count() - steps; }

    ScratchFolder folder;
    Program program;
    int steps = 0;
};

// Each of them once rewrote what was selected, without a trace in Undo.
TEST_F(KeptWork, KeysThatInsertNothingChangeNothing) {
    const std::string before = program.editor().rtf();
    BYTE keys[256]{};
    for (const Selection selection : {kAll, kDiagrams, Selection{2, 2}}) {
        select(selection);
        ::GetKeyboardState(keys);
        keys[VK_SHIFT] = 0x80;
        ::SetKeyboardState(keys);
        key('\t');
        keys[VK_SHIFT] = 0;
        ::SetKeyboardState(keys);
        for (const WPARAM character : {0x1Bu, 0x7Fu, 0x02u, 0xD83Cu})
            key(character);
        EXPECT_EQ(program.editor().selection(), selection);
    }
    EXPECT_EQ(program.editor().rtf(), before);
    EXPECT_EQ(recorded(), 0);
    EXPECT_FALSE(program.state().dirty || program.state().undo);
}

TEST_F(KeptWork, ATypedCharacterIsOneStepAndTakesTheEditorsFont) {
    struct Case {
        Selection selection;
        Text typed;
        std::string text;
        std::int32_t at;  // where it stands
        bool inWords;     // and not in place of a diagram or behind one
    };
    const Case cases[] = {
        {{0, 0}, u"x", "xC G\rla an la", 0, true},
        {{0, 4}, u"x", "x\rla an la", 0, true},
        {kDiagrams, u"x", "C  G\rla x la", 8, false},
        {{10, 10}, u"x", "C  G\rla anx la", 10, false},
        {{8, 8}, u"\U0001F3B8", "C    G\rla \U0001F3B8an la", 10, true},
        {{0, 1}, u"\t", "        G\rla an la", 0, true},
    };
    for (const bool hasRichText : {false, true}) {
        program.clipboard.rich = hasRichText ? std::optional<std::string>(kSong) : std::nullopt;
        for (const Case& c : cases) {
            const int before = program.history().current();
            select(c.selection);
            program.type(c.typed);
            EXPECT_EQ(program.text(), shown(fromUtf8(c.text)));
            EXPECT_EQ(program.history().current(), before + 1) << c.text;
            // Formatted text on the clipboard means work with formats, but not with diagrams.
            const bool keepsFormat = hasRichText && c.inWords;
            EXPECT_EQ(faceAt(c.at), keepsFormat ? "Courier New" : "Lucida Console") << c.text;
            program.command(Command::mnuEditUndo);
            ASSERT_EQ(program.text(), "C  G\rla an la");
        }
    }
}

// A diagram is one only in its font; everything but the face reaches it.
TEST_F(KeptWork, DiagramsKeepTheirFace) {
    RichEdit& editor = program.editor();
    select(kAll);
    setFace(editor, u"Arial");
    EXPECT_EQ(editor.selection(), kAll);
    EXPECT_EQ(faceAt(0), "Arial");
    EXPECT_EQ(faceAt(8), "Melvorin 01");
    EXPECT_EQ(faceAt(9), "Melvorin 02");
    EXPECT_EQ(faceAt(12), "Arial");
    select(kAll);
    editor.setSelectionSize(40);
    EXPECT_EQ(styleAt(8).halfPoints, 40);
    select({8, 8});
    setFace(editor, u"Arial");
    EXPECT_EQ(faceAt(8), "Melvorin 01") << "only what is typed next takes it";
    select(kDiagrams);
    setFace(editor, u"Arial");
    EXPECT_EQ(faceAt(8), "Arial") << "chosen for the diagrams themselves";
}

TEST_F(KeptWork, TextPastedOverADiagramIsText) {
    for (const Selection selection : {kDiagrams, Selection{8, 9}, Selection{6, 9}}) {
        select(selection);
        program.clipboard.plain = u"x\ty";
        program.command(Command::mnuEditPaste);
        for (std::int32_t at = selection.begin; at < selection.begin + 3; ++at)
            EXPECT_EQ(faceAt(at), "Lucida Console") << at;
        program.command(Command::mnuEditUndo);
    }
    EXPECT_EQ(faceAt(8), "Melvorin 01");
}

// The notification comes without a change; Redo, the clean state and the history stay.
TEST_F(KeptWork, CommandsThatChangeNothingAreNoSteps) {
    program.type(u"x");
    program.command(Command::mnuEditUndo);
    ASSERT_TRUE(program.state().redo);
    program.command(Command::mnuFileSave);
    const std::int32_t end = 13;
    const auto press = [&](WPARAM key) {
        ::SendMessageW(program.editor().handle(), WM_KEYDOWN, key, 1);
        program.pump();
    };
    const std::pair<const char*, std::function<void()>> commands[] = {
        {"Delete at the end",
         [&] {
             select({end, end});
             press(VK_DELETE);
         }},
        {"Backspace at the start",
         [&] {
             select({0, 0});
             key('\b');
         }},
        {"Cut", [&] { program.command(Command::mnuEditCut); }},
        {"Delete", [&] { program.command(Command::mnuEditDelete); }},
        {"Bold", [&] { program.command(Command::mnuBold); }},
        {"Left", [&] { program.command(Command::alignLeft); }},
        {"Upper case", [&] { program.command(Command::mnuUpper); }},
    };
    for (const auto& [name, run] : commands) {
        select({0, 0});
        run();
        EXPECT_TRUE(program.state().redo && !program.state().dirty) << name;
    }
    // A real one still counts.
    select({0, 1});
    program.command(Command::mnuItalic);
    EXPECT_TRUE(program.state().dirty && program.state().undo && !program.state().redo);
}

TEST_F(KeptWork, CtrlDTakesTheDiagramBesideTheCaret) {
    const auto glyphs = [&] { return program.text().substr(8, 2); };
    program.program.present = {};
    for (const std::int32_t caret : {8, 9, 10}) {
        select({caret, caret});
        program.command(Command::mnuChDigt);
        EXPECT_TRUE(program.messages.boxes.empty()) << caret;
        // The one before it, or behind it where none is before.
        EXPECT_EQ(glyphs(), caret == 10 ? "aN" : "An") << caret;
        program.command(Command::mnuEditUndo);
    }
    select({2, 2});
    program.command(Command::mnuChDigt);
    EXPECT_EQ(program.messages.boxes.size(), 1U);
    EXPECT_EQ(glyphs(), "an");
}

TEST_F(KeptWork, ADoubleClickTakesOneDiagram) {
    for (const std::int32_t position : {8, 9}) {
        const POINT left = program.editor().pointOf(position);
        const POINT right = program.editor().pointOf(position + 1);
        const LPARAM middle = MAKELPARAM((left.x + right.x) / 2, left.y + 12);
        ::SendMessageW(program.editor().handle(), WM_LBUTTONDBLCLK, MK_LBUTTON, middle);
        EXPECT_EQ(program.editor().selection(), (Selection{position, position + 1}));
    }
}

// Documents from elsewhere have whole lines in the diagrams' face.
TEST_F(KeptWork, ALineEndIsNoDiagram) {
    program.dialogs.choose(FileChoice{
        folder.add(u"face.rtf",
                   R"({\rtf1\ansi{\fonttbl{\f0\fcharset0 Melvorin 01;}}\f0 a\par a e\par})"),
        2});
    program.command(Command::mnuFileOpen);
    ASSERT_EQ(program.text(), "a\ra e");
    select({2, 2});
    program.command(Command::mnuChDigt);
    EXPECT_EQ(program.text(), "a\rA e") << "the one behind the cursor, not the line end before it";
    select({4, 4});
    program.command(Command::mnuChDigt);
    EXPECT_EQ(program.text(), "a\rA E");
}

// To some controls a soft line break is a blank, and the chords before it no line.
TEST_F(KeptWork, ShiftAndEnterBeginALine) {
    BYTE keys[256]{};
    ::GetKeyboardState(keys);
    keys[VK_SHIFT] = 0x80;
    ::SetKeyboardState(keys);
    select({4, 4});
    const int before = program.history().current();
    ::SendMessageW(program.editor().handle(), WM_KEYDOWN, VK_RETURN, 1);
    ::SendMessageW(program.editor().handle(), WM_CHAR, '\r', 1);
    keys[VK_SHIFT] = 0;
    ::SetKeyboardState(keys);
    EXPECT_EQ(program.text(), "C  G\r\rla an la");
    EXPECT_EQ(program.history().current(), before + 1);
}

// A file dropped while the view is open takes the place of the song, not of its next key.
TEST_F(KeptWork, ADropClosesTheStageFirst) {
    program.command(Command::mnuFullScreen);
    ASSERT_TRUE(program.form->fullScreen().isOpen());
    RichEdit& stage = program.form->fullScreen().FSRTB();
    stage.select({0, 0});
    ::SendMessageW(stage.handle(), WM_CHAR, 'x', 1);
    const Text path = folder.add(u"other.txt", "Dm\r\n");
    const std::size_t bytes = sizeof(DROPFILES) + (path.size() + 2) * sizeof(char16_t);
    const HGLOBAL memory = ::GlobalAlloc(GHND, bytes);
    auto* const drop = static_cast<DROPFILES*>(::GlobalLock(memory));
    drop->pFiles = sizeof(DROPFILES);
    drop->fWide = TRUE;
    std::copy(path.begin(), path.end(), reinterpret_cast<char16_t*>(drop + 1));
    ::GlobalUnlock(memory);
    program.messages.answer(Answer::Cancel);  // Save changes?
    ::SendMessageW(program.form->handle(), WM_DROPFILES, reinterpret_cast<WPARAM>(memory), 0);
    EXPECT_FALSE(program.form->fullScreen().isOpen());
    EXPECT_EQ(program.messages.boxes.at(0).text, "Save changes to song.rtf?");
    EXPECT_EQ(program.text(), "xC G\rla an la");
}

// ---- Undo and the page -------------------------------------------------------------------------

TEST(Page, UndoShowsWhatItChanges) {
    const ScratchFolder folder;
    std::string song;
    for (int i = 0; i < 300; ++i)
        song += "C  G\r\nla la\r\n";
    struct Case {
        const char* name;
        std::int32_t changedLine, topLine;
        bool staysThere;  // the page
        bool isFormat;
    };
    for (const Case& c :
         {Case{"the change is on the page", 400, 395, true, false},
          Case{"above it", 100, 395, false, false}, Case{"below it", 500, 0, false, false},
          Case{"a format on the page", 400, 395, true, true},
          Case{"a format above it", 100, 395, false, true}}) {
        SCOPED_TRACE(c.name);
        Program program(folder.add(u"song.txt", song));
        RichEdit& editor = program.editor();
        const std::int32_t place = editor.firstOfLine(c.changedLine);
        editor.select({place, place + (c.isFormat ? 2 : 0)});
        if (c.isFormat)
            program.command(Command::mnuBold);
        else
            program.type(u"x");
        for (const Command step : {Command::mnuEditUndo, Command::mnuEditRedo}) {
            editor.bringToTop(c.topLine);
            const std::int32_t top = editor.firstVisibleLine();
            program.command(step);
            if (c.staysThere) {
                EXPECT_EQ(editor.firstVisibleLine(), top);
            }
            EXPECT_TRUE(editor.isInView(place));
        }
    }
}

}  // namespace
}  // namespace melvorin::testing
