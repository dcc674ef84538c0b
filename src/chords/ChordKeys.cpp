#include "chords/ChordKeys.h"

#include <algorithm>

namespace melvorin {
namespace {

constexpr std::size_t kStopsWithoutWords = 8;

std::vector<std::size_t> syllablesBelow(const FollowLines& lines, std::size_t line) {
    const auto pair = pairOfChords(lines, line);
    if (pair)
        return syllableColumns(lines[pair->words].text);
    if (line + 1 < lines.size() && holdsWords(lines[line + 1].text))
        return syllableColumns(lines[line + 1].text);
    return {};
}

std::size_t stopBefore(const std::vector<std::size_t>& syllables, std::size_t column) {
    const std::size_t eighth = column == 0 ? 0 : (column - 1) / kStopsWithoutWords * 8;
    const auto next = std::lower_bound(syllables.begin(), syllables.end(), column);
    if (next == syllables.begin())
        return syllables.empty() ? eighth : 0;
    return next == syllables.end() ? std::max(eighth, *(next - 1)) : *(next - 1);
}

bool isInsideChord(const FollowText& line, std::size_t column) {
    const std::vector<ChordRun> runs = chordRuns(line);
    return std::any_of(runs.begin(), runs.end(), [&](const ChordRun& run) {
        return run.column < column && column < run.column + run.cells;
    });
}

}  // namespace

std::size_t nextChordStop(const FollowLines& lines, std::size_t line, std::size_t column,
                          bool backward) {
    const std::vector<std::size_t> syllables = syllablesBelow(lines, line);
    if (backward)
        return stopBefore(syllables, column);
    const auto next = std::upper_bound(syllables.begin(), syllables.end(), column);
    return next != syllables.end() ? *next : (column / kStopsWithoutWords + 1) * kStopsWithoutWords;
}

std::optional<std::pair<std::size_t, std::size_t>> chordAround(const Excerpt& text,
                                                               std::size_t position) {
    const FollowLines lines = linesOf(text);
    const LinePlace place = placeOf(lines, text.start, position);
    const FollowText& line = lines[place.line].text;
    const auto run = chordRunAt(line, place.index);
    if (!run || !holdsChords(line))
        return std::nullopt;
    const std::size_t lineStart = positionOf(lines, text.start, {place.line, 0});
    return std::pair(lineStart + run->index, lineStart + run->end());
}

std::optional<std::pair<std::size_t, std::size_t>> ChordVisit::padding() const {
    const std::size_t length = padding_.blanks + (padding_.hasLine ? 1 : 0);
    if (length == 0)
        return std::nullopt;
    return std::pair(padding_.position, length);
}

void ChordVisit::dropPadding(FollowLines& lines, std::size_t start, LinePlace& caret,
                             bool andLine) {
    const auto stretch = padding();
    if (!stretch)
        return;
    const FollowText all = joined(lines);
    if (stretch->first < start || stretch->first + stretch->second > start + all.size() ||
        !all.part(stretch->first - start, stretch->first - start + padding_.blanks).isBlank()) {
        padding_ = {};
        return;
    }
    const bool takesLine = andLine && padding_.hasLine;
    const LinePlace from = placeOf(lines, start, stretch->first);
    LinePlace to{from.line, from.index + padding_.blanks};
    if (takesLine)
        to = {from.line + 1, 0};
    if (caret.line == from.line)
        caret.index = std::min(caret.index, from.index);
    else if (caret.line > from.line && takesLine)
        --caret.line;
    lines = editedPlainly(lines, from, to, {}).lines;
    padding_.blanks = 0;
}

// The caret to a column of a chord line, with the blanks that it takes.
FollowAnswer ChordVisit::goTo(FollowLines& lines, const Excerpt& text, std::size_t line,
                              std::size_t column) {
    FollowText& chords = lines[line].text;
    const std::vector<std::size_t> columns = chords.columns();
    const auto at = std::lower_bound(columns.begin(), columns.end(), column);
    auto index = static_cast<std::size_t>(at - columns.begin());
    if (at == columns.end()) {
        padding_.position = positionOf(lines, text.start, {line, chords.size()});
        padding_.blanks = column - columns.back();
        chords.appendBlanks(padding_.blanks);
        index = chords.size();
    }
    return {editsTo(joined(lines), text.start, text.end()),
            positionOf(lines, text.start, {line, index}), false};
}

std::optional<FollowAnswer> ChordVisit::tab(const Excerpt& text, std::size_t caret, bool backward) {
    FollowLines lines = linesOf(text);
    LinePlace place = placeOf(lines, text.start, caret);
    const bool isVisited = line_ == positionOf(lines, text.start, {place.line, 0});
    if (!isVisited && !mayHoldChords(lines[place.line].text, place.index, place.index))
        return std::nullopt;
    std::size_t column = lines[place.line].text.columns()[place.index];
    dropPadding(lines, text.start, place, false);
    do {
        column = nextChordStop(lines, place.line, column, backward);
    } while (column > 0 && isInsideChord(lines[place.line].text, column));
    if (isVisited)
        wordsColumn_ = column;
    return goTo(lines, text, place.line, column);
}

std::optional<FollowAnswer> ChordVisit::toChords(const Excerpt& text, std::size_t caret) {
    FollowLines lines = linesOf(text);
    LinePlace place = placeOf(lines, text.start, caret);
    if (!holdsWords(lines[place.line].text))
        return std::nullopt;
    dropPadding(lines, text.start, place, true);
    *this = {};
    wordsColumn_ = lines[place.line].text.columns()[place.index];
    std::size_t chords = place.line;
    if (chords > 0 && holdsChords(lines[chords - 1].text)) {
        --chords;
    } else {
        lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(chords),
                     {FollowText(), FollowText(u"\r")});
        padding_.hasLine = true;
        padding_.position = positionOf(lines, text.start, {chords, 0});
    }
    line_ = positionOf(lines, text.start, {chords, 0});
    return goTo(lines, text, chords, wordsColumn_);
}

std::optional<FollowAnswer> ChordVisit::toWords(const Excerpt& text, std::size_t caret) {
    FollowLines lines = linesOf(text);
    LinePlace place = placeOf(lines, text.start, caret);
    if (line_ != positionOf(lines, text.start, {place.line, 0}) || place.line + 1 >= lines.size())
        return std::nullopt;
    LinePlace words{place.line + 1, 0};
    dropPadding(lines, text.start, words, true);
    const std::vector<std::size_t> columns = lines[words.line].text.columns();
    const auto at = std::lower_bound(columns.begin(), columns.end() - 1, wordsColumn_);
    words.index = static_cast<std::size_t>(at - columns.begin());
    *this = {};
    return FollowAnswer{editsTo(joined(lines), text.start, text.end()),
                        positionOf(lines, text.start, words), false};
}

std::optional<FollowAnswer> ChordVisit::leave(const Excerpt& text, std::size_t caret) {
    std::optional<FollowAnswer> answer;
    if (padding()) {
        FollowLines lines = linesOf(text);
        LinePlace place = placeOf(lines, text.start, caret);
        dropPadding(lines, text.start, place, true);
        answer = FollowAnswer{editsTo(joined(lines), text.start, text.end()),
                              positionOf(lines, text.start, place), false};
    }
    *this = {};
    return answer;
}

}  // namespace melvorin
