#include "chords/Chart.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "LiteralRules.h"

namespace melvorin {
namespace {

TEST(Chart, MovesChordLinesAndNothingElse) {
    const struct {
        TextView chart, up;
    } cases[] = {
        {u"", u""},
        {u"\n", u"\n"},
        {u"C", u"C#"},
        {u"C\r\n", u"C#\r\n"},
        {u"C\r\rE\n\nF\r\nhey", u"C#\r\rF\n\nF#\r\nhey"},  // every kind of line end
        {u"\n\r", u"\n\r"},
        {u"G      C\r\nRow the boat\r\n\r\nE7-9\r\nC",
         u"G#     C#\r\nRow the boat\r\n\r\nE7-9\r\nC#"},
        {u"C\u2028G\n", u"C\u2028G\n"},  // not a line end here
        {u"C\tG\nD   A\n", u"C\tG\nD#  A#\n"},
    };
    const KeyChange change(Direction::Up, Spelling::Sharps);
    for (const auto& example : cases) {
        EXPECT_EQ(transposeChart(example.chart, change), example.up) << toUtf8(example.chart);
    }
}

TEST(Chart, LinesAreMovedEachByItself) {
    static constexpr TextView ends[] = {u"\r", u"\n", u"\r\n"};
    static constexpr TextView lyrics[] = {u"Down by the water", u"I", u"A2", u"\u00E9t\u00E9"};
    std::mt19937 random(3);
    for (int i = 0; i < 300; ++i) {
        Text chart;
        Text expected;
        const KeyChange change(Direction::Down, Spelling::Flats);
        for (std::size_t line = random() % 30; line > 0; --line) {
            Text end = Text(ends[random() % 3]);
            if (random() % 2 == 0) {
                const Text chords = literal::randomChordLine(random, true);
                const Text transposed =
                    literal::transposeLine(chords, Direction::Down, Spelling::Flats);
                chart += chords + end;
                expected += literal::realignLine(chords, transposed) + end;
            } else {
                const Text words = Text(lyrics[random() % 4]) + end;
                chart += words;
                expected += words;
            }
        }
        ASSERT_EQ(transposeChart(chart, change), expected) << toUtf8(chart);
    }
}

TEST(Chart, ReaderTellsWhatEachLineIs) {
    constexpr TextView chart = u"C   Gm\r\nSing\n\n  \rDad";
    ChartReader reader(chart);
    ChartLine line;
    const struct {
        TextView chars;
        bool isChordLine;
        std::vector<ChordToken> tokens;
    } expected[] = {
        {u"C   Gm", true, {{0, u"C"}, {4, u"Gm"}}},
        {u"Sing", false, {}},
        {u"", true, {}},
        {u"  ", true, {}},
        {u"Dad", true, {{0, u"Dad"}}},
    };
    for (const auto& want : expected) {
        ASSERT_TRUE(reader.next(line));
        EXPECT_EQ(line.chars, want.chars);
        EXPECT_EQ(line.isChordLine, want.isChordLine) << toUtf8(want.chars);
        EXPECT_EQ(line.tokens, want.tokens) << toUtf8(want.chars);
    }
    EXPECT_FALSE(reader.next(line));
}

}  // namespace
}  // namespace melvorin
