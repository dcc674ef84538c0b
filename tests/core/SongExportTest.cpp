// Songs on their way to other programs.
#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "base/TextCodec.h"
#include "chords/ChordProExport.h"
#include "chords/DiagramSvg.h"
#include "chords/SongExport.h"
#include "chords/SongImport.h"

namespace melvorin {
namespace {

constexpr TextView kChart =
    u"Row\n"
    u"\n"
    u"Chorus:\n"
    u"F7+  C4/7  Em7/9\n"
    u"Row, row & row\n"
    u"C9   G\n"
    u"\n"
    u"C      D7+ G\n"
    u"gently do--wn\n"
    u"E|--0--2--|\n"
    u"B|--1--3--|\n";

TEST(SongExport, RenamesChordsOverTheirSyllables) {
    EXPECT_EQ(exportText(kChart, ChordNames::House), kChart);
    // A longer name gets room: between words by blanks, in a word by hyphens.
    EXPECT_EQ(toUtf8(exportText(kChart, ChordNames::International)),
              "Row\n"
              "\n"
              "Chorus:\n"
              "Fmaj7 C7sus4 Em9\n"
              "Row,  row &  row\n"
              "Cadd9 G\n"
              "\n"
              "C      Dmaj7 G\n"
              "gently do----wn\n"
              "E|--0--2--|\n"
              "B|--1--3--|\n");
    // A song that is no chart of ours yet: its own notation tells what its symbols mean.
    EXPECT_EQ(
        toUtf8(exportChordPro(u"Intro: Gmaj7 | A9\nDsus4  A9\nla la  la\n[C9]la [Cadd9]la\n",
                              ChordNames::International)),
        "{comment: Intro:}\n [Gmaj7]      [|]  [A9]\n[Dsus4]la la  [A9]la\n[C9]la [Cadd9]la\n");
    EXPECT_EQ(toUtf8(exportText(u"Am  H7  B\nla  la  la\n", ChordNames::International)),
              "Am  B7  Bb\nla  la  la\n");
    EXPECT_EQ(toUtf8(exportChordPro(u"F7+  C4/7  B\nRow, row & row\n", ChordNames::International)),
              "[Fmaj7]Row, [C7sus4]row & [B]row\n");
}

TEST(SongExport, RenamesWhatHasMarksLabelsAndBrackets) {
    const struct {
        TextView chart;
        std::string text, chordPro;
    } cases[] = {
        {u"|C7+ |F4/7 |G |\nla la la la la la\n", "|Cmaj7 |F7sus4 |G |\nla la   la la   la la\n",
         "[|Cmaj7]la la[|F7sus4] la la[|G] la[|] la\n"},
        {u"C7+(x2)\nla la\n", "Cmaj7(x2)\nla la\n", "[Cmaj7(x2)]la la\n"},
        {u"F4/7*\nla\n", "F7sus4*\nla\n", "[F7sus4*]la\n"},
        {u"(C7+ F4/7)\nla la la\n", "(Cmaj7 F7sus4)\nla la   la\n", "[(Cmaj7]la la[F7sus4)] la\n"},
        {u"Intro: C7+ F4/7  G\n", "Intro: Cmaj7 F7sus4 G\n",
         "{comment: Intro:}\n [Cmaj7]    [F7sus4]      [G]\n"},
        {u"[C7+]la [F4/7]la\n[C7+] [F4/7]\n", "[Cmaj7]la [F7sus4]la\n[Cmaj7] [F7sus4]\n",
         "[Cmaj7]la [F7sus4]la\n[Cmaj7] [F7sus4]\n"},
        {u"C7+ G\nl[a] la\n", "Cmaj7 G\nl[a]   la\n", "[Cmaj7]    [G]\n{comment: l[a] la}\n"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(toUtf8(exportText(c.chart, ChordNames::International)), c.text);
        EXPECT_EQ(toUtf8(exportChordPro(c.chart, ChordNames::International)), c.chordPro);
    }
    const Text page = exportHtml(u"Intro: C7+\n[C7+]la\n", ChordNames::International, u"x");
    EXPECT_EQ(page.find(u"C7+"), Text::npos);
}

// ---- Songs that are read again -----------------------------------------------------------------

using Random = std::mt19937;

// A small song in the house's spelling: a few chords, each more than once, in front of words.
Text smallSong(Random& random) {
    static constexpr TextView roots[] = {u"C", u"D", u"Eb", u"F#", u"G", u"A", u"Bb", u"B"};
    static constexpr TextView suffixes[] = {
        u"",    u"m",  u"7",    u"m7",    u"7+",   u"4/7",    u"m7/9", u"7/9",
        u"9",   u"m9", u"6/9",  u"m5b/7", u"5#",   u"\u00B0", u"m7+",  u"7/9b",
        u"5/9", u"4",  u"7/13", u"m6",    u"7+/9", u"5",      u"7/5#", u"m7/11"};
    std::vector<Text> chords;
    for (auto count = 1 + random() % 4; count > 0; --count) {
        Text chord(roots[random() % std::size(roots)]);
        chord.append(random() % 2 == 0 ? u"" : suffixes[random() % std::size(suffixes)]);
        if (random() % 8 == 0)
            chord.append(u"/").append(roots[random() % std::size(roots)]);
        chords.push_back(std::move(chord));
    }
    Text song = u"Hills\n\n";
    for (auto lines = 1 + random() % 3; lines > 0; --lines) {
        Text row;
        Text words;
        for (auto count = 1 + random() % 4; count > 0; --count) {
            row.append(chords[random() % chords.size()]).append(u"  ");
            words.append(u"over ");
            words.resize(std::max(words.size(), row.size()), u' ');
            row.resize(words.size(), u' ');
        }
        song.append(row).append(u"\n").append(words).append(u"\n");
    }
    return importSong(song).chart();
}

std::vector<Text> chordsOf(TextView song) {
    std::vector<Text> chords;
    for (const ImportedChord& chord : importSong(song).chords)
        chords.push_back(chord.isRead ? chord.chord : u"?");
    return chords;
}

TEST(SongExportProperty, InternationalNamesAreReadAgain) {
    Random random(5);
    for (int round = 0; round < 500; ++round) {
        const Text song = smallSong(random);
        const std::vector<Text> chords = chordsOf(song);
        for (const Text& exported : {exportChordPro(song, ChordNames::International),
                                     exportText(song, ChordNames::International)}) {
            SCOPED_TRACE(toUtf8(song) + toUtf8(exported));
            ASSERT_EQ(chordsOf(exported), chords);
        }
    }
}

std::size_t runsOf(TextView line) {
    std::size_t runs = 0;
    for (std::size_t i = 0; i < line.size(); ++i)
        runs += line[i] != u' ' && (i == 0 || line[i - 1] == u' ') ? 1U : 0U;
    return runs;
}

// Names are longer by other spellings, and chords may be one blank apart: none becomes a part of
// its neighbour.
TEST(SongExportProperty, NoNamesOfCloseChordsGrowTogether) {
    static constexpr TextView chords[] = {u"F7+",     u"G",    u"Am",  u"C4/7",   u"Dm7/9",
                                          u"Bb",      u"B7",   u"F#m", u"Em5b/7", u"G/B",
                                          u"C\u00B0", u"D5/9", u"Eb",  u"A7/9b"};
    static constexpr TextView words[] = {u"love", u"a river", u"oh", u"well-known ways", u"no!"};
    Random random(7);
    for (int round = 0; round < 500; ++round) {
        Text song = u"Hills\n\n";
        for (auto lines = 1 + random() % 3; lines > 0; --lines) {
            for (auto count = 1 + random() % 6; count > 0; --count)
                song.append(random() % 3, u' ').append(chords[random() % std::size(chords)]) +=
                    u' ';
            song.append(u"\n").append(words[random() % std::size(words)]).append(u"\n");
        }
        const std::vector<ChartBlock> house = chartBlocks(song, ChordNames::House);
        for (const ChordNames names :
             {ChordNames::International, ChordNames::German, ChordNames::Solfege}) {
            const std::vector<ChartBlock> named = chartBlocks(song, names);
            SCOPED_TRACE(toUtf8(song) + toUtf8(exportText(song, names)));
            ASSERT_EQ(named.size(), house.size());
            for (std::size_t i = 0; i < house.size(); ++i)
                ASSERT_EQ(runsOf(named[i].chords), runsOf(house[i].chords));
        }
        ASSERT_EQ(chordsOf(exportText(song, ChordNames::International)), chordsOf(song))
            << toUtf8(song);
    }
}

// What longer names put between syllables is gone with them; hyphens of the words stay.
TEST(SongExport, StretchedWordsComeBack) {
    static constexpr TextView charts[] = {u"F7+ G\nri--ver\n", u"C7+ G\ngolden\n",
                                          u"C7+ F7+   G\ngolden oh ly\n", u"C     G\nwell--known\n",
                                          u"F7+   G     C7+\nriver  well--known\n"};
    for (const TextView chart : charts) {
        const Text named = exportText(chart, ChordNames::International);
        EXPECT_EQ(toUtf8(importSong(named).chart()), toUtf8(chart)) << toUtf8(named);
        EXPECT_EQ(toUtf8(importSong(chart).chart()), toUtf8(chart));
    }
    EXPECT_EQ(toUtf8(importSong(u"Cmaj7     G\nwell-----known\n").chart()),
              "C7+       G\nwell-----known\n");
}

// ChordPro says what the names are where they do not; of a text it is known that they do not.
TEST(SongExportProperty, GermanNamesAndSyllablesAreReadAgain) {
    Random random(6);
    int unclear = 0;
    for (int round = 0; round < 300; ++round) {
        const Text song = smallSong(random);
        const std::vector<Text> chords = chordsOf(song);
        for (const ChordNames names : {ChordNames::German, ChordNames::Solfege}) {
            const Text chordPro = exportChordPro(song, names);
            const Text text = exportText(song, names);
            SCOPED_TRACE(toUtf8(song) + toUtf8(chordPro));
            ASSERT_EQ(chordsOf(chordPro), chords);
            ASSERT_EQ(chordsOf(text) == chords, namesComeBack(song, text, names));
            unclear += namesComeBack(song, text, names) ? 0 : 1;
        }
    }
    EXPECT_GT(unclear, 0);
}

// What a browser shows of a page, without its head: tags gone, a line for each paragraph, chords
// in parentheses.
std::string read(TextView page) {
    std::string shown;
    const std::string text = toUtf8(page.substr(page.find(u"<body>") + 6));
    for (std::size_t at = 0; at < text.size();) {
        if (text[at] != '<') {
            shown += text[at] == '\n' ? '/' : text[at];
            ++at;
            continue;
        }
        const std::string tag = text.substr(at + 1, text.find('>', at) - at - 1);
        at += tag.size() + 2;
        if (tag == "b" || tag == "/b")
            shown += tag == "b" ? "(" : ")";
        if (tag == "span")
            shown += "[";
        if (tag == "/span")
            shown += "]";
        if ((tag == "/p" || tag == "/h1" || tag == "/h2") && text[at] == '\n') {
            shown += '\n';
            ++at;
        }
    }
    return shown;
}

TEST(SongExport, AsAPageWrapsBetweenWordsAlone) {
    const Text page =
        exportHtml(u"Row\n\nC    D7+ G  C\nRow, gently\n<b>&\n", ChordNames::House, u"x");
    EXPECT_NE(page.find(u"<title>Row</title>"), Text::npos);
    // Each piece holds its columns; the chord over "ly" has no place to wrap in front.
    EXPECT_NE(read(page).find("[(C    )/Row, ][(D7+ G  )/gently][(C)/ ]\n"), std::string::npos)
        << read(page);
    EXPECT_NE(read(page).find("[&lt;b>&amp;]\n"), std::string::npos) << read(page);
    const Text other = exportHtml(u"\n", ChordNames::House, u"a<b");
    EXPECT_NE(other.find(u"<title>a&lt;b</title>"), Text::npos);
    const Text drawn = exportHtml(u"C \uE000\nla\n", ChordNames::House, u"",
                                  [](char16_t) { return std::optional<Text>(u"<svg/>"); });
    EXPECT_NE(drawn.find(u"<svg/>"), Text::npos);
    const Text titled = exportHtml(u"Row \uE000\n\nla\n", ChordNames::House, u"",
                                   [](char16_t) { return std::optional<Text>(u"<svg/>"); });
    EXPECT_NE(titled.find(u"<title>Row</title>"), Text::npos);
    EXPECT_NE(titled.find(u"<h1>Row <svg/></h1>"), Text::npos);
    EXPECT_EQ(drawn.find(u'\uE000'), Text::npos);
}

std::size_t count(TextView text, TextView part) {
    std::size_t found = 0;
    for (std::size_t at = text.find(part); at != TextView::npos; at = text.find(part, at + 1))
        ++found;
    return found;
}

TEST(SongExport, DrawsDiagrams) {
    const struct {
        TextView frets, fingers;
        int first;
        bool isDrawn;
        std::size_t open, muted, figures;
    } cases[] = {
        {u"x32010", u"-32-1-", 1, true, 2, 1, 3},
        {u"133211", u"134211", 1, true, 0, 0, 6},
        {u"x-10-12-12-12-10", u"-13331", 10, true, 0, 1, 5},
        {u"x3201", u"-32-1-", 1, false, 0, 0, 0},
        {u"x32q10", u"-32-1-", 1, false, 0, 0, 0},
        {u"133211", u"134211", 3, false, 0, 0, 0},
    };
    for (const auto& c : cases) {
        const auto svg = diagramSvg({u"C", Text(c.frets), Text(c.fingers), c.first});
        ASSERT_EQ(svg.has_value(), c.isDrawn) << toUtf8(c.frets);
        if (!svg)
            continue;
        EXPECT_EQ(count(*svg, u"\u25CB"), c.open) << toUtf8(c.frets);
        EXPECT_EQ(count(*svg, u"\u00D7"), c.muted) << toUtf8(c.frets);
        EXPECT_EQ(count(*svg, u"#fff"), c.figures) << toUtf8(c.frets);
        EXPECT_EQ(svg->find(u"10</text>") != Text::npos, c.first == 10) << toUtf8(c.frets);
    }
}

}  // namespace
}  // namespace melvorin
