#include "chords/ChordPair.h"

#include <algorithm>

#include "chords/CellWidth.h"
#include "chords/ChordRow.h"
#include "chords/LineVerdict.h"

namespace melvorin {
namespace {

// A blank that parts what stands beside it.
bool isGap(const FollowText& line, std::size_t index) {
    const char16_t c = line.chars()[index];
    return line.trace(index).cells == 0 && isAnyBlank(c) && c != 0x200B && c != 0xFEFF;
}

// Without what is between two indices or touches them; empty for a tablature.
Text writingWithout(const FollowText& line, std::size_t begin, std::size_t end) {
    Text writing = line.writing();
    if (isTablature(writing))
        return {};
    for (const ChordRun& run : chordRuns(line)) {
        if (run.index <= end && begin <= run.end())
            std::fill_n(writing.begin() + static_cast<std::ptrdiff_t>(run.index), run.length, u' ');
    }
    return writing;
}

bool followsBelow(const FollowText& upper, const FollowText& lower) {
    const std::vector<ChordRun> below = chordRuns(lower);
    const std::vector<ChordRun> above = chordRuns(upper);
    return std::all_of(above.begin(), above.end(), [&](const ChordRun& run) {
        return std::any_of(below.begin(), below.end(),
                           [&](const ChordRun& other) { return other.column == run.column; });
    });
}

bool isHyphen(char16_t c) {
    return c == u'-' || c == 0x2010 || c == 0x2011;
}

}  // namespace

bool holdsChords(const FollowText& line) {
    const Text writing = line.writing();
    if (isTablature(writing))
        return false;
    if (trimmed(writing).empty())
        return line.hasDiagrams();
    return isRowOfChords(readRow(writing));
}

bool mayHoldChords(const FollowText& line, std::size_t begin, std::size_t end) {
    return holdsChords(line) || isRowOfChords(readRow(writingWithout(line, begin, end)));
}

bool mayStayChords(const FollowText& line, std::size_t begin, std::size_t end) {
    if (isTablature(line.writing()))
        return false;
    if (mayHoldChords(line, begin, end))
        return true;
    const std::vector<RowItem> rest = readRow(writingWithout(line, begin, end));
    return std::none_of(rest.begin(), rest.end(), [](const RowItem& item) {
        return item.kind == RowItemKind::Word || item.kind == RowItemKind::Remark;
    });
}

bool holdsWords(const FollowText& line) {
    if (holdsChords(line))
        return false;
    return judgeLine(line.chars()) == LineVerdict::Lyrics;
}

std::optional<LinePair> pairOfWords(const FollowLines& lines, std::size_t words) {
    if (words == 0 || words >= lines.size() || !holdsChords(lines[words - 1].text) ||
        !holdsWords(lines[words].text))
        return std::nullopt;
    LinePair pair{words, words - 1, std::nullopt};
    if (words > 1 && holdsChords(lines[words - 2].text) &&
        followsBelow(lines[words - 2].text, lines[words - 1].text))
        pair.upper = words - 2;
    return pair;
}

std::optional<LinePair> pairOfChords(const FollowLines& lines, std::size_t chords) {
    if (auto pair = pairOfWords(lines, chords + 1))
        return pair;
    const auto pair = pairOfWords(lines, chords + 2);
    return pair && pair->upper == chords ? pair : std::nullopt;
}

std::vector<ChordRun> chordRuns(const FollowText& line) {
    std::vector<ChordRun> runs;
    const std::vector<std::size_t> columns = line.columns();
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (isGap(line, i))
            continue;
        const std::size_t begin = i;
        while (i < line.size() && !isGap(line, i))
            ++i;
        runs.push_back({begin, i - begin, columns[begin], columns[i] - columns[begin]});
    }
    return runs;
}

std::optional<ChordRun> chordRunAt(const FollowText& line, std::size_t index) {
    std::optional<ChordRun> found;
    for (const ChordRun& run : chordRuns(line)) {
        if (run.index <= index && index <= run.end())
            found = run;
    }
    return found;
}

std::vector<std::size_t> syllableColumns(const FollowText& words) {
    std::vector<std::size_t> result;
    const std::vector<std::size_t> columns = words.columns();
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (isGap(words, i) || (isHyphen(words.chars()[i]) && i > 0))
            continue;
        if (i == 0 || isGap(words, i - 1) || isHyphen(words.chars()[i - 1]))
            result.push_back(columns[i]);
    }
    return result;
}

bool isWholeChord(TextView line, std::size_t index, std::size_t length,
                  std::span<const std::size_t> pictures) {
    if (length == 0 || index > line.size() || length > line.size() - index)
        return false;
    FollowText text(line);
    for (const std::size_t picture : pictures)
        text.trace(picture).cells = 1;
    if (!holdsChords(text))
        return false;
    const Text writing = text.writing();
    for (const RowItem& item : readRow(writing)) {
        if (item.kind != RowItemKind::Chord && item.kind != RowItemKind::NoChord &&
            item.kind != RowItemKind::Unknown)
            continue;
        std::size_t begin = item.index;
        std::size_t end = item.index + item.length;
        const TextView chord = TextView(writing).substr(begin, item.length);
        const bool whole = begin == index && end == index + length;
        // "(Am7" and "G)" are items too; "C7(9)" keeps its own.
        const auto opened = std::count(chord.begin(), chord.end(), u'(');
        const auto closed = std::count(chord.begin(), chord.end(), u')');
        if (chord.front() == u'(' && (opened > closed || chord.back() == u')'))
            ++begin;
        if (chord.back() == u')' && (closed > opened || chord.front() == u'('))
            --end;
        if (whole || (begin == index && end == index + length))
            return true;
    }
    return false;
}

}  // namespace melvorin
