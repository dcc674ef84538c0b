// The find window on the real editor.
#include <random>

#include "FindWindow.h"

namespace melvorin::testing {
namespace {

constexpr char kFinished[] = "  The Melvorin Editor has finished searching the document.       ";

TEST(Find, AnotherSongIsSearchedFromItsTop) {
    const ScratchFolder folder;
    const Text other = folder.add(u"b.txt", "G C\r\nC\r\n");
    Program program(folder.add(u"a.txt", "la la la C C\r\n"));
    const FindWindow find(program);
    find.enter(0, u"C");
    find.click(L"Find Next");
    EXPECT_EQ(program.editor().selection().begin, 9);
    program.dialogs.choose(FileChoice{other, 3});
    program.command(Command::mnuFileOpen);
    find.click(L"Find Next");
    EXPECT_EQ(program.editor().selection().begin, 2);
}

TEST(Find, WalksTheMatchesAndStartsAgain) {
    const ScratchFolder folder;
    Program program(folder.add(u"a.txt", "Cm C cm\r\nC\r\n"));
    const FindWindow find(program);
    EXPECT_FALSE(::IsWindowEnabled(find.child(L"Find Next")));
    find.enter(0, u"  ");
    EXPECT_FALSE(::IsWindowEnabled(find.child(L"Replace All")));
    find.enter(0, u"C");
    EXPECT_TRUE(::IsWindowEnabled(find.child(L"Replace All")));
    const auto walk = [&] {
        std::string starts;
        program.messages.boxes.clear();
        while (program.messages.boxes.empty()) {
            find.click(L"Find Next");
            if (program.messages.boxes.empty()) {
                starts += std::to_string(program.editor().selection().begin) + " ";
                EXPECT_EQ(::GetFocus(), program.editor().handle());
            }
        }
        EXPECT_EQ(program.messages.boxes[0].text, kFinished);
        EXPECT_EQ(program.messages.boxes[0].title, "Melvorin");
        EXPECT_EQ(program.messages.boxes[0].icon, MessageIcon::None);
        return starts;
    };
    EXPECT_EQ(walk(), "0 3 5 8 ");
    find.click(L"Match Case");
    EXPECT_EQ(walk(), "0 3 8 ");
    find.click(L"Match whole word only");
    EXPECT_EQ(walk(), "3 8 ");
    EXPECT_FALSE(program.state().dirty);
    find.enter(0, u"c");
    walk();
    EXPECT_EQ(find.items(0), 2) << "one item per text, capitals told apart";

    find.click(L"Find Next");
    find.click(L"Exit");
    program.command(Command::mnuFind);
    find.enter(0, u"C");
    find.click(L"Find Next");
    EXPECT_EQ(program.editor().selection().begin, 0) << "a window opened anew begins at the top";

    // While a question waits, nothing is replaced under it.
    find.enter(1, u"x");
    program.dialogs.whileOpen = [&] {
        find.click(L"Replace All");
        find.click(L"Replace");
    };
    program.dialogs.choose(std::nullopt);
    program.command(Command::mnuFileOpen);
    EXPECT_FALSE(program.state().dirty);
}

TEST(Find, ReplacesTheSelectionOrTheNextMatch) {
    Program program(kNoSong);
    program.type(u"a b a");
    program.editor().select({2, 3});
    const FindWindow find(program);
    find.enter(0, u"a");
    find.enter(1, u"xyz");
    find.click(L"Replace");
    EXPECT_EQ(program.text(), "a xyz a") << "whatever is selected";
    find.click(L"Replace");
    EXPECT_EQ(program.text(), "xyz xyz a");
    find.click(L"Replace");
    EXPECT_EQ(program.text(), "xyz xyz xyz");
    program.command(Command::mnuEditUndo);
    EXPECT_EQ(program.text(), "xyz xyz a");
    EXPECT_EQ(find.items(1), 1);
}

TEST(Find, ReplacesAllInOneStep) {
    struct Case {
        std::string document;
        Text what, with;
        std::string result, count;
    };
    const Case cases[] = {
        {"aaa", u"a", u"b", "bbb", "  and 3 items were replaced.  "},
        {"a b", u"a", u"aa", "aa b", "  and 1 item was replaced.  "},
        {"C C", u"C", u"", " ", "  and 2 items were replaced.  "},
        {"abc", u"x", u"y", "abc", ""},
        {"short", u"longer than the document", u"y", "short", ""},
    };
    for (const Case& c : cases) {
        const ScratchFolder folder;
        Program program(folder.add(u"a.txt", c.document));
        const FindWindow find(program);
        find.enter(0, c.what);
        find.enter(1, c.with);
        const std::int16_t snapshots = program.history().count();
        find.click(L"Replace All");
        EXPECT_EQ(program.text(), c.result);
        ASSERT_EQ(program.messages.boxes.size(), 1U);
        const bool any = !c.count.empty();
        EXPECT_EQ(
            program.messages.boxes[0].text,
            any ? "  The Melvorin Editor has finished searching the document       \r\n" + c.count
                : kFinished);
        EXPECT_EQ(program.history().count(), snapshots + (any ? 1 : 0));
        EXPECT_EQ(program.editor().selection(), (Selection{0, 0}));
        EXPECT_TRUE(::IsWindowEnabled(find.child(L"Replace All")));
        EXPECT_TRUE(::IsWindowEnabled(program.form->handle()));
    }
}

TEST(Find, KeepsTheFormatsAroundTheMatches) {
    const ScratchFolder folder;
    Program program;
    ASSERT_TRUE(program.start(folder.add(
        u"a.rtf", R"({\rtf1\ansi\deff0{\fonttbl{\f0 Arial;}}\pard\f0 one {\b two} {\i one}})")));
    const FindWindow find(program);
    find.enter(0, u"one");
    find.enter(1, u"three");
    find.click(L"Replace All");
    EXPECT_EQ(program.text(), "three two three");
    const auto styleAt = [&](std::int32_t position) {
        program.editor().select({position, position + 1});
        return program.editor().selectionStyle();
    };
    EXPECT_EQ(styleAt(0).bold, false);
    EXPECT_EQ(styleAt(6).bold, true);
    EXPECT_EQ(styleAt(14).italic, true);
}

// Text, and what every character looks like.
std::string looks(RichEdit& editor) {
    std::string all;
    const Text text = editor.text().chars;
    for (std::int32_t i = 0; i < static_cast<std::int32_t>(text.size()); ++i) {
        const Text character = text.substr(static_cast<std::size_t>(i), 1);
        all += character == u"\r" ? "|" : toUtf8(character);
        editor.select({i, i + 1});
        const SelectionStyle style = editor.selectionStyle();
        all += style.bold == true ? "b" : "";
        all += style.italic == true ? "i" : "";
        all += style.face == u"Arial" ? "A" : "";
        all += std::to_string(style.colour ? style.colour->red / 10 : 9);
    }
    return all;
}

TEST(Find, OneLoadGivesWhatTheLoopGives) {
    Program program(kNoSong);
    RichEdit& editor = program.editor();
    std::mt19937 random(11);
    const auto one = [&](auto... of) {
        const std::string_view pick[] = {of...};
        return std::string(pick[random() % std::size(pick)]);
    };
    int byLoad = 0;
    for (int round = 0; round < 60; ++round) {
        std::string rtf =
            "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fcharset0 Lucida Console;}{\\f1\\fcharset0 "
            "Arial;}}{\\colortbl ;\\red10\\green0\\blue0;\\red20\\green0\\blue0;}\\pard ";
        for (int i = 0; i < 30; ++i) {
            rtf += one("", "", "", "\\b ", "\\b0 ", "\\i ", "\\i0 ", "\\f1 ", "\\f0 ", "\\cf1 ",
                       "\\cf2 ", "\\cf0 ");
            rtf += one("a", "a", "b", "ab", "A", " ", "\\'e9", "\\par ");
        }
        rtf += "!}";
        const FindReplace::Request request{fromUtf8(one("a", "ab", "b", "A", "aa", "\xC3\xA9")),
                                           fromUtf8(one("", "x", "ba", "aab", "\xC3\xBC b")),
                                           {random() % 2 == 0, random() % 3 == 0}};
        SCOPED_TRACE(rtf + " " + shown(request.what) + "/" + shown(request.with));
        ASSERT_TRUE(editor.loadRtf(rtf));
        const HWND control = editor.handle();
        ReplaceFollower nothing;
        FindReplace finder(
            editor, program.messages, nothing, [] {}, [] {});
        finder.replaceEach(request, [] {});
        byLoad += control != editor.handle();
        const std::string loaded = looks(editor);
        ASSERT_TRUE(editor.loadRtf(rtf));
        EditorTarget loop(editor);
        replaceAll(loop, request.what, request.with, request.options, [] { return true; });
        ASSERT_EQ(loaded, looks(editor));
    }
    EXPECT_GT(byLoad, 30);
}

// While it runs, Esc and Exit end it and everything else waits.
TEST(Find, ReplaceAllCanBeStopped) {
    for (const bool byKey : {true, false}) {
        const ScratchFolder folder;
        std::string song;
        for (int i = 0; i < 300; ++i)
            song += "a a a a\r\n";
        Program program(folder.add(u"a.txt", song));
        const FindWindow find(program);
        find.enter(0, u"a");
        find.enter(1, u"b");
        ::PostMessageW(program.editor().handle(), WM_CHAR, u'x', 1);
        ::PostMessageW(program.form->handle(), WM_COMMAND, idOf(Command::mnuFileNew), 0);
        ::PostMessageW(program.form->handle(), WM_CLOSE, 0, 0);
        if (byKey)
            ::PostMessageW(program.editor().handle(), WM_KEYDOWN, VK_ESCAPE, 1);
        else
            ::PostMessageW(find.window(), WM_COMMAND, IDCANCEL, 0);
        ::SendMessageW(find.child(L"Replace All"), BM_CLICK, 0, 0);
        const std::string text = program.text();
        EXPECT_EQ(text.find('x'), std::string::npos);
        EXPECT_NE(text.find('a'), std::string::npos) << "it was stopped";
        EXPECT_TRUE(find.window() != nullptr) << "the first Exit only stops";
        EXPECT_FALSE(program.ended);
        find.click(L"Exit");
        EXPECT_EQ(find.window(), nullptr);
    }
}

TEST(Find, WorksByKeyboard) {
    Program program(kNoSong);
    program.type(u"one two one");
    program.editor().select({4, 7});
    const FindWindow find(program);
    const auto press = [&](WPARAM key) {
        ::PostMessageW(::GetFocus(), WM_KEYDOWN, key, 1);
        program.pump();
    };
    POINT match = program.editor().pointOf(4);
    ::ClientToScreen(program.editor().handle(), &match);
    ::SetWindowPos(find.window(), nullptr, match.x - 50, match.y - 50, 0, 0, SWP_NOSIZE);
    press(VK_RETURN);  // the selected word was taken over
    EXPECT_EQ(find.selected(), "two");
    EXPECT_EQ(::GetFocus(), program.editor().handle());
    RECT window{};
    ::GetWindowRect(find.window(), &window);
    EXPECT_FALSE(::PtInRect(&window, match)) << "the window makes way for what it found";
    press(VK_F3);
    EXPECT_EQ(program.messages.boxes.size(), 1U);
    press(VK_F3);
    EXPECT_EQ(find.selected(), "two");
    press(VK_RETURN);
    EXPECT_EQ(program.text(), "one \r one") << "Enter in the song types";
    ::SetFocus(find.box(0));
    press(VK_ESCAPE);
    EXPECT_EQ(find.window(), nullptr);
    EXPECT_EQ(::GetFocus(), program.editor().handle());
    press(VK_F3);
    EXPECT_NE(find.window(), nullptr) << "with nothing to find yet, F3 asks";
}

}  // namespace
}  // namespace melvorin::testing
