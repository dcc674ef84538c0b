#include "chords/ChordRow.h"

#include <algorithm>
#include <array>
#include <functional>
#include <iterator>
#include <optional>
#include <utility>

#include "chords/CellWidth.h"
#include "chords/ChordSpelling.h"
#include "chords/RowMarks.h"
#include "chords/RowSymbols.h"
#include "chords/SongDiagrams.h"

namespace melvorin {
namespace {

// A longer run of text without a blank is a word; nothing looks inside.
constexpr std::size_t kLongestItem = 64;

// Chords by their text that are words as well, in whatever company they stand, and such that are
// words only where they stand alone.
constexpr TextView kWords[] = {u"Ao",  u"Bo",  u"Co",  u"Do",  u"Eo",  u"Fo",  u"Go",
                               u"Ama", u"Ema", u"As",  u"Es",  u"Des", u"Dis", u"Ais",
                               u"Ces", u"Ges", u"Eis", u"His", u"Hes", u"Fes"};
constexpr TextView kLoneWords[] = {u"Ami", u"Emi", u"Amin", u"Emin", u"H", u"Hm"};

// Whether no item but a word begins with this character.
bool beginsWord(char16_t c, const ChordReading& reading) {
    if (c >= u'a' && c <= u'z')
        return !isOneOf(u"bnx", c) && !(reading.smallMinors && c <= u'h');
    if (c > u'H' && c <= u'Z')
        return !isOneOf(u"NX", c) && !(reading.naming == Naming::Solfege && isOneOf(u"LMRS", c));
    return (c >= 0xC0 && c < 0x250 && c != 0xD7) || (c >= 0x370 && c < 0x1680);
}

}  // namespace

// One slot for each remainder of a hash: what is read last stays.
struct RowMemory::Slots {
    struct Slot {
        Text run;
        std::vector<RowItem> items;  // as in a line that begins with the run
    };
    static constexpr std::size_t kCount = 1024;
    std::array<Slot, kCount> slots;

    Slot& slotOf(TextView run) { return slots[std::hash<TextView>()(run) % kCount]; }
};

RowMemory::RowMemory() noexcept = default;
RowMemory::~RowMemory() = default;
RowMemory::RowMemory(RowMemory&&) noexcept = default;
RowMemory& RowMemory::operator=(RowMemory&&) noexcept = default;

RowMemory::Slots& RowMemory::slots() {
    if (slots_ == nullptr)
        slots_ = std::make_unique<Slots>();
    return *slots_;
}

namespace {

class RowReader {
  public:
    RowReader(TextView line, std::size_t column, std::size_t index, const ChordReading& reading,
              RowMemory* memory)
        : line_(line), column_(column), index_(index), reading_(reading), memory_(memory) {}
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
    std::size_t chainPartEnd(TextView text, std::size_t begin) const;
    bool addWhole(const Run& run);
    bool addEnclosed(const Run& run);
    bool addChain(const Run& run);
    bool addChord(const Run& run);
    bool addPair(const Run& run, std::size_t at, bool slash);
    bool addMarked(const Run& run);
    bool isJoined(const Run& run, CellCharacter next) const;
    void addRun(const Run& run);
    void addKnown(const Run& run);

    TextView line_;
    std::size_t column_;
    std::size_t index_;
    const ChordReading& reading_;
    RowMemory* memory_;
    bool hasBrace_ = false;  // a chord behind a brace that opens
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
                addKnown(run);
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
        addKnown(run);
    joinMarks(items_, line_, index_, reading_);
    settleSymbols(items_, line_, index_, reading_);
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
    items_.back().wordToo = wordToo(text, reading_);
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
    else if (isMeter(text))
        add(RowItemKind::Meter, run, Text(text));
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

// Chords in parentheses, also over several runs: "(Am7", "G)". The chart has such for braces too.
bool RowReader::addEnclosed(const Run& run) {
    Text shown(textOf(run));
    const bool opens = shown.front() == u'{';
    if (opens)
        shown.front() = u'(';
    if (shown.back() == u'}' && (opens || hasBrace_))
        shown.back() = u')';
    const TextView text = shown;
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
            items_.back().wordToo = wordToo(inside, reading_);
            hasBrace_ = hasBrace_ || opens;
            return true;
        }
    }
    return false;
}

bool isLink(char16_t c) {
    return c == u':' || isOneOf(kBars, c);
}

bool isCut(char16_t c) {
    return isLink(c) || c == u'*' || isOneOf(kSeparators, c);
}

// Where the part of a chain that begins at `begin` ends. A sequence of bars is one sign;
// "Am7(9,13)" is cut nowhere since it was read as a whole. The minus of "C7-" is a part of the
// symbol, which means nothing then, unless chords are chained by such: "Am7-D7-".
std::size_t RowReader::chainPartEnd(TextView text, std::size_t begin) const {
    const bool cut = isCut(text[begin]);
    const bool link = isLink(text[begin]);
    if (isDirection(text.substr(begin, 4)))
        return begin + 4;
    std::size_t end = begin + 1;
    while (end < text.size() && isCut(text[end]) == cut && (!cut || isLink(text[end]) == link))
        ++end;
    const bool mayEndSo = !cut && end < text.size() && isOneOf(kMinuses, text[end]) &&
                          isDigit(text[end - 1]) && (begin == 0 || isLink(text[begin - 1]));
    if (!mayEndSo)
        return end;
    const std::size_t behind = end + (text.substr(end + 1).starts_with(u')') ? 2 : 1);
    return behind == text.size() || isLink(text[behind]) ? behind : end;
}

// "|Am|G|", "Am-G-C", "Am,": all parts are items, or may be meant as chords ("|C7alt|F|"), and one
// of them at least is a chord.
bool RowReader::addChain(const Run& run) {
    const TextView text = textOf(run);
    const std::size_t former = items_.size();
    bool chord = false;
    bool mark = false;
    bool bar = false;
    const bool hasBar = text.find_first_of(kBars) != TextView::npos;
    for (std::size_t begin = 0; begin < text.size();) {
        const std::size_t end = chainPartEnd(text, begin);
        const bool cut = isCut(text[begin]);
        const bool link = isLink(text[begin]);
        const Run piece = part(run, begin, end);
        const TextView sign = textOf(piece);
        const bool colon = cut && link && !isBar(sign);
        if (colon)
            add(RowItemKind::Separator, piece, Text());
        else if (!addWhole(piece) && !addEnclosed(piece)) {
            const bool isRefused = hasBar && mayBeRefused(sign, reading_);
            if (!isRefused && !resemblesChord(withoutParentheses(sign), reading_)) {
                items_.resize(former);
                return false;
            }
            add(RowItemKind::Unknown, piece, Text(sign));
            mark = mark || isRefused;
        }
        const RowItemKind kind = items_.back().kind;
        chord = chord || kind == RowItemKind::Chord;
        // "|x4", "|3/4", ".|"
        mark = mark || kind == RowItemKind::Repeat || kind == RowItemKind::Meter ||
               kind == RowItemKind::NoChord || sign == u".";
        bar = bar || kind == RowItemKind::Bar;
        begin = end;
    }
    if (!chord && !(mark && bar))
        items_.resize(former);
    return items_.size() > former;
}

// Two chords without a blank: "F/Gm", "C#m(E)"; "G(x2)" too. Behind a slash a note alone would be a
// bass.
bool RowReader::addPair(const Run& run, std::size_t at, bool slash) {
    const std::size_t former = items_.size();
    const std::size_t end = textOf(run).size();
    const bool first = addChord(part(run, 0, at));
    if (first && slash)
        add(RowItemKind::Beat, part(run, at, at + 1), u"/");
    const Run second = part(run, at + (slash ? 1 : 0), end);
    if (first && (slash ? addChord(second) : addEnclosed(second)))
        return true;
    if (first && !slash && isRepeat(textOf(second))) {
        add(RowItemKind::Repeat, second, Text(textOf(second)));
        return true;
    }
    items_.resize(former);
    return false;
}

// A chord with a mark behind it: an exclamation mark or apostrophe, beats ("G//"), how often it is
// played ("Gx2", "G(x2)"); or with another chord.
bool RowReader::addMarked(const Run& run) {
    const TextView text = textOf(run);
    if (const std::size_t at = text.find_last_not_of(u"!'");
        at != TextView::npos && at + 1 < text.size()) {
        if (!addChord(part(run, 0, at + 1)))
            return false;
        // "A!" is what somebody cries.
        if (at == 0)
            items_.back().wordToo = WordToo::Alone;
        const TextView marks = text.substr(at + 1);
        const bool isStop = consistsOf(marks, u"!");
        add(isStop ? RowItemKind::Sign : RowItemKind::Separator, part(run, at + 1, text.size()),
            Text(isStop ? marks : TextView()));
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
    if (open != TextView::npos && isRepeat(text.substr(open)) && addChord(part(run, 0, open))) {
        add(RowItemKind::Repeat, part(run, open, text.size()), Text(text.substr(open)));
        return true;
    }
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
    add(resemblesChord(text, reading_) ? RowItemKind::Unknown : RowItemKind::Word, run, Text(text));
}

void RowReader::addKnown(const Run& run) {
    const TextView text = textOf(run);
    if (beginsWord(text[0], reading_)) {
        add(RowItemKind::Word, run, Text(text));
        return;
    }
    if (memory_ == nullptr || text.size() > kLongestItem) {
        addRun(run);
        return;
    }
    RowMemory::Slots::Slot& slot = memory_->slots().slotOf(text);
    if (slot.run == text) {
        for (const RowItem& item : slot.items) {
            items_.push_back(item);
            items_.back().index += index_ + run.begin;
            items_.back().column += run.column;
        }
        return;
    }
    const std::size_t former = items_.size();
    addRun(run);
    slot.run = text;
    slot.items.assign(items_.begin() + static_cast<std::ptrdiff_t>(former), items_.end());
    for (RowItem& item : slot.items) {
        item.index -= index_ + run.begin;
        item.column -= run.column;
    }
}

// What a row has of each kind.
struct RowCount {
    std::size_t chords = 0;
    std::size_t unknown = 0;
    std::size_t words = 0;
    std::size_t remarks = 0;
    std::size_t bars = 0;
    std::size_t meters = 0;
    std::size_t wordsToo = 0;  // of the chords
    std::size_t anywhere = 0;  // of those
    std::size_t firm = 0;
    bool spaced = false;
};

RowCount countOf(const std::vector<RowItem>& row) {
    RowCount count;
    for (std::size_t i = 0; i < row.size(); ++i) {
        const RowItemKind kind = row[i].kind;
        // "Washington / D.C."
        const bool isRest = kind == RowItemKind::NoChord && isNoChord(row[i].shown) &&
                            !isDirection(withoutParentheses(row[i].shown));
        count.chords += kind == RowItemKind::Chord || isRest ? 1U : 0U;
        count.unknown += kind == RowItemKind::Unknown ? 1U : 0U;
        count.words += kind == RowItemKind::Word ? 1U : 0U;
        count.remarks += kind == RowItemKind::Remark ? 1U : 0U;
        count.bars += kind == RowItemKind::Bar ? 1U : 0U;
        count.meters += kind == RowItemKind::Meter ? 1U : 0U;
        count.wordsToo += row[i].wordToo != WordToo::No ? 1U : 0U;
        count.anywhere += row[i].wordToo == WordToo::Anywhere ? 1U : 0U;
        count.firm += isFirm(row[i]) ? 1U : 0U;
        count.spaced =
            count.spaced || (i > 0 && row[i].column >= row[i - 1].column + row[i - 1].cells + 2);
    }
    return count;
}

// "La La La"
bool isOneWordAgain(const std::vector<RowItem>& row) {
    return row.size() > 1 && std::all_of(row.begin(), row.end(), [&](const RowItem& item) {
               return item.wordToo != WordToo::No && item.shown == row.front().shown;
           });
}

}  // namespace

WordToo wordToo(TextView chord, const ChordReading& reading) {
    const auto is = [&](TextView word) { return chord == word; };
    const bool isSyllable = reading.naming == Naming::Solfege && solfegeLength(chord) > 0;
    if (isSyllable) {
        // "Mi", "Sim", but not "MI" and "Mi7".
        const char16_t second = chord.size() > 1 ? chord[1] : u'\0';
        const bool isSmall = (second >= u'a' && second <= u'z') || second >= 0xE0;
        const bool isPlain = isSmall && chord.find_first_of(u"0123456789#/-+(") == TextView::npos;
        return isPlain ? WordToo::Alone : WordToo::No;
    }
    const bool isSmall = chord[0] >= u'a' && chord[0] <= u'h';
    // Among syllables "A" is hardly a chord, unless others of its kind are beside it.
    const bool isOddOne = reading.naming == Naming::Solfege && (chord == u"A" || chord == u"E");
    if (isOddOne || std::any_of(std::begin(kWords), std::end(kWords), is))
        return WordToo::Anywhere;
    const bool isAlone = std::any_of(std::begin(kLoneWords), std::end(kLoneWords), is) ||
                         (isSmall && chord.find_first_of(u"0123456789#/") == TextView::npos);
    return isAlone ? WordToo::Alone : WordToo::No;
}

std::vector<RowItem> readRow(TextView line, std::size_t column, std::size_t index,
                             const ChordReading& reading, RowMemory* memory) {
    return RowReader(line, column, index, reading, memory).read();
}

bool isClearlyWords(TextView line, const ChordReading& reading) {
    std::size_t words = 0;
    std::size_t others = 0;
    bool afterBlank = true;
    for (const char16_t c : line) {
        if (c == u'(' || c == u'[' || c == u'{')
            return false;
        const bool blank = isAnyBlank(c);
        if (afterBlank && !blank)
            ++(beginsWord(c, reading) ? words : others);
        afterBlank = blank;
    }
    return words > 0 && words * 2 >= others;
}

bool isRowOfChords(const std::vector<RowItem>& row) {
    const RowCount count = countOf(row);
    const std::size_t sure = count.chords - count.wordsToo + count.unknown;
    // A word or two among many chords is a remark; chords stand apart, words do not.
    if (count.words > 0)
        return sure >= 2 && sure > 2 * count.words && count.spaced;
    const std::size_t all = count.chords + count.unknown;
    // "3/4 C" is flour; "A (alto) B (bass)" is a list.
    if (count.meters > 0 && count.bars == 0 && all < 2)
        return false;
    if (count.remarks > 0 && (all < 2 || all <= count.remarks || sure < 2))
        return false;
    const bool isRow =
        count.chords > 0 || count.unknown > 1 || (count.unknown == 1 && row.size() == 1);
    // No "Ami" and "Emi" are words side by side.
    const bool isSure = count.wordsToo == 0 || count.firm > 0 || (count.anywhere == 0 && all > 1);
    return isRow && isSure && (count.spaced || !isOneWordAgain(row));
}

bool mayBeRowOfChords(const std::vector<RowItem>& row) {
    const RowCount count = countOf(row);
    return count.words + count.remarks == 0 && count.chords > 0 && !isOneWordAgain(row);
}

namespace {

bool touch(const RowItem& left, const RowItem& right) {
    return !left.shown.empty() && !right.shown.empty() && right.index == left.index + left.length;
}

// "C|G" is two chords, "C/G" one with a bass: a bar of the chart touches nothing. It makes way for
// the chord behind it, which has its syllable.
bool makesWay(const RowItem& item, const RowItem* next) {
    return item.kind == RowItemKind::Bar && next != nullptr && touch(item, *next) &&
           item.column > 0;
}

}  // namespace

Text writeRow(const std::vector<RowItem>& row, std::vector<std::size_t>* places) {
    Text line;
    std::size_t cells = 0;
    const RowItem* before = nullptr;
    for (const RowItem& item : row) {
        if (!item.shown.empty()) {
            const bool touches = before != nullptr && touch(*before, item) &&
                                 before->kind != RowItemKind::Bar && item.kind != RowItemKind::Bar;
            const std::size_t gap = cells > 0 && !touches ? 1 : 0;
            const RowItem* const next = &item == &row.back() ? nullptr : &item + 1;
            const std::size_t own = item.column - (makesWay(item, next) ? 1 : 0);
            const std::size_t column = std::max(own, cells + gap);
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
