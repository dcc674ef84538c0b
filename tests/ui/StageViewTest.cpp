// How the full-screen view shows a song, and runs that are told, timed, turned and written out.
#include "OnStage.h"
#include "base/Contrast.h"
#include "rtf/RtfMap.h"

namespace melvorin::testing {
namespace {

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

// What the view keeps from one opening to the next is how it shows a song, and no song.
TEST_F(OnStage, NothingOfTheFirstSongIsLeftInTheSecond) {
    constexpr Rgb paper{255, 255, 200};
    program.editor().setBackground(paper);
    open(songOf(40));
    const auto switchDark = [this] {
        testing::press(program, ::GetFocus(), u'D', {VK_CONTROL, VK_SHIFT});
    };
    ::SetFocus(text().handle());
    switchDark();
    pressWithCtrl(VK_ADD);
    setJump(1, 30, 2, 1);
    click(item(frmFScreenB::Command8));
    RichEdit& reduced = view().FSRTB2();
    reduced.select({0, 0});
    ::SendMessageW(reduced.handle(), WM_CHAR, 'X', 1);
    // Reduced as it is.
    view().close();
    EXPECT_EQ(program.text(), "X" + shown(songOf(40)));
    EXPECT_EQ(text().handle(), nullptr);
    EXPECT_EQ(reduced.handle(), nullptr);

    constexpr char song[] =
        "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fmodern Courier New;}}"
        "{\\colortbl ;\\red200\\green0\\blue0;}\\pard\\f0\\fs20 "
        "\\cf1 C   G\\cf0\\par la lo\\par end}";
    ASSERT_TRUE(program.editor().loadRtf(song));
    const_cast<Documents&>(program.form->documents()).changed();
    const auto colours = coloursOf(program.editor());
    open();
    EXPECT_TRUE(isShown(text().handle()));
    EXPECT_FALSE(isShown(reduced.handle()));
    EXPECT_EQ(shown(text().text().chars), "C   G\rla lo\rend");
    EXPECT_EQ(text().zoom(), 110);
    EXPECT_EQ(text().background(), DarkColours::kBackground);
    EXPECT_EQ(captionOf(item(frmFScreenB::Text1)), " 03");
    EXPECT_EQ(topLine(), 1);
    EXPECT_EQ(::SendMessageW(item(frmFScreenB::CB + 1), CB_GETCOUNT, 0, 0), 2);
    EXPECT_EQ(::SendMessageW(item(frmFScreenB::CB + 1), CB_GETCURSEL, 0, 0), 0);
    EXPECT_EQ(captionOf(item(frmFScreenB::kPlan)), "1-3; 0:04");

    click(item(frmFScreenB::Command8));
    EXPECT_EQ(shown(reduced.text().chars), "C   G\rla lo\rend");
    EXPECT_EQ(reduced.zoom(), 110);
    EXPECT_EQ(reduced.background(), DarkColours::kBackground);
    ::SetFocus(reduced.handle());
    reduced.select({5, 5});
    ::SendMessageW(reduced.handle(), WM_CHAR, '7', 1);
    EXPECT_EQ(program.text(), "C   G7\rla lo\rend");
    pressWithCtrl('Z');
    EXPECT_EQ(program.text(), "C   G\rla lo\rend");
    EXPECT_EQ(shown(reduced.text().chars), "C   G\rla lo\rend");
    switchDark();
    EXPECT_EQ(coloursOf(reduced), colours);
    EXPECT_EQ(reduced.background(), paper);
}

TEST_F(OnStage, TheLongestLineIsAsWideAsTheScreen) {
    program.screen.screen = {900, 500};
    const auto widest = [this] {
        int right = 0;
        for (std::int32_t line = 0; line < text().lineCount(); ++line)
            right = std::max(
                right, static_cast<int>(
                           text().pointOf(text().firstOfLine(line) + text().lengthOfLine(line)).x));
        return right;
    };
    const auto room = [this] {
        RECT client{};
        ::GetClientRect(text().handle(), &client);
        return static_cast<int>(client.right);
    };
    open(songOf(30, 30) + u"\r" + Text(60, u'w'));
    pressWithCtrl(u'9');
    EXPECT_LE(widest(), room());
    EXPECT_GE(widest(), 800) << "sizes go in whole pixels";
    const int zoom = text().zoom();
    EXPECT_GT(zoom, 100);
    // For the next song too, until another size is chosen.
    view().close();
    open(songOf(30, 30) + u"\r" + Text(90, u'w'));
    EXPECT_LE(widest(), room());
    EXPECT_GE(widest(), 800) << "sizes go in whole pixels";
    EXPECT_LT(text().zoom(), zoom);
    pressWithCtrl(u'0');
    EXPECT_EQ(text().zoom(), 100);
    view().close();
    open(songOf(30, 30));
    EXPECT_EQ(text().zoom(), 100);
    // A large title is wider than longer lines; a scroll bar that comes takes its room; what is
    // measured is the text that is shown.
    view().close();
    std::string large =
        "{\\rtf1\\ansi{\\fonttbl{\\f0\\fmodern Courier New;}}\\f0\\fs48 A title that is set "
        "large\\fs20";
    for (int i = 0; i < 60; ++i)
        large += "\\par a line of the song that has 40 letters..";
    ASSERT_TRUE(program.editor().loadRtf(large + "}"));
    open();
    pressWithCtrl(u'9');
    EXPECT_LE(widest(), room());
    view().close();
    for (const std::size_t letters : {60U, 80U, 100U}) {
        open(songOf(100, letters));
        pressWithCtrl(u'9');
        EXPECT_LE(widest(), room()) << letters;
        view().close();
    }
    open(songOf(5, 20));
    click(item(frmFScreenB::Command8));
    ::SetFocus(view().FSRTB2().handle());
    view().FSRTB2().select({0, 0});
    for (int i = 0; i < 60; ++i)
        ::SendMessageW(view().FSRTB2().handle(), WM_CHAR, u'w', 1);
    program.pump();
    pressWithCtrl(u'9');
    RichEdit& small = view().FSRTB2();
    EXPECT_LE(small.pointOf(small.lengthOfLine(0)).x, 900);
    pressWithCtrl(u'0');
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
    for (std::int32_t top = 60; top < 66; ++top) {
        text().bringToTop(top);
        press(VK_PRIOR);
        EXPECT_NE(topLine() % 3, 2) << "back from " << top + 1;
    }
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

TEST_F(OnStage, ThePanelIsMadeWhileNobodyDoesAnything) {
    ::SetFocus(program.editor().handle());
    program.waitUntil([this] { return panel().isOpen(); });
    EXPECT_FALSE(isShown(panel().handle()));
    EXPECT_EQ(::GetFocus(), program.editor().handle());
    EXPECT_TRUE(::IsWindowEnabled(program.form->handle()));
    open(songOf(20));
    EXPECT_TRUE(isShown(panel().handle()));
    EXPECT_EQ(captionOf(item(frmFScreenB::kPlan)), "1-20; 0:21");
    EXPECT_EQ(::GetWindow(panel().handle(), GW_OWNER), view().handle());
}

// ---- A song that changes while it is on stage -------------------------------------------------

TEST_F(OnStage, ThePlanIsThatOfTheSongAsItIs) {
    const auto plan = [this] { return captionOf(item(frmFScreenB::kPlan)); };
    open(songOf(10));
    EXPECT_EQ(plan(), "1-10; 0:11");
    ::SetFocus(text().handle());
    text().select({text().length(), text().length()});
    program.clipboard.plain = u"\r\none\r\ntwo\r\nthree\r\nfour";
    pressWithCtrl(u'V');
    EXPECT_EQ(plan(), "1-14; 0:15");
    pressWithCtrl(u'V');
    EXPECT_EQ(plan(), "1-18; 0:19");
    pressWithCtrl(u'Z');
    EXPECT_EQ(plan(), "1-14; 0:15");
    // Written out it follows, too.
    click(item(frmFScreenB::kUnrolled));
    ::SetFocus(text().handle());
    pressWithCtrl(u'Y');
    EXPECT_EQ(plan(), "1-18; 0:19");
    EXPECT_EQ(text().lineCount(), 18);
    EXPECT_EQ(shown(text().text().chars), shown(program.editor().text().chars));
}

TEST_F(OnStage, WrittenOutTheNumbersAreThoseOfTheSong) {
    open(u"[Verse]\rC\rla\r[Chorus]\rF\rlo\r[Coda]\rG\rend\rfin");
    setJump(1, 6, 1, 1);  // 1-6, 2-10
    click(item(frmFScreenB::kUnrolled));
    EXPECT_EQ(text().lineCount(), 15);
    const std::int32_t coda = text().firstOfLine(12);
    text().select({coda, coda});
    program.pump();
    EXPECT_EQ(captionOf(item(frmFScreenB::Text1)), " 08");
    ::SetFocus(item(frmFScreenB::CB + 3));
    notify(item(frmFScreenB::CB + 3), CBN_SETFOCUS);
    ::CheckDlgButton(panel().handle(), frmFScreenB::CK + 2, BST_UNCHECKED);
    click(item(frmFScreenB::kRowFromHere));
    EXPECT_EQ(::SendMessageW(item(frmFScreenB::CB + 3), CB_GETCURSEL, 0, 0), 7);
    ::CheckDlgButton(panel().handle(), frmFScreenB::CK + 2, BST_UNCHECKED);
    notify(item(frmFScreenB::CK + 2), BN_CLICKED);
    EXPECT_EQ(text().lineCount(), 15);
    // Passes written out end without a line beyond each.
    ::CheckDlgButton(panel().handle(), frmFScreenB::CK + 1, BST_UNCHECKED);
    ::CheckDlgButton(panel().handle(), frmFScreenB::Check1, BST_CHECKED);
    choose(frmFScreenB::Seconds3, 3);
    notify(item(frmFScreenB::Check1), BN_CLICKED);
    EXPECT_EQ(text().lineCount(), 30);
    EXPECT_EQ(captionOf(item(frmFScreenB::kPlan)), "1-10, 1-10, 1-10; 0:31");
}

TEST_F(OnStage, WhatThePanelSaysHasRoom) {
    open(songOf(5000));
    for (int row = 1; row <= 5; ++row)
        setJump(row, 1000 * row - 1, 1000 * row - 101, 99);
    setJump(2, 4999, 1, 99);
    setJump(5, 4999, 4998, 1);
    choose(frmFScreenB::Seconds, 10);
    notify(item(frmFScreenB::Check1), BN_CLICKED);
    const HWND label = item(frmFScreenB::kPlan);
    const Text words = windowText(label);
    EXPECT_NE(shown(words).find("in circles"), std::string::npos);
    RECT room{};
    ::GetClientRect(label, &room);
    RECT need{0, 0, room.right, 0};
    const HDC dc = ::GetDC(label);
    const HGDIOBJ former =
        ::SelectObject(dc, reinterpret_cast<HFONT>(::SendMessageW(label, WM_GETFONT, 0, 0)));
    ::DrawTextW(dc, wide(words), -1, &need, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
    ::SelectObject(dc, former);
    ::ReleaseDC(label, dc);
    EXPECT_LE(need.bottom, room.bottom) << shown(words);
}

TEST_F(OnStage, APausedRunGoesAlongWithThePagesOfTheText) {
    program.screen.monitors = {{{0, 0, 600, 300}, {0, 0, 600, 300}},
                               {{600, 0, 600, 300}, {600, 0, 600, 300}}};
    open(songOf(100));
    testing::press(program, panel().handle(), u'M', {VK_CONTROL, VK_SHIFT});
    choose(frmFScreenB::Seconds, 2);
    click(item(frmFScreenB::Command4));
    // A monitor of the same size is left, and the system has moved the window there already.
    program.screen.monitors.pop_back();
    ::SetWindowPos(view().handle(), nullptr, 0, 0, 0, 0,
                   SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
    ::SendMessageW(view().handle(), WM_DISPLAYCHANGE, 32, MAKELPARAM(600, 300));
    ASSERT_TRUE(panel().run().isPaused());
    ::SetFocus(text().handle());
    press(VK_NEXT);
    press(VK_NEXT);
    const int top = topLine();
    EXPECT_GT(top, 5);
    EXPECT_EQ(panel().run().currentLine(), top);
    click(onBar(Form3::Cmd));
    for (int second = 0; second < 3; ++second)
        nextSecond();
    EXPECT_EQ(topLine(), top + 1);
}

}  // namespace
}  // namespace melvorin::testing
