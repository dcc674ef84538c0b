#include "chords/CapoLine.h"

#include <algorithm>
#include <array>

#include "base/EditorLine.h"
#include "base/LetterCase.h"
#include "chords/CellWidth.h"
#include "chords/LineVerdict.h"
#include "chords/Note.h"

namespace melvorin {
namespace {

constexpr std::size_t kLongestLine = 100;  // a longer one is no heading
constexpr std::size_t kLongestGap = 16;    // from the word to its number: ": at the "
constexpr int kHighestFret = 11;

// The longer ones first, where one begins like another.
constexpr TextView kCapoWords[] = {
    u"capotraste", u"capotasto",      u"capodastre", u"capodaster", u"capo",
    u"kapodaster", u"kapod\u00E1str", u"kapo",       u"cejilla",    u"\u043A\u0430\u043F\u043E"};
constexpr TextView kFretWords[] = {u"st",     u"nd",   u"rd",          u"th",     u"\u00BA",
                                   u"\u00AA", u".",    u"fret",        u"traste", u"tasto",
                                   u"casa",   u"bund", u"pra\u017Eec", u"case"};
constexpr TextView kSoundsIn = u"(sounds in ";

bool isLetter(char16_t c) {
    return unicodeLowerCase(c) != unicodeUpperCase(c);
}

bool isDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

// A quick look: each of the words has "ap", "ej" or a Cyrillic letter in it.
bool mayNameCapo(TextView line) {
    constexpr char16_t smallPe = u'\u043F';
    for (std::size_t i = 1; i < line.size(); ++i) {
        const auto before = static_cast<char16_t>(line[i - 1] | 0x20);
        const auto letter = static_cast<char16_t>(line[i] | 0x20);
        if ((letter == u'p' && before == u'a') || (letter == u'j' && before == u'e') ||
            unicodeLowerCase(line[i]) == smallPe)
            return true;
    }
    return false;
}

// Where a word for the capo begins and ends; "da capo" is none.
std::optional<ColumnRange> capoWord(TextView lower) {
    for (const TextView word : kCapoWords) {
        const std::size_t at = lower.find(word);
        const std::size_t end = at + word.size();
        if (at == TextView::npos || (at > 0 && isLetter(lower[at - 1])) ||
            (end < lower.size() && isLetter(lower[end])))
            continue;
        const TextView before = trimmedRight(lower.substr(0, at));
        if (before.ends_with(u"da") || before.ends_with(u"al") || before.ends_with(u"no"))
            return std::nullopt;
        return ColumnRange{at, word.size()};
    }
    return std::nullopt;
}

// "III" behind the word: 0 where the text begins with no such number that stands alone.
int romanAt(TextView text, std::size_t& length) {
    constexpr std::array<TextView, 11> numbers{u"I",   u"II",   u"III", u"IV", u"V", u"VI",
                                               u"VII", u"VIII", u"IX",  u"X",  u"XI"};
    length = std::min(text.find_first_not_of(u"IVX"), text.size());
    if (length < text.size() && isLetter(text[length]))
        return 0;
    const auto found = std::find(numbers.begin(), numbers.end(), text.substr(0, length));
    return found == numbers.end() ? 0 : static_cast<int>(found - numbers.begin()) + 1;
}

// The number behind the word, over ":", "on", "na"; nothing where another thing comes first.
std::optional<std::pair<int, ColumnRange>> numberBehind(TextView line, std::size_t from) {
    for (std::size_t at = from; at < line.size() && at - from <= kLongestGap; ++at) {
        std::size_t length = 0;
        if (isDigit(line[at])) {
            length = line.substr(at).find_first_not_of(u"0123456789");
            length = std::min(length, line.size() - at);
            const int fret = length == 1   ? line[at] - u'0'
                             : length == 2 ? (line[at] - u'0') * 10 + (line[at + 1] - u'0')
                                           : 0;
            if (fret < 1 || fret > kHighestFret)
                return std::nullopt;
            return std::pair(fret, ColumnRange{at, length});
        }
        if (!isLetter(line[at - 1])) {
            if (const int fret = romanAt(line.substr(at), length))
                return std::pair(fret, ColumnRange{at, length});
        }
        const bool mayStand = isLetter(line[at]) || isAnyBlank(line[at]) ||
                              TextView(u":=-.").find(line[at]) != TextView::npos;
        if (!mayStand)
            return std::nullopt;
    }
    return std::nullopt;
}

// Behind the number: "rd fret", "ª casa".
std::size_t endOfStatement(TextView lower, std::size_t end) {
    for (bool more = true; more;) {
        more = false;
        std::size_t word = end;
        while (word < lower.size() && isAnyBlank(lower[word]))
            ++word;
        for (const TextView fret : kFretWords) {
            if (!lower.substr(word).starts_with(fret))
                continue;
            const std::size_t behind = word + fret.size();
            if (behind < lower.size() && isLetter(lower[behind]) && isLetter(fret.back()))
                continue;
            end = behind;
            more = true;
            break;
        }
    }
    return end;
}

void readSounding(TextView line, TextView lower, CapoLine& found) {
    const std::size_t at = lower.find(kSoundsIn, found.number.column);
    if (at == TextView::npos)
        return;
    const std::size_t note = at + kSoundsIn.size();
    const std::size_t length = noteLength(line.substr(note));
    const std::size_t close = line.find(u')', note);
    if (length == 0 || close == TextView::npos)
        return;
    found.sounding = {note, length};
    const std::size_t begin = trimmedRight(line.substr(0, at)).size();
    found.soundsIn = {begin, close + 1 - begin};
}

}  // namespace

std::optional<CapoLine> readCapo(TextView line) {
    if (line.size() > kLongestLine || !mayNameCapo(line))
        return std::nullopt;
    const Text lower = unicodeLowerCase(line);
    const auto word = capoWord(lower);
    if (!word)
        return std::nullopt;
    const auto number = numberBehind(line, word->column + word->length);
    if (!number)
        return std::nullopt;
    CapoLine found;
    found.fret = number->first;
    found.number = number->second;
    const std::size_t end = found.number.column + found.number.length;
    found.statement = {word->column, endOfStatement(lower, end) - word->column};
    readSounding(line, lower, found);
    return found;
}

std::optional<CapoLine> findCapo(TextView song) {
    std::size_t number = 0;
    for (TextView rest = song; !rest.empty(); ++number) {
        if (auto found = readCapo(takeEditorLine(rest).chars)) {
            found->line = number;
            return found;
        }
    }
    return std::nullopt;
}

Text capoText(int fret, TextView sounds) {
    Text text = u"Capo " + decimal(fret);
    if (!sounds.empty())
        text.append(u" ").append(kSoundsIn).append(sounds).append(u")");
    return text;
}

namespace {

struct PlacedLine {
    std::size_t start = 0;
    TextLine line;
};

// The line that the capo goes under; nothing where the song has no title.
std::optional<PlacedLine> titleOf(TextView song) {
    std::optional<PlacedLine> title;
    bool hasChords = false;
    for (TextView rest = song; !rest.empty();) {
        const std::size_t start = song.size() - rest.size();
        const TextLine line = takeEditorLine(rest);
        const auto directive = readDirective(line.chars);
        if (directive && (directive->name == u"title" || directive->name == u"t"))
            return PlacedLine{start, line};
        if (title || hasChords || trimmed(line.chars).empty())
            continue;
        const LineVerdict verdict = judgeLine(line.chars);
        hasChords = verdict == LineVerdict::Chords;
        if (verdict == LineVerdict::Lyrics)
            title = PlacedLine{start, line};
    }
    return title;
}

// The line as it is without the statement: empty where nothing else is in it.
Text withoutCapo(TextView line, const CapoLine& capo) {
    Text rest(line);
    if (capo.soundsIn.length > 0)
        rest.erase(capo.soundsIn.column, capo.soundsIn.length);
    rest.erase(capo.statement.column, capo.statement.length);
    if (trimmed(rest).find_first_not_of(u"{}()[],;. ") == Text::npos)
        return {};
    // What parted it from its neighbours goes with it.
    std::size_t begin = capo.statement.column;
    std::size_t end = begin;
    while (end < rest.size() && (isAnyBlank(rest[end]) || rest[end] == u',' || rest[end] == u';'))
        ++end;
    while (end == rest.size() && begin > 0 &&
           (isAnyBlank(rest[begin - 1]) || rest[begin - 1] == u',' || rest[begin - 1] == u';'))
        --begin;
    return rest.erase(begin, end - begin);
}

PlacedLine lineOf(TextView song, std::size_t number) {
    for (TextView rest = song;; --number) {
        const std::size_t start = song.size() - rest.size();
        const TextLine line = takeEditorLine(rest);
        if (number == 0)
            return {start, line};
    }
}

std::vector<SongEdit> editsOfLine(TextView song, const CapoLine& capo, int fret, TextView sounds) {
    const auto [start, line] = lineOf(song, capo.line);
    if (fret == 0) {
        const Text rest = withoutCapo(line.chars, capo);
        if (!rest.empty())
            return {{start, line.chars.size(), rest}};
        // The last line takes the line end before it along.
        const bool hasEnd = !line.end.empty();
        const std::size_t before = hasEnd || start == 0 ? 0 : 1;
        return {{start - before, line.chars.size() + line.end.size() + before, {}}};
    }
    const auto at = [&](const ColumnRange& range) { return start + range.column; };
    const bool isDirective = trimmed(line.chars).starts_with(u'{');
    std::vector<SongEdit> edits{{at(capo.number), capo.number.length, decimal(fret)}};
    const Text behind = sounds.empty() || isDirective
                            ? Text()
                            : capoText(fret, sounds).substr(capoText(fret, {}).size());
    const std::size_t end = at(capo.statement) + capo.statement.length;
    if (capo.soundsIn.length > 0)
        edits.push_back({at(capo.soundsIn), capo.soundsIn.length, behind});
    else if (!behind.empty())
        edits.push_back({end, 0, behind});
    return edits;
}

}  // namespace

std::vector<SongEdit> capoEdits(TextView song, int fret, TextView sounds, TextView lineEnd) {
    if (const auto capo = findCapo(song))
        return editsOfLine(song, *capo, fret, sounds);
    if (fret == 0)
        return {};
    const Text text = capoText(fret, sounds);
    const auto title = titleOf(song);
    if (!title)
        return {{0, 0, text + Text(lineEnd)}};
    return {{title->start + title->line.chars.size(), 0, Text(lineEnd) + text}};
}

}  // namespace melvorin
