#include "chords/RowSymbols.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "chords/ChordSpelling.h"
#include "chords/RowMarks.h"

namespace melvorin {
namespace {

// What a symbol that cannot be read may have behind its root without a number.
constexpr TextView kQualities[] = {u"alt", u"lyd", u"phryg", u"dor", u"mixo", u"loc"};

// "C/Eb/G": a chord and notes.
bool isStackOfNotes(TextView text, const ChordReading& reading) {
    std::size_t begin = text.find(u'/');
    if (begin == TextView::npos || !houseSpelling(text.substr(0, begin), reading))
        return false;
    while (begin < text.size()) {
        const std::size_t end = std::min(text.find(u'/', begin + 1), text.size());
        const TextView part = text.substr(begin + 1, end - begin - 1);
        const auto note = readNoteName(usualNote(part), reading, NotePlace::Bass);
        if (!note || note->length != part.size())
            return false;
        begin = end;
    }
    return true;
}

// "C7" of "(C7)" and "C7?".
TextView withoutMarks(TextView symbol) {
    symbol = withoutParentheses(symbol);
    return symbol.substr(0, symbol.find_last_not_of(u"?!*'") + 1);
}

bool isSyllable(TextView symbol) {
    return solfegeLength(symbol.substr(symbol.starts_with(u'(') ? 1 : 0)) > 0;
}

class SymbolSettler {
  public:
    SymbolSettler(std::vector<RowItem>& items, TextView line, std::size_t index,
                  const ChordReading& reading)
        : items_(items), line_(line), index_(index), reading_(reading) {}
    void settle();

  private:
    TextView textOf(const RowItem& item) const {
        return line_.substr(item.index - index_, item.length);
    }
    void refuseLetters();
    void keepRefused();
    void countDots();
    bool joinInitials();
    bool touches(std::size_t at) const;

    std::vector<RowItem>& items_;
    TextView line_;
    std::size_t index_;
    const ChordReading& reading_;
};

// "A La", "A Fa Sol"; nothing but a chord is "A7".
void SymbolSettler::refuseLetters() {
    const auto isSymbol = [](const RowItem& item) {
        return item.kind == RowItemKind::Chord || item.kind == RowItemKind::Unknown;
    };
    if (std::none_of(items_.begin(), items_.end(), [&](const RowItem& item) {
            return isSymbol(item) && isSyllable(textOf(item));
        }))
        return;
    for (RowItem& item : items_) {
        const bool isMarked = textOf(item).find_first_of(u"0123456789#/") != TextView::npos;
        if (!isSymbol(item) || isMarked || isSyllable(textOf(item)))
            continue;
        item.kind = RowItemKind::Word;
        item.wordToo = WordToo::No;
        item.shown = textOf(item);
    }
}

// As many chords that are no words, two of them or one that is more than a letter, and nothing that
// is a word. "Am" counts where it stands beside a figure ("C7? Am"), and "C/Eb/G" is no list.
void SymbolSettler::keepRefused() {
    std::size_t words = 0;
    std::size_t firm = 0;
    std::size_t minors = 0;
    bool isMarked = false;
    bool haveFigures = true;
    for (const RowItem& item : items_) {
        const bool isWord = item.kind == RowItemKind::Word;
        const bool isPlain = item.kind == RowItemKind::Chord && item.wordToo == WordToo::No;
        const bool hasFigure = isWord && !textOf(item).starts_with(u'(') &&
                               (resemblesChord(withoutMarks(textOf(item)), reading_) ||
                                (textOf(item).find_first_of(u"b#") != TextView::npos &&
                                 isStackOfNotes(textOf(item), reading_)));
        words += isWord ? 1U : 0U;
        firm += isFirm(item) ? 1U : 0U;
        minors += isPlain && !isFirm(item) && item.shown.size() > 1 ? 1U : 0U;
        isMarked = isMarked || (isFirm(item) && item.shown.size() > 1) || hasFigure;
        haveFigures = haveFigures && (!isWord || hasFigure);
    }
    firm += haveFigures ? minors : 0;
    if (words == 0 || firm < words || (firm < 2 && !isMarked))
        return;
    const auto isOther = [&](const RowItem& item) {
        return item.kind == RowItemKind::Word && !mayBeRefused(textOf(item), reading_);
    };
    if (std::any_of(items_.begin(), items_.end(), isOther))
        return;
    for (RowItem& item : items_) {
        if (item.kind == RowItemKind::Word)
            item.kind = RowItemKind::Unknown;
    }
}

// Whether item `at` and the next one touch, and neither is a bar.
bool SymbolSettler::touches(std::size_t at) const {
    const RowItem& left = items_[at];
    const RowItem& right = items_[at + 1];
    return left.index + left.length == right.index && left.kind != RowItemKind::Bar &&
           right.kind != RowItemKind::Bar;
}

// The chart has a slash for a beat as for a bar, so where there are bars the dots stand above.
void SymbolSettler::countDots() {
    const auto has = [&](RowItemKind kind) {
        return std::any_of(items_.begin(), items_.end(),
                           [&](const RowItem& item) { return item.kind == kind; });
    };
    if (!has(RowItemKind::Chord))
        return;
    const bool hasBars = has(RowItemKind::Bar);
    for (std::size_t i = 1; i < items_.size(); ++i) {
        RowItem& item = items_[i];
        const bool isDot = item.kind == RowItemKind::Separator && textOf(item) == u".";
        if (!isDot || touches(i - 1) || (i + 1 < items_.size() && touches(i)))
            continue;
        item.kind = hasBars ? RowItemKind::Sign : RowItemKind::Beat;
        item.shown = hasBars ? u'.' : u'/';
    }
}

// "G. H.", "E.G.": nothing but lone letters, each with its dot, are somebody's name.
bool SymbolSettler::joinInitials() {
    std::vector<RowItem> joined;
    joined.reserve(items_.size() / 2);
    for (std::size_t i = 0; i < items_.size(); i += 2) {
        RowItem letter = items_[i];
        if (i + 1 == items_.size() || letter.kind != RowItemKind::Chord || letter.length != 1 ||
            items_[i + 1].kind != RowItemKind::Separator || textOf(items_[i + 1]) != u"." ||
            !touches(i))
            return false;
        letter.length = 2;
        letter.cells += items_[i + 1].cells;
        letter.kind = RowItemKind::Word;
        letter.wordToo = WordToo::No;
        letter.shown = textOf(letter);
        joined.push_back(std::move(letter));
    }
    items_ = std::move(joined);
    return true;
}

void SymbolSettler::settle() {
    bool hasWord = false;
    bool hasDot = false;
    for (const RowItem& item : items_) {
        hasWord = hasWord || item.kind == RowItemKind::Word;
        hasDot = hasDot || (item.kind == RowItemKind::Separator && item.length == 1);
    }
    if (hasDot && !hasWord && joinInitials())
        return;
    if (reading_.naming == Naming::Solfege)
        refuseLetters();
    if (hasWord)
        keepRefused();
    if (hasDot)
        countDots();
}

}  // namespace

bool mayBeRefused(TextView text, const ChordReading& reading) {
    constexpr std::size_t longest = 16;
    const TextView stem = withoutMarks(text);
    if (text.size() > longest)
        return false;
    if (resemblesChord(stem, reading) || isStackOfNotes(stem, reading))
        return true;
    if (stem.size() < text.size() && !stem.empty() && houseSpelling(stem, reading))
        return true;
    const Text usual = usualNote(stem);
    const auto root = readNoteName(usual, reading);
    return root && std::find(std::begin(kQualities), std::end(kQualities),
                             TextView(usual).substr(root->length)) != std::end(kQualities);
}

bool isFirm(const RowItem& item) {
    const TextView chord = item.shown;
    return item.kind == RowItemKind::Chord && item.wordToo == WordToo::No && chord != u"A" &&
           chord != u"E" && chord != u"Am" && chord != u"Em";
}

void settleSymbols(std::vector<RowItem>& items, TextView line, std::size_t index,
                   const ChordReading& reading) {
    if (items.size() > 1)
        SymbolSettler(items, line, index, reading).settle();
}

}  // namespace melvorin
