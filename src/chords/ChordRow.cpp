#include "chords/ChordRow.h"

#include <algorithm>
#include <iterator>
#include <optional>

#include "chords/CellWidth.h"
#include "chords/ChordSpelling.h"
#include "chords/SongDiagrams.h"

namespace melvorin {
namespace {

// A longer run of text without a blank is a word; nothing looks inside.
constexpr std::size_t kLongestItem = 64;
// Bars, and what stands between chords that are written as a chain.
constexpr TextView kBars = u"|\u2016\u00A6";
constexpr TextView kSeparators = u"-,;.>~=\u2010\u2011\u2013\u2014\u2192\u2026\u21D2\u00B7";

bool isOneOf(TextView set, char16_t c) {
    return set.find(c) != TextView::npos;
}

bool consistsOf(TextView text, TextView set) {
    return text.find_first_not_of(set) == TextView::npos;
}

bool isBar(TextView text) {
    return text.find_first_of(kBars) != TextView::npos &&
           std::all_of(text.begin(), text.end(),
                       [](char16_t c) { return c == u':' || isOneOf(kBars, c); });
}

// Bars are no chord-line characters, slashes are; a repeat sign becomes a parenthesis.
Text shownBar(TextView bar) {
    Text shown;
    for (std::size_t i = 0; i < bar.size(); ++i)
        shown += bar[i] != u':' ? u'/' : i == 0 ? u')' : u'(';
    return shown;
}

bool isNoChord(TextView text) {
    if (text.size() > 2 && text.front() == u'(' && text.back() == u')')
        text = text.substr(1, text.size() - 2);
    return text == u"N.C." || text == u"N.C" || text == u"NC" || text == u"N/C" ||
           text == u"n.c." || text == u"NC.";
}

// "x2", "2x", "(x2)", "bis".
bool isRepeat(TextView text) {
    if (text.size() > 2 && text.front() == u'(' && text.back() == u')')
        text = text.substr(1, text.size() - 2);
    if (text == u"bis")
        return true;
    constexpr TextView times = u"xX\u00D7";
    if (text.size() < 2 || text.size() > 3)
        return false;
    const TextView digits = isOneOf(times, text.front())  ? text.substr(1)
                            : isOneOf(times, text.back()) ? text.substr(0, text.size() - 1)
                                                          : TextView();
    return !digits.empty() && consistsOf(digits, u"0123456789");
}

// Chords by their text that are words as well, in whatever company they stand, and such that are
// words only where they stand alone.
constexpr TextView kWords[] = {u"Ao",  u"Bo", u"Co", u"Do",  u"Eo",  u"Fo",  u"Go",  u"Ama",
                               u"Ema", u"As", u"Es", u"Des", u"Dis", u"Ais", u"Ces", u"Ges"};
constexpr TextView kLoneWords[] = {u"Ami", u"Emi", u"Amin", u"Emin", u"H", u"Hm"};

// One that is hardly a word, not even in front of other words: "G", "Am7", but not "A" and "Em".
bool isFirm(const RowItem& item) {
    const TextView chord = item.shown;
    return item.kind == RowItemKind::Chord && item.wordToo == WordToo::No && chord != u"A" &&
           chord != u"E" && chord != u"Am" && chord != u"Em";
}

class RowReader {
  public:
    RowReader(TextView line, std::size_t column, std::size_t index, const ChordReading& reading)
        : line_(line), column_(column), index_(index), reading_(reading) {}
    std::vector<RowItem> read();

  private:
    // A run of characters without a blank, or a part of one.
    struct Run {
        std::size_t begin = 0;  // in line_
        std::size_t end = 0;
        std::size_t column = 0;
        std::size_t cells = 0;
    };
    TextView textOf(const Run& run) const { return line_.substr(run.begin, run.end - run.begin); }
    Run part(const Run& run, std::size_t begin, std::size_t end) const;
    void add(RowItemKind kind, const Run& run, Text shown);
    bool addWhole(const Run& run);
    bool addEnclosed(const Run& run);
    bool addChain(const Run& run);
    bool addChord(const Run& run);
    bool addPair(const Run& run, std::size_t at, bool slash);
    bool addMarked(const Run& run);
    bool isJoined(const Run& run, CellCharacter next) const;
    void addRun(const Run& run);

    TextView line_;
    std::size_t column_;
    std::size_t index_;
    const ChordReading& reading_;
    std::vector<RowItem> items_;
};

// "C(add G#)": a blank within a parenthesis of the chord is a part of it.
bool RowReader::isJoined(const Run& run, CellCharacter next) const {
    const TextView text = textOf(run);
    const std::size_t open = text.rfind(u'(');
    if (open == TextView::npos || open == 0 || text.find(u')', open) != TextView::npos ||
        text.size() > kLongestItem)
        return false;
    const TextView ahead = line_.substr(run.begin, kLongestItem);
    const std::size_t close = ahead.find(u')', next.index - run.begin);
    return close != TextView::npos && houseSpelling(ahead.substr(0, close + 1), reading_);
}

std::vector<RowItem> RowReader::read() {
    CellReader reader(line_, column_);
    CellCharacter character;
    Run run;
    bool inside = false;
    while (reader.next(character)) {
        const bool isDiagram = isDiagramToken(line_[character.index]);
        const bool isGap = isAnyBlank(character.code) && !(inside && isJoined(run, character));
        if (isDiagram || isGap) {
            if (inside)
                addRun(run);
            inside = false;
            if (isDiagram)
                add(RowItemKind::Sign,
                    {character.index, character.index + 1, character.column, character.width},
                    Text(1, line_[character.index]));
            continue;
        }
        if (!inside)
            run = {character.index, character.index, character.column, 0};
        inside = true;
        run.end = character.index + character.length;
        run.cells += character.width;
    }
    if (inside)
        addRun(run);
    return std::move(items_);
}

RowReader::Run RowReader::part(const Run& run, std::size_t begin, std::size_t end) const {
    const TextView text = textOf(run);
    return {run.begin + begin, run.begin + end, run.column + cellsOf(text.substr(0, begin)),
            cellsOf(text.substr(begin, end - begin))};
}

void RowReader::add(RowItemKind kind, const Run& run, Text shown) {
    items_.push_back(
        {kind, index_ + run.begin, run.end - run.begin, run.column, run.cells, std::move(shown)});
}

bool RowReader::addChord(const Run& run) {
    const TextView text = textOf(run);
    auto chord = text.empty() ? std::nullopt : houseSpelling(text, reading_);
    if (!chord)
        return false;
    add(RowItemKind::Chord, run, std::move(*chord));
    items_.back().wordToo = wordToo(text);
    return true;
}

// The run as one item, where it is one.
bool RowReader::addWhole(const Run& run) {
    const TextView text = textOf(run);
    if (addChord(run))
        return true;
    if (isBar(text))
        add(RowItemKind::Bar, run, shownBar(text));
    else if (isNoChord(text))
        add(RowItemKind::NoChord, run, Text(text));
    else if (isRepeat(text))
        add(RowItemKind::Repeat, run, Text(text));
    else if (consistsOf(text, u"/()"))
        add(RowItemKind::Beat, run, Text(text));
    else if (consistsOf(text, u"%*"))
        add(RowItemKind::Sign, run, Text(text));
    else if (consistsOf(text, kSeparators))
        add(RowItemKind::Separator, run, Text());
    else
        return false;
    return true;
}

// Chords in parentheses, also over several runs: "(Am7", "G)".
bool RowReader::addEnclosed(const Run& run) {
    const TextView text = textOf(run);
    const std::size_t begin = text.front() == u'(' ? 1 : 0;
    const std::size_t end = text.size() - (text.back() == u')' ? 1 : 0);
    for (const auto& [from, to] :
         {std::pair(begin, end), std::pair(begin, text.size()), std::pair(std::size_t{0}, end)}) {
        const TextView inside = text.substr(from, to > from ? to - from : 0);
        if (inside.size() == text.size())
            continue;
        if (const auto chord = houseSpelling(inside, reading_)) {
            add(RowItemKind::Chord, run,
                Text(text.substr(0, from)).append(*chord).append(text.substr(to)));
            items_.back().wordToo = wordToo(inside);
            return true;
        }
    }
    return false;
}

// "|Am|G|", "Am-G-C", "Am,": all parts are items, or may be meant as chords ("|C7alt|F|"), and one
// of them at least is a chord.
bool RowReader::addChain(const Run& run) {
    const TextView text = textOf(run);
    const auto isLink = [](char16_t c) { return c == u':' || isOneOf(kBars, c); };
    const auto isCut = [&](char16_t c) {
        return isLink(c) || c == u'*' || isOneOf(kSeparators, c);
    };
    const std::size_t former = items_.size();
    bool chord = false;
    for (std::size_t begin = 0; begin < text.size();) {
        std::size_t end = begin + 1;
        const bool cut = isCut(text[begin]);
        const bool link = isLink(text[begin]);
        // A sequence of bars is one sign; "Am7(9,13)" is cut nowhere since it was read as a whole.
        while (end < text.size() && isCut(text[end]) == cut && (!cut || isLink(text[end]) == link))
            ++end;
        const Run piece = part(run, begin, end);
        const TextView sign = textOf(piece);
        const bool colon = cut && link && !isBar(sign);
        if (colon)
            add(RowItemKind::Separator, piece, Text());
        else if (!addWhole(piece) && !addEnclosed(piece)) {
            if (!resemblesChord(sign)) {
                items_.resize(former);
                return false;
            }
            add(RowItemKind::Unknown, piece, Text(sign));
        }
        chord = chord || items_.back().kind == RowItemKind::Chord;
        begin = end;
    }
    if (!chord)
        items_.resize(former);
    return chord;
}

// Two chords without a blank: "F/Gm", "C#m(E)". Behind a slash a note alone would be a bass.
bool RowReader::addPair(const Run& run, std::size_t at, bool slash) {
    const std::size_t former = items_.size();
    const std::size_t end = textOf(run).size();
    const bool first = addChord(part(run, 0, at));
    if (first && slash)
        add(RowItemKind::Beat, part(run, at, at + 1), u"/");
    const Run second = part(run, at + (slash ? 1 : 0), end);
    if (first && (slash ? addChord(second) : addEnclosed(second)))
        return true;
    items_.resize(former);
    return false;
}

// A chord with a mark behind it: an exclamation mark or apostrophe, beats ("G//"), how often it is
// played ("Gx2"); or with another chord.
bool RowReader::addMarked(const Run& run) {
    const TextView text = textOf(run);
    if (const std::size_t at = text.find_last_not_of(u"!'");
        at != TextView::npos && at + 1 < text.size()) {
        if (!addChord(part(run, 0, at + 1)))
            return false;
        // "A!" is what somebody cries.
        if (at == 0)
            items_.back().wordToo = WordToo::Alone;
        add(RowItemKind::Separator, part(run, at + 1, text.size()), Text());
        return true;
    }
    if (const std::size_t at = text.find_last_not_of(u"/\\");
        at != TextView::npos && at + 1 < text.size()) {
        if (!addChord(part(run, 0, at + 1)))
            return false;
        add(RowItemKind::Beat, part(run, at + 1, text.size()), Text(text.size() - at - 1, u'/'));
        return true;
    }
    const std::size_t times = text.find_last_of(u"xX\u00D7*");
    if (times != TextView::npos && times + 1 < text.size() && times + 3 >= text.size() &&
        consistsOf(text.substr(times + 1), u"0123456789") && addChord(part(run, 0, times))) {
        add(RowItemKind::Repeat, part(run, times, text.size()), Text(text.substr(times)));
        return true;
    }
    const std::size_t open = text.find(u'(', 1);
    if (open != TextView::npos && text.back() == u')' && addPair(run, open, false))
        return true;
    const std::size_t slash = text.find(u'/', 1);
    return slash != TextView::npos && slash == text.rfind(u'/') && addPair(run, slash, true);
}

void RowReader::addRun(const Run& run) {
    const TextView text = textOf(run);
    if (text.size() <= kLongestItem &&
        (addWhole(run) || addEnclosed(run) || addMarked(run) || addChain(run)))
        return;
    add(resemblesChord(text) ? RowItemKind::Unknown : RowItemKind::Word, run, Text(text));
}

// What a row has of each kind. "(let ring)" is one word.
struct RowCount {
    std::size_t chords = 0;
    std::size_t unknown = 0;
    std::size_t words = 0;
    std::size_t wordsToo = 0;  // of the chords
    std::size_t anywhere = 0;  // of those
    std::size_t firm = 0;
    bool spaced = false;
};

RowCount countOf(const std::vector<RowItem>& row) {
    RowCount count;
    bool inRemark = false;
    for (std::size_t i = 0; i < row.size(); ++i) {
        const RowItemKind kind = row[i].kind;
        const bool goesOn = inRemark && kind == RowItemKind::Word;
        if (kind == RowItemKind::Word)
            inRemark = (inRemark || row[i].shown.front() == u'(') && row[i].shown.back() != u')';
        if (goesOn)
            continue;
        count.chords += kind == RowItemKind::Chord || kind == RowItemKind::NoChord ? 1U : 0U;
        count.unknown += kind == RowItemKind::Unknown ? 1U : 0U;
        count.words += kind == RowItemKind::Word ? 1U : 0U;
        count.wordsToo += row[i].wordToo != WordToo::No ? 1U : 0U;
        count.anywhere += row[i].wordToo == WordToo::Anywhere ? 1U : 0U;
        count.firm += isFirm(row[i]) ? 1U : 0U;
        count.spaced =
            count.spaced || (i > 0 && row[i].column >= row[i - 1].column + row[i - 1].cells + 2);
    }
    return count;
}

}  // namespace

WordToo wordToo(TextView chord) {
    const auto is = [&](TextView word) { return chord == word; };
    const bool isSmall = chord[0] >= u'a' && chord[0] <= u'h';
    if (std::any_of(std::begin(kWords), std::end(kWords), is))
        return WordToo::Anywhere;
    const bool isAlone = std::any_of(std::begin(kLoneWords), std::end(kLoneWords), is) ||
                         (isSmall && chord.find_first_of(u"0123456789#/") == TextView::npos);
    return isAlone ? WordToo::Alone : WordToo::No;
}

std::vector<RowItem> readRow(TextView line, std::size_t column, std::size_t index,
                             const ChordReading& reading) {
    return RowReader(line, column, index, reading).read();
}

bool isRowOfChords(const std::vector<RowItem>& row) {
    const RowCount count = countOf(row);
    if (count.words == 0) {
        const bool isRow =
            count.chords > 0 || count.unknown > 1 || (count.unknown == 1 && row.size() == 1);
        // No "Ami" and "Emi" are words side by side.
        const bool isSure = count.wordsToo == 0 || count.firm > 0 ||
                            (count.anywhere == 0 && count.chords + count.unknown > 1);
        return isRow && isSure;
    }
    // A word or two among many chords is a remark; chords stand apart, words do not.
    const std::size_t sure = count.chords - count.wordsToo + count.unknown;
    return sure >= 2 && sure > 2 * count.words && count.spaced;
}

bool mayBeRowOfChords(const std::vector<RowItem>& row) {
    const RowCount count = countOf(row);
    return count.words == 0 && count.chords > 0;
}

Text writeRow(const std::vector<RowItem>& row, std::vector<std::size_t>* places) {
    Text line;
    std::size_t cells = 0;
    const RowItem* before = nullptr;
    for (const RowItem& item : row) {
        if (!item.shown.empty()) {
            const bool touches = before != nullptr && !before->shown.empty() &&
                                 item.index == before->index + before->length;
            const std::size_t gap = cells > 0 && !touches ? 1 : 0;
            const std::size_t column = std::max(item.column, cells + gap);
            line.append(column - cells, u' ').append(item.shown);
            cells = column + cellsOf(item.shown);
        }
        if (places != nullptr)
            places->push_back(line.size() - item.shown.size());
        before = &item;
    }
    return line;
}

}  // namespace melvorin
