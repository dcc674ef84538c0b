#include "chords/SongParts.h"

#include <algorithm>

#include "chords/CellWidth.h"
#include "chords/ChordRow.h"
#include "chords/DirectiveLines.h"
#include "chords/Directives.h"
#include "chords/RowSymbols.h"

namespace melvorin {
namespace {

// Text of the song, and not about it.
bool isPlainText(const SourceLine& line, bool isHead = false) {
    // What could not be exported otherwise was text too.
    if (const auto directive =
            line.verdict == LineVerdict::Directive ? readDirective(line.text) : std::nullopt)
        return shownRemark(*directive) == directive->value &&
               judgeLine(directive->value) == LineVerdict::Lyrics;
    return line.verdict == LineVerdict::Lyrics && !trimmed(line.text).empty() &&
           !factDirective(line.text, isHead) && !remarkDirective(line.text);
}

// "*softly": a remark in a row, as the import shows "[*softly]".
bool isRowRemark(TextView line) {
    const TextView text = trimmed(line);
    return text.size() > 1 && text[0] == u'*' && text[1] != u'*' && !isAnyBlank(text[1]) &&
           text.find_first_of(u"[]{}") == TextView::npos;
}

bool isRowOfMarks(TextView line) {
    const std::vector<RowItem> row = readRow(line);
    return !row.empty() && std::all_of(row.begin(), row.end(), [](const RowItem& item) {
        return item.kind == RowItemKind::NoChord || item.kind == RowItemKind::Repeat ||
               item.kind == RowItemKind::Meter;
    });
}

// Chords, with what stands above them.
bool hasChordsAt(const SongImport& song, std::size_t number) {
    return song.source[number].verdict == LineVerdict::Chords || isLineOfMarks(song, number);
}

// "{title: ...}" where it stands as it is, and what begins the song.
bool endsHead(const SourceLine& line) {
    const auto directive =
        line.verdict == LineVerdict::Directive ? readDirective(line.text) : std::nullopt;
    return directive && (directive->name == u"title" || sectionOfDirective(*directive));
}

}  // namespace

std::optional<std::size_t> titleLine(const SongImport& song) {
    for (std::size_t i = 0; i + 1 < song.source.size(); ++i) {
        const SourceLine& line = song.source[i];
        const bool isBefore = trimmed(line.text).empty() ||
                              line.verdict == LineVerdict::Directive ||
                              factDirective(line.text, true);
        if (endsHead(line))
            return std::nullopt;
        if (isBefore)
            continue;
        // Blanks behind the last line end do not come back.
        const SourceLine& next = song.source[i + 1];
        const bool isLast = next.end.empty() && trimmed(next.text).empty();
        const bool isTitle = !isLast && line.verdict == LineVerdict::Lyrics &&
                             mayBeTitle(line.text) && !isLineOfMarks(song, i) &&
                             !hasChordsAt(song, i + 1);
        return isTitle ? std::optional(i) : std::nullopt;
    }
    return std::nullopt;
}

bool isSubtitleBelow(const SongImport& song, std::size_t title) {
    const std::size_t number = title + 1;
    return mayBeSubtitle(song.source, number) && !isLineOfMarks(song, number) &&
           (number + 1 == song.source.size() || !hasChordsAt(song, number + 1));
}

bool mayBeSubtitle(const std::vector<SourceLine>& source, std::size_t number) {
    if (number >= source.size() || source[number].verdict != LineVerdict::Lyrics ||
        !mayBeTitle(source[number].text))
        return false;
    return number + 1 == source.size() || (source[number + 1].verdict != LineVerdict::Chords &&
                                           !isPlainText(source[number + 1], true));
}

bool isLineOfMarks(const SongImport& song, std::size_t number) {
    if (number + 1 >= song.source.size())
        return false;
    const SourceLine& line = song.source[number];
    const SourceLine& below = song.source[number + 1];
    if (line.verdict == LineVerdict::Lyrics && isRowRemark(line.text))
        return below.verdict == LineVerdict::Chords || isPlainText(below);
    return below.verdict == LineVerdict::Chords && line.text.find(u'[') == TextView::npos &&
           line.verdict != LineVerdict::Tablature && line.verdict != LineVerdict::Directive &&
           isRowOfMarks(line.text);
}

bool isRowOfUnread(TextView line) {
    const TextView text = trimmed(line);
    if (text.find(u'[') == TextView::npos || readBrackets(line))
        return false;
    Text others;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t open = std::min(text.find(u'[', at), text.size());
        others.append(text.substr(at, open - at));
        if (open == text.size())
            break;
        const std::size_t close = text.substr(0, open + kLongestBracket).find(u']', open);
        if (close == TextView::npos)
            return false;
        at = close + 1;
    }
    const std::size_t close = text.find(u']');
    const bool isLabel = line.starts_with(u'[') && !mayBeRefused(line.substr(1, close - 1), {});
    return !isLabel && (trimmed(others).empty() || isRowOfMarks(others));
}

bool isLineOfUnread(const SongImport& song, std::size_t number) {
    if (number + 1 >= song.source.size())
        return false;
    const SourceLine& line = song.source[number];
    const SourceLine& below = song.source[number + 1];
    return (line.verdict == LineVerdict::Lyrics || line.verdict == LineVerdict::Section) &&
           (below.verdict == LineVerdict::Chords || isPlainText(below)) && isRowOfUnread(line.text);
}

bool areWordsBelow(const SongImport& song, std::size_t number) {
    return number < song.source.size() && isPlainText(song.source[number]) &&
           !isLineOfMarks(song, number);
}

}  // namespace melvorin
