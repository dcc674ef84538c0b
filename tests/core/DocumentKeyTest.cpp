// The key change over an editor that can be told to fail.
#include "chords/DocumentKey.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <utility>

#include "rtf/EditCommands.h"

namespace melvorin {
namespace {

// An editor whose Rich Text says nothing about its text, so that lines are edited one by one.
class OpaqueEditor : public Editor {
  public:
    explicit OpaqueEditor(TextView text) : chars(text), first_(text) {}

    bool isEmpty() const override { return chars.empty(); }
    EditorText text() const override { return {chars}; }
    std::string rtf() const override { return "{\\rtf1\\opaque}"; }
    bool loadRtf(std::string_view rtf) override {
        selected = {};
        chars = rtf == this->rtf() ? first_ : Text();
        return true;
    }
    bool loadPlain(const EditorText&, TextView, int) override { return false; }
    void setSelectionFont(TextView, int) override {}
    void setSelectionFace(TextView) override {}
    void setSelectionSize(int) override {}
    std::optional<Text> selectionFace() const override { return std::nullopt; }
    void setSelectionColour(Rgb) override { coloured += shown(selected) + u"|"; }
    void replaceSelection(TextView text) override {
        if (shown(selected) == protectedText)
            return;
        chars.replace(static_cast<std::size_t>(selected.begin),
                      static_cast<std::size_t>(selected.end - selected.begin), text);
    }
    bool replaceSelectionRtf(std::string_view) override { return false; }
    void sendUndo() override {}
    Text faceAt(std::int32_t) override { return u"Courier New"; }
    std::optional<Selection> find(TextView, std::int32_t, FindOptions) const override {
        return std::nullopt;
    }
    std::optional<Rgb> background() const override { return std::nullopt; }
    void setBackground(std::optional<Rgb>) override {}
    Selection selection() const override { return selected; }
    void select(Selection selection) override { selected = selection; }
    ScrollPosition scrollPosition() const override { return scroll; }
    void scrollTo(ScrollPosition position) override { scroll = position; }
    void scrollCaretIntoView() override {}
    bool isInView(std::int32_t) const override { return true; }
    void centre(std::int32_t) override {}
    void beginWork() override { ++work; }
    void endWork() override { --work; }

    Text shown(Selection range) const {
        return chars.substr(static_cast<std::size_t>(range.begin),
                            static_cast<std::size_t>(range.end - range.begin));
    }

    Text chars;
    Text coloured;                        // the pieces, last line first
    Text protectedText = u"not in here";  // refuses to be replaced
    Selection selected;
    ScrollPosition scroll;
    int work = 0;

  private:
    Text first_;
};

const KeyChange kUp(Direction::Up, Spelling::Sharps);

// A table's row begins and ends with CR LF; its cells end with a tab.
TEST(DocumentKey, FindsTheLinesOfEditorsThatWriteTables) {
    OpaqueEditor editor(u"la la\r\r\nC\tla\t\r\nC  G\rla\vDm7\r\nAm");
    editor.select({18, 19});
    ASSERT_EQ(editor.shown(editor.selected), u"G");
    editor.scroll = {3, 40};
    std::size_t lines = 0;
    changeDocumentKey(editor, kUp, [&] { ++lines; });
    EXPECT_EQ(editor.chars, u"la la\r\r\nC\tla\t\r\nC# G#\rla\vD#m7\r\nA#m");
    EXPECT_EQ(lines, 7u);
    EXPECT_EQ(editor.coloured, u"A#m|D#m7|C# G#|");
    EXPECT_EQ(editor.selected, (Selection{18, 19}));
    EXPECT_EQ(editor.scroll, (ScrollPosition{3, 40}));
    EXPECT_EQ(editor.work, 0);
}

TEST(DocumentKey, PutsBackWhatAnEditorChangesOnlyInPart) {
    OpaqueEditor editor(u"C  G\rla la\rDm7");
    editor.protectedText = u"G";
    editor.select({7, 9});
    editor.scroll = {0, 25};
    EXPECT_THROW(changeDocumentKey(editor, kUp, [] {}), std::runtime_error);
    EXPECT_EQ(editor.chars, u"C  G\rla la\rDm7");
    EXPECT_EQ(editor.selected, (Selection{7, 9}));
    EXPECT_EQ(editor.scroll, (ScrollPosition{0, 25}));
    EXPECT_EQ(editor.work, 0);
}

TEST(DocumentKey, ColumnsBeginBehindTheRowOfATable) {
    OpaqueEditor editor(u"x\t\r\nC  G\vAm");
    for (const auto& [position, column] : {std::pair(1, 1U), {4, 0U}, {7, 3U}, {10, 1U}}) {
        editor.select({position, position});
        EXPECT_EQ(columnOfSelection(editor), column) << position;
    }
}

}  // namespace
}  // namespace melvorin
