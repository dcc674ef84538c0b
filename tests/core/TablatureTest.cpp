#include <gtest/gtest.h>

#include "chords/ChordLine.h"
#include "tablature/InsertTab.h"
#include "tablature/TabOvertype.h"

namespace melvorin {
namespace {

constexpr StringOrder kHigh = StringOrder::HighOnTop;
constexpr StringOrder kLow = StringOrder::LowOnTop;

// The dash counts of a pattern, "17 18 18 17 17"; "?" when it is not made of bars and dashes.
std::string runsOf(const Text& pattern) {
    std::string runs;
    std::size_t at = 0;
    while (at + 1 < pattern.size()) {
        const std::size_t bar = pattern.find(u'|', at + 1);
        if (pattern[at] != u'|' || bar == Text::npos ||
            pattern.substr(at + 1, bar - at - 1).find_first_not_of(u'-') != Text::npos)
            return "?";
        runs += (runs.empty() ? "" : " ") + std::to_string(bar - at - 1);
        at = bar;
    }
    return runs;
}

TEST(Tablature, PatternsByScreenWidthAndDividers) {
    const struct {
        const char16_t* width;  // null: the preview
        std::size_t length;
        const char* runs[5];
    } sets[] = {
        {u"1024", 121, {"119", "60 58", "38 40 39", "29 29 29 29", "23 23 23 23 23"}},
        {u"800", 93, {"91", "45 45", "30 30 29", "22 22 22 22", "17 18 18 17 17"}},
        {u"640", 73, {"71", "35 35", "23 23 23", "17 17 17 17", "14 13 13 13 14"}},
        {nullptr, 56, {"54", "26 27", "17 18 17", "13 13 13 12", "10 10 10 10 10"}},
    };
    for (const auto& set : sets) {
        for (int k = 0; k <= kMostDividers; ++k) {
            const Text pattern =
                set.width != nullptr ? *staffPattern(set.width, k) : previewPattern(k);
            EXPECT_EQ(pattern.size(), set.length);
            EXPECT_EQ(runsOf(pattern), set.runs[k]);
        }
    }
}

TEST(Tablature, WidthsAreComparedAsText) {
    const struct {
        TextView width;
        std::size_t length;  // 0: none
    } cases[] = {{u"1366", 121}, {u"1280", 121}, {u"3840", 121}, {u"900", 121},
                 {u"720", 121},  {u"1025", 121}, {u"1023", 0},   {u"1000", 0},
                 {u"", 0},       {u"102", 0},    {u"10240", 121}};
    for (const auto& example : cases) {
        const auto pattern = staffPattern(example.width, 4);
        EXPECT_EQ(pattern ? pattern->size() : 0, example.length) << toUtf8(example.width);
    }
}

TEST(Tablature, BlocksOfEveryInstrumentAreNoChordLines) {
    const struct {
        int instrument;
        StringOrder order;
        const char* block;
    } cases[] = {
        {0, kHigh,
         "-¬ \r\nE|\r\nB|\r\nG|\r\nD|\r\nA|\r\nE|\r\nGuitar Tablature\r\n================"},
        {0, kLow,
         "-¬ \r\nE|\r\nA|\r\nD|\r\nG|\r\nB|\r\nE|\r\nGuitar Tablature\r\n================"},
        {1, kHigh, "-¬ \r\nG|\r\nD|\r\nA|\r\nE|\r\nBass Tablature\r\n=============="},
        {1, kLow, "-¬ \r\nE|\r\nA|\r\nD|\r\nG|\r\nBass Tablature\r\n=============="},
        {2, kHigh,
         "-¬ \r\nD|\r\nB|\r\nG|\r\nD|\r\nSmall Guitar Tablature\r\n======================"},
        {2, kLow,
         "-¬ \r\nD|\r\nG|\r\nB|\r\nD|\r\nSmall Guitar Tablature\r\n======================"},
    };
    for (const auto& example : cases) {
        const auto form = tabForm(example.instrument, example.order);
        ASSERT_TRUE(form);
        EXPECT_EQ(toUtf8(tabBlock(*form, u"|")), example.block);
        // A key change leaves every line of the block alone.
        const Text block = tabBlock(*form, *staffPattern(u"800", 2));
        for (const TextView line : splitLines(block))
            EXPECT_FALSE(IsChordLine(line)) << toUtf8(line);
    }
    EXPECT_FALSE(tabForm(-1, kHigh) || tabForm(3, kLow));
}

TEST(Tablature, StandsOnLinesOfItsOwn) {
    const struct {
        TextView text;
        std::size_t caret;
        bool breaks;
    } cases[] = {{u"", 0, false},         {u"ab", 0, true},         {u"ab", 1, true},
                 {u"ab", 2, true},        {u"ab\r", 3, false},      {u"ab\r\rcd", 3, false},
                 {u"ab\r\rcd", 4, true},  {u"\rab", 0, false},      {u"ab\v", 3, false},
                 {u"ab\r \rcd", 3, true}, {u"ab\r\v\rc", 3, false}, {u"x\t\r\n\rab", 4, false}};
    TabWriter writer;
    for (const auto& example : cases) {
        const auto text = writer.insertion({0, kHigh, 4}, u"1280", example.text, example.caret);
        ASSERT_TRUE(text);
        EXPECT_EQ(text->starts_with(u"\r\n-¬ \r\nE|"), example.breaks) << toUtf8(example.text);
        EXPECT_EQ(text->starts_with(u"-¬ \r\nE|"), !example.breaks) << toUtf8(example.text);
        EXPECT_EQ(splitLines(*text).size(), example.breaks ? 10U : 9U);
    }
}

// A screen that no pattern is for gets the last one used, or none.
TEST(Tablature, KeepsThePatternInUse) {
    TabWriter writer;
    const auto lengthAt = [&](TextView width, std::optional<StringOrder> order) {
        const auto text = writer.insertion({1, order, 4}, width, u"", 0);
        return text ? static_cast<int>(splitLines(*text)[1].size()) : -1;
    };
    EXPECT_EQ(lengthAt(u"1000", kHigh), 1);
    EXPECT_EQ(lengthAt(u"800", std::nullopt), -1);
    EXPECT_EQ(lengthAt(u"1000", kHigh), 1);
    EXPECT_EQ(lengthAt(u"800", kHigh), 94);
    EXPECT_EQ(lengthAt(u"1000", kLow), 94);
    EXPECT_EQ(lengthAt(u"1920", kLow), 122);
}

// '^' is the caret, or both ends of the selection; '\b' Backspace, '\x7f' Delete, anything else
// typed.
TEST(Tablature, TypingKeepsTheBarsInPlace) {
    const struct {
        const char* before;
        const char16_t* key;
        const char* after;  // "as ever": the control does it
    } rows[] = {
        {"E|--^----|----|", u"5", "E|--5^---|----|"},
        {"E|--^7---|----|", u"5", "E|--5^---|----|"},
        {"E|--^h---|----|", u"5", "E|--5^---|----|"},
        {"E|------^|----|", u"5", "E|------|5^---|"},
        {"^E|------|----|", u"5", "E|5^-----|----|"},
        {"E^|------|----|", u"5", "E|5^-----|----|"},
        {"E|-----^-|----|", u"12", "E|-----1|2^---|"},
        {"E|--^-7--^|----|", u"5", "E|--5^---|----|"},
        {"E|--^7--|3-^--|", u"5", "E|--5^--|----|"},
        {"E|------|---^-|", u"12", "as ever"},
        {"E|------|----|^", u"5", "as ever"},
        {"E|------|----|^ x2", u"5", "as ever"},
        {"E|--^----|", u"5\r6", "as ever"},
        {"E|--^----|", u"\u6b4c", "as ever"},
        {"E|--5^---|", u"\b", "E|--^----|"},
        {"E|---^---|", u"\b", "E|--^----|"},
        {"E|---7|^--|", u"\b", "E|---^-|--|"},
        {"E|^-----|", u"\b", "^E|-----|"},
        {"E^|-----|", u"\b", "^E|-----|"},
        {"E|----7|^", u"\b", "E|----^-|"},
        {"E|--7--| x2^", u"\b", "as ever"},
        {"E|--^5---|", u"\x7f", "E|---^---|"},
        {"E|---^|5-|", u"\x7f", "E|---|-^-|"},
        {"^E|5--|", u"\x7f", "E|-^--|"},
        {"E|---^|", u"\x7f", "E|---|^"},
        {"E|---|^", u"\x7f", "E|---|^"},
        {"E|---|^ x2", u"\x7f", "as ever"},
        {"^E|-5-|7^-|", u"\x7f", "^E|---|--|"},
        {"E|-^5-|7^-| x2", u"\b", "E|-^--|--| x2"},
    };
    for (const auto& row : rows) {
        Text line = fromUtf8(row.before);
        const std::size_t begin = line.find(u'^');
        line.erase(begin, 1);
        std::size_t end = line.find(u'^');
        if (end != Text::npos)
            line.erase(end, 1);
        else
            end = begin;
        const TextView key = row.key;
        const auto change = key == u"\b"     ? erasedInTab(line, begin, end, TabErase::Backspace)
                            : key == u"\x7f" ? erasedInTab(line, begin, end, TabErase::Delete)
                                             : typedOverTab(line, begin, end, key);
        const std::size_t length = line.size();
        Text after = u"as ever";
        if (change) {
            after = line.replace(change->index, change->text.size(), change->text);
            EXPECT_EQ(after.size(), length) << row.before;
            after.insert(change->caret, 1, u'^');
        }
        EXPECT_EQ(toUtf8(after), row.after) << row.before;
    }
}

}  // namespace
}  // namespace melvorin
