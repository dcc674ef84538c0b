#include "chords/FollowReplace.h"

#include <algorithm>
#include <span>
#include <utility>

#include "base/EditorLine.h"

namespace melvorin {
namespace {

using Replacements = std::span<const TextEdit>;

struct Line {
    std::size_t begin = 0;  // positions
    std::size_t end = 0;    // without its end
};

FollowEdit plainEdit(const TextEdit& edit) {
    return {edit.position, edit.length, edit.text, Origin::New, 0};
}

// A line with its replacements. What came in has the position that it came to.
struct ReplacedLine {
    FollowText before;
    FollowText now;
    std::vector<ColumnMap::Stretch> stretches;
};

ReplacedLine replaced(const FollowText& line, const Line& place, Replacements edits) {
    ReplacedLine result{line, {}, {}};
    std::size_t at = 0;
    for (const TextEdit& edit : edits) {
        const std::size_t begin = edit.position - place.begin;
        const std::size_t end = begin + edit.length;
        result.now.append(line.part(at, begin));
        FollowText text(edit.text, Origin::Incoming);
        for (std::size_t i = 0; i < text.size(); ++i)
            text.trace(i).from = edit.position;
        const std::size_t nowBegin = result.now.size();
        result.now.append(text);
        result.stretches.push_back({begin, end, nowBegin, result.now.size(), false});
        at = end;
    }
    result.now.append(line.part(at));
    if (!result.stretches.empty())
        result.stretches.back().keeps = line.part(at).isBlank();
    return result;
}

// The chords of a line that was replaced in, each with the column that its first character had, or
// that of what it stands in place of.
std::vector<StackedChord> chordsWithFormerColumns(const ReplacedLine& line, const Line& place) {
    std::vector<StackedChord> chords = chordsOf(line.now);
    const std::vector<std::size_t> former = line.before.columns();
    const std::vector<std::size_t> columns = line.now.columns();
    const std::vector<ChordRun> runs = chordRuns(line.now);
    for (std::size_t i = 0; i < runs.size(); ++i) {
        std::size_t first = runs[i].index;
        const Trace& trace = line.now.trace(first);
        const auto isSameText = [&](std::size_t index) {
            return line.now.trace(index).origin == Origin::Incoming &&
                   line.now.trace(index).from == trace.from;
        };
        while (trace.origin == Origin::Incoming && first > 0 && isSameText(first - 1))
            --first;
        chords[i].column =
            former[trace.from - place.begin] + columns[runs[i].index] - columns[first];
    }
    return chords;
}

FollowText tailOf(const FollowText& line) {
    const std::vector<ChordRun> runs = chordRuns(line);
    return line.part(runs.empty() ? 0 : runs.back().end());
}

class Replacer {
  public:
    Replacer(const Excerpt& before, Replacements edits, const MayFollow& mayFollow)
        : before_(before), edits_(edits), mayFollow_(mayFollow) {
        std::size_t position = before.start;
        TextView rest = before.chars;
        TextLine line;
        do {
            line = takeEditorLine(rest);
            lines_.push_back({position, position + line.chars.size()});
            position += line.chars.size() + line.end.size();
        } while (!line.end.empty());
    }

    std::vector<FollowEdit> run();

  private:
    // Replacements that lie in one line, from edits_[next_] on.
    Replacements editsIn(const Line& line) const;
    bool keepsLines(std::size_t first, std::size_t last) const;
    bool mayFollow(std::size_t first, std::size_t last) const;
    bool staysInLine(const TextEdit& edit, const Line& line) const;
    FollowLines linesAround(std::size_t line, std::size_t& first) const;
    void replaceGroup(const FollowLines& around, std::size_t first, const LinePair& pair,
                      bool hasWords);
    void takePlainly(std::size_t end);

    const Excerpt& before_;
    Replacements edits_;
    const MayFollow& mayFollow_;
    std::vector<Line> lines_;
    std::size_t next_ = 0;
    std::vector<FollowEdit> result_;
};

bool Replacer::staysInLine(const TextEdit& edit, const Line& line) const {
    return edit.position >= line.begin && edit.position + edit.length <= line.end &&
           edit.text.find_first_of(u"\r\n\v") == Text::npos;
}

Replacements Replacer::editsIn(const Line& line) const {
    std::size_t begin = next_;
    while (begin < edits_.size() && edits_[begin].position < line.begin)
        ++begin;
    std::size_t end = begin;
    while (end < edits_.size() && staysInLine(edits_[end], line))
        ++end;
    return edits_.subspan(begin, end - begin);
}

// Two lines above and two below are all that a pair can need.
FollowLines Replacer::linesAround(std::size_t line, std::size_t& first) const {
    first = line - std::min<std::size_t>(line, 2);
    const std::size_t last = std::min(line + 2, lines_.size() - 1);
    Excerpt part;
    part.start = lines_[first].begin;
    part.chars =
        before_.chars.substr(part.start - before_.start, lines_[last].end - lines_[first].begin);
    const auto byPosition = [](const DiagramCells& d, std::size_t p) { return d.position < p; };
    auto diagram =
        std::lower_bound(before_.diagrams.begin(), before_.diagrams.end(), part.start, byPosition);
    for (; diagram != before_.diagrams.end() && diagram->position < part.end(); ++diagram)
        part.diagrams.push_back(*diagram);
    return linesOf(part);
}

void Replacer::replaceGroup(const FollowLines& around, std::size_t first, const LinePair& pair,
                            bool hasWords) {
    const auto placeAt = [&](std::size_t line) { return lines_[first + line]; };
    const auto replacedAt = [&](std::size_t line) {
        return replaced(around[line].text, placeAt(line), editsIn(placeAt(line)));
    };
    const ReplacedLine lower = replacedAt(pair.chords);
    std::vector<StackedChord> chords = chordsWithFormerColumns(lower, placeAt(pair.chords));
    std::vector<std::size_t> former;
    former.reserve(chords.size());
    for (const StackedChord& chord : chords)
        former.push_back(chord.column);
    FollowLines group(
        around.begin() + static_cast<std::ptrdiff_t>(pair.top()),
        around.begin() + static_cast<std::ptrdiff_t>((hasWords ? pair.words : pair.chords) + 1));
    if (hasWords) {
        const ReplacedLine words = replacedAt(pair.words);
        const ColumnMap map(words.before, words.now, words.stretches);
        for (StackedChord& chord : chords)
            chord.column = map(chord.column);
        group.back().text = words.now;
    }
    group[pair.chords - pair.top()].text = writeChords(chords, tailOf(lower.now));
    if (pair.upper) {
        const ReplacedLine upper = replacedAt(*pair.upper);
        const std::vector<std::size_t> settled = settledColumns(chords);
        std::vector<StackedChord> above = chordsWithFormerColumns(upper, placeAt(*pair.upper));
        for (StackedChord& chord : above) {
            const auto below = std::find(former.begin(), former.end(), chord.column);
            if (below != former.end())
                chord.column = settled[static_cast<std::size_t>(below - former.begin())];
        }
        group.front().text = writeChords(above, tailOf(upper.now));
    }
    FollowText text = joined(group);
    const std::size_t end = placeAt(hasWords ? pair.words : pair.chords).end;
    // Without the end of the last line, which is not part of the edits.
    text = text.part(0, text.size() - group.back().end.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text.trace(i).origin == Origin::Incoming)
            text.trace(i) = {};
    }
    for (FollowEdit& edit : editsTo(text, placeAt(pair.top()).begin, end))
        result_.push_back(std::move(edit));
    while (next_ < edits_.size() && edits_[next_].position <= end)
        ++next_;
}

void Replacer::takePlainly(std::size_t end) {
    while (next_ < edits_.size() && edits_[next_].position <= end)
        result_.push_back(plainEdit(edits_[next_++]));
}

// A line end that goes or comes makes other lines of them.
bool Replacer::keepsLines(std::size_t first, std::size_t last) const {
    for (std::size_t i = next_; i < edits_.size() && edits_[i].position <= lines_[last].end; ++i) {
        const bool isKept =
            std::any_of(lines_.begin() + static_cast<std::ptrdiff_t>(first),
                        lines_.begin() + static_cast<std::ptrdiff_t>(last + 1),
                        [&](const Line& line) { return staysInLine(edits_[i], line); });
        if (!isKept)
            return false;
    }
    return true;
}

bool Replacer::mayFollow(std::size_t first, std::size_t last) const {
    return keepsLines(first, last) &&
           (!mayFollow_ || mayFollow_(lines_[first].begin, lines_[last].end));
}

std::vector<FollowEdit> Replacer::run() {
    std::size_t line = 0;
    while (next_ < edits_.size()) {
        while (line + 1 < lines_.size() && lines_[line + 1].begin <= edits_[next_].position)
            ++line;
        std::size_t first = 0;
        const FollowLines around = linesAround(line, first);
        const std::size_t here = line - first;
        const bool isChords = holdsChords(around[here].text);
        auto pair = isChords ? pairOfChords(around, here) : pairOfWords(around, here);
        const bool hasWords = pair.has_value();
        if (!pair && isChords)
            pair = LinePair{here + 1, here, std::nullopt};
        if (pair && mayFollow(first + pair->top(), first + pair->chords + (hasWords ? 1 : 0)))
            replaceGroup(around, first, *pair, hasWords);
        else
            takePlainly(lines_[line].end);
    }
    return std::move(result_);
}

}  // namespace

std::vector<FollowEdit> followReplacements(const Excerpt& before,
                                           const std::vector<TextEdit>& replacements,
                                           const MayFollow& mayFollow) {
    return Replacer(before, replacements, mayFollow).run();
}

}  // namespace melvorin
