#include "chords/ChordStack.h"

#include <algorithm>
#include <utility>

#include "chords/ChordRow.h"

namespace melvorin {
namespace {

bool isOrdinary(const FollowText& gap) {
    return gap.chars().find_first_not_of(u' ') == TextView::npos;
}

// A gap of `cells` cells that begins at `column`.
FollowText fittedGap(const FollowText& gap, std::size_t column, std::size_t cells) {
    if (gap.cells(column) == cells)
        return gap;
    FollowText fitted;
    if (isOrdinary(gap))
        fitted = gap.part(0, std::min(cells, gap.size()));
    fitted.appendBlanks(cells - fitted.size());
    return fitted;
}

void takeWriting(StackedChord& chord, const StackedChord& written) {
    chord.text = written.text;
    const bool isUnusual = !isOrdinary(chord.gap) && chord.gap.chars() != written.gap.chars();
    chord.gap = isUnusual ? FollowText(chord.gap.chars()) : written.gap;
}

FollowText behindLastChord(const FollowText& line) {
    const std::vector<ChordRun> runs = chordRuns(line);
    return runs.empty() ? FollowText() : line.part(runs.back().end());
}

}  // namespace

std::vector<StackedChord> chordsOf(const FollowText& line, std::size_t begin, std::size_t end) {
    std::vector<StackedChord> chords;
    const std::vector<std::size_t> columns = line.columns();
    std::size_t behind = begin;
    for (const ChordRun& run : chordRuns(line)) {
        const std::size_t from = std::max(run.index, begin);
        const std::size_t to = std::min(run.end(), end);
        if (from >= to)
            continue;
        chords.push_back({line.part(from, to), line.part(behind, from), columns[from]});
        behind = to;
    }
    return chords;
}

namespace {

bool isRemark(const StackedChord& chord) {
    const std::vector<RowItem> items = readRow(chord.text.writing());
    return std::any_of(items.begin(), items.end(), [](const RowItem& item) {
        return item.kind == RowItemKind::Word || item.kind == RowItemKind::Remark;
    });
}

// Each where it wants to stand, or where its neighbour leaves room; `roomy`, a remark keeps two
// blanks where it had them.
std::vector<std::size_t> settled(const std::vector<StackedChord>& chords, bool roomy) {
    std::vector<std::size_t> columns;
    std::size_t free = 0;
    const StackedChord* former = nullptr;
    for (const StackedChord& chord : chords) {
        const bool isTight = former != nullptr && chord.column <= free && chord.gap.cells() > 1;
        const bool needsRoom = roomy && isTight && (isRemark(chord) || isRemark(*former));
        columns.push_back(std::max(chord.column, free + (needsRoom ? 1 : 0)));
        former = &chord;
        free = columns.back() + chord.text.cells(columns.back()) + 1;
    }
    return columns;
}

FollowText written(const std::vector<StackedChord>& chords, const std::vector<std::size_t>& columns,
                   const FollowText& tail) {
    FollowText line;
    std::size_t column = 0;
    for (std::size_t i = 0; i < chords.size(); ++i) {
        line.append(fittedGap(chords[i].gap, column, columns[i] - column));
        line.append(chords[i].text);
        column = columns[i] + chords[i].text.cells(columns[i]);
    }
    line.append(tail);
    return line;
}

}  // namespace

// A remark is told from words by the room around it: without that the line would be no chord line.
std::vector<std::size_t> settledColumns(const std::vector<StackedChord>& chords) {
    std::vector<std::size_t> columns = settled(chords, false);
    std::vector<std::size_t> roomy = settled(chords, true);
    if (columns != roomy && !holdsChords(written(chords, columns, {})) &&
        holdsChords(written(chords, roomy, {})))
        return roomy;
    return columns;
}

FollowText writeChords(const std::vector<StackedChord>& chords, const FollowText& tail) {
    return written(chords, settledColumns(chords), tail);
}

ChordStack::ChordStack(const FollowLines& lines, const LinePair& pair)
    : lower_(chordsOf(lines[pair.chords].text)),
      lowerTail_(behindLastChord(lines[pair.chords].text)),
      lowerEnd_(lines[pair.chords].end),
      hasUpper_(pair.upper.has_value()) {
    if (!pair.upper)
        return;
    upperEnd_ = lines[*pair.upper].end;
    upperTail_ = behindLastChord(lines[*pair.upper].text);
    for (StackedChord& chord : chordsOf(lines[*pair.upper].text)) {
        const auto below = std::find_if(lower_.begin(), lower_.end(), [&](const StackedChord& c) {
            return c.column == chord.column;
        });
        upper_.push_back({std::move(chord), static_cast<std::size_t>(below - lower_.begin())});
    }
}

void ChordStack::move(const std::function<std::size_t(std::size_t)>& place) {
    for (StackedChord& chord : lower_)
        chord.column = place(chord.column);
}

ChordStack ChordStack::between(std::size_t begin, std::size_t end) const {
    ChordStack part;
    std::vector<std::size_t> numbers(lower_.size(), Text::npos);
    for (std::size_t i = 0; i < lower_.size(); ++i) {
        if (lower_[i].column < begin || lower_[i].column >= end)
            continue;
        numbers[i] = part.lower_.size();
        part.lower_.push_back(lower_[i]);
    }
    for (const UpperChord& chord : upper_) {
        if (numbers[chord.below] != Text::npos)
            part.upper_.push_back({chord.chord, numbers[chord.below]});
    }
    part.hasUpper_ = !part.upper_.empty();
    part.lowerEnd_ = lowerEnd_;
    part.upperEnd_ = upperEnd_;
    if (!part.lower_.empty() && numbers.back() != Text::npos) {
        part.lowerTail_ = lowerTail_;
        part.upperTail_ = upperTail_;
    }
    return part;
}

void ChordStack::append(const ChordStack& other) {
    if (empty())
        lowerEnd_ = other.lowerEnd_;
    if (!hasUpper_)
        upperEnd_ = other.upperEnd_;
    for (UpperChord chord : other.upper_) {
        chord.below += lower_.size();
        upper_.push_back(std::move(chord));
    }
    lower_.insert(lower_.end(), other.lower_.begin(), other.lower_.end());
    hasUpper_ = hasUpper_ || other.hasUpper_;
    if (!other.empty()) {
        lowerTail_ = other.lowerTail_;
        upperTail_ = other.upperTail_;
    }
}

std::optional<ChordStack> ChordStack::writtenIn(const FollowLines& lines,
                                                const LinePair& pair) const {
    ChordStack stack = *this;
    const std::vector<StackedChord> lower = chordsOf(lines[pair.chords].text);
    if (lower.size() != lower_.size())
        return std::nullopt;
    for (std::size_t i = 0; i < lower.size(); ++i)
        takeWriting(stack.lower_[i], lower[i]);
    stack.lowerTail_ = behindLastChord(lines[pair.chords].text);
    if (!pair.upper)
        return stack;
    const std::vector<StackedChord> upper = chordsOf(lines[*pair.upper].text);
    if (upper.size() != upper_.size())
        return std::nullopt;
    for (std::size_t i = 0; i < upper.size(); ++i)
        takeWriting(stack.upper_[i].chord, upper[i]);
    stack.upperTail_ = behindLastChord(lines[*pair.upper].text);
    return stack;
}

void ChordStack::dropTails() {
    lowerTail_ = upperTail_ = FollowText();
}

FollowText ChordStack::upperLine() const {
    const std::vector<std::size_t> columns = settledColumns(lower_);
    std::vector<StackedChord> chords;
    for (const UpperChord& upper : upper_) {
        chords.push_back(upper.chord);
        chords.back().column = columns[upper.below];
    }
    return writeChords(chords, upperTail_);
}

FollowLines ChordStack::lines() const {
    FollowLines lines;
    if (hasUpper_ && !upper_.empty())
        lines.push_back({upperLine(), upperEnd_});
    if (!lower_.empty())
        lines.push_back({lowerLine(), lowerEnd_});
    return lines;
}

ColumnMap::ColumnMap(const FollowText& before, const FollowText& now,
                     std::vector<Stretch> stretches)
    : before_(before.columns()), now_(now.columns()), stretches_(std::move(stretches)) {}

std::size_t ColumnMap::operator()(std::size_t column) const {
    // The letter is the last one that begins at the column or left of it.
    const auto behind = std::upper_bound(before_.begin(), before_.end(), column);
    auto letter = static_cast<std::size_t>(behind - before_.begin()) - 1;
    while (letter > 0 && before_[letter - 1] == before_[letter])
        --letter;
    const auto next = std::upper_bound(
        stretches_.begin(), stretches_.end(), column,
        [&](std::size_t c, const Stretch& stretch) { return c < before_[stretch.begin]; });
    if (next == stretches_.begin())
        return column;
    const auto last = next - 1;
    if (last->keeps)
        return now_[last->nowBegin] + (column - before_[last->begin]);
    if (column < before_[last->end])
        return now_[last->nowBegin] +
               std::min(column - before_[last->begin], now_[last->nowEnd] - now_[last->nowBegin]);
    const std::size_t moved = last->nowEnd + (std::max(letter, last->end) - last->end);
    return now_[std::min(moved, now_.size() - 1)] + (column - before_[std::max(letter, last->end)]);
}

}  // namespace melvorin
