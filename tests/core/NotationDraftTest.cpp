#include "chords/NotationDraft.h"

#include <gtest/gtest.h>

#include "chords/ChartRtf.h"
#include "rtf/RtfCheck.h"
#include "rtf/RtfMap.h"

namespace melvorin {
namespace {

class FewChords : public ChordLookup {
  public:
    bool contains(TextView chord) const override { return chord == u"Am" || chord == u"C7+"; }
};

std::string labels(const std::vector<ListedChord>& list) {
    std::string text;
    for (const ListedChord& entry : list)
        text += toUtf8(entry.label) + ";";
    return text;
}

TEST(NotationDraft, ListsChordsAndTheirPlaces) {
    const FewChords lookup;
    NotationDraft draft(&lookup);
    draft.setSource(u"Intro: Am  Cmaj7\r(Am) C7alt\rla [Am]la\r");
    EXPECT_EQ(labels(draft.researched()), "Am  (2);Cmaj7 = C7+;(Am);C7alt;");
    EXPECT_EQ(labels(draft.found()), "Am  (3);C7+;");
    EXPECT_EQ(labels(draft.notFound()), "C7alt;");
    const ImportedChord& last = draft.song().chords[draft.found()[0].uses[2]];
    EXPECT_EQ(draft.sourcePosition(last.sourceLine, last.sourceIndex), 32U);
    EXPECT_EQ(draft.chartPosition(last.chartLine, last.chartIndex), 36U);
    EXPECT_EQ(chartText(draft.song().lines).chars.substr(36, 2), u"Am");
    EXPECT_EQ(toUtf8(draft.summary()),
              "3 lines: 1 chords, 1 lyrics, 1 section.  1 line will not change key.");
    // Without a dictionary what can be read is found.
    NotationDraft plain;
    plain.setSource(u"Am G7sus4 C7alt");
    EXPECT_EQ(labels(plain.found()) + labels(plain.notFound()), "Am;G4/7;C7alt;");
}

// What a key change takes is red. To a key change a diagram is its letter; to the importer it is
// nothing to read, wherever it stands.
TEST(NotationDraft, ColoursWhatChangesKey) {
    SongDiagrams diagrams;
    ASSERT_EQ(diagrams.add({u'A', u"Melvorin 05", {}, {}}, u"a \uE000 already"), u'\uE001');
    ASSERT_EQ(diagrams.add({u'q', u"Melvorin 05", {}, {}}, u""), u'\uE002');
    const struct {
        TextView line;
        std::string chart;  // of each line * where it is red
        std::string remark;
    } cases[] = {
        {u"Am  Cmaj7", "*Am  C7+", ""},
        {u"Am  C7alt", "Am  C7alt", "will not change key; has chords that cannot be read"},
        {u"Am\uE001 Cmaj7", "*Am\uE001 C7+", ""},
        {u"Am \uE002 G-D", "Am \uE002 G D", "will not change key; separators left out"},
        {u"\uE001 \uE001", "\uE001 \uE001", ""},
        {u"Dad \uE001", "Dad \uE001", "looks like chords to a key change"},
        {u"Intro: \uE001", "Intro: \uE001", ""},
        {u"[Am]la \uE001 [G]la", "*Am   G|la \uE001 la", ""},
    };
    for (const auto& [line, chart, remark] : cases) {
        NotationDraft draft;
        draft.setDiagrams(diagrams);
        draft.setSource(Text(line));
        std::string lines;
        for (const ImportedLine& made : draft.colouredLines())
            lines += (lines.empty() ? "" : "|") + std::string(made.isChords ? "*" : "") +
                     toUtf8(made.text);
        EXPECT_EQ(lines, toUtf8(fromUtf8(chart)));
        EXPECT_EQ(toUtf8(remarkText(draft.song().source[0].remarks)), remark) << toUtf8(line);
        EXPECT_EQ(labels(draft.researched()).find("\uE001"), std::string::npos);
    }
    // Below chords, diagrams are no words that these are moved to.
    NotationDraft draft;
    draft.setSource(u"Am  \uE001  C7alt\r\uE001 \uE001");
    EXPECT_FALSE(draft.colouredLines()[0].isChords);
}

TEST(NotationDraft, VerdictsStayWithTheirLines) {
    NotationDraft draft;
    draft.setSource(u"A\rB\rC\rwords\rD");
    draft.choose({0, 2, 4}, LineVerdict::Lyrics);
    const auto chosen = [&] {
        std::string lines;
        for (const SourceLine& line : draft.song().source)
            lines += line.chosen ? toUtf8(line.text) : ".";
        return lines;
    };
    EXPECT_EQ(chosen(), "A.C.D");
    draft.setSource(u"A\rnew\rB\rC\rwords\rD");
    EXPECT_EQ(chosen(), "A..C.D");
    draft.setSource(u"A\rwords\rD");
    EXPECT_EQ(chosen(), "A.D");
    draft.choose({2}, std::nullopt);
    EXPECT_EQ(chosen(), "A..");
    draft.setSource(u"");
    EXPECT_EQ(chosen(), "");
    draft.setSource(u"A");
    EXPECT_EQ(chosen(), ".");
}

TEST(ChartRtf, IsTheChartInTheFaceWithColouredChords) {
    const Text song = u"C\u00B0  {G}\nw\u00F6rds \\ \u65E5 \u2019\U0001F3B5\u0001\n\nG";
    const SongImport imported = importSong(song, {{0, LineVerdict::Chords}});
    const std::string rtf = chartRtf(imported.lines, u"Lucida Console", 10);
    EXPECT_EQ(checkRtf(rtf).kind, RtfVerdict::Kind::Ok);
    const auto map = RtfMap::parse(rtf);
    ASSERT_TRUE(map);
    EXPECT_EQ(toUtf8(map->text()), toUtf8(chartText(imported.lines).chars));
    EXPECT_NE(map->text().find(u"\U0001F3B5 \r"), Text::npos);
    EXPECT_EQ(map->fontNameAt(0), u"Lucida Console");
    EXPECT_NE(rtf.find("\\cf2 C\\'b0"), std::string::npos);
    EXPECT_NE(rtf.find("\\cf1 w\\'f6rds"), std::string::npos);
}

}  // namespace
}  // namespace melvorin
