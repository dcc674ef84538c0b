// What becomes of files: their names, their kinds, what of them cannot be shown, and the page they
// are seen on.
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

// What only looks like an ending belongs to the name.
TEST(Save, NamesKeepTheirDots) {
    const ScratchFolder folder;
    const struct {
        TextView typed;
        int filter;
        TextView saved;
    } cases[] = {
        {u"St. Anne No. 1", 1, u"St. Anne No. 1.mlv"},
        {u"St. Anne No. 2", 1, u"St. Anne No. 2.mlv"},
        {u"St. Anne No. 1.mvt", 2, u"St. Anne No. 1.rtf"},
        {u"Opus 59.3", 1, u"Opus 59.3.mlv"},
        {u"Song.txt", 1, u"Song.mlv"},
        {u"Song", 2, u"Song.rtf"},
    };
    Program program(kNoSong);
    program.type(u"Am");
    for (const auto& c : cases) {
        program.dialogs.choose(chosen(folder.file(c.typed), c.filter));
        program.command(Command::mnuFileSaveAs);
        EXPECT_EQ(shown(fileNamePart(program.form->documents().path())), shown(c.saved));
    }
    EXPECT_EQ(folder.names().size(), std::size(cases));
    program.dialogs.choose(std::nullopt);
    program.command(Command::mnuFileSaveAs);
    const auto& requests = program.dialogs.requests;
    EXPECT_EQ(shown(requests.front().initialFolder), "C:\\Users\\me\\Documents");
    EXPECT_EQ(shown(requests[2].fileName), "St. Anne No. 2.mlv") << "the whole name is offered";
    EXPECT_EQ(requests.back().initialFolder, folder.path());
}

TEST(Open, ANameWithoutItsEndingIsFound) {
    const ScratchFolder folder;
    folder.add(u"both.mlv", kRichSong);
    folder.add(u"both.txt", "no");
    folder.add(u"text.txt", "Am");
    folder.add(u"bare", "G");
    folder.add(u"bare.txt", "no");
    Program program(kNoSong);
    for (const auto& [typed, opened] :
         {std::pair{u"both", "both.mlv"}, {u"text", "text.txt"}, {u"bare", "bare"}}) {
        program.dialogs.choose(chosen(folder.file(typed), 1));
        program.command(Command::mnuFileOpen);
        EXPECT_EQ(program.caption(), opened + std::string(" - Melvorin"));
    }
    program.dialogs.choose(chosen(folder.file(u"nothing"), 1));
    program.command(Command::mnuFileOpen);
    EXPECT_EQ(program.messages.boxes.size(), 1U);
    EXPECT_EQ(program.caption(), "bare - Melvorin");
}

// A file is not made another kind of file unasked, and the question comes once.
TEST(Save, AsksBeforeAFileChangesInKind) {
    struct Case {
        TextView name;
        std::string content;
        bool asks;
    };
    for (const Case& c :
         {Case{u"song.cho", "[C]la\n", true}, Case{u"notes.md", "# C\n", true},
          Case{u"song.mvt", "C  G\n", true}, Case{u"song.txt", kRichSong, true},
          Case{u"song.txt", "C  G\n", false}, Case{u"song.rtf", kRichSong, false}}) {
        SCOPED_TRACE(shown(c.name));
        const ScratchFolder folder;
        Program program(folder.add(c.name, c.content));
        EXPECT_EQ(program.caption(), shown(c.name) + " - Melvorin");
        program.type(u"x");
        if (c.asks) {
            program.messages.answer(Answer::Cancel);
            program.command(Command::mnuFileSave);
            EXPECT_EQ(folder.content(c.name), c.content);
            program.messages.answer(Answer::No);
            program.dialogs.choose(std::nullopt);
            program.command(Command::mnuFileSave);
            EXPECT_EQ(program.dialogs.requests.size(), 1U) << "No leads to Save As";
            EXPECT_EQ(folder.content(c.name), c.content);
            EXPECT_TRUE(program.state().dirty);
            program.messages.answer(Answer::Yes);
        }
        for (int i = 0; i < 2; ++i) {
            program.command(Command::mnuFileSave);
            EXPECT_FALSE(program.state().dirty);
            program.type(u"y");
        }
        EXPECT_TRUE(program.messages.allAnswered());
        EXPECT_NE(folder.content(c.name), c.content);
    }
}

// What cannot be shown is named when the file opens, and asked about before it would be gone; also
// where the program went down in between.
TEST(Save, AsksBeforeWhatCouldNotBeShownIsLost) {
    const ScratchFolder folder;
    const std::string content =
        R"({\rtf1\ansi{\fonttbl{\f0 Courier New;}}\f0 C  G\par la{\footnote a word below} la})";
    const Text path = folder.add(u"song.rtf", content);
    const auto saveAfterQuestion = [&](Program& program) {
        program.messages.boxes.clear();
        program.messages.answer(Answer::Cancel);
        program.command(Command::mnuFileSave);
        expectOneBox(program, "1 footnote");
        EXPECT_EQ(folder.content(u"song.rtf"), content);
    };
    Program program(path);
    expectOneBox(program, "more than Melvorin can show: 1 footnote");
    program.type(u"x");
    saveAfterQuestion(program);
    program.crash();

    Program next;
    next.files.offersRemains = true;
    next.messages.answer(Answer::Yes);
    ASSERT_TRUE(next.start());
    next.pump();
    saveAfterQuestion(next);
    next.messages.answer(Answer::Yes);
    next.command(Command::mnuFileSave);
    EXPECT_FALSE(next.state().dirty);
    next.type(u"y");
    next.command(Command::mnuFileSave);
    EXPECT_TRUE(next.messages.allAnswered()) << "once";
}

// The page behind the text is the user's, unless the next song could not be read on it.
TEST(Background, StaysWhereWordsCanBeRead) {
    const ScratchFolder folder;
    const Text song = folder.add(u"song.rtf", kRichSong);
    const struct {
        Rgb colour;
        bool stays;
    } cases[] = {{{0, 0, 0}, false}, {{80, 0, 0}, false}, {{255, 255, 200}, true}};
    for (const auto& c : cases) {
        for (const bool isNew : {true, false}) {
            Program program(kNoSong);
            program.editor().setBackground(c.colour);
            program.dialogs.otherwise = chosen(song, 2);
            program.command(isNew ? Command::mnuFileNew : Command::mnuFileOpen);
            EXPECT_EQ(program.editor().background(),
                      c.stays ? std::optional(c.colour) : std::nullopt);
            EXPECT_FALSE(program.state().dirty);
        }
    }
}

// A text may quote Rich Text, and a diagram is a letter in a text file.
TEST(Save, KnowsWhatATextFileLoses) {
    const ScratchFolder folder;
    const std::string quote = "{\\rtf1 C  G}\r\nis how it begins\r\n";
    Program program(folder.add(u"quote.txt", quote));
    program.type(u"x");
    program.command(Command::mnuFileSave);
    EXPECT_EQ(folder.content(u"quote.txt"), "x" + quote);
    program.editor().select({0, 1});
    program.editor().setSelectionFace(u"Melvorin 01");
    program.type(u"y");
    program.editor().select({0, 1});
    program.editor().setSelectionFace(u"Melvorin 01");
    program.type(u"z");
    program.editor().select({1, 2});
    program.editor().setSelectionFace(u"Melvorin 01");
    program.messages.answer(Answer::Cancel);
    program.command(Command::mnuFileSave);
    expectOneBox(program, "chord diagrams");
    EXPECT_TRUE(program.state().dirty);
}

// What the program has written itself holds nothing that it cannot show, whatever the characters.
TEST(Save, ASongOfOurOwnLosesNothingAgain) {
    const ScratchFolder folder;
    const char* const bodies[] = {
        R"(C  G\par {\f2 \'b7 a \'61 \u-3913 ?} la\par)",
        R"(C  G\par {\field{\*\fldinst SYMBOL 183 \\f "Symbol"}{\fldrslt\f2\'b7}} la\par)",
        R"(la {\f1\fs56 a} la\line C  G\par)",
        R"(\trowd\cellx3000\pard\intbl C  G\cell\row\pard la\par)",
        R"(\pard{\pntext\f2\'b7\tab}{\*\pn\pnlvlblt\pnf2{\pntxtb\'b7}}C  G\par)",
    };
    for (const char* const body : bodies) {
        const Text path = folder.add(
            u"song.rtf", R"({\rtf1\ansi{\fonttbl{\f0 Courier New;}{\f1\fcharset0 Melvorin 01;})"
                         R"({\f2\fcharset2 Symbol;}}\f0 )" +
                             std::string(body) + "}");
        Program program;
        program.messages.otherwise = Answer::Yes;
        ASSERT_TRUE(program.start(path));
        program.messages.boxes.clear();
        program.type(u"x");
        program.command(Command::mnuFileSave);
        program.messages.boxes.clear();
        program.dialogs.choose(chosen(path, 2));
        program.command(Command::mnuFileOpen);
        EXPECT_TRUE(program.messages.boxes.empty())
            << body << ": " << program.messages.boxes.at(0).text;
    }
}

// What its writer hid or deleted is not sung.
TEST(Open, HiddenAndDeletedTextIsNamedAndGone) {
    for (const char* const hidden : {R"({\v secret words})", R"({\deleted gone \u8364?})"}) {
        const ScratchFolder folder;
        const Text path =
            folder.add(u"song.rtf", R"({\rtf1\ansi{\fonttbl{\f0 Courier New;}}\f0 C  G\par la)" +
                                        std::string(hidden) + R"(\v0  la\par})");
        Program program(path);
        EXPECT_EQ(program.text(), "C  G\rla la");
        expectOneBox(program, "hidden or deleted text");
    }
}

}  // namespace
}  // namespace melvorin::testing
