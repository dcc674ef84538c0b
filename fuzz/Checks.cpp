#include "Checks.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "LiteralRules.h"
#include "LiteralSuffixes.h"
#include "base/TabExpansion.h"
#include "chords/CellWidth.h"
#include "chords/ChordLine.h"
#include "chords/ChordProExport.h"
#include "chords/KeySpelling.h"
#include "chords/SongImport.h"
#include "chords/SuffixNormaliser.h"
#include "chords/Transpose.h"

namespace melvorin::fuzz {

void require(bool holds, const char* what, TextView text) {
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    for (const char16_t c : text)
        std::fprintf(stderr, c >= u' ' && c < 0x7F ? "%c" : "\\x%04X", static_cast<unsigned>(c));
    std::fputc('\n', stderr);
    std::abort();
}

Text withoutTrailingBlanks(TextView chart) {
    Text rest;
    while (!chart.empty()) {
        const TextLine line = takeLine(chart);
        rest.append(trimmedRight(line.chars)).append(line.end);
    }
    return rest;
}

namespace {

Text withoutBlanks(TextView text) {
    Text rest;
    for (const char16_t c : text) {
        if (!isAnyBlank(c))
            rest += c;
    }
    return rest;
}

void checkLine(const SongImport& song, const SourceLine& line, std::size_t chartLine) {
    require(line.firstChartLine == chartLine, "chart lines follow their sources", line.text);
    require(line.chartLines > 0 || (line.remarks & LeftOut) != 0, "nothing is lost", line.text);
    bool hasChords = false;
    bool changesKey = true;
    for (std::size_t i = 0; i < line.chartLines; ++i) {
        const ImportedLine& written = song.lines[line.firstChartLine + i];
        hasChords = hasChords || written.isChords;
        changesKey = changesKey && (!written.isChords || IsChordLine(written.text));
    }
    require(changesKey == ((line.remarks & WillNotChangeKey) == 0), "the remark on keys is true",
            line.text);
    const bool asItIs =
        line.verdict == LineVerdict::Tablature ||
        (line.verdict == LineVerdict::Lyrics && !hasChords && (line.remarks & RemarksAbove) == 0);
    if (asItIs)
        require(withoutBlanks(song.lines[line.firstChartLine].text) == withoutBlanks(line.text),
                "words stay", line.text);
}

void checkReport(TextView text, const SongImport& song) {
    Text source;
    std::size_t chartLine = 0;
    for (const SourceLine& line : song.source) {
        source.append(line.text).append(line.end);
        checkLine(song, line, chartLine);
        chartLine += line.chartLines;
    }
    require(source == text, "the source is whole", text);
    for (const ImportedChord& chord : song.chords) {
        const SourceLine& from = song.source[chord.sourceLine];
        const ImportedLine& to = song.lines[chord.chartLine];
        require(from.text.substr(chord.sourceIndex, chord.written.size()) == chord.written &&
                    to.isChords && to.source == chord.sourceLine &&
                    to.text.substr(chord.chartIndex, chord.chord.size()) == chord.chord,
                "chords are where the report says", from.text);
    }
}

// The edits alone make the new line.
void checkMoved(TextView before, const MovedLine& moved) {
    Text rebuilt;
    std::size_t column = 0;
    for (const MovedRange& edit : moved.edits) {
        require(column <= edit.before.column, "edits are in order", before);
        rebuilt += before.substr(column, edit.before.column - column);
        require(rebuilt.size() == edit.after.column, "edits are where they say", before);
        rebuilt += moved.line.substr(edit.after.column, edit.after.length);
        column = edit.before.column + edit.before.length;
    }
    rebuilt += before.substr(column);
    require(rebuilt == moved.line, "the edits make the line", before);
    require(moved.changed == (moved.line != before), "a change is told", before);
}

}  // namespace

void checkImport(TextView text) {
    const SongImport song = importSong(text);
    checkReport(text, song);
    // Any verdict may be chosen for any line.
    ChosenVerdicts chosen;
    for (std::size_t i = 0; i < song.source.size(); i += 2)
        chosen[i] = kLineVerdicts[(i / 2 + text.size()) % std::size(kLineVerdicts)];
    checkReport(text, importSong(text, chosen));
    const Text chart = toCrLf(song.chart()).chars;
    if (importSong(chart).chart() != chart)
        return;
    const Text back = toCrLf(importSong(exportChordPro(chart)).chart()).chars;
    require(withoutTrailingBlanks(back) == withoutTrailingBlanks(chart),
            "an exported chart comes back", chart);
}

void checkNormaliser(TextView text) {
    const Text result = normaliseSuffixes(text);
    // Every row over and over takes its time.
    constexpr std::size_t longest = 400;
    if (text.size() <= longest)
        require(result == literal::normaliseSuffixes(Text(text)), "rows one by one", text);
}

void checkTransposer(TextView text) {
    // The rules one by one take their time.
    constexpr std::size_t longest = 120;
    while (!text.empty()) {
        const TextView line = takeLine(text).chars.substr(0, longest);
        const bool isChords = IsChordLine(line);
        for (const Direction direction : {Direction::Down, Direction::Up}) {
            for (const Spelling spelling : {Spelling::Sharps, Spelling::Flats}) {
                const MovedLine moved = KeyChange(direction, spelling).moveLine(line);
                if (!isChords)
                    continue;
                checkMoved(line, moved);
                const Text names = literal::transposeLine(Text(line), direction, spelling);
                require(TransposeLine(line, direction, spelling) == names, "names move", line);
                require(moved.line == literal::realignLine(Text(line), names),
                        "chords stay in their columns", line);
            }
        }
    }
}

void checkTabs(TextView text) {
    const Text whole = expandTabs(text);
    require(whole.find(u'\t') == Text::npos, "no tab is left", text);
    Text parts;
    TabExpander expander;
    for (std::size_t at = 0, size = 1; at < text.size(); at += size, size = size % 5 + 1)
        expander.append(text.substr(at, size), parts);
    require(parts == whole, "parts make the whole", text);
    Text literal;
    std::size_t column = 0;
    for (const char16_t c : text) {
        const std::size_t blanks = c == u'\t' ? 8 - column % 8 : 0;
        literal += blanks > 0 ? Text(blanks, u' ') : Text(1, c);
        column =
            c == u'\r' || c == u'\n' || c == u'\v' ? 0 : column + std::max(blanks, std::size_t{1});
    }
    require(literal == whole, "columns are multiples of eight", text);
}

void checkKey(TextView song) {
    const FoundKey found = findKey(song);
    require(!found.key || found.key == found.first, "an answer is the first candidate", song);
    require(found.percent >= 0 && found.percent <= 100, "percents are percents", song);
    require(found.isStated || found.percent < 100, "what is found is not certain", song);
    require(!found.second || found.second != found.first, "candidates differ", song);
    const std::size_t count = splitLines(song).size();
    for (const KeyStretch& change : found.changes)
        require(change.line < count, "a change is on a line of the song", song);
    std::vector<SpelledLine> lines;
    for (const TextView line : splitLines(song))
        lines.push_back({line, {}});
    const KeyRespelling higher(lines, found, 1, sideOf(song));
    for (std::size_t i = 0; i < lines.size(); ++i)
        checkMoved(lines[i].chars, higher.moveLine(i));
    const Text respelled = followKey(song, found, 0, sideOf(song));
    TextView rest = respelled;
    for (TextView before = song; !before.empty();) {
        const TextLine was = takeLine(before);
        const TextLine is = takeLine(rest);
        require(was.end == is.end, "line ends stay", song);
        require(IsChordLine(was.chars) ? IsChordLine(is.chars) : was.chars == is.chars,
                "a line stays what it is", song);
    }
    require(rest.empty(), "no line is added", song);
}

std::span<const Subject> subjects() {
    static constexpr auto asText = []<void (*Check)(TextView)>() {
        return [](std::string_view bytes) { Check(fromUtf8(bytes)); };
    };
    static const Subject all[] = {
        {"Import", asText.operator()<checkImport>(), "{t: A}\n[Am]La [G7/B]la\nIntro: C |\n"},
        {"Normaliser", asText.operator()<checkNormaliser>(), "C7M(#5) Dm7b5 9/6 F#m7/C# 11+"},
        {"Transposer", asText.operator()<checkTransposer>(), "Am  F#m7/C#  G7(b9)  Bb\nla la"},
        {"Tabs", asText.operator()<checkTabs>(), "C\tG\r\n\tla\tla\v\tx"},
        {"Key", asText.operator()<checkKey>(),
         "Key: Am\nAm  G#°/B  Bb7+ E7\r\nla la\n[Hm7]la | C#m7b5 F#7 |\n\nA#  Cb5 E#m\n"},
        {"RichText", checkRichText,
         "{\\rtf1\\ansi\\deff0{\\fonttbl{\\f0 Arial;}{\\f1 Courier;}}{\\colortbl ;\\red9\\green0"
         "\\blue0;}\\f0\\cf1 C \\b G\\b0\\par\n\\u233?\\'e9\\line\\f1 la\\par}"},
        {"Journal", checkJournal,
         "melvorin journal 1\ndocument 3 4 0061\nsnapshot 1 00620062003100410"
         "02e0074006d0070 4 255 5 6\nstate 1 1 1 1\n"},
        {"Recent", checkRecent, "C:\\a.mvt\n\nNot Used\nC:\\new.mvt"},
        {"Arguments", checkArguments, "transpose\n--up\n--flats\n--steps=2\n--output=x\nsong"},
        {"Criterion", checkCriterion, "Acorde = 'cm7'"},
    };
    return all;
}

}  // namespace melvorin::fuzz
