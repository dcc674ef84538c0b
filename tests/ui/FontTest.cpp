// The font and colours window: every control of it on the real editor.
#include "Controls.h"
#include "base/ProgramSettings.h"

namespace melvorin::testing {
namespace {

constexpr Rgb kRed{255, 0, 0};

class FontWindow : public ::testing::Test {
  protected:
    void SetUp() override {
        ASSERT_TRUE(program.start(folder.add(u"song.txt", "C  G\r\nA word of song\r\n")));
        program.editor().select({5, 11});
        program.command(Command::mnuFont);
        ASSERT_TRUE(window().isOpen());
        steps = program.history().count();
    }

    frmFont& window() { return program.form->fontWindow(); }
    HWND control(int id) { return ::GetDlgItem(window().handle(), id); }
    LRESULT send(int id, UINT message, WPARAM wParam = 0, LPARAM lParam = 0) {
        return ::SendMessageW(control(id), message, wParam, lParam);
    }
    std::string textOfControl(int id) { return captionOf(control(id)); }
    void click(int id) {
        clickOn(control(id));
        program.pump();
    }
    // A line of a list, as a click chooses it.
    void choose(int id, WPARAM row) { chooseRow(control(id), static_cast<int>(row)); }
    std::string rowText(int id, LRESULT row) { return testing::rowOf(control(id), row); }
    std::string selectedRow(int id) { return chosenRowOf(control(id)); }
    // The row of a text, exactly.
    WPARAM rowOf(int id, TextView text) {
        return static_cast<WPARAM>(
            send(id, LB_FINDSTRINGEXACT, static_cast<WPARAM>(-1), lparamOf(wide(Text(text)))));
    }
    void typeInto(int id, TextView text) {
        ::SetFocus(control(id));
        send(id, EM_SETSEL, 0, -1);
        for (const char16_t c : text)
            send(id, WM_CHAR, c, 1);
    }
    SelectionStyle style() { return program.editor().selectionStyle(); }
    // How many steps of undo have come since the last call.
    int newSteps() {
        const int count = program.history().count() - steps;
        steps = program.history().count();
        return count;
    }
    // The window looks at the editor by its timer.
    void waitForSelection(Selection selection, int id, const std::string& text) {
        program.editor().select(selection);
        program.waitUntil([&] { return textOfControl(id) == text; });
    }

    ScratchFolder folder;
    Program program;
    std::int16_t steps = 0;
};

TEST_F(FontWindow, ShowsTheSelectionMixedWhereItIs) {
    EXPECT_EQ(textOfControl(frmFont::kText2), "Lucida Console");
    EXPECT_EQ(textOfControl(frmFont::kT1), "10");
    EXPECT_EQ(selectedRow(frmFont::kList2), "10");
    EXPECT_EQ(send(frmFont::kCheck1, BM_GETCHECK), BST_UNCHECKED);
    program.editor().select({5, 8});
    program.editor().setBold(true);
    program.editor().setSelectionFace(u"Courier New");
    program.editor().setSelectionSize(48);
    waitForSelection({5, 8}, frmFont::kT1, "24");
    EXPECT_EQ(send(frmFont::kCheck1, BM_GETCHECK), BST_CHECKED);
    EXPECT_EQ(textOfControl(frmFont::kText2), "Courier New");
    EXPECT_EQ(textOfControl(frmFont::kLabel3), "Courier New, 24 pt");
    waitForSelection({5, 15}, frmFont::kT1, "");
    EXPECT_EQ(send(frmFont::kCheck1, BM_GETCHECK), BST_INDETERMINATE);
    EXPECT_EQ(send(frmFont::kCheck2, BM_GETCHECK), BST_UNCHECKED);
    EXPECT_EQ(textOfControl(frmFont::kText2), "");
    EXPECT_EQ(send(frmFont::kList2, LB_GETCURSEL), LB_ERR);
    EXPECT_EQ(textOfControl(frmFont::kLabel3), "Several fonts, several sizes");
    // What is mixed becomes all of it, and then nothing of it.
    for (const bool bold : {true, false}) {
        click(frmFont::kCheck1);
        EXPECT_EQ(style().bold, bold);
        EXPECT_EQ(send(frmFont::kCheck1, BM_GETCHECK), bold ? BST_CHECKED : BST_UNCHECKED);
    }
    EXPECT_EQ(style().face, std::nullopt) << "nothing else changes";
}

// Each change is one step, and all of it survives a save.
TEST_F(FontWindow, EveryControlActsAtOnceAndIsOneStep) {
    choose(frmFont::kList1, rowOf(frmFont::kList1, u"Liberation Serif"));
    EXPECT_EQ(style().face, u"Liberation Serif");
    EXPECT_EQ(newSteps(), 1);
    choose(frmFont::kList2, rowOf(frmFont::kList2, u"18"));
    EXPECT_EQ(style().halfPoints, 36);
    EXPECT_EQ(textOfControl(frmFont::kT1), "18");
    EXPECT_EQ(newSteps(), 1);
    for (const int id : {frmFont::kCheck1, frmFont::kCheck2, frmFont::kCheck3}) {
        click(id);
        EXPECT_EQ(newSteps(), 1);
    }
    EXPECT_TRUE(style().bold == true && style().italic == true && style().underline == true);
    click(frmFont::kG1 + 6);
    EXPECT_EQ(style().colour, kRed);
    EXPECT_EQ(newSteps(), 1);
    EXPECT_EQ(program.editor().background(), std::nullopt);
    EXPECT_EQ(program.editor().selection(), (Selection{5, 11}));
    EXPECT_TRUE(program.state().dirty);

    program.dialogs.choose(FileChoice{folder.file(u"saved.mlv"), 1});
    program.command(Command::mnuFileSaveAs);
    program.command(Command::mnuFileNew);
    program.dialogs.choose(FileChoice{folder.file(u"saved.mlv"), 1});
    program.command(Command::mnuFileOpen);
    program.editor().select({5, 11});
    const SelectionStyle saved = style();
    EXPECT_EQ(saved.face, u"Liberation Serif");
    EXPECT_EQ(saved.halfPoints, 36);
    EXPECT_TRUE(saved.bold == true && saved.italic == true && saved.underline == true);
    EXPECT_EQ(saved.colour, kRed);
    program.editor().select({0, 4});
    EXPECT_EQ(style().halfPoints, 20);
}

TEST_F(FontWindow, BackgroundIsTheWholeEditorsAndComesBackWithUndo) {
    click(frmFont::kOp1Back);
    click(frmFont::kG1 + 8);
    EXPECT_EQ(program.editor().background(), (Rgb{255, 255, 0}));
    EXPECT_EQ(style().colour, (Rgb{0, 0, 0}));
    EXPECT_EQ(newSteps(), 1);
    program.colors.answer = Rgb{1, 2, 3};
    click(frmFont::kCommand3);
    EXPECT_EQ(program.colors.asked.back(), (Rgb{255, 255, 0}));
    EXPECT_EQ(program.editor().background(), (Rgb{1, 2, 3}));
    program.command(Command::mnuEditUndo);
    EXPECT_EQ(program.editor().background(), (Rgb{255, 255, 0}));
    program.command(Command::mnuEditUndo);
    EXPECT_EQ(program.editor().background(), std::nullopt);
    program.command(Command::mnuEditRedo);
    EXPECT_EQ(program.editor().background(), (Rgb{255, 255, 0}));
    EXPECT_EQ(::SendMessageW(program.editor().handle(), EM_SETBKGNDCOLOR, 0, 0), RGB(255, 255, 0));

    click(frmFont::kOp1Text);
    program.editor().select({5, 11});
    newSteps();
    program.colors.answer = Rgb{4, 5, 6};
    click(frmFont::kCommand3);
    EXPECT_EQ(style().colour, (Rgb{4, 5, 6}));
    EXPECT_EQ(newSteps(), 0) << "the undone state gave way to this one";
    // Cancelled, the dialog changes nothing.
    click(frmFont::kCommand3);
    EXPECT_EQ(newSteps(), 0);
}

TEST_F(FontWindow, WhatIsTypedIsOneStepWhenTheTypingPauses) {
    typeInto(frmFont::kT1, u"24");
    EXPECT_EQ(newSteps(), 0);
    EXPECT_EQ(textOfControl(frmFont::kLabel3), "Lucida Console, 24 pt");
    program.waitUntil([&] { return style().halfPoints == 48; });
    EXPECT_EQ(newSteps(), 1);
    EXPECT_EQ(textOfControl(frmFont::kT1), "24");
    // Enter does not wait; what is no size changes nothing and goes with the focus.
    typeInto(frmFont::kT1, u"11,5");
    ::SendMessageW(window().handle(), WM_COMMAND, IDOK, 0);
    EXPECT_EQ(style().halfPoints, 23);
    EXPECT_EQ(newSteps(), 1);
    EXPECT_TRUE(program.messages.boxes.empty());
    typeInto(frmFont::kT1, u"2x");
    ::SetFocus(control(frmFont::kList2));
    program.pump();
    ASSERT_EQ(program.messages.boxes.size(), 1U);
    EXPECT_TRUE(program.messages.boxes[0].text.starts_with("\"2x\" is no size of letters."));
    EXPECT_EQ(textOfControl(frmFont::kT1), "11.5");
    typeInto(frmFont::kT1, u"500");
    ::SendMessageW(window().handle(), WM_COMMAND, IDOK, 0);
    EXPECT_EQ(program.messages.boxes.size(), 2U);
    EXPECT_EQ(textOfControl(frmFont::kT1), "11.5");
    EXPECT_EQ(newSteps(), 0);
    typeInto(frmFont::kT1, u"abc");
    window().destroy();
    program.command(Command::mnuFont);
    EXPECT_EQ(textOfControl(frmFont::kT1), "11.5") << "a new window knows nothing of the former";
    typeInto(frmFont::kT1, u"abc");
    ::SendMessageW(window().handle(), WM_CLOSE, 0, 0);
    EXPECT_EQ(program.messages.boxes.size(), 3U);
    program.command(Command::mnuFont);
    // A click into the box selects what stands there.
    ::SetFocus(control(frmFont::kList2));
    send(frmFont::kT1, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(4, 4));
    send(frmFont::kT1, WM_LBUTTONUP, 0, MAKELPARAM(4, 4));
    EXPECT_EQ(send(frmFont::kT1, EM_GETSEL), MAKELRESULT(0, 4));

    // A name is found by its beginning; letters typed in the list go to the box above it.
    ::SetFocus(control(frmFont::kList1));
    send(frmFont::kList1, WM_CHAR, u'l', 1);
    EXPECT_EQ(::GetFocus(), control(frmFont::kText2));
    for (const char16_t c : TextView(u"iberation se"))
        send(frmFont::kText2, WM_CHAR, c, 1);
    EXPECT_EQ(selectedRow(frmFont::kList1), "Liberation Serif");
    EXPECT_EQ(style().face, u"Lucida Console");
    ::SetFocus(control(frmFont::kCheck1));
    EXPECT_EQ(style().face, u"Liberation Serif");
    EXPECT_EQ(textOfControl(frmFont::kText2), "Liberation Serif");
    EXPECT_EQ(newSteps(), 1);
    // The arrow keys of the box move the list.
    ::SetFocus(control(frmFont::kT1));
    choose(frmFont::kList2, rowOf(frmFont::kList2, u"12"));
    send(frmFont::kT1, WM_KEYDOWN, VK_DOWN, 1);
    EXPECT_EQ(style().halfPoints, 28);
}

int framesDrawn = 0;
LRESULT CALLBACK countFrames(HWND window, UINT message, WPARAM wParam, LPARAM lParam, UINT_PTR id,
                             DWORD_PTR) {
    framesDrawn += message == WM_NCPAINT ? 1 : 0;
    return subclassDefault(countFrames, id, window, message, wParam, lParam);
}

// The bars know at once how far the letters reach.
TEST_F(FontWindow, ScrollBarsFollowTheSizeOfTheLetters) {
    RichEdit& editor = program.editor();
    // Of a bar that is not to be seen: 0.
    const auto reaches = [&] {
        std::vector<int> both;
        for (const auto& [bar, style] : {std::pair{SB_VERT, WS_VSCROLL}, {SB_HORZ, WS_HSCROLL}}) {
            SCROLLINFO info{};
            info.cbSize = sizeof info;
            info.fMask = SIF_RANGE;
            ::GetScrollInfo(editor.handle(), bar, &info);
            const LONG_PTR styles = ::GetWindowLongPtrW(editor.handle(), GWL_STYLE);
            both.push_back((styles & style) != 0 ? info.nMax : 0);
        }
        return both;
    };
    Text song(200, u'x');
    for (int line = 0; line < 40; ++line)
        song += u"\rC  G";
    ASSERT_TRUE(editor.loadPlain({song}, u"Lucida Console", 10));
    for (const int size : {36, 8, 20}) {
        editor.select({0, static_cast<std::int32_t>(song.size())});
        ::SetWindowSubclass(editor.handle(), countFrames, 78, 0);
        framesDrawn = 0;
        choose(frmFont::kList2, rowOf(frmFont::kList2, decimal(size)));
        program.pump();
        EXPECT_GT(framesDrawn, 0) << "and are drawn";
        const std::vector<int> shown = reaches();
        ASSERT_TRUE(editor.loadRtf(editor.rtf()));
        program.pump();
        EXPECT_EQ(shown, reaches()) << size;
    }
    for (const int zoom : {300, 50, 100}) {
        editor.setZoom(zoom);
        const std::vector<int> shown = reaches();
        ASSERT_TRUE(editor.loadRtf(editor.rtf()));
        program.pump();
        EXPECT_EQ(shown, reaches()) << zoom;
    }
}

TEST_F(FontWindow, AnEmptyDocumentTakesTheFocusAndTheNextLetterTheFormat) {
    program.command(Command::mnuFileNew);
    ::SetFocus(control(frmFont::kCommand3));
    click(frmFont::kG1 + 6);
    EXPECT_EQ(::GetFocus(), program.editor().handle());
    // With plain text on the clipboard typing would take the editor's own format.
    program.clipboard.rich = "{\\rtf1 x}";
    ::SendMessageW(program.editor().handle(), WM_CHAR, 'C', 1);
    program.editor().select({0, 1});
    EXPECT_EQ(style().colour, kRed);
}

TEST_F(FontWindow, SettingsAreKept) {
    struct Case {
        int option;
        std::string face;
        Text value;
    };
    EXPECT_EQ(send(frmFont::kOption2, BM_GETCHECK), BST_CHECKED);
    for (const auto& [option, face, value] : {Case{frmFont::kOption1, "Courier New", u"0"},
                                              Case{frmFont::kOption2, "Lucida Console", u"1"}}) {
        click(option);
        EXPECT_TRUE(program.messages.boxes.empty());
        click(frmFont::kCommand1);
        ASSERT_EQ(program.messages.boxes.size(), 1U);
        EXPECT_EQ(program.messages.boxes[0].text,
                  "Your New Chord Notations will be created with the Font: " + face + "      ");
        EXPECT_EQ(program.messages.boxes[0].title, " Melvorin     ");
        EXPECT_EQ(program.messages.boxes[0].icon, MessageIcon::Information);
        program.messages.boxes.clear();
        const auto stored =
            program.profiles.values.find({u"C:\\Program\\Melvorin.ini", u"Tela", u"Option"});
        ASSERT_NE(stored, program.profiles.values.end());
        EXPECT_EQ(stored->second, value);
        EXPECT_EQ(shown(editorFontFace(program.services)), face);
        program.command(Command::mnuFileNew);
        EXPECT_EQ(shown(style().face.value_or(u"")), face);
    }
    EXPECT_EQ(newSteps(), 2) << "of the two new documents";
}

// Exit, Esc and the main window's end close it; while a dialog is open it changes nothing.
TEST_F(FontWindow, ClosesAndWaitsForOthers) {
    program.dialogs.whileOpen = [&] {
        click(frmFont::kCheck1);
        click(frmFont::kG1);
    };
    program.dialogs.choose(std::nullopt);
    program.command(Command::mnuFileOpen);
    EXPECT_EQ(newSteps(), 0);
    EXPECT_EQ(style().bold, false);
    // The focus comes back to where it was.
    ::SetFocus(control(frmFont::kT1));
    ::SetActiveWindow(program.form->handle());
    EXPECT_EQ(::GetFocus(), program.editor().handle());
    ::SetActiveWindow(window().handle());
    EXPECT_EQ(::GetFocus(), control(frmFont::kT1));
    click(IDCANCEL);
    EXPECT_FALSE(window().isOpen());
    program.command(Command::mnuFont);
    ::PostMessageW(control(frmFont::kList1), WM_KEYDOWN, VK_ESCAPE, 1);
    program.waitUntil([&] { return !window().isOpen(); });
    program.command(Command::mnuFont);
    program.form->endRun();
    program.form->destroy();
    EXPECT_FALSE(window().isOpen());
}

TEST_F(FontWindow, KeysReachEverything) {
    std::vector<int> stops;
    ::SetFocus(control(frmFont::kText2));
    do {
        stops.push_back(::GetDlgCtrlID(::GetFocus()));
        ::PostMessageW(::GetFocus(), WM_KEYDOWN, VK_TAB, 1);
        program.pump();
    } while (::GetDlgCtrlID(::GetFocus()) != frmFont::kText2 && stops.size() < 60);
    EXPECT_EQ(stops,
              (std::vector<int>{frmFont::kText2, frmFont::kList1, frmFont::kT1, frmFont::kList2,
                                frmFont::kCheck1, frmFont::kCheck2, frmFont::kCheck3,
                                frmFont::kOp1Text, frmFont::kG1, frmFont::kCommand3,
                                frmFont::kOption2, frmFont::kCommand1, IDCANCEL}));
    // From the first colour down through the rows; Space takes the one that has the focus.
    ::SetFocus(control(frmFont::kG1));
    for (const int key : {VK_RIGHT, VK_DOWN, VK_DOWN, VK_DOWN, VK_DOWN, VK_DOWN, VK_RIGHT}) {
        ::PostMessageW(::GetFocus(), WM_KEYDOWN, static_cast<WPARAM>(key), 1);
        program.pump();
    }
    const int reached = ::GetDlgCtrlID(::GetFocus()) - frmFont::kG1;
    EXPECT_GE(reached, 26);
    ::PostMessageW(::GetFocus(), WM_KEYDOWN, VK_SPACE, 1);
    ::PostMessageW(::GetFocus(), WM_KEYUP, VK_SPACE, 1);
    program.pump();
    EXPECT_EQ(style().colour, swatches()[static_cast<std::size_t>(reached)].colour);
    EXPECT_EQ(newSteps(), 1);
}

// Letters too large for the example are as large as it allows.
TEST_F(FontWindow, DraggingTheBorderMakesLargeLettersLarger) {
    const auto letters = [&] {
        LOGFONTW font{};
        ::GetObjectW(reinterpret_cast<HFONT>(send(frmFont::kLabel4, WM_GETFONT)), sizeof font,
                     &font);
        return -font.lfHeight;
    };
    program.editor().setSelectionSize(800);
    waitForSelection({5, 11}, frmFont::kT1, "400");
    const LONG usual = letters();
    RECT own{};
    ::GetWindowRect(window().handle(), &own);
    const auto drag = [&](LONG by) {
        ::SetWindowPos(window().handle(), nullptr, 0, 0, static_cast<int>(own.right - own.left),
                       static_cast<int>(own.bottom - own.top + by), SWP_NOMOVE | SWP_NOZORDER);
    };
    drag(90);
    EXPECT_EQ(letters(), usual + 60);
    drag(0);
    EXPECT_EQ(letters(), usual);
}

// Nothing is cut off, nothing overlaps, and columns are equally wide.
TEST_F(FontWindow, ControlsKeepApartAndInside) {
    struct Placed {
        HWND window;
        RECT area;
        bool isFrame;
    };
    std::vector<Placed> placed;
    RECT client{};
    ::GetClientRect(window().handle(), &client);
    for (HWND child = ::GetWindow(window().handle(), GW_CHILD); child != nullptr;
         child = ::GetWindow(child, GW_HWNDNEXT)) {
        RECT area{};
        ::GetWindowRect(child, &area);
        ::MapWindowPoints(nullptr, window().handle(), reinterpret_cast<POINT*>(&area), 2);
        wchar_t name[20] = L"";
        ::GetClassNameW(child, name, 20);
        const bool isFrame = std::wstring_view(name) == L"Button" &&
                             (::GetWindowLongPtrW(child, GWL_STYLE) & BS_TYPEMASK) == BS_GROUPBOX;
        placed.push_back({child, area, isFrame});
        EXPECT_TRUE(area.left >= 8 && area.top >= 8 && area.right <= client.right - 8 &&
                    area.bottom <= client.bottom - 8);
    }
    const auto widthOf = [&](int id) {
        RECT area{};
        ::GetWindowRect(control(id), &area);
        return area.right - area.left;
    };
    for (int id = frmFont::kG1; id < frmFont::kG1 + static_cast<int>(kNamedSwatchCount); ++id)
        EXPECT_EQ(widthOf(id), widthOf(frmFont::kCommand3)) << id;
    for (const Placed& a : placed) {
        for (const Placed& b : placed) {
            RECT common{};
            if (a.window < b.window && a.isFrame == b.isFrame) {
                EXPECT_FALSE(::IntersectRect(&common, &a.area, &b.area))
                    << ::GetDlgCtrlID(a.window) << " and " << ::GetDlgCtrlID(b.window);
            }
        }
    }
}

}  // namespace
}  // namespace melvorin::testing
