// Rows of chords as people type them: bars that touch, symbols that cannot be read, marks.
#include <gtest/gtest.h>

#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "base/TextCodec.h"
#include "chords/ChordLine.h"
#include "chords/ChordProExport.h"
#include "chords/ChordRow.h"
#include "chords/LineVerdict.h"
#include "chords/SongImport.h"

namespace melvorin {
namespace {

struct InventedRow {
    Text text;
    std::vector<std::string> chords;  // as the house writes them
    std::vector<std::size_t> columns;
};

// Chords, bars and dashes in a row, with and without blanks between them.
InventedRow inventedRow(std::mt19937& random) {
    static constexpr struct {
        TextView written;
        const char* chord;
    } chords[] = {{u"C", "C"},       {u"G/B", "G/B"},      {u"Am7", "Am7"},
                  {u"Fmaj7", "F7+"}, {u"Bb/D", "Bb/D"},    {u"F#m7b5", "F#m5b/7"},
                  {u"D7/4", "D4/7"}, {u"Edim", "E\u00B0"}, {u"A9/6", "A6/9"}};
    static constexpr TextView bars[] = {u"|", u"||", u"|:", u":|", u"\u2502"};
    InventedRow row;
    bool mayBar = true;
    bool mayChord = true;
    for (auto i = 4 + random() % 9; i > 0 || row.chords.size() < 2; i -= i > 0 ? 1U : 0U) {
        const bool isBar = mayBar && (!mayChord || random() % 2 == 0);
        if (isBar) {
            row.text += bars[random() % std::size(bars)];
        } else {
            const auto& chord = chords[random() % std::size(chords)];
            row.columns.push_back(row.text.size());
            row.chords.emplace_back(chord.chord);
            row.text += chord.written;
        }
        const auto blanks = random() % 2 == 0 ? 0 : random() % 6;
        row.text.append(blanks, u' ');
        mayBar = !isBar || blanks > 0;
        mayChord = isBar || blanks > 0;
    }
    return row;
}

std::vector<std::string> chordsOf(const SongImport& song) {
    std::vector<std::string> chords;
    chords.reserve(song.chords.size());
    for (const ImportedChord& chord : song.chords)
        chords.push_back(chord.isRead ? toUtf8(chord.chord) : "?" + toUtf8(chord.chord));
    return chords;
}

// Bars part chords, also where they touch them, and no chord leaves its column without need.
TEST(ImportRowsProperty, ChordsOutAreChordsIn) {
    std::mt19937 random(31);
    int inColumn = 0;
    for (int round = 0; round < 4000; ++round) {
        const InventedRow row = inventedRow(random);
        SCOPED_TRACE(toUtf8(row.text));
        const SongImport song = importSong(row.text);
        const Text chart = song.chart();
        ASSERT_EQ(chordsOf(song), row.chords) << toUtf8(chart);
        ASSERT_EQ(chordsOf(importSong(chart)), row.chords) << toUtf8(chart);
        ASSERT_EQ(toUtf8(importSong(chart).chart()), toUtf8(chart));
        ASSERT_TRUE(IsChordLine(chart)) << toUtf8(chart);
        std::size_t free = 0;  // where the next chord may begin, were there nothing but chords
        for (std::size_t i = 0; i < row.columns.size(); ++i) {
            const std::size_t column = song.chords[i].chartIndex;
            ASSERT_GE(column, row.columns[i]) << toUtf8(chart);
            ASSERT_GE(column, free) << toUtf8(chart);
            inColumn += column == row.columns[i] ? 1 : 0;
            free = column + song.chords[i].chord.size() + 1;
        }
    }
    EXPECT_GT(inColumn, 2000);
}

TEST(ImportRows, AreWrittenLikeThis) {
    const struct {
        const char* name;
        TextView row, chart;
    } cases[] = {
        {"bars between chords", u"C|G Am|F", u"C / G Am / F"},
        {"bars around chords", u"|C|G|", u"/ C / G /"},
        {"a bar before a bass", u"|G/B |", u"/ G/B /"},
        {"a bass before a bar", u"C/G|Am/E|F", u"C/G / Am/E / F"},
        {"repeats", u"|:C|G7:|2x", u"        2x\n/( C / G7 )/"},
        {"bars that make way", u"G    |C   |Am  |", u"G   / C  / Am  /"},
        {"bars by tabs", u"C\t|G|\tAm|", u"C      / G /    Am /"},
        {"unknown chords", u"C7alt|F", u"C7alt / F"},
        {"a minus that says nothing", u"C7- Dm7-", u"C7- Dm7-"},
        {"the same before a bar", u"Csus4-|F|Dm7\u2212| G", u"Csus4- / F / Dm7\u2212 / G"},
        {"the same in parentheses", u"(C7-) G7", u"(C7-) G7"},
        {"minuses of minor chords", u"C- Bb-7 F#-", u"Cm Bbm7 F#m"},
        {"dashes between chords", u"C-G - Am7-D7- Em- F", u"C G   Am7 D7  Em  F"},
        {"longer dashes", u"C \u2014 G7\u2014 F \u2014", u"C   G7  F"},
        {"small basses", u"C    G/h  Am   Am/g", u"C    G/B  Am   Am/G"},
        {"a question", u"G C7? Cmaj7", u"G C7? C7+"},
        {"two basses", u"C/Eb/G  Am G7", u"C/Eb/G  Am G7"},
        {"two basses and few others", u"C/Eb/G G Am", u"C/Eb/G G Am"},
        {"a question before a minor chord", u"C7? Am", u"C7? Am"},
        {"a question between bars", u"C |G? |Am", u"C / G? / Am"},
        {"times in front", u"x2: G C", u"x2:\n    G C"},
        {"braces", u"{G  C} x2", u"       x2\n(G  C)"},
        {"a mode", u"C Clyd G7 Am", u"C Clyd G7 Am"},
        {"an alteration in parentheses", u"G7 (C7alt) D", u"G7 (C7alt) D"},
        {"beats", u"C . . G7 . .", u"C / / G7 / /"},
        {"beats among bars", u"| C . | G .|", u"    .     .\n/ C   / G  /"},
        {"the end of a sentence", u"C  G  Am.", u"C  G  Am"},
        {"stops", u"C! G!! Am", u" !  !!\nC  G   Am"},
        {"times in parentheses", u"G(x2) Am", u" (x2)\nG     Am"},
        {"raised signs", u"C\u2077 G\u1D50\u2077 F\u266F\u2077 E\u02E2\u1D58\u02E2\u2074 A\u1D52",
         u"C7 Gm7 F#7 E4    A\u00B0"},
        {"raised parentheses", u"Dm\u2076 B\u2077\u207D\u1D47\u2079\u207E", u"Dm6 B7/9b"},
        {"where the song goes on", u"C  G  D.C. al Fine", u"      D.C. al Fine\nC  G"},
        {"the same behind a bar", u"|G |D.S.|", u"    D.S.\n/ G /   /"},
        {"where it ends", u"Am G7  To Coda", u"       To Coda\nAm G7"},
        {"sunken numbers", u"C\u2087 F\u2086", u"C7 F6"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const SongImport song = importSong(c.row);
        const Text chart = song.chart();
        EXPECT_FALSE(song.chords.empty());
        EXPECT_EQ(toUtf8(chart), toUtf8(c.chart));
        EXPECT_EQ(toUtf8(importSong(chart).chart()), toUtf8(chart));
    }
}

// Words, a label or a list although some of it could be a chord.
TEST(ImportRows, WhatIsRefusedMakesNoChords) {
    static constexpr TextView lines[] = {u"A? B? C.",     u"G C7? Cmaj7 then home",
                                         u"C7? A",        u"Bad? G",
                                         u"A/B/C",        u"Door G Dad",
                                         u"(A1) B",       u"His Es",
                                         u"Eis, bitte",   u"His",
                                         u"Hes",          u"Fes",
                                         u"C7, A? a",     u"G. H.",
                                         u"C.B.",         u"D.C.",
                                         u"D.C. al Fine", u"A Fine"};
    for (const TextView line : lines)
        EXPECT_TRUE(importSong(line).chords.empty()) << toUtf8(line);
}

// Letters behind a colon may be somebody's initials, or a list where no other line has chords.
TEST(ImportRows, LabelsHaveChordsBehindThem) {
    const struct {
        const char* name;
        TextView song, chart;
    } cases[] = {
        {"initials in a song",
         u"Little Song\nMusik: G. H.\nG        B7\nThe river runs away\nEm     B\ntomorrow and\n",
         u"Little Song\nMusik: G. H.\nG        B7\nThe river runs away\nEm     B\ntomorrow and\n"},
        {"who plays", u"Klavier: C. B.\nText: E. G.\nFoto: A. B.\nAm  G\nla  la\n",
         u"Klavier: C. B.\nText: E. G.\nFoto: A. B.\nAm  G\nla  la\n"},
        {"lists without chords", u"Vitamins: A, D, E\nGate: B\nGrade: A\nSeat: C\nBlutgruppe: B\n",
         u"Vitamins: A, D, E\nGate: B\nGrade: A\nSeat: C\nBlutgruppe: B\n"},
        {"the same letters in a song", u"Theme: A D E\nAm  G\nla  la\n",
         u"Theme:\n       A D E\nAm  G\nla  la\n"},
        {"one that is more than a letter", u"Theme: A D E7\n", u"Theme:\n       A D E7\n"},
        {"parts", u"A:\nC G\nla la\nB)\nG C\n", u"A:\nC G\nla la\nB)\nG C\n"},
        {"a small bass that is a German sign", u"C    G/h\nla   la\nB7\nla\n",
         u"C    G/B\nla   la\nBb7\nla\n"},
        {"a part in one line", u"A: G C D\n", u"A:\n   G C D\n"},
        {"marks in brackets", u"{title: Row}\n[C]la [Fine]la [G]la [D.C. al Fine]\n",
         u"Row\n\n   Fine  D.C. al Fine\nC     G\nla la la\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Text chart = importSong(c.song).chart();
        EXPECT_EQ(toUtf8(chart), toUtf8(c.chart));
        EXPECT_EQ(toUtf8(importSong(chart).chart()), toUtf8(c.chart));
    }
    // The letter of a part is no chord.
    EXPECT_EQ(chordsOf(importSong(u"A:\nC G\nB)\nG C\n")),
              (std::vector<std::string>{"C", "G", "G", "C"}));
}

// Notes by the steps of their letters, counted by hand.
TEST(ImportRows, GermanNamesAreRead) {
    const SongImport song = importSong(
        u"Eism7  His7  Asas  Eses7  Hes/D  Ces  Fesm  Fisis7  H7\n"
        u"Asus4  Esus4  Assus4  Eism  Heses  Cisis  B7\n");
    EXPECT_EQ(toUtf8(song.chart()),
              "Fm7    C7    G     D7     Bb/D   B    Em    G7      B7\n"
              "A4     E4     Ab4     Fm    A      D      Bb7\n");
}

TEST(ImportRows, SyllablesStandAmongThemselves) {
    const struct {
        const char* name;
        TextView song, chart;
    } cases[] = {
        {"one symbol with a figure", u"La Mi La Mi7\nla la\n", u"A  E  A  E7\nla la\n"},
        {"one with a bass", u"D\u00F3 R\u00E9 Mi Sol/Si\nla la\n", u"C  D  E  G/B\nla la\n"},
        {"one with a sharp", u"Sol Re Fa# Si\nla la\n", u"G   D  F#  B\nla la\n"},
        {"words beside it", u"La Mi La Mi7 no\nla la\n", u"La Mi La Mi7 no\nla la\n"},
        {"nothing but words", u"La Si La Sol Mi\nla la\nDo, Re, Mi, Fa\nLa La Mi\nDo Re 3/4\n",
         u"La Si La Sol Mi\nla la\nDo, Re, Mi, Fa\nLa La Mi\nDo Re 3/4\n"},
        {"letters beside syllables",
         u"DO  SOL7  LA-\nla\nRE SOL7\nA La\nA Fa Sol\nA\nE A\n[DO]la [SOL]la\n",
         u"C   G7    Am\nla\nD  G7\nA La\nA Fa Sol\nA\nE A\nC  G\nla la\n"},
        {"a letter with a figure", u"DO  SOL7  LA7\nla\nRE  A7  SOL7\n",
         u"C   G7    A7\nla\nD   A7  G7\n"},
        {"rows of letters", u"DO  SOL7  LA-\nla\nRE  LA7\nla\nAm  G7\nla\n",
         u"C   G7    Am\nla\nD   A7\nla\nAm  G7\nla\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(toUtf8(importSong(c.song).chart()), toUtf8(c.chart));
    }
}

TEST(ImportRows, StringsMayBeDrawnInManyWays) {
    static constexpr TextView strings[] = {
        u"E||--3--||",
        u"B||--3--||",
        u"e\u2502\u2550\u2550\u25503\u2550\u2550\u25505\u2550\u2550\u2550\u2502",
        u"e|\u254C\u254C\u254C3\u254C\u254C5\u254C|",
        u"B\u2507\u2505\u2505\u25053\u2505\u2505\u2507",
        u"G\u2551\u2550\u2550\u255010\u2550\u2550\u2560",
        u"D|\u2504\u2504\u25043\u2508\u2508|",
        u"e|-12-15-12-14-12-|",
        u"B|-0h2p0-3b5r3-0-|",
        u"Eb|---h5p7/9\\5~~-x-(7)-|"};
    for (const TextView string : strings)
        EXPECT_TRUE(isTablature(string)) << toUtf8(string);
    static constexpr TextView others[] = {u"\u2550\u2550\u2550\u2550\u2550\u2550",
                                          u"\u254C\u254C\u254C\u254C\u254C",
                                          u"||: C | G :||",
                                          u"|| well -- no ||",
                                          u"C||G||Am",
                                          u"B|-Am-|-G-|",
                                          u"E|-G7-|-A7-|-B7-|",
                                          u"|-12-15-12-|",
                                          u"A|-|-|-|",
                                          u"B|-7 -9 -4"};
    for (const TextView other : others)
        EXPECT_FALSE(isTablature(other)) << toUtf8(other);
    // Beside one of these, frets without a name are its strings.
    const TextView song = u"|-12-15-12-14-|\ne|--0--2--|\n|-3-5-7-|\n\n|-3-5-7-|\n";
    const SongImport read = importSong(song);
    EXPECT_EQ(read.source[0].verdict, LineVerdict::Tablature);
    EXPECT_EQ(read.source[2].verdict, LineVerdict::Tablature);
    EXPECT_EQ(read.source[4].verdict, LineVerdict::Lyrics);
    EXPECT_EQ(toUtf8(importSong(exportChordPro(song)).chart()), toUtf8(song));
}

// Each chord stands over the cell that its syllable begins in.
TEST(ImportRows, BracketsStandOverTheirSyllables) {
    const struct {
        TextView line, chart;
    } cases[] = {
        {u"[Am7]\u201C[G]Oh my", u"Am7 G\n   \u201COh my"},
        {u"so [Am7]\u201C[G]Oh my", u"   Am7 G\nso    \u201COh my"},
        {u"[C]so\u201D [G]my", u"C   G\nso\u201D my"},
        {u"[Am7]\u65E5[G]\u672C [C]\u8A9E", u"Am7 G  C\n\u65E5  \u672C \u8A9E"},
        {u"\u65E5[Am7]\u672C[G]\u8A9E", u"  Am7 G\n\u65E5\u672C  \u8A9E"},
        {u"[C]\u65E5[G]\u672C", u"C G\n\u65E5\u672C"},
        {u"[C|G]la [Am|]la", u"C / G Am /\nla    la"},
        {u"[C]Hal-[Gm7]le-[Am7]lu-[F]jah, [C]ev-[Em7]er-[Am7]more",
         u"C   Gm7 Am7 F    C  Em7 Am7\nHal-le- lu- jah, ev-er- more"},
        {u"[C . .]la [G!]la [F(x2)]la", u"       !  (x2)\nC / / G  F\nla    la la"},
    };
    for (const auto& c : cases) {
        const Text chart = importSong(c.line).chart();
        EXPECT_EQ(toUtf8(chart), toUtf8(c.chart));
        EXPECT_EQ(toUtf8(importSong(chart).chart()), toUtf8(chart));
    }
}

// The first line of a Rich Text file, quoted in a text, stays as it is while somebody writes in it.
TEST(ImportRows, ABraceBehindWordsClosesNone) {
    EXPECT_TRUE(isRowOfChords(readRow(u"{G  C}")));
    for (const TextView line : {u"{\\rtf1 C  G}", u"x{\\rtf1 C  G}", u"C  G}"})
        EXPECT_FALSE(isRowOfChords(readRow(line))) << toUtf8(line);
}

}  // namespace
}  // namespace melvorin
