#include "chords/KeyStatement.h"

#include <algorithm>
#include <iterator>

#include "base/LetterCase.h"
#include "chords/CellWidth.h"
#include "chords/ChordSpelling.h"
#include "chords/Note.h"

namespace melvorin {
namespace {

// A longer line is no heading.
constexpr std::size_t kLongestLine = 200;

constexpr TextView kKeyWords[] = {
    u"key",
    u"tom",
    u"tone",
    u"tonart",
    u"tonalidad",
    u"tonalidade",
    u"tonalit\u00E9",
    u"tonalit\u00E0",
    u"tonacja",
    u"t\u00F3nina",
    u"toonsoort",
    u"toneart",
    u"\u0442\u043E\u043D\u0430\u043B\u044C\u043D\u043E\u0441\u0442\u044C"};

bool isLetter(char16_t c) {
    return unicodeLowerCase(c) != unicodeUpperCase(c);
}

std::size_t behindBlanks(TextView line, std::size_t at) {
    while (at < line.size() && isAnyBlank(line[at]))
        ++at;
    return at;
}

// Behind the word of a key: a colon or "=", in English also "of". Where its value begins, or the
// end of the line.
std::size_t valueBehind(TextView line, std::size_t at) {
    const std::size_t sign = behindBlanks(line, at);
    if (sign < line.size() && (line[sign] == u':' || line[sign] == u'='))
        return behindBlanks(line, sign + 1);
    return sign > at && line.substr(sign).starts_with(u"of ") ? behindBlanks(line, sign + 3)
                                                              : line.size();
}

// "-Dur", " moll".
bool startsWithMode(TextView lower) {
    const std::size_t mode = lower.find_first_not_of(u"- ");
    return mode != TextView::npos &&
           (lower.substr(mode).starts_with(u"dur") || lower.substr(mode).starts_with(u"moll"));
}

// Units of the note that `value` begins with, 0 where it is a word. `lower` is the same in small
// letters.
std::size_t noteLength(TextView value, TextView lower) {
    if (lower.empty() || lower[0] < u'a' || lower[0] > u'h')
        return 0;
    // German names: "Fis-Dur", "es-moll". Small letters are notes only so.
    for (const TextView accidental : {u"is", u"es", u"s", u""}) {
        if (lower.substr(1).starts_with(accidental) &&
            startsWithMode(lower.substr(1 + accidental.size())))
            return 1 + accidental.size();
    }
    std::size_t length = 1;
    while (length < value.size() && isAccidental(usualNote(value.substr(length, 1))[0]))
        ++length;
    const TextView behind = value.substr(length);
    const bool ends = behind.empty() || !isLetter(behind[0]) || behind.starts_with(u"maj") ||
                      (behind[0] == u'm' &&
                       (behind.size() == 1 || !isLetter(behind[1]) || behind.starts_with(u"min")));
    return value[0] <= u'H' && ends ? length : 0;
}

}  // namespace

std::optional<ColumnRange> statedKey(TextView line) {
    const bool hasSign =
        line.find_first_of(u":=") != TextView::npos || line.find(u" of ") != TextView::npos;
    if (line.size() > kLongestLine || !hasSign)
        return std::nullopt;
    const Text lower = unicodeLowerCase(line);
    for (const TextView word : kKeyWords) {
        const std::size_t at = lower.find(word);
        if (at == Text::npos || (at > 0 && isLetter(lower[at - 1])))
            continue;
        const std::size_t value = valueBehind(lower, at + word.size());
        const std::size_t length = noteLength(line.substr(value), TextView(lower).substr(value));
        if (length > 0)
            return ColumnRange{value, length};
    }
    return std::nullopt;
}

}  // namespace melvorin
