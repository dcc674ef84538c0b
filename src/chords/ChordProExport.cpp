#include "chords/ChordProExport.h"

#include <algorithm>
#include <cstddef>
#include <vector>

#include "chords/CellWidth.h"
#include "chords/ChordLine.h"
#include "chords/Directives.h"
#include "chords/SongImport.h"

namespace melvorin {
namespace {

// A run of characters between the blanks of a line of chords.
struct Cluster {
    TextView text;
    std::size_t column;
};

std::vector<Cluster> clustersOf(TextView line) {
    std::vector<Cluster> clusters;
    CellReader reader(line);
    CellCharacter character;
    bool inside = false;
    while (reader.next(character)) {
        const bool blank = isAnyBlank(character.code);
        if (!blank && !inside)
            clusters.push_back({line.substr(character.index, 0), character.column});
        if (!blank)
            clusters.back().text = {clusters.back().text.data(),
                                    clusters.back().text.size() + character.length};
        inside = !blank;
    }
    return clusters;
}

// The words with the chords in brackets at their columns, behind the end of the words too.
Text withBrackets(TextView chords, TextView words, const SongChordNames& names) {
    Text line;
    CellReader reader(words);
    CellCharacter character;
    std::size_t cells = 0;
    bool more = reader.next(character);
    for (const Cluster& cluster : clustersOf(chords)) {
        // A chord over the second cell of a wide character goes in front of it.
        while (more && character.column + character.width <= cluster.column) {
            line += words.substr(character.index, character.length);
            cells = character.column + character.width;
            more = reader.next(character);
        }
        if (!more && cells < cluster.column) {
            line.append(cluster.column - cells, u' ');
            cells = cluster.column;
        }
        line.append(u"[").append(names(cluster.text)).append(u"]");
    }
    return more ? line.append(words.substr(character.index)) : line;
}

// A line in brackets without the hyphens that stretch a word up to the next chord: "ri--[G]ver" is
// "ri[G]ver".
Text withWordsJoined(TextView line) {
    Text joined;
    for (std::size_t at = 0; at < line.size();) {
        // Hyphens and brackets between two letters, the last of them a bracket.
        std::size_t end = at;
        std::size_t hyphens = 0;
        Text brackets;
        while (end < line.size() && (line[end] == u'-' || line[end] == u'[')) {
            const TextView ahead = line.substr(0, end + kLongestBracket);
            const std::size_t close = line[end] == u'[' ? ahead.find(u']', end) : end;
            if (close == TextView::npos)
                break;
            if (close == end)
                ++hyphens;
            else
                brackets += line.substr(end, close + 1 - end);
            end = close + 1;
        }
        const bool isStretch = hyphens > 1 && at > 0 && end < line.size() &&
                               line[end - 1] == u']' && isStretchable(line[at - 1]) &&
                               isStretchable(line[end]);
        end = std::max(end, at + 1);
        joined += isStretch ? TextView(brackets) : line.substr(at, end - at);
        at = end;
    }
    return joined;
}

class Exporter {
  public:
    Exporter(TextView chart, ChordNames names) : song_(importSong(chart)), names_(chart, names) {}
    Text run();

  private:
    void put(TextView text, const SourceLine& line);
    void putLine(TextView text, TextView end);
    bool putChords(std::size_t number);
    bool putBrackets(std::size_t number);
    bool putLabelledChords(std::size_t number);
    bool comesBack(TextView exported, TextView first, TextView second) const;
    void enterTablature(bool inside, TextView end);
    void endSection(TextView end);
    void putLabel(std::size_t number);

    SongImport song_;
    // What comes back is told by the letters: a line alone does not tell by which names it is
    // written.
    const SongChordNames asWritten_{{}, ChordNames::House};
    SongChordNames names_;
    Text result_;
    bool inTablature_ = false;
    TextView section_;  // the open one: "chorus"
};

void Exporter::putLine(TextView text, TextView end) {
    result_.append(text).append(end);
}

TextView endOr(TextView end) {
    return end.empty() ? TextView(u"\n") : end;
}

void Exporter::enterTablature(bool inside, TextView end) {
    if (inside == inTablature_)
        return;
    putLine(inside ? u"{start_of_tab}" : u"{end_of_tab}", endOr(end));
    inTablature_ = inside;
}

bool isSame(const SongImport& a, const SongImport& b) {
    return std::equal(a.lines.begin(), a.lines.end(), b.lines.begin(), b.lines.end(),
                      [](const ImportedLine& x, const ImportedLine& y) {
                          return x.isChords == y.isChords &&
                                 trimmedRight(x.text) == trimmedRight(y.text);
                      });
}

// Whether an import makes these two lines (or one, with an empty `second`) of the line, or what it
// makes of the two anyway; also where the rest of the song makes every bracket a chord.
bool Exporter::comesBack(TextView exported, TextView first, TextView second) const {
    const SongImport back = importSong(exported);
    ImportOptions options;
    options.isChordPro = true;
    const bool hasOwnBrackets =
        first.find(u'[') != TextView::npos || second.find(u'[') != TextView::npos;
    if (hasOwnBrackets && !isSame(back, importSong(exported, {}, options)))
        return false;
    const bool pair = !second.empty();
    if (back.lines.size() == (pair ? 2U : 1U) && back.lines[0].text == trimmedRight(first) &&
        (!pair || back.lines[1].text == trimmedRight(second)))
        return true;
    // A chart that is none of ours yet comes back as what its own import is.
    return exported != first &&
           isSame(back, importSong(pair ? Text(first).append(u"\n").append(second) : Text(first)));
}

// The chords of the line, with the words below them where there are any. Returns whether the
// words were taken along.
bool Exporter::putChords(std::size_t number) {
    const SourceLine& line = song_.source[number];
    const bool last = number + 1 == song_.source.size();
    const TextView words = last ? TextView() : song_.source[number + 1].text;
    const bool hasWords =
        !last && !trimmed(words).empty() && song_.source[number + 1].verdict == LineVerdict::Lyrics;
    if (hasWords) {
        const Text both = withBrackets(line.text, words, asWritten_);
        const Text joined = withWordsJoined(both);
        const auto fits = [&](const Text& exported) {
            return !exported.starts_with(u'#') && comesBack(exported, line.text, words);
        };
        const bool isJoined = joined != both && fits(joined);
        if (isJoined || fits(both)) {
            const Text named = withBrackets(line.text, words, names_);
            putLine(isJoined ? withWordsJoined(named) : named, song_.source[number + 1].end);
            return true;
        }
    }
    const Text alone = withBrackets(line.text, u"", asWritten_);
    if (comesBack(alone, line.text, u""))
        putLine(withBrackets(line.text, u"", names_), line.end);
    else
        put(line.text, line);
    return false;
}

// Chords in brackets are what they are already.
bool Exporter::putBrackets(std::size_t number) {
    const SourceLine& line = song_.source[number];
    if (line.verdict != LineVerdict::Lyrics || line.text.starts_with(u'#') ||
        line.text.find(u'[') == TextView::npos || line.text.find_first_of(u"{}") != TextView::npos)
        return false;
    Text named;
    std::size_t copied = 0;
    const auto first =
        std::lower_bound(song_.chords.begin(), song_.chords.end(), number,
                         [](const ImportedChord& c, std::size_t n) { return c.sourceLine < n; });
    for (auto chord = first; chord != song_.chords.end() && chord->sourceLine == number; ++chord) {
        named.append(line.text.substr(copied, chord->sourceIndex - copied))
            .append(names_(chord->written));
        copied = chord->sourceIndex + chord->written.size();
    }
    if (copied == 0)
        return false;
    putLine(named.append(line.text.substr(copied)), line.end);
    return true;
}

// Text that would be read as something else is a comment.
void Exporter::put(TextView text, const SourceLine& line) {
    const bool blank = trimmed(text).empty();
    const bool plain = !text.starts_with(u'#') && line.verdict == LineVerdict::Lyrics &&
                       comesBack(text, text, u"");
    if (blank)
        putLine(u"", line.end);
    else if (plain)
        putLine(text, line.end);
    else
        putLine(Text(u"{comment: ").append(trimmedRight(text)).append(u"}"), line.end);
}

// A section ends in front of the first line that is none of its own.
void Exporter::endSection(TextView end) {
    if (!section_.empty())
        putLine(Text(u"{end_of_").append(section_).append(u"}"), endOr(end));
    section_ = {};
}

// "Intro: Am  G": the label, and the chords on a line of their own.
bool Exporter::putLabelledChords(std::size_t number) {
    const SourceLine& line = song_.source[number];
    const std::size_t label = sectionLabelLength(line.text);
    const bool hasChords = std::any_of(
        song_.lines.begin() + static_cast<std::ptrdiff_t>(line.firstChartLine),
        song_.lines.begin() + static_cast<std::ptrdiff_t>(line.firstChartLine + line.chartLines),
        [](const ImportedLine& written) { return written.isChords; });
    const TextView row = line.text.substr(label);
    if (label == 0 || !hasChords || row.find_first_of(u"[]{}") != TextView::npos)
        return false;
    putLine(Text(u"{comment: ").append(trimmedRight(line.text.substr(0, label))).append(u"}"),
            endOr(line.end));
    putLine(withBrackets(row, u"", names_), line.end);
    return true;
}

void Exporter::putLabel(std::size_t number) {
    const SourceLine& line = song_.source[number];
    const auto section = sectionOfLabel(line.text);
    const bool hasLines = number + 1 < song_.source.size() &&
                          !trimmed(song_.source[number + 1].text).empty() &&
                          song_.source[number + 1].verdict != LineVerdict::Section;
    if (!section || !hasLines)
        return put(line.text, line);
    putLine(sectionDirective(*section, line.text), line.end);
    section_ = *section;
}

Text Exporter::run() {
    bool isHead = true;  // facts of the song stand above its chords
    for (std::size_t number = 0; number < song_.source.size(); ++number) {
        const SourceLine& line = song_.source[number];
        const bool tablature = line.verdict == LineVerdict::Tablature;
        const bool isLabel = line.verdict == LineVerdict::Section;
        isHead = isHead && line.verdict != LineVerdict::Chords;
        if (tablature || isLabel || trimmed(line.text).empty())
            endSection(line.end);
        enterTablature(tablature, line.end);
        const auto fact = isHead ? factDirective(line.text) : std::nullopt;
        if (tablature)
            putLine(line.text, line.end);
        else if (number == 0 && namesSong(song_))
            putLine(Text(u"{title: ").append(trimmedRight(line.text)).append(u"}"), line.end);
        else if (fact)
            putLine(*fact, line.end);
        else if (line.verdict == LineVerdict::Chords)
            number += putChords(number) ? 1U : 0U;
        else if (isLabel && !putLabelledChords(number))
            putLabel(number);
        else if (!isLabel && !putBrackets(number))
            put(line.text, line);
    }
    // The last line has no end where the chart has none.
    const TextView end = song_.source.empty() ? TextView() : song_.source.back().end;
    const bool isOpen = inTablature_ || !section_.empty();
    if (isOpen && end.empty())
        result_ += u"\n";
    if (inTablature_)
        putLine(u"{end_of_tab}", end);
    if (!section_.empty())
        putLine(Text(u"{end_of_").append(section_).append(u"}"), end);
    return std::move(result_);
}

}  // namespace

Text pairInBrackets(TextView chords, TextView words) {
    return withWordsJoined(withBrackets(chords, words, SongChordNames({}, ChordNames::House)));
}

bool namesSong(const SongImport& song) {
    const auto verdict = [&](std::size_t i) { return song.source[i].verdict; };
    if (song.source.size() < 2)
        return false;
    const TextView text = song.source[0].text;
    return verdict(0) == LineVerdict::Lyrics && !text.empty() && !isAnyBlank(text[0]) &&
           text.find_first_of(u"[]{}") == TextView::npos && verdict(1) != LineVerdict::Chords;
}

Text exportChordPro(TextView chart, ChordNames names) {
    return Exporter(chart, names).run();
}

}  // namespace melvorin
