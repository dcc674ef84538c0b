#include "chords/NotationDraft.h"

#include <algorithm>
#include <map>
#include <utility>

#include "chords/ChordLine.h"

namespace melvorin {
namespace {

// Collects uses under their names, in the order of the first use of each.
class ChordList {
  public:
    void add(Text name, std::size_t use) {
        const auto [place, isNew] = places_.try_emplace(name, entries_.size());
        if (isNew)
            entries_.push_back({std::move(name), {}});
        entries_[place->second].uses.push_back(use);
    }

    std::vector<ListedChord> take() {
        for (ListedChord& entry : entries_) {
            if (entry.uses.size() > 1)
                entry.label.append(u"  (")
                    .append(decimal(static_cast<std::int64_t>(entry.uses.size())))
                    .append(u")");
        }
        return std::move(entries_);
    }

  private:
    std::vector<ListedChord> entries_;
    std::map<Text, std::size_t> places_;
};

}  // namespace

void NotationDraft::setSource(Text source) {
    const std::vector<TextView> before = splitLines(source_);
    const std::vector<TextView> after = splitLines(source);
    const std::size_t common = std::min(before.size(), after.size());
    std::size_t above = 0;
    while (above < common && before[above] == after[above])
        ++above;
    std::size_t below = 0;
    while (below < common - above &&
           before[before.size() - 1 - below] == after[after.size() - 1 - below])
        ++below;
    ChosenVerdicts kept;
    for (const auto& [line, verdict] : chosen_) {
        if (line < above)
            kept[line] = verdict;
        else if (line >= before.size() - below)
            kept[line + after.size() - before.size()] = verdict;
    }
    chosen_ = std::move(kept);
    song_ = {};
    source_ = std::move(source);
    import();
}

void NotationDraft::choose(const std::vector<std::size_t>& lines,
                           std::optional<LineVerdict> verdict) {
    for (const std::size_t line : lines) {
        if (verdict)
            chosen_[line] = *verdict;
        else
            chosen_.erase(line);
    }
    import();
}

void NotationDraft::setOptions(const ImportOptions& options) {
    if (options == options_)
        return;
    options_ = options;
    import();
}

bool NotationDraft::hasPlainB() const {
    return song_.notation.hasGermanNames ||
           std::any_of(song_.chords.begin(), song_.chords.end(), [](const ImportedChord& chord) {
               const std::size_t at = chord.written.find(u'B');
               return at != TextView::npos && !chord.written.substr(at + 1).starts_with(u'b') &&
                      !chord.written.substr(at + 1).starts_with(u'#');
           });
}

void NotationDraft::import() {
    song_ = importSong(source_, chosen_, options_);
    sourceStarts_.clear();
    std::size_t position = 0;
    for (const SourceLine& line : song_.source) {
        sourceStarts_.push_back(position);
        position += line.text.size() + line.end.size();
    }
    chartStarts_.clear();
    position = 0;
    for (const ImportedLine& line : song_.lines) {
        chartStarts_.push_back(position);
        position += line.text.size() + 1;
    }
    judgeDiagrams();
    listChords();
}

// To a key change a diagram is its letter, which the importer does not know.
void NotationDraft::judgeDiagrams() {
    if (diagrams_ == nullptr || diagrams_->isEmpty())
        return;
    for (SourceLine& line : song_.source) {
        line.remarks &= ~(unsigned{WillNotChangeKey} | WillChangeWithKey);
        for (std::size_t i = 0; i < line.chartLines; ++i) {
            const ImportedLine& written = song_.lines[line.firstChartLine + i];
            if (written.isChords != diagrams_->changesWithKey(written.text))
                line.remarks |= written.isChords ? WillNotChangeKey : WillChangeWithKey;
        }
    }
}

std::vector<ImportedLine> NotationDraft::colouredLines() const {
    std::vector<ImportedLine> lines = song_.lines;
    for (ImportedLine& line : lines)
        line.isChords =
            line.isChords &&
            (diagrams_ == nullptr ? IsChordLine(line.text) : diagrams_->changesWithKey(line.text));
    return lines;
}

void NotationDraft::listChords() {
    ChordList researched;
    ChordList found;
    ChordList notFound;
    for (std::size_t use = 0; use < song_.chords.size(); ++use) {
        const ImportedChord& chord = song_.chords[use];
        Text written(chord.written);
        if (written != chord.chord)
            written.append(u" = ").append(chord.chord);
        researched.add(std::move(written), use);
        // "(Am7" is the chord Am7 in parentheses.
        const std::size_t begin = chord.chord.starts_with(u'(') ? 1 : 0;
        const bool closed =
            chord.chord.ends_with(u')') && chord.chord.find(u'(', begin) == Text::npos;
        const Text name = chord.chord.substr(begin, chord.chord.size() - begin - (closed ? 1 : 0));
        const bool known = chord.isRead && (lookup_ == nullptr || lookup_->contains(name));
        (known ? found : notFound).add(name, use);
    }
    researched_ = researched.take();
    found_ = found.take();
    notFound_ = notFound.take();
}

std::size_t NotationDraft::sourcePosition(std::size_t line, std::size_t index) const {
    return line < sourceStarts_.size() ? sourceStarts_[line] + index : source_.size();
}

std::size_t NotationDraft::chartPosition(std::size_t line, std::size_t index) const {
    return line < chartStarts_.size() ? chartStarts_[line] + index
           : chartStarts_.empty()     ? 0
                                      : chartStarts_.back() + song_.lines.back().text.size();
}

Text NotationDraft::summary() const {
    Text text = decimal(static_cast<std::int64_t>(song_.source.size()))
                    .append(song_.source.size() == 1 ? u" line" : u" lines");
    bool first = true;
    for (const LineVerdict verdict : kLineVerdicts) {
        const auto count =
            std::count_if(song_.source.begin(), song_.source.end(),
                          [&](const SourceLine& line) { return line.verdict == verdict; });
        if (count == 0)
            continue;
        text.append(first ? u": " : u", ")
            .append(decimal(static_cast<std::int64_t>(static_cast<std::size_t>(count))));
        text.append(u" ").append(nameOf(verdict));
        first = false;
    }
    const auto fixed = std::count_if(
        song_.source.begin(), song_.source.end(),
        [](const SourceLine& line) { return (line.remarks & WillNotChangeKey) != 0; });
    if (fixed > 0)
        text.append(u".  ")
            .append(decimal(static_cast<std::int64_t>(static_cast<std::size_t>(fixed))))
            .append(fixed == 1 ? u" line" : u" lines")
            .append(u" will not change key");
    return text.append(u".");
}

}  // namespace melvorin
