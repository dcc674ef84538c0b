#include "chords/PairLines.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "chords/ChordStack.h"

namespace melvorin {
namespace {

constexpr std::size_t kEndless = Text::npos;

bool isBlankBehind(const FollowText& line, std::size_t index) {
    return line.part(index).isBlank();
}

FollowText together(FollowText left, const FollowText& right) {
    left.append(right);
    return left;
}

// A line end for a line that had none of its own: no line of a document ends otherwise.
FollowText newLineEnd() {
    return FollowText(u"\r");
}

// A chord line can lose some of its characters and keep the others in their columns.
FollowText withoutFront(const FollowText& line, std::size_t index) {
    return writeChords(chordsOf(line, index));
}

// ---- Taking line ends away -------------------------------------------------------------------

class Eraser {
  public:
    Eraser(const FollowLines& lines, LinePlace from, LinePlace to, bool backward)
        : lines_(lines), from_(from), to_(to), backward_(backward) {}

    EditedLines erase() const {
        if (holdsChords(lines_[from_.line].text))
            return eraseFromChords();
        return holdsChords(lines_[to_.line].text) ? eraseIntoChords() : eraseIntoWords();
    }

  private:
    const FollowLine& first() const { return lines_[from_.line]; }
    const FollowLine& last() const { return lines_[to_.line]; }
    FollowText head() const { return first().text.part(0, from_.index); }
    FollowText tail() const { return last().text.part(to_.index); }
    std::size_t headCells() const { return head().cells(); }
    std::size_t cutColumn() const { return last().text.columns()[to_.index]; }
    // The selection is a line end and, at most, blanks before it.
    bool isLineEndOnly() const {
        return to_.line == from_.line + 1 && to_.index == 0 &&
               isBlankBehind(first().text, from_.index);
    }

    EditedLines plainly() const { return editedPlainly(lines_, from_, to_, {}); }
    EditedLines refused() const { return {lines_, backward_ ? from_ : to_, true}; }
    EditedLines withLines(std::size_t begin, std::size_t end, const FollowLines& lines,
                          LinePlace caret) const {
        EditedLines result{lines_, caret, false};
        replaceLines(result.lines, begin, end, lines);
        return result;
    }

    EditedLines eraseFromChords() const;
    EditedLines eraseToOwnWords(const LinePair& pair) const;
    EditedLines eraseToOtherWords() const;
    EditedLines eraseBetweenChords() const;
    EditedLines eraseIntoChords() const;
    EditedLines eraseIntoWords() const;
    EditedLines joinAbove(const LinePair& pair) const;
    EditedLines join(LinePlace from, LinePlace to) const;
    EditedLines keepBreak(const FollowText& rest) const;
    ChordStack chordsOverTail(const LinePair& pair) const;

    const FollowLines& lines_;
    LinePlace from_;
    LinePlace to_;
    bool backward_;
};

// The chords over the letters that are left of the last line, in columns from where it was cut.
// Those behind its letters were selected with them.
ChordStack Eraser::chordsOverTail(const LinePair& pair) const {
    if (tail().isBlank())
        return {};
    const std::size_t cut = cutColumn();
    ChordStack stack = ChordStack(lines_, pair).between(cut, kEndless);
    stack.move([&](std::size_t column) { return column - cut; });
    return stack;
}

// Words behind words, chords behind chords over their syllables.
EditedLines Eraser::join(LinePlace from, LinePlace to) const {
    const auto left = pairOfWords(lines_, from.line);
    const auto right = pairOfWords(lines_, to.line);
    const FollowText head = lines_[from.line].text.part(0, from.index);
    ChordStack stack = left ? ChordStack(lines_, *left) : ChordStack();
    if (right) {
        const std::size_t cut = lines_[to.line].text.columns()[to.index];
        ChordStack moved = ChordStack(lines_, *right).between(cut, kEndless);
        const std::size_t cells = head.cells();
        moved.move([&](std::size_t column) { return column - cut + cells; });
        stack.append(moved);
    }
    FollowLines joined = stack.lines();
    joined.push_back({together(head, lines_[to.line].text.part(to.index)), lines_[to.line].end});
    const std::size_t top = left ? left->top() : from.line;
    return withLines(top, to.line, joined, {top + joined.size() - 1, from.index});
}

// Backspace at the start of words that have chords above them.
EditedLines Eraser::joinAbove(const LinePair& pair) const {
    if (pair.top() == 0)
        return refused();
    const std::size_t above = pair.top() - 1;
    const FollowText& text = lines_[above].text;
    if (text.empty())
        return withLines(above, above, {}, {pair.words - 1, 0});
    if (!holdsWords(text))
        return refused();
    return join({above, text.size()}, {pair.words, 0});
}

// What is left of the first line and of the last, with the line end between them.
EditedLines Eraser::keepBreak(const FollowText& rest) const {
    if (isLineEndOnly())
        return refused();
    return withLines(from_.line, to_.line, {{head(), lines_[to_.line - 1].end}, {rest, last().end}},
                     from_);
}

EditedLines Eraser::eraseIntoChords() const {
    if (from_.index == 0 && to_.index == 0)
        return plainly();
    if (from_.index == 0)
        return withLines(from_.line, to_.line, {{withoutFront(last().text, to_.index), last().end}},
                         {from_.line, 0});
    if (to_.index > 0)
        return keepBreak(withoutFront(last().text, to_.index));
    const auto pair = pairOfChords(lines_, to_.line);
    const bool isWhole = pair && pair->top() == to_.line;
    if (isWhole && holdsWords(first().text))
        return join(from_, {pair->words, 0});
    return !pair && !holdsWords(first().text) ? plainly() : keepBreak(last().text);
}

EditedLines Eraser::eraseIntoWords() const {
    const auto pair = pairOfWords(lines_, to_.line);
    const bool isEmptyLine = first().text.empty() && isLineEndOnly();
    if (!pair || isEmptyLine)
        return plainly();
    if (from_.index == 0 && !pairOfWords(lines_, from_.line)) {
        FollowLines rest = chordsOverTail(*pair).lines();
        rest.push_back({tail(), last().end});
        return withLines(from_.line, to_.line, rest, {from_.line + rest.size() - 1, 0});
    }
    if (holdsWords(first().text))
        return tail().isBlank() && !isLineEndOnly() ? plainly() : join(from_, to_);
    FollowLines rest = chordsOverTail(*pair).lines();
    rest.insert(rest.begin(), {head(), newLineEnd()});
    rest.push_back({tail(), last().end});
    return withLines(from_.line, to_.line, rest, from_);
}

EditedLines Eraser::eraseFromChords() const {
    if (holdsChords(last().text))
        return eraseBetweenChords();
    const auto pair = pairOfWords(lines_, to_.line);
    if (pair && pair->chords == from_.line)
        return eraseToOwnWords(*pair);
    return eraseToOtherWords();
}

// Of the chord line the part behind `from` was selected, of its words the part before `to`. Chords
// over letters that stay do too.
EditedLines Eraser::eraseToOwnWords(const LinePair& pair) const {
    if (isLineEndOnly()) {
        if (last().text.isBlank())
            return plainly();
        return backward_ ? joinAbove(pair) : refused();
    }
    if (to_.index == 0) {
        if (from_.index == 0)
            return plainly();
        return withLines(from_.line, from_.line, {{head(), first().end}}, from_);
    }
    const std::size_t cut = cutColumn();
    std::vector<StackedChord> chords = chordsOf(first().text, 0, from_.index);
    for (StackedChord& chord : chordsOf(first().text, from_.index)) {
        if (chord.column >= cut && !tail().isBlank())
            chords.push_back(std::move(chord));
    }
    ChordStack stack(std::move(chords), first().end);
    stack.move([&](std::size_t column) { return column < cut ? 0 : column - cut; });
    FollowLines lines = stack.lines();
    lines.push_back({tail(), last().end});
    const std::size_t index = lines.size() > 1 ? std::min(from_.index, lines[0].text.size()) : 0;
    return withLines(from_.line, to_.line, lines, {from_.line, index});
}

EditedLines Eraser::eraseToOtherWords() const {
    const auto pair = pairOfWords(lines_, to_.line);
    if (from_.index == 0) {
        const bool isChordsOnly = pair && pair->top() == from_.line && to_.index == 0;
        if (!pair || isChordsOnly)
            return plainly();
        FollowLines rest = chordsOverTail(*pair).lines();
        rest.push_back({tail(), last().end});
        return withLines(from_.line, to_.line, rest, {from_.line, 0});
    }
    std::vector<StackedChord> chords = chordsOf(first().text, 0, from_.index);
    const bool isUpper = pair && pair->upper == from_.line;
    if (!pair || isUpper || chords.empty()) {
        if (isLineEndOnly())
            return last().text.empty() ? plainly() : refused();
        FollowLines rest = pair ? chordsOverTail(*pair).lines() : FollowLines();
        rest.insert(rest.begin(), {head(), first().end});
        rest.push_back({tail(), last().end});
        return withLines(from_.line, to_.line, rest, from_);
    }
    ChordStack stack(std::move(chords), first().end);
    stack.append(chordsOverTail(*pair));
    FollowLines rest = stack.lines();
    rest.push_back({tail(), last().end});
    const std::size_t row = rest.size() - 2;
    return withLines(from_.line, to_.line, rest,
                     {from_.line + row, std::min(from_.index, rest[row].text.size())});
}

EditedLines Eraser::eraseBetweenChords() const {
    if (from_.index == 0 && to_.index == 0)
        return plainly();
    const std::vector<std::size_t> columns = first().text.columns();
    if (isLineEndOnly()) {
        const auto below = pairOfChords(lines_, to_.line);
        if (below && !lines_[below->words].text.isBlank())
            return refused();
        FollowText line = head();
        if (!line.isBlank())
            line.appendBlanks(1);
        line.append(tail());
        return withLines(from_.line, to_.line, {{line, last().end}}, from_);
    }
    if (to_.index == 0 || columns[from_.index] > cutColumn())
        return keepBreak(withoutFront(last().text, to_.index));
    std::vector<StackedChord> chords = chordsOf(first().text, 0, from_.index);
    for (StackedChord& chord : chordsOf(last().text, to_.index))
        chords.push_back(std::move(chord));
    const FollowText line = writeChords(chords);
    return withLines(from_.line, to_.line, {{line, last().end}},
                     {from_.line, std::min(from_.index, line.size())});
}

// ---- Putting line ends in --------------------------------------------------------------------

class Inserter {
  public:
    Inserter(const FollowLines& lines, LinePlace at, const FollowText& incoming)
        : lines_(lines), at_(at), incoming_(incoming), parts_(cutAtLineEnds(incoming)) {}

    EditedLines insert();

  private:
    const FollowLine& line() const { return lines_[at_.line]; }
    EditedLines plainly() const { return editedPlainly(lines_, at_, at_, incoming_); }
    bool bringsChords() const {
        return std::any_of(parts_.begin(), parts_.end(),
                           [](const FollowLine& part) { return holdsChords(part.text); });
    }
    EditedLines insertIntoChords();
    EditedLines insertIntoWords();
    void cutAt(const std::optional<LinePair>& pair, std::size_t wordsLine, std::size_t index,
               std::size_t column);
    EditedLines split(bool caretInChords);
    EditedLines splitAround();
    void startRightHalf(FollowLines& result, const FollowText& front) const;

    const FollowLines& lines_;
    LinePlace at_;
    const FollowText& incoming_;
    FollowLines parts_;
    // The two halves of what is split, the right one in columns from where it was cut.
    std::size_t top_ = 0;
    std::size_t wordsLine_ = 0;
    ChordStack leftChords_;
    ChordStack rightChords_;
    FollowText leftWords_;
    FollowText rightWords_;
};

EditedLines Inserter::insert() {
    if (holdsChords(line().text))
        return insertIntoChords();
    return holdsWords(line().text) ? insertIntoWords() : plainly();
}

void Inserter::cutAt(const std::optional<LinePair>& pair, std::size_t wordsLine, std::size_t index,
                     std::size_t column) {
    wordsLine_ = wordsLine;
    top_ = pair ? pair->top() : wordsLine;
    leftWords_ = lines_[wordsLine].text.part(0, index);
    rightWords_ = lines_[wordsLine].text.part(index);
    if (!pair)
        return;
    const ChordStack stack(lines_, *pair);
    leftChords_ = stack.between(0, column);
    rightChords_ = stack.between(column, kEndless);
    rightChords_.move([&](std::size_t chord) { return chord - column; });
    // Bars alone are no chord line: they stay with the chords.
    const auto isBare = [](const ChordStack& half) {
        return !half.empty() && !holdsChords(half.lowerLine());
    };
    if (isBare(rightChords_)) {
        leftChords_ = stack;
        rightChords_ = {};
    } else if (isBare(leftChords_)) {
        rightChords_ = stack;
        rightChords_.move([&](std::size_t chord) { return chord - std::min(chord, column); });
        leftChords_ = {};
    }
    if (!leftChords_.empty())
        rightChords_.renewEnds();
}

void Inserter::startRightHalf(FollowLines& result, const FollowText& front) const {
    ChordStack chords = rightChords_;
    const std::size_t cells = front.cells();
    chords.move([&](std::size_t column) { return column + cells; });
    for (FollowLine& row : chords.lines())
        result.push_back(std::move(row));
    result.push_back({together(front, rightWords_), lines_[wordsLine_].end});
}

EditedLines Inserter::split(bool caretInChords) {
    FollowLines result = leftChords_.lines();
    result.push_back({together(leftWords_, parts_.front().text), parts_.front().end});
    result.insert(result.end(), parts_.begin() + 1, parts_.end() - 1);
    startRightHalf(result, parts_.back().text);
    const LinePlace caret = caretInChords
                                ? LinePlace{top_ + result.size() - 2, 0}
                                : LinePlace{top_ + result.size() - 1, parts_.back().text.size()};
    EditedLines edited{lines_, caret, false};
    replaceLines(edited.lines, top_, wordsLine_, result);
    return edited;
}

// The lines that come in stay as they are, between the halves; a half with nothing in it is none.
EditedLines Inserter::splitAround() {
    const bool hasRight = !rightWords_.empty() || !rightChords_.empty();
    const bool endsLine = parts_.back().text.empty();
    FollowLines result;
    if (!leftWords_.empty() || !leftChords_.empty()) {
        result = leftChords_.lines();
        result.push_back({leftWords_, newLineEnd()});
    }
    result.insert(result.end(), parts_.begin(), parts_.end() - (hasRight && endsLine ? 1 : 0));
    LinePlace caret{top_ + result.size() - 1, result.back().text.size()};
    if (hasRight) {
        if (!endsLine)
            result.back().end = newLineEnd();
        startRightHalf(result, {});
        if (endsLine)
            caret = {top_ + result.size() - 1, 0};
    } else {
        result.back().end = lines_[wordsLine_].end;
    }
    EditedLines edited{lines_, caret, false};
    replaceLines(edited.lines, top_, wordsLine_, result);
    return edited;
}

EditedLines Inserter::insertIntoWords() {
    const auto pair = pairOfWords(lines_, at_.line);
    if (line().text.isBlank())
        return plainly();
    cutAt(pair, at_.line, at_.index, line().text.columns()[at_.index]);
    if (bringsChords())
        return splitAround();
    return !pair || isBlankBehind(line().text, at_.index) ? plainly() : split(false);
}

EditedLines Inserter::insertIntoChords() {
    const auto pair = pairOfChords(lines_, at_.line);
    std::size_t index = at_.index;
    for (const ChordRun& run : chordRuns(line().text)) {
        if (run.index < index && index < run.end())
            index = run.index;
    }
    at_.index = index;
    const bool bareStart = index == 0 && parts_.back().text.empty();
    if (!pair || lines_[pair->words].text.isBlank() || bareStart ||
        isBlankBehind(line().text, index))
        return plainly();
    const std::size_t column = line().text.columns()[index];
    const std::vector<std::size_t> columns = lines_[pair->words].text.columns();
    const auto letter = std::lower_bound(columns.begin(), columns.end() - 1, column);
    cutAt(pair, pair->words, static_cast<std::size_t>(letter - columns.begin()), column);
    const bool isEnter = parts_.size() == 2 && parts_[0].text.empty() && parts_[1].text.empty();
    if (!isEnter)
        return splitAround();
    return split(!rightChords_.empty());
}

}  // namespace

EditedLines editedPlainly(const FollowLines& lines, LinePlace from, LinePlace to,
                          const FollowText& incoming) {
    FollowText text = together(lines[from.line].text.part(0, from.index), incoming);
    const std::size_t behind = lines[to.line].text.size() - to.index;
    text.append(lines[to.line].text.part(to.index));
    FollowLines parts = cutAtLineEnds(text);
    parts.back().end = lines[to.line].end;
    const LinePlace caret{from.line + parts.size() - 1, parts.back().text.size() - behind};
    EditedLines result{lines, caret, false};
    replaceLines(result.lines, from.line, to.line, parts);
    return result;
}

EditedLines erasedLines(const FollowLines& lines, LinePlace from, LinePlace to, bool backward) {
    return Eraser(lines, from, to, backward).erase();
}

EditedLines insertedLines(const FollowLines& lines, LinePlace at, const FollowText& incoming) {
    return Inserter(lines, at, incoming).insert();
}

}  // namespace melvorin
