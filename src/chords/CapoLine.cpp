#include "chords/CapoLine.h"

#include <algorithm>
#include <array>
#include <iterator>

#include "base/EditorLine.h"
#include "base/LetterCase.h"
#include "chords/BracketedLine.h"
#include "chords/CellWidth.h"
#include "chords/KeyStatement.h"
#include "chords/LineVerdict.h"
#include "chords/Note.h"

namespace melvorin {
namespace {

constexpr std::size_t kLongestLine = 100;  // a longer one is no heading
constexpr int kHighestFret = 11;

// The longer ones first, where one begins like another.
constexpr TextView kCapoWords[] = {
    u"capotraste", u"capotasto",      u"capodastre", u"capodaster", u"capo",
    u"kapodaster", u"kapod\u00E1str", u"kapo",       u"cejilla",    u"\u043A\u0430\u043F\u043E"};
// What a capo may be said of, and how it may be asked for, right in front of it.
constexpr TextView kInstruments[] = {u"piano", u"guitar", u"gtr", u"ukulele", u"banjo"};
constexpr TextView kRequests[] = {u"use", u"with", u"play with"};
// Between the word and its number.
constexpr TextView kLinkWords[] = {u"on",     u"at",   u"na",   u"no",          u"en",  u"el",
                                   u"in",     u"the",  u"fret", u"casa",        u"auf", u"im",
                                   u"traste", u"bund", u"lad",  u"\u043D\u0430"};
constexpr TextView kFretWords[] = {u".",    u"fret", u"traste",      u"tasto",
                                   u"casa", u"bund", u"pra\u017Eec", u"case"};
// Right behind a number in figures.
constexpr TextView kEnglishOrdinals[] = {u"st", u"nd", u"rd", u"th"};
constexpr TextView kOrdinals[] = {u"\u00BA", u"\u00AA", u"\u00B0", u"a",  u"o",  u"e",
                                  u"ra",     u"da",     u"ta",     u"ma", u"ro", u"do",
                                  u"to",     u"mo",     u"er",     u"re", u"te", u"\u00E8me"};
constexpr TextView kParting = u",;|\u2022\u00B7-\u2013\u2014";  // parts one statement from the next
constexpr TextView kOpening = u"([{";
constexpr TextView kClosing = u")]}";

bool contains(TextView chars, char16_t c) {
    return chars.find(c) != TextView::npos;
}

template <std::size_t count>
bool isAmong(const TextView (&words)[count], TextView word) {
    return std::find(std::begin(words), std::end(words), word) != std::end(words);
}

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

std::size_t behindBlanks(TextView line, std::size_t at) {
    while (at < line.size() && isAnyBlank(line[at]))
        ++at;
    return at;
}

std::size_t wordEnd(TextView line, std::size_t at) {
    while (at < line.size() && isLetter(line[at]))
        ++at;
    return at;
}

// The first word for the capo at `from` or behind it.
std::optional<ColumnRange> capoWord(TextView lower, std::size_t from) {
    for (std::size_t at = from; at < lower.size(); ++at) {
        if (at > 0 && isLetter(lower[at - 1]))
            continue;
        const TextView word = lower.substr(at, wordEnd(lower, at) - at);
        if (isAmong(kCapoWords, word))
            return ColumnRange{at, word.size()};
    }
    return std::nullopt;
}

// Whether a statement may begin at `at`: it is the first of the line, or another one ends there.
// In front of a fact there may be one blank: "Key: G capo 3".
bool mayBeginAt(TextView lower, std::size_t at) {
    const TextView before = trimmedRight(lower.substr(0, at));
    if (before.empty() || isAmong(kInstruments, trimmed(before)))
        return true;
    const std::size_t gap = at - before.size();
    const char16_t last = before.back();
    if (contains(kOpening, last) || contains(u":#.=*<\"", last) || contains(kParting, last) ||
        (last == u'/' && gap > 0) || gap > 1 || (gap == 1 && lower[at - 1] == u'\t'))
        return true;
    const std::size_t colon = before.rfind(u':');
    return colon != TextView::npos && gap == 1 &&
           !contains(trimmed(before.substr(colon + 1)), u' ');
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

// "1/2 step", "3-4", "2.5": no fret.
bool isPartOfMore(TextView line, std::size_t behind) {
    const std::size_t sign = behindBlanks(line, behind);
    if (sign == line.size() || !contains(u"/-\u2013.,", line[sign]))
        return false;
    const bool isTight = contains(u".,", line[sign]);
    const std::size_t next = isTight ? sign + 1 : behindBlanks(line, sign + 1);
    return next < line.size() && isDigit(line[next]);
}

// The fret that is written in figures at a column; 0 where there is none.
int figuresAt(TextView line, std::size_t at, std::size_t& length) {
    constexpr int tooMuch = 100;
    int fret = 0;
    for (length = 0; at + length < line.size() && isDigit(line[at + length]); ++length)
        fret = std::min(fret * 10 + (line[at + length] - u'0'), tooMuch);
    return fret <= kHighestFret && !isPartOfMore(line, at + length) ? fret : 0;
}

// Where the number behind the word begins, over "on the", ": ", "="; the end of the line where
// another word comes first.
std::size_t behindLinks(TextView lower, std::size_t at) {
    for (;;) {
        while (at < lower.size() && (isAnyBlank(lower[at]) || contains(u":=-.#", lower[at])))
            ++at;
        const std::size_t end = wordEnd(lower, at);
        if (end == at || !isAmong(kLinkWords, lower.substr(at, end - at)))
            return at;
        at = end;
    }
}

// Behind the number: "fret", "casa", a full stop.
std::size_t behindFretWords(TextView lower, std::size_t end) {
    for (bool more = true; more;) {
        const std::size_t word = behindBlanks(lower, end);
        more = false;
        for (const TextView fret : kFretWords) {
            const std::size_t behind = word + fret.size();
            const bool isCut = fret != u"." && behind < lower.size() && isLetter(lower[behind]);
            if (!lower.substr(std::min(word, lower.size())).starts_with(fret) || isCut)
                continue;
            end = behind;
            more = true;
            break;
        }
    }
    return end;
}

// Whether nothing that belongs to the words before it stands at `at`.
bool endsAt(TextView line, std::size_t at) {
    const std::size_t next = behindBlanks(line, at);
    if (next == line.size() || next > at + 1 || (next > at && line[at] == u'\t') ||
        contains(kOpening, line[next]) || contains(kClosing, line[next]) ||
        contains(kParting, line[next]) || contains(u":.", line[next]))
        return true;
    if (line[next] == u'/')
        return true;
    // Another label.
    const std::size_t colon = line.find(u':', next);
    return colon != TextView::npos && !contains(line.substr(next, colon - next), u' ');
}

// Units of the key that the text begins with, "F#m" or "A minor"; 0 where it is none.
std::size_t keyLength(TextView text) {
    std::size_t length = noteLength(text);
    if (length == 0)
        return 0;
    for (const TextView mode : {u" minor", u" major", u"min", u"maj", u"m"}) {
        if (text.substr(length).starts_with(mode)) {
            length += mode.size();
            break;
        }
    }
    return length < text.size() && isLetter(text[length]) ? 0 : length;
}

// What it sounds in, anywhere behind as "sounds in Bb", or right behind as "(Bb)".
void readSounding(TextView line, TextView lower, CapoLine& found) {
    const std::size_t end = found.statement.column + found.statement.length;
    constexpr TextView words[] = {u"sounds in ", u"sounding in ", u"sounding ", u"sounds like ",
                                  u"sounds "};
    std::size_t begin = behindBlanks(line, end);
    std::size_t note = begin + 1;
    for (const TextView word : words) {
        if (const std::size_t at = lower.find(word, end); at != TextView::npos) {
            note = at + word.size();
            begin = trimmedRight(line.substr(0, at)).size() - 1;
            begin = begin >= end && (line[begin] == u'(' || line[begin] == u',') ? begin : at;
            break;
        }
    }
    if (note > line.size())
        return;
    std::size_t behind = note + keyLength(line.substr(note));
    if (behind == note)
        return;
    const bool isOpen = line[begin] == u'(';
    const bool isClosed = behind < line.size() && line[behind] == u')';
    if (isOpen != isClosed && (isOpen || begin + 1 == note))
        return;
    if (begin + 1 == note && !isOpen)
        return;
    behind += isOpen ? 1 : 0;
    begin = std::max(end, trimmedRight(line.substr(0, begin)).size());
    found.sounding = {note, noteLength(line.substr(note))};
    found.soundsIn = {begin, behind - begin};
}

std::optional<CapoLine> statementAt(TextView line, TextView lower, const ColumnRange& word) {
    CapoLine found;
    std::size_t begin = word.column;
    const TextView before = trimmed(lower.substr(0, begin));
    if (isAmong(kRequests, before))
        begin = lower.find(before);
    else if (!mayBeginAt(lower, begin))
        return std::nullopt;
    const std::size_t at = behindLinks(lower, word.column + word.length);
    std::size_t length = 0;
    found.fret = at < line.size() ? figuresAt(line, at, length) : 0;
    const bool isRoman = length == 0 && at < line.size() && !isLetter(line[at - 1]);
    if (isRoman)
        found.fret = romanAt(line.substr(at), length);
    if (found.fret < 1)
        return std::nullopt;
    found.number = {at, length};
    std::size_t end = at + length;
    if (!isRoman) {
        std::size_t ordinal = wordEnd(lower, end);
        if (ordinal == end && end < lower.size() && contains(u"\u00BA\u00AA\u00B0", lower[end]))
            ++ordinal;
        const TextView letters = lower.substr(end, ordinal - end);
        if (isAmong(kOrdinals, letters) || isAmong(kEnglishOrdinals, letters)) {
            found.ordinal = {end, letters.size()};
            end = ordinal;
        } else if (!letters.empty() && !isAmong(kFretWords, letters)) {
            return std::nullopt;
        }
    }
    end = behindFretWords(lower, end);
    found.isPlain = endsAt(line, end) || line[end - 1] == u'.';
    if (isRoman && !found.isPlain)
        return std::nullopt;
    found.statement = {begin, end - begin};
    readSounding(line, lower, found);
    if (found.soundsIn.length > 0) {
        found.isPlain = found.isPlain || found.soundsIn.column <= end;
    } else {
        // "(G shapes)", "sounds as Bb": it says more than is understood.
        const std::size_t next = behindBlanks(line, end);
        const bool saysMore = (next < line.size() && line[next] == u'(') ||
                              lower.find(u"sound", end) != TextView::npos;
        found.isPlain = found.isPlain && !saysMore;
    }
    return found;
}

}  // namespace

std::optional<CapoLine> readCapo(TextView line) {
    if (line.size() > kLongestLine || !mayNameCapo(line))
        return std::nullopt;
    const Text lower = unicodeLowerCase(line);
    for (auto word = capoWord(lower, 0); word;
         word = capoWord(lower, word->column + word->length)) {
        if (const auto found = statementAt(line, lower, *word))
            return found;
    }
    return std::nullopt;
}

namespace {

bool isWords(TextView line) {
    return !trimmed(line).empty() && judgeLine(line) == LineVerdict::Lyrics;
}

// Chords with words below them, or among them.
bool hasPair(TextView song) {
    bool isBelowChords = false;
    while (!song.empty()) {
        const TextView line = takeEditorLine(song).chars;
        if ((isBelowChords && isWords(line)) || readBrackets(line))
            return true;
        isBelowChords = judgeLine(line) == LineVerdict::Chords;
    }
    return false;
}

}  // namespace

std::optional<CapoLine> findCapo(TextView song) {
    std::optional<CapoLine> first;
    bool isPastHead = false;
    std::size_t number = 0;
    for (TextView rest = song; !rest.empty(); ++number) {
        const std::size_t start = song.size() - rest.size();
        const TextView line = takeEditorLine(rest).chars;
        auto found = readCapo(line);
        if (!found)
            continue;
        found->line = number;
        if (!readDirective(line)) {
            isPastHead = isPastHead || hasPair(song.substr(0, start));
            if (isPastHead)
                continue;
        }
        if (found->isPlain)
            return found;
        if (!first)
            first = found;
    }
    return first;
}

Text capoText(int fret, TextView sounds) {
    Text text = u"Capo " + decimal(fret);
    if (!sounds.empty())
        text.append(u" (sounds in ").append(sounds).append(u")");
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
        const bool isHeader =
            (statesFact(line.chars) && !unicodeLowerCase(line.chars).starts_with(u"title")) ||
            statedKey(line.chars) || readCapo(line.chars);
        if (title || hasChords || trimmed(line.chars).empty() || isHeader)
            continue;
        const LineVerdict verdict = judgeLine(line.chars);
        hasChords = verdict == LineVerdict::Chords || readBrackets(line.chars);
        if (hasChords)
            continue;
        if (verdict == LineVerdict::Lyrics)
            title = PlacedLine{start, line};
    }
    return title;
}

bool isAt(TextView line, std::size_t at, TextView chars) {
    return at < line.size() && contains(chars, line[at]);
}

// Takes away what is left of a statement that stood in [begin, end): brackets around nothing, and
// what parted it from its neighbours.
void closeGap(Text& line, std::size_t begin, std::size_t end) {
    std::size_t blanks = 0;
    const auto trim = [&] {
        const std::size_t before = begin;
        while (begin > 0 && isAnyBlank(line[begin - 1]))
            --begin;
        blanks = before - begin;
        end = behindBlanks(line, end);
    };
    trim();
    while (begin > 0 && isAt(line, end, kClosing) &&
           kClosing.find(line[end]) == kOpening.find(line[begin - 1])) {
        --begin;
        ++end;
        trim();
    }
    const bool isFirst = begin == 0 || contains(kOpening, line[begin - 1]);
    const TextView parting = isFirst ? TextView(u":.,;|\u2022\u00B7-\u2013\u2014/") : TextView();
    bool isLast = end == line.size() || contains(kClosing, line[end]);
    for (; !isLast && isAt(line, end, parting); isLast = end == line.size())
        end = behindBlanks(line, end + 1);
    const bool isParted = contains(kParting, line[end]) || isLast;
    while (begin > 0 && isParted &&
           (contains(kParting, line[begin - 1]) || line[begin - 1] == u'/')) {
        --begin;
        trim();
    }
    const bool keepsBlank = !isFirst && !isLast && !contains(u",;:.", line[end]);
    const std::size_t kept = keepsBlank ? std::max<std::size_t>(blanks, 1) : 0;
    line.replace(begin, end - begin, kept, u' ');
}

// The line as it is without the statement: empty where nothing else is in it.
Text withoutCapo(TextView line, const CapoLine& capo) {
    Text rest(line);
    if (capo.soundsIn.length > 0)
        rest.erase(capo.soundsIn.column, capo.soundsIn.length);
    closeGap(rest, capo.statement.column, capo.statement.column + capo.statement.length);
    const auto directive = readDirective(rest);
    const bool isEmpty = (directive && trimmed(directive->value).empty()) ||
                         trimmed(rest).find_first_not_of(u"{}()[],;.# ") == Text::npos;
    return isEmpty ? Text() : rest;
}

bool isInParentheses(TextView line, std::size_t at) {
    const TextView before = line.substr(0, at);
    return std::count(before.begin(), before.end(), u'(') >
               std::count(before.begin(), before.end(), u')') ||
           std::count(before.begin(), before.end(), u'[') >
               std::count(before.begin(), before.end(), u']');
}

// "5th" for "2nd", "5a" for "2da".
Text fretText(int fret, TextView ordinal) {
    const Text letters = unicodeLowerCase(ordinal);
    if (isAmong(kEnglishOrdinals, letters)) {
        const TextView suffix = fret == 1 ? u"st" : fret == 2 ? u"nd" : fret == 3 ? u"rd" : u"th";
        return decimal(fret).append(suffix);
    }
    const bool isFeminine = !letters.empty() && letters.back() == u'a';
    const bool isMasculine = letters == u"er" || (!letters.empty() && letters.back() == u'o');
    const bool isOther = letters.size() > 1;
    return decimal(fret).append(isOther && isFeminine    ? TextView(u"a")
                                : isOther && isMasculine ? TextView(u"o")
                                : isOther                ? TextView(u"e")
                                                         : ordinal);
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
    const auto place = lineOf(song, capo.line);
    const std::size_t start = place.start;
    const TextLine& line = place.line;
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
    const auto directive = readDirective(line.chars);
    const bool mayTell = !directive || directive->name.starts_with(u"comment");
    const ColumnRange number{capo.number.column, capo.number.length + capo.ordinal.length};
    const TextView ordinal = line.chars.substr(capo.ordinal.column, capo.ordinal.length);
    std::vector<SongEdit> edits{{at(number), number.length, fretText(fret, ordinal)}};
    Text behind;
    if (!sounds.empty() && mayTell)
        behind = isInParentheses(line.chars, capo.statement.column)
                     ? Text(u", sounds in ").append(sounds)
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
    if (const auto capo = findCapo(song); capo && capo->isPlain)
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
