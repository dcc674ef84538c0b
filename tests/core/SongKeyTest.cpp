#include "chords/SongKey.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "chords/Chart.h"
#include "chords/KeyReading.h"

namespace melvorin {
namespace {

TEST(SongKey, IsFoundInSongsAsTheyAreWritten) {
    const struct {
        TextView song, words;
    } cases[] = {
        // Over words.
        {u"G          C    G\nAmazing grace, how sweet\nG             D7\nThe sound\nG   C  D7  "
         u"G\n",
         u"G"},
        {u"Am    C     D     F\nThere is a house\nAm  E   Am\nDown in\n", u"Am"},
        // In brackets, with labels.
        {u"{title: Old}\nVerse 1:\n[F]Old folks at [Bb]home\n[F]far a[C7]way\n[Bb]Home "
         u"[C7]a[F]gain\n",
         u"F"},
        // Bars, and notations that no line of chords has.
        {u"| Cm7  F7 | Bbmaj7 Gm7 | Cm7 F7 | Bbmaj7 |\n| Ebmaj7 Edim | Bb/F G7alt | C-7 F7 | Bb6 "
         u"|\n",
         u"Bb"},
        {u"Intro: E  B7  E\n\nE       A\nla la\nB7      E\nla\n", u"E"},
        // H is the note above B.
        {u"Hm  Em  F#7  Hm\nla la la\nG   A   D    F#7  Hm\nla la\n", u"Bm"},
        {u"F   B   C7   F\nla\nDm  Gm  C7  F\nHdim  C7  F\n", u"F"},
        // The blues has a seventh on its tonic.
        {u"A7  D7  A7  A7\nD7  D7  A7  A7\nE7  D7  A7  E7\n", u"A"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(toUtf8(keyInWords(findKey(c.song))), toUtf8(c.words)) << toUtf8(c.song);
}

TEST(SongKey, IsNotSureWhereNobodyCouldBe) {
    const struct {
        TextView song, words;
    } cases[] = {
        {u"", u"?"},
        {u"\n\n  \n", u"?"},
        {u"Words alone\nand no chords\n", u"?"},
        {u"C\nla la\nC\n", u"C or F?"},
        {u"Em7\n", u"Em or Am?"},
        {u"Key: silly\nla\n", u"?"},
    };
    for (const auto& c : cases) {
        const FoundKey found = findKey(c.song);
        EXPECT_EQ(toUtf8(keyInWords(found)), toUtf8(c.words)) << toUtf8(c.song);
        EXPECT_FALSE(found.key || found.percent != 0);
    }
    // Every note as good as the next, and three keys one after the other.
    for (const TextView song :
         {TextView(u"C C# D D# E F F# G G# A A# B\n"), TextView(u"C°  Eb°  F#°  A°\n"),
          TextView(u"C Am F G C Am F G C\n\nEb Cm Ab Bb Eb Cm Ab Bb Eb\n\nF# D#m B C# F# D#m B C# "
                   u"F#")}) {
        const FoundKey found = findKey(song);
        EXPECT_FALSE(found.key) << toUtf8(song);
        EXPECT_TRUE(found.first && found.second && *found.first != *found.second);
        EXPECT_EQ(keyInWords(found).back(), u'?');
    }
}

TEST(SongKey, ChangesWhereTheSongDoes) {
    const FoundKey found = findKey(
        u"C  F  G7  C\nla la\nAm  Dm  G7  C\nla la\nF  G7  C\n\nD  G  A7  D\nla la\nBm  Em  A7  D\n"
        u"la la\nG  A7  D\n");
    ASSERT_TRUE(found.key);
    EXPECT_EQ(keyName(*found.key), u"C");
    const std::vector<KeyStretch> expected{{6, {2, false}}};
    EXPECT_EQ(found.changes, expected);
    EXPECT_TRUE(findKey(u"C  F  G7  C\nAm  Dm  G7  C\nD7  G7  C\n").changes.empty());
}

TEST(SongKey, StatedKeysAreReadAndBelieved) {
    const struct {
        TextView line, name;
        std::size_t column, length;
    } lines[] = {
        {u"Key: G", u"G", 5, 1},
        {u"Tom: F#m", u"F#m", 5, 2},
        {u"{key: Bbm}", u"Bbm", 6, 2},
        {u"[Key = A minor]", u"Am", 7, 1},
        {u"Tonart: Es", u"", 0, 0},
        {u"Tonart: Es-Dur", u"Eb", 8, 2},
        {u"Tonart: fis-moll", u"F#m", 8, 3},
        {u"Tonart: B-Dur", u"Bb", 8, 1},
        {u"Tonart: H moll", u"Bm", 8, 1},
        {u"Original Key:  Eb major  (live)", u"Eb", 15, 2},
        {u"Key: C  Capo: 3", u"C", 5, 1},
        {u"Key: of my heart", u"", 0, 0},
        {u"Key:", u"", 0, 0},
        {u"Keys: G", u"", 0, 0},
        {u"Capo: 3", u"", 0, 0},
        {u"Key: G2", u"", 0, 0},
    };
    for (const auto& c : lines) {
        const auto stated = readStatedKey(c.line);
        EXPECT_EQ(toUtf8(stated ? keyName(stated->key) : Text()), toUtf8(c.name));
        if (stated) {
            EXPECT_EQ(stated->column, c.column);
            EXPECT_EQ(stated->length, c.length);
        }
    }
    const struct {
        TextView song, words;
        bool isStated;
    } songs[] = {
        {u"Key: Am\n[C]la [G]la [Am]la [F]la [C]la\n", u"Am", true},
        {u"Tom: D\nla la\n", u"D", true},
        {u"Key: G\nC#  F#  G#7  C#\nla\nA#m  F#  G#7  C#\n", u"Db", false},
        {u"Key: nonsense\nC  F  G7  C\nla\nAm  F  G7  C\n", u"C", false},
    };
    for (const auto& c : songs) {
        const FoundKey found = findKey(c.song);
        EXPECT_EQ(toUtf8(keyInWords(found)), toUtf8(c.words));
        EXPECT_EQ(found.isStated, c.isStated);
        EXPECT_TRUE(!c.isStated || found.percent == 100);
    }
}

TEST(SongKey, ChordsAreReadWithWhatTheyStandFor) {
    const struct {
        TextView song;
        std::string chords;  // root, time in twelfths of a bar, line, "*" where a section begins
    } cases[] = {
        {u"| C  G7 | F |\nla la\n\n|| A7 ||\n", "0/6@0* 7/6@0 5/12@0 9/12@3*"},
        {u"C  G/B  (F)\nla\n[Verse 2]\nAm7, D\n", "0/12@0* 7/12@0 5/12@0 9/12@3* 2/12@3"},
        {u"Intro: C | G F D | C\n[Em]la [B7]la [x2]\n",
         "0/12@0* 7/4@0 5/4@0 2/4@0 0/12@0 4/12@1 11/12@1"},
        {u"Hm  B  B7  E\n", "11/12@0* 10/12@0 10/12@0 4/12@0"},
        {u"Bm  B  B7  E\n", "11/12@0* 11/12@0 11/12@0 4/12@0"},
        {u"A day in May\nBad dad\ne|--3--5--|\n{c: G}\n", ""},
    };
    for (const auto& c : cases) {
        std::string chords;
        for (const KeyChord& chord : readSongChords(c.song).chords) {
            chords += (chords.empty() ? "" : " ") + std::to_string(chord.root) + "/" +
                      std::to_string(static_cast<int>(chord.time * 12 + 0.5)) + "@" +
                      std::to_string(chord.line) + (chord.startsSection ? "*" : "");
        }
        EXPECT_EQ(chords, c.chords) << toUtf8(c.song);
    }
}

TEST(SongKey, SuffixesTellTheQuality) {
    const struct {
        ChordQuality quality;
        std::vector<TextView> suffixes;
    } cases[] = {
        {ChordQuality::Major, {u"", u"6", u"add9", u"/E", u"5", u"maj", u"(add9)"}},
        {ChordQuality::MajorSeventh, {u"maj7", u"M7", u"7M", u"7+", u"\u0394", u"maj9/E"}},
        {ChordQuality::Minor,
         {u"m", u"m7", u"-7", u"min", u"mM7", u"m6", u"madd9", u"mmaj7", u"m/C"}},
        {ChordQuality::Dominant, {u"7", u"9", u"13", u"7b9", u"6/7", u"7/5#", u"7alt", u"7/C#"}},
        {ChordQuality::HalfDiminished, {u"m7b5", u"m5b/7", u"\u00F8", u"m7(b5)", u"-7b5"}},
        {ChordQuality::Diminished, {u"\u00B0", u"dim7", u"o7", u"\u00BA"}},
        {ChordQuality::Other, {u"sus4", u"7sus4", u"4", u"4/7", u"aug", u"+", u"5#"}},
    };
    for (const auto& c : cases) {
        for (const TextView suffix : c.suffixes)
            EXPECT_EQ(qualityOf(suffix), c.quality) << toUtf8(suffix);
    }
    EXPECT_EQ(qualityOf(u"7+", false), ChordQuality::Dominant);
}

TEST(SongKey, NamesHaveFewAccidentals) {
    const struct {
        Key key;
        TextView sharps, flats;
    } cases[] = {
        {{1, false}, u"Db", u"Db"},  {{3, false}, u"Eb", u"Eb"},  {{6, false}, u"F#", u"Gb"},
        {{8, false}, u"Ab", u"Ab"},  {{11, false}, u"B", u"B"},   {{1, true}, u"C#m", u"C#m"},
        {{3, true}, u"D#m", u"Ebm"}, {{8, true}, u"G#m", u"G#m"}, {{10, true}, u"Bbm", u"Bbm"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(toUtf8(keyName(c.key, Spelling::Sharps)), toUtf8(c.sharps));
        EXPECT_EQ(toUtf8(keyName(c.key, Spelling::Flats)), toUtf8(c.flats));
    }
}

// A song in another key has the key, the doubts and the changes of the first one, moved.
TEST(SongKeyProperty, MovesWithTheSong) {
    std::mt19937 random(4711);
    const auto below = [&](unsigned count) { return static_cast<std::size_t>(random() % count); };
    constexpr TextView roots[] = {u"C",  u"Db", u"D",  u"Eb", u"E",  u"F",
                                  u"F#", u"G",  u"Ab", u"A",  u"Bb", u"B"};
    constexpr TextView suffixes[] = {u"", u"", u"m", u"m", u"7", u"7+", u"m5b/7", u"\u00B0", u"4"};
    for (int round = 0; round < 300; ++round) {
        Text song;
        // Some songs stay near a key, others go anywhere.
        const std::size_t few = 2 + below(11);
        for (std::size_t i = 1 + below(40); i-- > 0;) {
            song.append(roots[below(static_cast<unsigned>(few)) * 7 % 12])
                .append(suffixes[below(9)])
                .append(below(4) == 0 ? u"\n" : u"  ")
                .append(below(12) == 0 ? u"\n" : u"");
        }
        const FoundKey before = findKey(song);
        const unsigned steps = 1 + static_cast<unsigned>(below(11));
        const FoundKey after =
            findKey(transposeChart(song, KeyChange(Direction::Up, Spelling::Sharps, steps)));
        const int up = static_cast<int>(steps);
        EXPECT_EQ(after.percent, before.percent) << toUtf8(song);
        EXPECT_EQ(after.key.has_value(), before.key.has_value());
        EXPECT_EQ(*after.first, movedKey(*before.first, up)) << toUtf8(song);
        EXPECT_EQ(*after.second, movedKey(*before.second, up)) << toUtf8(song);
        ASSERT_EQ(after.changes.size(), before.changes.size());
        for (std::size_t i = 0; i < before.changes.size(); ++i) {
            EXPECT_EQ(after.changes[i].line, before.changes[i].line);
            EXPECT_EQ(after.changes[i].key, movedKey(before.changes[i].key, up));
        }
    }
}

}  // namespace
}  // namespace melvorin
