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

// The way for charts that are long, or that the control reads differently in Rich Text.
void insertPlain(Editor& editor, std::int32_t place, const CreatedChart& chart) {
    const EditorText text = chartText(chart.lines);
    editor.select({place, place});
    editor.replaceSelection(text.chars);
    editor.select({place, place + static_cast<std::int32_t>(text.chars.size())});
    editor.setSelectionFont(chart.face, chart.points);
    editor.setSelectionColour({});
    colourChords(editor, place, chart);
}

// True when the chart is the document now.
bool becomesChart(Editor& editor, const CreatedChart& chart, const EditorText& text) {
    if (chart.lines.size() <= kMostRichLines)
        return editor.loadRtf(chartRtf(chart.lines, chart.face, chart.points)) &&
               editor.text().chars == text.chars;
    if (!editor.loadPlain(text, chart.face, chart.points))
        return false;
    colourChords(editor, 0, chart);
    return true;
}

// What is to stand around the chart.
struct Surroundings {
    Text above;  // up to the chart, with a line end
    Text below;
    Text breaks;         // what goes in place of the selection, for the chart to stand between
    std::int32_t place;  // where the chart begins
};

Surroundings surroundings(TextView text, Selection selection) {
    const auto begin = static_cast<std::size_t>(selection.begin);
    const std::size_t end = std::min(static_cast<std::size_t>(selection.end), text.size());
    const Text breakAbove = begin > 0 && text[begin - 1] != u'\r' ? u"\r" : u"";
    const Text breakBelow = end < text.size() && text[end] != u'\r' ? u"\r" : u"";
    return {Text(text.substr(0, begin)) + breakAbove, breakBelow + Text(text.substr(end)),
            breakAbove + breakBelow, static_cast<std::int32_t>(begin + breakAbove.size())};
}

}  // namespace

void insertChart(Editor& editor, const CreatedChart& chart) {
    const EditorText inserted = chartText(chart.lines);
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
                      editor.replaceSelectionRtf(chartRtf(chart.lines, chart.face, chart.points)) &&
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
