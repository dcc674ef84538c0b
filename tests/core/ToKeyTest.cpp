// What a song becomes in another key and with a capo, and its chords by other names.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <set>
#include <sstream>

#include "chords/CapoChoice.h"
#include "chords/CellWidth.h"
#include "chords/ChordNames.h"
#include "chords/ChordProExport.h"
#include "chords/ChordSpelling.h"
#include "chords/KeyGoal.h"
#include "chords/KeyReading.h"
#include "chords/KeySpelling.h"
#include "chords/SongImport.h"

namespace melvorin {
namespace {

TEST(ToKey, TheNearerWay) {
    EXPECT_EQ(nearestSteps(0, 7), -5);
    EXPECT_EQ(nearestSteps(0, 6), 6);
    EXPECT_EQ(nearestSteps(11, 1), 2);
    EXPECT_EQ(nearestSteps(4, 4), 0);
}

TEST(Capo, IsReadFromItsLine) {
    const struct {
        TextView line;
        int fret;
        std::string statement, sounding;
    } cases[] = {
        {u"Capo 3", 3, "Capo 3", ""},
        {u"CAPO: 2nd fret", 2, "CAPO: 2nd fret", ""},
        {u"{capo: 10}", 10, "capo: 10", ""},
        {u"Key: G  Capo at the 4th fret, slow", 4, "Capo at the 4th fret", ""},
        {u"Capotraste na 2\u00AA casa", 2, "Capotraste na 2\u00AA casa", ""},
        {u"Cejilla en el V traste", 5, "Cejilla en el V traste", ""},
        {u"Capo III (sounds in Bb)", 3, "Capo III", "Bb"},
        {u"Kapo 1 (sounds in F#m), slow", 1, "Kapo 1", "F#"},
        {u"\u041A\u0430\u043F\u043E 2", 2, "\u041A\u0430\u043F\u043E 2", ""},
        {u"No capo 3", 0, "", ""},
        {u"da capo 2 times", 0, "", ""},
        {u"Capo: none", 0, "", ""},
        {u"Capo, 3/4", 0, "", ""},
        {u"Capo 12", 0, "", ""},
        {u"Capone 3", 0, "", ""},
        {u"Piano capo 3", 3, "capo 3", ""},
        {u"Intro (capo 3): G", 3, "capo 3", ""},
        {u"Use capo on the 3rd fret", 3, "Use capo on the 3rd fret", ""},
        {u"Capo: 3 (Bb)", 3, "Capo: 3", "Bb"},
        {u"Capo 3, sounds in F#m", 3, "Capo 3", "F#"},
        {u"the capo I knew was a man", 0, "", ""},
        {u"Capo I knew", 0, "", ""},
        {u"My capo is 3 inches", 0, "", ""},
        {u"Il capo di 10 uomini", 0, "", ""},
        {u"Without capo 3 is good", 0, "", ""},
        {u"Sem capo 2", 0, "", ""},
        {u"Capo 1/2 step", 0, "", ""},
        {u"capo 3/4", 0, "", ""},
        {u"Capo 3 - 4", 0, "", ""},
        {u"capo ", 0, "", ""},
        {u"", 0, "", ""},
    };
    for (const auto& c : cases) {
        const auto capo = readCapo(c.line);
        EXPECT_EQ(capo ? capo->fret : 0, c.fret) << toUtf8(c.line);
        if (!capo)
            continue;
        const auto part = [&](const ColumnRange& range) {
            return toUtf8(c.line.substr(range.column, range.length));
        };
        EXPECT_EQ(part(capo->statement), c.statement);
        EXPECT_EQ(part(capo->sounding), c.sounding);
    }
}

TEST(Capo, IsWrittenUnderTheTitleAndTakenOff) {
    const struct {
        TextView before;
        int fret;
        TextView sounds;
        std::string after;
    } cases[] = {
        {u"Hills\rMe\r\rG C\rla", 3, u"Bb", "Hills\rCapo 3 (sounds in Bb)\rMe\r\rG C\rla"},
        {u"\r[Verse]\rHills\rG C", 3, u"", "\r[Verse]\rHills\rCapo 3\rG C"},
        {u"Hills", 3, u"", "Hills\rCapo 3"},
        {u"{artist: Me}\r{title: Hills}\rG", 1, u"", "{artist: Me}\r{title: Hills}\rCapo 1\rG"},
        // Words below chords are no title.
        {u"G C\rla la", 2, u"", "Capo 2\rG C\rla la"},
        {u"", 2, u"", "Capo 2\r"},
        // What is there changes.
        {u"Hills\rCapo: 2 (sounds in A), slow\rG", 5, u"A",
         "Hills\rCapo: 5 (sounds in A), slow\rG"},
        {u"Capo 2nd fret, slow\rG", 5, u"C", "Capo 5th fret (sounds in C), slow\rG"},
        {u"{capo: 2}\rG", 5, u"C", "{capo: 5}\rG"},
        {u"Hills\rCapo 3 (sounds in Bb)\r\rG", 0, u"", "Hills\r\rG"},
        {u"Hills\rCapo 3", 0, u"", "Hills"},
        {u"{capo: 2}\rG", 0, u"", "G"},
        {u"Key: G, Capo 3 (sounds in Bb)\rG", 0, u"", "Key: G\rG"},
        {u"Capo 3, slow\rG", 0, u"", "slow\rG"},
        {u"Hills\rG", 0, u"", "Hills\rG"},
        {u"Hills (Capo 3)", 0, u"", "Hills"},
        {u"Hills (Capo 3) slow", 0, u"", "Hills slow"},
        {u"Hills - Capo 3", 0, u"", "Hills"},
        {u"Capo 3 - Key: G", 0, u"", "Key: G"},
        {u"Intro (capo 3): G D", 0, u"", "Intro: G D"},
        {u"{comment: Capo 3}\rG", 0, u"", "G"},
        {u"# Capo 3\rG", 0, u"", "G"},
        {u"[Capo 3]\rG", 0, u"", "G"},
        {u"Key: G  Capo 3 (Bb)  Tempo: 80", 0, u"", "Key: G  Tempo: 80"},
        {u"Capo 3rd fret", 0, u"", ""},
        {u"Capo na 3a casa", 0, u"", ""},
        {u"Capo na 3a casa", 5, u"C", "Capo na 5a casa (sounds in C)"},
        {u"Capo: 3 (Bb)", 5, u"C", "Capo: 5 (sounds in C)"},
        {u"Capo 3, sounds in Bb, slow", 5, u"C", "Capo 5 (sounds in C), slow"},
        {u"Hills (Capo 3)", 5, u"C", "Hills (Capo 5, sounds in C)"},
        {u"Hills (Capo 3, sounds in Bb)", 5, u"C", "Hills (Capo 5, sounds in C)"},
        // What cannot be rewritten stays.
        {u"Hills\rCapo 3 or 5\rG", 2, u"A", "Hills\rCapo 2 (sounds in A)\rCapo 3 or 5\rG"},
        {u"Hills\rCapo 3 (G shapes)", 2, u"", "Hills\rCapo 2\rCapo 3 (G shapes)"},
        {u"Hills\rCapo 3 or 5\rG", 0, u"", "Hills\rCapo 3 or 5\rG"},
        // Facts of the song are no title, and words below chords are no heading.
        {u"Key: G\rHills\rG", 2, u"", "Key: G\rHills\rCapo 2\rG"},
        {u"Tuning: standard\r\rHills\rG", 2, u"", "Tuning: standard\r\rHills\rCapo 2\rG"},
        {u"Hills\rG\rla\rCapo 3\r", 2, u"", "Hills\rCapo 2\rG\rla\rCapo 3\r"},
    };
    for (const auto& c : cases) {
        const auto edits = capoEdits(c.before, c.fret, c.sounds, u"\r");
        EXPECT_EQ(toUtf8(withEdits(c.before, edits)), c.after) << toUtf8(c.before);
    }
}

class FewGrips : public ChordGrips {
  public:
    std::optional<Grip> gripOf(TextView chord) const override {
        static const std::set<Text> open{u"C", u"D", u"G", u"Am", u"Em", u"E", u"A"};
        static const std::set<Text> barres{u"F", u"Bb", u"A#", u"Cm", u"Gm", u"D#", u"G#", u"C#"};
        return open.contains(Text(chord))     ? std::optional(Grip::Open)
               : barres.contains(Text(chord)) ? std::optional(Grip::Barre)
               : chord == u"C/Bb"             ? std::optional(Grip::Closed)
                                              : std::nullopt;
    }
};

TEST(Capo, TheEasiestFretComesFirst) {
    EXPECT_EQ(gripOf(u"x32010", u"-32-1-"), Grip::Open);
    EXPECT_EQ(gripOf(u"133211", u"134211"), Grip::Barre);
    EXPECT_EQ(gripOf(u"x-10-9-10-10-x", u"-2134-"), Grip::Closed);
    EXPECT_EQ(gripOf(u"x-10-12-12-12-10", u"-13331"), Grip::Barre);
    EXPECT_EQ(gripOf(u"x3201", u"-32-1-"), std::nullopt);
    const std::vector<Text> chords = chordsOfSong(u"Bb  Eb/G  F\rla la\rGm  Bb\r");
    EXPECT_EQ(chords, (std::vector<Text>{u"Bb", u"Eb/G", u"F", u"Gm"}));
    const FewGrips grips;
    const auto choices = capoChoices(chords, Key{10, false}, 0, &grips);
    ASSERT_EQ(choices.size(), 10U);
    // In G: G, C/E (its bass is not in the book), D, Em.
    EXPECT_EQ(choices[0], (CapoChoice{3, Key{7, false}, 4, 0, 0, 0}));
    EXPECT_EQ(choices[0].shapes, (Key{7, false}));
    // Written for capo 3 already, the same song has the same frets.
    const std::vector<Text> written{u"G", u"C/E", u"D", u"Em"};
    EXPECT_EQ(capoChoices(written, Key{7, false}, 3, &grips), choices);
    EXPECT_EQ(capoChoices({}, Key{}, 0, nullptr)[9].fret, 9);
    // A bass may be in the book by its other name only: C/Bb is closed, where C would be open.
    const std::vector<Text> flatBass{u"C/Bb"};
    const auto lowered = capoChoices(flatBass, Key{}, 0, &grips);
    const auto uncapoed = std::find_if(lowered.begin(), lowered.end(),
                                       [](const CapoChoice& c) { return c.fret == 0; });
    EXPECT_EQ(*uncapoed, (CapoChoice{0, Key{}, 0, 0, 1, 0}));
}

TEST(ToKey, SaysWhatThereIsToSay) {
    FoundKey found = findKey(u"G  C  D7  G\nla\nEm  C  D7  G\n");
    ASSERT_TRUE(found.key);
    EXPECT_EQ(toUtf8(keyAndCapo(found, Spelling::Sharps, std::nullopt)), "G");
    EXPECT_EQ(toUtf8(keyAndCapo(found, Spelling::Sharps, 3)), "G, capo 3, sounds Bb");
    found.key.reset();
    found.second = Key{4, true};
    EXPECT_EQ(toUtf8(keyAndCapo(found, Spelling::Sharps, 3)), "G or Em?, capo 3");
    EXPECT_EQ(toUtf8(keyAndCapo(FoundKey(), Spelling::Sharps, 3)), "");
}

TEST(ToKey, TellsWhyAChordIsCalledSo) {
    const struct {
        TextView key, lines;
        std::size_t column;
        std::string reason;
    } cases[] = {
        {u"C", u"C  Ab F#m5b/7\nla\nB7  Em", 3, "Ab: bVI of C"},
        {u"C", u"C  G# C", 4, "G#: bVI of C, which is Ab"},
        {u"C", u"C  Ab F#m5b/7\nla\nB7  Em", 13, "F#: #IV of C"},
        {u"C", u"Am  E/G#", 8, "G#: #V of C"},
        {u"Am", u"Am  F", 4, "F: VI of Am"},
        {u"C", u"C   Ab", 2, ""},
        {u"C", u"words", 2, ""},
        {u"C", u"", 0, ""},
    };
    for (const auto& c : cases) {
        FoundKey found;
        found.key = found.first = readKey(c.key);
        std::vector<SpelledLine> lines;
        for (TextView rest = c.lines; !rest.empty();)
            lines.push_back({takeLine(rest).chars, {}});
        EXPECT_EQ(toUtf8(reasonOfName(lines, c.column, found, Spelling::Sharps)), c.reason)
            << toUtf8(c.lines);
        found.key.reset();
        EXPECT_TRUE(reasonOfName(lines, c.column, found, Spelling::Sharps).empty());
    }
}

TEST(ToKey, KeyLinesGoWithTheOthersAndTheCapoKeepsItsNumber) {
    const Text song = u"Hills\nKey: G, Capo 3 (sounds in Bb)\nTom: Em\nG  Cmaj7\nla\nG  C\n";
    KeyWay way{findKey(song), Spelling::Sharps, std::nullopt, true};
    const LeftOver left = findLeftOver(song);
    EXPECT_EQ(toUtf8(movedSong(song, way, 1, left)),
              "Hills\nKey: Ab, Capo 3 (sounds in B)\nTom: Fm\nAb Dbmaj7\nla\nAb Db\n");
    way.table = Spelling::Sharps;
    EXPECT_EQ(toUtf8(movedSong(song, way, -5, left)),
              "Hills\nKey: D, Capo 3 (sounds in F)\nTom: Bm\nD  Gmaj7\nla\nD  G\n");
    way.movesOthers = false;
    EXPECT_EQ(toUtf8(movedSong(song, way, -5, left)),
              "Hills\nKey: G, Capo 3 (sounds in Bb)\nTom: Em\nG  Cmaj7\nla\nD  G\n");
    EXPECT_EQ(toUtf8(movedSong(u"Tonart: B-Dur\n", way, 2, findLeftOver(u"Tonart: B-Dur\n"))),
              "Tonart: B-Dur\n");
    way.movesOthers = true;
    EXPECT_EQ(toUtf8(movedSong(u"Tonart: B-Dur\n", way, 1, findLeftOver(u"Tonart: B-Dur\n"))),
              "Tonart: H-Dur\n");
}

// ---- Names -------------------------------------------------------------------------------------

// The symbols of the chord book, from what it is made of.
std::vector<Text> symbolsOfBook() {
    std::ifstream file(MELVORIN_SOURCE_DIR "/data/chordbook/kinds.txt");
    std::vector<Text> symbols;
    for (std::string line; std::getline(file, line);) {
        std::istringstream fields(line);
        std::string family, slot, suffix;
        if (line.starts_with('#') || !std::getline(fields, family, '|') ||
            !std::getline(fields, slot, '|') || !std::getline(fields, suffix, '|'))
            continue;
        for (const TextView root : {u"A", u"A#", u"Bb", u"B", u"C", u"C#", u"Db", u"D", u"D#",
                                    u"Eb", u"E", u"F", u"F#", u"Gb", u"G", u"G#", u"Ab"}) {
            const Text kind(trimmed(fromUtf8(suffix)));
            symbols.push_back(Text(root) + kind);
            for (const TextView bass : {u"B", u"Bb", u"F#", u"Eb"})
                symbols.push_back(Text(root).append(kind).append(u"/").append(bass));
        }
    }
    return symbols;
}

TEST(ChordNames, ComeBackExactly) {
    const std::vector<Text> symbols = symbolsOfBook();
    ASSERT_GT(symbols.size(), 5000U);
    for (const Text& symbol : symbols) {
        const Text house = houseSpelling(symbol).value_or(Text());
        EXPECT_FALSE(house.empty()) << toUtf8(symbol);
        for (const auto& [names, naming] : {std::pair(ChordNames::German, Naming::German),
                                            std::pair(ChordNames::Solfege, Naming::Solfege)}) {
            ChordReading reading;
            reading.naming = naming;
            const Text named = chordByNames(house, names);
            EXPECT_EQ(toUtf8(houseSpelling(named, reading).value_or(Text())), toUtf8(house))
                << toUtf8(named);
        }
    }
}

TEST(ChordNames, AreThoseThatReadersKnow) {
    const struct {
        TextView house, key;
        std::string nashville, german, solfege;
    } cases[] = {
        {u"C", u"C", "1", "C", "Do"},
        {u"Bb7+", u"C", "b7(7+)", "B7+", "Sib7+"},
        {u"B7", u"C", "7(7)", "H7", "Si7"},
        {u"F#m5b/7", u"Em", "7m(5b/7)", "Fism5b/7", "Fa#m5b/7"},
        {u"Am7/G", u"Am", "6m7/5", "Am7/G", "Lam7/Sol"},
        {u"Eb\u00B0", u"Bb", "4\u00B0", "Es\u00B0", "Mib\u00B0"},
        {u"C/E", u"C", "1/3", "C/E", "Do/Mi"},
        {u"Ab4/7/9/Bb", u"Eb", "4(4/7/9)/5", "As4/7/9/B", "Lab4/7/9/Sib"},
        {u"B", u"Gb", "4", "H", "Si"},
        {u"x2", u"C", "x2", "x2", "x2"},
    };
    for (const auto& c : cases) {
        const Key key = *readKey(c.key);
        const auto named = [&](ChordNames names) {
            return toUtf8(chordByNames(c.house, names, key, Spelling::Flats));
        };
        EXPECT_EQ(named(ChordNames::Nashville), c.nashville);
        EXPECT_EQ(named(ChordNames::German), c.german);
        EXPECT_EQ(named(ChordNames::Solfege), c.solfege);
    }
    const Text chart = u"Hills\n\nG  C7+\nover the hills\nBb D7\n";
    EXPECT_EQ(toUtf8(exportChordPro(chart, ChordNames::German)),
              "{x_melvorin_names: german}\n{title: Hills}\n\n[G]ove[C7+]r the hills\n"
              "[B]   [D7]\n");
    // With an H among its chords a song tells that it is German.
    const Text whole = u"Hills\n\nG  C7+ B7\nover the hills\nBb D7/F#\n";
    for (const ChordNames names : {ChordNames::German, ChordNames::Solfege}) {
        const Text back = importSong(exportChordPro(whole, names)).chart();
        EXPECT_EQ(toUtf8(back), toUtf8(whole));
    }
}

}  // namespace
}  // namespace melvorin
