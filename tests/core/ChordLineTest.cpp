#include "chords/ChordLine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace melvorin {
namespace {

// The characters in the order in which the notation lists them, duplicates included.
constexpr TextView listedCharacters =
    u" ABCDEFGmb#1345679\u00B0DimSus/+M\u00B0\u00BA"
    u"ad()";

TEST(ChordLine, KnowsExactlyTheListedCharacters) {
    ASSERT_EQ(listedCharacters.size(), 34U);
    for (unsigned code = 0; code <= 0xFFFF; ++code) {
        const auto c = static_cast<char16_t>(code);
        const bool listed = listedCharacters.find(c) != TextView::npos;
        const Text line = Text(u"C") + c;
        ASSERT_EQ(IsChordLine(line), listed) << std::hex << code;
        ASSERT_EQ(CountChordCharacters(line), listed ? 2U : 1U) << std::hex << code;
    }
}

TEST(ChordLine, SeparatesChordsFromLyrics) {
    const struct {
        TextView line;
        bool chords;
    } cases[] = {
        {u"", true},        {u"      ", true},    {u"A", true},
        {u"Bad", true},     {u"Dad", true},       {u"Sam", true},
        {u"Mama", true},    {u"Is a dam", false}, {u"Am7/G", true},
        {u"F#m7(9)", true}, {u"Bb6/9", true},     {u"A2", false},
        {u"C/E-", false},   {u"Cmaj7", false},    {u"Cb Fb E# B#", true},
        {u"am", true},      {u"AM", true},        {u"H7", false},
        {u"E7-9", false},   {u"Dsus2", false},    {u"Gdim  C7M", true},
        {u"C\tG", false},   {u"C\u00A0G", false}, {u"Over the hill and far away", false},
    };
    for (const auto& example : cases) {
        EXPECT_EQ(IsChordLine(example.line), example.chords) << toUtf8(example.line);
    }
}

TEST(ChordLine, FindsTokensFromRightToLeft) {
    const struct {
        TextView line;
        std::vector<ChordToken> tokens;
    } cases[] = {
        {u"", {}},
        {u"    ", {}},
        {u" & ", {}},
        {u"C", {{0, u"C"}}},
        {u"C   Am7/G  ", {{4, u"Am7/G"}, {0, u"C"}}},
        {u"  Gdim C7M", {{7, u"C7M"}, {2, u"Gdim"}}},
        {u"i M", {{2, u"M"}, {0, u"i"}}},
        {u"A&B", {{2, u"B"}, {0, u"A"}}},
        {u"to the end", {{7, u"end"}, {3, u"the"}, {0, u"to"}}},
        {u"C\tG", {{0, u"C\tG"}}},
    };
    std::vector<ChordToken> tokens = {{7, u"left over"}};
    for (const auto& example : cases) {
        ScanTokens(example.line, tokens);
        EXPECT_EQ(tokens, example.tokens) << toUtf8(example.line);
    }
}

}  // namespace
}  // namespace melvorin
