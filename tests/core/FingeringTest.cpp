// The change of a diagram's fingering.
#include "dictionary/Fingering.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "Diagrams.h"
#include "StandIns.h"

namespace melvorin {
namespace {

using testing::LineOfDiagrams;
using testing::ScriptedMessages;

DiagramStyle styleOf(TextView face) {
    return {Text(face), 48, {200, 10, 20}};
}

// Ctrl+D again and again, without selecting anything in between.
TEST(Fingering, WalksThroughAChordAndBack) {
    const struct {
        TextView face;
        TextView from;
        TextView walk;
    } cases[] = {
        {u"Melvorin 01", u"a", u"AsS²aA"},  {u"Melvorin 02", u"a", u"AsS²aA"},
        {u"Melvorin 33", u"Y", u"ÅuUyYÅ"},  {u"Melvorin 01", u"g", u"GhHjJgGhHjJg"},
        {u"Melvorin 34", u"g", u"GhHjJgG"}, {u"Melvorin 01", u"é", u"ÉíÍéÉ"},
        {u"Melvorin 01", u"ï", u"Ïï"},      {u"Melvorin 01", u"æ", u"Æ‡†Þæ"},
        {u"Melvorin 03", u"5", u"ç67Ç5"},   {u"Melvorin 03", u"J", u"JgG"},
        {u"Melvorin 04", u"é", u"É"},       {u"Melvorin 04", u"ê", u"Ê"},
    };
    for (const auto& [face, from, walk] : cases) {
        LineOfDiagrams line(u"x" + Text(from) + u"x", styleOf(face));
        line.select({1, 2});
        ScriptedMessages messages;
        Fingering fingering;
        Text walked;
        for (std::size_t i = 0; i < walk.size(); ++i) {
            EXPECT_TRUE(fingering.change(line, messages));
            EXPECT_EQ(line.selection(), (Selection{1, 2}));
            EXPECT_EQ(line.style(), styleOf(face));
            walked += line.selectedText();
        }
        EXPECT_EQ(toUtf8(walked), toUtf8(walk)) << toUtf8(face);
        EXPECT_TRUE(messages.boxes.empty());
        EXPECT_EQ(line.text().size(), 3U);
    }
}

TEST(Fingering, FixedSubstitutionsOfEvenFonts) {
    const struct {
        TextView glyph;
        TextView even;
        TextView odd;
    } cases[] = {
        {u"É", u"é", u"í"}, {u"Ê", u"ê", u"î"}, {u"Y", u"u", u"Å"},
        {u"í", u"Í", u"Í"}, {u"Í", u"ì", u"é"}, {u"ì", u"Ì", u"Ì"},
        {u"Ì", u"í", u"ì"}, {u"î", u"î", u"Î"}, {u"Î", u"Î", u"ê"},
    };
    for (const auto& [glyph, even, odd] : cases) {
        for (const bool isEven : {true, false}) {
            LineOfDiagrams line(glyph, styleOf(isEven ? u"Melvorin 10" : u"Melvorin 09"));
            line.select({0, 1});
            ScriptedMessages messages;
            const bool changes = !isEven || glyph != even;
            EXPECT_EQ(Fingering().change(line, messages), changes);
            EXPECT_EQ(toUtf8(line.text()), toUtf8(isEven ? even : odd));
            EXPECT_EQ(line.at(0), styleOf(isEven ? u"Melvorin 10" : u"Melvorin 09"));
            // The caret stays behind a substitute; everything else stays selected.
            const Selection expected{isEven && changes ? 1 : 0, 1};
            EXPECT_EQ(line.selection(), expected) << toUtf8(glyph) << isEven;
            EXPECT_TRUE(messages.boxes.empty());
        }
    }
}

TEST(Fingering, AsksForADiagram) {
    const struct {
        TextView face;
        Selection selection;
    } cases[] = {
        {u"Courier New", {1, 1}}, {u"Melvorin 01", {1, 3}},    {u"Melvorin 35", {1, 2}},
        {u"Melvorin 00", {1, 2}}, {u"Lucida Console", {1, 2}}, {u"Something02", {1, 2}},
    };
    for (const auto& [face, selection] : cases) {
        LineOfDiagrams line(u"aÉaa", styleOf(face));
        line.select(selection);
        ScriptedMessages messages;
        EXPECT_FALSE(Fingering().change(line, messages));
        EXPECT_EQ(line.text(), u"aÉaa");
        EXPECT_EQ(line.selection(), (Selection{1, 1}));
        ASSERT_EQ(messages.boxes.size(), 1U) << toUtf8(face);
        EXPECT_EQ(messages.boxes[0].text,
                  "Select a Chord in the Document and Type Ctlr+D          ");
        EXPECT_EQ(messages.boxes[0].title, "Melvorin");
        EXPECT_EQ(messages.boxes[0].icon, MessageIcon::Information);
    }
}

TEST(Fingering, LeavesAGlyphThatItDoesNotKnow) {
    for (const TextView glyph : {u"@", u"\r", u"€"}) {
        LineOfDiagrams line(glyph, styleOf(u"Melvorin 01"));
        line.select({0, 1});
        ScriptedMessages messages;
        EXPECT_FALSE(Fingering().change(line, messages));
        EXPECT_EQ(line.text(), glyph);
        EXPECT_EQ(line.selection(), (Selection{0, 1}));
        EXPECT_TRUE(messages.boxes.empty());
    }
}

// The walk that ended in the last row goes on in the first, whatever is selected by then.
TEST(Fingering, RemembersTheLastRowBetweenCommands) {
    ScriptedMessages messages;
    Fingering fingering;
    LineOfDiagrams line(u"j", styleOf(u"Melvorin 01"));
    line.select({0, 1});
    fingering.change(line, messages);
    LineOfDiagrams other(u"a", styleOf(u"Melvorin 05"));
    other.select({0, 1});
    fingering.change(other, messages);
    EXPECT_EQ(other.text(), u"g");
    EXPECT_EQ(other.at(0), styleOf(u"Melvorin 05"));
    other.select({0, 1});
    fingering.change(other, messages);
    EXPECT_EQ(other.text(), u"G");
}

// What a slip of the pen in the table would break: in every column that a search can reach the
// entries come before the marks, and a chord's fingerings are not repeated.
TEST(Fingering, TableIsWellFormed) {
    // Behind it every character stands for the second time.
    constexpr std::size_t kReachedColumns = 50;
    std::vector<int> marks(kFingeringRows, 0);
    for (std::size_t column = 0; column < kFingeringColumns; ++column) {
        std::vector<Text> entries;
        bool ended = false;
        for (std::size_t row = 0; row < kFingeringRows; ++row) {
            const Text entry = fingeringEntry(row * kFingeringColumns + column);
            const bool isMark = entry == u"§";
            marks[row] += isMark ? 1 : 0;
            const bool isReached = column <= kReachedColumns;
            EXPECT_FALSE(isReached && ended && !isMark) << row << " " << column;
            ended = isMark;
            if (!isMark) {
                EXPECT_EQ(std::count(entries.begin(), entries.end(), entry), 0) << toUtf8(entry);
            }
            entries.push_back(entry);
        }
    }
    EXPECT_EQ(marks, (std::vector<int>{0, 0, 55, 55, 81, 92}));
    EXPECT_EQ(fingeringEntry(0), u"îî");
    EXPECT_EQ(fingeringEntry(93 + 3 * kFingeringColumns), u"ÌÌ");
}

}  // namespace
}  // namespace melvorin
