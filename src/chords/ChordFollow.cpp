#include "chords/ChordFollow.h"

#include <algorithm>
#include <utility>

#include "chords/CellWidth.h"
#include "chords/ChordKeys.h"

namespace melvorin {
namespace {

bool holdsLineEnd(TextView text) {
    return text.find_first_of(u"\r\n\v") != TextView::npos;
}

FollowText incomingText(const Excerpt& after, std::size_t position, std::size_t length) {
    FollowText text(TextView(after.chars).substr(position - after.start, length), Origin::Incoming);
    for (const DiagramCells& diagram : after.diagrams) {
        if (diagram.position >= position && diagram.position < position + length)
            text.trace(diagram.position - position).cells = diagram.cells;
    }
    return text;
}

// Where the characters of `text` stand now that the control has made the edit.
void moveBehind(FollowText& text, const TextEdit& edit) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        Trace& trace = text.trace(i);
        if (trace.origin == Origin::Incoming)
            trace = {Origin::Document, edit.position + trace.from, trace.cells};
        else if (trace.origin == Origin::Document && trace.from >= edit.position + edit.length)
            trace.from = trace.from - edit.length + edit.text.size();
        else if (trace.origin == Origin::Document && trace.from >= edit.position)
            trace = {Origin::New, 0, trace.cells};
    }
}

// Enough for what somebody types before looking up.
constexpr std::size_t kMostSteps = 256;
// Of a longer line only the last edit can be taken back so.
constexpr std::size_t kLongestLineKept = 4096;

// The chords of `line` with the blanks of `text`, which has the same ones.
FollowText respaced(const FollowText& line, TextView text) {
    FollowText result;
    std::size_t at = 0;
    for (const char16_t c : text) {
        if (at < line.size() && line.chars()[at] == c) {
            result.append(line.part(at, at + 1));
            ++at;
        } else if (isAnyBlank(c)) {
            result.append(FollowText(TextView(&c, 1)));
        } else {
            while (at < line.size() && line.chars()[at] != c)
                ++at;
            result.append(line.part(at, at + 1));
            ++at;
        }
    }
    return result;
}

bool isBlankText(TextView text) {
    return trimmed(text).empty();
}

// Only who takes a single blank away wants to write two chords as one.
bool gluesChords(const FollowText& now, std::size_t caret, TextView removed,
                 const FollowText& incoming) {
    const bool tookBlanks =
        std::any_of(removed.begin(), removed.end(), [](char16_t c) { return isAnyBlank(c); });
    if (!tookBlanks || (removed.size() == 1 && incoming.empty()))
        return false;
    return caret > 0 && caret < now.size() && !isAnyBlank(now.chars()[caret - 1]) &&
           !isAnyBlank(now.chars()[caret]);
}

FollowText behindLastRun(const FollowText& line, const std::vector<ChordRun>& runs) {
    return line.part(runs.empty() ? 0 : runs.back().end());
}

}  // namespace

TextEdit differenceOf(const Excerpt& before, const Excerpt& after, std::size_t caretAfter) {
    const TextView old = before.chars;
    const TextView now = after.chars;
    const std::size_t most = std::min(old.size(), now.size());
    std::size_t behind = 0;
    while (behind < most && old[old.size() - 1 - behind] == now[now.size() - 1 - behind])
        ++behind;
    if (caretAfter >= after.start && caretAfter <= after.end())
        behind = std::min(behind, after.end() - caretAfter);
    std::size_t front = 0;
    while (front < most - behind && old[front] == now[front])
        ++front;
    return {before.start + front, old.size() - behind - front,
            Text(now.substr(front, now.size() - behind - front))};
}

FollowAnswer ChordFollow::edited(const Excerpt& before, std::size_t caretBefore,
                                 const Excerpt& after, std::size_t caretAfter) {
    return answerTo(before, differenceOf(before, after, caretAfter), caretBefore, after, caretAfter,
                    true);
}

FollowAnswer ChordFollow::replaced(const Excerpt& before, const TextEdit& edit,
                                   std::size_t caretBefore, const Excerpt& after,
                                   std::size_t caretAfter) {
    return answerTo(before, edit, caretBefore, after, caretAfter, false);
}

FollowAnswer ChordFollow::answerTo(const Excerpt& before, const TextEdit& edit,
                                   std::size_t caretBefore, const Excerpt& after,
                                   std::size_t caretAfter, bool mayKeepLines) {
    if (edit.length == 0 && edit.text.empty())
        return {{}, caretAfter, false};
    const FollowLines lines = linesOf(before);
    const std::size_t end = edit.position + edit.length;
    const Edit places{placeOf(lines, before.start, edit.position),
                      placeOf(lines, before.start, end),
                      incomingText(after, edit.position, edit.text.size()), caretBefore >= end};
    const std::size_t ends = cutAtLineEnds(places.incoming).size() - 1;
    const bool keepsLines = mayKeepLines && ends > 0 && ends == places.to.line - places.from.line;
    const EditedLines result = keepsLines ? followLineByLine(lines, before.start, places)
                                          : follow(lines, before.start, places);
    FollowText text = joined(result.lines);
    moveBehind(text, edit);
    FollowAnswer answer{editsTo(text, after.start, after.end()), 0, result.refused};
    answer.caret = keepsLines ? positionAfter(answer.edits, caretAfter)
                              : positionOf(result.lines, before.start, result.caret);
    return answer;
}

std::optional<FollowAnswer> ChordFollow::instead(const Excerpt& before, const TextEdit& edit,
                                                 std::size_t caretBefore) {
    ChordFollow next = *this;
    const FollowLines lines = linesOf(before);
    const std::size_t end = edit.position + edit.length;
    const Edit places{placeOf(lines, before.start, edit.position),
                      placeOf(lines, before.start, end), FollowText(edit.text, Origin::Incoming),
                      caretBefore >= end};
    const EditedLines result = next.follow(lines, before.start, places);
    const FollowText text = joined(result.lines);
    const EditedLines plain = editedPlainly(lines, places.from, places.to, places.incoming);
    if (result.caret == plain.caret && text.chars() == joined(plain.lines).chars())
        return std::nullopt;
    *this = std::move(next);
    return FollowAnswer{editsTo(text, before.start, before.end()),
                        positionOf(result.lines, before.start, result.caret), result.refused};
}

EditedLines ChordFollow::follow(const FollowLines& lines, std::size_t start, const Edit& edit) {
    const bool splits = holdsLineEnd(edit.incoming.chars());
    if (edit.from.line == edit.to.line && !splits)
        return followInLine(lines, start, edit);
    beginAnew();
    EditedLines result;
    if (edit.from.line == edit.to.line) {
        if (edit.from != edit.to)
            result = followInLine(lines, start, {edit.from, edit.to, {}, edit.backward});
        else
            result = {lines, edit.from, false};
    } else if (splits || edit.incoming.empty()) {
        result = erasedLines(lines, edit.from, edit.to, edit.backward);
    } else {
        // What comes in stands in front of what goes: chords over that keep their distance from it.
        const EditedLines front = editedPlainly(lines, edit.from, edit.from, edit.incoming);
        result = erasedLines(front.lines, front.caret, edit.to, edit.backward);
        if (result.refused)
            result = front;
    }
    if (splits)
        result =
            insertedLines(result.lines, result.refused ? edit.from : result.caret, edit.incoming);
    beginAnew();
    caretLine_.reset();
    cameToEmpty_ = false;
    return result;
}

// From the top down: the chord lines come first, and the words below find them as they will be.
EditedLines ChordFollow::followLineByLine(const FollowLines& lines, std::size_t start,
                                          const Edit& edit) {
    EditedLines result{lines, edit.from, false};
    const FollowLines parts = cutAtLineEnds(edit.incoming);
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const std::size_t line = edit.from.line + i;
        const FollowText& part = parts[i].text;
        FollowText& text = result.lines[line].text;
        const std::size_t begin = i == 0 ? edit.from.index : 0;
        const std::size_t end = i + 1 == parts.size() ? edit.to.index : text.size();
        if (i + 1 < parts.size())
            result.lines[line].end = parts[i].end;
        // What is the same in both has come anew too.
        const std::size_t most = std::min(end - begin, part.size());
        std::size_t front = 0;
        for (; front < most && text.chars()[begin + front] == part.chars()[front]; ++front)
            text.trace(begin + front) = part.trace(front);
        std::size_t rest = part.size();
        std::size_t behind = end;
        for (; rest > front && behind > begin + front &&
               text.chars()[behind - 1] == part.chars()[rest - 1];
             --rest, --behind)
            text.trace(behind - 1) = part.trace(rest - 1);
        beginAnew();
        caretLine_.reset();
        if (begin + front != behind || front != rest)
            result = followInLine(
                result.lines, start,
                {{line, begin + front}, {line, behind}, part.part(front, rest), false});
    }
    beginAnew();
    caretLine_.reset();
    return result;
}

void ChordFollow::caretAt(const Excerpt& text, std::size_t caret) {
    const FollowLines lines = linesOf(text);
    arrive(lines, text.start, placeOf(lines, text.start, caret).line);
}

void ChordFollow::arrive(const FollowLines& lines, std::size_t start, std::size_t line) {
    const std::size_t lineStart = positionOf(lines, start, {line, 0});
    if (caretLine_ == lineStart)
        return;
    caretLine_ = lineStart;
    cameToEmpty_ = lines[line].text.isBlank() && pairOfWords(lines, line);
    if (reckoning_.lineStart != lineStart)
        beginAnew();
}

// Whether the lines are what the last edit of the reckoning has left.
bool ChordFollow::isAt(const FollowLines& lines, std::size_t start, std::size_t line) const {
    const Reckoning& last = reckoning_;
    const bool isWords = last.subject == Subject::Words;
    const std::size_t above = (isWords ? 1U : 0U) + (last.hasUpper ? 1U : 0U);
    return last.subject != Subject::None && line >= above &&
           last.lineStart == positionOf(lines, start, {line, 0}) &&
           lines[line].text.chars() == last.now &&
           (!isWords || lines[line - 1].text.chars() == last.chordsNow) &&
           (!last.hasUpper || lines[line - above].text.chars() == last.upperNow);
}

bool ChordFollow::continues(Subject subject, const FollowLines& lines, std::size_t start,
                            const Edit& edit) const {
    const Reckoning& last = reckoning_;
    if (last.subject != subject || !isAt(lines, start, edit.from.line) ||
        edit.from.index > last.end || edit.to.index < last.begin)
        return false;
    // Delete behind what was typed and ends in a blank: the typing is done, the next word goes.
    const bool deletesBehind = edit.incoming.empty() && edit.from.index == last.end;
    return !deletesBehind || last.begin == last.end || !isAnyBlank(last.now[last.end - 1]);
}

void ChordFollow::addStep(const FollowLines& lines, const Edit& edit) {
    const bool isFull = steps_.size() == kMostSteps || reckoning_.now.size() > kLongestLineKept;
    if (isFull && !steps_.empty())
        steps_.erase(steps_.begin());
    const FollowText removed = lines[edit.from.line].text.part(edit.from.index, edit.to.index);
    steps_.push_back({edit.from.index, Text(removed.chars()), edit.incoming.size(), reckoning_});
}

// The reverse of the last edit: everything is as it was before that.
std::optional<EditedLines> ChordFollow::takenBack(const FollowLines& lines, std::size_t start,
                                                  const Edit& edit) {
    const std::size_t line = edit.from.line;
    if (steps_.empty() || !isAt(lines, start, line))
        return std::nullopt;
    const Step& step = steps_.back();
    if (edit.from.index != step.from || edit.to.index != step.from + step.inserted ||
        edit.incoming.chars() != step.removed)
        return std::nullopt;
    const bool isWords = step.before.subject == Subject::Words;
    EditedLines result = editedPlainly(lines, edit.from, edit.to, edit.incoming);
    const auto restore = [&](std::size_t above, const Text& text) {
        FollowText& chords = result.lines[line - above].text;
        chords = respaced(chords, text);
    };
    restore(isWords ? 1 : 0, isWords ? step.before.chordsNow : step.before.now);
    if (step.before.hasUpper)
        restore(isWords ? 2 : 1, step.before.upperNow);
    reckoning_ = Reckoning(step.before);
    reckoning_.line = line;
    steps_.pop_back();
    if (steps_.empty())
        beginAnew();
    return result;
}

EditedLines ChordFollow::followInLine(const FollowLines& lines, std::size_t start,
                                      const Edit& edit) {
    const std::size_t line = edit.from.line;
    arrive(lines, start, line);
    EditedLines result = editedPlainly(lines, edit.from, edit.to, edit.incoming);
    const auto staysChords = [&] {
        return edit.incoming.empty() ||
               mayStayChords(result.lines[line].text, edit.from.index, result.caret.index);
    };
    if (auto reversed = takenBack(lines, start, edit)) {
        result = std::move(*reversed);
    } else if (continues(Subject::Chords, lines, start, edit) && staysChords()) {
        result = followChords(lines, edit, true);
    } else if (continues(Subject::Words, lines, start, edit)) {
        LinePair pair{line, line - 1, std::nullopt};
        if (reckoning_.hasUpper)
            pair.upper = line - 2;
        result = followWords(lines, pair, edit);
    } else if (const auto pair = pairOfWords(lines, line)) {
        beginAnew();
        result = followWords(lines, *pair, edit);
    } else if (mayHoldChords(lines[line].text, edit.from.index, edit.to.index) && staysChords()) {
        beginAnew();
        result = followChords(lines, edit, false);
    } else {
        beginAnew();
    }
    remember(result.lines, start);
    caretLine_ = positionOf(result.lines, start, {line, 0});
    return result;
}

void ChordFollow::remember(const FollowLines& lines, std::size_t start) {
    if (reckoning_.subject == Subject::None)
        return;
    const std::size_t line = reckoning_.line;
    reckoning_.lineStart = positionOf(lines, start, {line, 0});
    reckoning_.now = lines[line].text.chars();
    const bool isWords = reckoning_.subject == Subject::Words;
    if (isWords)
        reckoning_.chordsNow = lines[line - 1].text.chars();
    if (reckoning_.hasUpper)
        reckoning_.upperNow = lines[line - (isWords ? 2 : 1)].text.chars();
}

// ---- Edits in words --------------------------------------------------------------------------

void ChordFollow::startWords(const FollowLines& lines, const LinePair& pair, const Edit& edit) {
    former_.lines.assign(lines.begin() + static_cast<std::ptrdiff_t>(pair.top()),
                         lines.begin() + static_cast<std::ptrdiff_t>(pair.words + 1));
    former_.pair = {pair.words - pair.top(), pair.chords - pair.top(), std::nullopt};
    if (pair.upper)
        former_.pair.upper = 0;
    Reckoning& r = reckoning_;
    r.subject = Subject::Words;
    r.now = lines[pair.words].text.chars();
    r.chordsNow = lines[pair.chords].text.chars();
    r.hasUpper = pair.upper.has_value();
    if (r.hasUpper)
        r.upperNow = lines[*pair.upper].text.chars();
    r.begin = edit.from.index;
    r.end = r.formerEnd = edit.to.index;
}

EditedLines ChordFollow::followWords(const FollowLines& lines, const LinePair& pair,
                                     const Edit& edit) {
    if (reckoning_.subject != Subject::Words)
        startWords(lines, pair, edit);
    addStep(lines, edit);
    Reckoning& r = reckoning_;
    r.line = pair.words;
    const std::size_t end = std::max(r.end, edit.to.index);
    r.formerEnd += end - r.end;
    r.begin = std::min(r.begin, edit.from.index);
    r.end = end - (edit.to.index - edit.from.index) + edit.incoming.size();

    EditedLines result = editedPlainly(lines, edit.from, edit.to, edit.incoming);
    const ChordStack former(former_.lines, former_.pair);
    auto stack = former.writtenIn(lines, pair);
    if (!stack)
        return result;
    const FollowText& words = former_.lines[former_.pair.words].text;
    const ColumnMap map(words, result.lines[pair.words].text,
                        {{r.begin, r.formerEnd, r.begin, r.end,
                          cameToEmpty_ || words.part(r.formerEnd).isBlank()}});
    stack->move(map);
    result.lines[pair.chords].text = stack->lowerLine();
    if (pair.upper)
        result.lines[*pair.upper].text = stack->upperLine();
    return result;
}

// ---- Edits in a chord line -------------------------------------------------------------------

void ChordFollow::startChords(const FollowLines& lines, std::size_t line) {
    Reckoning& r = reckoning_;
    r.subject = Subject::Chords;
    r.line = line;
    r.homes.clear();
    for (const ChordRun& run : chordRuns(lines[line].text))
        r.homes.push_back(run.column);
    r.now = lines[line].text.chars();
    r.begin = r.end = 0;
    r.upperFromRight.clear();
    const auto pair = pairOfChords(lines, line);
    r.hasUpper = pair && pair->chords == line && pair->upper;
    if (!r.hasUpper)
        return;
    r.upperNow = lines[line - 1].text.chars();
    for (const ChordRun& run : chordRuns(lines[line - 1].text)) {
        const auto below = std::find(r.homes.begin(), r.homes.end(), run.column);
        r.upperFromRight.push_back(static_cast<std::size_t>(r.homes.end() - below));
    }
}

// The line with its chords where they want to stand, and over them those of the upper line.
void ChordFollow::writeChordLine(FollowLines& lines, std::size_t line,
                                 const std::vector<StackedChord>& chords, const FollowText& tail) {
    lines[line].text = writeChords(chords, tail);
    Reckoning& r = reckoning_;
    if (!r.hasUpper)
        return;
    const std::vector<std::size_t> columns = settledColumns(chords);
    FollowText& upper = lines[line - 1].text;
    std::vector<StackedChord> above = chordsOf(upper);
    for (std::size_t i = 0; i < above.size() && i < r.upperFromRight.size(); ++i) {
        const std::size_t fromRight = r.upperFromRight[i];
        if (fromRight > 0 && fromRight <= columns.size())
            above[i].column = columns[columns.size() - fromRight];
    }
    upper = writeChords(above, behindLastRun(upper, chordRuns(upper)));
}

EditedLines ChordFollow::followChords(const FollowLines& lines, const Edit& edit, bool continues) {
    const std::size_t line = edit.from.line;
    if (!continues) {
        startChords(lines, line);
        reckoning_.begin = edit.from.index;
        reckoning_.end = edit.to.index;
    }
    addStep(lines, edit);
    Reckoning& r = reckoning_;
    r.line = line;
    EditedLines result = editedPlainly(lines, edit.from, edit.to, edit.incoming);
    const FollowText& before = lines[line].text;
    FollowText now = result.lines[line].text;
    const std::size_t caret = result.caret.index;
    const bool isParted = gluesChords(now, caret, steps_.back().removed, edit.incoming);
    if (isParted) {
        FollowText parted = now.part(0, caret);
        parted.appendBlanks(1);
        parted.append(now.part(caret));
        now = std::move(parted);
    }
    const std::vector<ChordRun> formerRuns = chordRuns(before);
    const std::vector<ChordRun> runs = chordRuns(now);
    std::vector<StackedChord> chords = chordsOf(now);

    const bool takesBlanks =
        isBlankText(before.chars().substr(edit.from.index, edit.to.index - edit.from.index));
    const bool isBlankEdit = takesBlanks && isBlankText(edit.incoming.chars());
    const bool deletesForward = isBlankEdit && !edit.backward && edit.incoming.empty();
    const std::size_t caretColumn = now.columns()[caret];
    std::vector<std::size_t> homes;
    std::size_t fixed = 0;  // runs that begin in front of the caret: they stand where they are
    for (std::size_t i = 0; i < runs.size(); ++i) {
        homes.push_back(runs[i].column);
        const std::size_t former = formerRuns.size() - std::min(runs.size() - i, formerRuns.size());
        if (runs[i].index < caret || former >= r.homes.size()) {
            ++fixed;
            continue;
        }
        const bool isWhole = formerRuns[former].index >= edit.to.index;
        const bool isAtCaret = runs[i].index == caret + (isParted ? 1 : 0);
        const bool isNext = i == fixed;
        if (isNext && (!isWhole || (isAtCaret && isBlankEdit) || deletesForward))
            continue;  // it goes where the edit alone puts it
        homes.back() = r.homes[former];
        chords[i].column = isNext ? std::max(homes.back(), caretColumn) : homes.back();
    }
    r.homes = homes;
    r.begin = std::min(r.begin, edit.from.index);
    r.end =
        std::max(r.end, edit.to.index) - (edit.to.index - edit.from.index) + edit.incoming.size();
    writeChordLine(result.lines, line, chords, behindLastRun(now, runs));
    return result;
}

std::optional<FollowAnswer> ChordFollow::moveChord(const Excerpt& text, std::size_t caret,
                                                   Move move) {
    FollowLines lines = linesOf(text);
    const LinePlace place = placeOf(lines, text.start, caret);
    const FollowText line = lines[place.line].text;
    const auto run = chordRunAt(line, place.index);
    if (!holdsChords(line) || !run)
        return std::nullopt;
    arrive(lines, text.start, place.line);
    const std::vector<ChordRun> runs = chordRuns(line);
    std::size_t number = 0;
    while (runs[number].index != run->index)
        ++number;
    const std::size_t least =
        number == 0 ? 0 : runs[number - 1].column + runs[number - 1].cells + 1;
    const bool left = move == Move::CellLeft || move == Move::SyllableLeft;
    std::size_t target = left ? run->column - 1 : run->column + 1;
    if (move == Move::SyllableLeft || move == Move::SyllableRight)
        target = nextChordStop(lines, place.line, run->column, left);
    if (left && (run->column == 0 || run->column <= least))
        return std::nullopt;

    if (!continues(Subject::Chords, lines, text.start,
                   {{place.line, run->index}, {place.line, run->end()}, FollowText(u"."), false})) {
        beginAnew();
        startChords(lines, place.line);
    }
    steps_.clear();
    reckoning_.line = place.line;
    reckoning_.homes[number] = target;
    std::vector<StackedChord> chords = chordsOf(line);
    for (std::size_t i = number; i < chords.size(); ++i)
        chords[i].column = reckoning_.homes[i];
    writeChordLine(lines, place.line, chords, behindLastRun(line, runs));
    const ChordRun moved = chordRuns(lines[place.line].text)[number];
    reckoning_.begin = moved.index;
    reckoning_.end = moved.end();
    remember(lines, text.start);
    const std::size_t lineStart = positionOf(lines, text.start, {place.line, 0});
    caretLine_ = lineStart;
    return FollowAnswer{editsTo(joined(lines), text.start, text.end()),
                        lineStart + moved.index + (place.index - run->index), false};
}

}  // namespace melvorin
