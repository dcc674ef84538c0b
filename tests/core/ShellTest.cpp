// The shell's rules that need no window: paths, command map, layout, manifest.
#include <gtest/gtest.h>

#include <map>
#include <set>

#include "app/CommandMap.h"
#include "app/ThemeManifest.h"
#include "app/WindowLayout.h"
#include "base/DiagramFont.h"
#include "base/Paths.h"
#include "chords/KeySetting.h"

namespace melvorin {
namespace {

std::string utf8(TextView text) {
    return toUtf8(text);
}

TEST(Paths, Parts) {
    struct Case {
        TextView path, folder, name, extension, bare;
    };
    const Case cases[] = {
        {u"C:\\Songs\\a.mvt", u"C:\\Songs", u"a.mvt", u"mvt", u"C:\\Songs\\a"},
        {u"a.b.RTF", u"", u"a.b.RTF", u"RTF", u"a.b"},
        {u"C:\\my.songs\\plain", u"C:\\my.songs", u"plain", u"", u"C:\\my.songs\\plain"},
        {u"C:\\x\\", u"C:\\x", u"", u"", u"C:\\x\\"},
        {u"dot.", u"", u"dot.", u"", u"dot"},
        {u"", u"", u"", u"", u""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(utf8(folderPart(c.path)), utf8(c.folder));
        EXPECT_EQ(utf8(fileNamePart(c.path)), utf8(c.name));
        EXPECT_EQ(utf8(extensionPart(c.path)), utf8(c.extension));
        EXPECT_EQ(utf8(withoutExtension(c.path)), utf8(c.bare));
    }
    EXPECT_EQ(utf8(joinPath(u"C:\\", u"a")), "C:\\a");
    EXPECT_EQ(utf8(joinPath(u"C:\\x", u"a")), "C:\\x\\a");
}

TEST(Paths, CommandLineNamesOneDocument) {
    struct Case {
        TextView line, path;
    };
    const Case cases[] = {
        {u"", u""},
        {u"   ", u""},
        {u"\"\"", u""},
        {u" a song.mvt ", u"a song.mvt"},
        {u"\"C:\\a song.mvt\"", u"C:\\a song.mvt"},
        {u"  \"C:\\a.mvt\" \"C:\\b.mvt\"", u"C:\\a.mvt"},
        {u"\"C:\\unclosed", u"C:\\unclosed"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(utf8(pathFromCommandLine(c.line)), utf8(c.path)) << utf8(c.line);
}

TEST(Paths, DevicesStreamsAndCutNamesAreNoFiles) {
    constexpr TextView device = u"That is the name of a device, not of a file.";
    constexpr TextView colon = u"A colon can only stand behind the letter of a drive.";
    constexpr TextView end = u"A file name cannot end with a blank or a dot.";
    const struct {
        std::vector<TextView> paths;
        TextView why;
    } cases[] = {
        {{u"CON", u"con.txt", u"C:\\Songs\\NUL.mlv", u"C:nul", u"x/AUX", u"Com1.a.b", u"lpt\u00B2",
          u"prn .txt", u"CONOUT$", u"nul:", u"\\\\.\\COM1", u"//./pipe/x", u"\\\\.\\C:\\song.txt",
          u"\\\\?\\pipe\\x", u"\\\\?\\GLOBALROOT\\Device\\Null", u"\\\\?\\C:\\nul.txt"},
         device},
        {{u"song.txt:x", u"C:\\song.txt::$DATA", u"C:\\a:b\\song.txt", u"CC:\\song.txt",
          u"\\\\server\\share\\song.txt:x", u"\\\\?\\C:\\song.txt:x"},
         colon},
        {{u"song.txt.", u"C:\\Songs\\song.txt ", u"C:\\song...", u"\\\\?\\C:\\song. "}, end},
        {{u"", u"song", u"C:\\Songs\\song.txt", u"C:song.txt", u"..\\song.txt", u"C:\\a\\..\\b.txt",
          u"C:\\a. \\b.txt", u"..", u"C:\\", u"console.txt", u"com10.txt", u"com.txt",
          u"Nullus.mlv", u"my con.txt", u".nul", u"C:\\con\\song.txt",
          u"\\\\server\\share\\song.txt", u"\\\\?\\C:\\song.txt",
          u"\\\\?\\UNC\\server\\share\\song.txt"},
         u""},
    };
    for (const auto& [paths, why] : cases) {
        for (const TextView path : paths)
            EXPECT_EQ(utf8(whyNotAFile(path)), utf8(why)) << utf8(path);
    }
}

TEST(Paths, FormWithoutALimit) {
    const std::pair<TextView, TextView> cases[] = {
        {u"C:\\Songs\\a.txt", u"\\\\?\\C:\\Songs\\a.txt"},
        {u"\\\\server\\share\\a.txt", u"\\\\?\\UNC\\server\\share\\a.txt"},
        {u"\\\\?\\C:\\a.txt", u"\\\\?\\C:\\a.txt"},
        {u"\\\\.\\COM1", u"\\\\.\\COM1"},
        {u"a.txt", u"a.txt"},
        {u"C:a.txt", u"C:a.txt"},
    };
    for (const auto& [path, form] : cases)
        EXPECT_EQ(utf8(withoutLengthLimit(path)), utf8(form));
}

TEST(CommandMap, MenuIsATreeOfDistinctItems) {
    std::set<Command> seen{Command::none};
    std::map<Command, bool> submenus{{Command::none, true}};
    for (const CommandRow& row : commands()) {
        if (row.menu.kind == MenuKind::None)
            continue;
        EXPECT_TRUE(seen.insert(row.id).second) << utf8(row.menu.caption);
        EXPECT_TRUE(submenus[row.menu.parent]) << utf8(row.menu.caption);
        submenus[row.id] = row.menu.kind == MenuKind::Submenu;
    }
}

// The menus as people read them, with the column of keys; * begins hidden.
constexpr char kMenus[] = R"(F&ile
 New	Ctrl+N
 Open	Ctrl+O
 Save	Ctrl+S
 Save As
 Export...
 Print...	Ctrl+P
 Print Preview
 Page Setup...
 Save as PDF...
 Recent Files
  (Empty)
  Not Used*
  Not Used*
  Not Used*
  Not Used*
  Not Used*
  Not Used*
  Not Used*
  Not Used*
  -*
  Clean List of Recent Files*
 -
 Exit	Alt+F4
&Edit
 Cut (Ctrl+X)
 Copy (Ctrl+C)
 Paste (Ctrl+V)
 Delete (Del)
 Select All (Ctrl+A)
 Find and Replace	Ctrl+F
 -
 Undo	Ctrl+Z
 Redo	Ctrl+Y
 -
 Copy Chords
 Paste Chords
Format
 Font and Colors
 -
 Bold	Ctrl+B
 Italic	Ctrl+I
 Underline	Ctrl+U
 -
 To Upper Case
 To Lower Case
&View
 Dictionary
 Full Screen
 -
 Status Line
Chord Notation
 Create Chord Notation
 Change the Fingering of the Chord	Ctrl+D
 Insert Tablature
 Melvorin Guitar Tuner
 Key
  Go Down a Half Step	F7
  Go Up a Half Step	F8
  To Another Key...	Ctrl+K
  Other Chord Lines
   Ask
   Move
   Leave
 Alteration Signs
  >> Use Sharps
  Use Flats
           Follow the Key
  -
  Respell
 Chords Follow the Words
Examples
 Example 1 (Read this first)
 Example 2
 First Demonstration
 Second Demonstration
 Melvorin Home Page
 Melvorin on the Social Network
Help
 Help Contents	F1
 -
 About Melvorin
)";

TEST(CommandMap, Captions) {
    std::string outline;
    std::map<Command, std::string> indents{{Command::none, ""}};
    for (const CommandRow& row : commands()) {
        if (row.menu.kind == MenuKind::None)
            continue;
        outline += indents[row.menu.parent] + utf8(menuText(row, row.menu.caption)) +
                   (row.menu.startsHidden ? "*\n" : "\n");
        indents[row.id] = indents[row.menu.parent] + " ";
    }
    EXPECT_EQ(outline, kMenus);
}

TEST(CommandMap, ToolbarKeysRunTheirCommands) {
    // The keys compare with case; what they run is the menu item of the same meaning.
    EXPECT_EQ(commandOfKey(u"New"), Command::mnuFileNew);
    EXPECT_EQ(commandOfKey(u"Save"), Command::mnuFileSave);
    EXPECT_EQ(commandOfKey(u"ChgTune1"), Command::mnuDwn);
    EXPECT_EQ(commandOfKey(u"ChgTune2"), Command::mnuUp);
    EXPECT_EQ(commandOfKey(u"Center"), Command::alignCenter);
    EXPECT_EQ(commandOfKey(u"new"), std::nullopt);
    EXPECT_EQ(commandOfKey(u""), std::nullopt);
    std::set<Text> keys;
    for (int number = 1; number <= kLastButton; ++number) {
        if (const CommandRow* const row = rowOfButton(number)) {
            EXPECT_TRUE(keys.insert(Text(row->button.key)).second);
            EXPECT_EQ(commandOfId(idOf(row->id)), row->id);
        }
    }
    EXPECT_EQ(keys.size(), 25U);
    EXPECT_EQ(commandOfId(kFirstCommandId), std::nullopt);
    EXPECT_EQ(commandOfId(idOf(Command::count)), std::nullopt);
}

TEST(CommandMap, ButtonsHaveTheirNumbersAndTips) {
    std::string bar;
    for (int number = 1; number <= kLastButton; ++number) {
        const CommandRow* const row = rowOfButton(number);
        bar += row == nullptr ? "|\n" : std::to_string(number) + " " + utf8(tipOf(*row)) + "\n";
    }
    EXPECT_EQ(bar, R"(1 New (Ctrl+N)
2 Open (Ctrl+O)
3 Save (Ctrl+S)
|
5 Cut (Ctrl+X)
6 Copy (Ctrl+C)
7 Paste (Ctrl+V)
8 Delete (Del)
|
10 Find and Replace (Ctrl+F)
|
12 Undo (Ctrl+Z)
13 Redo (Ctrl+Y)
|
15 Bold (Ctrl+B)
16 Italic (Ctrl+I)
17 Underline (Ctrl+U)
|
19 Align Left (Ctrl+L)
20 Center (Ctrl+E)
21 Align Right (Ctrl+R)
|
23 Create Chord Notation
24 Insert Tablature
25 Font and Colors
26 Melvorin Guitar Tuner
|
28 Go Down a Half Step (F7)
29 Go Up a Half Step (F8)
|
31 Dictionary
32 Full Screen
|
34 Help Contents (F1)
)");
}

TEST(Layout, PartsNeverOverlapNorLeaveTheWindow) {
    for (const int dpi : {96, 144, 192}) {
        for (const int width : {0, 5, 120, 800, 1280, 3840}) {
            for (const int height : {0, 30, 600, 2160}) {
                for (const PanelWidth panelWidth :
                     {PanelWidth::Closed, PanelWidth::Normal, PanelWidth::Expanded}) {
                    const bool panel = panelWidth != PanelWidth::Closed;
                    const MainLayout layout = layoutMainWindow(width, height, 28, 20, dpi,
                                                               ScreenSupport::Wide, panelWidth);
                    EXPECT_GE(layout.editor.width, 0);
                    EXPECT_GE(layout.editor.height, 0);
                    EXPECT_GE(layout.editor.top, 28);
                    EXPECT_EQ(layout.status.height, 20);
                    if (height >= 600) {
                        EXPECT_LE(layout.editor.top + layout.editor.height, layout.status.top);
                        EXPECT_EQ(layout.status.top + 20, height);
                    }
                    if (!panel || width >= 800) {
                        EXPECT_EQ(layout.panel.width > 0, panel);
                    }
                    if (layout.panel.width > 0) {
                        EXPECT_GT(layout.panel.left, layout.editor.left + layout.editor.width);
                        EXPECT_LT(layout.panel.left + layout.panel.width, width);
                    }
                    if (width > 100) {
                        EXPECT_LT(layout.editor.left + layout.editor.width, width);
                    }
                }
            }
        }
    }
}

TEST(Manifest, NameAndContent) {
    EXPECT_EQ(utf8(manifestPath(u"C:\\Program", u"Melvorin.exe")),
              "C:\\Program\\Melvorin.exe.manifest");
    EXPECT_EQ(utf8(manifestPath(u"C:\\", u"MELVORIN.EXE")), "C:\\MELVORIN.EXE.manifest");
    EXPECT_EQ(utf8(manifestPath(u"C:\\Program", u"Melvorin")),
              "C:\\Program\\Melvorin.exe.manifest");

    const Text content = fromUtf8(manifestContent(false));
    const std::vector<TextView> lines = splitLines(content);
    ASSERT_EQ(lines.size(), 11U);
    const std::size_t blanks[] = {0, 0, 5, 5, 5, 10, 15, 10, 5, 0};
    for (std::size_t i = 0; i < std::size(blanks); ++i)
        EXPECT_EQ(lines[i].find_first_not_of(u' '), blanks[i]) << i;
    EXPECT_TRUE(lines[10].empty());
    EXPECT_EQ(utf8(lines[2].substr(5)),
              "<assemblyIdentity version=\"1.0.0.0\" processorArchitecture=\"X86\" "
              "name=\"Tessaly.WindowsXP.Example\" type=\"win32\" />");
}

TEST(KeySetting, TagStaysWithinTheFonts) {
    struct Case {
        int halfSteps;
        std::string tag;
    };
    for (const auto& [halfSteps, tag] : {Case{1, "Melvorin 01"},
                                         {9, "Melvorin 09"},
                                         {10, "Melvorin 10"},
                                         {34, "Melvorin 34"},
                                         {35, "Melvorin 01"},
                                         {-2, "Melvorin 02"}}) {
        EXPECT_EQ(utf8(keyTag(halfSteps)), tag);
        EXPECT_TRUE(isDiagramFace(keyTag(halfSteps)));
    }
    EXPECT_TRUE(isDiagramFace(keyTag(0)));
    for (const char16_t* face : {u"Melvorin 00", u"Melvorin 35", u"Melvorin 1", u"Melvorin 011",
                                 u"melvorin 01", u"Courier New", u""})
        EXPECT_FALSE(isDiagramFace(face)) << utf8(face);
}

}  // namespace
}  // namespace melvorin
