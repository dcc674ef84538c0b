// The song on its way to other programs: the real window over the real editor.
#include "Controls.h"
#include "app/frmExport.h"

namespace melvorin::testing {
namespace {

// A diagram of the chord book behind the chords.
constexpr char kSong[] =
    "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0\\fmodern\\fcharset0 Courier New;}"
    "{\\f1\\fnil\\fcharset0 Melvorin 05;}}\\pard\\f0\\fs20 "
    "F7+  G  {\\f1\\fs60 a}\\par la   la & lo}";

void exportAs(Program& program, const Text& target, int format, int names) {
    program.dialogs.choose(FileChoice{target, 1});
    const WhileOpen window(L"MelvorinfrmExport", [&](HWND form) {
        chooseRow(::GetDlgItem(form, frmExport::kFormats), format);
        chooseRow(::GetDlgItem(form, frmExport::kNames), names);
        ::SendMessageW(form, WM_COMMAND, frmExport::kExport, 0);
    });
    program.command(Command::mnuFileExport);
    EXPECT_EQ(window.seen(), 1);
}

std::string said(Program& program) {
    return shown(program.form->statusLine().message());
}

TEST(Export, WritesTheWholeSongAndLeavesItOpen) {
    const ScratchFolder folder;
    Program program;
    program.program.programFolder = Win32ProgramFolder().folder();  // with the chord book
    ASSERT_TRUE(program.start(folder.add(u"song.rtf", kSong)));
    const std::string before = program.text();
    const std::int16_t steps = program.history().count();
    // What is selected does not count.
    program.editor().select({0, 3});
    const Text page = folder.file(u"page.html");
    exportAs(program, page, 2, 1);
    const std::string html = folder.content(u"page.html");
    EXPECT_NE(html.find("<b>Fmaj7 </b>"), std::string::npos) << html;
    EXPECT_NE(html.find("<svg"), std::string::npos);
    EXPECT_NE(html.find("&amp;"), std::string::npos);
    EXPECT_EQ(said(program), "Exported to page.html");
    // An ending that is missing comes by itself; the choice of last time is marked.
    exportAs(program, folder.file(u"song"), 0, 1);
    EXPECT_EQ(folder.content(u"song.cho"), "[Fmaj7]la   [G]la & lo\r\n");
    EXPECT_EQ(said(program), "Exported to song.cho, without 1 diagram");
    EXPECT_EQ(program.text(), before);
    EXPECT_EQ(program.editor().selection(), (Selection{0, 3}));
    EXPECT_EQ(program.history().count(), steps) << "no step of Undo";
}

TEST(Export, ReplacesNothingUnasked) {
    const ScratchFolder folder;
    Program program(folder.add(u"song.txt", "C\r\nla\r\n"));
    const Text target = folder.add(u"other.txt", "mine");
    program.messages.answer(Answer::No);
    exportAs(program, target, 1, 0);
    EXPECT_EQ(folder.content(u"other.txt"), "mine");
    // Nor the song itself.
    exportAs(program, folder.file(u"song.txt"), 1, 1);
    EXPECT_EQ(folder.content(u"song.txt"), "C\r\nla\r\n");
    program.messages.answer(Answer::Yes);
    exportAs(program, target, 1, 3);
    EXPECT_EQ(folder.content(u"other.txt"), "C\r\nla\r\n");
    ::SetFileAttributesW(wide(target), FILE_ATTRIBUTE_READONLY);
    program.messages.answer(Answer::Yes);
    exportAs(program, target, 1, 1);
    EXPECT_EQ(folder.content(u"other.txt"), "C\r\nla\r\n");
}

}  // namespace
}  // namespace melvorin::testing
