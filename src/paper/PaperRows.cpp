#include "paper/PaperRows.h"

#include <algorithm>
#include <numeric>

namespace melvorin {
namespace {

// What is nearer than this is at the same place.
constexpr double kNear = 0.01;
// The parts of a wrapped line but the first are indented by this many em, but not by more than
// this part of the width.
constexpr double kIndent = 1.5;
constexpr double kMostIndent = 0.125;

using Lines = std::span<const MeasuredLine>;

// Wraps lines that belong together: chords above, words last.
class Wrapping {
  public:
    Wrapping(Lines lines, const ColumnRoom& room, SetSong& set, const PaperFonts& fonts)
        : lines_(lines), room_(room), set_(set), fonts_(fonts) {
        for (const MeasuredLine& line : lines)
            parts_.push_back({line.words});
    }

    std::vector<PaperRow> rows();

  private:
    // The words of a line that are not in a row yet.
    using Part = std::span<const PaperWord>;

    struct Height {
        double ascent = 0;
        double descent = 0;
    };

    Height heightOf(const Part& part, const MeasuredLine& line) const;
    bool fits(double limit) const;
    // A chord in several looks is several words, but one chord.
    bool isPartOfChord(std::size_t line, const PaperWord& word) const {
        return word.isJoined && line + 1 < parts_.size();
    }
    double chordEnd(std::size_t line, const PaperWord& word) const;
    void alignToEachOther();
    void alignWrapped(PaperRow& row) const;
    PaperRow takeRow(double cut);
    PaperRow alignedRow();
    std::optional<double> blankCut(double limit) const;
    double wordCut(double limit);
    double withItsChords(double cut) const;
    double firstX() const;
    bool mayEndAt(double cut, double limit) const;

    Lines lines_;
    const ColumnRoom& room_;
    SetSong& set_;
    const PaperFonts& fonts_;
    std::vector<Part> parts_;
    double start_ = 0;
    double indent_ = 0;
};

bool Wrapping::fits(double limit) const {
    return std::all_of(parts_.begin(), parts_.end(), [limit](const Part& part) {
        return part.empty() || part.back().end() <= limit + kNear;
    });
}

// Where a word ends, of a chord the whole chord.
double Wrapping::chordEnd(std::size_t line, const PaperWord& word) const {
    const Part& part = parts_[line];
    double end = word.end();
    for (auto i = static_cast<std::size_t>(&word - part.data()) + 1;
         i < part.size() && isPartOfChord(line, part[i]); ++i)
        end = std::max(end, part[i].end());
    return end;
}

double Wrapping::firstX() const {
    double first = 1e300;
    for (const Part& part : parts_) {
        if (!part.empty())
            first = std::min(first, part.front().x);
    }
    return first;
}

// Whether everything that begins before a place ends before the limit.
bool Wrapping::mayEndAt(double cut, double limit) const {
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        for (const PaperWord& word : parts_[i]) {
            if (word.x >= cut - kNear)
                break;
            if (!isPartOfChord(i, word) && chordEnd(i, word) > limit + kNear)
                return false;
        }
    }
    return true;
}

// A chord that begins in the gap before a word and reaches over it belongs to that word, and a
// stack of chords stays together.
double Wrapping::withItsChords(double cut) const {
    for (std::size_t i = parts_.size(); i-- > 0;) {
        double gap = start_;
        for (const PaperWord& word : parts_.back()) {
            if (word.x >= cut)
                break;
            if (word.end() <= cut + kNear)
                gap = std::max(gap, word.end());
        }
        for (const PaperWord& word : parts_[i]) {
            if (word.x >= cut)
                break;
            const bool isOver = word.x >= gap - kNear && word.x < cut && !word.isJoined &&
                                chordEnd(i, word) > cut + kNear;
            if (isOver && i + 1 < parts_.size())
                cut = std::min(cut, word.x);
        }
    }
    return cut;
}

// The last place where a word of the last line begins, or a chord behind its end, and a row can
// end.
std::optional<double> Wrapping::blankCut(double limit) const {
    std::optional<double> best;
    const double first = firstX();
    const double wordsEnd = parts_.back().empty() ? start_ : parts_.back().back().end();
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        const bool isLast = i + 1 == parts_.size();
        for (const PaperWord& word : parts_[i]) {
            if (word.isJoined || (!isLast && word.x < wordsEnd - kNear))
                continue;
            const double cut = isLast ? withItsChords(word.x) : word.x;
            if (cut > first + kNear && cut > best.value_or(0) && mayEndAt(cut, limit))
                best = cut;
            // What begins behind the first place beyond the limit would leave that in the row.
            if (word.x > limit)
                break;
        }
    }
    return best;
}

// No blank helps: a place within a word of the last line, where no chord stands across the limit.
double Wrapping::wordCut(double limit) {
    double wanted = limit;
    for (std::size_t i = 0; i + 1 < parts_.size(); ++i) {
        for (const PaperWord& word : parts_[i]) {
            if (!word.isJoined && word.x > firstX() + kNear && word.x <= limit &&
                chordEnd(i, word) > limit + kNear)
                wanted = std::min(wanted, word.x);
        }
    }
    Part& last = parts_.back();
    const auto crossing = std::find_if(last.begin(), last.end(), [wanted](const PaperWord& word) {
        return word.end() > wanted + kNear;
    });
    if (crossing == last.end() || crossing->x > wanted + kNear)
        return wanted;
    if (crossing->x > firstX() + kNear && crossing->isDiagram)
        return crossing->x;
    std::vector<PaperWord>& words = set_.cut.emplace_back(last.begin(), last.end());
    const auto at = static_cast<std::size_t>(crossing - last.begin());
    const std::optional<PaperWord> rest = cutWord(words[at], wanted, fonts_);
    if (rest)
        words.insert(words.begin() + static_cast<std::ptrdiff_t>(at) + 1, *rest);
    last = words;
    if (rest)
        return rest->x;
    // One character, or one diagram, that is wider than the column.
    return at + 1 < words.size() ? words[at + 1].x : words[at].end() + kNear;
}

// Of a part of a line: one diagram does not set all rows apart.
Wrapping::Height Wrapping::heightOf(const Part& part, const MeasuredLine& line) const {
    Height height;
    for (const PaperWord& word : part) {
        const PaperFont& font = fonts_.font(word.font);
        height.ascent = std::max(height.ascent, font.ascent() * word.size);
        height.descent = std::max(height.descent, font.descent() * word.size);
    }
    return {std::min(height.ascent, line.ascent), std::min(height.descent, line.descent)};
}

PaperRow Wrapping::takeRow(double cut) {
    PaperRow row;
    double extent = 0;
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        Part& part = parts_[i];
        const auto count = static_cast<std::size_t>(std::find_if(part.begin(), part.end(),
                                                                 [&](const PaperWord& word) {
                                                                     return word.x >= cut - kNear &&
                                                                            !isPartOfChord(i, word);
                                                                 }) -
                                                    part.begin());
        const Part taken = part.first(count);
        part = part.subspan(count);
        if (taken.empty())
            continue;
        extent = std::max(extent, taken.back().end() - start_ + indent_);
        const bool isWhole = start_ == 0 && part.empty();
        const Height height =
            isWhole ? Height{lines_[i].ascent, lines_[i].descent} : heightOf(taken, lines_[i]);
        row.lines.push_back(
            {taken, indent_ - start_, row.height + height.ascent, lines_[i].number});
        row.height += height.ascent + height.descent;
    }
    if (extent > room_.width + kNear)
        row.factor = room_.width / extent;
    return row;
}

PaperRow Wrapping::alignedRow() {
    PaperRow row = takeRow(1e300);
    for (RowLine& line : row.lines) {
        const MeasuredLine& whole = lines_[line.line - lines_[0].number];
        const double room = room_.width - whole.width;
        // Bold chords may reach farther than what they are aligned by.
        const double most = room_.width - whole.words.back().end();
        if (whole.alignment != Alignment::Left)
            line.shift = std::min(most, whole.alignment == Alignment::Right ? room : room / 2);
    }
    return row;
}

// Centred lines keep their places above each other when they are wrapped.
void Wrapping::alignToEachOther() {
    double most = 0;
    for (const MeasuredLine& line : lines_)
        most = std::max(most, line.width);
    for (std::size_t i = 0; i < parts_.size(); ++i) {
        const double room = most - lines_[i].width;
        if (lines_[i].alignment == Alignment::Left || room < kNear)
            continue;
        std::vector<PaperWord>& words = set_.cut.emplace_back(parts_[i].begin(), parts_[i].end());
        for (PaperWord& word : words)
            word.x += lines_[i].alignment == Alignment::Right ? room : room / 2;
        parts_[i] = words;
    }
}

void Wrapping::alignWrapped(PaperRow& row) const {
    const Alignment alignment = lines_.back().alignment;
    if (alignment == Alignment::Left || row.factor < 1)
        return;
    double begin = 1e300;
    double end = 0;
    for (const RowLine& line : row.lines) {
        begin = std::min(begin, line.words.front().x + line.shift);
        end = std::max(end, line.words.back().end() + line.shift);
    }
    const double room = room_.width - (end - begin);
    for (RowLine& line : row.lines)
        line.shift += (alignment == Alignment::Right ? room : room / 2) - begin;
}

std::vector<PaperRow> Wrapping::rows() {
    if (fits(room_.width))
        return {alignedRow()};
    ++set_.wrapped;
    alignToEachOther();
    std::vector<PaperRow> rows;
    while (!fits(start_ + room_.width - indent_)) {
        const double limit = start_ + room_.width - indent_;
        const std::optional<double> blank = blankCut(limit);
        // Room in front of a row is worth less than words below its chords.
        if (firstX() > start_ + kNear && blank && !parts_.back().empty() &&
            parts_.back().front().x >= *blank - kNear) {
            start_ = firstX();
            continue;
        }
        const double cut = blank ? *blank : wordCut(limit);
        rows.push_back(takeRow(cut));
        start_ = cut;
        if (lines_.back().alignment == Alignment::Left)
            indent_ = std::min(kIndent * lines_.back().ascent, room_.width * kMostIndent);
        if (rows.back().lines.empty())
            rows.pop_back();
    }
    if (firstX() < 1e300)
        rows.push_back(takeRow(1e300));
    for (PaperRow& row : rows)
        alignWrapped(row);
    return rows;
}

// Each item of the upper line begins where one of the lower does: names above diagrams and the
// like.
bool isStack(const MeasuredLine& upper, const MeasuredLine& lower) {
    return std::all_of(upper.words.begin(), upper.words.end(), [&](const PaperWord& word) {
        return std::any_of(lower.words.begin(), lower.words.end(), [&](const PaperWord& below) {
            return std::abs(below.x - word.x) <= 0.5 * word.size;
        });
    });
}

class Setting {
  public:
    Setting(const MeasuredSong& song, const ColumnRoom& room, const PaperFonts& fonts)
        : lines_(song.lines), room_(room), fonts_(fonts) {}

    SetSong run(std::size_t firstLine);

  private:
    std::size_t pairEnd(std::size_t begin) const;
    std::size_t tablatureEnd(std::size_t begin) const;
    PaperUnit tablature(Lines lines);
    void add(PaperUnit unit, double gap);
    void keepInColumn(PaperUnit& unit) const;

    Lines lines_;
    const ColumnRoom& room_;
    const PaperFonts& fonts_;
    SetSong set_;
};

// Behind the lines that belong to the chord line at `begin`.
std::size_t Setting::pairEnd(std::size_t begin) const {
    std::size_t end = begin + 1;
    while (end < lines_.size() && lines_[end].kind == PaperLineKind::Chords &&
           isStack(lines_[end - 1], lines_[end]))
        ++end;
    return end < lines_.size() && lines_[end].kind == PaperLineKind::Words ? end + 1 : end;
}

// Behind the tablature that begins with its chords, or itself, at `begin`; `begin` where none does.
std::size_t Setting::tablatureEnd(std::size_t begin) const {
    std::size_t end = begin;
    while (end < lines_.size() && lines_[end].kind == PaperLineKind::Chords)
        ++end;
    if (end == lines_.size() || lines_[end].kind != PaperLineKind::Tablature)
        return begin;
    while (end < lines_.size() && lines_[end].kind == PaperLineKind::Tablature)
        ++end;
    return end;
}

PaperUnit Setting::tablature(Lines lines) {
    PaperUnit unit;
    double width = 0;
    double height = 0;
    for (const MeasuredLine& line : lines) {
        width = std::max(width, line.words.back().end());
        height += line.height();
        PaperRow& row = unit.rows.emplace_back();
        row.lines.push_back({line.words, 0, line.ascent, line.number});
        row.height = line.height();
    }
    const double factor = std::min({1.0, room_.width / width, room_.height / height});
    // One row, so that nothing comes between its lines.
    PaperRow block;
    for (PaperRow& row : unit.rows) {
        row.lines[0].baseLine += block.height;
        block.lines.push_back(row.lines[0]);
        block.height += row.height;
    }
    // A block of many pages cannot be one.
    const bool isPage = height * std::min(1.0, room_.width / width) > 2 * room_.height;
    block.factor = factor;
    if (!isPage)
        unit.rows = {block};
    for (PaperRow& row : unit.rows)
        row.factor = isPage ? std::min(1.0, room_.width / width) : factor;
    const double size = lines.back().words[0].size * unit.rows[0].factor;
    set_.isTiny = set_.isTiny || (unit.rows[0].factor < 1 && size < room_.least);
    return unit;
}

void Setting::keepInColumn(PaperUnit& unit) const {
    for (PaperRow& row : unit.rows) {
        if (row.scaledHeight() > room_.height)
            row.factor = room_.height / row.height;
    }
}

void Setting::add(PaperUnit unit, double gap) {
    keepInColumn(unit);
    const auto onlyLabels = [](const PaperSection& section) {
        return std::all_of(section.units.begin(), section.units.end(),
                           [](const PaperUnit& part) { return part.isLabel; });
    };
    std::vector<PaperSection>& sections = set_.sections;
    const bool begins =
        sections.empty() || ((gap > 0 || unit.isLabel) && !onlyLabels(sections.back()));
    if (begins)
        sections.push_back({.gap = gap});
    else
        unit.gap = gap;
    sections.back().units.push_back(std::move(unit));
}

SetSong Setting::run(std::size_t firstLine) {
    double gap = 0;
    for (std::size_t i = firstLine; i < lines_.size();) {
        const MeasuredLine& line = lines_[i];
        if (line.words.empty()) {
            gap += line.height();
            ++i;
            continue;
        }
        PaperUnit unit;
        std::size_t end = tablatureEnd(i);
        if (end > i) {
            unit = tablature(lines_.subspan(i, end - i));
        } else {
            end = line.kind == PaperLineKind::Chords ? pairEnd(i) : i + 1;
            unit.rows = Wrapping(lines_.subspan(i, end - i), room_, set_, fonts_).rows();
            unit.isLabel = line.kind == PaperLineKind::Label;
        }
        add(std::move(unit), gap);
        gap = 0;
        i = end;
    }
    return std::move(set_);
}

}  // namespace

double PaperUnit::height() const {
    return std::accumulate(rows.begin(), rows.end(), gap, [](double sum, const PaperRow& row) {
        return sum + row.scaledHeight();
    });
}

double PaperSection::height() const {
    return std::accumulate(units.begin(), units.end(), 0.0,
                           [](double sum, const PaperUnit& unit) { return sum + unit.height(); });
}

SetSong setSong(const MeasuredSong& song, const ColumnRoom& room, std::size_t firstLine,
                const PaperFonts& fonts) {
    return Setting(song, room, fonts).run(firstLine);
}

}  // namespace melvorin
