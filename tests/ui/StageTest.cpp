// The full-screen view, its panel and its bars on the real controls and timers; only the clock is
// moved by hand.
#include "Controls.h"
#include "base/Contrast.h"
#include "rtf/RtfMap.h"

namespace melvorin::testing {
namespace {

std::vector<int> range(int first, int last) {
    std::vector<int> numbers;
    for (int number = first; number <= last; ++number)
        numbers.push_back(number);
    return numbers;
}

std::vector<int> joined(std::initializer_list<std::vector<int>> parts) {
    std::vector<int> all;
    for (const std::vector<int>& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

class OnStage : public ::testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(program.start()); }

    static Text songOf(int lines, std::size_t width = 20) {
        Text song;
        for (int line = 1; line <= lines; ++line) {
            song += fromUtf8("Line " + std::to_string(line) + " ");
            song.append(width, u'a');
            song += line < lines ? u"\r" : u"";
        }
        return song;
    }
    void open(const Text& song) {
        ASSERT_TRUE(program.editor().loadPlain({song}, u"Lucida Console", 10));
        open();
    }
    void open() {
        program.command(Command::mnuFullScreen);
        ASSERT_TRUE(view().isOpen());
        program.waitUntil([this] { return panel().isPrepared(); });
    }

    frmFScreen& view() { return program.form->fullScreen(); }
    frmFScreenB& panel() { return view().panel(); }
    RichEdit& text() { return view().FSRTB(); }
    HWND item(int id) { return ::GetDlgItem(panel().handle(), id); }
    HWND onBar(int id) { return ::GetDlgItem(panel().bar().handle(), id); }
    void choose(int list, int number) {
        ::SendMessageW(item(list), CB_SETCURSEL, static_cast<WPARAM>(number - 1), 0);
    }
    void setJump(int row, int from, int to, int times) {
        ::CheckDlgButton(panel().handle(), frmFScreenB::CK + row, BST_CHECKED);
        choose(frmFScreenB::CB + 2 * row - 1, from);
        choose(frmFScreenB::CB + 2 * row, to);
        choose(frmFScreenB::CB + 10 + row, times);
    }
    void click(HWND button) {
        ::SendMessageW(button, BM_CLICK, 0, 0);
        program.pump();
    }
    void press(WPARAM key) {
        ::PostMessageW(::GetFocus(), WM_KEYDOWN, key, 1);
        program.pump();
    }
    // A key that is pressed while Ctrl is down.
    void pressWithCtrl(WPARAM key) {
        BYTE former[256];
        BYTE held[256];
        ::GetKeyboardState(former);
        std::copy(std::begin(former), std::end(former), held);
        held[VK_CONTROL] = 0x80;
        MSG message{};
        message.hwnd = ::GetFocus();
        message.message = WM_KEYDOWN;
        message.wParam = key;
        message.lParam = 1;
        ::SetKeyboardState(held);
        if (!program.form->translate(message))
            ::DispatchMessageW(&message);
        ::SetKeyboardState(former);
        program.pump();
    }
    std::string caption() { return captionOf(panel().bar().handle()); }
    int topLine() { return static_cast<int>(text().firstVisibleLine()) + 1; }
    bool isShown(HWND window) { return ::IsWindowVisible(window) != FALSE; }
    // Lets a second pass, and the timer see it.
    void nextSecond() {
        const std::string before = caption();
        program.clock.ms += 1000;
        program.waitUntil([&] { return caption() != before; });
    }
    Area placeOf(HWND window) {
        RECT place{};
        ::GetWindowRect(window, &place);
        return areaOf(place);
    }

    Program program;
};

TEST_F(OnStage, AWholeSongWithJumpsAndPasses) {
    program.screen.screen = {500, 300};
    open(songOf(40));
    const std::int16_t snapshots = program.history().count();
    // From the end no line goes farther up than the last screenful allows.
    text().bringToTop(39);
    const int highest = topLine();
    EXPECT_GT(highest, 20);
    EXPECT_LT(highest, 40);

    ::CheckDlgButton(panel().handle(), frmFScreenB::Check1, BST_CHECKED);
    choose(frmFScreenB::Seconds3, 2);
    setJump(1, 4, 1, 1);
    setJump(5, 39, 25, 1);
    click(item(frmFScreenB::Command4));
    EXPECT_FALSE(isShown(panel().handle()));
    EXPECT_TRUE(isShown(panel().bar().handle()));
    EXPECT_TRUE(program.screen.isKeptOn);
    program.waitUntil([this] { return caption() == " 0:00 "; });

    // Line 4 goes to 1 and the step on to 2; line 39 to 26. Line 40 stands twice.
    const std::vector<int> pass = joined({range(1, 4), range(2, 39), range(26, 41)});
    const std::vector<int> lines = joined({pass, pass, {42}});
    std::vector<int> played{panel().run().currentLine()};
    std::vector<int> tops{topLine()};
    std::vector<int> expectedTops{1};
    while (played.size() < lines.size()) {
        nextSecond();
        played.push_back(panel().run().currentLine());
        tops.push_back(topLine());
        expectedTops.push_back(std::min(lines[played.size() - 1], highest));
    }
    EXPECT_EQ(played, lines);
    EXPECT_EQ(tops, expectedTops);
    EXPECT_EQ(caption(), "0:00");
    EXPECT_TRUE(isShown(panel().handle()));
    EXPECT_FALSE(isShown(panel().bar().handle()));
    EXPECT_FALSE(program.screen.isKeptOn);
    EXPECT_EQ(program.history().count(), snapshots);
    EXPECT_FALSE(program.state().dirty);
}

TEST_F(OnStage, PanelIsPreparedForTheSong) {
    open(songOf(30));
    const auto count = [&](int id) { return ::SendMessageW(item(id), CB_GETCOUNT, 0, 0); };
    const auto cursorLine = [&] { return captionOf(item(frmFScreenB::Text1)); };
    for (int id = frmFScreenB::CB + 1; id <= frmFScreenB::CB + 10; ++id)
        EXPECT_EQ(count(id), 29);
    EXPECT_EQ(count(frmFScreenB::Seconds2), 29);
    EXPECT_EQ(panel().run().lastLine(), 31);
    EXPECT_EQ(cursorLine(), " 30");
    EXPECT_EQ(topLine(), 1);
    text().select({text().firstOfLine(6), text().firstOfLine(6)});
    program.pump();
    EXPECT_EQ(cursorLine(), " 07");

    // "Update" counts again; what was chosen stays while it can.
    choose(frmFScreenB::CB + 1, 29);
    choose(frmFScreenB::CB + 2, 12);
    text().select({text().firstOfLine(20), text().firstOfLine(25)});
    text().replaceSelection(u"");
    click(item(frmFScreenB::Command6));
    EXPECT_EQ(count(frmFScreenB::CB + 1), 24);
    EXPECT_EQ(::SendMessageW(item(frmFScreenB::CB + 1), CB_GETCURSEL, 0, 0), 23);
    EXPECT_EQ(::SendMessageW(item(frmFScreenB::CB + 2), CB_GETCURSEL, 0, 0), 11);
    EXPECT_EQ(panel().run().lastLine(), 26);
}

TEST_F(OnStage, WhatIsTypedIsInTheDocumentAndCanBeUndone) {
    const ScratchFolder folder;
    program.dialogs.choose(FileChoice{folder.add(u"song.rtf",
                                                 "{\\rtf1{\\fonttbl{\\f0 Courier New;}}{\\colortbl;"
                                                 "\\red255\\green0\\blue0;}\\f0\\b\\cf1 C  G\\par "
                                                 "\\b0\\cf0 la la}"),
                                      2});
    program.command(Command::mnuFileOpen);
    program.editor().setBackground(Rgb{255, 255, 200});
    open();
    EXPECT_EQ(text().background(), (Rgb{255, 255, 200}));
    const std::int16_t snapshots = program.history().count();
    EXPECT_FALSE(program.state().dirty);
    ::SetFocus(text().handle());
    text().select({2, 2});
    ::SendMessageW(text().handle(), WM_CHAR, 'm', 1);
    EXPECT_EQ(program.text(), "C m G\rla la");
    EXPECT_EQ(program.editor().rtf(), text().rtf());
    EXPECT_EQ(program.editor().selection(), (Selection{3, 3}));
    EXPECT_TRUE(program.state().dirty);
    EXPECT_EQ(program.history().count(), snapshots + 1);
    ::SendMessageW(text().handle(), WM_CHAR, '\t', 1);
    EXPECT_EQ(program.text(), shown(text().text().chars));
    EXPECT_EQ(program.text().find('\t'), std::string::npos);
    EXPECT_EQ(program.history().count(), snapshots + 2);

    for (int i = 0; i < 2; ++i)
        pressWithCtrl('Z');
    EXPECT_EQ(shown(text().text().chars), "C  G\rla la");
    EXPECT_EQ(program.text(), "C  G\rla la");
    const HWND shownOne = text().handle();
    pressWithCtrl('Z');
    EXPECT_EQ(text().handle(), shownOne) << "nothing to undo, nothing loaded";
    pressWithCtrl('Y');
    EXPECT_EQ(shown(text().text().chars), "C m G\rla la");
    text().select({0, 1});
    EXPECT_EQ(text().selectionStyle().bold, true);
    EXPECT_EQ(text().selectionStyle().colour, (Rgb{255, 0, 0}));
}

// Undo brings the colour behind the text back, here as in the editor.
TEST_F(OnStage, UndoShowsTheBackgroundOfItsStep) {
    auto& documents = const_cast<Documents&>(program.form->documents());
    for (const Rgb colour : {Rgb{1, 2, 3}, Rgb{4, 5, 6}}) {
        program.editor().setBackground(colour);
        documents.changed();
    }
    open();
    ::SetFocus(text().handle());
    pressWithCtrl('Z');
    EXPECT_EQ(text().background(), (Rgb{1, 2, 3}));
}

// While a very long text is made ready, neither the panel nor the run takes the view away.
TEST_F(OnStage, AVeryLongPasteIsNotDisturbed) {
    open(songOf(5));
    program.clipboard.plain.emplace(4u << 20, u'x');
    // The panel is asked to leave while the tab-expansion window is at work; then that is closed.
    const WhileOpen disturbed(L"MelvorinFrmTxt", [this](HWND atWork) {
        EXPECT_FALSE(::IsWindowEnabled(panel().handle()));
        ::SendMessageW(panel().handle(), WM_COMMAND, frmFScreenB::Command7, 0);
        ::PostMessageW(atWork, WM_CLOSE, 0, 0);
    });
    ::SetFocus(text().handle());
    pressWithCtrl('V');
    EXPECT_EQ(disturbed.seen(), 1) << "the window was seen";
    ASSERT_TRUE(view().isOpen());
    EXPECT_TRUE(::IsWindowEnabled(panel().handle()));
    EXPECT_EQ(program.text(), shown(songOf(5)));
    EXPECT_FALSE(program.state().dirty);
}

TEST_F(OnStage, ReducedTextIsTheDocumentToo) {
    open(songOf(30));
    text().bringToTop(10);
    click(item(frmFScreenB::Command8));
    EXPECT_FALSE(isShown(panel().handle()));
    EXPECT_TRUE(isShown(view().FSRTB2().handle()));
    EXPECT_FALSE(isShown(text().handle()));
    EXPECT_EQ(view().FSRTB2().firstVisibleLine(), 0);  // 30 lines fit the screen
    EXPECT_FALSE(program.state().dirty);
    view().FSRTB2().select({0, 0});
    ::SendMessageW(view().FSRTB2().handle(), WM_CHAR, 'X', 1);
    EXPECT_EQ(program.text().substr(0, 7), "XLine 1");
    ::SetFocus(::GetDlgItem(panel().smallBar().handle(), Form3b::Cmd3));
    press(VK_ESCAPE);
    EXPECT_TRUE(isShown(panel().handle()));
    EXPECT_TRUE(isShown(text().handle()));
    EXPECT_FALSE(isShown(view().FSRTB2().handle()));
    EXPECT_EQ(text().text().chars, program.editor().text().chars);
}

// One click into the text and an Enter from a pedal must not write into a song that runs.
TEST_F(OnStage, ARunningSongTakesNoKeys) {
    program.type(u"to be undone");
    open(songOf(30));
    click(item(frmFScreenB::Command4));
    ASSERT_TRUE(panel().run().isRunning());
    const auto typeAll = [&] {
        ::SetFocus(text().handle());
        text().select({0, 4});
        for (const WPARAM key : {WPARAM{VK_RETURN}, WPARAM{VK_DELETE}, WPARAM{VK_BACK}}) {
            ::SendMessageW(text().handle(), WM_KEYDOWN, key, 1);
            ::SendMessageW(text().handle(), WM_CHAR, key == VK_DELETE ? 'b' : key, 1);
        }
        program.clipboard.plain = u"pasted";
        pressWithCtrl('V');
        pressWithCtrl('X');
        program.pump();
    };
    const int step = program.history().current();
    typeAll();
    pressWithCtrl('Z');
    EXPECT_EQ(program.history().current(), step);
    EXPECT_EQ(program.text(), shown(songOf(30)));
    click(onBar(Form3::Cmd));
    ASSERT_TRUE(panel().run().isPaused());
    typeAll();
    EXPECT_NE(program.text(), shown(songOf(30))) << "during a pause the song can be edited";
    EXPECT_TRUE(program.state().dirty);
}

TEST_F(OnStage, EnterInAListIsNoStart) {
    open(songOf(30));
    for (const int list : {int{frmFScreenB::Seconds}, int{frmFScreenB::Seconds2},
                           frmFScreenB::CB + 1, frmFScreenB::CB + 11}) {
        ::SetFocus(item(list));
        press(VK_RETURN);
        EXPECT_FALSE(panel().run().isRunning()) << list;
    }
    ::SetFocus(item(frmFScreenB::Command4));
    press(VK_RETURN);
    ::PostMessageW(::GetFocus(), WM_KEYUP, VK_RETURN, 1);
    program.pump();
    EXPECT_TRUE(panel().run().isRunning());
}

// A view that does not take the song is not shown, or its next key would write nothing over it.
TEST_F(OnStage, ATextThatIsRefusedIsNotShown) {
    const Text song = songOf(30);
    ASSERT_TRUE(program.editor().loadPlain({song}, u"Lucida Console", 10));
    {
        const RefusingControls refusing;
        program.command(Command::mnuFullScreen);
    }
    EXPECT_FALSE(view().isOpen());
    EXPECT_EQ(program.messages.boxes.size(), 1U);
    EXPECT_TRUE(::IsWindowEnabled(program.form->handle()));

    open();
    {
        const RefusingControls refusing;
        click(item(frmFScreenB::Command8));
    }
    EXPECT_EQ(program.messages.boxes.size(), 2U);
    EXPECT_TRUE(isShown(text().handle()) && isShown(panel().handle()));

    click(item(frmFScreenB::Command8));
    view().FSRTB2().select({0, 0});
    ::SendMessageW(view().FSRTB2().handle(), WM_CHAR, 'X', 1);
    {
        const RefusingControls refusing;
        ::SendMessageW(panel().smallBar().handle(), WM_COMMAND, Form3b::Cmd3, 0);
    }
    EXPECT_EQ(program.messages.boxes.size(), 3U);
    EXPECT_FALSE(view().isOpen()) << "back to the editor, which has the song";
    EXPECT_EQ(program.text(), "X" + shown(song));
}

TEST_F(OnStage, KeysOfARun) {
    program.screen.screen = {500, 300};
    open(songOf(60));
    click(item(frmFScreenB::Command4));
    EXPECT_EQ(::GetFocus(), onBar(Form3::Cmd));
    const auto lineAfter = [&](WPARAM key) {
        press(key);
        return panel().run().currentLine();
    };
    EXPECT_EQ(lineAfter(VK_F1), 1);
    EXPECT_EQ(lineAfter(VK_F2), 3);
    EXPECT_EQ(lineAfter(VK_F3), 9);
    EXPECT_EQ(lineAfter(VK_F4), 20);
    EXPECT_EQ(topLine(), 20);
    // A pedal moves the view, and the run along with it.
    EXPECT_GT(lineAfter(VK_NEXT), 25);
    EXPECT_EQ(topLine(), panel().run().currentLine());
    EXPECT_LT(lineAfter(VK_PRIOR), 26);
    EXPECT_GE(topLine(), 20);
    while (topLine() > 20)
        press(VK_UP);
    EXPECT_EQ(panel().run().currentLine(), 20);

    click(onBar(Form3::Cmd));
    EXPECT_EQ(caption(), " Paused");
    EXPECT_EQ(lineAfter(VK_F2), 20);
    // Edited meanwhile, the run goes on in what there is.
    text().select({text().firstOfLine(15), text().firstOfLine(59)});
    text().replaceSelection(u"");
    click(onBar(Form3::Cmd));
    EXPECT_EQ(lineAfter(VK_F2), 22);
    EXPECT_EQ(text().lineOf(text().selection().begin), 15);

    press(VK_ESCAPE);
    EXPECT_TRUE(isShown(panel().handle()));
    EXPECT_FALSE(panel().run().isRunning());
    EXPECT_FALSE(isShown(panel().bar().handle()));
    press(VK_ESCAPE);
    EXPECT_FALSE(view().isOpen());
    EXPECT_TRUE(::IsWindowEnabled(program.form->handle()));
    EXPECT_EQ(::GetFocus(), program.editor().handle());
}

TEST_F(OnStage, SongsThatCannotMove) {
    for (const Text& song : {Text(), Text(u"one line")}) {
        open(song);
        click(item(frmFScreenB::Command4));
        EXPECT_TRUE(isShown(panel().handle()));
        EXPECT_FALSE(panel().run().isRunning());
        EXPECT_FALSE(program.screen.isKeptOn);
        view().close();
    }
}

TEST_F(OnStage, WideLinesStayAtTheirBeginning) {
    program.screen.screen = {500, 300};
    open(songOf(60, 300));
    const std::int32_t lines = text().lineCount();
    text().bringToTop(59);
    const int highest = topLine();  // of the last screenful
    EXPECT_GT(highest, 20);
    for (const int line : {30, 59, 5}) {
        text().bringToTop(line);
        EXPECT_EQ(topLine(), std::min(line + 1, highest)) << line;
        EXPECT_EQ(text().scrollPosition().x, 0) << line;
    }
    // The line on top is kept wherever the cursor is.
    const ScrollPosition place = text().scrollPosition();
    const auto end = static_cast<std::int32_t>(text().text().chars.size());
    text().select({end, end});
    text().scrollTo(place);
    EXPECT_EQ(topLine(), 6);
    const std::string rtf = program.editor().rtf();
    const std::string viewRtf = text().rtf();
    const int width = static_cast<int>(text().pointOf(text().firstOfLine(5) + 20).x -
                                       text().pointOf(text().firstOfLine(5)).x);
    const int height = static_cast<int>(text().pointOf(text().firstOfLine(8)).y -
                                        text().pointOf(text().firstOfLine(7)).y);
    ::PostMessageW(::GetFocus(), WM_MOUSEWHEEL, MAKEWPARAM(MK_CONTROL, WHEEL_DELTA), 0);
    program.pump();
    EXPECT_EQ(text().zoom(), 110);
    pressWithCtrl(VK_ADD);
    pressWithCtrl(VK_OEM_PLUS);
    EXPECT_EQ(text().zoom(), 150);
    EXPECT_TRUE(::IsWindowVisible(text().handle()));
    EXPECT_FALSE(::IsWindowVisible(program.form->fullScreen().FSRTB2().handle()));
    EXPECT_EQ(text().lineCount(), lines);
    EXPECT_EQ(text().rtf(), viewRtf);
    EXPECT_EQ(topLine(), 6);
    const std::int32_t first = text().firstOfLine(5);
    EXPECT_GT(text().pointOf(first + 20).x - text().pointOf(first).x, width * 13 / 10);
    EXPECT_GT(text().pointOf(text().firstOfLine(8)).y - text().pointOf(text().firstOfLine(7)).y,
              height * 13 / 10);
    pressWithCtrl(VK_SUBTRACT);
    EXPECT_EQ(text().zoom(), 125);
    text().loadRtf(rtf);
    EXPECT_EQ(text().zoom(), 125);
    EXPECT_GT(text().pointOf(text().firstOfLine(8)).y - text().pointOf(text().firstOfLine(7)).y,
              height * 11 / 10);
    EXPECT_EQ(program.editor().rtf(), rtf);
}

TEST_F(OnStage, ScreenOfTheMainWindowAndItsChanges) {
    program.screen.monitors = {{{0, 0, 1280, 1024}, {0, 0, 1280, 990}},
                               {{1280, -200, 900, 700}, {1280, -200, 900, 660}}};
    ::SetWindowPos(program.form->handle(), nullptr, 1300, 0, 700, 400, SWP_NOZORDER);
    open(songOf(30));
    EXPECT_EQ(placeOf(view().handle()), (Area{1280, -200, 900, 700}));
    Area place = placeOf(panel().handle());
    EXPECT_EQ(place.left + place.width, 2180);
    EXPECT_EQ(place.top + place.height, 460);
    click(item(frmFScreenB::Command4));
    place = placeOf(panel().bar().handle());
    EXPECT_EQ(place.left + place.width + place.width / 4, 2180);

    // The second monitor is unplugged while a run goes.
    program.screen.monitors = {{{0, 0, 640, 480}, {0, 0, 640, 450}}};
    program.screen.screen = {640, 480};
    program.screen.work = {640, 450};
    ::SendMessageW(view().handle(), WM_DISPLAYCHANGE, 32, MAKELPARAM(640, 480));
    EXPECT_EQ(placeOf(view().handle()), (Area{0, 0, 640, 480}));
    EXPECT_EQ(placeOf(text().handle()).top, 7);
    EXPECT_EQ(placeOf(text().handle()).height, 473);
    place = placeOf(panel().bar().handle());
    EXPECT_EQ(place.left + place.width + place.width / 4, 640);
    EXPECT_TRUE(panel().run().isPaused());
}

TEST_F(OnStage, PointerAndScreenSaverDuringARun) {
    const auto isPointerShown = [] {
        CURSORINFO info{};
        info.cbSize = sizeof info;
        ::GetCursorInfo(&info);
        return (info.flags & CURSOR_SHOWING) != 0;
    };
    open(songOf(30));
    EXPECT_FALSE(panel().refuses(SC_SCREENSAVE));
    click(item(frmFScreenB::Command4));
    EXPECT_TRUE(panel().refuses(SC_SCREENSAVE | 3));
    EXPECT_TRUE(panel().refuses(SC_MONITORPOWER));
    EXPECT_FALSE(panel().refuses(SC_CLOSE));
    program.waitUntil([this] { return caption() == " 0:00 "; });
    EXPECT_TRUE(isPointerShown());
    nextSecond();
    nextSecond();
    program.waitUntil([&] { return !isPointerShown(); });
    POINT point{};
    ::GetCursorPos(&point);
    ::SetCursorPos(static_cast<int>(point.x) + 9, static_cast<int>(point.y));
    program.waitUntil([&] { return isPointerShown(); });
    nextSecond();
    nextSecond();
    program.waitUntil([&] { return !isPointerShown(); });
    // The panel goes, and all that the run kept goes with it.
    program.command(Command::mnuFullScreen);
    EXPECT_TRUE(isPointerShown());
    click(item(frmFScreenB::Command4));
    EXPECT_TRUE(program.screen.isKeptOn);
    ::SendMessageW(panel().handle(), WM_CLOSE, 0, 0);
    EXPECT_FALSE(view().isOpen());
    EXPECT_FALSE(program.screen.isKeptOn);
}

// Other windows of the song are out of sight meanwhile; its commands and its end go by the editor.
TEST_F(OnStage, TheMainWindowMeanwhile) {
    ASSERT_TRUE(program.editor().loadPlain({songOf(5)}, u"Lucida Console", 10));
    program.command(Command::mnuFind);
    const HWND find = program.form->findWindow().handle();
    open();
    EXPECT_FALSE(isShown(find));
    EXPECT_FALSE(::IsWindowEnabled(program.form->handle()));
    program.command(Command::mnuSelectAll);
    EXPECT_FALSE(view().isOpen());
    EXPECT_TRUE(isShown(find));
    open();
    click(item(frmFScreenB::Command4));
    program.close();
    EXPECT_TRUE(program.ended);
    EXPECT_FALSE(program.screen.isKeptOn);
}

// ---- In the dark, in width, by duration -------------------------------------------------------

// The colours of the characters of a document, nothing for the automatic one.
std::vector<std::optional<Rgb>> coloursOf(const RichEdit& text) {
    const auto map = RtfMap::parse(text.rtf());
    std::vector<std::optional<Rgb>> colours;
    for (std::size_t i = 0; map && i < map->text().size(); ++i)
        colours.push_back(map->colourAt(i));
    return colours;
}

TEST_F(OnStage, DarkIsAViewOnly) {
    constexpr char song[] =
        "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fmodern Courier New;}}"
        "{\\colortbl ;\\red200\\green0\\blue0;\\red0\\green0\\blue160;}\\pard\\f0\\fs20 "
        "\\cf1 C   G\\cf0\\par la \\cf2 blue\\cf0  lo\\par end\\par}";
    ASSERT_TRUE(program.editor().loadRtf(song));
    const auto before = coloursOf(program.editor());
    ASSERT_EQ(before.size(), program.editor().text().chars.size());
    open();
    click(item(frmFScreenB::Command8));  // reduced, so that the text has the focus
    ::SetFocus(view().FSRTB2().handle());
    pressWithCtrl(u'D');
    EXPECT_NE(view().FSRTB2().background(), DarkColours::kBackground) << "not without Shift";
    testing::press(program, ::GetFocus(), u'D', {VK_CONTROL, VK_SHIFT});
    RichEdit& shownText = view().FSRTB2();
    EXPECT_EQ(shownText.background(), DarkColours::kBackground);
    for (const auto& colour : coloursOf(shownText))
        EXPECT_TRUE(colour && contrast(*colour, DarkColours::kBackground) >= 4.5);
    EXPECT_EQ(coloursOf(program.editor()), before) << "nothing was written";

    // Typed among the red ones, and among those without a colour; deleted; pasted.
    shownText.select({1, 1});
    ::SendMessageW(shownText.handle(), WM_CHAR, u'7', 1);
    shownText.select({7, 8});
    ::SendMessageW(shownText.handle(), WM_CHAR, u'i', 1);
    program.pump();
    EXPECT_EQ(shown(program.editor().text().chars), "C7  G\rli blue lo\rend");
    const auto after = coloursOf(program.editor());
    ASSERT_GE(after.size(), 19U);
    constexpr Rgb red{200, 0, 0};
    EXPECT_EQ(after[0], red);
    EXPECT_EQ(after[1], red);
    for (const std::size_t at : {6U, 7U, 14U, 18U})
        EXPECT_FALSE(after[at].has_value()) << at;
    EXPECT_EQ(after[10], (Rgb{0, 0, 160}));
    // Undo shows the dark view too, and the light one comes back.
    pressWithCtrl(u'Z');
    EXPECT_EQ(shownText.background(), DarkColours::kBackground);
    for (const auto& colour : coloursOf(shownText))
        EXPECT_TRUE(colour && contrast(*colour, DarkColours::kBackground) >= 4.5);
    testing::press(program, ::GetFocus(), u'D', {VK_CONTROL, VK_SHIFT});
    EXPECT_EQ(coloursOf(shownText), coloursOf(program.editor()));
}

TEST_F(OnStage, TheLongestLineIsAsWideAsTheScreen) {
    program.screen.screen = {900, 500};
    const auto widest = [this] {
        int width = 0;
        for (std::int32_t line = 0; line < text().lineCount(); ++line) {
            const std::int32_t first = text().firstOfLine(line);
            width = std::max(width,
                             static_cast<int>(text().pointOf(first + text().lengthOfLine(line)).x -
                                              text().pointOf(first).x));
        }
        return width;
    };
    open(songOf(30, 30) + u"\r" + Text(60, u'w'));
    pressWithCtrl(u'9');
    EXPECT_LE(widest(), 900);
    EXPECT_GE(widest(), 820) << "sizes go in whole pixels";
    const int zoom = text().zoom();
    EXPECT_GT(zoom, 100);
    // For the next song too, until another size is chosen.
    view().close();
    open(songOf(30, 30) + u"\r" + Text(90, u'w'));
    EXPECT_LE(widest(), 900);
    EXPECT_GE(widest(), 820) << "sizes go in whole pixels";
    EXPECT_LT(text().zoom(), zoom);
    pressWithCtrl(u'0');
    EXPECT_EQ(text().zoom(), 100);
    view().close();
    open(songOf(30, 30));
    EXPECT_EQ(text().zoom(), 100);
    // A line of a few letters makes no poster, and an empty song nothing.
    view().close();
    open(u"a\rb");
    pressWithCtrl(u'9');
    EXPECT_EQ(text().zoom(), 400);
    view().close();
    open(u"");
    pressWithCtrl(u'9');
    EXPECT_TRUE(view().isOpen());
}

TEST_F(OnStage, ARunGoesAlongWithThePages) {
    program.screen.screen = {600, 300};
    Text song;
    for (int i = 0; i < 30; ++i)
        song += u"C  G\rwords of it\r\r";
    open(song);
    choose(frmFScreenB::Seconds, 30);
    click(item(frmFScreenB::Command4));
    const HWND bar = panel().bar().handle();
    ASSERT_TRUE(isShown(bar));
    ::SetFocus(onBar(Form3::Cmd));
    const int page = topLine();
    press(VK_NEXT);
    const int next = topLine();
    EXPECT_GT(next, page + 3);
    EXPECT_EQ(panel().run().currentLine(), next);
    EXPECT_NE(next % 3, 2) << "words are not parted from their chords";
    press(VK_DOWN);
    EXPECT_EQ(panel().run().currentLine(), next + 1);
    press(VK_PRIOR);
    EXPECT_EQ(panel().run().currentLine(), topLine());
    EXPECT_LT(topLine(), next);
    // It goes on from there after a whole interval, and does not snap back.
    const int here = topLine();
    for (int second = 0; second < 29; ++second)
        nextSecond();
    EXPECT_EQ(topLine(), here);
    // The bar is left; "From Here" goes on at the line on top.
    click(onBar(Form3::Cmd2));
    EXPECT_TRUE(isShown(panel().handle()));
    text().bringToTop(12);
    click(item(frmFScreenB::kStartHere));
    EXPECT_EQ(panel().run().currentLine(), 13);
    EXPECT_TRUE(isShown(bar));
    // A monitor that goes, and a machine that falls asleep, pause it.
    ::SendMessageW(view().handle(), WM_POWERBROADCAST, PBT_APMSUSPEND, 0);
    EXPECT_TRUE(panel().run().isPaused());
    click(onBar(Form3::Cmd));
    EXPECT_TRUE(panel().run().isRunning());
    program.screen.screen = {500, 400};
    ::SendMessageW(view().handle(), WM_DISPLAYCHANGE, 32, MAKELPARAM(500, 400));
    EXPECT_TRUE(panel().run().isPaused());
    EXPECT_EQ(placeOf(view().handle()), (Area{0, 0, 500, 400}));
}

TEST_F(OnStage, ThePanelTellsTheRunBeforeItIsPlayed) {
    open(u"[Verse]\rC\rla\rla\rla\r[Chorus]\rF\rlo\rlo\rend");
    const auto plan = [this] { return captionOf(item(frmFScreenB::kPlan)); };
    EXPECT_EQ(plan(), "1-10; 0:11");
    // The row at hand takes the cursor's line.
    text().select({text().firstOfLine(8), text().firstOfLine(8)});
    click(item(frmFScreenB::kRowFromHere));
    text().select({0, 0});
    click(item(frmFScreenB::kRowToHere));
    EXPECT_EQ(plan(), "1-9, 2-10; 0:19");
    choose(frmFScreenB::CB + 3, 9);
    ::CheckDlgButton(panel().handle(), frmFScreenB::CK + 2, BST_CHECKED);
    notify(item(frmFScreenB::CB + 3), CBN_SELCHANGE);
    click(item(frmFScreenB::CK + 1));
    EXPECT_EQ(plan(), "1-9, 2-10; 0:19");
    ::SetWindowTextW(item(frmFScreenB::kDuration), L"2:x");
    click(item(frmFScreenB::kByDuration));
    EXPECT_NE(plan().find("4:30"), std::string::npos) << "tells how a time is written";
    click(item(frmFScreenB::Command4));
    EXPECT_TRUE(isShown(panel().handle())) << "no run without a time";
    ::SetWindowTextW(item(frmFScreenB::kDuration), L"0:19");
    EXPECT_EQ(plan(), "1-9, 2-10; 0:19");
    ::SendMessageW(item(frmFScreenB::kCountIn), CB_SETCURSEL, 2, 0);
    click(item(frmFScreenB::Command4));
    const auto note = [this] { return captionOf(onBar(Form3::kNote)); };
    EXPECT_EQ(note(), "Count-in 2");
    program.clock.ms += 2000;
    program.waitUntil([&] { return note().empty(); });
    program.clock.ms += 4000;
    program.waitUntil([&] { return note() == "then line 2, Verse"; });
    program.clock.ms += 30'000;
    program.waitUntil([&] { return isShown(panel().handle()); });
    EXPECT_FALSE(panel().run().isRunning());
}

TEST_F(OnStage, MovesToTheNextMonitor) {
    program.screen.monitors = {{{0, 0, 800, 600}, {0, 0, 800, 570}},
                               {{800, 0, 640, 480}, {800, 0, 640, 480}}};
    open(songOf(20));
    const auto toNext = [this] {
        testing::press(program, panel().handle(), u'M', {VK_CONTROL, VK_SHIFT});
    };
    EXPECT_EQ(placeOf(view().handle()), (Area{0, 0, 800, 600}));
    toNext();
    EXPECT_EQ(placeOf(view().handle()), (Area{800, 0, 640, 480}));
    EXPECT_GE(placeOf(panel().handle()).left, 700);
    toNext();
    EXPECT_EQ(placeOf(view().handle()), (Area{0, 0, 800, 600}));
}

TEST_F(OnStage, WritesTheSongOutInTheOrderOfTheRun) {
    constexpr char song[] =
        "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fmodern Courier New;}}"
        "{\\colortbl ;\\red200\\green0\\blue0;}\\pard\\f0\\fs20 "
        "\\cf1 C   G\\cf0\\par la lo\\par \\par \\b [Chorus]\\b0\\par \\cf1 F\\cf0\\par hey\\par "
        "end}";
    ASSERT_TRUE(program.editor().loadRtf(song));
    const Text before = program.editor().text().chars;
    open();
    // After line 6 once more from line 1 on.
    setJump(1, 6, 1, 1);
    choose(frmFScreenB::CB + 2, 1);
    click(item(frmFScreenB::kUnrolled));
    EXPECT_EQ(captionOf(item(frmFScreenB::kPlan)), "1-6, 2-7; 0:13");
    EXPECT_EQ(shown(text().text().chars),
              "C   G\rla lo\r\r[Chorus]\rF\rhey\rla lo\r\r[Chorus]\rF\rhey\rend");
    const auto colours = coloursOf(text());
    ASSERT_EQ(colours.size(), text().text().chars.size());
    EXPECT_EQ(colours[0], (Rgb{200, 0, 0}));
    EXPECT_FALSE(colours[7].has_value());
    // It is to be read only, and the song is as it was.
    ::SetFocus(text().handle());
    ::SendMessageW(text().handle(), WM_CHAR, u'x', 1);
    program.pump();
    EXPECT_EQ(text().text().chars.find(u'x'), Text::npos);
    EXPECT_EQ(program.editor().text().chars, before);
    // The lists keep the numbers of the song; other rows, another order.
    EXPECT_EQ(::SendMessageW(item(frmFScreenB::CB + 1), CB_GETCOUNT, 0, 0), 6);
    ::SendMessageW(item(frmFScreenB::CB + 11), CB_SETCURSEL, 1, 0);
    notify(item(frmFScreenB::CB + 11), CBN_SELCHANGE);
    EXPECT_EQ(text().lineCount(), 17);
    // The run plays it from top to bottom.
    click(item(frmFScreenB::Command4));
    for (int second = 0; second < 10; ++second)
        nextSecond();
    EXPECT_EQ(panel().run().currentLine(), 11);
    EXPECT_EQ(captionOf(onBar(Form3::kNote)), "");
    click(onBar(Form3::Cmd2));
    click(item(frmFScreenB::kUnrolled));
    EXPECT_EQ(text().text().chars, before);
    ::SetFocus(text().handle());
    text().select({5, 5});
    ::SendMessageW(text().handle(), WM_CHAR, u'7', 1);
    program.pump();
    EXPECT_EQ(shown(program.editor().text().chars).substr(0, 6), "C   G7");
}

}  // namespace
}  // namespace melvorin::testing
