// Runs that end without closing, and documents that other programs change.
#include "Scripted.h"

namespace melvorin::testing {
namespace {

constexpr char kRich[] =
    "{\\rtf1\\ansi{\\fonttbl{\\f0 Lucida Console;}}\\f0\\fs20 C  {\\b G}\\par la la}";

// How many files of this kind lie in the temporary folder.
std::size_t temporaryFiles() {
    Text folder(MAX_PATH, u'\0');
    folder.resize(::GetTempPathW(MAX_PATH, wideBuffer(folder)));
    WIN32_FIND_DATAW found{};
    UniqueSearch search(folder + u"bb*.tmp", found);
    std::size_t count = 0;
    if (search) {
        do
            ++count;
        while (search.next());
    }
    return count;
}

class Recovery : public ::testing::Test {
  protected:
    // What other programs left is not for these.
    void SetUp() override {
        Win32Files files;
        for (Remains& remains : remainsOf(files))
            discard(files, std::move(remains));
    }
};

// A start after one that did not end in order.
class NextProgram : public Program {
  public:
    NextProgram() { files.offersRemains = true; }
    bool start(TextView commandLine = u"") {
        const bool started = Program::start(commandLine);
        pump();
        return started;
    }
};

// The states of a song before it crashed; the last one was undone.
struct CrashedSong {
    std::string rtf;
    std::vector<std::string> texts;
};

CrashedSong crashWith(const Text& path) {
    CrashedSong song;
    Program program;
    EXPECT_TRUE(program.start(path));
    song.texts.push_back(program.text());
    program.type(u"Am\r");
    program.editor().setBackground(Rgb{200, 220, 255});
    program.form->run(Command::mnuBold);
    song.texts.push_back(program.text());
    program.type(u"G");
    song.texts.push_back(program.text());
    program.command(Command::mnuEditUndo);
    EXPECT_EQ(program.text(), song.texts[1]);
    song.rtf = program.editor().rtf();
    program.crash();
    return song;
}

void expectOffer(const ShownMessage& box) {
    EXPECT_TRUE(
        box.text.starts_with("Melvorin was not closed, and \"Lied für Ωmega.mvt\" had "
                             "changes that were not saved. The last one: "))
        << box.text;
    EXPECT_NE(box.text.find(":", 90), std::string::npos) << "no time in " << box.text;
    EXPECT_EQ(box.buttons, MessageButtons::YesNo);
}

TEST_F(Recovery, BringsBackTheSongWithItsHistory) {
    const std::size_t before = temporaryFiles();
    const ScratchFolder folder;
    const Text path = folder.add(u"Lied für Ωmega.mvt", kRich);
    auto [rtf, texts] = crashWith(path);
    EXPECT_GT(temporaryFiles(), before);
    {
        NextProgram program;
        program.messages.answer(Answer::Yes);
        ASSERT_TRUE(program.start());
        ASSERT_EQ(program.messages.boxes.size(), 1U);
        expectOffer(program.messages.boxes[0]);
        EXPECT_EQ(program.editor().rtf(), rtf);
        EXPECT_EQ(program.editor().background(), (Rgb{200, 220, 255}));
        EXPECT_EQ(program.caption(), "Lied für Ωmega.mvt - Melvorin");
        EXPECT_EQ(shown(program.form->documents().path()), shown(path));
        EXPECT_TRUE(program.state().dirty && program.state().undo && program.state().redo);
        EXPECT_EQ(::GetFocus(), program.editor().handle());
        program.command(Command::mnuEditRedo);
        EXPECT_EQ(program.text(), texts[2]);
        EXPECT_FALSE(program.state().redo);
        while (program.state().undo)
            program.command(Command::mnuEditUndo);
        EXPECT_EQ(program.text(), texts[0]);
        while (program.state().redo)
            program.command(Command::mnuEditRedo);
        // A second crash loses nothing either.
        program.type(u"!");
        texts.push_back(program.text());
        program.crash();
    }
    NextProgram program;
    program.messages.answer(Answer::Yes);
    ASSERT_TRUE(program.start());
    EXPECT_EQ(program.text(), texts[3]);
    program.command(Command::mnuFileSave);
    EXPECT_EQ(program.messages.boxes.size(), 1U) << "the file is as it was opened";
    EXPECT_FALSE(program.state().dirty);
    program.close();
    EXPECT_TRUE(program.ended);
    EXPECT_EQ(temporaryFiles(), before);
}

TEST_F(Recovery, NoDeletesAndNothingUnsavedIsNotOffered) {
    const std::size_t before = temporaryFiles();
    const ScratchFolder folder;
    const Text other = folder.add(u"other.txt", "Dm\r\n");
    for (const TextView typed : {u"first", u"second", u""}) {
        Program program(kNoSong);
        program.type(typed);
        program.crash();
    }
    Program living(kNoSong);
    living.type(u"alive");
    const std::size_t ofLiving = 7;  // the first state, five letters, the journal
    {
        NextProgram program;
        // Newest first; the document of the command line stays open.
        program.messages.answer(Answer::No);
        program.messages.answer(Answer::No);
        ASSERT_TRUE(program.start(other));
        ASSERT_EQ(program.messages.boxes.size(), 2U);
        for (const ShownMessage& box : program.messages.boxes) {
            EXPECT_NE(box.text.find("\"Chord Notation\""), std::string::npos) << box.text;
            EXPECT_NE(box.text.find("\"other.txt\", which is not changed"), std::string::npos);
        }
        EXPECT_EQ(program.text(), "Dm");
        EXPECT_FALSE(program.state().dirty);
        program.close();
        EXPECT_TRUE(program.ended);
    }
    EXPECT_EQ(temporaryFiles(), before + ofLiving);
    living.type(u"!");
    living.command(Command::mnuEditUndo);
    EXPECT_EQ(living.text(), "alive") << "another program's remains were touched";
}

TEST_F(Recovery, TheOneTakenIsShownAndTheOthersWait) {
    const ScratchFolder folder;
    const Text other = folder.add(u"other.txt", "Dm\r\n");
    for (const TextView typed : {u"first", u"second", u"third"}) {
        Program program(kNoSong);
        program.type(typed);
        program.crash();
    }
    const auto startTaking = [&](std::vector<Answer> answers, const char* text) {
        NextProgram program;
        for (const Answer answer : answers)
            program.messages.answer(answer);
        ASSERT_TRUE(program.start(other));
        EXPECT_TRUE(program.messages.allAnswered());
        EXPECT_EQ(program.text(), text);
        EXPECT_EQ(program.caption(), "Chord Notation - Melvorin");
        EXPECT_EQ(folder.content(u"other.txt"), "Dm\r\n");
        program.messages.answer(Answer::No);  // Save changes?
        program.close();
    };
    startTaking({Answer::No, Answer::Yes}, "second");
    startTaking({Answer::Yes}, "first");
    NextProgram program;
    ASSERT_TRUE(program.start());
    EXPECT_TRUE(program.messages.boxes.empty());
}

struct EndOfRun {
    const char* name;
    TextView typed;
    std::optional<Answer> answer;  // to "Save changes?" at the close
    std::function<void(Program&)> end;
    const char* offered;  // the text that the next start brings back; none where null
};

void expectOffered(const EndOfRun& c) {
    SCOPED_TRACE(c.name);
    const std::size_t before = temporaryFiles();
    const ScratchFolder folder;
    {
        Program program(folder.add(u"song.txt", ""));
        program.type(c.typed);
        if (c.answer)
            program.messages.answer(*c.answer);
        c.end(program);
        program.crash();
    }
    if (c.offered == nullptr) {
        EXPECT_EQ(temporaryFiles(), before);
        return;
    }
    NextProgram program;
    program.messages.answer(Answer::Yes);
    ASSERT_TRUE(program.start());
    EXPECT_EQ(program.text(), c.offered);
    program.form->endRun();
}

void endSession(Program& program) {
    ::SendMessageW(program.form->handle(), WM_ENDSESSION, TRUE, 0);
}
std::function<void(Program&)> endSessionAnswered(Answer answer) {
    return [answer](Program& program) {
        program.messages.answer(answer);
        ::SendMessageW(program.form->handle(), WM_QUERYENDSESSION, 0, 0);
        endSession(program);
    };
}
void turnScreen(Program& program) {
    program.screen.screen = program.screen.work = {768, 1366};
    ::SendMessageW(program.form->handle(), WM_SIZE, SIZE_RESTORED, 0);
    EXPECT_TRUE(program.ended);
}

// Whatever ends the run: unsaved changes are deleted only where the user was asked about them.
TEST_F(Recovery, EveryWayToEndARun) {
    const auto close = [](Program& program) { program.close(); };
    const EndOfRun cases[] = {
        {"closed, nothing unsaved", u"", std::nullopt, close, nullptr},
        {"closed and saved", u"C", Answer::Yes, close, nullptr},
        {"closed and not saved", u"C", Answer::No, close, nullptr},
        {"session, answered No", u"C", std::nullopt, endSessionAnswered(Answer::No), nullptr},
        {"session, answered Cancel", u"C", std::nullopt, endSessionAnswered(Answer::Cancel), "C"},
        {"session without a question", u"C", std::nullopt, endSession, "C"},
        {"session, nothing unsaved", u"", std::nullopt, endSession, nullptr},
        {"another screen", u"C", std::nullopt, turnScreen, "C"},
        {"another screen, nothing unsaved", u"", std::nullopt, turnScreen, nullptr},
        {"another screen, typed on stage", u"C", std::nullopt,
         [](Program& program) {
             program.command(Command::mnuFullScreen);
             ::SendMessageW(program.form->fullScreen().FSRTB().handle(), WM_CHAR, 'G', 1);
             turnScreen(program);
         },
         "CG"},
        {"a crash", u"C", std::nullopt, [](Program&) {}, "C"},
    };
    for (const EndOfRun& c : cases)
        expectOffered(c);
}

// A job that runs is not cut off: the program ends when it is done.
TEST_F(Recovery, AnotherScreenWaitsForWhatIsAtWork) {
    Program program(kNoSong);
    program.type(u"C");
    program.dialogs.whileOpen = [&] {
        program.screen.screen = program.screen.work = {768, 1366};
        ::SendMessageW(program.form->handle(), WM_SIZE, SIZE_RESTORED, 0);
        EXPECT_FALSE(program.ended);
    };
    program.dialogs.choose(std::nullopt);
    program.command(Command::mnuFileSaveAs);
    EXPECT_TRUE(program.messages.boxes.empty());
    program.waitUntil([&] { return program.ended; });
    EXPECT_EQ(program.messages.boxes.at(0).text,
              "The Melvorin Editor doesn't work with this video settings  ");
}

// Keys that come in meanwhile wait; none is lost, and neither is a step.
TEST_F(Recovery, ASlowDiskLosesNothing) {
    const ScratchFolder folder;
    const Text path = folder.add(u"song.txt", "C\r\n");
    {
        Program program;
        program.files.delayMs = 60;
        ASSERT_TRUE(program.start(path));
        const int before = program.history().count();
        for (const char16_t c : TextView(u"Am G7 "))
            ::PostMessageW(program.editor().handle(), WM_CHAR, c, 1);
        program.waitUntil([&] { return program.text() == "Am G7 C"; });
        EXPECT_EQ(program.history().count(), before + 6);
        program.command(Command::mnuFileSave);
        EXPECT_EQ(folder.content(u"song.txt"), "Am G7 C\r\n");
        EXPECT_TRUE(program.messages.boxes.empty());
        program.type(u"x");
        program.crash();
    }
    NextProgram program;
    program.files.delayMs = 60;
    program.messages.answer(Answer::Yes);
    ASSERT_TRUE(program.start());
    EXPECT_EQ(program.text(), "Am G7 xC");
}

TEST_F(Recovery, ARunWithoutAJournalGoesOn) {
    Program program;
    program.files.temporaryNames = false;
    ASSERT_TRUE(program.start());
    program.messages.boxes.clear();
    program.type(u"Am");
    EXPECT_EQ(program.text(), "Am");
    program.crash();
    NextProgram next;
    ASSERT_TRUE(next.start());
    EXPECT_TRUE(next.messages.boxes.empty());
}

TEST_F(Recovery, TellsOfASongWhoseCopiesAreGone) {
    const std::size_t before = temporaryFiles();
    Program program(kNoSong);
    program.type(u"Am");
    for (int index = 1; index <= program.history().count(); ++index)
        ::DeleteFileW(wide(program.history().snapshot(index).path));
    program.crash();
    NextProgram next;
    ASSERT_TRUE(next.start());
    expectOneBox(next, "cannot be brought back");
    EXPECT_TRUE(next.text().empty());
    next.close();
    EXPECT_EQ(temporaryFiles(), before);
}

TEST(Save, AsksBeforeItOverwritesWhatAnotherProgramWrote) {
    struct Case {
        const char* change;  // to the file meanwhile; null: it is deleted
        bool asked;
        Answer answer;
        bool saved;
    };
    const std::string original = "C  G\r\nla la\r\n";
    const Case cases[] = {
        {original.c_str(), false, Answer::Yes, true},  // written anew, but the same
        {"C  G\r\nla lo\r\n", true, Answer::No, false},
        {"C  G\r\nla lo\r\n", true, Answer::Yes, true},
        {"longer than before\r\n", true, Answer::No, false},
        {nullptr, false, Answer::Yes, true},
    };
    for (const Case& c : cases) {
        const ScratchFolder folder;
        const Text path = folder.add(u"song.txt", original);
        Program program(path);
        program.type(u"x");
        if (c.change != nullptr)
            folder.add(u"song.txt", c.change);
        else
            program.files.remove(path);
        if (c.asked)
            program.messages.answer(c.answer);
        program.command(Command::mnuFileSave);
        ASSERT_EQ(program.messages.boxes.size(), c.asked ? 1U : 0U);
        if (c.asked) {
            EXPECT_NE(program.messages.boxes[0].text.find("changed by another program"),
                      std::string::npos);
        }
        EXPECT_EQ(program.state().dirty, !c.saved);
        EXPECT_EQ(folder.content(u"song.txt"), c.saved ? "xC G\r\nla la\r\n" : c.change);
        // Its own writing is no surprise.
        program.type(u"y");
        if (!c.saved)
            program.messages.answer(Answer::Yes);
        program.command(Command::mnuFileSave);
        EXPECT_EQ(folder.content(u"song.txt"), "xyC G\r\nla la\r\n");
    }
}

// A file that another program holds is refused, and the song stays unsaved in the editor.
TEST(Save, AFileInUseIsRefused) {
    const ScratchFolder folder;
    const Text path = folder.add(u"song.txt", "C\r\n");
    Program program(path);
    program.type(u"x");
    {
        const UniqueFile held(
            ::CreateFileW(wide(path), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
        ASSERT_TRUE(held);
        program.command(Command::mnuFileSave);
    }
    expectOneBox(program, "Another program is using the file.");
    EXPECT_TRUE(program.state().dirty);
    EXPECT_EQ(program.text(), "xC");
    EXPECT_EQ(folder.content(u"song.txt"), "C\r\n");
    program.command(Command::mnuFileSave);
    EXPECT_FALSE(program.state().dirty);
}

}  // namespace
}  // namespace melvorin::testing
