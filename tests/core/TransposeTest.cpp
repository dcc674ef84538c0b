#include "chords/Transpose.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <vector>

#include "LiteralRules.h"
#include "chords/ChordLine.h"

namespace melvorin {
namespace {

constexpr Direction directions[] = {Direction::Down, Direction::Up};
constexpr Spelling spellings[] = {Spelling::Sharps, Spelling::Flats};

TEST(ReplaceAll, RescansUntilNothingIsLeft) {
    const struct {
        TextView text, find, replacement, result;
    } cases[] = {
        {u"", u"a", u"b", u""},
        {u"abcabc", u"b", u"", u"acac"},
        {u"aaab", u"ab", u"b", u"b"},          // a replacement completes an occurrence on its left
        {u"xyyz", u"xy", u"x", u"xz"},         // and on its right
        {u"((()))()", u"()", u"", u""},        // nested ones
        {u"bababa", u"ba", u"ab", u"aaabbb"},  // as often as needed
        {u"aaaa", u"aa", u"b", u"bb"},         // from the left
        {u"Maj maj", u"maj", u"M", u"Maj M"},  // with case
        {u"same", u"", u"x", u"same"},         // what could not end
        {u"same", u"a", u"a", u"same"},
        {u"same", u"a", u"bab", u"same"},
    };
    for (const auto& example : cases) {
        EXPECT_EQ(ReplaceAll(example.text, example.find, example.replacement), example.result)
            << toUtf8(example.text) << ": " << toUtf8(example.find);
    }
}

TEST(ReplaceAll, AgreesWithStartingOverEachTime) {
    std::mt19937 random(20240117);
    const auto word = [&random](std::size_t length) {
        Text text;
        while (text.size() < length) {
            text += TextView(u"abc")[random() % (2 + random() % 2)];
        }
        return text;
    };
    int compared = 0;
    for (int i = 0; i < 40000; ++i) {
        const Text text = word(random() % 24);
        const Text find = word(1 + random() % 3);
        const Text replacement = word(random() % 4);
        Text expected = text;
        if (replacement.find(find) == Text::npos &&
            literal::replaceAll(expected, find, replacement, 2000)) {
            ++compared;
            ASSERT_EQ(ReplaceAll(text, find, replacement), expected)
                << toUtf8(text) << ": " << toUtf8(find) << " by " << toUtf8(replacement);
        }
    }
    EXPECT_GT(compared, 20000);
}

// One row per note: its name, then down with sharps, down with flats, up with sharps, up with
// flats.
TEST(TransposeLine, MovesEveryNoteByAHalfStep) {
    const TextView rows[][5] = {
        {u"A", u"G#", u"Ab", u"A#", u"Bb"},
        {u"A#", u"A", u"A", u"B", u"B"},
        {u"Ab", u"G", u"G", u"A", u"A"},
        {u"B", u"A#", u"Bb", u"C", u"C"},
        {u"Bb", u"A", u"A", u"B", u"B"},
        {u"C", u"B", u"B", u"C#", u"Db"},
        {u"C#", u"C", u"C", u"D", u"D"},
        {u"D", u"C#", u"Db", u"D#", u"Eb"},
        {u"D#", u"D", u"D", u"E", u"E"},
        {u"Db", u"C", u"C", u"D", u"D"},
        {u"E", u"D#", u"Eb", u"F", u"F"},
        {u"Eb", u"D", u"D", u"E", u"E"},
        {u"F", u"E", u"E", u"F#", u"Gb"},
        {u"F#", u"F", u"F", u"G", u"G"},
        {u"G", u"F#", u"Gb", u"G#", u"Ab"},
        {u"G#", u"G", u"G", u"A", u"A"},
        {u"Gb", u"F", u"F", u"G", u"G"},
        // A bass note moves too; what is no name stays behind its letter.
        {u"D/F#", u"C#/F", u"Db/F", u"D#/G", u"Eb/G"},
        {u"A#m7", u"Am7", u"Am7", u"Bm7", u"Bm7"},
        {u"G7b9", u"F#7b9", u"Gb7b9", u"G#7b9", u"Ab7b9"},
        {u"Cb", u"Bb", u"Bb", u"C#b", u"Dbb"},
        {u"Fb", u"Eb", u"Eb", u"F#b", u"Gbb"},
        {u"E#", u"D##", u"Eb#", u"F#", u"F#"},
        {u"B#", u"A##", u"Bb#", u"C#", u"C#"},
        {u"A##", u"A#", u"A#", u"B#", u"B#"},
        {u"Abb", u"Gb", u"Gb", u"Ab", u"Ab"},
        {u"AbAb", u"GG", u"GG", u"AA", u"AA"},
        {u"C C# Db", u"B C C", u"B C C", u"C# D D", u"Db D D"},
        {u"b#m", u"b#m", u"b#m", u"b#m", u"b#m"},
        {u"   ", u"   ", u"   ", u"   ", u"   "},
        {u"", u"", u"", u"", u""},
    };
    for (const auto& row : rows) {
        for (int i = 0; i < 4; ++i) {
            EXPECT_EQ(TransposeLine(row[0], directions[i / 2], spellings[i % 2]), row[i + 1])
                << toUtf8(row[0]) << " column " << i;
        }
    }
}

TEST(RealignLine, KeepsColumnsWhereThereIsRoom) {
    const struct {
        TextView before, transposed, result;
    } cases[] = {
        {u"", u"", u""},
        {u"    ", u"    ", u"    "},
        {u"C   G   ", u"C#   G#   ", u"C#  G#  "},                // growing into blanks
        {u"C#  G#  ", u"C  G  ", u"C   G   "},                    // shrinking
        {u"  C", u"  C#", u"  C#"},                               // growing at the end
        {u"C#  ", u"D  ", u"D   "},                               // trailing blanks
        {u"A B C", u"A# C C#", u"A# C C#"},                       // pushed, and no room behind
        {u"A C D   G", u"A# C# D#   G#", u"A# C# D# G#"},         // room just used up
        {u"A C D    G  ", u"A# C# D#    G#  ", u"A# C# D# G# "},  // and at its column again
        {u"A  C D", u"A#  C# D#", u"A# C# D#"},
        {u"Gdim C7M", u"G#dim C#7M", u"G#dim C#7M"},
        {u"C", u"C D E", u"C D E"},  // more tokens than there were
        {u"C D E", u"F", u"F    "},  // fewer
    };
    for (const auto& example : cases) {
        EXPECT_EQ(RealignLine(example.before, example.transposed), example.result)
            << toUtf8(example.before);
    }
}

Text moved(const KeyChange& change, TextView line) {
    Text out = u"|";
    change.appendMoved(line, out);
    return out.substr(1);
}

TEST(KeyChange, AgreesWithTheRulesOneByOne) {
    std::mt19937 random(7);
    for (int i = 0; i < 12000; ++i) {
        const Text line = literal::randomChordLine(random, i % 2 == 0);
        ASSERT_TRUE(IsChordLine(line));
        for (const Direction direction : directions) {
            for (const Spelling spelling : spellings) {
                const Text transposed = literal::transposeLine(line, direction, spelling);
                const Text realigned = literal::realignLine(line, transposed);
                ASSERT_EQ(TransposeLine(line, direction, spelling), transposed) << toUtf8(line);
                ASSERT_EQ(RealignLine(line, transposed), realigned) << toUtf8(line);
                ASSERT_EQ(moved(KeyChange(direction, spelling), line), realigned) << toUtf8(line);
            }
        }
    }
}

TEST(KeyChange, SeveralStepsRealignOnce) {
    EXPECT_EQ(moved(KeyChange(Direction::Up, Spelling::Sharps, 2), u"C D E   F"), u"D E F#  G");
    EXPECT_EQ(moved(KeyChange(Direction::Up, Spelling::Flats, 3), u"Cb"), u"D ");
    std::mt19937 random(11);
    for (int i = 0; i < 3000; ++i) {
        const Text line = literal::randomChordLine(random, i % 2 == 0);
        const Direction direction = directions[random() % 2];
        const Spelling spelling = spellings[random() % 2];
        Text transposed = line;
        for (unsigned steps = 1; steps <= 12; ++steps) {
            transposed = literal::transposeLine(transposed, direction, spelling);
            ASSERT_EQ(moved(KeyChange(direction, spelling, steps), line),
                      literal::realignLine(line, transposed))
                << toUtf8(line) << " by " << steps;
        }
    }
}

TEST(KeyChange, LongLinesStayWhole) {
    Text chords;
    Text accidentals = u"A";
    while (chords.size() < 10000) {
        chords += u"C Gdim ";
        accidentals += u"##b";
    }
    for (const Text& line : {chords, accidentals, Text(10000, u' '), Text(10000, u'B')}) {
        for (const Direction direction : directions) {
            Text transposed = line;
            for (int step = 0; step < 11; ++step) {
                transposed = TransposeLine(transposed, direction, Spelling::Sharps);
            }
            EXPECT_EQ(moved(KeyChange(direction, Spelling::Sharps, 11), line),
                      literal::realignLine(line, transposed));
        }
    }
}

// What `moveLine` reports, checked against the two lines alone.
void checkReport(TextView before, const std::vector<ColumnRange>& fixed, const MovedLine& moved) {
    EXPECT_EQ(moved.changed, moved.line != before);
    Text rebuilt;
    std::size_t column = 0;
    const auto keepTo = [&](std::size_t end) {
        rebuilt += before.substr(column, end - column);
        column = end;
    };
    for (const MovedRange& edit : moved.edits) {
        ASSERT_LE(column, edit.before.column);
        keepTo(edit.before.column);
        ASSERT_EQ(rebuilt.size(), edit.after.column);
        rebuilt += moved.line.substr(edit.after.column, edit.after.length);
        column += edit.before.length;
        for (const ColumnRange& range : fixed) {
            EXPECT_TRUE(range.column >= column || range.column + range.length <= edit.before.column)
                << "an edit touches a fixed character";
        }
    }
    keepTo(before.size());
    EXPECT_EQ(rebuilt, moved.line);
}

TEST(KeyChange, ReportsWhereEverythingWent) {
    const MovedLine moved = KeyChange(Direction::Up, Spelling::Sharps).moveLine(u"A C#m   G/B  ");
    EXPECT_EQ(moved.line, u"A# Dm   G#/C ");
    EXPECT_TRUE(moved.changed);
    EXPECT_EQ(moved.tokens,
              (std::vector<MovedRange>{{{0, 1}, {0, 2}}, {{2, 3}, {3, 2}}, {{8, 3}, {8, 4}}}));
    EXPECT_EQ(moved.edits, (std::vector<MovedRange>{{{0, 1}, {0, 2}},
                                                    {{2, 2}, {3, 1}},
                                                    {{8, 1}, {8, 2}},
                                                    {{10, 1}, {11, 1}},
                                                    {{11, 1}, {12, 0}}}));
    EXPECT_FALSE(KeyChange(Direction::Up, Spelling::Sharps).moveLine(u" m7  dim ").changed);
}

TEST(KeyChange, LeavesFixedCharactersAlone) {
    const struct {
        TextView line;
        std::vector<ColumnRange> fixed;
        TextView up;
        std::size_t tokens;
    } cases[] = {
        {u"A C", {{0, 3}}, u"A C", 1},           // nothing but pictures, one of them a blank
        {u"A D C", {{2, 1}}, u"A# D C#", 3},     // pushed by a growing chord
        {u"A   D C", {{4, 1}}, u"A#  D C#", 3},  // and not where there is room
        {u"A#", {{1, 1}}, u"A##", 1},            // no accidental of the letter before
        {u"C#", {{0, 1}}, u"C#", 1},             // no letter of the accidental behind
        {u"AAA", {{1, 1}}, u"A#AA#", 1},
        {u"A B", {{1, 1}}, u"A# C", 1},  // no separator
        {u"A B G", {{1, 1}, {4, 1}}, u"A# C G", 2},
    };
    for (const auto& example : cases) {
        const MovedLine moved =
            KeyChange(Direction::Up, Spelling::Sharps).moveLine(example.line, example.fixed);
        EXPECT_EQ(moved.line, example.up) << toUtf8(example.line);
        EXPECT_EQ(moved.tokens.size(), example.tokens) << toUtf8(example.line);
        checkReport(example.line, example.fixed, moved);
    }
}

TEST(KeyChange, ReportsHoldOnGeneratedLines) {
    std::mt19937 random(5);
    for (int i = 0; i < 6000 && !::testing::Test::HasFailure(); ++i) {
        const Text line = literal::randomChordLine(random, i % 3 != 0);
        std::vector<ColumnRange> fixed;
        for (std::size_t column = random() % 8; column < line.size();) {
            const std::size_t length =
                std::min<std::size_t>(1 + random() % 3, line.size() - column);
            fixed.push_back({column, length});
            column += length + random() % 12;
        }
        const KeyChange change(directions[random() % 2], spellings[random() % 2],
                               1 + static_cast<unsigned>(random() % 11));
        checkReport(line, fixed, change.moveLine(line, fixed));
        const MovedLine writing = change.moveLine(line);
        checkReport(line, {}, writing);
        ASSERT_EQ(writing.line, moved(change, line));
    }
}

}  // namespace
}  // namespace melvorin
