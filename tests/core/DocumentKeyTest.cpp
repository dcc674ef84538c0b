// The key change over an editor that can be told to fail.
#include "chords/DocumentKey.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "MappedEditor.h"
#include "chords/KeyDebt.h"

namespace melvorin {
namespace {

const KeyChange kUp(Direction::Up, Spelling::Sharps);

// A table's row begins and ends with CR LF; its cells end with a tab.
TEST(DocumentKey, FindsTheLinesOfEditorsThatWriteTables) {
    ScriptedEditor editor(u"la la\r\r\nC\tla\t\r\nC  G\rla\vDm7\r\nAm");
    editor.select({18, 19});
    ASSERT_EQ(editor.shown(editor.selected), u"G");
    editor.scroll = {3, 40};
    std::size_t lines = 0;
    changeDocumentKey(editor, kUp, [&] { ++lines; });
    EXPECT_EQ(editor.chars, u"la la\r\r\nC\tla\t\r\nC# G#\rla\vD#m7\r\nA#m");
    EXPECT_EQ(lines, 7u);
    EXPECT_EQ(editor.done, u"A#m|D#m7|C# G#|");
    EXPECT_EQ(editor.selected, (Selection{18, 19}));
    EXPECT_EQ(editor.scroll, (ScrollPosition{3, 40}));
    EXPECT_EQ(editor.work, 0);
}

TEST(DocumentKey, PutsBackWhatAnEditorChangesOnlyInPart) {
    ScriptedEditor editor(u"C  G\rla la\rDm7");
    editor.protectedText = u"G";
    editor.select({7, 9});
    editor.scroll = {0, 25};
    EXPECT_THROW(changeDocumentKey(editor, kUp, [] {}), std::runtime_error);
    EXPECT_EQ(editor.chars, u"C  G\rla la\rDm7");
    EXPECT_EQ(editor.selected, (Selection{7, 9}));
    EXPECT_EQ(editor.scroll, (ScrollPosition{0, 25}));
    EXPECT_EQ(editor.work, 0);
}

ChooseOthers moveAll(const KeyChange& change) {
    return [change](const LeftOver& found, TextView) {
        std::vector<OtherMove> moves;
        for (const LeftOverLine& line : found.lines)
            moves.push_back({line, change});
        return moves;
    };
}

// Rows of a table keep their cells; a soft line break ends a line.
TEST(DocumentKey, MovesOtherLinesWithTheKeyOrLater) {
    const TextView song = u"Cmaj7\tG\r\r\nC\tG\t\r\nC  G\rla\v|Dm7|\rla";
    const KeyChange up(Direction::Up, Spelling::Sharps);
    ScriptedEditor editor{song};
    editor.select({30, 32});
    ASSERT_EQ(editor.shown(editor.selected), u"la");
    changeDocumentKey(
        editor, up, [] {}, moveAll(up));
    EXPECT_EQ(editor.chars, u"C#maj7  G#\r\r\nC#\tG#\t\r\nC# G#\rla\v|D#m7|\rla");
    EXPECT_EQ(editor.shown(editor.selected), u"la");

    ScriptedEditor later{song};
    LeftOver asked;
    changeDocumentKey(
        later, up, [] {},
        [&](const LeftOver& found, TextView text) {
            EXPECT_EQ(text, song);
            asked = found;
            return std::vector<OtherMove>();
        });
    EXPECT_EQ(later.chars, u"Cmaj7\tG\r\r\nC\tG\t\r\nC# G#\rla\v|Dm7|\rla");
    KeyDebt debt;
    debt.keyChanged(Direction::Up, Spelling::Sharps, 1, asked.lines);
    EXPECT_EQ(debt.text(), "up sharps 0:1 2:1 5:1");
    EXPECT_EQ(leftOverInDocument(later).lines, asked.lines);
    std::size_t lines = 0;
    moveOthersInDocument(
        later, [&](const LeftOver& found, TextView text) { return linesBehind(debt, found, text); },
        [&] { ++lines; });
    EXPECT_EQ(later.chars, editor.chars);
    EXPECT_EQ(lines, 7U);
    EXPECT_EQ(later.work, 0);

    // A line that is to stay.
    changeDocumentKey(
        later, up, [] {},
        [](const LeftOver&, TextView) {
            return std::vector<OtherMove>{{{3, {}, false}, std::nullopt}};
        });
    EXPECT_EQ(later.chars, editor.chars);
}

// In one load; a diagram keeps its letter and its face, what is moved is red.
TEST(DocumentKey, MovesOtherLinesWithTheirFormats) {
    MappedEditor editor("{\\b Cmaj7}{\\f1 d}\\tab {\\i G}\\par la {\\f1 C}\\par");
    ASSERT_EQ(editor.chars, u"Cmaj7d\tG\rla C");
    const LeftOver found = leftOverInDocument(editor);
    ASSERT_EQ(found.lines.size(), 1U);
    EXPECT_EQ(found.lines[0].notes, (std::vector<ColumnRange>{{0, 1}, {7, 1}}));
    moveOthersInDocument(editor, moveAll(kUp), [] {});
    EXPECT_EQ(editor.chars, u"C#maj7d G#\rla C");
    const std::string rtf = editor.rtf();
    const auto map = RtfMap::parse(rtf);
    EXPECT_EQ(map->fontNameAt(6), u"Melvorin 09");
    EXPECT_EQ(map->fontNameAt(7), u"Courier New");
    EXPECT_NE(rtf.find("\\red192\\green0\\blue0;"), std::string::npos);
    const std::size_t bold = rtf.find("{\\b");
    const std::size_t italic = rtf.find("{\\i");
    EXPECT_LT(bold, rtf.find("C#maj7"));
    EXPECT_LT(rtf.find("C#maj7"), rtf.find('}', bold));
    EXPECT_LT(italic, rtf.find("G#"));
    EXPECT_LT(rtf.find("G#"), rtf.find('}', italic));
}

}  // namespace
}  // namespace melvorin
