// ChordPro songs become charts, and come back with their directives.
#include <gtest/gtest.h>

#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "base/TextCodec.h"
#include "chords/CellWidth.h"
#include "chords/ChordProExport.h"
#include "chords/SongExport.h"
#include "chords/SongImport.h"

namespace melvorin {
namespace {

// The song, its chart, and the song again where that is another.
TEST(Directives, HaveLinesInTheChart) {
    const struct {
        const char* name;
        TextView song, chart, back = {};
    } cases[] = {
        {"head", u"{title: Row}\n{subtitle: A round}\n{artist: nobody}\n{key: G}\n\n[G]Row, row\n",
         u"Row\nA round\nArtist: nobody\nKey: G\n\nG\nRow, row\n"},
        {"title above chords", u"{title: Row}\n[G]Row, row\n", u"Row\n\nG\nRow, row\n",
         u"{title: Row}\n\n[G]Row, row\n"},
        {"title above a remark", u"{title: Row}\n{comment: softly}\n[G]Row, row\n",
         u"Row\n* softly\nG\nRow, row\n"},
        {"remarks", u"{c: slower}\n{ci: softly}\n{cb: all}\n{highlight: now}\n[G]Row\n",
         u"* slower\n~ softly\n| all |\n** now\nG\nRow\n",
         u"{comment: slower}\n{comment_italic: softly}\n{comment_box: all}\n{highlight: now}\n"
         u"[G]Row\n"},
        {"chords in a remark", u"{comment: Am G}\n[G]Row, row\n",
         u"{comment: Am G}\nG\nRow, row\n"},
        {"chords between other things in remarks",
         u"{title: Row}\n\n[G]Row\n{comment: Don't [Am] stop}\n{comment: | Am | G |}\n"
         u"{c: Verse [Am] [G]}\n{comment: Intro: Am G}\n{comment: N.C.}\n[C]Row\n",
         u"Row\n\nG\nRow\n{comment: Don't [Am] stop}\n{comment: | Am | G |}\n"
         u"{c: Verse [Am] [G]}\n{comment: Intro: Am G}\n{comment: N.C.}\nC\nRow\n"},
        {"a title that is kept", u"{title: Row [2]}\nGently down\n\n[G]Row\n",
         u"{title: Row [2]}\nGently down\n\nG\nRow\n"},
        {"a section without a title", u"{start_of_verse: [x]}\nGently down\n\n[G]Row\n",
         u"{start_of_verse: [x]}\nGently down\n\nG\nRow\n"},
        {"labels as remarks", u"{comment: Intro}\n[G]  [C]\n\n[G]Row, row\n",
         u"Intro\nG C\n\nG\nRow, row\n"},
        {"chords above a remark", u"[C][G][D]\n{comment: softly now}\n[C]Row, row\n",
         u"C G D\n* softly now\nC\nRow, row\n",
         u"[C]  [G]  [D]\n{comment: softly now}\n[C]Row, row\n"},
        {"grid above a remark",
         u"[C]Row\n\n{start_of_grid}\n| C . | G . |\n{end_of_grid}\n{ci: on}\n",
         u"C\nRow\n\n{start_of_grid}\n| C . | G . |\n{end_of_grid}\n~ on\n",
         u"[C]Row\n\n{start_of_grid}\n| C . | G . |\n{end_of_grid}\n{comment_italic: on}\n"},
        {"chords above marks", u"[C]  [G]\n[*softly]Row, [D]row\n[N.C.]gently [G]down\n",
         u"C G\n*softly\n     D\nRow, row\nN.C.\n       G\ngently down\n"},
        {"marks above words", u"[G]Row\n[*let it ring]Row, row\n",
         u"G\nRow\n*let it ring\nRow, row\n"},
        {"sections",
         u"{start_of_chorus: Refrain}\n[G]Row\n{end_of_chorus}\n\n{start_of_verse: First}\n[C]Row\n"
         u"{end_of_verse}\n\n{chorus}\n",
         u"Refrain\nG\nRow\n\nVerse: First\nC\nRow\n\nChorus\n"},
        {"sections side by side", u"{sov}\n[G]Row\n{eov}\n[C]Row\n{chorus: Last}\n{new_page}\n",
         u"Verse\nG\nRow\n\nC\nRow\nChorus: Last\n\n{new_page}\n",
         u"{start_of_verse}\n[G]Row\n{end_of_verse}\n\n[C]Row\n{chorus: Last}\n\n{new_page}\n"},
        {"a blank line in a section", u"{start_of_verse}\n[G]Row\n\n[C]Row\n{end_of_verse}\n",
         u"Verse\nG\nRow\n\nC\nRow\n{end_of_verse}\n"},
        {"tablature in a section",
         u"{start_of_bridge}\n[G]Row\n{start_of_tab}\ne|--0--2--|\n{end_of_tab}\n{end_of_bridge}\n",
         u"Bridge\nG\nRow\ne|--0--2--|\n{end_of_bridge}\n"},
        {"a named tablature", u"{start_of_tab: Riff}\ne|--0--2--|\n{end_of_tab}\n[G]Row, row\n",
         u"{start_of_tab: Riff}\ne|--0--2--|\n{end_of_tab}\nG\nRow, row\n"},
        {"for programs",
         u"# by hand\n{title: Row}\n{columns: 2}\n{define: Am7 base-fret 1 frets x 0 2 0 1 0}\n\n"
         u"[G]Row, row\n{new_page}\n[C]Row\n",
         u"{# by hand}\nRow\n{columns: 2}\n{define: Am7 base-fret 1 frets x 0 2 0 1 0}\n\n"
         u"G\nRow, row\n{new_page}\nC\nRow\n"},
        {"a heading with a number sign", u"[G]Row\n{comment: # Verse 1}\n[C]Row\n",
         u"G\nRow\n# Verse 1\nC\nRow\n"},
        {"facts below chords", u"[G]Row, [C]row\n{key: D}\n[D]Row\n{copyright: me}\n",
         u"G    C\nRow, row\nKey: D\nD\nRow\n{copyright: me}\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Text chart = importSong(c.song).chart();
        EXPECT_EQ(toUtf8(chart), toUtf8(c.chart));
        EXPECT_EQ(toUtf8(exportChordPro(chart)), toUtf8(c.back.empty() ? c.song : c.back));
        EXPECT_EQ(toUtf8(importSong(chart).chart()), toUtf8(chart));
    }
}

TEST(Directives, ArePagesWithoutThoseForPrograms) {
    const Text page = exportHtml(
        u"{# by hand}\nRow\n{columns: 2}\n\nG\nRow, row\n{new_page}\n{comment: Am G}\n* softly\n",
        ChordNames::House, u"x");
    EXPECT_NE(page.find(u"<h1>Row</h1>"), Text::npos);
    EXPECT_EQ(page.find(u"columns"), Text::npos);
    EXPECT_EQ(page.find(u"by hand"), Text::npos);
    EXPECT_EQ(page.find(u"new_page"), Text::npos);
    EXPECT_NE(page.find(u"Am "), Text::npos);
    EXPECT_NE(page.find(u"softly"), Text::npos);
}

// ---- Generated songs ---------------------------------------------------------------------------

using Random = std::mt19937;

template <std::size_t count>
Text oneOf(const TextView (&texts)[count], Random& random) {
    return Text(texts[random() % count]);
}

constexpr TextView kWords[] = {u"Row",     u"gently", u"down", u"the",  u"stream,",
                               u"merrily", u"life's", u"but",  u"dream"};
constexpr TextView kChords[] = {u"C", u"Am7", u"F#m", u"Bb/D", u"G7", u"D4"};

Text wordsOf(Random& random) {
    Text words = oneOf(kWords, random);
    for (auto more = 1 + random() % 4; more > 0; --more)
        words.append(u" ").append(oneOf(kWords, random));
    return words;
}

// Words with chords in front of some of them, the first one always; no two run into each other.
Text pairOf(Random& random) {
    Text line;
    for (auto words = 1 + random() % 4; words > 0; --words) {
        if (line.empty() || random() % 2 == 0)
            line.append(u"[").append(oneOf(kChords, random)).append(u"]");
        line.append(oneOf(kWords, random)).append(words > 1 ? u" " : u"");
    }
    return line;
}

Text directiveOf(Random& random) {
    static constexpr TextView valued[] = {u"comment",   u"c",    u"comment_italic", u"ci",
                                          u"highlight", u"cb",   u"title",          u"subtitle",
                                          u"artist",    u"meta", u"x_tool"};
    static constexpr TextView others[] = {u"{new_page}",
                                          u"{columns: 2}",
                                          u"{key: G}",
                                          u"{capo: 2}",
                                          u"{tempo: 90}",
                                          u"{define: Am7 base-fret 1 frets x 0 2 0 1 0}",
                                          u"{chorus}",
                                          u"{comment: Am G}",
                                          u"{column_break}",
                                          u"# written by hand",
                                          u"{time: 3/4}",
                                          u"{textsize: 12}",
                                          u"{comment: Intro:}",
                                          u"{start_of_grid}\n| C . | G . |\n{end_of_grid}",
                                          u"{start_of_tab}\ne|--0--2--|\nB|--1--3--|\n{end_of_tab}",
                                          u"{start_of_tab: Riff}\ne|--0--2--|\n{end_of_tab}"};
    if (random() % 2 == 0)
        return oneOf(others, random);
    return Text(u"{").append(oneOf(valued, random)).append(u": ").append(wordsOf(random)) + u"}";
}

void addBody(Text& song, Random& random, bool inSection) {
    for (auto lines = 1 + random() % 5; lines > 0; --lines) {
        switch (random() % 8) {
            case 0:
                song.append(directiveOf(random)).append(u"\n");
                break;
            case 1:
                // Chords alone: what is words below them would be theirs.
                song.append(u"[C]  [G]  [D]\n")
                    .append(random() % 2 == 0 ? u"" : u"{c: softly now}")
                    .append(u"\n");
                break;
            case 2:
                song.append(u"[*softly]").append(pairOf(random)).append(u"\n");
                break;
            case 3:
                if (!inSection || random() % 4 == 0)
                    song.append(u"\n");
                break;
            default:
                song.append(pairOf(random)).append(u"\n");
        }
    }
}

Text songOf(Random& random) {
    static constexpr TextView sections[] = {u"chorus", u"verse", u"bridge"};
    static constexpr TextView labels[] = {u"", u": Refrain", u": Verse 2", u": All", u": Part two"};
    Text song;
    for (auto heads = random() % 5; heads > 0; --heads)
        song.append(directiveOf(random)).append(u"\n");
    for (auto parts = 1 + random() % 4; parts > 0; --parts) {
        if (random() % 2 == 0)
            song.append(u"\n");
        if (random() % 2 == 0) {
            addBody(song, random, false);
            continue;
        }
        const Text section = oneOf(sections, random);
        song.append(u"{start_of_").append(section).append(oneOf(labels, random)).append(u"}\n");
        addBody(song, random, true);
        song.append(u"{end_of_").append(section).append(u"}\n");
    }
    return song;
}

// A gap between words is as wide as the chords above it need.
Text withNarrowGaps(TextView line) {
    Text narrow;
    for (const char16_t c : line) {
        if (c != u' ' || !narrow.ends_with(u' '))
            narrow += c;
    }
    return narrow;
}

// The directives in their long form, and the lines with chords, blanks at their ends left out.
std::vector<std::string> contentOf(TextView song) {
    std::vector<std::string> content;
    for (const TextView line : splitLines(song)) {
        // In a song without words below chords a remark stays in its braces.
        const Text text = line.starts_with(u"# ") ? Text(u"{").append(line).append(u"}")
                                                  : Text(trimmedRight(line));
        const auto directive = readDirective(text);
        if (directive)
            content.push_back(toUtf8(directive->name) + ": " + toUtf8(directive->value));
        else if (!text.empty())
            content.push_back(toUtf8(withNarrowGaps(text)));
    }
    return content;
}

TEST(DirectivesProperty, ComeBackInTheirOrderWithTheChords) {
    Random random(31);
    for (int round = 0; round < 1000; ++round) {
        const Text song = songOf(random);
        const Text chart = importSong(song).chart();
        const Text back = exportChordPro(chart);
        SCOPED_TRACE(toUtf8(song) + "----\n" + toUtf8(chart) + "----\n" + toUtf8(back));
        ASSERT_EQ(contentOf(back), contentOf(song));
        ASSERT_EQ(toUtf8(importSong(chart).chart()), toUtf8(chart));
        ASSERT_EQ(toUtf8(importSong(back).chart()), toUtf8(chart));
    }
}

}  // namespace
}  // namespace melvorin
