// Lines of words and lines of chords are told from each other, and no letter of the words is lost.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "base/TextCodec.h"
#include "chords/CellWidth.h"
#include "chords/ChordProExport.h"
#include "chords/SongImport.h"

namespace melvorin {
namespace {

std::vector<Text> blocksOfWords() {
    std::ifstream file(MELVORIN_SOURCE_DIR "/tests/core/words.txt", std::ios::binary);
    std::vector<Text> blocks;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("== "))
            blocks.emplace_back();
        else if (!blocks.empty())
            blocks.back() += fromUtf8(line) + u"\n";
    }
    return blocks;
}

// Alone, and in songs of every naming, in which they stand apart from the chords.
TEST(Lines, WordsAreNoChords) {
    static constexpr TextView songs[] = {u"",
                                         u"C  G7  Am\nla la\n\n\n\n",
                                         u"Hm  Fis  B7\nla la\n\n\n\n",
                                         u"DO  SOL7  LA-\nla la\n\n\n\n",
                                         u"Re  Sol  La7\nla la\nMim  La7\nla\n\n\n\n",
                                         u"a  d  G7\nla la\na  C\nla\n\n\n\n"};
    const std::vector<Text> blocks = blocksOfWords();
    EXPECT_GE(blocks.size(), 24U);
    for (const Text& block : blocks) {
        for (const TextView before : songs) {
            const Text song = Text(before) + block;
            const SongImport read = importSong(song);
            const std::size_t own = splitLines(before).size() - 1;
            for (const ImportedChord& chord : read.chords)
                EXPECT_LT(chord.sourceLine, own)
                    << toUtf8(read.source[chord.sourceLine].text) << " behind " << toUtf8(before);
        }
        for (const TextView line : splitLines(block))
            EXPECT_TRUE(importSong(line).chords.empty()) << toUtf8(line);
    }
}

bool isLetter(char16_t c) {
    return (c >= u'a' && c <= u'z') || c >= 0xC0;
}

struct InventedSong {
    Text source;
    Text letters;                 // of the words
    std::vector<char16_t> under;  // the letter that each chord is to stand over
};

// ChordPro, with chords in front of letters anywhere in words, and other brackets between them.
InventedSong inventedSong(std::mt19937& random) {
    static constexpr TextView chords[] = {u"C", u"Am7", u"F#m7b5", u"Bb/D", u"G", u"Esus4"};
    static constexpr TextView others[] = {u"[Qux]", u"[*slow]", u"[x2]", u"]", u"- ", u", "};
    InventedSong song;
    song.source = u"{title: T}\n";
    for (auto lines = 1 + random() % 4; lines > 0; --lines) {
        for (auto words = 1 + random() % 6; words > 0; --words) {
            for (auto i = 1 + random() % 7; i > 0; --i) {
                const auto letter = static_cast<char16_t>(random() % 6 == 0 ? 0x430 + random() % 32
                                                                            : u'i' + random() % 17);
                if (random() % 3 == 0) {
                    song.source.append(u"[").append(chords[random() % 6]).append(u"]");
                    song.under.push_back(letter);
                }
                song.source += letter;
                song.letters += letter;
            }
            song.source += u' ';
            if (random() % 8 == 0)
                song.source.append(others[random() % std::size(others)]);
        }
        song.source += u'\n';
    }
    return song;
}

TEST(LinesProperty, EveryLetterSurvivesAndEveryChordStandsOverItsOwn) {
    std::mt19937 random(22);
    for (int round = 0; round < 1500; ++round) {
        const InventedSong song = inventedSong(random);
        SCOPED_TRACE(toUtf8(song.source));
        const SongImport read = importSong(song.source);
        Text letters;
        for (const SourceLine& line : read.source) {
            if (line.verdict == LineVerdict::Directive)
                continue;
            const Text& words = read.lines[line.firstChartLine + line.chartLines - 1].text;
            std::copy_if(words.begin(), words.end(), std::back_inserter(letters), isLetter);
        }
        ASSERT_EQ(toUtf8(letters), toUtf8(song.letters));
        ASSERT_EQ(read.chords.size(), song.under.size());
        for (std::size_t i = 0; i < song.under.size(); ++i) {
            const Text& words = read.lines[read.chords[i].chartLine + 1].text;
            ASSERT_LT(read.chords[i].chartIndex, words.size()) << toUtf8(read.chart());
            ASSERT_EQ(words[read.chords[i].chartIndex], song.under[i]) << toUtf8(read.chart());
        }
    }
}

TEST(Lines, StretchedWordsAreJoinedOnExport) {
    static constexpr TextView lines[] = {u"[Am7]ri[G]ver", u"[Dm]A[G7]ma[C7+]zing",
                                         u"ne[Am][G][F]ver", u"[Am7]well--[G]known",
                                         u"[C]la [G]la l[D]a"};
    for (const TextView line : lines) {
        const Text song = Text(line) + u"\n";
        EXPECT_EQ(toUtf8(exportChordPro(importSong(song).chart())), toUtf8(song));
    }
}

// Long lines of what makes the importer look ahead; what it could not read, it says.
TEST(Lines, LongOnesAreReadAndTellWhatWasNot) {
    const struct {
        TextView part;
        unsigned remark;
    } cases[] = {{u"[", 0},
                 {u"[Am]ri[", HasLooseBracket},
                 {u"[Am][G]", 0},
                 {u"a--[C]b--", 0},
                 {u"[C]la [*slow] [Qux]", HasUnknownChords},
                 {u"DO  SOL- ", 0},
                 {u"\u2014\u2014|", 0},
                 {TextView(u"C\0G  ", 5), 0},
                 {u"(C G x 4 ", 0},
                 {u"3/4 | C ", 0}};
    for (const auto& c : cases) {
        Text song;
        while (song.size() < 1U << 17)
            song += c.part;
        const SongImport read = importSong(song);
        ASSERT_FALSE(read.lines.empty());
        EXPECT_EQ(read.source[0].remarks & c.remark, c.remark) << toUtf8(c.part);
    }
}

}  // namespace
}  // namespace melvorin
