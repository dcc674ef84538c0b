#include "chords/ChordProExport.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "chords/CellWidth.h"
#include "chords/ChordLine.h"
#include "chords/DirectiveLines.h"
#include "chords/Directives.h"
#include "chords/SongImport.h"
#include "chords/SongParts.h"

namespace melvorin {
namespace {

// What stands between two blanks of a line of chords.
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

// The same for a row: "C(add G#)" and "x 4" have a blank within.
std::vector<Cluster> clustersOfRow(TextView line, const ChordReading& reading) {
    std::vector<Cluster> clusters;
    std::size_t end = 0;  // of the last one
    for (const RowItem& item : readRow(line, 0, 0, reading)) {
        if (!clusters.empty() && item.index == end) {
            const TextView text = clusters.back().text;
            clusters.back().text = {text.data(), text.size() + item.length};
        } else {
            clusters.push_back({line.substr(item.index, item.length), item.column});
        }
        end = item.index + item.length;
    }
    return clusters;
}

// "le- [F]lu": whether the blanks that the words end with only make room for the chord at this
// column, behind the former one.
bool isRoomBehindHyphen(TextView line, const Cluster& former, std::size_t column, char16_t next) {
    const std::size_t end = line.find_last_not_of(u' ') + 1;
    return end < line.size() && end > 1 && line[end - 1] == u'-' && isStretchable(line[end - 2]) &&
           isStretchable(next) && former.column + cellsOf(former.text) + 1 == column;
}

enum class Syllables { AsTheyStand, Joined };

// The words with the chords in brackets at their columns, behind the end of the words too.
Text withBrackets(const std::vector<Cluster>& chords, TextView words, const SongChordNames& names,
                  Syllables syllables = Syllables::AsTheyStand) {
    Text line;
    const Cluster* former = nullptr;
    CellReader reader(words);
    CellCharacter character;
    std::size_t cells = 0;
    bool more = reader.next(character);
    for (const Cluster& cluster : chords) {
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
        if (syllables == Syllables::Joined && former != nullptr && more &&
            isRoomBehindHyphen(line, *former, cluster.column, words[character.index]))
            line.resize(line.find_last_not_of(u' ') + 1);
        former = &cluster;
        line.append(u"[").append(names(cluster.text)).append(u"]");
    }
    return more ? line.append(words.substr(character.index)) : line;
}

Text withBrackets(TextView chords, TextView words, const SongChordNames& names) {
    return withBrackets(clustersOfRow(chords, names.reading()), words, names);
}

// What a line of marks has in it: "*let ring" is one.
std::vector<Cluster> marksOf(TextView line) {
    if (line.find(u'*') == TextView::npos)
        return clustersOfRow(line, {});
    std::vector<Cluster> marks;
    for (const Cluster& cluster : clustersOf(line)) {
        const bool goesOn = !marks.empty() && marks.back().text.starts_with(u'*') &&
                            !cluster.text.starts_with(u'*');
        if (!goesOn) {
            marks.push_back(cluster);
            continue;
        }
        const auto end = static_cast<std::size_t>(cluster.text.data() - marks.back().text.data());
        marks.back().text = {marks.back().text.data(), end + cluster.text.size()};
    }
    return marks;
}

// Whether the cluster stands where the former one ends, so that hyphens in front of it may be room
// for that; two are the fewest.
std::vector<bool> arePushed(const std::vector<Cluster>& clusters) {
    std::vector<bool> pushed(clusters.size());
    for (std::size_t i = 1; i < clusters.size(); ++i) {
        const std::size_t free = clusters[i - 1].column + cellsOf(clusters[i - 1].text) + 1;
        pushed[i] = clusters[i].column == free || clusters[i].column == free + 1;
    }
    return pushed;
}

// A line in brackets without the hyphens that stretch a word up to the next chord: "ri--[G]ver" is
// "ri[G]ver". `pushed` tells of each bracket whether it may be so; empty where all may.
Text withWordsJoined(TextView line, const std::vector<bool>& pushed) {
    Text joined;
    std::size_t bracket = 0;  // how many there have been
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
            bracket += close == end ? 0U : 1U;
            end = close + 1;
        }
        const bool mayStretch =
            pushed.empty() || (bracket > 0 && bracket <= pushed.size() && pushed[bracket - 1]);
        const bool isStretch = hyphens > 1 && at > 0 && end < line.size() && mayStretch &&
                               line[end - 1] == u']' && isStretchable(line[at - 1]) &&
                               isStretchable(line[end]);
        end = std::max(end, at + 1);
        joined += isStretch ? TextView(brackets) : line.substr(at, end - at);
        at = end;
    }
    return joined;
}

// The same without what the chart has put between syllables to make room.
Text withBracketsJoined(const std::vector<Cluster>& chords, TextView words,
                        const SongChordNames& names) {
    const bool hasOwn = words.find(u'[') != TextView::npos;
    return withWordsJoined(withBrackets(chords, words, names, Syllables::Joined),
                           hasOwn ? std::vector<bool>() : arePushed(chords));
}

// Brackets of the chart, which held no chord, and the marks between them.
std::vector<Cluster> unreadOf(TextView line) {
    std::vector<Cluster> marks;
    CellReader reader(line);
    CellCharacter character;
    bool inBracket = false;
    bool inMark = false;
    while (reader.next(character)) {
        const TextView rest = line.substr(character.index);
        const bool opens = !inBracket && rest[0] == u'[';
        const bool closes = inBracket && rest[0] == u']';
        const bool isMark = !inBracket && !opens && !isAnyBlank(rest[0]);
        if (opens || (isMark && !inMark))
            marks.push_back({rest.substr(opens ? 1 : 0, 0), character.column});
        else if ((inBracket && !closes) || isMark)
            marks.back().text = {marks.back().text.data(),
                                 marks.back().text.size() + character.length};
        if (isMark && !inMark)
            marks.back().text = rest.substr(0, character.length);
        inBracket = opens || (inBracket && !closes);
        inMark = isMark;
    }
    return marks;
}

class Exporter {
  public:
    Exporter(TextView chart, const std::function<SongChordNames(const SongImport&)>& names)
        : song_(importSong(chart)), names_(names(song_)) {}
    Text run();

  private:
    void putNext();
    void put(TextView text, const SourceLine& line);
    void putLine(TextView text, TextView end);
    void putChords();
    bool putMarks();
    bool putBrackets();
    bool putLabelledChords();
    bool putStrings();
    bool putDirective();
    bool putHead();
    bool comesBack(TextView exported, const std::vector<TextView>& lines,
                   bool isChordPro = false) const;
    void enterTablature(bool inside, TextView end);
    void endSection(TextView end);
    void putLabel();
    bool areWords(std::size_t number) const { return areWordsBelow(song_, number); }

    SongImport song_;
    // What comes back is told by the letters: a line alone does not tell by which names it is
    // written.
    const SongChordNames asWritten_{{}, song_, ChordNames::House};
    SongChordNames names_;
    Text result_;
    std::size_t number_ = 0;  // of the line that is next
    std::optional<std::size_t> title_;
    bool hasPairs_ = false;  // so that every bracket will be a chord or a remark
    bool isHead_ = true;     // facts of the song stand above its chords
    bool inTablature_ = false;
    bool inKept_ = false;     // within an environment whose directives are in the chart
    TextView section_;        // the open one: "chorus"
    bool isEndKept_ = false;  // its end is a line of the chart
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

// The same chords, and the same letters of words.
bool isAlike(const SongImport& a, const SongImport& b) {
    const auto lettersOf = [](const SongImport& song) {
        Text letters;
        for (const ImportedLine& line : song.lines) {
            for (const char16_t c : line.text) {
                if (!line.isChords && !isAnyBlank(c) && c != u'-')
                    letters += c;
            }
        }
        return letters;
    };
    return lettersOf(a) == lettersOf(b) &&
           std::equal(a.chords.begin(), a.chords.end(), b.chords.begin(), b.chords.end(),
                      [](const ImportedChord& x, const ImportedChord& y) {
                          return x.chord == y.chord && x.isRead == y.isRead;
                      });
}

// Whether an import makes these lines of the line, or what it makes of them anyway; also where the
// rest of the song makes every bracket a chord.
bool Exporter::comesBack(TextView exported, const std::vector<TextView>& lines,
                         bool isChordPro) const {
    ImportOptions options;
    options.isChordPro = true;
    const SongImport back = importSong(exported, {}, isChordPro ? options : ImportOptions());
    const bool hasOwnBrackets = std::any_of(lines.begin(), lines.end(), [](TextView line) {
        return line.find(u'[') != TextView::npos;
    });
    if (hasOwnBrackets && !isSame(back, importSong(exported, {}, options)))
        return false;
    const bool isChart = std::equal(
        back.lines.begin(), back.lines.end(), lines.begin(), lines.end(),
        [](const ImportedLine& x, TextView y) { return trimmedRight(x.text) == trimmedRight(y); });
    if (isChart)
        return true;
    if (exported == lines.front())
        return false;
    // A chart that is none of ours yet comes back as what its own import is.
    Text whole;
    for (const TextView line : lines)
        whole.append(whole.empty() ? u"" : u"\n").append(line);
    const SongImport own = importSong(whole);
    return isSame(back, own) || (own.chart() != whole && isAlike(back, own));
}

// The chords of the line, with the words below them where there are any.
void Exporter::putChords() {
    const SourceLine& line = song_.source[number_++];
    if (areWords(number_)) {
        const TextView words = song_.source[number_].text;
        const std::vector<Cluster> clusters = clustersOfRow(line.text, names_.reading());
        const Text both = withBrackets(clusters, words, asWritten_);
        const Text joined = withBracketsJoined(clusters, words, asWritten_);
        const auto fits = [&](const Text& exported) {
            return !exported.starts_with(u'#') && comesBack(exported, {line.text, words});
        };
        const bool isJoined = joined != both && fits(joined);
        if (isJoined || fits(both)) {
            putLine(isJoined ? withBracketsJoined(clusters, words, names_)
                             : withBrackets(clusters, words, names_),
                    song_.source[number_++].end);
            return;
        }
    }
    const Text alone = withBrackets(line.text, u"", asWritten_);
    if (comesBack(alone, {line.text}))
        putLine(withBrackets(line.text, u"", names_), line.end);
    else
        put(line.text, line);
}

// Remarks and repeat marks above chords or words stand in brackets among them.
bool Exporter::putMarks() {
    const TextView marks = song_.source[number_].text;
    const bool isUnread = isLineOfUnread(song_, number_);
    if (!isUnread && !isLineOfMarks(song_, number_))
        return false;
    const SourceLine& below = song_.source[number_ + 1];
    const bool isRow = below.verdict == LineVerdict::Chords;
    const bool hasWords = isRow ? areWords(number_ + 2) : areWords(number_ + 1);
    std::vector<TextView> lines{marks};
    if (isRow)
        lines.push_back(below.text);
    if (hasWords)
        lines.push_back(song_.source[number_ + lines.size()].text);
    std::vector<Cluster> clusters = isUnread ? unreadOf(marks) : marksOf(marks);
    if (isRow) {
        const std::vector<Cluster> chords = clustersOfRow(below.text, names_.reading());
        clusters.insert(clusters.end(), chords.begin(), chords.end());
        std::stable_sort(clusters.begin(), clusters.end(),
                         [](const Cluster& a, const Cluster& b) { return a.column < b.column; });
    }
    const TextView words = hasWords ? lines.back() : TextView();
    const Text both = withBrackets(clusters, words, asWritten_);
    const Text joined = withBracketsJoined(clusters, words, asWritten_);
    const auto fits = [&](const Text& exported) {
        return exported.starts_with(u'[') == both.starts_with(u'[') &&
               !exported.starts_with(u'#') &&
               (comesBack(exported, lines) || (hasPairs_ && comesBack(exported, lines, true)));
    };
    const bool isJoined = joined != both && fits(joined);
    if (!isJoined && !fits(both))
        return false;
    number_ += lines.size();
    putLine(isJoined ? withBracketsJoined(clusters, words, names_)
                     : withBrackets(clusters, words, names_),
            song_.source[number_ - 1].end);
    return true;
}

// Chords in brackets are what they are already.
bool Exporter::putBrackets() {
    const SourceLine& line = song_.source[number_];
    const bool mayHave = line.verdict == LineVerdict::Lyrics || line.verdict == LineVerdict::Chords;
    if (!mayHave || line.text.starts_with(u'#') || line.text.find(u'[') == TextView::npos ||
        line.text.find_first_of(u"{}") != TextView::npos)
        return false;
    const auto named = withNamedBrackets(song_, number_, names_);
    if (!named)
        return false;
    putLine(*named, line.end);
    return true;
}

// Text that would be read as something else is a comment.
void Exporter::put(TextView text, const SourceLine& line) {
    const bool blank = trimmed(text).empty();
    const bool plain =
        !text.starts_with(u'#') && line.verdict == LineVerdict::Lyrics && comesBack(text, {text});
    const Text comment = Text(u"{comment: ").append(trimmedRight(text)).append(u"}");
    const auto directive = plain || blank ? std::nullopt : readDirective(comment);
    // What would come back behind a mark is something else only in this song, which comes back too.
    const bool isComment = directive && shownRemark(*directive) == trimmedRight(text);
    putLine(blank ? TextView() : isComment ? TextView(comment) : text, line.end);
}

// A section ends in front of the first line that is none of its own.
void Exporter::endSection(TextView end) {
    if (isEndKept_)
        return;
    if (!section_.empty())
        putLine(Text(u"{end_of_").append(section_).append(u"}"), endOr(end));
    section_ = {};
}

// "Intro: Am  G": the label, and the chords on a line of their own.
bool Exporter::putLabelledChords() {
    const SourceLine& line = song_.source[number_];
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

// A section with its lines; one without is the chorus again.
void Exporter::putLabel() {
    const SourceLine& line = song_.source[number_];
    const auto section = sectionOfLabel(line.text);
    if (!section)
        return put(line.text, line);
    const SourceLine* const next =
        number_ + 1 < song_.source.size() ? &song_.source[number_ + 1] : nullptr;
    const bool isEnd =
        next == nullptr || trimmed(next->text).empty() ||
        (next->verdict == LineVerdict::Section && !isLineOfUnread(song_, number_ + 1));
    const bool isKept = explicitSectionEnd(song_.source, number_, *section).has_value();
    const bool isRepeat = !isKept && isEnd && *section == u"chorus";
    const bool isOther =
        !isKept && !isRepeat &&
        (isEnd || next->verdict == LineVerdict::Tablature ||
         (next->verdict == LineVerdict::Directive && next->text.starts_with(u"{start_of_")));
    const Text directive = sectionDirective(*section, line.text, isRepeat);
    const auto read = readDirective(directive);
    if (isOther || !read || shownSection(*read) != line.text)
        return put(line.text, line);
    putLine(directive, line.end);
    if (isRepeat)
        return;
    section_ = *section;
    isEndKept_ = isKept;
}

// A directive that is a line of the chart.
bool Exporter::putDirective() {
    const SourceLine& line = song_.source[number_];
    const auto directive =
        line.verdict == LineVerdict::Directive ? readDirective(line.text) : std::nullopt;
    if (!directive)
        return false;
    const TextView name = directive->name;
    const bool starts = name.starts_with(u"start_of_");
    const bool ends = name.starts_with(u"end_of_");
    if (ends && isEndKept_ && name.substr(7) == section_) {
        section_ = {};
        isEndKept_ = false;
    } else if (starts) {
        endSection(line.end);
    }
    if (starts || ends)
        inKept_ = name == u"start_of_tab" || name == u"start_of_grid";
    const auto remark = hasPairs_ ? hashRemark(*directive) : std::nullopt;
    putLine(remark ? TextView(*remark) : trimmed(line.text), line.end);
    return true;
}

// What stands above the song: its title and subtitle.
bool Exporter::putHead() {
    const SourceLine& line = song_.source[number_];
    const bool isTitle = title_ == number_;
    const bool isSubtitle = title_ && number_ == *title_ + 1 && isSubtitleBelow(song_, *title_);
    if (!isTitle && !isSubtitle)
        return false;
    putLine(
        Text(isTitle ? u"{title: " : u"{subtitle: ").append(trimmedRight(line.text)).append(u"}"),
        line.end);
    return true;
}

void Exporter::putNext() {
    const SourceLine& line = song_.source[number_];
    const bool tablature = line.verdict == LineVerdict::Tablature;
    const bool isUnread = isLineOfUnread(song_, number_);
    const bool isLabel = line.verdict == LineVerdict::Section && !isUnread;
    isHead_ = isHead_ && !mayHaveChords(line);
    if (tablature || isLabel || trimmed(line.text).empty())
        endSection(line.end);
    enterTablature(tablature && !inKept_, line.end);
    if (line.verdict == LineVerdict::Chords) {
        const bool isBracketed =
            line.chartLines == 1 && song_.lines[line.firstChartLine].text != line.text;
        if (isBracketed && putBrackets())
            ++number_;
        else if (!putMarks())
            putChords();
        return;
    }
    const bool isWords = line.verdict == LineVerdict::Lyrics;
    if ((isWords || isUnread) && putMarks())
        return;
    const auto fact = isWords ? factDirective(line.text, isHead_) : std::nullopt;
    const auto remark = isWords ? remarkDirective(line.text) : std::nullopt;
    const bool isAsItStands = (isWords || isUnread) && hasPairs_ && isRowOfUnread(line.text) &&
                              comesBack(trimmedRight(line.text), {line.text}, true);
    if (tablature || isAsItStands)
        putLine(line.text, line.end);
    else if (fact || remark)
        putLine(fact ? *fact : *remark, line.end);
    else if (isLabel && !putLabelledChords())
        putLabel();

    else if (!isLabel && (isUnread || (!putDirective() && !putHead() && !putBrackets())))
        put(line.text, line);
    ++number_;
}

Text Exporter::run() {
    title_ = titleLine(song_);
    for (std::size_t i = 0; i + 1 < song_.source.size() && !hasPairs_; ++i)
        hasPairs_ = song_.source[i].verdict == LineVerdict::Chords && areWords(i + 1);
    while (number_ < song_.source.size())
        putNext();
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

Text pairInBrackets(TextView chords, TextView words, const ChordReading& reading) {
    SongImport asItIs;
    asItIs.notation.reading = reading;
    return withBracketsJoined(clustersOfRow(chords, reading), words,
                              SongChordNames({}, asItIs, ChordNames::House));
}

std::optional<Text> withNamedBrackets(const SongImport& song, std::size_t number,
                                      const SongChordNames& names) {
    const TextView line = song.source[number].text;
    Text named;
    std::size_t copied = 0;
    const auto first =
        std::lower_bound(song.chords.begin(), song.chords.end(), number,
                         [](const ImportedChord& c, std::size_t n) { return c.sourceLine < n; });
    for (auto chord = first; chord != song.chords.end() && chord->sourceLine == number; ++chord) {
        if (chord->sourceIndex < copied)
            return std::nullopt;
        named.append(line.substr(copied, chord->sourceIndex - copied))
            .append(names(chord->written));
        copied = chord->sourceIndex + chord->written.size();
    }
    return copied == 0 ? std::nullopt : std::optional(named.append(line.substr(copied)));
}

Text exportChordPro(TextView chart, ChordNames names) {
    Text exported = Exporter(chart, [&](const SongImport& song) {
                        return SongChordNames(chart, song, names);
                    }).run();
    if (namesComeBack(chart, exported, names))
        return exported;
    const Naming naming = names == ChordNames::German ? Naming::German : Naming::Solfege;
    const std::size_t end = std::min(exported.find_first_of(u"\r\n"), exported.size());
    const TextView lineEnd = TextView(exported).substr(end).starts_with(u"\r\n") ? u"\r\n"
                             : TextView(exported).substr(end).starts_with(u'\r') ? u"\r"
                                                                                 : u"\n";
    return namingDirective(naming).value_or(Text()).append(lineEnd).append(exported);
}

Text exportChordPro(TextView chart, const SongChordNames& names) {
    return Exporter(chart, [&](const SongImport&) { return names; }).run();
}

}  // namespace melvorin
