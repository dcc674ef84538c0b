#include "chords/InsertChart.h"

#include <algorithm>
#include <string>

#include "chords/ChartRtf.h"
#include "chords/DocumentKey.h"

namespace melvorin {
namespace {

// Colours the lines of chords of a chart that stands at `place`, from a line's beginning.
void colourChords(Editor& editor, std::int32_t place, const CreatedChart& chart) {
    if (chart.lines.size() > kMostColouredLines)
        return;
    std::int32_t begin = place;
    for (const ImportedLine& line : chart.lines) {
        const auto end = begin + static_cast<std::int32_t>(line.text.size());
        if (line.isChords) {
            editor.select({begin, end});
            editor.setSelectionColour(kChordColour);
        }
        begin = end + 1;
    }
    editor.select({place, place});
}

// Makes diagrams of their letters, likewise.
void setDiagrams(Editor& editor, std::int32_t place, const CreatedChart& chart) {
    auto position = static_cast<std::size_t>(place);
    for (const ImportedLine& line : chart.lines) {
        for (const char16_t c : line.text) {
            const SongDiagram* const diagram = chart.diagrams.find(c);
            if (diagram != nullptr && !diagram->face.empty())
                setDiagram(editor, position, *diagram);
            ++position;
        }
        ++position;
    }
    editor.select({place, place});
}

// The way for charts that are long, or that the control reads differently in Rich Text.
void insertPlain(Editor& editor, std::int32_t place, const CreatedChart& chart) {
    const EditorText text = chartText(chart.lines, chart.diagrams);
    editor.select({place, place});
    editor.replaceSelection(text.chars);
    editor.select({place, place + static_cast<std::int32_t>(text.chars.size())});
    editor.setSelectionFont(chart.face, chart.points);
    editor.setSelectionColour({});
    colourChords(editor, place, chart);
    setDiagrams(editor, place, chart);
}

// True when the chart is the document now.
bool becomesChart(Editor& editor, const CreatedChart& chart, const EditorText& text) {
    if (chart.lines.size() <= kMostRichLines)
        return editor.loadRtf(chartRtf(chart.lines, chart.face, chart.points, chart.diagrams)) &&
               editor.text().chars == text.chars;
    if (!editor.loadPlain(text, chart.face, chart.points))
        return false;
    colourChords(editor, 0, chart);
    setDiagrams(editor, 0, chart);
    return true;
}

// What is to stand around the chart.
struct Surroundings {
    Text above;  // up to the chart, with a line end
    Text below;
    Text breaks;         // what goes in place of the selection, for the chart to stand between
    std::int32_t place;  // where the chart begins
};

bool isLineEnd(char16_t c) {
    return c == u'\r' || c == u'\v';
}

// Line ends that are to follow `above` for a line to be blank below it.
Text breaksBehind(TextView above) {
    if (above.empty())
        return u"";
    const std::size_t written = above.find_last_not_of(u' ');
    if (written == TextView::npos || !isLineEnd(above[written]))
        return isLineEnd(above.back()) ? u"\r" : u"\r\r";
    // The line with nothing but blanks may be the one that the chart is to begin.
    if (!isLineEnd(above.back()))
        return u"\r";
    const std::size_t before = above.substr(0, above.size() - 1).find_last_not_of(u' ');
    return before == TextView::npos || isLineEnd(above[before]) ? u"" : u"\r";
}

// Line ends that are to stand before `below`, which follows the chart's last line.
Text breaksBefore(TextView below) {
    if (below.empty())
        return u"";
    if (!isLineEnd(below.front()))
        return u"\r\r";
    const std::size_t next = below.find_first_not_of(u' ', 1);
    return next == TextView::npos || isLineEnd(below[next]) ? u"" : u"\r";
}

Surroundings surroundings(TextView text, Selection selection) {
    const auto begin = static_cast<std::size_t>(selection.begin);
    const std::size_t end = std::min(static_cast<std::size_t>(selection.end), text.size());
    const Text breakAbove = breaksBehind(text.substr(0, begin));
    const Text breakBelow = breaksBefore(text.substr(end));
    return {Text(text.substr(0, begin)) + breakAbove, breakBelow + Text(text.substr(end)),
            breakAbove + breakBelow, static_cast<std::int32_t>(begin + breakAbove.size())};
}

}  // namespace

void insertChart(Editor& editor, const CreatedChart& chart) {
    const EditorText inserted = chartText(chart.lines, chart.diagrams);
    const std::string before = editor.rtf();
    if (editor.isEmpty()) {
        if (becomesChart(editor, chart, inserted))
            return;
        editor.loadRtf(before);  // some of it may have been read all the same
    }
    const Selection selection = editor.selection();
    const Surroundings around = surroundings(editor.text().chars, selection);
    const Selection caret{around.place, around.place};
    const auto makeRoom = [&] {
        editor.select(selection);
        editor.replaceSelection(around.breaks);
        editor.select(caret);
    };
    makeRoom();
    const bool isShort = chart.lines.size() <= kMostRichLines;
    const bool isIn = isShort &&
                      editor.replaceSelectionRtf(
                          chartRtf(chart.lines, chart.face, chart.points, chart.diagrams)) &&
                      editor.text().chars == around.above + inserted.chars + around.below;
    if (!isIn) {
        if (isShort) {
            editor.loadRtf(before);
            makeRoom();
        }
        insertPlain(editor, around.place, chart);
    }
    editor.select(caret);
    editor.scrollCaretIntoView();
}

}  // namespace melvorin
