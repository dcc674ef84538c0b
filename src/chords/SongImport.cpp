#include "chords/SongImport.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "chords/CellWidth.h"
#include "chords/ChordLine.h"
#include "chords/DirectiveLines.h"
#include "chords/Directives.h"
#include "chords/Note.h"
#include "chords/Proportional.h"
#include "chords/RowMarks.h"
#include "chords/SongDiagrams.h"
#include "chords/StretchedWords.h"

namespace melvorin {
namespace {

bool isPlainRow(const SourceLine& line) {
    return line.verdict == LineVerdict::Chords && line.text.find(u'[') == TextView::npos;
}

// Diagrams and marks below chords are no words that these stand over.
bool isWords(const SourceLine& line) {
    return line.verdict == LineVerdict::Lyrics &&
           std::any_of(line.text.begin(), line.text.end(), [](char16_t c) {
               return !isAnyBlank(c) && !isDiagramToken(c) && !isOneOf(u".!*%", c);
           });
}

class Importer {
  public:
    Importer(TextView source, const ChosenVerdicts& chosen, const ImportOptions& options)
        : chosen_(chosen), options_(options) {
        split(source);
    }
    SongImport run();

  private:
    void split(TextView source);
    void judge();
    void judgeByDirectives();
    void judgeDenseStrings();
    void judgeLabels();
    void judgeBrackets();
    void readNotation();
    void judgeSmallRows();
    void judgeLoneWords();
    bool isAmongChords(std::size_t number, bool isWordAnywhere) const;
    void findProportionalRows();
    void write(std::size_t number);
    void writeChords(std::size_t number);
    void joinWords(std::size_t number, std::vector<RowItem>& items);
    void writeSection(std::size_t number);
    void writeDirective(std::size_t number);
    void writeText(std::size_t number, TextView text);
    bool writeBrackets(std::size_t number, TextView text, std::size_t column, std::size_t index);
    void writeRowItems(std::size_t number, std::vector<RowItem> row);
    void writeLine(std::size_t number, Text text, bool isChords);
    void remarkOn(SourceLine& line) const;

    const ChordReading& reading() const { return song_.notation.reading; }
    std::vector<RowItem> row(TextView text, std::size_t column = 0, std::size_t index = 0) {
        return readRow(text, column, index, reading(), memory());
    }
    std::optional<BracketedLine> brackets(TextView text, std::size_t column = 0,
                                          std::size_t index = 0) {
        return readBrackets(text, column, index, reading(), memory());
    }
    void read(const SongNotation& notation);
    // A few lines are read faster than remembered.
    RowMemory* memory() {
        constexpr std::size_t few = 32;
        return song_.source.size() > few ? &memory_ : nullptr;
    }

    const ChosenVerdicts& chosen_;
    const ImportOptions& options_;
    SongImport song_;
    std::vector<DirectiveLine> directives_;  // one for each line of the source
    RowMemory memory_;                       // of the reading
    std::optional<Text> joinedWords_;        // of the line below the chords
    bool isChordPro_ = false;
    bool isProportional_ = false;
};

void Importer::split(TextView source) {
    while (!source.empty()) {
        const TextLine line = takeLine(source);
        SourceLine& added = song_.source.emplace_back();
        added.text = line.chars;
        added.end = line.end;
    }
}

void Importer::read(const SongNotation& notation) {
    const ChordReading former = std::exchange(song_.notation, notation).reading;
    if (reading() != former)
        memory_ = RowMemory();
}

// Lines of a tablature or grid environment are its, whatever they look like.
void Importer::judgeByDirectives() {
    bool isEnvironment = false;
    for (SourceLine& line : song_.source) {
        line.verdict = judgeLine(line.text, reading(), memory());
        if (line.verdict == LineVerdict::Directive) {
            const auto directive = readDirective(line.text);
            const bool known = isKnownDirective(*directive);
            isChordPro_ = isChordPro_ || (known && !isAlwaysKept(*directive));
            const bool ends = directive->name.starts_with(u"end_of_");
            const bool starts = directive->name.starts_with(u"start_of_");
            if (!known || (isEnvironment && !ends && !starts))
                line.verdict = isEnvironment ? LineVerdict::Tablature : LineVerdict::Lyrics;
            if (known && (ends || starts))
                isEnvironment =
                    directive->name == u"start_of_tab" || directive->name == u"start_of_grid";
        } else if (isEnvironment) {
            line.verdict = LineVerdict::Tablature;
        }
    }
    judgeDenseStrings();
    // "# remark" is no line of a ChordPro song.
    for (SourceLine& line : song_.source) {
        if (isChordPro_ && line.verdict == LineVerdict::Lyrics && line.text.starts_with(u'#'))
            line.verdict = LineVerdict::Directive;
    }
}

// Frets beside a tablature are a string of it.
void Importer::judgeDenseStrings() {
    auto& lines = song_.source;
    const auto follow = [&](std::size_t number, std::size_t neighbour) {
        if (lines[neighbour].verdict == LineVerdict::Tablature &&
            lines[number].verdict == LineVerdict::Lyrics && mayBeDenseString(lines[number].text))
            lines[number].verdict = LineVerdict::Tablature;
    };
    for (std::size_t i = 1; i < lines.size(); ++i)
        follow(i, i - 1);
    for (std::size_t i = lines.size(); i > 1; --i)
        follow(i - 2, i - 1);
}

// "Gate: B" has a chord only where there are others.
void Importer::judgeLabels() {
    std::vector<SourceLine*> doubtful;
    for (SourceLine& line : song_.source) {
        if (line.verdict == LineVerdict::Chords)
            return;
        if (line.verdict == LineVerdict::Lyrics && brackets(line.text))
            return;
        if (line.verdict != LineVerdict::Section)
            continue;
        const std::size_t label = sectionLabelLength(line.text, reading(), memory());
        if (isDoubtfulLabel(line.text, label, reading(), memory()))
            doubtful.push_back(&line);
        else if (const TextView behind = line.text.substr(label);
                 isRowOfChords(row(behind)) || brackets(behind))
            return;
    }
    for (SourceLine* const line : doubtful)
        line->verdict = LineVerdict::Lyrics;
}

// In a ChordPro song whatever stands in brackets is a chord or a remark. It is one where it has a
// directive, or a chord between words.
void Importer::judgeBrackets() {
    const auto mayHave = [](const SourceLine& line) {
        return line.verdict != LineVerdict::Tablature && line.verdict != LineVerdict::Directive &&
               line.text.find(u'[') != TextView::npos;
    };
    isChordPro_ =
        isChordPro_ || options_.isChordPro ||
        std::any_of(song_.source.begin(), song_.source.end(), [&](const auto& line) {
            return line.verdict == LineVerdict::Lyrics && mayHave(line) && brackets(line.text);
        });
    if (!isChordPro_)
        return;
    SongNotation notation = song_.notation;
    notation.reading.everyBracket = true;
    read(notation);
    for (SourceLine& line : song_.source) {
        if (!mayHave(line))
            continue;
        line.verdict = judgeLine(line.text, reading(), memory());
        if (hasLooseBracket(line.text))
            line.remarks |= HasLooseBracket;
    }
    for (SourceLine& line : song_.source) {
        if (line.verdict == LineVerdict::Lyrics && line.text.starts_with(u"# "))
            line.verdict = LineVerdict::Directive;
    }
}

void Importer::readNotation() {
    NotationReader reader;
    for (const SourceLine& line : song_.source) {
        if (line.verdict == LineVerdict::Directive) {
            if (const auto naming = statedNaming(line.text))
                reader.state(*naming);
            continue;
        }
        if (line.verdict == LineVerdict::Tablature)
            continue;
        const std::size_t label = line.verdict == LineVerdict::Section
                                      ? sectionLabelLength(line.text, reading(), memory())
                                      : 0;
        const TextView text = line.text.substr(label);
        if (line.text.find(u'[') != TextView::npos)
            reader.addBrackets(line.text);
        else if (line.verdict == LineVerdict::Chords || (label > 0 && isRowOfChords(row(text))))
            reader.addRow(text);
        else
            reader.addWords(text);
    }
    SongNotation notation = reader.result(options_.plainB, options_.plainNinth);
    if (options_.isLoneLine) {
        notation.reading.smallMinors = true;
        if (reader.maySyllables())
            notation.reading.naming = Naming::Solfege;
    }
    read(notation);
}

// In a song of small minor chords "a  d" are chords, and "[a]" is no label.
void Importer::judgeSmallRows() {
    for (SourceLine& line : song_.source) {
        const TextView text = trimmed(line.text);
        if (line.verdict == LineVerdict::Lyrics && mayBeSmallRow(text) && isRowOfChords(row(text)))
            line.verdict = LineVerdict::Chords;
        const bool isLabel = line.verdict == LineVerdict::Section && text.starts_with(u'[');
        const TextView inside = text.substr(0, text.find(u']'));
        if (!isLabel || !mayBeSmallRow(inside.substr(1)))
            continue;
        if (const auto bracketed = brackets(text);
            bracketed && bracketed->chords.front().index == 1)
            line.verdict = bracketed->lyrics.empty() ? LineVerdict::Chords : LineVerdict::Lyrics;
    }
}

// Whether a line whose chords are words too is one of chords, by the lines around it: there are
// chords within two lines that are not empty, and it stands over words or between lines of chords.
// What is a word anywhere has to be a German name in a song of such.
bool Importer::isAmongChords(std::size_t number, bool isWordAnywhere) const {
    constexpr int farthest = 2;
    const auto& lines = song_.source;
    const auto isChords = [&](std::size_t i) {
        return i < lines.size() && lines[i].verdict == LineVerdict::Chords;
    };
    const bool isOverWords = number + 1 < lines.size() && isWords(lines[number + 1]);
    const bool isBelowChords = number > 0 && isChords(number - 1);
    const bool isBetween = isBelowChords && isChords(number + 1);
    const TextView text = trimmed(lines[number].text);
    // "Eis" and "His" are words more often than notes.
    const bool isRare =
        text.starts_with(u"Eis") || text.starts_with(u"His") || text.starts_with(u"Hes");
    const bool isName =
        song_.notation.hasGermanNames && !isRare && text.back() != u'o' && text.back() != u'a';
    const bool mayBe = isWordAnywhere ? isName && isOverWords && !isBelowChords
                                      : isOverWords || isBetween || (isName && !isBelowChords);
    if (!mayBe)
        return false;
    // Empty lines are passed over, but not without an end.
    constexpr std::size_t widest = 8;
    int above = 0;
    for (std::size_t i = number; i > 0 && number - i < widest && above < farthest; --i) {
        if (isChords(i - 1))
            return true;
        above += trimmed(lines[i - 1].text).empty() ? 0 : 1;
    }
    int below = 0;
    for (std::size_t i = number + 1; i < lines.size() && i - number <= widest && below < farthest;
         ++i) {
        if (isChords(i))
            return true;
        below += trimmed(lines[i].text).empty() ? 0 : 1;
    }
    return false;
}

// "Ami" alone on a line is a word, unless there are chords around it.
void Importer::judgeLoneWords() {
    constexpr std::size_t longest = 24;
    for (std::size_t number = 0; number < song_.source.size(); ++number) {
        SourceLine& line = song_.source[number];
        const TextView text = trimmed(line.text);
        if (line.verdict != LineVerdict::Lyrics || text.empty() || text.size() > longest)
            continue;
        const bool mayBegin = text[0] == u'(' || (text[0] >= u'A' && text[0] <= u'H') ||
                              (reading().smallMinors && text[0] >= u'a' && text[0] <= u'h') ||
                              (reading().naming == Naming::Solfege && solfegeLength(text) > 0);
        if (!mayBegin)
            continue;
        const std::vector<RowItem> items = row(text);
        const bool isAnywhere = std::any_of(items.begin(), items.end(), [](const RowItem& item) {
            return item.wordToo == WordToo::Anywhere;
        });
        if (mayBeRowOfChords(items) && (options_.isLoneLine || isAmongChords(number, isAnywhere)))
            line.verdict = LineVerdict::Chords;
    }
}

void Importer::judge() {
    judgeByDirectives();
    if (!options_.isLoneLine)
        judgeLabels();
    readNotation();
    if (reading().naming == Naming::Solfege)
        judgeByDirectives();
    judgeBrackets();
    if (reading().smallMinors)
        judgeSmallRows();
    judgeLoneWords();
    for (SourceLine& line : song_.source) {
        if (line.verdict == LineVerdict::Chords && remarkDirective(line.text))
            line.verdict = LineVerdict::Lyrics;
    }
    for (const auto& [number, verdict] : chosen_) {
        if (number < song_.source.size()) {
            song_.source[number].verdict = verdict;
            song_.source[number].chosen = true;
        }
    }
}

// One song is typed in one font: its pairs of chords and words are judged together.
void Importer::findProportionalRows() {
    ProportionalTest test;
    for (std::size_t number = 0; number + 1 < song_.source.size(); ++number) {
        if (isPlainRow(song_.source[number]) && isWords(song_.source[number + 1]))
            test.addPair(song_.source[number].text, song_.source[number + 1].text);
    }
    isProportional_ = test.isProportional();
}

SongImport Importer::run() {
    judge();
    findProportionalRows();
    directives_ = directiveLines(song_.source);
    for (std::size_t number = 0; number < song_.source.size(); ++number) {
        SourceLine& line = song_.source[number];
        line.firstChartLine = song_.lines.size();
        write(number);
        line.chartLines = song_.lines.size() - line.firstChartLine;
        remarkOn(line);
    }
    return std::move(song_);
}

void Importer::write(std::size_t number) {
    const TextView text = song_.source[number].text;
    switch (song_.source[number].verdict) {
        case LineVerdict::Chords:
            writeChords(number);
            break;
        case LineVerdict::Lyrics:
            if (joinedWords_)
                writeText(number, *std::exchange(joinedWords_, std::nullopt));
            else if (!writeBrackets(number, text, 0, 0))
                writeText(number, text);
            break;
        case LineVerdict::Section:
            writeSection(number);
            break;
        case LineVerdict::Directive:
            writeDirective(number);
            break;
        case LineVerdict::Tablature:
            writeText(number, text);
            break;
    }
}

void Importer::writeChords(std::size_t number) {
    const TextView text = song_.source[number].text;
    if (writeBrackets(number, text, 0, 0))
        return;
    std::vector<RowItem> items = row(text);
    const bool hasWords = number + 1 < song_.source.size() && isWords(song_.source[number + 1]);
    if (isProportional_ && hasWords && !song_.source[number].chosen) {
        moveToSyllables(items, text, song_.source[number + 1].text);
        song_.source[number].remarks |= MovedToSyllables;
    } else if (hasWords) {
        joinWords(number + 1, items);
    }
    writeRowItems(number, std::move(items));
}

// The row stands above line `number`.
void Importer::joinWords(std::size_t number, std::vector<RowItem>& items) {
    const SourceLine& line = song_.source[number];
    if (line.text.find(u"--") == TextView::npos || line.text.find(u'\t') != TextView::npos ||
        line.chosen || brackets(line.text))
        return;
    Text words(line.text);
    joinStretchedWords(items, words);
    if (words != line.text)
        joinedWords_ = std::move(words);
}

// A label and the chords behind it go to lines of their own: the key change knows only lines of
// nothing but chords.
void Importer::writeSection(std::size_t number) {
    const TextView text = song_.source[number].text;
    const std::size_t label = sectionLabelLength(text, reading(), memory());
    const TextView behind = text.substr(label);
    const std::size_t column = cellsOf(text.substr(0, label));
    const std::vector<RowItem> items = row(behind, column, label);
    const bool hasBrackets = label > 0 && brackets(behind).has_value();
    if (label == 0 || (!hasBrackets && !isRowOfChords(items))) {
        writeText(number, text);
        return;
    }
    writeText(number, trimmedRight(text.substr(0, label)));
    if (hasBrackets)
        writeBrackets(number, behind, column, label);
    else
        writeRowItems(number, items);
}

void Importer::writeDirective(std::size_t number) {
    const DirectiveLine& line = directives_[number];
    if (line.text)
        writeText(number, *line.text);
    if (line.hasBlankBelow)
        writeText(number, u"");
    if (!line.text && !line.hasBlankBelow)
        song_.source[number].remarks |= LeftOut;
}

bool Importer::writeBrackets(std::size_t number, TextView text, std::size_t column,
                             std::size_t index) {
    std::optional<BracketedLine> bracketed = brackets(text, column, index);
    if (!bracketed)
        return false;
    writeRowItems(number, std::move(bracketed->chords));
    if (!trimmed(bracketed->lyrics).empty())
        writeLine(number, Text(column, u' ').append(bracketed->lyrics), false);
    return true;
}

void Importer::writeText(std::size_t number, TextView text) {
    writeLine(number, withOrdinaryBlanks(text), false);
}

// Whether a key change moves the item, or passes it over in a line that it moves.
bool isOfChordLine(const RowItem& item) {
    switch (item.kind) {
        case RowItemKind::Chord:
        case RowItemKind::Unknown:
        case RowItemKind::Bar:
        case RowItemKind::Beat:
        case RowItemKind::Separator:
            return true;
        case RowItemKind::Sign:
            return isDiagramToken(item.shown[0]);
        default:
            return false;
    }
}

bool isPlayed(const RowItem& item) {
    return item.kind == RowItemKind::Chord || item.kind == RowItemKind::Unknown ||
           (item.kind == RowItemKind::Sign && isDiagramToken(item.shown[0]));
}

// Repeat marks, remarks and rests keep their place, on a line above: with them the chords would not
// change key.
void Importer::writeRowItems(std::size_t number, std::vector<RowItem> row) {
    SourceLine& line = song_.source[number];
    const bool hasChords = std::any_of(row.begin(), row.end(), isPlayed);
    const auto isUnread = [](const RowItem& item) { return item.kind == RowItemKind::Unread; };
    if (std::any_of(row.begin(), row.end(), isUnread))
        line.remarks |= HasUnknownChords;
    const auto end =
        hasChords ? std::stable_partition(row.begin(), row.end(), isOfChordLine) : row.end();
    if (end != row.end()) {
        writeLine(number, writeRow({end, row.end()}), false);
        row.erase(end, row.end());
        line.remarks |= RemarksAbove;
    }
    const bool isRow = std::any_of(row.begin(), row.end(), [](const RowItem& item) {
        return isOfChordLine(item) || item.kind == RowItemKind::NoChord;
    });
    if (!isRow && !line.chosen) {
        writeLine(number, writeRow(row), false);
        line.remarks |= RemarksAbove;
        return;
    }
    std::vector<std::size_t> places;
    const Text chart = writeRow(row, &places);
    for (std::size_t i = 0; i < row.size(); ++i) {
        const RowItem& item = row[i];
        const bool isRead = item.kind == RowItemKind::Chord;
        if (item.kind == RowItemKind::Separator)
            line.remarks |= SeparatorsLeftOut;
        if (!isRead && item.kind != RowItemKind::Unknown)
            continue;
        line.remarks |= isRead ? 0U : HasUnknownChords;
        song_.chords.push_back({line.text.substr(item.index, item.length), item.shown, isRead,
                                number, item.index, song_.lines.size(), places[i]});
    }
    if (!IsChordLine(chart))
        line.remarks |= WillNotChangeKey;
    writeLine(number, chart, true);
}

void Importer::writeLine(std::size_t number, Text text, bool isChords) {
    song_.lines.push_back({std::move(text), isChords, number});
}

void Importer::remarkOn(SourceLine& line) const {
    for (std::size_t i = 0; i < line.chartLines; ++i) {
        const ImportedLine& written = song_.lines[line.firstChartLine + i];
        const bool hasNotes = std::any_of(written.text.begin(), written.text.end(), isNoteLetter);
        if (!written.isChords && hasNotes && IsChordLine(written.text))
            line.remarks |= WillChangeWithKey;
    }
}

}  // namespace

Text remarkText(unsigned remarks) {
    static constexpr std::pair<LineRemark, TextView> phrases[] = {
        {WillNotChangeKey, u"will not change key"},
        {HasUnknownChords, u"has chords that cannot be read"},
        {WillChangeWithKey, u"looks like chords to a key change"},
        {LeftOut, u"left out"},
        {SeparatorsLeftOut, u"separators left out"},
        {RemarksAbove, u"remarks on a line above"},
        {HasLooseBracket, u"has a bracket without its partner"},
        {MovedToSyllables, u"moved to the syllables"}};
    Text text;
    for (const auto& [remark, phrase] : phrases) {
        if ((remarks & remark) != 0)
            text.append(text.empty() ? u"" : u"; ").append(phrase);
    }
    return text;
}

Text SongImport::chart() const {
    const auto firstEnd = std::find_if(source.begin(), source.end(),
                                       [](const SourceLine& line) { return !line.end.empty(); });
    const TextView usualEnd = firstEnd == source.end() ? TextView(u"\n") : firstEnd->end;
    Text text;
    for (std::size_t i = 0; i < lines.size(); ++i) {
        // The chart ends as the source does, also where the last lines were left out.
        const bool last = i + 1 == lines.size();
        const TextView end = last ? source.back().end : source[lines[i].source].end;
        text.append(lines[i].text).append(end.empty() && !last ? usualEnd : end);
    }
    return text;
}

SongImport importSong(TextView source, const ChosenVerdicts& chosen, const ImportOptions& options) {
    return Importer(source, chosen, options).run();
}

}  // namespace melvorin
