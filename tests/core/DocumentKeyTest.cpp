// The key change over an editor that can be told to fail.
#include "chords/DocumentKey.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "ScriptedEditor.h"

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

}  // namespace
}  // namespace melvorin
