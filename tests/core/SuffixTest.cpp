#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "LiteralRules.h"
#include "LiteralSuffixes.h"
#include "chords/ChordLine.h"
#include "chords/SuffixNormaliser.h"
#include "chords/SuffixRows.h"

namespace melvorin {
namespace {

TEST(Suffixes, OneSpellingForEveryChord) {
    const struct {
        TextView text, result;
    } cases[] = {
        {u"", u""},
        {u"A- F#- Bb-7", u"Am F#m Bbm7"},
        {u"F#-", u"F#m"},
        {u"F#-\r\n", u"F#-\r\n"},  // only a blank ends this one
        {u"Am- A-7 A-7/4 A-6/7", u"Am- Am7 Am4/7 Am6/7"},
        {u"Cb7 Fbm Cbb", u"B7 Em Bb"},
        {u"C7M C7/4 C7/6 C9/6 C9- C9+ C11+", u"C7+ C4/7 C6/7 C6/9 C9b C9# C9#"},
        {u"C5+ C5+/4 C4/5+ C4/5#", u"C5# C5#/4 C5#/4 C5#/4"},
        {u"C/3  Eb/3 G/3", u"C/E  Eb/G G/B"},
        {u"A/A# E6/Eb Fm9/D# A/Db C7/D# G/Bb", u"A/Bb E6/D# Cm9/Eb A/C# C7/Eb G/Bb"},
        {u"Cadd9  G", u"C9     G"},
        {u"C(add9)  G\r\nAmAdd9\r\nG7(ad9)", u"C9       G\r\nAm9   \r\nG7/9   "},
        {u"Cadd9/E", u"Cadd9/E"},  // blanks would part the chord from its bass
        {u"C7/9(add9) G", u"C7/9       G"},
        {u"(C9 ) G", u"(C9)  G"},
        {u"G ( Am ) F", u"G  (Am)  F"},
        {u"Csus ) G", u"Csus)  G"},
        {u"Am/F#   G", u"F#m5b/7 G"},
        {u"Am/F#  G", u"Am/F#  G"},  // no room
        {u"The Cb radio 7M of A-ha", u"The B radio 7+ of Amha"},
        {u"C/E \u00A7 4", u"C/E 4"},  // the marker is never text
        // The blank of the marker goes to the chord; nothing of the marker stays.
        {u"Cm7  G (", u"Cm7  G  ("},
        {u"Am7 ( ", u"Am7  ("},
        {u"Bb (\r\nG (", u"Bb (\r\nG  ("},
        // What the text itself ends with is no marker.
        {u"Cm7  G (\u00A7", u"Cm7  G (\u00A7"},
        {u"G\u00A7", u"G\u00A7"},
        {u"\u00A7", u"\u00A7"},
    };
    for (const auto& example : cases) {
        EXPECT_EQ(normaliseSuffixes(example.text), example.result) << toUtf8(example.text);
        EXPECT_EQ(literal::normaliseSuffixes(Text(example.text)), example.result)
            << toUtf8(example.text);
    }
}

// The rows the program runs are the ones that are written down.
TEST(Suffixes, RowsAreTheLists) {
    std::size_t i = 0;
    literal::forEachSuffixRow([&i](const Text& find, const Text& replacement, bool ours) {
        ASSERT_LT(i, suffixRows().size());
        const SuffixRow& row = suffixRows()[i++];
        EXPECT_EQ(row.find, find);
        EXPECT_EQ(row.replacement, replacement);
        EXPECT_EQ(row.ours, ours);
    });
    EXPECT_EQ(i, suffixRows().size());
}

// Each of our rows does something that no earlier row has done already, and keeps the columns. Of
// the rounds of a repeated row the first one counts.
TEST(Suffixes, NoRowOfOursIsDead) {
    std::set<Text> seen;
    for (const SuffixRow& own : suffixRows()) {
        if (!own.ours)
            continue;
        EXPECT_EQ(own.find.size(), own.replacement.size()) << toUtf8(own.find);
        if (!seen.insert(own.find).second)
            continue;
        Text text = own.find;
        for (const SuffixRow& row : suffixRows()) {
            if (&row == &own)
                break;
            if (row.replacement.find(row.find) == Text::npos)
                literal::replaceAll(text, row.find, row.replacement);
        }
        Text after = text;
        ASSERT_EQ(own.replacement.find(own.find), Text::npos) << toUtf8(own.find);
        literal::replaceAll(after, own.find, own.replacement);
        EXPECT_NE(after, text) << "dead: " << toUtf8(own.find);
    }
}

const std::vector<TextView> kHouse = {
    u"",      u"m",      u"7",    u"m7",   u"7+",   u"m7+",   u"4",     u"4/7",    u"6",
    u"m6",    u"9",      u"m9",   u"7/9",  u"m7/9", u"6/9",   u"m6/9",  u"5#",     u"5b",
    u"m5b/7", u"\u00B0", u"5",    u"7/9b", u"7/9#", u"7/13",  u"11#",   u"7(9)",   u"7+/9",
    u"7/5#",  u"7/5b",   u"m4/7", u"m11",  u"2",    u"7/11#", u"7/13b", u"m7(9)",  u"7/9/13",
    u"9/E",   u"m7/11",  u"5#/4", u"m/7",  u"6/7",  u"7(9b)", u"m5#",   u"7/9/11#"};
const std::vector<TextView> kRoots = {u"A",  u"A#", u"Bb", u"B",  u"C",  u"C#", u"Db", u"D", u"D#",
                                      u"Eb", u"E",  u"F",  u"F#", u"Gb", u"G",  u"G#", u"Ab"};

Text upperCase(Text text) {
    for (char16_t& c : text)
        c = c >= u'a' && c <= u'z' ? static_cast<char16_t>(c - u'a' + u'A') : c;
    return text;
}

TEST(Suffixes, HouseStyleStaysAsItIs) {
    std::vector<Text> chords = {u"C/E",  u"C/G",   u"C/Bb", u"A/C#", u"Am/C",    u"Gm/Bb", u"Bb/D",
                                u"D/F#", u"Cm/Eb", u"G7/B", u"(C9)", u"(Am7 G)", u"Am/F#"};
    for (const TextView root : kRoots) {
        for (const TextView suffix : kHouse)
            chords.push_back(Text(root).append(suffix));
    }
    for (const Text& chord : chords) {
        for (const Text& text : {chord, upperCase(chord), chord + u"  G", u"  " + chord + u"\r\n"})
            EXPECT_EQ(normaliseSuffixes(text), text) << toUtf8(text);
    }
}

// A second run changes nothing more, but for a few spellings where a stored row makes text that
// only a row before it would take.
TEST(Suffixes, RunningTwiceIsRunningOnce) {
    const std::vector<TextView> wild = {
        u"-",       u"7M",    u"maj7",  u"-7",      u"-9",     u"-6",    u"-4",    u"m7b5",
        u"m7-5",    u"7-9",   u"7+9",   u"7+5",     u"5+",     u"9+",    u"11+",   u"13-",
        u"dim",     u"sus4",  u"7sus4", u"add9",    u"(add9)", u"(ad9)", u"Add9",  u"Ad9",
        u"m(add9)", u"9/6",   u"9/7",   u"7/4",     u"7/6",    u"6/7/4", u"7(9-)", u"7(9+)",
        u"4/5+",    u"5+/4",  u"4/5#",  u"7/9/4",   u"9/6/4",  u"7/9-",  u"7/11+", u"-/7",
        u"-7/9",    u"-9/7",  u"-7/4",  u"-6/7",    u"-7/6",   u"-4/7",  u"-(7M)", u"m7M",
        u"-7M",     u"7M(9)", u"6/7M",  u"7(5+)",   u"9-/5+",  u"9+/5+", u"5+/7",  u"(9 )",
        u"m(9 )",   u"/3",    u"7/3",   u"--",      u"-7-",    u"-9-",   u"/A#",   u"m/F#",
        u"m/F#  ",  u"7/Db",  u"6/Eb",  u" ( 9 ) ", u"b/3"};
    for (const TextView root : kRoots) {
        for (const TextView suffix : wild) {
            for (const TextView behind : {u"", u"/Bb", u"  G", u"\r\n", u"/E     G"}) {
                const Text text = Text(root).append(suffix).append(behind);
                const Text once = normaliseSuffixes(text);
                EXPECT_EQ(normaliseSuffixes(once), once) << toUtf8(text);
            }
        }
    }
    for (const TextView suffix :
         {u"7/6/4", u"9/7/6", u"7/4M", u"7/6M", u"7-11+", u"9--", u"9+-", u"5+-", u"11+-"}) {
        const Text once = normaliseSuffixes(u"C" + Text(suffix));
        EXPECT_NE(normaliseSuffixes(once), once) << toUtf8(suffix);
    }
}

// Text in the alphabet of the rows, made of their own strings.
Text randomText(std::mt19937& random) {
    static constexpr TextView odd[] = {u" ", u"  ", u"   ", u"\r\n", u"\n", u"x",      u"/", u"7/",
                                       u"4", u"m",  u"-",   u"(",    u")",  u"\u00A7", u"9", u"5#"};
    Text text;
    for (std::size_t parts = random() % 9; parts > 0; --parts) {
        const SuffixRow& row = suffixRows()[random() % suffixRows().size()];
        switch (random() % 5) {
            case 0:
                text += odd[random() % std::size(odd)];
                break;
            case 1:
                text += row.replacement;
                break;
            case 2:
                text += row.find.substr(random() % row.find.size());
                break;
            case 3:
                text +=
                    Text(kRoots[random() % kRoots.size()]) + Text(kHouse[random() % kHouse.size()]);
                break;
            default:
                text += row.find;
        }
    }
    return text;
}

TEST(Suffixes, AgreeWithTheRowsOneByOne) {
    std::mt19937 random(25);
    for (int i = 0; i < 6000; ++i) {
        const Text text = randomText(random);
        ASSERT_EQ(normaliseSuffixes(text), literal::normaliseSuffixes(text)) << toUtf8(text);
    }
    // Chains of exchanged degrees, long enough to matter.
    for (const TextView alphabet : {u"74/", u"745#/ ", u"96/7"}) {
        for (int i = 0; i < 300; ++i) {
            Text text;
            while (text.size() < 120)
                text += random() % 2 == 0 ? u'/' : alphabet[random() % alphabet.size()];
            ASSERT_EQ(normaliseSuffixes(text), literal::normaliseSuffixes(text)) << toUtf8(text);
        }
    }
}

// What would take hours if a row fed itself step by step, or if a row were tried at every place.
TEST(Suffixes, LongTextsComeBack) {
    constexpr std::size_t size = 1 << 19;
    Text chain;
    while (chain.size() < size)
        chain += u"7/";
    while (chain.size() < 2 * size)
        chain += u"4/";
    chain.pop_back();
    const Text sorted = normaliseSuffixes(chain);
    EXPECT_EQ(sorted.substr(0, 4), u"4/4/");
    EXPECT_EQ(sorted.substr(sorted.size() - 4), u"/7/7");
    for (const TextView part : {u"(", u"C ( ", u" ) G", u"Cb", u"9+ ", u"\u00A7 ", u"A/Bb"}) {
        Text text;
        while (text.size() < size)
            text += part;
        EXPECT_LE(normaliseSuffixes(text).size(), text.size());
    }
}

}  // namespace
}  // namespace melvorin
