#include "chords/CopyChords.h"

#include <algorithm>
#include <utility>

namespace melvorin {
namespace {

// First and last line that a selection touches.
std::pair<std::size_t, std::size_t> touchedLines(const FollowLines& lines, std::size_t start,
                                                 std::size_t begin, std::size_t end) {
    const LinePlace first = placeOf(lines, start, begin);
    const LinePlace last = placeOf(lines, start, end);
    const bool endsBefore = last.line > first.line && last.index == 0;
    return {first.line, last.line - (endsBefore ? 1 : 0)};
}

// Columns where the letters of a word begin.
std::vector<std::size_t> lettersOf(const std::vector<std::size_t>& columns, const ChordRun& word) {
    std::vector<std::size_t> letters;
    for (std::size_t i = word.index; i < word.end(); ++i) {
        if (columns[i] < word.column + word.cells &&
            (letters.empty() || letters.back() < columns[i]))
            letters.push_back(columns[i]);
    }
    return letters;
}

void addLine(CopiedChords& copied, const FollowText& line) {
    Excerpt& chords = copied.chords;
    if (!copied.places.empty())
        chords.chars += u'\r';
    copied.places.push_back(line.trace(0).from);
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line.trace(i).cells > 0)
            chords.diagrams.push_back({chords.chars.size() + i, line.trace(i).cells});
    }
    chords.chars += line.chars();
}

FollowText asIncoming(FollowText line) {
    for (std::size_t i = 0; i < line.size(); ++i)
        line.trace(i).origin = Origin::Incoming;
    return line;
}

// The stack of a row over other words.
ChordStack rowOver(const FollowLines& chords, std::size_t first, const CopiedChords::Row& row,
                   const FollowText& words) {
    FollowLines lines;
    for (std::size_t i = 0; i < (row.hasUpper ? 2U : 1U); ++i)
        lines.push_back({asIncoming(chords[first + i].text), FollowText(u"\r")});
    LinePair pair{lines.size(), lines.size() - 1, std::nullopt};
    if (row.hasUpper)
        pair.upper = 0;
    ChordStack stack(lines, pair);
    stack.dropTails();
    const FollowText own(row.words);
    if (!own.isBlank())
        stack.move(OtherWords(own, words));
    return stack;
}

}  // namespace

CopiedChords copyChords(const Excerpt& text, std::size_t begin, std::size_t end) {
    CopiedChords copied;
    const FollowLines lines = linesOf(text);
    const auto [first, last] = touchedLines(lines, text.start, begin, end);
    for (std::size_t line = first; line <= last; ++line) {
        if (!holdsChords(lines[line].text))
            continue;
        const auto pair = pairOfChords(lines, line);
        CopiedChords::Row row;
        row.hasUpper = pair && pair->upper == line && pair->chords <= last;
        addLine(copied, lines[line].text);
        if (row.hasUpper)
            addLine(copied, lines[++line].text);
        if (pair)
            row.words = lines[pair->words].text.chars();
        copied.rows.push_back(std::move(row));
    }
    return copied;
}

OtherWords::OtherWords(const FollowText& words, const FollowText& other)
    : own_(read(words)), other_(read(other)) {}

OtherWords::Line OtherWords::read(const FollowText& text) {
    Line line{text.columns(), chordRuns(text)};
    std::erase_if(line.words, [](const ChordRun& word) { return word.cells == 0; });
    return line;
}

std::size_t OtherWords::operator()(std::size_t column) const {
    const std::vector<ChordRun>& own = own_.words;
    const std::vector<ChordRun>& others = other_.words;
    if (own.empty() || others.empty())
        return column;
    const auto next =
        std::upper_bound(own.begin(), own.end(), column,
                         [](std::size_t c, const ChordRun& word) { return c < word.column; });
    if (next == own.begin()) {
        const std::size_t before = own.front().column - column;
        return others.front().column - std::min(before, others.front().column);
    }
    const auto number = static_cast<std::size_t>(next - own.begin()) - 1;
    const ChordRun& word = own[number];
    const bool isOver = column < word.column + word.cells;
    if (isOver && number < others.size()) {
        const std::vector<std::size_t> from = lettersOf(own_.columns, word);
        const std::vector<std::size_t> to = lettersOf(other_.columns, others[number]);
        const auto letter = std::upper_bound(from.begin(), from.end(), column) - from.begin() - 1;
        return to[std::min(static_cast<std::size_t>(letter), to.size() - 1)];
    }
    // Behind a word: that with the same number, or the last one where it is behind all of them or
    // the other line has no such word.
    const bool isBehindAll = next == own.end() && !isOver;
    const std::size_t last = others.size() - 1;
    const ChordRun& anchor = others[isBehindAll ? last : std::min(number, last)];
    const ChordRun& from = own[number > last ? last : number];
    return anchor.column + anchor.cells + column - (from.column + from.cells);
}

std::optional<PastedChords> pasteChords(const Excerpt& text, std::size_t begin, std::size_t end,
                                        const CopiedChords& copied) {
    FollowLines lines = linesOf(text);
    const FollowLines chords = linesOf(copied.chords);
    const LinePlace caret = placeOf(lines, text.start, begin);
    auto [line, last] = touchedLines(lines, text.start, begin, end);
    if (begin == end)
        last = lines.size() - 1;
    PastedChords pasted;
    std::size_t taken = 0;
    LinePlace caretNow = caret;
    for (; line <= last && pasted.placed < copied.rows.size(); ++line) {
        const FollowText& words = lines[line].text;
        if (words.isBlank() || !holdsWords(words))
            continue;
        const CopiedChords::Row& row = copied.rows[pasted.placed];
        const FollowLines above = rowOver(chords, taken, row, words).lines();
        const auto pair = pairOfWords(lines, line);
        const std::size_t top = pair ? pair->top() : line;
        FollowLines group = above;
        for (std::size_t i = 0; pair && i < std::min(group.size(), line - top); ++i)
            group[group.size() - 1 - i].end = lines[line - 1 - i].end;
        group.push_back(lines[line]);
        const bool isAtOrBehind = caretNow.line >= line;
        replaceLines(lines, top, line, group);
        const std::size_t now = top + group.size() - 1;
        if (isAtOrBehind)
            caretNow.line = caretNow.line - line + now;
        else if (caretNow.line >= top)
            caretNow = {now, 0};
        last = last - line + now;
        line = now;
        taken += row.hasUpper ? 2 : 1;
        ++pasted.placed;
    }
    if (pasted.placed == 0)
        return std::nullopt;
    pasted.left = copied.rows.size() - pasted.placed;
    pasted.answer = {editsTo(joined(lines), text.start, text.end()),
                     positionOf(lines, text.start, caretNow), false};
    return pasted;
}

}  // namespace melvorin
