#include <gtest/gtest.h>

#include <iterator>
#include <random>
#include <set>
#include <vector>

#include "base/TextCodec.h"
#include "chords/ChordLine.h"
#include "chords/ChordSpelling.h"
#include "chords/InternationalName.h"
#include "chords/SongImport.h"

namespace melvorin {
namespace {

// ---- Tones, told by hand -----------------------------------------------------------------------

// The tones of a chord as half steps above its root.
struct Tones {
    int third = 4;  // 0: there is none
    std::set<int> fifths{7};
    std::set<int> others;
    int bass = -1;  // half steps above C

    std::set<int> all() const {
        std::set<int> tones = others;
        tones.insert(fifths.begin(), fifths.end());
        tones.insert(third);
        tones.insert(0);
        return tones;
    }
    void alterFifth(int fifth) {
        fifths.erase(7);
        fifths.insert(fifth);
    }
};

constexpr int kSame = -1;

// A part of a symbol, and what a musician takes it for. A diminished chord is played with its
// seventh; a fifth that is left out may be played, so "no5" changes nothing.
struct Part {
    TextView text;
    int third;
    int fifth;
    std::vector<int> others;
};

const Part kBases[] = {
    {u"", kSame, kSame, {}},
    {u"m", 3, kSame, {}},
    {u"mi", 3, kSame, {}},
    {u"-", 3, kSame, {}},
    {u"min7", 3, kSame, {10}},
    {u"-7", 3, kSame, {10}},
    {u"7", kSame, kSame, {10}},
    {u"7m", 3, kSame, {10}},
    {u"maj7", kSame, kSame, {11}},
    {u"7M", kSame, kSame, {11}},
    {u"^7", kSame, kSame, {11}},
    {u"MA7", kSame, kSame, {11}},
    {u"7+", kSame, kSame, {11}},
    {u"9M", kSame, kSame, {11, 2}},
    {u"m(maj7)", 3, kSame, {11}},
    {u"maj9", kSame, kSame, {11, 2}},
    {u"6", kSame, kSame, {9}},
    {u"m6", 3, kSame, {9}},
    {u"69", kSame, kSame, {9, 2}},
    {u"9", kSame, kSame, {10, 2}},
    {u"m9", 3, kSame, {10, 2}},
    {u"11", kSame, kSame, {10, 5}},
    {u"m11", 3, kSame, {10, 5}},
    {u"13", kSame, kSame, {10, 9}},
    {u"dim", 3, 6, {9}},
    {u"\u00B0", 3, 6, {9}},
    {u"07", 3, 6, {9}},
    {u"7dim", 3, 6, {9}},
    {u"\u00B0(maj7)", 3, 6, {11}},
    {u"\u00F8", 3, 6, {10}},
    {u"aug", kSame, 8, {}},
    {u"+", kSame, 8, {}},
    {u"+7", kSame, 8, {10}},
    {u"5+7", kSame, 8, {10}},
    {u"5", 0, kSame, {}},
    {u"sus2", 0, kSame, {2}},
    {u"sus4", 0, kSame, {5}},
    {u"7sus4", 0, kSame, {10, 5}},
    {u"9sus4", 0, kSame, {10, 2, 5}},
};
const Part kExtras[] = {
    {u"(b5)", kSame, 6, {}},          {u"(#5)", kSame, 8, {}},       {u"(5-)", kSame, 6, {}},
    {u"(-5)", kSame, 6, {}},          {u"(5+)", kSame, 8, {}},       {u"(b9)", kSame, kSame, {1}},
    {u"(add #9)", kSame, kSame, {3}}, {u"(9-)", kSame, kSame, {1}},  {u"(#9)", kSame, kSame, {3}},
    {u"(9)", kSame, kSame, {2}},      {u"/9", kSame, kSame, {2}},    {u"add9", kSame, kSame, {2}},
    {u"(add11)", kSame, kSame, {5}},  {u"(#11)", kSame, kSame, {6}}, {u"(11+)", kSame, kSame, {6}},
    {u"(b13)", kSame, kSame, {8}},    {u"(13)", kSame, kSame, {9}},  {u"sus4", 0, kSame, {5}},
    {u"sus2", 0, kSame, {2}},         {u"(no5)", kSame, kSame, {}},  {u"omit3", 0, kSame, {}},
};

struct Name {
    TextView text;
    int steps;
};
constexpr Name kNames[] = {{u"C", 0}, {u"F#", 6}, {u"Bb", 10}, {u"Eb", 3},      {u"D\u266D", 1},
                           {u"A", 9}, {u"F", 5},  {u"B", 11},  {u"G\u266F", 8}, {u"E", 4}};
constexpr Name kGermanNames[] = {{u"H", 11}, {u"B", 10}, {u"Fis", 6}, {u"As", 8}, {u"Es", 3},
                                 {u"C", 0},  {u"A", 9},  {u"Cis", 1}, {u"F#", 6}, {u"Des", 1}};

void apply(const Part& part, Tones& tones) {
    if (part.third != kSame)
        tones.third = part.third;
    if (part.fifth != kSame)
        tones.alterFifth(part.fifth);
    tones.others.insert(part.others.begin(), part.others.end());
}

// ---- The house's spelling, read by its rules
// ------------------------------------------------------

int takeName(TextView& text) {
    constexpr int naturals[] = {9, 11, 0, 2, 4, 5, 7};
    int steps = naturals[text[0] - u'A'];
    text.remove_prefix(1);
    if (!text.empty() && (text[0] == u'#' || text[0] == u'b')) {
        steps += text[0] == u'#' ? 1 : 11;
        text.remove_prefix(1);
    }
    return steps % 12;
}

void readDegree(TextView degree, bool isMinor, bool isFirst, Tones& tones) {
    const struct {
        TextView degree;
        int tone;
    } added[] = {{u"4", 5},  {u"6", 9},  {u"6b", 8}, {u"7", 10},  {u"7+", 11}, {u"9", 2},
                 {u"9b", 1}, {u"9#", 3}, {u"11", 5}, {u"11#", 6}, {u"13", 9},  {u"13b", 8}};
    if (degree == u"5" || degree == u"5b" || degree == u"5#") {
        if (degree.size() > 1)
            tones.alterFifth(degree == u"5b" ? 6 : 8);
        else if (isFirst && !isMinor)
            tones.third = 0;
        else
            ADD_FAILURE() << "a fifth that says nothing";
        return;
    }
    for (const auto& known : added) {
        if (degree != known.degree)
            continue;
        tones.others.insert(known.tone);
        tones.third = degree == u"4" ? 0 : tones.third;
        return;
    }
    ADD_FAILURE() << "no degree: " << toUtf8(degree);
}

// `root` receives the half steps above C.
Tones tonesOfHouse(TextView chord, int& root) {
    Tones tones;
    root = takeName(chord);
    const bool isMinor = chord.starts_with(u'm');
    const bool isDiminished = chord.starts_with(u'\u00B0');
    if (isMinor || isDiminished) {
        tones.third = 3;
        chord.remove_prefix(1);
    }
    if (isDiminished) {
        tones.alterFifth(6);
        if (!chord.starts_with(u"7+"))
            tones.others.insert(9);
    }
    for (bool isFirst = true; !chord.empty(); isFirst = false) {
        if (chord[0] == u'/')
            chord.remove_prefix(1);
        if (chord[0] >= u'A' && chord[0] <= u'G') {
            tones.bass = takeName(chord);
            EXPECT_TRUE(chord.empty());
            break;
        }
        const TextView degree = chord.substr(0, chord.find(u'/'));
        readDegree(degree, isMinor, isFirst, tones);
        chord.remove_prefix(degree.size());
    }
    return tones;
}

// As other programs read it, with a seventh in a plain ninth, it has the same tones.
void expectSameElsewhere(const Text& house) {
    const Text elsewhere = internationalName(house);
    const auto back = houseSpelling(elsewhere, {Naming::Letters, false, true});
    // Too long to be taken for a chord, or with a fourth beside a raised one.
    if (elsewhere.size() > 24 || elsewhere.find(u"add4") != Text::npos)
        return;
    ASSERT_TRUE(back) << toUtf8(house) << " " << toUtf8(elsewhere);
    int root = 0;
    int rootBack = 0;
    Tones tones = tonesOfHouse(house, root);
    // "Cm4" is another name of Cm11 in the chord book.
    if (tones.third == 0 && (house.find(u'm') != Text::npos || house.find(u'\u00B0') != Text::npos))
        tones.third = 3;
    const Tones tonesBack = tonesOfHouse(*back, rootBack);
    ASSERT_EQ(rootBack, root) << toUtf8(house) << " " << toUtf8(elsewhere);
    ASSERT_EQ(tonesBack.bass, tones.bass) << toUtf8(house) << " " << toUtf8(elsewhere);
    ASSERT_EQ(tonesBack.all(), tones.all()) << toUtf8(house) << " " << toUtf8(elsewhere);
}

// ---- Every symbol that is taken ----------------------------------------------------------------

using Random = std::mt19937;

template <class Items>
const auto& oneOf(const Items& items, Random& random) {
    return items[random() % std::size(items)];
}

TEST(ChordTones, AreKeptByEverySymbolThatIsTaken) {
    Random random(22);
    int taken = 0;
    constexpr int count = 60000;
    for (int i = 0; i < count; ++i) {
        const bool isGerman = i % 3 == 0;
        const auto& names = isGerman ? kGermanNames : kNames;
        const Name& root = oneOf(names, random);
        Text symbol(root.text);
        Tones expected;
        const Part& base = oneOf(kBases, random);
        symbol += base.text;
        apply(base, expected);
        for (std::size_t extras = random() % 3; extras > 0; --extras) {
            const Part& extra = oneOf(kExtras, random);
            symbol += extra.text;
            apply(extra, expected);
        }
        if (random() % 4 == 0) {
            const Name& bass = oneOf(names, random);
            symbol.append(u"/").append(bass.text);
            expected.bass = bass.steps;
        }
        const ChordReading reading{isGerman ? Naming::German : Naming::Letters, false, true};
        const auto house = houseSpelling(symbol, reading);
        if (!house)
            continue;
        ++taken;
        int steps = 0;
        const Tones found = tonesOfHouse(*house, steps);
        ASSERT_TRUE(IsChordLine(*house)) << toUtf8(symbol) << " " << toUtf8(*house);
        ASSERT_EQ(steps, root.steps) << toUtf8(symbol) << " " << toUtf8(*house);
        ASSERT_EQ(found.bass, expected.bass) << toUtf8(symbol) << " " << toUtf8(*house);
        ASSERT_EQ(found.all(), expected.all()) << toUtf8(symbol) << " " << toUtf8(*house);
        expectSameElsewhere(*house);
    }
    // Many of the invented ones contradict themselves: "dim(#5)", "sus2sus2".
    EXPECT_GT(taken, count / 2);
}

// Whatever is typed: what is taken is a chord of the house that is its own spelling.
TEST(ChordTones, AnySymbolIsTakenWholeOrNotAtAll) {
    Random random(7);
    static constexpr TextView parts[] = {u"m", u"M", u"maj", u"7", u"9", u"11",  u"13", u"5",
                                         u"4", u"2", u"6",   u"+", u"-", u"b",   u"#",  u"/",
                                         u"(", u")", u"sus", u"o", u"0", u"add", u"no", u"dim",
                                         u"G", u"s", u"is",  u"^", u"H", u",",   u"3",  u"\u00F8"};
    int taken = 0;
    for (int i = 0; i < 60000; ++i) {
        Text symbol(1, static_cast<char16_t>(u'A' + random() % 8));
        for (std::size_t count = random() % 5; count > 0; --count)
            symbol += oneOf(parts, random);
        const auto house = houseSpelling(symbol);
        if (!house)
            continue;
        ++taken;
        ASSERT_TRUE(IsChordLine(*house)) << toUtf8(symbol);
        ASSERT_EQ(house->find(u'?'), Text::npos) << toUtf8(symbol);
        ASSERT_EQ(houseSpelling(*house), house) << toUtf8(symbol);
        ASSERT_TRUE(houseSpelling(internationalName(*house))) << toUtf8(*house);
    }
    EXPECT_GT(taken, 1000);
}

TEST(InternationalName, IsTheOneThatBooksHave) {
    const struct {
        TextView house, elsewhere;
    } cases[] = {
        {u"F7+", u"Fmaj7"},       {u"C4/7", u"C7sus4"},   {u"Em7/9", u"Em9"},
        {u"C9", u"Cadd9"},        {u"C\u00B0", u"Cdim7"}, {u"C5/9", u"Csus2"},
        {u"Cm5b/7", u"Cm7b5"},    {u"C5#", u"Caug"},      {u"C7/5#", u"C7#5"},
        {u"C7/9b", u"C7b9"},      {u"Am7+", u"Am(maj7)"}, {u"D/F#", u"D/F#"},
        {u"C6/9", u"C69"},        {u"C5", u"C5"},         {u"C4", u"Csus4"},
        {u"Bb4/7/9", u"Bb9sus4"}, {u"(Am7", u"(Am7"},     {u"N.C.", u"N.C."},
        {u"C5b", u"C(b5)"},       {u"Cm9", u"Cmadd9"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(toUtf8(internationalName(c.house)), toUtf8(c.elsewhere));
    EXPECT_EQ(toUtf8(internationalName(u"Em7/9", false)), "Em7(9)");
    EXPECT_EQ(toUtf8(internationalName(u"Bb4/7/9", false)), "Bb7sus4(9)");
    EXPECT_EQ(toUtf8(internationalName(u"C7+/9", false)), "Cmaj9");
}

// ---- What a song means --------------------------------------------------------------------------

TEST(SongNotation, IsToldByTheSong) {
    const ImportOptions flat{PlainB::IsFlat, PlainNinth::Auto, false};
    const ImportOptions natural{PlainB::IsNatural, PlainNinth::Auto, false};
    const ImportOptions sevenths{PlainB::Auto, PlainNinth::HasSeventh, false};
    const ImportOptions added{PlainB::Auto, PlainNinth::IsAdded, false};
    const struct {
        const char* name;
        TextView song, chart;
        ImportOptions options = {};
    } cases[] = {
        {"no sign", u"B   E\nla la\n", u"B   E\nla la\n"},
        {"H", u"H   B/H   Em\nla la\n", u"B   Bb/B  Em\nla la\n"},
        {"H elsewhere", u"B   F\nla\n\n[Em]la [H7]la\n", u"Bb  F\nla\n\nEm B7\nla la\n"},
        {"endings", u"B   Es   As\n", u"Bb  Eb   Ab\n"},
        {"a word with H", u"B  F   G   Hold\n", u"           Hold\nB  F   G\n"},
        {"a label with H", u"Hook: B  F\n", u"Hook:\n      B  F\n"},
        {"chosen flat", u"B   F\n", u"Bb  F\n", flat},
        {"chosen natural", u"B   H\n", u"B   B\n", natural},
        {"American", u"A9   Dmaj7   C11/G  Cm9\n", u"A7/9 D7+     C7/11/G Cm7/9\n"},
        {"American, added", u"Cadd9  C9  C(9)  C69\n", u"C9     C7/9 C9   C6/9\n"},
        {"of the house", u"A9   D7M   C11/G  Cm9\n", u"A9   D7+   C11/G  Cm9\n"},
        {"fourths", u"A9   D4   G7/4\n", u"A9   D4   G4/7\n"},
        {"no notation", u"A9   D   G\n", u"A9   D   G\n"},
        {"both", u"A9   D7M   Dmaj7\n", u"A9   D7+   D7+\n"},
        {"chosen sevenths", u"A9   D7M\n", u"A7/9 D7+\n", sevenths},
        {"chosen added", u"A9   Dmaj7\n", u"A9   D7+\n", added},
        {"small minors", u"a   d7   G   e/h\nla la\na  e\n", u"Am  Dm7  G   Em/B\nla la\nAm Em\n"},
        {"small brackets", u"[a]la [F]la [d]la [G7]la\n", u"Am F  Dm G7\nla la la la\n"},
        {"capital minors", u"a   d   G\nAm   C\n", u"a   d   G\nAm   C\n"},
        {"a single small one", u"a  G\nla la\n", u"a  G\nla la\n"},
        {"words of small letters", u"C  G\na bad cafe\na e\n", u"C  G\na bad cafe\na e\n"},
        {"lone among chords", u"Emi  C\nla la\nAmi\nla la\n", u"Em   C\nla la\nAm\nla la\n"},
        {"ninths beside m7b5", u"Bm7b5  C9\nla     la\n", u"Bm5b/7 C7/9\nla     la\n"},
        {"ninths beside (maj7)", u"Am(maj7)  C9\nla  la\n", u"Am7+      C7/9\nla  la\n"},
        {"ninths beside aug", u"Caug  C9\nla  la\n", u"C5#   C7/9\nla  la\n"},
        {"ninths beside 69", u"C69  D9\nla  la\n", u"C6/9 D7/9\nla  la\n"},
        {"ninths alone", u"Em7(9)  C9\nla  la\n", u"Em7/9   C9\nla  la\n"},
        {"lone below chords", u"G  C\nGo\nD  G\nla\n", u"G  C\nGo\nD  G\nla\n"},
        {"lone far off", u"Emi  C\nla\nla\nla\nAmi\nla\nla\n",
         u"Em   C\nla\nla\nla\nAmi\nla\nla\n"},
        {"ring among chords", u"Am  Ao  E7\n", u"Am  A\u00B0  E7\n"},
        {"words like chords", u"Go A\nDo Em\nAo Es\nAma\nEmma\nHm\n",
         u"Go A\nDo Em\nAo Es\nAma\nEmma\nHm\n"},
        {"marks", u"G!  Em*  C'  D,  (F)\n", u" !    *\nG   Em   C   D   (F)\n"},
        {"beats", u"G7/  Am//  D\\\n", u"G7/  Am//  D/\n"},
        {"times", u"Am  Gx2  C\n", u"     x2\nAm  G    C\n"},
        {"pairs", u"F/Gm  E(C#mi)  A/A7\n", u"F/Gm  E(C#m)   A/A7\n"},
        {"letters", u"A/Cb/E\n", u"A/Cb/E\n"},
        {"a blank within", u"C(add G#)  F  G\n", u"C13b       F  G\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(toUtf8(importSong(c.song, {}, c.options).chart()), toUtf8(c.chart));
    }
    EXPECT_TRUE(importSong(u"H  B  Bb").notation.isOpen);
    EXPECT_FALSE(importSong(u"H  B  E").notation.isOpen);
}

}  // namespace
}  // namespace melvorin
