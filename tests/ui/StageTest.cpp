// The full-screen view, its panel and its bars on the real controls and timers; only the clock is
// moved by hand.
#include "OnStage.h"

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

}  // namespace
}  // namespace melvorin::testing
