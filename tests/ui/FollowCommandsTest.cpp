// Chords that follow what commands do: Replace, Replace All, chords alone, and the chords of one
// verse over another.
#include "DrawnSong.h"
#include "FindWindow.h"

namespace melvorin::testing {
namespace {

// A song in Rich Text: chord lines red, the words black; "{q}" is a diagram.
std::string richSong(std::string_view plain) {
    std::string rtf =
        R"({\rtf1\ansi\deff0{\fonttbl{\f0\fmodern\fcharset0 Courier New;})"
        R"({\f1\fnil\fcharset0 Melvorin 05;}}{\colortbl ;\red192\green0\blue0;}\pard\f0\fs20 )";
    for (bool isChords = true; !plain.empty(); isChords = !isChords) {
        const std::string_view line = plain.substr(0, plain.find('\n'));
        plain.remove_prefix(std::min(line.size() + 1, plain.size()));
        rtf += isChords ? "\\cf1 " : "\\cf0 ";
        for (const char c : line)
            rtf += c == '{' ? std::string("{\\f1 ") : std::string(1, c);
        rtf += "\\par ";
    }
    return rtf + "}";
}

// The red letters.
std::string reds(RichEdit& editor) {
    std::string all;
    const Text text = editor.text().chars;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == u' ' || text[i] == u'\r')
            continue;
        const auto at = static_cast<std::int32_t>(i);
        editor.select({at, at + 1});
        if (editor.selectionStyle().colour == Rgb{192, 0, 0})
            all += toUtf8(text.substr(i, 1));
    }
    return all;
}

void replaceAll(Program& program, const Text& what, const Text& with, bool chordsOnly = false) {
    const FindWindow find(program);
    find.enter(0, what);
    find.enter(1, with);
    if (chordsOnly)
        find.click(L"Chords only");
    find.click(L"Match Case");
    find.click(L"Replace All");
    find.click(L"Exit");
}

// In one load where that is worth it, and edit by edit in a long song with few matches.
TEST(ChordsFollow, WhatIsReplacedEverywhere) {
    struct Case {
        std::string before;
        Text what, with;
        bool chordsOnly;
        std::string after;
        std::string count;
    };
    const Case cases[] = {
        {"C    G    C\nover the hill", u"C", u"Am7/G", false, "Am7/G G   Am7/G\nover the hill",
         "2"},
        {"C    G    C\nover the hill", u"the", u"a wide", false, "C    G       C\nover a wide hill",
         "1"},
        // Found as without following, what is put in included.
        {"Cm  G   C#m\nCold Cats", u"C", u"CC", false, "CCm  G    CC#m\nCCold CCats", "4"},
        {"C  Cm  C/E  C\nCall C  today", u"C", u"F", true, "F  Cm  C/E  F\nCall C  today", "2"},
        {"A  Am  E  A\nA  day in A  A", u"A", u"Asus4", true, "Asus4 Am E Asus4\nA  day in A  A",
         "2"},
    };
    for (const Case& c : cases) {
        for (const bool isLong : {false, true}) {
            SCOPED_TRACE(c.before + (isLong ? " in a long song" : ""));
            std::string tail;
            for (int i = 0; i < 200 && isLong; ++i)
                tail += "\n\nhush now";
            const ScratchFolder folder;
            Program program(folder.add(u"song.rtf", richSong(c.before + tail)));
            const HWND control = program.editor().handle();
            const std::string former = program.text();
            const std::int16_t snapshots = program.history().count();
            replaceAll(program, c.what, c.with, c.chordsOnly);
            std::string text = program.text().substr(0, c.after.size());
            std::replace(text.begin(), text.end(), '\r', '\n');
            EXPECT_EQ(text, c.after);
            EXPECT_NE(program.messages.boxes.back().text.find("and " + c.count + " item"),
                      std::string::npos)
                << program.messages.boxes.back().text;
            EXPECT_EQ(control == program.editor().handle(), isLong) << "one load, or none";
            std::string chords = c.after.substr(0, c.after.find('\n'));
            std::erase(chords, ' ');
            EXPECT_EQ(reds(program.editor()), chords);
            EXPECT_EQ(program.history().count(), snapshots + 1);
            program.command(Command::mnuEditUndo);
            EXPECT_EQ(program.text(), former);
        }
    }
}

TEST(ChordsFollow, DiagramsAreNeitherFoundNorPushed) {
    const ScratchFolder folder;
    // The "C" of a diagram is a picture.
    Program program(folder.add(u"song.rtf", richSong("C  {C}  C\nla la la la")));
    replaceAll(program, u"C", u"Gm", true);
    EXPECT_EQ(program.text().substr(0, 8), "Gm C  Gm");
    const auto at = static_cast<std::int32_t>(program.text().find('C'));
    EXPECT_EQ(program.editor().faceAt(at), u"Melvorin 05");
    EXPECT_EQ(program.editor().faceAt(at + 1), u"Courier New");
}

// Replaced one by one, words that follow each other are each found once.
TEST(ChordsFollow, ReplaceGoesOnBehindWhatCame) {
    const ScratchFolder folder;
    Program program(folder.add(u"song.txt", "C    G    Am\r\ngrace and grace\r\n"));
    const FindWindow find(program);
    find.enter(0, u"grace");
    find.enter(1, u"graceful");
    find.click(L"Find Next");
    find.click(L"Replace");
    EXPECT_EQ(program.text(), "C       G    Am\rgraceful and grace");
    find.click(L"Find Next");
    EXPECT_EQ(find.selected(), "grace");
    find.click(L"Replace");
    EXPECT_EQ(program.text(), "C       G    Am\rgraceful and graceful");
    program.command(Command::mnuEditUndo);
    EXPECT_EQ(program.text(), "C       G    Am\rgraceful and grace");
}

TEST(ChordsFollow, ChordsOnlyWalksFromChordToChord) {
    const ScratchFolder folder;
    Program program(folder.add(u"song.txt", "A  Am  (A)\r\nA day, A\r\nBmaj7 A/C#  A\r\n"));
    const FindWindow find(program);
    find.enter(0, u"a");
    find.click(L"Chords only");
    std::string starts;
    for (program.messages.boxes.clear(); program.messages.boxes.empty();) {
        find.click(L"Find Next");
        if (program.messages.boxes.empty())
            starts += std::to_string(program.editor().selection().begin) + " ";
    }
    EXPECT_EQ(starts, "0 8 32 ");
}

// ---- The chords of another verse --------------------------------------------------------------

// The Edit menu opens and the entry is chosen; false where it is grey.
bool choose(Program& program, Command entry) {
    ::SendMessageW(program.form->handle(), WM_INITMENUPOPUP,
                   reinterpret_cast<WPARAM>(program.form->menuBar().submenu(Command::mnuEdit)), 1);
    if (!program.form->menuBar().isEnabled(entry))
        return false;
    program.command(entry);
    return true;
}

TEST(CopyChords, GoOverTheWordsOfAnotherVerse) {
    struct Case {
        std::string_view before;  // with the selection to copy
        std::string_view target;  // with the selection to paste at
        std::string_view after;
        std::string_view told;
    };
    const Case cases[] = {
        {"^C    G\nOver hills^\nUnder stars", "C    G\nOver hills\n^Under stars",
         "C    G\nOver hills\nC     G\nUnder^ stars", ""},
        // In place of what stands there; two lines for one.
        {"^C  G\nla la\nF  C\nlo lo^\nAm\nhey hey\nho",
         "C  G\nla la\nF  C\nlo lo\n^Am\nhey hey^\nho", "", "1 line of chords was left"},
    };
    for (const Case& c : cases) {
        const Drawn song(c.before);
        const Drawn target(c.target);
        SCOPED_TRACE(c.before);
        const ScratchFolder folder;
        Program program(folder.add(u"song.txt", song.bytes()));
        EXPECT_FALSE(choose(program, Command::mnuPasteChords)) << "nothing to put";
        program.editor().select(song.selection);
        ASSERT_TRUE(choose(program, Command::mnuCopyChords));
        EXPECT_FALSE(program.state().dirty);
        const std::int16_t snapshots = program.history().count();
        program.editor().select(target.selection);
        ASSERT_TRUE(choose(program, Command::mnuPasteChords));
        if (c.told.empty()) {
            EXPECT_TRUE(program.messages.boxes.empty());
            EXPECT_EQ(program.text(), toUtf8(Drawn(c.after).chars));
        } else {
            EXPECT_EQ(program.messages.boxes.back().text.find(c.told), 0U);
        }
        EXPECT_EQ(program.history().count(), snapshots + 1);
        program.command(Command::mnuEditUndo);
        EXPECT_EQ(program.editor().text().chars, song.chars);
    }
}

TEST(CopyChords, BringTheirFormatsAndAreTextForOthers) {
    const ScratchFolder folder;
    Program program(folder.add(u"song.rtf", richSong("C  {q}  G\nla la la\n\nho ho ho ho")));
    program.editor().select({0, 3});
    ASSERT_TRUE(choose(program, Command::mnuCopyChords));
    EXPECT_EQ(*program.clipboard.plain, u"C  q  G");
    const auto last = static_cast<std::int32_t>(program.text().find("ho"));
    program.editor().select({last, last});
    ASSERT_TRUE(choose(program, Command::mnuPasteChords));
    const std::string text = program.text();
    const std::size_t pasted = text.find('q', text.find('q') + 1);
    ASSERT_NE(pasted, std::string::npos) << text;
    EXPECT_EQ(program.editor().faceAt(static_cast<std::int32_t>(pasted)), u"Melvorin 05");
    EXPECT_EQ(reds(program.editor()), "CqGCqG");
}

TEST(CopyChords, ChordsOfAnotherProgramAndNoneAtAll) {
    const ScratchFolder folder;
    Program program(folder.add(u"song.txt", "over hills\r\n[Chorus]\r\n"));
    EXPECT_FALSE(choose(program, Command::mnuCopyChords)) << "no chords are selected";
    program.clipboard.plain = u"just some words";
    EXPECT_FALSE(choose(program, Command::mnuPasteChords));
    // With words of their own they go from word to word.
    program.clipboard.plain = u"Am\tG\r\nunder stars so high\r\n";
    ASSERT_TRUE(choose(program, Command::mnuPasteChords));
    EXPECT_EQ(program.text(), "Am     G\rover hills\r[Chorus]");
    program.editor().select({20, 20});
    EXPECT_FALSE(choose(program, Command::mnuPasteChords)) << "a label is no words";
    // The program lends the clipboard to nobody.
    program.editor().select({0, 0});
    program.clipboard.isTaken = true;
    ASSERT_TRUE(choose(program, Command::mnuCopyChords));
    EXPECT_EQ(program.messages.boxes.back().text,
              "The chords cannot be copied. Another program is using the clipboard.");
    // Proportional letters have no columns.
    program.editor().select({0, 20});
    program.editor().setSelectionFace(u"Arial");
    program.editor().select({12, 12});
    program.command(Command::mnuPasteChords);
    EXPECT_NE(program.messages.boxes.back().text.find("one width"), std::string::npos);
}

}  // namespace
}  // namespace melvorin::testing
