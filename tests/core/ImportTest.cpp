#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "Checks.h"
#include "base/TextCodec.h"
#include "chords/CellWidth.h"
#include "chords/ChordLine.h"
#include "chords/ChordProExport.h"
#include "chords/ChordSpelling.h"
#include "chords/SongImport.h"
#include "chords/SuffixNormaliser.h"

namespace melvorin {
namespace {

const std::filesystem::path kFolder = MELVORIN_SOURCE_DIR "/tests/core";

std::string bytesOf(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf();
    return bytes.str();
}

// The song as somebody pastes it, its verdicts and its chart: NAME.in, NAME.out. A result that
// differs is left in the temporary folder, for a person to look at and to take over.
std::vector<std::filesystem::path> songs() {
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(kFolder / "songs")) {
        if (entry.path().extension() == ".in")
            paths.push_back(entry.path());
    }
    return paths;
}

Text describe(const SongImport& song) {
    Text text;
    for (const SourceLine& line : song.source) {
        const Text remark = remarkText(line.remarks);
        text.append(nameOf(line.verdict)).append(remark.empty() ? u"" : u": ").append(remark);
        text += u'\n';
    }
    return text.append(u"\n").append(song.chart());
}

TEST(Import, SongsBecomeTheseCharts) {
    EXPECT_GE(songs().size(), 30U);
    for (auto path : songs()) {
        const Text source = fromUtf8(bytesOf(path));
        const std::string result = toUtf8(describe(importSong(source)));
        path.replace_extension(".out");
        if (result == bytesOf(path))
            continue;
        const auto fresh =
            std::filesystem::temp_directory_path() / path.filename().replace_extension(".new");
        std::ofstream(fresh, std::ios::binary) << result;
        ADD_FAILURE() << path << " differs; see " << fresh << "\n" << result;
    }
}

// A chart is a song too, and its own chart; and it comes back from ChordPro, where two lines that
// become one leave only one line end.
TEST(Import, ChartsComeBack) {
    for (const auto& path : songs()) {
        const Text source = fromUtf8(bytesOf(path));
        const Text chart = toCrLf(importSong(source).chart()).chars;
        EXPECT_EQ(toUtf8(importSong(chart).chart()), toUtf8(chart)) << path;
        const Text exported = exportChordPro(chart);
        const Text back = toCrLf(importSong(exported).chart()).chars;
        EXPECT_EQ(toUtf8(fuzz::withoutTrailingBlanks(back)),
                  toUtf8(fuzz::withoutTrailingBlanks(chart)))
            << path << "\n"
            << toUtf8(exported);
    }
}

TEST(Import, ExportPutsChordsToTheirSyllables) {
    constexpr TextView chart =
        u"Barbara Allen\r\n\r\nChorus:\r\n   D       G          D7+\r\nIn Scarlet town where I"
        u"\r\n  G   C\r\n\r\ne|-2-2-3-2---|\r\n# [Am] {x}\r\n  G\r\n#1 hit\r\n";
    EXPECT_EQ(toUtf8(exportChordPro(chart)),
              "{title: Barbara Allen}\r\n\r\n{start_of_chorus: Chorus:}\r\n"
              "In [D]Scarlet [G]town where [D7+]I\r\n  [G]    [C]\r\n{end_of_chorus}\r\n\r\n"
              "{start_of_tab}\r\ne|-2-2-3-2---|\r\n{end_of_tab}\r\n{comment: # [Am] {x}}\r\n  "
              "[G]\r\n{comment: #1 hit}\r\n");
}

// What came from directives goes back to them.
TEST(Import, ExportKeepsDirectives) {
    constexpr TextView song =
        u"{title: Row}\n{artist: nobody}\n{key: G}\n{capo: 2}\n\n{start_of_verse: Verse 1}\n"
        u"[G]Row, [C]row\n{end_of_verse}\n\n{start_of_chorus}\n[G]gently\n{end_of_chorus}";
    EXPECT_EQ(toUtf8(exportChordPro(importSong(song).chart())), toUtf8(song));
}

// Each chord and each bracket that cannot be read has its syllable again, and no section ends
// there.
TEST(Import, SyllablesKeepWhatStandsOverThem) {
    static constexpr TextView songs[] = {
        u"{title: T}\n\n[C]Hal-[Gm7]le-[Am7]lu-[F]jah, [C]ev-[Em7]er-[Am7]more",
        u"{title: T}\n\n[C]ri[Gm7]ver - [Am7]so the [F]well-[C]known",
        u"{title: T}\n\n{start_of_verse: Verse 1}\n[C]la [Lick 1]la\n[C7?]la\nla [riff]la\n[G]la la"
        u"\n{end_of_verse}"};
    for (const TextView song : songs)
        EXPECT_EQ(toUtf8(exportChordPro(importSong(song).chart())), toUtf8(song));
    const SongImport close = importSong(
        u"{title: T}\n\n{start_of_verse}\n[C]la [C7?]la [Clyd]la\n[riff]la\n{end_of_verse}\n");
    EXPECT_EQ(toUtf8(close.chart()), "T\n\nVerse\n   [C7?] [Clyd]\nC\nla la    la\n [riff]\n la\n");
    EXPECT_EQ(
        toUtf8(exportChordPro(close.chart())),
        "{title: T}\n\n{start_of_verse}\n[C]la [C7?]la    [Clyd]la\n [riff]la\n{end_of_verse}\n");
}

TEST(Import, VerdictsCanBeChosen) {
    const Text song = u"A bad cab\nAm  G\nbe [C]good\n{c: x}";
    const SongImport chosen = importSong(song, {{0, LineVerdict::Chords},
                                                {1, LineVerdict::Lyrics},
                                                {2, LineVerdict::Tablature},
                                                {3, LineVerdict::Lyrics},
                                                {99, LineVerdict::Lyrics}});
    EXPECT_EQ(toUtf8(chosen.chart()), "  bad cab\nA\nAm  G\nbe [C]good\n{c: x}");
    EXPECT_TRUE(chosen.source[3].chosen);
    ASSERT_EQ(chosen.chords.size(), 1U);
    EXPECT_EQ(chosen.chords[0].chord, u"A");
    EXPECT_NE(chosen.source[1].remarks & WillChangeWithKey, 0U);
}

// The table of spellings for musicians: what is found, and what a chart has.
TEST(Import, ChordsInTheWild) {
    std::ifstream file(kFolder / "spellings.txt");
    std::string line;
    int count = 0;
    while (std::getline(file, line)) {
        const std::size_t tab = line.find('\t');
        if (line.starts_with("# ") || tab == std::string::npos)
            continue;
        ++count;
        const auto found = houseSpelling(fromUtf8(line.substr(0, tab)));
        ASSERT_EQ(found ? toUtf8(*found) : "-", line.substr(tab + 1)) << line;
        if (found) {
            EXPECT_TRUE(IsChordLine(*found)) << line;
            for (const TextView root : {u"", u"A", u"Bb", u"C#", u"D", u"E", u"F", u"G#"}) {
                const bool natural = (*found)[0] == u'C' && found->find_first_of(u"#b") != 1;
                const Text chord =
                    natural && !root.empty() ? Text(root) + found->substr(1) : *found;
                const bool hasBass = chord.find_first_of(u"ABCDEFG", 1) != Text::npos;
                if (chord == *found || !hasBass) {
                    EXPECT_EQ(normaliseSuffixes(chord), chord) << line;
                    EXPECT_EQ(houseSpelling(chord), chord) << line;
                }
            }
        }
    }
    EXPECT_GE(count, 200);
}

// Every root takes every suffix the same way.
TEST(Import, RootsAndBassesAreSpelled) {
    const struct {
        TextView written, chord;
    } cases[] = {{u"C\u266D\u266Dm7", u"Bbm7"},
                 {u"G##", u"A"},
                 {u"Dbb5", u"Db5b"},
                 {u"E#m7/B#", u"Fm7/C"},
                 {u"F\u266F/A\u266F", u"F#/A#"},
                 {u"Abm/Cb", u"Abm/B"},
                 {u"G#/3", u"G#/C"},
                 {u"Bbm/3", u"Bbm/Db"}};
    for (const auto& example : cases)
        EXPECT_EQ(houseSpelling(example.written), Text(example.chord)) << toUtf8(example.written);
}

TEST(Cells, FollowTheScreen) {
    const struct {
        TextView line;
        std::size_t cells;
    } cases[] = {{u"", 0},
                 {u"abc", 3},
                 {u"\u65E5\u672C", 4},
                 {u"e\u0301", 1},
                 {u"a\tb", 9},
                 {u"\u65E5\t.", 9},
                 {u"\xD83C\xDFB5", 2},
                 {u"\xD83C", 1},
                 {u"\u05D4\u05B4", 1},
                 {u"\u3000\uFF21", 4},
                 {u"\u200B\uFEFF", 0}};
    for (const auto& example : cases)
        EXPECT_EQ(cellsOf(example.line), example.cells) << toUtf8(example.line);
}

// Whatever is pasted: no hang, nothing lost, the reports true.
TEST(Import, AnyTextHolds) {
    std::mt19937 random(4);
    static constexpr TextView parts[] = {u"Am",     u"G7",      u"[",
                                         u"]",      u"{",       u"}",
                                         u"c:",     u" ",       u"  ",
                                         u"\n",     u"\r\n",    u"|",
                                         u"--",     u"\t",      u"x2",
                                         u"N.C.",   u"la la",   u"sot",
                                         u"\u65E5", u"\u0301",  u"(",
                                         u")",      u"/",       u"Intro:",
                                         u"C7b9",   u"#",       u"\xD83C",
                                         u"\xA0",   u"e|",      u"C7alt",
                                         u",",      u"word",    u"DO",
                                         u"SOL7",   u"[*x]",    u"ri--ver",
                                         u"3/4",    u"} 2",     u"\u2014\u2014",
                                         u"a",      u"C7?",     u"C!",
                                         u" . ",    u"C\u2077", u"\u201C",
                                         u"C7-",    u"|G",      u"Hes"};
    for (int i = 0; i < 4000; ++i) {
        Text song;
        for (std::size_t count = random() % 24; count > 0; --count)
            song += parts[random() % std::size(parts)];
        fuzz::checkImport(song);
        fuzz::checkNormaliser(song);
    }
    for (const auto& path : songs())
        fuzz::checkNormaliser(fromUtf8(bytesOf(path)));
}

TEST(Import, LongLinesAndManyLinesComeBack) {
    for (const TextView part :
         {u"[", u"[Am]", u"word ", u"Am  G7 ", u"Am-", u"(", u"{c", u"-", u"\t", u"\u65E5", u"x",
          u"Am\nla [G]la\n", u"|: ", u"[Am ", u"C7M/"}) {
        Text song;
        while (song.size() < (1U << 17))
            song += part;
        const SongImport imported = importSong(song);
        EXPECT_FALSE(imported.lines.empty());
        exportChordPro(imported.chart());
    }
}

}  // namespace
}  // namespace melvorin
