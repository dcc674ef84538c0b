#include "chords/LineVerdict.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "base/LetterCase.h"
#include "chords/CellWidth.h"
#include "chords/ChordSpelling.h"

namespace melvorin {
namespace {

// A bracket that is not closed within so many characters is text; so the search for its partner
// stays short on a line of nothing but brackets.
constexpr std::size_t kLongestBracket = 80;
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
constexpr TextView kFactWords[] = {u"key",   u"capo", u"tuning", u"tempo",   u"time", u"tom",
                                   u"tone",  u"by",   u"words",  u"music",   u"bpm",  u"artist",
                                   u"title", u"tune", u"album",  u"composer"};

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
    const Text name = unicodeLowerCase(trimmed(text.substr(0, kLongestLabel + 1)));
    if (text.size() > kLongestLabel)
        return false;
    return std::any_of(std::begin(kSectionWords), std::end(kSectionWords), [&](TextView word) {
        return name.starts_with(word) &&
               isLabelSuffix(trimmed(text).substr(std::min(word.size(), trimmed(text).size())));
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

bool hasWords(TextView text) {
    const std::vector<RowItem> row = readRow(text);
    return !isRowOfChords(row) && std::any_of(row.begin(), row.end(), [](const RowItem& item) {
        return item.kind == RowItemKind::Word;
    });
}

// "[Verse 1]" or "(Chorus)" with the colon that may follow.
std::size_t enclosedLabel(TextView line, std::size_t begin) {
    const bool bracket = line[begin] == u'[';
    const std::size_t close =
        line.substr(0, begin + kLongestBracket).find(bracket ? u']' : u')', begin);
    if (close == TextView::npos)
        return 0;
    const TextView inside = line.substr(begin + 1, close - begin - 1);
    const bool label = bracket ? hasWords(inside) : isSectionName(inside);
    if (!label)
        return 0;
    return close + (close + 1 < line.size() && line[close + 1] == u':' ? 2 : 1);
}

// ---- Brackets --------------------------------------------------------------------------------

class BracketReader {
  public:
    BracketReader(TextView line, std::size_t column, std::size_t index, const ChordReading& reading)
        : line_(line), column_(column), index_(index), reading_(reading) {}
    std::optional<BracketedLine> read();

  private:
    std::size_t chordAt(std::size_t at);
    void addText(TextView text);
    void makeRoom();

    TextView line_;
    std::size_t column_;  // cell of the next character
    std::size_t index_;
    const ChordReading& reading_;
    std::size_t roomEnd_ = 0;  // first cell behind the last chord and a blank
    BracketedLine result_;
};

void BracketReader::addText(TextView text) {
    const Text plain = withOrdinaryBlanks(text, column_);
    result_.lyrics += plain;
    column_ += cellsOf(plain);
}

// Lyrics stretch only where a blank is already, so words stay whole.
void BracketReader::makeRoom() {
    const bool mayStretch = result_.lyrics.empty() || isAnyBlank(result_.lyrics.back());
    if (column_ < roomEnd_ && mayStretch) {
        result_.lyrics.append(roomEnd_ - column_, u' ');
        column_ = roomEnd_;
    }
}

// Takes the bracket at `at` where it holds chords, and returns its length, else 0.
std::size_t BracketReader::chordAt(std::size_t at) {
    const TextView ahead = line_.substr(at, kLongestBracket);
    const std::size_t close = ahead.find_first_of(u"[]", 1);
    if (close == TextView::npos || ahead[close] != u']')
        return 0;
    const TextView inside = ahead.substr(1, close - 1);
    std::vector<RowItem> row = readRow(inside, 0, index_ + at + 1, reading_);
    // "[x2]" and "[/]" alone are text too, and "[Go]" is.
    const bool isWord = row.size() == 1 && row[0].wordToo == WordToo::Anywhere &&
                        TextView(u"oa").find(inside.back()) != TextView::npos;
    const bool chords = !isWord && std::any_of(row.begin(), row.end(), [](const RowItem& item) {
        return item.kind == RowItemKind::Chord || item.kind == RowItemKind::Unknown ||
               item.kind == RowItemKind::NoChord;
    }) && std::all_of(row.begin(), row.end(), [](const RowItem& item) {
        return item.kind != RowItemKind::Word && item.kind != RowItemKind::Separator;
    });
    if (!chords)
        return 0;
    makeRoom();
    for (RowItem& item : row) {
        item.column += column_ - row.front().column;
        roomEnd_ = std::max(roomEnd_, item.column) + cellsOf(item.shown) + 1;
    }
    result_.chords.insert(result_.chords.end(), std::make_move_iterator(row.begin()),
                          std::make_move_iterator(row.end()));
    return close + 1;
}

std::optional<BracketedLine> BracketReader::read() {
    std::size_t text = 0;
    for (std::size_t at = 0; at < line_.size();) {
        if (line_[at] != u'[') {
            ++at;
            continue;
        }
        addText(line_.substr(text, at - text));
        text = at;
        const std::size_t length = chordAt(at);
        at += std::max<std::size_t>(length, 1);
        text += length;
    }
    if (result_.chords.empty())
        return std::nullopt;
    addText(line_.substr(text));
    result_.lyrics.resize(trimmedRight(result_.lyrics).size());
    return std::move(result_);
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
    return directive;
}

bool isKnownDirective(const Directive& directive) {
    const auto isName = [&](TextView name) { return directive.name == name; };
    return directive.name.starts_with(u"start_of_") || directive.name.starts_with(u"end_of_") ||
           directive.name.starts_with(u"x_") ||
           std::any_of(std::begin(kKnownNames), std::end(kKnownNames), isName) ||
           std::any_of(std::begin(kShortNames), std::end(kShortNames),
                       [&](const auto& names) { return isName(names.second); });
}

std::optional<BracketedLine> readBrackets(TextView line, std::size_t column, std::size_t index,
                                          const ChordReading& reading) {
    if (line.find(u'[') == TextView::npos)
        return std::nullopt;
    return BracketReader(line, column, index, reading).read();
}

std::size_t sectionLabelLength(TextView line) {
    const std::size_t begin = behindBlanks(line, 0);
    if (begin == line.size())
        return 0;
    if (line[begin] == u'[' || line[begin] == u'(')
        return enclosedLabel(line, begin);
    if (isSectionName(trimmedRight(line.substr(begin))))
        return trimmedRight(line).size();
    const std::size_t colon = line.substr(0, begin + kLongestLabel).find(u':', begin);
    if (colon == TextView::npos)
        return 0;
    const TextView name = line.substr(begin, colon - begin);
    if (isFactName(name))
        return 0;
    // Any word may be a label where nothing but chords follows.
    const bool label =
        isSectionName(name) || (hasWords(name) && isRowOfChords(readRow(line.substr(colon + 1))));
    return label ? colon + 1 : 0;
}

bool isTablature(TextView line) {
    line = trimmed(line);
    constexpr std::size_t kLongestName = 3;
    const std::size_t first = line.find_first_of(u"|-");
    if (first == TextView::npos || first > kLongestName)
        return false;
    // The frets and signs of a string; the last words of a line may be a remark.
    constexpr TextView signs = u"-0123456789|hpbrtvxsHPBRX/\\~()<>^*=:.o ";
    const std::size_t end = std::min(line.find_first_not_of(signs, first), line.size());
    const TextView string = trimmedRight(line.substr(first, end - first));
    const auto dashes = static_cast<std::size_t>(std::count(string.begin(), string.end(), u'-'));
    return string.find(u"--") != TextView::npos && dashes * 2 >= string.size() && dashes >= 4 &&
           (end == line.size() || end > 16);
}

LineVerdict judgeLine(TextView line) {
    if (trimmed(line).empty())
        return LineVerdict::Lyrics;
    if (readDirective(line))
        return LineVerdict::Directive;
    if (isTablature(line))
        return LineVerdict::Tablature;
    if (sectionLabelLength(line) > 0)
        return LineVerdict::Section;
    if (const auto bracketed = readBrackets(line))
        return bracketed->lyrics.empty() ? LineVerdict::Chords : LineVerdict::Lyrics;
    const std::vector<RowItem> row = readRow(line);
    if (isRowOfChords(row))
        return LineVerdict::Chords;
    const bool repeat = row.size() == 1 && row[0].kind == RowItemKind::Repeat;
    return repeat ? LineVerdict::Section : LineVerdict::Lyrics;
}

}  // namespace melvorin
