#include "chords/LineVerdict.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "base/LetterCase.h"
#include "chords/CellWidth.h"
#include "chords/ChordSpelling.h"
#include "chords/RowMarks.h"
#include "chords/RowSymbols.h"

namespace melvorin {
namespace {

constexpr std::size_t kLongestLabel = 60;

// ---- Directives ------------------------------------------------------------------------------

constexpr std::pair<TextView, TextView> kShortNames[] = {
    {u"t", u"title"},
    {u"st", u"subtitle"},
    {u"c", u"comment"},
    {u"ci", u"comment_italic"},
    {u"cb", u"comment_box"},
    {u"soc", u"start_of_chorus"},
    {u"eoc", u"end_of_chorus"},
    {u"sov", u"start_of_verse"},
    {u"eov", u"end_of_verse"},
    {u"sob", u"start_of_bridge"},
    {u"eob", u"end_of_bridge"},
    {u"sot", u"start_of_tab"},
    {u"eot", u"end_of_tab"},
    {u"sog", u"start_of_grid"},
    {u"eog", u"end_of_grid"},
    {u"ns", u"new_song"},
    {u"np", u"new_page"},
    {u"npp", u"new_physical_page"},
    {u"colb", u"column_break"},
    {u"col", u"columns"},
    {u"g", u"grid"},
    {u"ng", u"no_grid"},
};
constexpr TextView kKnownNames[] = {
    u"artist",    u"composer",  u"lyricist",   u"copyright", u"album",     u"year",
    u"key",       u"time",      u"tempo",      u"duration",  u"capo",      u"meta",
    u"chorus",    u"highlight", u"define",     u"chord",     u"transpose", u"image",
    u"sorttitle", u"tag",       u"arranger",   u"chordfont", u"chordsize", u"chordcolour",
    u"textfont",  u"textsize",  u"textcolour", u"tabfont",   u"tabsize",   u"tabcolour",
    u"titles",    u"pagetype",  u"diagrams"};

// "{meta: artist Anonymous}" is "{artist: Anonymous}"; what is no directive stays a meta.
void readMeta(Directive& directive) {
    const std::size_t end = std::min(directive.value.find(u' '), directive.value.size());
    const Directive named{unicodeLowerCase(directive.value.substr(0, end)),
                          trimmed(directive.value.substr(end))};
    const bool isKnown = named.name == u"title" || named.name == u"subtitle" ||
                         std::find(std::begin(kKnownNames), std::end(kKnownNames), named.name) !=
                             std::end(kKnownNames);
    if (isKnown && named.name != u"meta")
        directive = named;
}

// ---- Sections --------------------------------------------------------------------------------

constexpr TextView kSectionWords[] = {u"intro",        u"introduction",  u"verse",
                                      u"chorus",       u"pre-chorus",    u"prechorus",
                                      u"pre chorus",   u"post-chorus",   u"bridge",
                                      u"outro",        u"ending",        u"end",
                                      u"interlude",    u"instrumental",  u"solo",
                                      u"guitar solo",  u"coda",          u"tag",
                                      u"refrain",      u"hook",          u"break",
                                      u"breakdown",    u"riff",          u"turnaround",
                                      u"vamp",         u"stanza",        u"strophe",
                                      u"middle eight", u"final",         u"finale",
                                      u"repeat",       u"repeat chorus", u"introdu\u00E7\u00E3o",
                                      u"refr\u00E3o",  u"estrofe",       u"ponte",
                                      u"parte",        u"verso",         u"coro",
                                      u"estribillo",   u"puente",        u"pr\u00E9-refr\u00E3o",
                                      u"couplet",      u"pont",          u"vers",
                                      u"strofa",       u"ritornello",    u"fine"};
// Labels whose note or number tells of the song and is no chord of it.
constexpr TextView kFactWords[] = {
    u"key",   u"capo",  u"tuning", u"tempo", u"time", u"tom",   u"tone",     u"by",    u"words",
    u"music", u"bpm",   u"artist", u"title", u"tune", u"album", u"composer", u"musik", u"text",
    u"texte", u"worte", u"satz",   u"arr",   u"arr.", u"foto",  u"photo"};

// "2", "II", "A", "(x2)", "2x": what may follow the word of a section.
bool isLabelSuffix(TextView text) {
    text = trimmed(text);
    if (text.size() > 2 && text.front() == u'(' && text.back() == u')')
        text = text.substr(1, text.size() - 2);
    return text.size() <= 6 && std::all_of(text.begin(), text.end(), [](char16_t c) {
               return isDigit(c) || c == u'I' || c == u'V' || c == u'A' || c == u'B' || c == u'x' ||
                      c == u'X' || c == u' ' || c == u'#' || c == u'.';
           });
}

bool isSectionName(TextView text) {
    // The longest word with the longest of what may follow it.
    constexpr std::size_t longest = 24;
    text = trimmed(text);
    if (text.empty() || text.size() > longest)
        return false;
    const Text name = unicodeLowerCase(text);
    return std::any_of(std::begin(kSectionWords), std::end(kSectionWords), [&](TextView word) {
        return name.starts_with(word) &&
               isLabelSuffix(text.substr(std::min(word.size(), text.size())));
    });
}

bool isFactName(TextView text) {
    const Text name = unicodeLowerCase(trimmed(text));
    return std::any_of(std::begin(kFactWords), std::end(kFactWords),
                       [&](TextView word) { return name == word; });
}

std::size_t behindBlanks(TextView line, std::size_t at) {
    while (at < line.size() && isAnyBlank(line[at]))
        ++at;
    return at;
}

bool hasWords(TextView text, const ChordReading& reading, RowMemory* memory) {
    const std::vector<RowItem> row = readRow(text, 0, 0, reading, memory);
    return !isRowOfChords(row) && std::any_of(row.begin(), row.end(), [](const RowItem& item) {
        return item.kind == RowItemKind::Word || item.kind == RowItemKind::Remark;
    });
}

// What may be a remark among words as well as the label of a section.
bool isShortPart(TextView text) {
    const Text name = unicodeLowerCase(trimmed(text));
    return name == u"riff" || name == u"coda" || name == u"fine" || name == u"hook" ||
           name == u"tag";
}

// "[Verse 1]" or "(Chorus)" with the colon that may follow. Where every bracket of the song is a
// chord, words in front of others are none.
std::size_t enclosedLabel(TextView line, std::size_t begin, const ChordReading& reading,
                          RowMemory* memory) {
    const char16_t closer = line[begin] == u'[' ? u']' : line[begin] == u'(' ? u')' : u'\u3011';
    const char16_t ends[] = {line[begin], closer};
    const std::size_t close = line.substr(0, begin + kLongestBracket)
                                  .find_first_of(TextView(ends, std::size(ends)), begin + 1);
    if (close == TextView::npos || line[close] != closer)
        return 0;
    const TextView inside = line.substr(begin + 1, close - begin - 1);
    const std::size_t end = close + (line.substr(close + 1).starts_with(u':') ? 2 : 1);
    // "[riff]la" is a remark over its syllable.
    const bool isOverSyllable = reading.everyBracket && end < line.size() &&
                                line[end - 1] != u':' && !isAnyBlank(line[end]) &&
                                isShortPart(inside);
    if (closer == u')' || isSectionName(inside))
        return isSectionName(inside) && !isOverSyllable ? end : 0;
    const bool mayBe =
        !inside.empty() && inside[0] != u'*' &&
        (!reading.everyBracket || (end == line.size() && !mayBeRefused(trimmed(inside), reading)));
    return mayBe && hasWords(inside, reading, memory) ? end : 0;
}

// At least two chords that are no words, and nothing else.
bool isSureRow(TextView text, const ChordReading& reading, RowMemory* memory) {
    if (isClearlyWords(text, reading))
        return false;
    const std::vector<RowItem> row = readRow(text, 0, 0, reading, memory);
    const auto isSure = [](const RowItem& item) {
        return item.kind == RowItemKind::Chord && item.wordToo == WordToo::No;
    };
    return std::count_if(row.begin(), row.end(), isSure) > 1 && isRowOfChords(row);
}

// "Solo Am G", "Refrain - Am G": a label without a colon, and at least two chords.
std::size_t labelOfRow(TextView line, std::size_t begin, const ChordReading& reading,
                       RowMemory* memory) {
    std::size_t end = begin;
    while (end < line.size() && !isAnyBlank(line[end]) && end - begin <= kLongestLabel)
        ++end;
    const std::size_t next = behindBlanks(line, end);
    if (next == end || next == line.size())
        return 0;
    if (isSectionName(line.substr(begin, end - begin))) {
        // "Verse 2  Am G": the number is the label's.
        if (next + 1 < line.size() && isDigit(line[next]) && isAnyBlank(line[next + 1]))
            end = next + 1;
        return isSureRow(line.substr(end), reading, memory) ? end : 0;
    }
    constexpr TextView dashes = u"-\u2013\u2014";
    const std::size_t dash = line.substr(0, begin + kLongestLabel).find_first_of(dashes, next);
    const bool isApart = dash != TextView::npos && dash + 1 < line.size() &&
                         isAnyBlank(line[dash - 1]) && isAnyBlank(line[dash + 1]);
    const bool isLabel = isApart && isSureRow(line.substr(dash + 1), reading, memory) &&
                         hasWords(line.substr(begin, dash - begin), reading, memory);
    return isLabel ? dash + 1 : 0;
}

// The letter of a part: "A:", and "A)" alone on a line.
bool isPartLetter(TextView text) {
    return text.size() == 1 && text[0] >= u'A' && text[0] <= u'H';
}

bool isLonePartLetter(TextView text) {
    text = trimmedRight(text);
    return text.size() == 2 && (text[1] == u':' || text[1] == u')') &&
           isPartLetter(text.substr(0, 1));
}

}  // namespace

TextView nameOf(LineVerdict verdict) {
    switch (verdict) {
        case LineVerdict::Chords:
            return u"chords";
        case LineVerdict::Lyrics:
            return u"lyrics";
        case LineVerdict::Section:
            return u"section";
        case LineVerdict::Tablature:
            return u"tablature";
        case LineVerdict::Directive:
            break;
    }
    return u"directive";
}

std::optional<Directive> readDirective(TextView line) {
    line = trimmed(line);
    if (line.size() < 3 || line.front() != u'{' || line.back() != u'}')
        return std::nullopt;
    const TextView inside = line.substr(1, line.size() - 2);
    const std::size_t nameEnd = inside.find_first_of(u": ");
    Directive directive{unicodeLowerCase(trimmed(inside.substr(0, nameEnd))), {}};
    if (directive.name.empty())
        return std::nullopt;
    if (nameEnd != TextView::npos) {
        directive.value = inside.substr(nameEnd + 1);
        if (directive.value.starts_with(u' '))
            directive.value.remove_prefix(1);
        directive.value = trimmedRight(directive.value);
    }
    for (const auto& [name, longName] : kShortNames) {
        if (directive.name == name)
            directive.name = longName;
    }
    if (directive.name == u"meta")
        readMeta(directive);
    return directive;
}

bool isKnownDirective(const Directive& directive) {
    const auto isName = [&](TextView name) { return directive.name == name; };
    return directive.name.starts_with(u"start_of_") || directive.name.starts_with(u"end_of_") ||
           directive.name.starts_with(u"x_") || directive.name == u"#" ||
           std::any_of(std::begin(kKnownNames), std::end(kKnownNames), isName) ||
           std::any_of(std::begin(kShortNames), std::end(kShortNames),
                       [&](const auto& names) { return isName(names.second); });
}

std::size_t sectionLabelLength(TextView line, const ChordReading& reading, RowMemory* memory) {
    const std::size_t begin = behindBlanks(line, 0);
    if (begin == line.size())
        return 0;
    if (line[begin] == u'[' || line[begin] == u'(' || line[begin] == u'\u3010')
        return enclosedLabel(line, begin, reading, memory);
    if (isSectionName(line.substr(begin)) || isLonePartLetter(line.substr(begin)))
        return trimmedRight(line).size();
    const std::size_t colon =
        line.substr(0, begin + kLongestLabel).find_first_of(u":\uFF1A", begin);
    if (colon == TextView::npos)
        return labelOfRow(line, begin, reading, memory);
    const TextView name = line.substr(begin, colon - begin);
    if (isFactName(name))
        return 0;
    if (isSectionName(name))
        return colon + 1;
    // Any word may be a label where nothing but chords follows.
    const TextView behind = line.substr(colon + 1);
    // "x2: G C"
    const bool isPart =
        (isPartLetter(name) || isRepeat(name)) && !behind.empty() && isAnyBlank(behind[0]);
    const bool label = !isClearlyWords(behind, reading) &&
                       (isPart || hasWords(name, reading, memory)) &&
                       isRowOfChords(readRow(behind, 0, 0, reading, memory));
    return label ? colon + 1 : 0;
}

bool isDoubtfulLabel(TextView line, std::size_t label, const ChordReading& reading,
                     RowMemory* memory) {
    TextView name = trimmed(line.substr(0, label));
    if (name.empty() || name.front() == u'[' || name.front() == u'(' || name.front() == u'\u3010')
        return false;
    const bool isPart =
        isPartLetter(name.substr(0, name.size() - 1)) || isRepeat(name.substr(0, name.size() - 1));
    name = name.substr(0, name.find_last_not_of(u" :-\uFF1A\u2013\u2014") + 1);
    if (isSectionName(name))
        return false;
    const std::vector<RowItem> row = readRow(line.substr(label), 0, 0, reading, memory);
    const auto isSign = [](const RowItem& item) {
        return item.kind == RowItemKind::Separator ||
               (item.kind == RowItemKind::Chord && item.shown.size() == 1);
    };
    const bool isList = std::all_of(row.begin(), row.end(), isSign);
    const bool isSpaced = std::none_of(row.begin(), row.end(), [](const RowItem& item) {
        return item.kind == RowItemKind::Separator;
    });
    return !row.empty() && isList && !(isPart && isSpaced && row.size() > 1);
}

bool statesFact(TextView line) {
    const std::size_t colon = line.find(u':');
    return colon != TextView::npos && isFactName(line.substr(0, colon));
}

namespace {

// Strings of a tablature may be drawn with dashes of any length, strokes or equals signs.
constexpr TextView kStrokes =
    u"-=\u2010\u2011\u2012\u2013\u2014\u2015\u2212\u2500\u2501\u2504\u2505\u2508\u2509\u254C"
    u"\u254D\u2550";
constexpr TextView kTabBars =
    u"|\u00A6\u2016\u2502\u2503\u2506\u2507\u250A\u250B\u251C\u2520\u2523\u2524\u2528\u252B"
    u"\u253C\u2542\u254B\u254E\u254F\u2551\u255E\u255F\u2560\u2561\u2562\u2563\u256A\u256B"
    u"\u256C";
constexpr TextView kFretSigns = u"0123456789hpbrtvxsHPBRX/\\~()<>^*:.o ";

// "E", "Eb", "d#": what a string may be tuned to.
bool isStringName(TextView name) {
    const bool hasSign = name.size() == 2 && (name[1] == u'#' || name[1] == u'b');
    return (name.size() == 1 || hasSign) &&
           TextView(u"ABCDEFGHabcdefgh").find(name[0]) != TextView::npos;
}

}  // namespace

// Frets close by each other, and strokes between them.
bool mayBeDenseString(TextView line) {
    line = trimmed(line);
    std::size_t dashes = 0;
    bool hasFret = false;
    for (const char16_t c : line) {
        const bool isStroke = isOneOf(kStrokes, c);
        if (isAnyBlank(c) || (!isStroke && !isOneOf(kTabBars, c) && !isOneOf(kFretSigns, c)))
            return false;
        dashes += isStroke ? 1U : 0U;
        hasFret = hasFret || isDigit(c);
    }
    return hasFret && dashes > 2 && (isOneOf(kStrokes, line[0]) || isOneOf(kTabBars, line[0]));
}

bool isTablature(TextView line) {
    constexpr std::size_t kLongestName = 3;
    const auto isIn = [](TextView set) {
        return [set](char16_t c) { return set.find(c) != TextView::npos; };
    };
    line = trimmed(line);
    // The name of the string, and what may part it from the string.
    std::size_t first = 0;
    while (first < line.size() && first <= kLongestName && !isIn(kStrokes)(line[first]) &&
           !isIn(kTabBars)(line[first]))
        ++first;
    if (first > kLongestName || first == line.size())
        return false;
    if (isIn(kTabBars)(line[first]) && isStringName(line.substr(0, first)) &&
        mayBeDenseString(line.substr(first)))
        return true;
    // The frets and signs of a string; the last words of a line may be a remark.
    std::size_t end = first;
    std::size_t dashes = 0;
    std::size_t lastStroke = TextView::npos;
    bool hasPair = false;
    bool isDrawn = false;    // with something else than hyphens
    std::size_t length = 0;  // to the last sign, but for the bars
    std::size_t barsSoFar = 0;
    for (; end < line.size(); ++end) {
        const char16_t c = line[end];
        const bool stroke = isIn(kStrokes)(c);
        const bool bar = isIn(kTabBars)(c);
        if (!stroke && !bar && !isIn(kFretSigns)(c))
            break;
        barsSoFar += bar ? 1U : 0U;
        hasPair = hasPair || (stroke && lastStroke + 1 == end && end > first);
        isDrawn = isDrawn || (stroke && c != u'-');
        lastStroke = stroke ? end : lastStroke;
        dashes += stroke ? 1U : 0U;
        length = isAnyBlank(c) ? length : end + 1 - first - barsSoFar;
    }
    const bool isRuled = isDrawn && line.find_first_of(kTabBars) == TextView::npos &&
                         std::none_of(line.begin(), line.end(), isDigit);
    return hasPair && dashes * 2 >= length && dashes >= 4 && !isRuled &&
           (end == line.size() || end > 16);
}

LineVerdict judgeLine(TextView line, const ChordReading& reading, RowMemory* memory) {
    const TextView text = trimmed(line);
    if (text.empty())
        return LineVerdict::Lyrics;
    if (readDirective(text))
        return LineVerdict::Directive;
    if (isTablature(text))
        return LineVerdict::Tablature;
    if (sectionLabelLength(line, reading, memory) > 0)
        return LineVerdict::Section;
    if (const auto bracketed = readBrackets(line, 0, 0, reading, memory))
        return bracketed->lyrics.empty() ? LineVerdict::Chords : LineVerdict::Lyrics;
    if (isClearlyWords(line, reading))
        return LineVerdict::Lyrics;
    const std::vector<RowItem> row = readRow(line, 0, 0, reading, memory);
    if (isRowOfChords(row))
        return LineVerdict::Chords;
    const bool repeat = row.size() == 1 && row[0].kind == RowItemKind::Repeat;
    return repeat ? LineVerdict::Section : LineVerdict::Lyrics;
}

}  // namespace melvorin
