#include "chords/KeyDebt.h"

#include <algorithm>
#include <charconv>
#include <iterator>

#include "base/EditorLine.h"
#include "chords/ChordLine.h"
#include "chords/LineSources.h"
#include "chords/Note.h"

namespace melvorin {
namespace {

constexpr unsigned kOctave = 12;

unsigned upwards(Direction direction, unsigned steps) {
    return direction == Direction::Up ? steps % kOctave : (kOctave - steps % kOctave) % kOctave;
}

// Nothing where the line stays as it is.
std::optional<KeyChange> changeOfSteps(Direction direction, Spelling spelling, unsigned up) {
    if (up == 0)
        return std::nullopt;
    return KeyChange(direction, spelling, direction == Direction::Up ? up : kOctave - up);
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

const LeftOverLine* leftOverAt(const std::vector<LeftOverLine>& lines, std::size_t number) {
    const auto line =
        std::lower_bound(lines.begin(), lines.end(), number,
                         [](const LeftOverLine& l, std::size_t n) { return l.number < n; });
    return line == lines.end() || line->number != number ? nullptr : &*line;
}

}  // namespace

const KeyDebt::Line* KeyDebt::find(std::size_t number) const {
    const auto line = std::lower_bound(lines_.begin(), lines_.end(), number,
                                       [](const Line& l, std::size_t n) { return l.number < n; });
    return line == lines_.end() || line->number != number ? nullptr : &*line;
}

KeyDebt::Line& KeyDebt::at(std::size_t number) {
    const auto line = std::lower_bound(lines_.begin(), lines_.end(), number,
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

void KeyDebt::moved(std::size_t line) {
    if (find(line) == nullptr)
        return;
    at(line).behind = 0;
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
    follow(lineSources(before, after));
}

void KeyDebt::follow(std::span<const std::size_t> sources) {
    std::vector<Line> followed;
    for (std::size_t number = 0; number < sources.size(); ++number) {
        const Line* const source = sources[number] == kNoLine ? nullptr : find(sources[number]);
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
    const std::vector<LeftOverLine> others = linesWithKeys(found);
    std::size_t number = 0;
    for (TextView rest = song; !debt.isZero() && !rest.empty(); ++number) {
        const TextView line = takeEditorLine(rest).chars;
        const LeftOverLine* const left = leftOverAt(others, number);
        const bool isChords =
            IsChordLine(line) && std::any_of(line.begin(), line.end(), isNoteLetter);
        if (const auto change = debt.changeOf(number); change && (left != nullptr || isChords))
            moves.push_back({left != nullptr ? *left : LeftOverLine{number, {}, false}, change});
    }
    return moves;
}

std::vector<OtherMove> KeyDebt::othersOfKeyChange(const LeftOver& found, Direction direction,
                                                  Spelling spelling, unsigned steps,
                                                  bool moveAll) const {
    std::vector<std::size_t> numbers;
    for (const Line& line : lines_)
        numbers.push_back(line.number);
    const std::vector<LeftOverLine> others = linesWithKeys(found);
    for (const LeftOverLine& line : others)
        numbers.push_back(line.number);
    std::sort(numbers.begin(), numbers.end());
    numbers.erase(std::unique(numbers.begin(), numbers.end()), numbers.end());
    std::vector<OtherMove> moves;
    for (const std::size_t number : numbers) {
        const LeftOverLine* const left = leftOverAt(others, number);
        const bool stays = isLeftAlone(number);
        const unsigned up = (stepsBehind(number) + upwards(direction, steps)) % kOctave;
        if (stays || moveAll)
            moves.push_back({left != nullptr ? *left : LeftOverLine{number, {}, false},
                             stays ? std::nullopt : changeOfSteps(direction, spelling, up)});
    }
    return moves;
}

}  // namespace melvorin
