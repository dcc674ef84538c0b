// Start, splash, layout and close of the main window.
#include "Scripted.h"
#include "app/ThemeManifest.h"

namespace melvorin::testing {
namespace {

TEST(Start, EmptyDocumentIsCleanAndCannotBeUndone) {
    Program program(kNoSong);
    EXPECT_EQ(program.caption(), "Chord Notation - Melvorin");
    EXPECT_EQ(program.text(), "");
    EXPECT_EQ(program.history().count(), 1);
    EXPECT_EQ(program.history().current(), 1);
    EXPECT_EQ(program.state(), ShellState{});
    EXPECT_FALSE(program.form->isEnabled(Command::mnuEditUndo));
    EXPECT_FALSE(program.form->toolbar().isEnabled(Command::mnuEditUndo));
    EXPECT_TRUE(program.messages.boxes.empty());

    program.type(u"C");
    EXPECT_EQ(program.editor().selectionStyle().face, u"Lucida Console");
    EXPECT_EQ(program.editor().selectionStyle().halfPoints, 20);
    EXPECT_EQ(program.editor().selectionStyle().bold, false);
}

TEST(Start, EditorFaceFollowsTheSetting) {
    struct Case {
        TextView stored;
        TextView face;
    };
    for (const auto& [stored, face] : {Case{u"0", u"Courier New"},
                                       {u"1", u"Lucida Console"},
                                       {u"", u"Lucida Console"},
                                       {u"00", u"Lucida Console"}}) {
        Program program;
        program.profiles.values[{u"C:\\Program\\Melvorin.ini", u"Tela", u"Option"}] = stored;
        ASSERT_TRUE(program.start());
        program.type(u"C");
        EXPECT_EQ(program.editor().selectionStyle().face, face);
    }
}

TEST(Start, MissingPiecesAreReportedAndDoNotStopIt) {
    struct Case {
        bool resource;
        bool temporaryNames;
        std::string message;
    };
    for (const auto& [resource, names, message] :
         {Case{false, true, "Unable to save resource item to disk!"},
          Case{true, false, "Unable to get temp file name!"}}) {
        Program program;
        program.program.hasResource = resource;
        program.files.temporaryNames = names;
        ASSERT_TRUE(program.start());
        ASSERT_FALSE(program.messages.boxes.empty());
        EXPECT_EQ(program.messages.boxes[0].text, message);
        EXPECT_EQ(program.messages.boxes[0].icon, MessageIcon::Critical);
        program.type(u"Am");
        EXPECT_EQ(program.text(), "Am");
    }
}

TEST(Start, CommandLineOpensADocument) {
    const ScratchFolder folder;
    const Text path = folder.add(u"Ein Lied für Ωmega.txt", "C\r\nla\r\n");
    for (const Text& line : {path, u"  \"" + path + u"\" "}) {
        Program program(line);
        EXPECT_EQ(program.text(), "C\rla");
        EXPECT_EQ(program.caption(), "Ein Lied für Ωmega.txt - Melvorin");
        EXPECT_FALSE(program.state().dirty);
        EXPECT_FALSE(program.state().undo);
        EXPECT_TRUE(program.state().saveAs);
        EXPECT_EQ(program.history().count(), 2);
    }
    Program program(folder.file(u"none.txt"));
    expectOneBox(program, "    Please verify that the correct path and file name are given.");
    EXPECT_EQ(program.caption(), "Chord Notation - Melvorin");
}

// A part of the machine that fails, whichever, does not keep the window from coming up.
TEST(Start, EveryStepFailsOnItsOwn) {
    struct ThrowingProgram : ScriptedProgram {
        bool contains(TextView) override { throw std::runtime_error("no folder"); }
        std::optional<std::string> resource(TextView, int) override {
            throw std::runtime_error("no resource");
        }
    };
    struct ThrowingSystem : ScriptedSystem {
        std::optional<Text> registryString(TextView, TextView) override {
            throw std::runtime_error("no registry");
        }
        void initCommonControls() override { throw std::runtime_error("no controls"); }
    };
    Program program;
    ThrowingProgram folder;
    ThrowingSystem system;
    for (const bool systemFails : {false, true}) {
        SystemSettings& chosen = systemFails ? static_cast<SystemSettings&>(system)
                                             : static_cast<SystemSettings&>(program.system);
        const Services services = ServicesBuilder(program, program.files, systemAnsiCodec())
                                      .system(chosen)
                                      .program(folder)
                                      .build();
        Form1 form(services, [] {});
        ASSERT_TRUE(form.load(u"", SW_SHOWNORMAL));
        program.waitUntil([&] { return ::IsWindowVisible(form.handle()) != FALSE; });
        EXPECT_EQ(form.documents().history().count(), 1);
        form.endRun();
    }
}

TEST(Splash, WritesTheManifestOnceAndSwitchesSmoothingOff) {
    struct Case {
        Text fileName;
        bool present;
        std::optional<Text> clearType;
        bool rewritten;
    };
    const Case cases[] = {
        {u"Melvorin.exe", false, u"yes", true},
        {u"MELVORIN.EXE", true, u"Yes", false},
        {u"Melvorin", false, std::nullopt, false},
    };
    for (const Case& c : cases) {
        Program program;
        program.program.fileName = c.fileName;
        const Text path = u"C:\\Program\\" + c.fileName +
                          (c.fileName == u"Melvorin" ? u".exe.manifest" : u".manifest");
        if (c.present)
            program.program.present.insert(path);
        program.system.clearType = c.clearType;
        ASSERT_TRUE(program.start());

        ASSERT_EQ(program.program.written.size(), c.present ? 0U : 1U);
        if (!c.present) {
            const auto& [content, attributes] = program.program.written.at(path);
            EXPECT_EQ(content, manifestContent(sizeof(void*) == 8));
            EXPECT_EQ(attributes, 39U);
        }
        const std::string key = "Software\\Microsoft\\Internet Explorer\\Main\\UseClearType";
        std::vector<std::string> expected{"init common controls", "smoothing off", "read smoothing",
                                          "read " + key};
        if (c.rewritten)
            expected.push_back("write " + key + "=no");
        EXPECT_EQ(program.system.calls, expected);
    }
}

TEST(Screen, UnsupportedSizesEndTheProgram) {
    struct Case {
        ScreenSize screen;
        bool runs;
    };
    for (const auto& [screen, runs] :
         {Case{{800, 600}, true}, Case{{1280, 1024}, true}, Case{{3840, 2160}, true},
          Case{{640, 480}, true}, Case{{720, 576}, false}}) {
        Program program;
        program.screen.screen = screen;
        program.screen.work = {screen.width, screen.height - 30};
        EXPECT_EQ(program.start(runs ? u"" : u"C:\\missing.txt"), runs) << screen.width;
        EXPECT_EQ(program.ended, !runs);
        if (!runs) {
            ASSERT_EQ(program.messages.boxes.size(), 1U);
            EXPECT_EQ(program.messages.boxes[0].text,
                      "The Melvorin Editor doesn't work with this video settings  ");
            EXPECT_EQ(program.messages.boxes[0].icon, MessageIcon::None);
            // At once: no step of the start has run.
            EXPECT_TRUE(program.system.calls.empty());
            EXPECT_TRUE(program.program.written.empty());
            EXPECT_EQ(program.history().count(), 0);
        }
    }
}

TEST(Screen, EditorFillsTheWindowBelowTheToolbar) {
    Program program(kNoSong);
    for (const SIZE size : {SIZE{800, 560}, SIZE{1280, 960}, SIZE{400, 150}}) {
        ::SetWindowPos(program.form->handle(), nullptr, 0, 0, size.cx, size.cy,
                       SWP_NOMOVE | SWP_NOZORDER);
        RECT client{};
        RECT editor{};
        RECT bar{};
        ::GetClientRect(program.form->handle(), &client);
        ::GetWindowRect(program.editor().handle(), &editor);
        ::GetWindowRect(program.form->toolbar().handle(), &bar);
        ::MapWindowPoints(nullptr, program.form->handle(), reinterpret_cast<POINT*>(&editor), 2);
        ::MapWindowPoints(nullptr, program.form->handle(), reinterpret_cast<POINT*>(&bar), 2);
        EXPECT_GE(editor.top, bar.bottom);
        EXPECT_LE(editor.bottom, client.bottom);
        EXPECT_LE(client.right - editor.right, 8);
        EXPECT_LE(editor.left, 8);
    }
}

TEST(Close, PromptsOnlyForUnsavedChanges) {
    struct Case {
        bool type;
        std::optional<Answer> answer;
        bool saveDialogCancelled;
        bool ends;
        bool pathsWritten;
    };
    const Case cases[] = {
        {false, std::nullopt, false, true, false},  {true, Answer::No, false, true, false},
        {true, Answer::Cancel, false, false, true}, {true, Answer::Yes, true, false, true},
        {true, Answer::Yes, false, true, false},
    };
    for (const Case& c : cases) {
        const ScratchFolder folder;
        Program program(kNoSong);
        if (c.type)
            program.type(u"Am");
        if (c.answer)
            program.messages.answer(*c.answer);
        if (c.answer == Answer::Yes)
            program.dialogs.choose(c.saveDialogCancelled
                                       ? std::nullopt
                                       : std::optional(FileChoice{folder.file(u"Song"), 1}));
        program.close();
        EXPECT_EQ(program.ended, c.ends);
        EXPECT_EQ(program.settings.written.size(), c.pathsWritten ? 3U : 0U);
        if (c.answer) {
            ASSERT_EQ(program.messages.boxes.size(), 1U);
            EXPECT_EQ(program.messages.boxes[0].text, "Save changes to Chord Notation?");
            EXPECT_EQ(program.messages.boxes[0].title, " Melvorin");
            EXPECT_EQ(program.messages.boxes[0].buttons, MessageButtons::YesNoCancel);
        }
        if (c.answer == Answer::Yes && !c.saveDialogCancelled) {
            EXPECT_EQ(folder.names(), std::vector<Text>{u"Song.mlv"});
        }
    }
}

TEST(Close, RemovesTheSnapshotsOfTheRun) {
    Program program(kNoSong);
    program.type(u"Am");
    const Text path = program.history().currentSnapshot().path;
    EXPECT_TRUE(program.files.exists(path));
    program.messages.answer(Answer::No);
    program.close();
    EXPECT_TRUE(program.ended);
    EXPECT_FALSE(program.files.exists(path));
}

}  // namespace
}  // namespace melvorin::testing
