// Documents without an editor: file content, tabs, the undo history, lost characters.
#include <gtest/gtest.h>

#include "MemoryFiles.h"
#include "app/DocumentFile.h"
#include "app/SnapshotHistory.h"
#include "base/TabExpansion.h"
#include "rtf/RtfMap.h"
#include "rtf/RtfRepair.h"

namespace melvorin {
namespace {

std::string utf8(TextView text) {
    return toUtf8(text);
}

TEST(TabExpansion, EndsAtTheNextEighthColumn) {
    struct Case {
        TextView text;
        std::size_t column;
        TextView expanded;
    };
    const Case cases[] = {
        {u"", 0, u""},
        {u"no tab\r\n", 0, u"no tab\r\n"},
        {u"\tC", 0, u"        C"},
        {u"ab\tC", 0, u"ab      C"},
        {u"abc\t\tC", 0, u"abc             C"},
        {u"1234567\tC", 0, u"1234567 C"},
        {u"12345678\tC", 0, u"12345678        C"},
        {u"ab\r\n\tC\rabc\tD\n\tE", 0, u"ab\r\n        C\rabc     D\n        E"},
        {u"\tC\n\tD", 5, u"   C\n        D"},
    };
    for (const Case& c : cases)
        EXPECT_EQ(utf8(expandTabs(c.text, c.column)), utf8(c.expanded)) << utf8(c.text);
}

TEST(DocumentFile, DecidesByContent) {
    struct Case {
        std::string bytes;
        TextView extension;
        bool opens;
        bool isRichText;
    };
    const Case cases[] = {
        {"{\\rtf1 C\\par}", u"mvt", true, true},
        {"{\\rtf1 C\\par}", u"txt", true, true},
        {"C  G\r\n", u"mvt", true, false},
        {"", u"TXT", true, false},
        {"", u"mvt", false, false},
        {"{\\rtf1 C\\par", u"rtf", false, true},
        {"{\\rtf1 in a text about Rich Text", u"txt", true, false},
        {"\xEF\xBB\xBF"
         "caf\xE9",
         u"txt", false, false},
        {std::string("\x7f"
                     "ELF\2\1\1\0\0\0\0",
                     11),
         u"txt", false, false},
    };
    for (const Case& c : cases) {
        const auto content = readDocument(c.bytes, c.extension, windows1252());
        EXPECT_EQ(static_cast<bool>(content), c.opens) << c.bytes;
        EXPECT_EQ(content.cause.empty(), c.opens);
        if (content) {
            EXPECT_EQ(content.value->isRichText, c.isRichText) << c.bytes;
        }
    }
}

// Whatever is typed comes back from a plain-text file, and a second save changes nothing.
TEST(DocumentFile, PlainTextComesBack) {
    for (const TextView text :
         {TextView(u""), TextView(u"C  G\rla la"), TextView(u"\r\r"), TextView(u"caf\u00E9 \u20AC"),
          TextView(u"\u03A9mega \u4E2D"), TextView(u"\u00C3\u00A9"), TextView(u"\u00FF\u00FEC"),
          TextView(u"\u00EF\u00BB\u00BFC")}) {
        const std::string bytes = plainDocument({Text(text)}, {}, windows1252()).bytes;
        EXPECT_TRUE(bytes.ends_with("\r\n"));
        const auto content = readDocument(bytes, u"txt", windows1252());
        ASSERT_TRUE(static_cast<bool>(content));
        EXPECT_EQ(utf8(content.value->text.chars), utf8(text));
        EXPECT_EQ(plainDocument(content.value->text, content.value->format, windows1252()).bytes,
                  bytes);
    }
}

TEST(RtfRepair, GivesBackWhatAControlLost) {
    const std::string head =
        "{\\rtf1\\ansi\\ansicpg1252\\uc1\\deff0{\\fonttbl{\\f0\\fcharset0 Courier "
        "New;}}\\pard\\fs20 ";
    struct Case {
        std::string body;
        TextView text;
        bool repaired;
    };
    const Case cases[] = {
        {"O b\\b O\\b0  C\\par}", u"\u03A9 b\u03A9 C", true},
        {"plain\\par}", u"plain", false},
        {"caf\\'e9 \\'80\\par}", u"caf\u00E9 \u20AC", false},
        {"?\\par}", u"\u03A9\u03A9", false},      // not this text
        {"O x\\par}", u"\u03A9 y", false},        // differs where nothing can be lost
        {"\\u937? x\\par}", u"\u03A9 x", false},  // written as it should be
    };
    for (const Case& c : cases) {
        const std::string rtf = head + c.body;
        const std::string result = withLostCharacters(rtf, c.text);
        EXPECT_EQ(result != rtf, c.repaired) << c.body;
        if (c.repaired) {
            const auto map = RtfMap::parse(result);
            ASSERT_TRUE(map.has_value());
            EXPECT_EQ(utf8(map->text()), utf8(c.text));
        }
    }
}

// For a character that its symbol font has not, a control may write nothing, or what just lies in
// the memory.
TEST(RtfRepair, TakesNoJunkForCharacters) {
    const std::string head =
        "{\\rtf1\\ansi\\ansicpg1252\\uc1\\deff0{\\fonttbl{\\f0\\fcharset2 Courier New;}"
        "{\\f1\\fcharset0 Courier New;}}\\pard\\fs20\\f0 ";
    struct Case {
        std::string body;
        TextView text;
        bool repaired;
        TextView inSymbols;  // what of the text is in the symbol font afterwards
    };
    const Case cases[] = {
        {"\\'1c \\'1c\\f1 end\\par}", u"\u00E9 \u03A9end", true, u"\u00E9 \u03A9"},
        {"\x1c \x1c\\f1 end\\par}", u"\u00E9 \u03A9end", true, u"\u00E9 \u03A9"},
        {"\x06 \x1c\\'06\\f1 end\\par}", u"\u00E9 \u03A9\u03A9end", true, u"\u00E9 \u03A9\u03A9"},
        {"\\'07 x\\f1 end\\par}", u"\u00E9 \u03A9end", true, u"\u00E9 \u03A9"},
        {"\\'00 \\'00\\f1 end\\par}", u"\u00E9 \u03A9end", true, u"\u00E9 \u03A9"},
        {"\\f1 ab\\'07\\par}", u"ab\u00E9", true, u""},
        {"   \\f1 end\\par}", u"\u00E9 \u03A9 \u65E5 \u0301end", true,
         u"\u00E9 \u03A9 \u65E5 \u0301"},
        {"  \\f1 a\\par\\f0  \\f1 b\\par}", u"\u00E9  a\r \u00E9b", true, u"\u00E9   \u00E9"},
        {"\\f1 ab\\par}", u"a\u00E9b", true, u""},
        {"\\f1 ab\\par}", u"acb", false, u""},       // letters are not lost
        {"\\f1 ab\\par}", u"\u00E9ba", false, u""},  // not this text
        {"\\f1 a\\par}", u"a\u00E9b", false, u""},
    };
    for (const Case& c : cases) {
        const std::string rtf = head + c.body;
        const std::string result = withLostCharacters(rtf, c.text);
        EXPECT_EQ(result != rtf, c.repaired) << c.body;
        if (!c.repaired)
            continue;
        const auto map = RtfMap::parse(result);
        ASSERT_TRUE(map.has_value()) << result;
        EXPECT_EQ(utf8(map->text()), utf8(c.text)) << result;
        Text inSymbols;
        for (std::size_t i = 0; i < map->text().size(); ++i) {
            if (map->isSymbolAt(i) && map->text()[i] != u'\r')
                inSymbols += map->text()[i];
        }
        EXPECT_EQ(utf8(inSymbols), utf8(c.inSymbols)) << result;
    }
}

TEST(RtfRepair, PutsCharactersRightWhereThereIsNoMap) {
    const std::string head =
        "{\\rtf1\\ansi\\uc1{\\fonttbl{\\f0\\fcharset0 A;}{\\f1\\fcharset204 B;}{\\f2\\fcharset2 "
        "S;}}";
    const struct {
        std::string body;
        TextView text;
        std::string expected;
    } cases[] = {
        {"\\trowd\\cellx9 a\\cell O\\cell\\row\\pard c\\par}", u"\r\na\t\u010D\t\r\nc",
         "\\trowd\\cellx9 a\\cell \\u269?\\cell\\row\\pard c\\par}"},
        {"{\\pntext 1.\\tab}{\\*\\pn{\\pntxta.}}Tat\\'edc\\line g}", u"Tat\u00EDč \u011F",
         "{\\pntext 1.\\tab}{\\*\\pn{\\pntxta.}}Tat\\'ed\\u269?\\line \\u287?}"},
        {"\\cell\\uc0 {c}\\u269 -x\\f1 \\'ef\\f2 \\'b7}", u"\t\u010D\u010D\u2011x\u043F\uF0B7",
         "\\cell\\uc0 {\\u269 }\\u269 \\u8209 x\\f1 \\'ef\\f2 \\'b7}"},
        {"\\cell c}", u"\u010Dd", "\\cell c}"},  // not this text
        {"\\cell cd}", u"\u010D", "\\cell cd}"},
        {"\\cell cd}", u"\u010De", "\\cell cd}"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(withLostCharacters(head + c.body, c.text), head + c.expected);
}

TEST(SnapshotHistory, StepsBackForthAndBranches) {
    testing::MemoryFiles files;
    SnapshotHistory history(files);
    EXPECT_FALSE(history.canUndo() || history.canRedo());
    history.record("one", 1);
    EXPECT_FALSE(history.canUndo());
    for (int i = 2; i <= 25; ++i)
        history.record(std::to_string(i), i);
    EXPECT_EQ(history.count(), 25);
    for (int i = 25; i > 20; --i) {
        EXPECT_EQ(history.previous().caret, i - 1);
        EXPECT_EQ(files.content.at(history.previous().path), std::to_string(i - 1));
        history.stepBack();
    }
    EXPECT_EQ(history.next().caret, 21);
    history.stepForward();
    history.stepBack();

    history.record("branch", 99);
    EXPECT_EQ(history.count(), 21);
    EXPECT_EQ(history.current(), 21);
    EXPECT_FALSE(history.canRedo());
    EXPECT_EQ(files.content.size(), 21U) << "the undone states' files are gone";
    EXPECT_EQ(history.currentSnapshot().caret, 99);

    history.setFloor();
    EXPECT_FALSE(history.canUndo());
    history.record("after open", 0);
    EXPECT_TRUE(history.canUndo());
    history.stepBack();
    EXPECT_FALSE(history.canUndo());
    history.deleteAll();
    EXPECT_TRUE(files.content.empty());
}

TEST(SnapshotHistory, KeepsTheBackgroundBesideEachState) {
    constexpr Rgb grey{200, 200, 200};
    testing::MemoryFiles files;
    SnapshotHistory history(files);
    history.record("one", 0);
    history.record("two", 0, grey);
    history.record("three", 0, Rgb{});
    EXPECT_EQ(history.previous().background, grey);
    history.stepBack();
    EXPECT_EQ(history.previous().background, std::nullopt);
    EXPECT_EQ(history.next().background, Rgb{});
    EXPECT_TRUE(history.rewriteCurrent("two", 0, Rgb{1, 2, 3}));
    EXPECT_EQ(history.currentSnapshot().background, (Rgb{1, 2, 3}));
}

TEST(SnapshotHistory, AFailureCountsButLeavesNoFile) {
    testing::MemoryFiles files;
    SnapshotHistory history(files);
    history.record("one", 1);
    files.isFull = true;
    EXPECT_EQ(history.record("two", 2), SnapshotHistory::Outcome::NotWritten);
    EXPECT_EQ(utf8(history.lastFailure()), "The disk is full.");
    EXPECT_EQ(history.count(), 2);
    EXPECT_TRUE(history.currentSnapshot().path.empty());
    EXPECT_EQ(files.content.size(), 1U);
}

TEST(SnapshotHistory, StopsAtTheEndOfItsCounters) {
    testing::MemoryFiles files;
    SnapshotHistory history(files);
    for (int i = 1; i <= 32'767; ++i)
        ASSERT_EQ(history.record("x", i), SnapshotHistory::Outcome::Recorded);
    EXPECT_EQ(history.record("x", 0), SnapshotHistory::Outcome::Full);
    EXPECT_EQ(history.count(), 32'767);
    EXPECT_EQ(history.currentSnapshot().caret, 32'767);
    history.stepBack();
    EXPECT_EQ(history.record("y", 7), SnapshotHistory::Outcome::Recorded);
    EXPECT_EQ(history.currentSnapshot().caret, 7);
}

}  // namespace
}  // namespace melvorin
