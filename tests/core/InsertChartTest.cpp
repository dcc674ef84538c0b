#include "chords/InsertChart.h"

#include <gtest/gtest.h>

#include "ScriptedEditor.h"
#include "rtf/RtfMap.h"

namespace melvorin {
namespace {

std::optional<Text> readWell(std::string_view rtf) {
    const auto map = RtfMap::parse(rtf);
    return map ? std::optional<Text>(map->text()) : std::nullopt;
}

const CreatedChart kChart{{{u"Am  G", true}, {u"la la", false}, {u"D7", true}}, u"Courier New", 10};

// The one that reads the chart's Rich Text, the one that refuses it, and one that reads something
// else: the same document comes of it.
TEST(InsertChart, StandsOnLinesOfItsOwn) {
    const struct {
        TextView document;
        Selection selection;
        TextView result;  // with * for the chart
    } cases[] = {
        {u"", {0, 0}, u"*"},
        {u"first\rlast", {0, 0}, u"*\r\rfirst\rlast"},
        {u"first\rlast", {2, 2}, u"fi\r\r*\r\rrst\rlast"},
        {u"first\rlast", {5, 5}, u"first\r\r*\r\rlast"},
        {u"first\rlast", {6, 6}, u"first\r\r*\r\rlast"},
        {u"first\rlast", {10, 10}, u"first\rlast\r\r*"},
        {u"first\r", {6, 6}, u"first\r\r*"},
        {u"first\r\rlast", {6, 6}, u"first\r\r*\r\rlast"},
        {u"first\rlast", {2, 8}, u"fi\r\r*\r\rst"},
        {u"first\rlast", {0, 5}, u"*\r\rlast"},
        // A line that is blank already is enough, also one of blanks.
        {u"first\r\r\rlast", {7, 7}, u"first\r\r*\r\rlast"},
        {u"first\r\r\r\rlast", {7, 7}, u"first\r\r*\r\rlast"},
        {u"first\r  \r\r \rlast", {9, 9}, u"first\r  \r*\r \rlast"},
        {u"\rlast\r", {0, 0}, u"*\r\rlast\r"},
        {u"\r", {1, 1}, u"\r*"},
        {u"first\rlast", {0, 11}, u"*"},  // the control's own end counts one more
    };
    const Text inserted = u"Am  G\rla la\rD7";
    const decltype(ScriptedEditor::reading) readings[] = {
        readWell, [](std::string_view) { return std::nullopt; },
        [](std::string_view) { return std::optional<Text>(u"Am"); }};
    for (const auto& example : cases) {
        for (const auto& reading : readings) {
            ScriptedEditor editor(example.document);
            editor.reading = reading;
            editor.select(example.selection);
            insertChart(editor, kChart);
            const std::size_t place = example.result.find(u'*');
            const Text expected = Text(example.result).replace(place, 1, inserted);
            EXPECT_EQ(toUtf8(editor.chars), toUtf8(expected)) << toUtf8(example.document);
            const auto caret = static_cast<std::int32_t>(place);
            EXPECT_EQ(editor.selected, (Selection{caret, caret})) << toUtf8(expected);
            const bool isPlain = &reading != &readings[0];
            EXPECT_EQ(toUtf8(editor.done), isPlain ? "Am  G\rla la\rD7 in Courier New 10|"
                                                     "Am  G\rla la\rD7 black|Am  G|D7|"
                                                   : "");
        }
    }
}

// Long charts go in as text; very long ones keep one colour.
TEST(InsertChart, LongChartsAreNeverRichText) {
    for (const std::size_t lines : {kMostRichLines + 1, kMostColouredLines + 1}) {
        for (const TextView document : {u"", u"la"}) {
            CreatedChart chart{{}, u"Courier New", 10};
            chart.lines.resize(lines, {u"la", false});
            chart.lines.back() = {u"Am", true};
            ScriptedEditor editor(document);
            editor.reading = [](std::string_view) {
                ADD_FAILURE() << "given as Rich Text";
                return std::nullopt;
            };
            insertChart(editor, chart);
            EXPECT_EQ(editor.chars.size(), lines * 3 - 1 + (document.empty() ? 0 : 4));
            EXPECT_EQ(editor.done.starts_with(u"plain Courier New 10|"), document.empty());
            EXPECT_EQ(editor.done.ends_with(u"|Am|"), lines <= kMostColouredLines);
        }
    }
}

}  // namespace
}  // namespace melvorin
