#include "chords/Directives.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "base/LetterCase.h"
#include "chords/CellWidth.h"
#include "chords/NoteNames.h"
#include "chords/SongImport.h"

namespace melvorin {
namespace {

struct SectionName {
    TextView section;
    TextView word;  // in lower case
};
constexpr SectionName kSectionNames[] = {
    {u"chorus", u"chorus"},       {u"verse", u"verse"},      {u"bridge", u"bridge"},
    {u"chorus", u"refrain"},      {u"chorus", u"coro"},      {u"chorus", u"refr\u00E3o"},
    {u"chorus", u"estribillo"},   {u"verse", u"strophe"},    {u"verse", u"stanza"},
    {u"verse", u"verso"},         {u"verse", u"couplet"},    {u"verse", u"strofa"},
    {u"verse", u"estrofe"},       {u"bridge", u"ponte"},     {u"bridge", u"puente"},
    {u"bridge", u"middle eight"}, {u"chorus", u"ritornello"}};
constexpr std::pair<TextView, TextView> kUsualLabels[] = {
    {u"chorus", u"Chorus"}, {u"verse", u"Verse"}, {u"bridge", u"Bridge"}};
constexpr TextView kNamesDirective = u"x_melvorin_names";
constexpr std::pair<Naming, TextView> kNamings[] = {{Naming::German, u"german"},
                                                    {Naming::Solfege, u"solfege"}};
constexpr TextView kStart = u"start_of_";

struct Fact {
    TextView name;
    TextView label;
    enum class Value { Words, Number, Note } value;  // below the first chords
};
using Value = Fact::Value;
constexpr Fact kFacts[] = {
    {u"artist", u"Artist", Value::Words},       {u"composer", u"Composer", Value::Words},
    {u"lyricist", u"Words", Value::Words},      {u"arranger", u"Arranger", Value::Words},
    {u"copyright", u"Copyright", Value::Words}, {u"album", u"Album", Value::Words},
    {u"year", u"Year", Value::Number},          {u"key", u"Key", Value::Note},
    {u"time", u"Time", Value::Number},          {u"tempo", u"Tempo", Value::Number},
    {u"duration", u"Duration", Value::Number},  {u"capo", u"Capo", Value::Number}};

struct Mark {
    TextView name;
    TextView before;
    TextView behind;
};
constexpr Mark kMarks[] = {{u"comment", u"* ", u""},
                           {u"highlight", u"** ", u""},
                           {u"comment_italic", u"~ ", u""},
                           {u"comment_box", u"| ", u" |"}};

// The label of an environment: "{start_of_verse: Verse 1}" or "{start_of_verse label="Verse 1"}".
TextView environmentLabel(TextView value) {
    constexpr TextView attribute = u"label=\"";
    const std::size_t at = value.find(attribute);
    if (at == TextView::npos)
        return value;
    value.remove_prefix(at + attribute.size());
    return value.substr(0, value.find(u'"'));
}

// Where it can stand in a directive as it is.
bool isPlainValue(TextView value) {
    return !value.empty() && trimmed(value) == value &&
           value.find_first_of(u"{}=\"") == TextView::npos;
}

TextView usualLabel(TextView section) {
    for (const auto& [name, label] : kUsualLabels) {
        if (name == section)
            return label;
    }
    return {};
}

// "G", "F#m", "Bb minor": short, and a note first.
bool isKeyValue(TextView value) {
    constexpr std::size_t longest = 12;
    return value.size() <= longest && readNoteName(value, {}).has_value();
}

bool mayStandBelowChords(const Fact& fact, TextView value) {
    return (fact.value == Value::Number && isDigit(value[0])) ||
           (fact.value == Value::Note && isKeyValue(value));
}

bool isOrdinaryText(TextView text) {
    return trimmed(text) == text && withOrdinaryBlanks(text) == text;
}

// Where the text is nothing but itself to an import. For all other lines an export has only
// comments.
bool standsAsWords(TextView text) {
    if (text.find_first_of(u"[]{}") != TextView::npos || text.starts_with(u'#'))
        return false;
    const SongImport song = importSong(text);
    return song.source.size() == 1 && song.source[0].verdict == LineVerdict::Lyrics &&
           song.lines.size() == 1 && trimmedRight(song.lines[0].text) == trimmedRight(text);
}

bool holdsChords(TextView text) {
    const SongImport song = importSong(text);
    return !song.chords.empty() ||
           std::any_of(song.source.begin(), song.source.end(),
                       [](const SourceLine& line) { return line.verdict == LineVerdict::Chords; });
}

bool isRowInSomeSong(TextView text) {
    constexpr ChordReading small{Naming::Letters, true, false, false};
    constexpr ChordReading syllables{Naming::Solfege, false, false, false};
    return (mayBeSmallRow(text) && mayBeRowOfChords(readRow(text, 0, 0, small))) ||
           (mayBeSyllableRow(text) && mayBeRowOfChords(readRow(text, 0, 0, syllables)));
}

}  // namespace

std::optional<Text> shownFact(const Directive& directive, bool isHead) {
    for (const Fact& fact : kFacts) {
        if (directive.name != fact.name || !isPlainValue(directive.value) ||
            (!isHead && !mayStandBelowChords(fact, directive.value)))
            continue;
        Text line = Text(fact.label).append(u": ").append(directive.value);
        if (isOrdinaryText(line) && line.find(u'[') == Text::npos &&
            judgeLine(line) == LineVerdict::Lyrics)
            return line;
    }
    return std::nullopt;
}

std::optional<Text> factDirective(TextView line, bool isHead) {
    const std::size_t colon = line.find(u": ");
    if (colon == TextView::npos)
        return std::nullopt;
    for (const Fact& fact : kFacts) {
        if (line.substr(0, colon) != fact.label)
            continue;
        const TextView value = line.substr(colon + 2);
        if (shownFact({Text(fact.name), value}, isHead) == line)
            return Text(u"{").append(fact.name).append(u": ").append(value).append(u"}");
    }
    return std::nullopt;
}

std::optional<Text> shownRemark(const Directive& directive) {
    const TextView text = directive.value;
    const auto mark = std::find_if(std::begin(kMarks), std::end(kMarks),
                                   [&](const Mark& m) { return m.name == directive.name; });
    if (mark == std::end(kMarks) || trimmed(text).empty())
        return std::nullopt;
    const bool isComment = mark == std::begin(kMarks);
    if (isComment && !standsAsWords(text)) {
        // Chords would be played, and go back as such.
        const bool isPlayed = !text.starts_with(u'#') && holdsChords(text);
        return isPlayed ? std::nullopt : std::optional(Text(text));
    }
    // Between bars there are chords, in some song.
    const bool isBarred = mark->behind.ends_with(u'|') && isRowInSomeSong(text);
    if (isBarred || text.find_first_of(u"[]{}") != TextView::npos || !isOrdinaryText(text) ||
        text.starts_with(u'*'))
        return std::nullopt;
    Text line = Text(mark->before).append(text).append(mark->behind);
    return judgeLine(line) == LineVerdict::Lyrics ? std::optional(std::move(line)) : std::nullopt;
}

std::optional<Text> remarkDirective(TextView line) {
    for (const Mark& mark : kMarks) {
        if (!line.starts_with(mark.before) || !line.ends_with(mark.behind) ||
            line.size() <= mark.before.size() + mark.behind.size())
            continue;
        const TextView text =
            line.substr(mark.before.size(), line.size() - mark.before.size() - mark.behind.size());
        if (shownRemark({Text(mark.name), text}) == line)
            return Text(u"{").append(mark.name).append(u": ").append(text).append(u"}");
    }
    return std::nullopt;
}

Text shownHashRemark(TextView line) {
    const TextView text = trimmed(line.substr(1));
    return Text(text.empty() ? u"{#" : u"{# ").append(text).append(u"}");
}

std::optional<Text> hashRemark(const Directive& directive) {
    if (directive.name != u"#")
        return std::nullopt;
    return Text(directive.value.empty() ? u"#" : u"# ").append(directive.value);
}

std::optional<TextView> sectionOfLabel(TextView label) {
    constexpr std::size_t longest = 60;
    if (label.size() > longest || !isPlainValue(label))
        return std::nullopt;
    const Text small = unicodeLowerCase(label);
    for (const auto& [section, word] : kSectionNames) {
        const bool isWord = small.size() == word.size() ||
                            (small.size() > word.size() &&
                             TextView(u" :0123456789").find(small[word.size()]) != TextView::npos);
        if (small.starts_with(word) && isWord)
            return section;
    }
    return std::nullopt;
}

std::optional<TextView> sectionOfDirective(const Directive& directive) {
    const bool starts = directive.name.starts_with(kStart);
    const TextView name = TextView(directive.name).substr(starts ? kStart.size() : 0);
    for (const auto& [section, label] : kUsualLabels) {
        if (name == section && (starts || section == u"chorus"))
            return section;
    }
    return std::nullopt;
}

std::optional<Text> shownSection(const Directive& directive) {
    const auto section = sectionOfDirective(directive);
    if (!section)
        return std::nullopt;
    const TextView given = environmentLabel(directive.value);
    const TextView usual = usualLabel(*section);
    Text label(given);
    if (given.empty())
        label = usual;
    else if (sectionOfLabel(given) != section)
        label = Text(usual).append(u": ").append(given);
    const bool isLabel =
        sectionOfLabel(label) == section && isOrdinaryText(label) &&
        label.find_first_of(u"[]") == Text::npos && judgeLine(label) == LineVerdict::Section &&
        !isRowOfChords(
            readRow(TextView(label).substr(std::min(label.size(), sectionLabelLength(label)))));
    return isLabel ? std::optional(std::move(label)) : std::nullopt;
}

Text sectionDirective(TextView section, TextView label, bool isRepeated) {
    Text directive = Text(u"{").append(isRepeated ? u"" : kStart).append(section);
    const TextView usual = usualLabel(section);
    if (usual == label)
        return directive.append(u"}");
    const Text called = Text(usual).append(u": ");
    const bool isCalled = label.starts_with(called) && label.size() > called.size() &&
                          sectionOfLabel(label.substr(called.size())) != section;
    return directive.append(u": ").append(label.substr(isCalled ? called.size() : 0)).append(u"}");
}

std::optional<Text> namingDirective(Naming naming) {
    for (const auto& [value, name] : kNamings) {
        if (value == naming)
            return Text(u"{").append(kNamesDirective).append(u": ").append(name).append(u"}");
    }
    return std::nullopt;
}

std::optional<Naming> statedNaming(TextView line) {
    if (line.find(kNamesDirective) == TextView::npos)
        return std::nullopt;
    const auto directive = readDirective(line);
    if (!directive || directive->name != kNamesDirective)
        return std::nullopt;
    for (const auto& [value, name] : kNamings) {
        if (asciiLowerCase(directive->value) == name)
            return value;
    }
    return std::nullopt;
}

bool isAlwaysKept(const Directive& directive) {
    const TextView name = directive.name;
    if (name == u"title" || name == u"subtitle" || sectionOfDirective(directive))
        return false;
    if (name.starts_with(u"end_of_"))
        return name != u"end_of_tab" &&
               !sectionOfDirective({Text(kStart).append(name.substr(7)), {}});
    return name != u"start_of_tab" &&
           std::none_of(std::begin(kMarks), std::end(kMarks),
                        [&](const Mark& mark) { return mark.name == name; }) &&
           std::none_of(std::begin(kFacts), std::end(kFacts),
                        [&](const Fact& fact) { return fact.name == name; });
}

std::optional<Text> wordsOfDirective(TextView line) {
    const auto directive = readDirective(line);
    if (!directive)
        return line.starts_with(u'#') ? std::nullopt : std::optional(Text(line));
    const TextView name = directive->name;
    if (auto fact = shownFact(*directive, true))
        return fact;
    const bool isText = name == u"title" || name == u"subtitle" || name == u"meta" ||
                        std::any_of(std::begin(kMarks), std::end(kMarks),
                                    [&](const Mark& mark) { return mark.name == name; });
    if (isText)
        return Text(directive->value);
    if (sectionOfDirective(*directive) || name.starts_with(kStart))
        return directive->value.empty() ? std::nullopt
                                        : std::optional(Text(environmentLabel(directive->value)));
    return std::nullopt;
}

bool mayBeTitle(TextView text) {
    return !text.empty() && isOrdinaryText(text) && text.find_first_of(u"[]{}") == TextView::npos &&
           !text.starts_with(u'#') && judgeLine(text) == LineVerdict::Lyrics &&
           !factDirective(text, true) && !remarkDirective(text);
}

}  // namespace melvorin
