#include <algorithm>
#include <utility>

#include "base/TabExpansion.h"
#include "chords/CellWidth.h"
#include "chords/ChordSpelling.h"
#include "chords/LeftOver.h"

namespace melvorin {
namespace {

constexpr char16_t kNoBreakBlank = 0xA0;

bool isWithin(std::size_t column, std::span<const ColumnRange> ranges) {
    return std::any_of(ranges.begin(), ranges.end(), [&](const ColumnRange& range) {
        return column >= range.column && column - range.column < range.length;
    });
}

bool isSolfege(const LeftOverLine& found) {
    return found.solfege != Solfege::None;
}

bool isCapital(char16_t c) {
    return (c >= u'A' && c <= u'Z') || (c >= 0xC0 && c <= 0xDE);
}

// A name of a song with German names, or a small one, in letters: "H" is "B", "as" is "Ab".
Text inLetters(TextView note, const LeftOverLine& found) {
    const bool isGerman = found.signs != GermanSigns::None;
    const ChordReading reading{isSolfege(found) ? Naming::Solfege
                               : isGerman       ? Naming::German
                                                : Naming::Letters,
                               found.smallMinors, false, false};
    const auto read = readNoteName(note, reading, NotePlace::Bass);
    const bool isOther =
        read && read->length == note.size() &&
        (read->isSmall || read->isSyllable || (isGerman && (read->isGerman || note == u"B")));
    return isOther ? Text(noteName(read->steps, read->spelling)) : Text(note);
}

// The name of the note that `change` makes of this one, in the same kind of signs.
Text movedNote(TextView note, const KeyChange& change, const LeftOverLine& found) {
    Text moved;
    const Text usual = usualNote(note);
    change.appendTransposed(inLetters(usual, found), moved);
    if (found.signs != GermanSigns::None)
        moved = germanName(moved, found.signs);
    if (isSolfege(found) && solfegeLength(usual) > 0)
        moved = solfegeName(moved, found.solfege, isCapital(usual[1]));
    if (usual[0] >= u'a')
        moved[0] += u'a' - u'A';
    if (note[0] >= 0xFF00) {
        for (char16_t& c : moved)
            c += 0xFEE0;
    } else if (note.find_first_of(u"\u266D\u266F", 1) != TextView::npos) {
        for (char16_t& c : moved)
            c = c == u'#' ? u'\u266F' : c == u'b' ? u'\u266D' : c;
    }
    return moved;
}

// Goes through the line gap by gap and run by run; a run is what stands between two gaps.
class LineMover {
  public:
    LineMover(TextView line, const LeftOverLine& found, const KeyChange& change,
              std::span<const ColumnRange> fixed)
        : line_(line), found_(found), change_(change), fixed_(fixed) {}
    MovedLine move();

  private:
    bool isBlank(std::size_t at) const { return isAnyBlank(line_[at]) && !isWithin(at, fixed_); }
    void takeGap();
    void takeRun();
    void takeNote(const ColumnRange& note);
    void replace(const ColumnRange& before, TextView after);

    TextView line_;
    const LeftOverLine& found_;
    const KeyChange& change_;
    std::span<const ColumnRange> fixed_;
    MovedLine moved_;
    std::size_t at_ = 0;        // in line_
    std::size_t expanded_ = 0;  // the same with the tabs before it expanded
    std::size_t note_ = 0;      // the next one
    std::size_t cell_ = 0;      // where the line had got to before it was moved
    std::size_t newCell_ = 0;
};

void LineMover::replace(const ColumnRange& before, TextView after) {
    if (line_.substr(before.column, before.length) != after)
        moved_.edits.push_back({before, {moved_.line.size(), after.size()}});
    moved_.line += after;
}

// Blanks go from the front of a gap, and come to it there, so that others keep their formats.
void LineMover::takeGap() {
    const std::size_t begin = at_;
    while (at_ < line_.size() && isBlank(at_))
        ++at_;
    const TextView gap = line_.substr(begin, at_ - begin);
    const Text plain = expandTabs(gap, expanded_);
    expanded_ += plain.size();
    const std::size_t cells = cellsOf(plain);
    cell_ += cells;
    const std::size_t least =
        begin == 0 || at_ == line_.size() ? 0 : std::min<std::size_t>(cells, 1);
    const std::size_t wanted =
        found_.inBrackets ? cells : std::max(cell_, newCell_ + least) - newCell_;
    newCell_ += wanted;
    TextView kept = plain;
    std::size_t keptCells = cells;
    while (keptCells > wanted) {
        keptCells -= cellsOf(kept.substr(0, 1));
        kept.remove_prefix(1);
    }
    const char16_t blank = plain.starts_with(kNoBreakBlank) ? kNoBreakBlank : u' ';
    const Text added(wanted - keptCells, blank);
    if (gap.size() != plain.size() || gap.find(u'\t') != TextView::npos) {
        replace({begin, gap.size()}, Text(added).append(kept));
        return;
    }
    replace({begin, gap.size() - kept.size()}, added);
    moved_.line += kept;
}

void LineMover::takeNote(const ColumnRange& note) {
    const Text name = movedNote(line_.substr(note.column, note.length), change_, found_);
    replace(note, name);
    newCell_ += cellsOf(name);
    at_ += note.length;
}

void LineMover::takeRun() {
    const MovedRange start{{at_, 0}, {moved_.line.size(), 0}};
    while (at_ < line_.size() && !isBlank(at_)) {
        while (note_ < found_.notes.size() && found_.notes[note_].column < at_)
            ++note_;
        const std::size_t begin = at_;
        if (note_ < found_.notes.size() && found_.notes[note_].column == at_ &&
            found_.notes[note_].length <= line_.size() - at_ && !isWithin(at_, fixed_)) {
            takeNote(found_.notes[note_]);
        } else {
            const bool pair = line_[at_] >= 0xD800 && line_[at_] < 0xDC00 && at_ + 1 < line_.size();
            at_ += pair ? 2 : 1;
            moved_.line += line_.substr(begin, at_ - begin);
            newCell_ += cellsOf(line_.substr(begin, at_ - begin));
        }
        cell_ += cellsOf(line_.substr(begin, at_ - begin));
        expanded_ += at_ - begin;
    }
    const std::size_t length = at_ - start.before.column;
    moved_.tokens.push_back({{start.before.column, length},
                             {start.after.column, moved_.line.size() - start.after.column}});
}

MovedLine LineMover::move() {
    for (;;) {
        takeGap();
        if (at_ == line_.size())
            break;
        takeRun();
    }
    moved_.changed = moved_.line != line_;
    return std::move(moved_);
}

}  // namespace

MovedLine moveLeftOver(TextView line, const LeftOverLine& found, const KeyChange& change,
                       std::span<const ColumnRange> fixed) {
    return LineMover(line, found, change, fixed).move();
}

}  // namespace melvorin
