#include "chords/TakenSong.h"

#include <gtest/gtest.h>

#include <functional>

#include "MappedEditor.h"
#include "RtfColours.h"
#include "RtfSamples.h"
#include "chords/NotationDraft.h"

namespace melvorin {
namespace {

CreatedChart chartOf(const TakenSong& song, TextView corrected) {
    NotationDraft draft;
    draft.setDiagrams(song.diagrams);
    draft.setSource(Text(corrected));
    return {draft.colouredLines(), u"Courier New", 10, song.diagrams, Text(corrected)};
}

using Correct = std::function<void(Text& text)>;

bool tidy(Editor& editor, const Correct& correct = {}) {
    const TakenSong song = takeSong(editor);
    Text text = song.text;
    if (correct)
        correct(text);
    return putInPlace(editor, song, chartOf(song, text));
}

// In red, behind the fonts.
std::string withRed(const std::string& body) {
    std::string rtf = MappedEditor::document(body);
    return rtf.insert(rtf.find("\\pard"), "{\\colortbl;\\red192\\green0\\blue0;}");
}

// What is not changed is there byte for byte, and all comes by one load.
TEST(TakenSong, GoesBackWithItsFormats) {
    const auto drop = [](TextView what) {
        return [what](Text& text) { text.erase(text.find(what), what.size()); };
    };
    const struct {
        std::string body;
        std::string expected;  // with the colours of red lines
        Correct correct;
    } cases[] = {
        // A chord spelled anew; the line of words is as it was.
        {"{\\i Cmaj7   G}\\par {\\b la}\\~x\\par",
         "{\\i \\cf1 C7+     G}\\par {\\b la} x\\par",
         {}},
        // Chords in brackets go above their words, which keep what is bold in them.
        {"x\\par [Am]La \\b [G]la\\b0\\par end",
         "x\\par \\cf1 Am G\\cf0 \\par La \\b la\\b0\\par end",
         {}},
        // A line that is left out goes with its end, also the last ones.
        {"\\{eog\\}\\par\\b la\\par\\{eot\\}\\par\\{eoc\\}\\par", "\\b la\\par", {}},
        {"la\\par\\i lo\\par le", "la\\par\\i le", drop(u"lo\r")},
        // Diagrams are no letters: the first line is left alone, the second goes around its own.
        {"{\\f1 A B}\\par Cmaj7 {\\f1 d} G\\par",
         "{\\f1 A B}\\par \\cf1 C7+   \\cf0 {\\f1 d}\\cf1  G\\cf0 \\par",
         {}},
        // One whose letter is none of chords keeps a key change from the line, so it is not red.
        {"Cmaj7 {\\f1 q}\\par", "C7+   {\\f1 q}\\par", {}},
        // Words beside a diagram, and a picture, take the format of writing.
        {"{\\f1 d}la\\par", "{\\f1 d}oh la\\par", [](Text& text) { text.insert(1, u"oh "); }},
        {"{\\pict 01}la\\par", "{\\pict 01}lo\\par", [](Text& text) { text.back() = u'o'; }},
    };
    for (const auto& [body, expected, correct] : cases) {
        MappedEditor editor(body);
        EXPECT_TRUE(tidy(editor, correct)) << body;
        const bool isRed = expected.find("\\cf1") != std::string::npos;
        EXPECT_EQ(editor.rtf(), isRed ? withRed(expected) : MappedEditor::document(expected));
        EXPECT_EQ(editor.loads, 2) << body;
        EXPECT_EQ(editor.done, u"") << body;
        EXPECT_EQ(editor.work, 0) << body;
    }
}

TEST(TakenSong, IsLeftAloneWhereNothingChanges) {
    for (const std::string body : {"", "\\par\\par", "Am  {\\f1 q} G\\par\\b la la\\par",
                                   "\\{\\par", "la\\line Am\\par\\par"}) {
        MappedEditor editor(body);
        editor.select({1, 1});
        EXPECT_FALSE(tidy(editor)) << body;
        EXPECT_EQ(editor.loads, 1) << body;
        EXPECT_EQ(editor.selected, (Selection{1, 1})) << body;
    }
}

TEST(TakenSong, IsTheSelectedLinesOrAll) {
    const struct {
        TextView document;
        Selection selection;
        TextView taken;
        bool isSelection;
        Selection place;
    } cases[] = {
        {u"", {0, 0}, u"", false, {0, 0}},
        {u" \r\t\r", {0, 2}, u"", false, {0, 4}},
        {u"one\rtwo\rsix", {5, 5}, u"one\rtwo\rsix", false, {0, 11}},
        {u"one\rtwo\rsix", {4, 7}, u"two", true, {4, 7}},
        {u"one\rtwo\rsix", {4, 8}, u"two", true, {4, 7}},
        {u"one\rtwo\rsix", {1, 5}, u"one\rtwo", true, {0, 7}},
        {u"one\vtwo\rsix", {5, 6}, u"two", true, {4, 7}},
        {u"one\r\rsix", {4, 5}, u"one\r\rsix", false, {0, 8}},
        {u"one\rtwo", {0, 8}, u"one\rtwo", true, {0, 7}},
        {u"a\r\r\nb\tc\t\r\nd", {0, 0}, u"a\r\rb\tc\t\rd", false, {0, 11}},
    };
    for (const auto& example : cases) {
        ScriptedEditor editor(example.document);
        editor.select(example.selection);
        const TakenSong song = takeSong(editor);
        EXPECT_EQ(toUtf8(song.text), toUtf8(example.taken));
        EXPECT_EQ(song.isSelection, example.isSelection) << toUtf8(example.document);
        EXPECT_EQ(song.place, example.place) << toUtf8(example.document);
    }
}

// The suffixes alone: a line for every line, and none behind the last end.
TEST(TakenSong, TakesLinesThatWereNotImported) {
    MappedEditor editor("Cmaj7\\par [A-]la\\par\\par");
    const TakenSong song = takeSong(editor);
    ASSERT_EQ(song.text, u"Cmaj7\r[A-]la\r");
    const CreatedChart chart{{{u"C7+", true, 0}, {u"[Am]la", false, 1}, {u"", false, 2}},
                             u"Courier New",
                             10,
                             {},
                             song.text};
    EXPECT_TRUE(putInPlace(editor, song, chart));
    EXPECT_EQ(editor.chars, u"C7+\r[Am]la\r");
}

// Without a map the control is edited where the lines differ, and nowhere else.
TEST(TakenSong, GoesBackByEditsWhereThereIsNoMap) {
    ScriptedEditor editor(u"Cmaj7   G\rla\v[Am]lo [G]x\r\r\nD7M\tA-\t\r\n{eoc}\rAm");
    editor.select({22, 22});
    editor.scroll = {0, 30};
    EXPECT_TRUE(tidy(editor));
    // The rows of a table are not touched.
    EXPECT_EQ(toUtf8(editor.chars), toUtf8(u"C7+     G\rla\vAm G\rlo x\r\r\nD7M\tA-\t\r\nAm"));
    EXPECT_EQ(toUtf8(editor.done), "Am G|C7+     G|");
    EXPECT_EQ(editor.scroll, (ScrollPosition{0, 30}));

    // Lines come and go behind a table, and in front of all.
    const struct {
        TextView corrected;
        TextView result;
    } corrections[] = {
        {u"a\r\rb\tc\t\rnew\rla\rend", u"a\r\r\nb\tc\t\r\nnew\rla\rend"},
        {u"a\r\rb\tc\t\r", u"a\r\r\nb\tc\t\r\n"},
        {u"new\rb\tc\t\rla\rend", u"new\r\r\nb\tc\t\r\nla\rend"},
        {u"a\r\rb\td\t\rla\rend", u"a\r\r\nb\tc\t\r\nb       d       \rla\rend"},
        {u"x", u"\r\nb\tc\t\r\nx"},
    };
    for (const auto& [corrected, result] : corrections) {
        ScriptedEditor table(u"a\r\r\nb\tc\t\r\nla\rend");
        EXPECT_TRUE(tidy(table, [&](Text& text) { text = corrected; }));
        EXPECT_EQ(toUtf8(table.chars), toUtf8(result));
    }

    ScriptedEditor refusing(u"Cmaj7   G");
    refusing.protectedText = u"maj";
    EXPECT_THROW(tidy(refusing), std::runtime_error);
}

TEST(TakenSong, SelectionIsAllThatChanges) {
    MappedEditor editor("Cmaj7\\par Cmaj7\\par Cmaj7\\par");
    editor.select({8, 9});
    EXPECT_TRUE(tidy(editor));
    EXPECT_EQ(editor.chars, u"Cmaj7\rC7+\rCmaj7");
    EXPECT_EQ(editor.selected, (Selection{8, 9}));
}

// Any lines put in, left out and changed: the text is the chart's, and what is the same as before
// has its fonts and colours.
TEST(TakenSong, KeepsWhatStaysInAnySong) {
    samples::Random random(21);
    int mapped = 0;
    for (int round = 0; round < 2000 && !::testing::Test::HasFailure(); ++round) {
        const samples::Sample sample = samples::randomSample(random);
        MappedEditor editor("");
        editor.loadRtf(sample.rtf);
        const TakenSong song = takeSong(editor);
        if (song.text.empty())
            continue;
        SCOPED_TRACE(sample.rtf);
        CreatedChart chart{{}, u"Courier New", 10, song.diagrams, song.text};
        std::vector<std::size_t> cameFrom;  // the line that a line of the chart is
        std::vector<TextView> lines = splitLines(song.text);
        if (song.text.ends_with(u'\r'))
            lines.pop_back();
        for (std::size_t i = 0; i < lines.size(); ++i) {
            for (std::size_t copies = samples::below(random, 4); copies > 0; --copies) {
                Text line(lines[i]);
                const bool same = copies == 1 && samples::below(random, 2) == 0;
                if (!same)
                    line.insert(samples::below(random, line.size() + 1), u"new");
                chart.lines.push_back({line, samples::below(random, 2) == 0, i});
                cameFrom.push_back(same ? i : sample.lines.size());
            }
        }
        if (chart.lines.empty())
            continue;
        Text expected;
        for (const ImportedLine& line : chart.lines)
            expected.append(expected.empty() && &line == chart.lines.data() ? u"" : u"\r")
                .append(song.diagrams.letters(line.text));
        if (song.text.ends_with(u'\r'))
            expected += u'\r';
        const int before = editor.loads;
        putInPlace(editor, song, chart);
        ASSERT_EQ(toUtf8(editor.chars), toUtf8(expected));
        if (editor.loads != before + 1)
            continue;  // changed by edits, of which this editor knows no formats
        ++mapped;
        const auto map = RtfMap::parse(editor.rtf());
        const auto colours = coloursOf(editor.rtf());
        std::size_t position = 0;
        for (std::size_t i = 0; i < chart.lines.size(); ++i) {
            const bool same = cameFrom[i] < sample.lines.size();
            for (std::size_t column = 0; column < chart.lines[i].text.size();
                 ++column, ++position) {
                const SongDiagram* const diagram = song.diagrams.find(chart.lines[i].text[column]);
                const bool isBlank =
                    TextView(u" \t").find(chart.lines[i].text[column]) != TextView::npos;
                if (diagram == nullptr && !isBlank) {
                    EXPECT_NE(map->fontNameAt(position), u"Melvorin 07") << position;
                }
                if (!same)
                    continue;
                const samples::Format& format = sample.lines[cameFrom[i]].cells[column].format;
                const bool isAlone =
                    std::count_if(chart.lines.begin(), chart.lines.end(), [&](const auto& line) {
                        return line.source == cameFrom[i];
                    }) == 1;
                if (!isAlone)
                    continue;
                EXPECT_EQ(map->fontNameAt(position), samples::kFaces[format.face]) << position;
                EXPECT_EQ(colours[position],
                          format.colour == 0 ? std::nullopt
                                             : std::optional(samples::kColours[format.colour - 1]))
                    << position;
            }
            ++position;
        }
    }
    EXPECT_GT(mapped, 500);
}

}  // namespace
}  // namespace melvorin
