#include "chords/KeyDebt.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "base/EditorLine.h"
#include "chords/CellWidth.h"
#include "chords/ChordLine.h"
#include "chords/Note.h"

namespace melvorin {
namespace {

constexpr unsigned kOctave = 12;

std::vector<TextView> linesOf(TextView text) {
    std::vector<TextView> lines;
    for (;;) {
        const TextLine line = takeEditorLine(text);
        lines.push_back(line.chars);
        if (line.end.empty())
            return lines;
    }
}

unsigned upwards(Direction direction, unsigned steps) {
    return direction == Direction::Up ? steps % kOctave : (kOctave - steps % kOctave) % kOctave;
}

// Nothing where the line stays as it is.
std::optional<KeyChange> changeOfSteps(Direction direction, Spelling spelling, unsigned up) {
    if (up == 0)
        return std::nullopt;
    return KeyChange(direction, spelling, direction == Direction::Up ? up : kOctave - up);
}

bool isPart(TextView part, TextView whole) {
    part = trimmed(part);
    return !part.empty() && whole.find(part) != TextView::npos;
}

// Where the lines of a text came from.
class LineSources {
  public:
    LineSources(TextView before, TextView after)
        : before_(linesOf(before)), after_(linesOf(after)), sources_(after_.size(), KeyDebt::kNone) {
    }
    // `marked` are the lines of the text before that matter, in rising order.
    std::vector<std::size_t> find(std::span<const std::size_t> marked);

  private:
    struct Stretch {
        std::size_t begin = 0;
        std::size_t end = 0;
        std::size_t size() const { return end - begin; }
    };
    void pairGap(Stretch before, Stretch after, std::span<const std::size_t> marked);

    std::vector<TextView> before_;
    std::vector<TextView> after_;
    std::vector<std::size_t> sources_;
};

// Lines between two that are the same. As many as before are the same lines, edited. Else those
// are looked for that are a part of a line, or that a line is a part of.
void LineSources::pairGap(Stretch before, Stretch after, std::span<const std::size_t> marked) {
    if (before.size() == after.size()) {
        for (std::size_t i = 0; i < after.size(); ++i)
            sources_[after.begin + i] = before.begin + i;
        return;
    }
    for (std::size_t line = after.begin; line < after.end; ++line) {
        for (const std::size_t old : marked) {
            if (old >= before.begin && old < before.end && sources_[line] == KeyDebt::kNone &&
                (isPart(after_[line], before_[old]) || isPart(before_[old], after_[line])))
                sources_[line] = old;
        }
    }
}

std::vector<std::size_t> LineSources::find(std::span<const std::size_t> marked) {
    const std::size_t shorter = std::min(before_.size(), after_.size());
    std::size_t front = 0;
    while (front < shorter && before_[front] == after_[front])
        sources_[front] = front, ++front;
    std::size_t back = 0;
    while (back < shorter - front && before_[before_.size() - 1 - back] == after_[after_.size() - 1 - back])
        ++back, sources_[after_.size() - back] = before_.size() - back;
    // Marked lines that are there unchanged part the rest into gaps.
    Stretch old{front, before_.size() - back};
    Stretch now{front, after_.size() - back};
    if (old.size() != now.size()) {
        for (const std::size_t line : marked) {
            if (line < old.begin || line >= old.end)
                continue;
            const auto begin = after_.begin() + static_cast<std::ptrdiff_t>(now.begin);
            const auto end = after_.begin() + static_cast<std::ptrdiff_t>(now.end);
            const auto same = static_cast<std::size_t>(
                std::find(begin, end, before_[line]) - after_.begin());
            if (same == now.end)
                continue;
            pairGap({old.begin, line}, {now.begin, same}, marked);
            sources_[same] = line;
            old.begin = line + 1;
            now.begin = same + 1;
        }
    }
    pairGap(old, now, marked);
    return std::move(sources_);
}

std::optional<unsigned> numberIn(std::string_view text, unsigned most) {
    unsigned value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    const bool whole = error == std::errc() && end == text.data() + text.size();
    return whole && value <= most ? std::optional(value) : std::nullopt;
}

// Cuts off what stands in front of the first blank.
std::string_view takeWord(std::string_view& text) {
    const std::size_t length = std::min(text.find(' '), text.size());
    const std::string_view word = text.substr(0, length);
    text.remove_prefix(std::min(length + 1, text.size()));
    return word;
}

const LeftOverLine* leftOverAt(const LeftOver& found, std::size_t number) {
    const auto line = std::lower_bound(
        found.lines.begin(), found.lines.end(), number,
        [](const LeftOverLine& l, std::size_t n) { return l.number < n; });
    return line == found.lines.end() || line->number != number ? nullptr : &*line;
}

}  // namespace

const KeyDebt::Line* KeyDebt::find(std::size_t number) const {
    const auto line =
        std::lower_bound(lines_.begin(), lines_.end(), number,
                         [](const Line& l, std::size_t n) { return l.number < n; });
    return line == lines_.end() || line->number != number ? nullptr : &*line;
}

KeyDebt::Line& KeyDebt::at(std::size_t number) {
    const auto line =
        std::lower_bound(lines_.begin(), lines_.end(), number,
                         [](const Line& l, std::size_t n) { return l.number < n; });
    if (line != lines_.end() && line->number == number)
        return *line;
    return *lines_.insert(line, {number, 0, false});
}

void KeyDebt::dropEmpty() {
    std::erase_if(lines_, [](const Line& line) { return line.behind == 0 && !line.isAlone; });
}

unsigned KeyDebt::stepsBehind(std::size_t line) const {
    const Line* const found = find(line);
    return found == nullptr ? 0 : found->behind;
}

std::optional<KeyChange> KeyDebt::changeOf(std::size_t line) const {
    return changeOfSteps(direction_, spelling_, stepsBehind(line));
}

void KeyDebt::keyChanged(Direction direction, Spelling spelling, unsigned steps,
                         std::span<const LeftOverLine> leftOver) {
    direction_ = direction;
    spelling_ = spelling;
    for (const LeftOverLine& line : leftOver) {
        Line& owing = at(line.number);
        owing.behind = (owing.behind + upwards(direction, steps)) % kOctave;
    }
    dropEmpty();
}

void KeyDebt::moved() {
    for (Line& line : lines_)
        line.behind = 0;
    dropEmpty();
}

void KeyDebt::leaveAlone(std::size_t line) {
    at(line).isAlone = true;
}

bool KeyDebt::isLeftAlone(std::size_t line) const {
    const Line* const found = find(line);
    return found != nullptr && found->isAlone;
}

void KeyDebt::edited(TextView before, TextView after) {
    if (isZero() || before == after)
        return;
    std::vector<std::size_t> marked;
    for (const Line& line : lines_)
        marked.push_back(line.number);
    follow(LineSources(before, after).find(marked));
}

void KeyDebt::follow(std::span<const std::size_t> sources) {
    std::vector<Line> followed;
    for (std::size_t number = 0; number < sources.size(); ++number) {
        const Line* const source = sources[number] == kNone ? nullptr : find(sources[number]);
        if (source != nullptr)
            followed.push_back({number, source->behind, source->isAlone});
    }
    lines_ = std::move(followed);
}

std::string KeyDebt::text() const {
    std::string text = direction_ == Direction::Up ? "up" : "down";
    text += spelling_ == Spelling::Sharps ? " sharps" : " flats";
    for (const Line& line : lines_) {
        text += ' ' + std::to_string(line.number) + ':';
        text += line.isAlone ? "-" : "";
        text += line.behind > 0 ? std::to_string(line.behind) : "";
    }
    return text;
}

KeyDebt KeyDebt::parse(std::string_view text) {
    constexpr unsigned mostLines = 100'000'000;
    KeyDebt debt;
    const std::string_view direction = takeWord(text);
    const std::string_view spelling = takeWord(text);
    if ((direction != "up" && direction != "down") || (spelling != "sharps" && spelling != "flats"))
        return {};
    debt.direction_ = direction == "up" ? Direction::Up : Direction::Down;
    debt.spelling_ = spelling == "sharps" ? Spelling::Sharps : Spelling::Flats;
    while (!text.empty()) {
        std::string_view word = takeWord(text);
        const std::size_t colon = std::min(word.find(':'), word.size());
        const auto number = numberIn(word.substr(0, colon), mostLines);
        word.remove_prefix(std::min(colon + 1, word.size()));
        const bool alone = word.starts_with('-');
        word.remove_prefix(alone ? 1 : 0);
        const auto behind = alone && word.empty() ? std::optional(0U) : numberIn(word, kOctave - 1);
        if (!number || !behind || (*behind == 0 && !alone) ||
            (!debt.lines_.empty() && debt.lines_.back().number >= *number))
            return {};
        debt.lines_.push_back({*number, *behind, alone});
    }
    return debt;
}

std::vector<OtherMove> linesBehind(const KeyDebt& debt, const LeftOver& found, TextView song) {
    std::vector<OtherMove> moves;
    if (debt.isZero())
        return moves;
    const std::vector<TextView> lines = linesOf(song);
    for (std::size_t number = 0; number < lines.size(); ++number) {
        auto change = debt.changeOf(number);
        const LeftOverLine* const left = leftOverAt(found, number);
        const bool isChords = IsChordLine(lines[number]) &&
                              std::any_of(lines[number].begin(), lines[number].end(), isNoteLetter);
        if (change && (left != nullptr || isChords))
            moves.push_back({left != nullptr ? *left : LeftOverLine{number, {}, false}, change});
    }
    return moves;
}

std::vector<OtherMove> othersOfKeyChange(const KeyDebt& debt, const LeftOver& found, TextView song,
                                         Direction direction, Spelling spelling, unsigned steps,
                                         bool moveAll) {
    std::vector<OtherMove> moves;
    const std::size_t count = debt.isZero() ? 0 : linesOf(song).size();
    const auto add = [&](std::size_t number, const LeftOverLine* left) {
        const LeftOverLine line = left != nullptr ? *left : LeftOverLine{number, {}, false};
        if (debt.isLeftAlone(number))
            moves.push_back({line, std::nullopt});
        else if (moveAll && (left != nullptr || debt.stepsBehind(number) > 0))
            moves.push_back({line, changeOfSteps(direction, spelling,
                                                 (debt.stepsBehind(number) +
                                                  upwards(direction, steps)) %
                                                     kOctave)});
    };
    if (debt.isZero()) {
        for (const LeftOverLine& line : found.lines)
            add(line.number, &line);
        return moves;
    }
    for (std::size_t number = 0; number < count; ++number)
        add(number, leftOverAt(found, number));
    return moves;
}

}  // namespace melvorin
