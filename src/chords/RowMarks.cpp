#include "chords/RowMarks.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "chords/CellWidth.h"
#include "chords/RowSymbols.h"

namespace melvorin {
namespace {

constexpr TextView kTimes = u"xX\u00D7";
constexpr TextView kDigits = u"0123456789";

// "times" as songs have it behind a number.
constexpr TextView kTimesWords[] = {u"times",
                                    u"vezes",
                                    u"veces",
                                    u"fois",
                                    u"volte",
                                    u"mal",
                                    u"razy",
                                    u"kr\u00E1t",
                                    u"raz",
                                    u"gange",
                                    u"\u0440\u0430\u0437",
                                    u"keer",
                                    u"ganger",
                                    u"\u0440\u0430\u0437\u0430"};

bool isNumber(TextView text) {
    return !text.empty() && text.size() < 3 && consistsOf(text, kDigits);
}

char16_t closerOf(char16_t opener) {
    switch (opener) {
        case u'(':
            return u')';
        case u'[':
            return u']';
        case u'{':
            return u'}';
        default:
            return 0;
    }
}

class MarkJoiner {
  public:
    MarkJoiner(std::vector<RowItem>& items, TextView line, std::size_t index,
               const ChordReading& reading)
        : items_(items), line_(line), index_(index), reading_(reading) {}
    void join();

  private:
    TextView textOf(const RowItem& item) const {
        return line_.substr(item.index - index_, item.length);
    }
    std::size_t enclosedFrom(std::size_t at) const;
    bool isTimes(std::size_t at) const;
    std::size_t directionEnd(std::size_t at) const;
    void put(std::size_t first, std::size_t last, RowItemKind kind);

    std::vector<RowItem>& items_;
    TextView line_;
    std::size_t index_;
    const ChordReading& reading_;
    std::size_t kept_ = 0;
};

// The last item of a remark in brackets that begins with item `at`; nothing but chords is none, and
// nor is what has no end.
std::size_t MarkJoiner::enclosedFrom(std::size_t at) const {
    constexpr std::size_t longest = 12;
    const TextView first = textOf(items_[at]);
    const char16_t closer = closerOf(first.front());
    if (closer == 0)
        return items_.size();
    bool hasWord = false;
    for (std::size_t i = at; i < items_.size() && i < at + longest; ++i) {
        hasWord = hasWord || items_[i].kind == RowItemKind::Word;
        const TextView text = textOf(items_[i]);
        if (text.back() == closer)
            return hasWord && (i > at || (text.size() > 2 && !mayBeRefused(text, reading_)))
                       ? i
                       : items_.size();
        if (text.find(closer) != TextView::npos)
            break;
    }
    return items_.size();
}

// Whether item `at` and the next one are "x 4", "} 2".
bool MarkJoiner::isTimes(std::size_t at) const {
    const TextView sign = textOf(items_[at]);
    const bool begins = sign.size() == 1 && (isOneOf(kTimes, sign[0]) || sign[0] == u'}');
    return begins && at + 1 < items_.size() && isNumber(textOf(items_[at + 1]));
}

// The last item of "D.C. al Fine" that begins with item `at`, or of "Fine", "To Coda" at the end of
// a row of chords; behind the row where there is none.
std::size_t MarkJoiner::directionEnd(std::size_t at) const {
    const std::size_t left = items_.size() - at;
    if (items_[at].kind == RowItemKind::NoChord) {
        const bool isLong = isDirection(textOf(items_[at])) && left > 2 &&
                            textOf(items_[at + 1]) == u"al" && isGoal(textOf(items_[at + 2]));
        return isLong ? at + 2 : items_.size();
    }
    const TextView first = textOf(items_[at]);
    const bool isTo = left == 2 && (first == u"To" || first == u"to" || first == u"al");
    const bool isEnd = (left == 1 || isTo) && isGoal(textOf(items_.back()));
    return isEnd && std::any_of(items_.begin(), items_.begin() + static_cast<std::ptrdiff_t>(kept_),
                                isFirm)
               ? items_.size() - 1
               : items_.size();
}

void MarkJoiner::put(std::size_t first, std::size_t last, RowItemKind kind) {
    RowItem joined = std::move(items_[first]);
    const RowItem& end = items_[last];
    if (last > first) {
        joined.length = end.index + end.length - joined.index;
        joined.cells = end.column + end.cells - joined.column;
    }
    joined.kind = kind;
    joined.wordToo = WordToo::No;
    joined.shown = withOrdinaryBlanks(textOf(joined), joined.column);
    items_[kept_++] = std::move(joined);
}

void MarkJoiner::join() {
    for (std::size_t at = 0; at < items_.size(); ++at) {
        const bool isWord = items_[at].kind == RowItemKind::Word;
        const std::size_t end = items_[at].length == 0 ? items_.size() : enclosedFrom(at);
        const bool isCounted = isWord && at + 1 < items_.size() && isNumber(textOf(items_[at])) &&
                               std::find(std::begin(kTimesWords), std::end(kTimesWords),
                                         textOf(items_[at + 1])) != std::end(kTimesWords);
        const std::size_t direction = directionEnd(at);
        if (end < items_.size()) {
            put(at, end, RowItemKind::Remark);
            at = end;
        } else if (direction < items_.size()) {
            put(at, direction, RowItemKind::NoChord);
            at = direction;
        } else if (isWord && isTimes(at)) {
            put(at, at + 1, RowItemKind::Repeat);
            ++at;
        } else if (isCounted) {
            put(at, at + 1, RowItemKind::Remark);
            ++at;
        } else {
            if (kept_ != at)
                items_[kept_] = std::move(items_[at]);
            ++kept_;
        }
    }
    items_.resize(kept_);
}

}  // namespace

TextView withoutParentheses(TextView text) {
    const bool enclosed = text.size() > 2 && text.front() == u'(' && text.back() == u')';
    return enclosed ? text.substr(1, text.size() - 2) : text;
}

bool isBar(TextView text) {
    return text.find_first_of(kBars) != TextView::npos &&
           std::all_of(text.begin(), text.end(),
                       [](char16_t c) { return c == u':' || isOneOf(kBars, c); });
}

Text shownBar(TextView bar) {
    Text shown;
    for (std::size_t i = 0; i < bar.size(); ++i)
        shown += bar[i] != u':' ? u'/' : i == 0 ? u')' : u'(';
    return shown;
}

bool isNoChord(TextView text) {
    text = withoutParentheses(text);
    return text == u"N.C." || text == u"N.C" || text == u"NC" || text == u"N/C" ||
           text == u"n.c." || text == u"NC." || isDirection(text);
}

bool isDirection(TextView text) {
    return text == u"D.C." || text == u"D.S." || text == u"D.C" || text == u"D.S";
}

bool isGoal(TextView text) {
    return text == u"Fine" || text == u"Coda" || text == u"Segno";
}

bool isRepeat(TextView text) {
    text = withoutParentheses(text);
    if (text == u"bis")
        return true;
    if (text.size() < 2 || text.size() > 3)
        return false;
    return (isOneOf(kTimes, text.front()) && isNumber(text.substr(1))) ||
           (isOneOf(kTimes, text.back()) && isNumber(text.substr(0, text.size() - 1)));
}

bool isMeter(TextView text) {
    const std::size_t slash = text.find(u'/');
    if (slash == TextView::npos || !isNumber(text.substr(0, slash)))
        return false;
    const TextView unit = text.substr(slash + 1);
    return unit == u"2" || unit == u"4" || unit == u"8" || unit == u"16";
}

void joinMarks(std::vector<RowItem>& items, TextView line, std::size_t index,
               const ChordReading& reading) {
    const bool mayJoin = std::any_of(items.begin(), items.end(), [](const RowItem& item) {
        return item.kind == RowItemKind::Word;
    });
    if (mayJoin)
        MarkJoiner(items, line, index, reading).join();
}

}  // namespace melvorin
