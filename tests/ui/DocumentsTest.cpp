// New, Open, Save, Save As and the undo history, on the real editor and the real disk.
#include "Scripted.h"

namespace melvorin::testing {
namespace {

constexpr char kRichSong[] =
    R"({\rtf1\ansi\ansicpg1252\deff0{\fonttbl{\f0\fmodern\fcharset0 Courier New;})"
    R"({\f1\fnil\fcharset0 Melvorin 01;}}{\colortbl ;\red192\green0\blue0;})"
    R"(\pard\f0\fs20 C   \f1\fs48 a\f0\fs20  G\par {\b caf\'e9} \u937?\par})";

std::optional<FileChoice> chosen(const Text& path, int filter) {
    return FileChoice{path, filter};
}

TEST(Open, ShowsTheDialogAsTheUserLeftIt) {
    const ScratchFolder folder;
    const Text path = folder.add(u"a.txt", "C\n");
    Program program(kNoSong);
    program.dialogs.choose(std::nullopt);
    program.command(Command::mnuFileOpen);
    program.dialogs.choose(chosen(path, 3));
    program.command(Command::mnuFileOpen);
    program.dialogs.choose(std::nullopt);
    program.command(Command::mnuFileOpen);

    ASSERT_EQ(program.dialogs.requests.size(), 3U);
    const FileDialogRequest& first = program.dialogs.requests[0];
    EXPECT_EQ(shown(first.title), " Open");
    EXPECT_EQ(first.filterIndex, 1);
    EXPECT_EQ(shown(first.initialFolder), ":\\");
    ASSERT_EQ(first.filters.size(), 3U);
    EXPECT_EQ(shown(first.filters[0].name), "Melvorin Notations (*.mvt)");
    EXPECT_EQ(shown(first.filters[2].pattern), "*.txt");
    EXPECT_EQ(program.dialogs.requests[2].filterIndex, 3);
    EXPECT_EQ(program.dialogs.requests[2].initialFolder, folder.path());
    EXPECT_EQ(program.caption(), "a.txt - Melvorin");
    EXPECT_FALSE(program.state().undo);
}

TEST(Open, ReadsPlainTextInEveryEncoding) {
    struct Case {
        std::string bytes;
        std::string text;
    };
    const Case cases[] = {
        {"C\r\nla la\r\n", "C\rla la"},
        {"C\nla\rlo", "C\rla\rlo"},
        {"A\tB\r\n\tC", "A       B\r        C"},
        {"caf\xE9\r\n", "café"},
        {"caf\xC3\xA9\r\n", "café"},
        {"\xEF\xBB\xBF\xCE\xA9\r\n\r\n", "Ω\r"},
        {std::string("\xFF\xFE"
                     "C\0\r\0\n\0",
                     8),
         "C"},
        {"{\\rt is no rich text", "{\\rt is no rich text"},
        {"", ""},
    };
    for (const Case& c : cases) {
        const ScratchFolder folder;
        Program program(folder.add(u"song.txt", c.bytes));
        EXPECT_TRUE(program.messages.boxes.empty()) << c.bytes;
        EXPECT_EQ(program.text(), c.text);
        program.editor().select({0, 1});
        if (!c.text.empty()) {
            EXPECT_EQ(program.editor().selectionStyle().face, u"Lucida Console");
        }
    }
}

// A file that cannot be opened leaves everything as it was.
TEST(Open, RefusesBadFilesWithoutTouchingTheDocument) {
    std::string deep = "{\\rtf1 ";
    for (int i = 0; i < 10'000; ++i)
        deep += "{\\b ";
    deep += "x" + std::string(10'001, '}');
    struct Case {
        Text name;
        std::optional<std::string> bytes;
    };
    const Case cases[] = {
        {u"missing.mvt", std::nullopt},
        {u"no folder\\song.mvt", std::nullopt},
        {u"empty.mvt", ""},
        {u"cut off.rtf", std::string(kRichSong).substr(0, 200)},
        {u"binary.txt", std::string("MZ\x90\0\x03\0\0\0\x04\0", 10)},
        {u"deep.rtf", deep},
        {u"ein \u201EName\u201C \u4E2D\u6587.rtf", "{\\rtf1 {"},
    };
    for (const Case& c : cases) {
        const ScratchFolder folder;
        const Text good = folder.add(u"good.txt", "Am\r\nstays\r\n");
        if (c.bytes)
            folder.add(c.name, *c.bytes);
        Program program(good);
        program.type(u"x");
        program.messages.answer(Answer::No);
        program.dialogs.choose(chosen(folder.file(c.name), 1));
        program.command(Command::mnuFileOpen);

        ASSERT_EQ(program.messages.boxes.size(), 2U) << shown(c.name);
        const ShownMessage& box = program.messages.boxes.back();
        EXPECT_EQ(box.icon, MessageIcon::Critical);
        EXPECT_NE(box.text.find(shown(c.name)), std::string::npos);
        EXPECT_NE(box.text.find("    Please verify that"), std::string::npos);
        EXPECT_EQ(program.text(), "xAm\rstays");
        EXPECT_EQ(program.caption(), "good.txt - Melvorin");
        EXPECT_EQ(program.form->documents().path(), good);
        EXPECT_TRUE(program.state().dirty);
        EXPECT_TRUE(program.state().undo);
    }
}

TEST(Save, WhatCouldNotBeOpenedAgainIsNotWritten) {
    const ScratchFolder folder;
    const Text path = folder.add(u"song.rtf", kRichSong);
    Program program(path);
    // The control takes U+0000, and writes what no check lets pass.
    ASSERT_TRUE(program.editor().loadRtf("{\\rtf1\\ansi{\\fonttbl{\\f0 Arial;}}\\f0 a\\u0?b}"));
    program.type(u"x");
    program.command(Command::mnuFileSave);
    expectOneBox(program, "symbol font");
    EXPECT_EQ(folder.content(u"song.rtf"), kRichSong);
    EXPECT_TRUE(program.state().dirty);
}

TEST(Open, LockedFileIsRefused) {
    const ScratchFolder folder;
    const Text path = folder.add(u"locked.txt", "C\r\n");
    const UniqueFile lock(::CreateFileW(wide(path), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                        OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(static_cast<bool>(lock));
    Program program(path);
    expectOneBox(program, "Another program is using the file.");
}

TEST(Open, AsksBeforeLargeRichText) {
    const ScratchFolder folder;
    std::string large = "{\\rtf1\\ansi{\\*\\generator " + std::string(9u << 20, 'x') + ";}C\\par}";
    const Text path = folder.add(u"large.rtf", large);
    Program program(kNoSong);
    program.messages.answer(Answer::No);
    program.dialogs.choose(chosen(path, 2));
    program.command(Command::mnuFileOpen);
    expectOneBox(program, "(9.0 MB)");
    EXPECT_EQ(program.text(), "");
    EXPECT_EQ(program.caption(), "Chord Notation - Melvorin");
}

TEST(Save, NewDocumentGetsTheNotationExtension) {
    const ScratchFolder folder;
    Program program(kNoSong);
    program.type(u"Am");
    program.dialogs.choose(chosen(folder.file(u"Chord Notation"), 1));
    program.command(Command::mnuFileSave);

    EXPECT_EQ(shown(program.dialogs.requests.at(0).title), " Save As");
    EXPECT_EQ(shown(program.dialogs.requests.at(0).fileName), "Chord Notation");
    EXPECT_EQ(program.dialogs.requests.at(0).filters.size(), 2U);
    EXPECT_EQ(folder.names(), std::vector<Text>{u"Chord Notation.mlv"});
    EXPECT_EQ(program.caption(), "Chord Notation.mlv - Melvorin");
    EXPECT_FALSE(program.state().dirty);
    EXPECT_TRUE(folder.content(u"Chord Notation.mlv").starts_with("{\\rtf1"));
}

TEST(Save, AsksBeforeOverwritingANameTheDialogDidNotConfirm) {
    const ScratchFolder folder;
    folder.add(u"Song.mlv", "precious");
    Program program(kNoSong);
    program.type(u"Am");
    program.dialogs.choose(chosen(folder.file(u"Song.mvt"), 1));
    program.messages.answer(Answer::No);
    program.command(Command::mnuFileSaveAs);
    EXPECT_EQ(folder.content(u"Song.mlv"), "precious");
    EXPECT_TRUE(program.state().dirty);

    // The file that will be written is the one that is asked about.
    folder.add(u"Song.mvt", "another");
    program.dialogs.choose(chosen(folder.file(u"Song.mvt"), 1));
    program.messages.answer(Answer::Yes);
    program.command(Command::mnuFileSaveAs);
    EXPECT_NE(folder.content(u"Song.mlv"), "precious");
    EXPECT_FALSE(program.state().dirty);
    EXPECT_EQ(program.messages.boxes.size(), 2U);
    EXPECT_NE(program.messages.boxes[1].text.find("Song.mlv"), std::string::npos);
    program.dialogs.choose(chosen(folder.file(u"Song.mvt"), 2));
    program.command(Command::mnuFileSaveAs);
    EXPECT_EQ(program.messages.boxes.size(), 2U) << "Song.rtf is new";
    EXPECT_EQ(folder.content(u"Song.mvt"), "another");
}

// Saved, reopened, saved again: the text and the formatting stay, and no file grows.
TEST(Save, EveryKindSurvivesSaveAndReopen) {
    struct Case {
        Text name;
        std::string bytes;
        int filter;
        Text saved;
    };
    const Case cases[] = {
        {u"rich.rtf", kRichSong, 2, u"rich.rtf"},
        {u"rich.mvt", kRichSong, 1, u"rich.mlv"},
        {u"plain.txt", "C  Am\r\ncaf\xC3\xA9\r\n", 0, u"plain.txt"},
        {u"greek.txt",
         "\xEF\xBB\xBF"
         "C\r\n\xCE\xA9\r\n",
         0, u"greek.txt"},
        {u"looks like utf-8.txt",
         "\xEF\xBB\xBF"
         "\xC3\x83\xC2\xA9\r\n",
         0, u"looks like utf-8.txt"},
        {u"word.doc", "C  G\r\nla\r\n", 0, u"word.doc"},
        {u"blank end.txt", "C\r\n\r\n\r\n", 0, u"blank end.txt"},
    };
    for (const Case& c : cases) {
        const ScratchFolder folder;
        Text path = folder.add(c.name, c.bytes);
        std::string text;
        std::string bytes;
        for (int round = 0; round < 3; ++round) {
            Program program(path);
            ASSERT_TRUE(program.messages.boxes.empty()) << program.messages.boxes[0].text;
            if (round == 0) {
                text = program.text();
                if (c.filter != 0)
                    program.dialogs.choose(chosen(path, c.filter));
            }
            EXPECT_EQ(program.text(), text) << shown(c.name) << " round " << round;
            if (round == 0 && c.filter == 1)
                program.command(Command::mnuFileSaveAs);
            else if (round == 0 && c.filter == 2) {
                program.messages.answer(Answer::Yes);
                program.dialogs.choose(chosen(folder.file(u"rich.RTF"), 2));
                program.command(Command::mnuFileSaveAs);
                program.command(Command::mnuFileSave);
            } else
                program.command(Command::mnuFileSave);
            path = folder.file(c.saved);
            if (round > 0) {
                EXPECT_EQ(folder.content(c.saved), bytes) << shown(c.name);
            }
            bytes = folder.content(c.saved);
        }
    }
}

TEST(Save, FailureKeepsTheOldFileAndTheDocument) {
    const ScratchFolder folder;
    const Text path = folder.add(u"song.txt", "C\r\n");
    Program program(path);
    program.type(u"x");

    const auto expectFailure = [&](std::string_view cause) {
        program.messages.boxes.clear();
        program.command(Command::mnuFileSave);
        ASSERT_EQ(program.messages.boxes.size(), 1U);
        EXPECT_NE(program.messages.boxes[0].text.find(cause), std::string::npos)
            << program.messages.boxes[0].text;
        EXPECT_NE(program.messages.boxes[0].text.find("song.txt"), std::string::npos);
        EXPECT_TRUE(program.state().dirty);
        EXPECT_EQ(program.text(), "xC");
    };
    program.files.diskFull = true;
    expectFailure("The disk is full.");
    program.files.diskFull = false;
    ::SetFileAttributesW(wide(path), FILE_ATTRIBUTE_READONLY);
    expectFailure("denied");
    ::SetFileAttributesW(wide(path), FILE_ATTRIBUTE_NORMAL);
    {
        const UniqueFile lock(
            ::CreateFileW(wide(path), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        expectFailure("Another program is using the file.");
    }
    EXPECT_EQ(folder.content(u"song.txt"), "C\r\n");
    EXPECT_EQ(folder.names().size(), 1U);

    program.command(Command::mnuFileSave);
    EXPECT_EQ(folder.content(u"song.txt"), "xC\r\n");
    EXPECT_FALSE(program.state().dirty);
}

TEST(Leaving, AbandonsTheCommandWhereSavingDoes) {
    const ScratchFolder folder;
    const Text other = folder.add(u"other.txt", "G\r\n");
    for (const Command command : {Command::mnuFileNew, Command::mnuFileOpen}) {
        Program program(kNoSong);
        program.type(u"Am");
        program.messages.answer(Answer::Cancel);
        program.command(command);
        program.messages.answer(Answer::Yes);
        program.dialogs.choose(std::nullopt);
        program.command(command);
        EXPECT_EQ(program.text(), "Am");
        EXPECT_TRUE(program.state().dirty);

        program.messages.answer(Answer::No);
        if (command == Command::mnuFileOpen)
            program.dialogs.choose(chosen(other, 3));
        program.command(command);
        EXPECT_EQ(program.text(), command == Command::mnuFileOpen ? "G" : "");
        EXPECT_FALSE(program.state().dirty);
        EXPECT_TRUE(program.messages.allAnswered());
    }
}

// What arrives while a dialog waits must not take the document away under it.
TEST(Leaving, NothingBeginsWhileADialogIsOpen) {
    const ScratchFolder folder;
    Program program(kNoSong);
    program.type(u"Am");
    program.dialogs.whileOpen = program.messages.whileOpen = [&] {
        const HWND window = program.form->handle();
        ::SendMessageW(window, WM_COMMAND, idOf(Command::mnuFileNew), 0);
        ::SendMessageW(window, WM_COMMAND, idOf(Command::mnuUp), 0);
        EXPECT_EQ(::SendMessageW(window, WM_QUERYENDSESSION, 0, 0), FALSE);
        ::SendMessageW(window, WM_CLOSE, 0, 0);
    };
    program.dialogs.choose(chosen(folder.file(u"Song"), 2));
    program.command(Command::mnuFileSaveAs);
    EXPECT_EQ(program.text(), "Am");
    EXPECT_NE(folder.content(u"Song.rtf").find("Am"), std::string::npos);
    program.type(u"x");
    program.messages.answer(Answer::Cancel);
    program.command(Command::mnuFileNew);
    EXPECT_EQ(program.text(), "Amx");
    EXPECT_FALSE(program.ended);

    program.dialogs.whileOpen = program.messages.whileOpen = nullptr;
    program.messages.answer(Answer::Cancel);
    EXPECT_EQ(::SendMessageW(program.form->handle(), WM_QUERYENDSESSION, 0, 0), FALSE);
    program.messages.answer(Answer::No);
    EXPECT_EQ(::SendMessageW(program.form->handle(), WM_QUERYENDSESSION, 0, 0), TRUE);
}

TEST(New, StartsCleanInTheEditorFont) {
    const ScratchFolder folder;
    Program program(folder.add(u"rich.rtf", kRichSong));
    program.command(Command::mnuFileNew);
    EXPECT_EQ(program.text(), "");
    EXPECT_EQ(program.caption(), "Chord Notation - Melvorin");
    EXPECT_TRUE(program.form->documents().path().empty());
    EXPECT_EQ(program.state(), ShellState{});
    program.type(u"a");
    EXPECT_EQ(program.editor().selectionStyle().face, u"Lucida Console");
    EXPECT_EQ(program.editor().selectionStyle().halfPoints, 20);
    EXPECT_EQ(program.editor().selectionStyle().bold, false);
}

TEST(Undo, StepsThroughTypingAndStopsAtTheOpenedDocument) {
    const ScratchFolder folder;
    Program program(kNoSong);
    program.type(u"old song");
    program.messages.answer(Answer::No);
    program.dialogs.choose(chosen(folder.add(u"new.txt", "C\r\n"), 3));
    program.command(Command::mnuFileOpen);
    const std::int16_t floor = program.history().current();
    program.command(Command::mnuEditUndo);
    EXPECT_EQ(program.text(), "C");

    program.type(u"ab");
    EXPECT_EQ(program.history().count(), floor + 2);
    EXPECT_TRUE(program.state().undo && program.state().dirty && !program.state().redo);
    program.command(Command::mnuEditUndo);
    EXPECT_EQ(program.text(), "aC");
    EXPECT_EQ(program.editor().selection(), (Selection{1, 1}));
    EXPECT_TRUE(program.state().undo && program.state().redo);
    program.command(Command::mnuEditUndo);
    EXPECT_EQ(program.text(), "C");
    EXPECT_FALSE(program.state().undo);
    program.command(Command::mnuEditUndo);
    EXPECT_EQ(program.text(), "C");
    program.command(Command::mnuEditRedo);
    program.command(Command::mnuEditRedo);
    EXPECT_EQ(program.text(), "abC");
    EXPECT_FALSE(program.state().redo);
    EXPECT_EQ(program.history().count(), floor + 2);
}

TEST(Undo, AChangeAfterUndoDeletesWhatWasUndone) {
    Program program(kNoSong);
    program.type(u"abc");
    const Text undone = program.history().currentSnapshot().path;
    program.command(Command::mnuEditUndo);
    program.command(Command::mnuEditUndo);
    program.type(u"x");
    EXPECT_FALSE(program.files.exists(undone));
    EXPECT_EQ(program.history().count(), 3);
    EXPECT_EQ(program.history().current(), 3);
    EXPECT_FALSE(program.state().redo);
    EXPECT_EQ(program.text(), "ax");
}

TEST(Undo, WithoutATemporaryFolderTheTextIsSafe) {
    Program program(kNoSong);
    program.type(u"a");
    program.files.temporaryNames = false;
    program.type(u"bc");
    ASSERT_EQ(program.messages.boxes.size(), 1U) << "one message, not one per key";
    EXPECT_EQ(program.text(), "abc");
    EXPECT_EQ(program.history().count(), 4);
    program.files.temporaryNames = true;
    program.type(u"d");
    program.command(Command::mnuEditUndo);  // onto the state without a file
    EXPECT_EQ(program.text(), "abcd");
    program.command(Command::mnuEditUndo);
    program.command(Command::mnuEditUndo);
    EXPECT_EQ(program.text(), "a");
}

// What is on the screen and in no snapshot is written before an undo, or asked about.
TEST(Undo, UnrecordedTextIsNotLost) {
    Program program(kNoSong);
    program.type(u"a");
    program.files.diskFull = true;
    program.type(u"bc");
    program.messages.answer(Answer::No);
    program.command(Command::mnuEditUndo);
    EXPECT_EQ(program.text(), "abc");
    program.files.diskFull = false;
    while (program.state().undo)
        program.command(Command::mnuEditUndo);
    EXPECT_EQ(program.text(), "");
    while (program.state().redo)
        program.command(Command::mnuEditRedo);
    EXPECT_EQ(program.text(), "abc");
}

TEST(Undo, LeavesThePageWhereItIs) {
    const ScratchFolder folder;
    std::string song;
    for (int i = 0; i < 300; ++i)
        song += "C  G\r\nla la\r\n";
    Program program(folder.add(u"song.txt", song));
    const std::int32_t position = program.editor().firstOfLine(400);
    program.editor().select({position, position});
    program.editor().scrollCaretIntoView();
    program.type(u"xy");
    ScrollPosition scroll = program.editor().scrollPosition();
    scroll.y += 40;
    program.editor().scrollTo(scroll);
    const std::int32_t top = program.editor().firstVisibleLine();
    program.command(Command::mnuEditUndo);
    EXPECT_EQ(program.editor().firstVisibleLine(), top);
    EXPECT_EQ(program.editor().selection().begin, position + 1);
}

TEST(Undo, KeyboardObeysTheEnabledState) {
    Program program(kNoSong);
    program.type(u"ab");
    const auto press = [&](WPARAM key) {
        BYTE keys[256]{};
        ::GetKeyboardState(keys);
        keys[VK_CONTROL] = 0x80;
        ::SetKeyboardState(keys);
        ::PostMessageW(program.editor().handle(), WM_KEYDOWN, key, 1);
        program.pump();
        keys[VK_CONTROL] = 0;
        ::SetKeyboardState(keys);
    };
    press('Z');
    EXPECT_EQ(program.text(), "a");
    press('Z');
    press('Z');
    EXPECT_EQ(program.text(), "");
    press('Y');
    EXPECT_EQ(program.text(), "a");
}

}  // namespace
}  // namespace melvorin::testing
