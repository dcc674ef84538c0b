#include "chords/KeySpelling.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "chords/KeyReading.h"

namespace melvorin {
namespace {

// As a key change from a stated key does it, without the line that states it.
std::string followed(TextView key, TextView line, int steps, Spelling side = Spelling::Sharps) {
    FoundKey found;
    found.key = found.first = readKey(key);
    return toUtf8(followKey(line, found, steps, side));
}

TEST(KeySpelling, RespellsByTheScaleAndByFunction) {
    const struct {
        TextView key, before;
        std::string after;
    } cases[] = {
        // The scale, in keys of either side.
        {u"Eb", u"D# G# A#7 Cm", "Eb Ab Bb7 Cm"},
        {u"Cm", u"Cm D#  G# A#7", "Cm Eb  Ab Bb7"},
        {u"E", u"E Gbm Abm A B7 Dbm", "E F#m G#m A B7 C#m"},
        {u"Bbm", u"A#m D#m F7 Gb", "Bbm Ebm F7 Gb"},
        // Secondary dominants, their preparation, and leading-tone chords.
        {u"C", u"D7 G Gbm5b/7 B7 Em", "D7 G F#m5b/7 B7 Em"},
        {u"C", u"Db° Dm Ab° Am Gb° G", "C#° Dm G#° Am F#° G"},
        {u"C", u"Ebm Ab7 Dbm Gb7 B", "D#m G#7 C#m F#7 B"},
        {u"C", u"Eb° Em Eb° Dm", "D#° Em Eb° Dm"},
        // Borrowed chords, bII, and tritone substitutes.
        {u"C", u"A# C D# F G#7+ C C#7+ C", "Bb C Eb F Ab7+ C Db7+ C"},
        {u"C", u"Dm C#7 C G#7 G D#7 Dm F#7 F", "Dm Db7 C Ab7 G Eb7 Dm Gb7 F"},
        {u"A", u"G D F E A#7+ A", "G D F E Bb7+ A"},
        {u"Am", u"Am Ab° Am A#7+ E7 Gbm5b/7 F", "Am G#° Am Bb7+ E7 F#m5b/7 F"},
        // A bass is called as its chord calls it.
        {u"C", u"E/Ab Am/Ab D7/Gb C/A# A/Db C°/F#", "E/G# Am/G# D7/F# C/Bb A/C# C°/Gb"},
        {u"G", u"A7/Db D/Gb", "A7/C# D/F#"},
        // Plain names, and what is no accidental of a note.
        {u"Gb", u"Cb Ebm Fb7+ Cb5", "B  Ebm E7+  Cb5"},
        {u"C", u"B# E#m", "C  Fm"},
        {u"C", u"G7b5 Bb5 Gb5", "G7b5 Bb5 Gb5"},
        {u"C", u"", ""},
        {u"C", u"   ", "   "},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(followed(c.key, c.before, 0, Spelling::Flats), c.after) << toUtf8(c.before);
    }
}

TEST(KeySpelling, MovesBySteps) {
    const struct {
        TextView key, before;
        int steps;
        Spelling side;
        std::string after;
    } cases[] = {
        {u"C", u"C   Am  F7+ G/B", 1, Spelling::Sharps, "Db  Bbm Gb7+ Ab/C"},
        {u"C", u"C  G  Am F", 4, Spelling::Sharps, "E  B  C#m A"},
        {u"C", u"C  G  Am F", -1, Spelling::Flats, "B  F# G#m E"},
        {u"G", u"G  D  Em C", -1, Spelling::Sharps, "F# C# D#m B"},
        {u"G", u"G  D  Em C", -1, Spelling::Flats, "Gb Db Ebm B"},
        {u"Am", u"Am E7 Dm G#°", 3, Spelling::Sharps, "Cm G7 Fm B°"},
        {u"Am", u"Am F", 6, Spelling::Flats, "Ebm B"},
        {u"Gb", u"E# Bbm B Db", 0, Spelling::Sharps, "F  A#m B C#"},
        // A careful author's choice goes along, another's does not.
        {u"C", u"C  Bb C#7 C F#m5b/7", 2, Spelling::Sharps, "D  C  D#7 D G#m5b/7"},
        {u"C", u"C  A# C#7 C F#m5b/7", 2, Spelling::Sharps, "D  C  Eb7 D G#m5b/7"},
        {u"F", u"F  A# C7", 2, Spelling::Sharps, "G  C  D7"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(followed(c.key, c.before, c.steps, c.side), c.after) << toUtf8(c.before);
}

TEST(KeySpelling, LinesThatAreNoChordsStay) {
    const Text song = u"Key: Eb\r\nD#   A#7\r\nA# and G# are words here\rCmaj7 D#\n\nD#";
    EXPECT_EQ(toUtf8(followKey(song, findKey(song), 0, sideOf(song))),
              "Key: Eb\r\nEb   Bb7\r\nA# and G# are words here\rCmaj7 D#\n\nEb");
    EXPECT_EQ(toUtf8(followKey(song, findKey(song), 2, sideOf(song), true)),
              "Key: F\r\nF    C7\r\nA# and G# are words here\rCmaj7 D#\n\nF");
    const Text minor = u"{key: Dm}\nDm A7 Dm\n";
    EXPECT_EQ(toUtf8(followKey(minor, findKey(minor), 1, Spelling::Flats, true)),
              "{key: Ebm}\nEbm Bb7 Ebm\n");
}

TEST(KeySpelling, WithoutAKeyAllAccidentalsAreOfOneKind) {
    FoundKey found;
    found.first = Key{10, false};
    found.second = Key{3, false};
    EXPECT_EQ(toUtf8(followKey(u"A# F#° D#\n", found, 0, Spelling::Sharps)), "Bb Gb° Eb\n");
    EXPECT_EQ(toUtf8(followKey(u"Bb F#° Eb\n", found, 6, Spelling::Sharps)), "E  C°  A\n");
    EXPECT_EQ(toUtf8(followKey(u"C\nC\n", findKey(u"C\nC\n"), 1, Spelling::Sharps)), "Db\nDb\n");
    EXPECT_EQ(toUtf8(followKey(u"words\n", FoundKey(), 1, Spelling::Sharps)), "words\n");
}

TEST(KeySpelling, PicturesStay) {
    FoundKey found;
    found.key = found.first = Key{3, false};
    // The second "A#" is a picture and a sharp behind it.
    const std::vector<ColumnRange> fixed{{4, 1}};
    const SpelledLine song[] = {{u"A#  A#D# ", fixed}};
    const MovedLine moved = KeyRespelling(song, found, 0, Spelling::Flats).moveLine(0);
    EXPECT_EQ(toUtf8(moved.line), "Bb  A#Eb ");
    const std::vector<MovedRange> edits{{{0, 2}, {0, 2}}, {{6, 2}, {6, 2}}};
    EXPECT_EQ(moved.edits, edits);
}

TEST(KeySpelling, DegreesHaveNames) {
    const struct {
        TextView key;
        int fifths;
        TextView name;
    } cases[] = {
        {u"C", 0, u"I"},     {u"C", -4, u"bVI"},  {u"C", 6, u"#IV"}, {u"C", -5, u"bII"},
        {u"C", 5, u"VII"},   {u"C", -2, u"bVII"}, {u"Am", 3, u"I"},  {u"Am", -1, u"VI"},
        {u"Am", 8, u"#VII"}, {u"Am", -2, u"bII"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(toUtf8(degreeName(*readKey(c.key), c.fifths)), toUtf8(c.name));
}

// A song that respelling leaves as it is comes back from any way up and down; on the way every note
// has the pitch that it should have, and a name that is one.
TEST(KeySpellingProperty, ComesBackFromAnyWay) {
    std::mt19937 random(815);
    const auto below = [&](unsigned count) { return static_cast<std::size_t>(random() % count); };
    constexpr TextView suffixes[] = {u"", u"", u"m", u"7", u"m7", u"7+", u"m5b/7", u"\u00B0", u"4"};
    int sure = 0;
    for (int round = 0; round < 300; ++round) {
        Text song = below(3) == 0
                        ? Text(u"Key: ")
                              .append(keyName({static_cast<int>(below(12)), below(2) == 0}))
                              .append(u"\n")
                        : Text();
        const std::size_t few = 3 + below(10);
        const std::size_t tonic = below(12);
        for (std::size_t i = 3 + below(30); i-- > 0;) {
            const auto root = tonic + 7 * below(static_cast<unsigned>(few));
            song.append(noteName(static_cast<int>(root), Spelling::Sharps))
                .append(suffixes[below(9)]);
            if (below(5) == 0)
                song.append(u"/").append(noteName(static_cast<int>(below(12)), Spelling::Flats));
            song.append(below(4) == 0 ? u"\nla la\n" : u"       ");
        }
        song.append(u"\n");
        const Spelling side = sideOf(song);
        const Text start = followKey(song, findKey(song), 0, side);
        ASSERT_EQ(toUtf8(followKey(start, findKey(start), 0, side)), toUtf8(start));
        sure += findKey(start).key ? 1 : 0;
        Text now = start;
        int height = 0;
        for (int move = 0; move < 6; ++move) {
            const int steps = move == 5 ? -height : static_cast<int>(below(23)) - 11;
            for (const int part : {steps / 2, steps - steps / 2}) {
                if (part != 0)
                    now = followKey(now, findKey(now), part, side, true);
            }
            height += steps;
            const SongChords from = readSongChords(start);
            const SongChords to = readSongChords(now);
            ASSERT_EQ(from.chords.size(), to.chords.size()) << toUtf8(now);
            for (std::size_t i = 0; i < from.chords.size(); ++i)
                ASSERT_EQ(to.chords[i].root, ((from.chords[i].root + height) % 12 + 12) % 12);
            for (const TextView odd : {u"E#", u"B#", u"Cb", u"Fb", u"##", u"bb"})
                ASSERT_EQ(now.find(odd), Text::npos) << toUtf8(now);
        }
        EXPECT_EQ(toUtf8(now), toUtf8(start));
    }
    EXPECT_GT(sure, 50);
    EXPECT_LT(sure, 290);
}

}  // namespace
}  // namespace melvorin
