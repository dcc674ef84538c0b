#include "Checks.h"

#include <cstdio>
#include <cstdlib>

#include "LiteralSuffixes.h"
#include "chords/CellWidth.h"
#include "chords/ChordLine.h"
#include "chords/ChordProExport.h"
#include "chords/SongImport.h"
#include "chords/SuffixNormaliser.h"

namespace melvorin::fuzz {
namespace {

void require(bool holds, const char* what, TextView text) {
    if (holds)
        return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    for (const char16_t c : text)
        std::fprintf(stderr, c >= u' ' && c < 0x7F ? "%c" : "\\x%04X", static_cast<unsigned>(c));
    std::fputc('\n', stderr);
    std::abort();
}

Text withoutBlanks(TextView text) {
    Text rest;
    for (const char16_t c : text) {
        if (!isAnyBlank(c))
            rest += c;
    }
    return rest;
}

Text withoutTrailingBlanks(TextView chart) {
    Text rest;
    while (!chart.empty()) {
        const TextLine line = takeLine(chart);
        rest.append(trimmedRight(line.chars)).append(line.end);
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
    const bool asItIs = line.verdict == LineVerdict::Tablature ||
                        (line.verdict == LineVerdict::Lyrics && !hasChords);
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

}  // namespace melvorin::fuzz
