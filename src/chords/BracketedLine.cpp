#include "chords/BracketedLine.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "chords/CellWidth.h"
#include "chords/RowMarks.h"
#include "chords/RowSymbols.h"

namespace melvorin {
namespace {

class BracketReader {
  public:
    BracketReader(TextView line, std::size_t column, std::size_t index, const ChordReading& reading,
                  RowMemory* memory, const std::function<Text(TextView)>* shown = nullptr)
        : line_(line),
          column_(column),
          index_(index),
          reading_(reading),
          memory_(memory),
          shown_(shown) {}
    std::optional<BracketedLine> read();

  private:
    std::size_t bracketAt(std::size_t at);
    bool addChords(TextView inside, std::size_t at);
    void addRemark(TextView bracket, std::size_t at);
    void place(std::vector<RowItem> row, std::size_t end);
    void addText(TextView text);
    void makeRoom(std::size_t end, std::size_t roomEnd);
    char16_t textBehind(std::size_t at);
    std::optional<std::size_t> blankInFront() const;

    TextView line_;
    std::size_t column_;  // cell of the next character
    std::size_t index_;
    const ChordReading& reading_;
    RowMemory* memory_;
    const std::function<Text(TextView)>* shown_;
    std::size_t roomEnd_ = 0;       // first cell behind the last chord and a blank
    std::size_t markRoomEnd_ = 0;   // the same for what could not be read, on its own line
    std::size_t behind_ = 0;        // the end of the brackets looked at last
    std::size_t stretchedEnd_ = 0;  // of the lyrics, where they end in hyphens of ours
    BracketedLine result_;
};

void BracketReader::addText(TextView text) {
    const Text plain = withOrdinaryBlanks(text, column_);
    result_.lyrics += plain;
    column_ += cellsOf(plain);
}

// The character behind the brackets that follow each other from `at` on; 0 at the end of the line.
char16_t BracketReader::textBehind(std::size_t at) {
    behind_ = std::max(behind_, at);
    while (behind_ < line_.size() && line_[behind_] == u'[') {
        const std::size_t close = line_.substr(0, behind_ + kLongestBracket).find(u']', behind_);
        if (close == TextView::npos)
            break;
        behind_ = close + 1;
    }
    return behind_ < line_.size() ? line_[behind_] : u'\0';
}

// Lyrics stretch where a blank is, on either side; a word with hyphens, which nobody takes for a
// part of it.
void BracketReader::makeRoom(std::size_t end, std::size_t roomEnd) {
    if (column_ >= roomEnd)
        return;
    const char16_t before = result_.lyrics.empty() ? u' ' : result_.lyrics.back();
    const char16_t behind = textBehind(end);
    std::size_t room = roomEnd - column_;
    char16_t filler = u' ';
    const bool isStretched = stretchedEnd_ > 0 && stretchedEnd_ == result_.lyrics.size();
    if (isStretchable(behind) && (isStretchable(before) || isStretched)) {
        filler = u'-';
        room = std::max<std::size_t>(room, isStretched ? 1 : 2);
        stretchedEnd_ = result_.lyrics.size() + room;
    }
    std::size_t at = result_.lyrics.size();
    // Wide letters are words of their own, or parts of words that nobody would stretch otherwise.
    const bool isBetweenWide =
        cellsOf(TextView(&before, 1)) > 1 && cellsOf(TextView(&behind, 1)) > 1;
    // Syllables with hyphens of their own come apart behind them: "le- lu-jah".
    const TextView lyrics = result_.lyrics;
    const bool isSyllable = before == u'-' && lyrics.size() > 1 &&
                            isStretchable(lyrics[lyrics.size() - 2]) && isStretchable(behind);
    if (filler == u' ' && !isSyllable && !isAnyBlank(before) &&
        (behind == 0 || !isAnyBlank(behind)) && !isBetweenWide) {
        const auto blank = blankInFront();
        if (!blank)
            return;
        at = *blank;
    }
    result_.lyrics.insert(at, room, filler);
    column_ += room;
}

// Where blanks may come in front of the signs that the lyrics end with, as of a quotation mark: no
// chord stands behind that place. One that stands over the first of them stays where it is.
std::optional<std::size_t> BracketReader::blankInFront() const {
    constexpr std::size_t longest = 4;
    std::size_t at = result_.lyrics.size();
    while (at > 0 && result_.lyrics.size() - at < longest &&
           !isStretchable(result_.lyrics[at - 1]) && !isAnyBlank(result_.lyrics[at - 1]))
        --at;
    const bool isBehindWord = at > 0 && !isAnyBlank(result_.lyrics[at - 1]);
    if (at == result_.lyrics.size() || isBehindWord)
        return std::nullopt;
    const std::size_t column = column_ - cellsOf(TextView(result_.lyrics).substr(at));
    const bool isFree = result_.chords.empty() || result_.chords.back().column <= column;
    return isFree ? std::optional(at) : std::nullopt;
}

void BracketReader::place(std::vector<RowItem> row, std::size_t end) {
    const RowItemKind kind = row.front().kind;
    const bool isMark = kind == RowItemKind::Repeat || kind == RowItemKind::NoChord;
    makeRoom(end, isMark ? std::max(roomEnd_, markRoomEnd_) : roomEnd_);
    const std::size_t first = row.front().column;
    std::vector<RowItem> inLine;
    for (RowItem& item : row) {
        const bool mayAbove = item.kind == RowItemKind::Sign || item.kind == RowItemKind::Repeat;
        const bool standsAbove = mayAbove && item.column > first;
        item.column -= first;
        if (!standsAbove)
            inLine.push_back(item);
        item.column += column_;
    }
    roomEnd_ = std::max(roomEnd_, column_) + cellsOf(writeRow(inLine)) + 1;
    if (isMark)
        markRoomEnd_ = std::max(markRoomEnd_, roomEnd_);
    result_.chords.insert(result_.chords.end(), std::make_move_iterator(row.begin()),
                          std::make_move_iterator(row.end()));
}

// What is in the bracket at `at`, where it is chords.
bool BracketReader::addChords(TextView inside, std::size_t at) {
    if (shown_ != nullptr) {
        RowItem item;
        item.kind = RowItemKind::Chord;
        // Neighbours that touch would be one chord.
        item.index = index_ + at + 1;
        item.length = inside.size();
        item.shown = (*shown_)(inside);
        place({std::move(item)}, at + inside.size() + 2);
        return true;
    }
    std::vector<RowItem> row = readRow(inside, 0, index_ + at + 1, reading_, memory_);
    // "[x2]" and "[/]" alone are text too, and "[Go]" is.
    const bool isWord = row.size() == 1 && row[0].wordToo == WordToo::Anywhere &&
                        !reading_.everyBracket &&
                        TextView(u"oa").find(inside.back()) != TextView::npos;
    const bool hasChord =
        reading_.everyBracket || std::any_of(row.begin(), row.end(), [](const RowItem& item) {
            return item.kind == RowItemKind::Chord || item.kind == RowItemKind::Unknown ||
                   item.kind == RowItemKind::NoChord;
        });
    const bool isAll = std::all_of(row.begin(), row.end(), [&](const RowItem& item) {
        return item.kind != RowItemKind::Word && item.kind != RowItemKind::Remark &&
               (item.kind != RowItemKind::Separator || reading_.everyBracket);
    });
    if (isWord || !hasChord || !isAll)
        return false;
    place(std::move(row), at + inside.size() + 2);
    return true;
}

// "[*slowly]" is "*slowly" to its readers, "[Fine]" is "Fine"; other brackets tell that they could
// not be read.
void BracketReader::addRemark(TextView bracket, std::size_t at) {
    RowItem item;
    const bool isRemark = bracket[1] == u'*';
    const bool isMark = isGoal(trimmed(bracket.substr(1, bracket.size() - 2)));
    item.kind = isRemark || isMark ? RowItemKind::Remark : RowItemKind::Unread;
    item.index = index_ + at + 1;
    item.length = bracket.size() - 2;
    item.column = column_;
    const TextView remark =
        trimmed(bracket.substr(isRemark ? 2 : 1, item.length - (isRemark ? 1 : 0)));
    item.shown = isRemark ? withOrdinaryBlanks(Text(u"*").append(remark))
                 : isMark ? Text(remark)
                          : withOrdinaryBlanks(bracket);
    if (isRemark && remark.empty())
        return;
    if (item.kind == RowItemKind::Unread) {
        // At the start of a line of the chart it would be a label.
        if (column_ == 0 && result_.chords.empty() && !mayBeRefused(remark, reading_))
            addText(u" ");
        makeRoom(at + bracket.size(), markRoomEnd_);
        item.column = column_;
        markRoomEnd_ = column_ + cellsOf(item.shown) + 1;
    }
    result_.chords.push_back(std::move(item));
}

// Takes the bracket at `at` where it is no text, and returns its length, else 0.
std::size_t BracketReader::bracketAt(std::size_t at) {
    const TextView ahead = line_.substr(at, kLongestBracket);
    const std::size_t close = ahead.find_first_of(u"[]", 1);
    if (close == TextView::npos || ahead[close] != u']')
        return 0;
    const TextView inside = ahead.substr(1, close - 1);
    if (inside.empty() || trimmed(inside).empty())
        return 0;
    const bool isRemark = reading_.everyBracket && inside[0] == u'*' && inside.size() > 1;
    if (!isRemark && addChords(inside, at))
        return close + 1;
    if (!reading_.everyBracket)
        return 0;
    addRemark(ahead.substr(0, close + 1), at);
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
        const std::size_t length = bracketAt(at);
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

std::optional<BracketedLine> readBrackets(TextView line, std::size_t column, std::size_t index,
                                          const ChordReading& reading, RowMemory* memory) {
    if (line.find(u'[') == TextView::npos)
        return std::nullopt;
    return BracketReader(line, column, index, reading, memory).read();
}

std::optional<BracketedLine> placeBrackets(TextView line,
                                           const std::function<Text(TextView)>& shown) {
    const ChordReading plain;
    return BracketReader(line, 0, 0, plain, nullptr, &shown).read();
}

// A hyphen parts letters of alphabets; not those that take two cells, nor those that run from right
// to left.
bool isStretchable(char16_t c) {
    const bool isRightToLeft = c >= 0x590 && c < 0x900;
    return isDigit(c) || (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') || c == u'\'' ||
           c == 0x2019 || (c >= 0xC0 && c < 0x1100 && !isRightToLeft && c != 0xD7 && c != 0xF7) ||
           (c >= 0x1E00 && c < 0x2000);
}

bool hasLooseBracket(TextView line) {
    bool open = false;
    for (const char16_t c : line) {
        if ((c == u'[' && open) || (c == u']' && !open))
            return true;
        open = c == u'[' || (open && c != u']');
    }
    return open;
}

}  // namespace melvorin
