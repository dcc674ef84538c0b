#include "chords/Transpose.h"

#include <algorithm>
#include <utility>

#include "chords/ChordLine.h"

namespace melvorin {

namespace {

constexpr std::size_t accidentalIndex(char16_t accidental) {
    return accidental == u'#' ? 1 : accidental == u'b' ? 2 : 0;
}

// Room enough for a transposed line. It has at most twice the characters, realigned or not: every
// note grows by one at most, and a token that is pushed stands behind something that has at most
// doubled. The last name is written with up to two characters too many.
constexpr std::size_t growthBound(std::size_t length) {
    return 2 * length + 2;
}

// Lets `write` fill the end of `out`: it is given room for `bound` characters and returns the end
// of what it has written.
template <class Write>
void appendBounded(Text& out, std::size_t bound, Write write) {
    const std::size_t start = out.size();
    out.resize(start + bound);
    const char16_t* const end = write(out.data() + start);
    out.resize(static_cast<std::size_t>(end - out.data()));
}

// The column of a token: where it stood, unless the token before ends there or later.
std::size_t placeToken(std::size_t column, std::size_t endBefore, bool first) {
    return first ? column : std::max(column, endBefore + 1);
}

// Follows a line of nothing but writing, where nobody asks what became of what.
struct NoWatcher {
    static constexpr bool isFixed(std::size_t /*column*/) { return false; }
    void gap(ColumnRange /*before*/, ColumnRange /*after*/) {}
    void note(ColumnRange /*before*/, ColumnRange /*after*/) {}
    void token(ColumnRange /*before*/, ColumnRange /*after*/) {}
};

// Knows the fixed characters, and keeps a record of the changes. Columns are asked for in rising
// order, now and then one ahead.
class Recorder {
  public:
    Recorder(std::span<const ColumnRange> fixed, MovedLine& moved) : fixed_(fixed), moved_(moved) {}

    bool isFixed(std::size_t column) {
        while (!fixed_.empty() && fixed_[0].column + fixed_[0].length <= column) {
            fixed_ = fixed_.subspan(1);
        }
        return !fixed_.empty() && fixed_[0].column <= column;
    }

    void gap(ColumnRange before, ColumnRange after) {
        const std::size_t kept = std::min(before.length, after.length);
        if (before.length != after.length) {
            moved_.edits.push_back(
                {{before.column, before.length - kept}, {after.column, after.length - kept}});
        }
    }

    void note(ColumnRange before, ColumnRange after) { moved_.edits.push_back({before, after}); }

    void token(ColumnRange before, ColumnRange after) { moved_.tokens.push_back({before, after}); }

  private:
    std::span<const ColumnRange> fixed_;
    MovedLine& moved_;
};

template <class Watcher>
bool separates(TextView line, std::size_t column, Watcher& watcher) {
    return isTokenSeparator(line[column]) && !watcher.isFixed(column);
}

// Puts what becomes of the tokens of a line into their columns. `put` is given the column of one of
// them, writes its successor and returns the column behind it.
template <class Watcher, class Writer, class Put>
void realign(TextView line, Watcher& watcher, Writer& out, Put put) {
    std::size_t column = 0;
    for (bool first = true;; first = false) {
        const std::size_t gap = column;
        while (column < line.size() && separates(line, column, watcher)) {
            ++column;
        }
        const bool atEnd = column == line.size();
        const std::size_t gapAfter = out.column();
        out.fillTo(atEnd ? column : placeToken(column, gapAfter, first));
        watcher.gap({gap, column - gap}, {gapAfter, out.column() - gapAfter});
        if (atEnd) {
            return;
        }
        const std::size_t token = column;
        const std::size_t start = out.column();
        column = put(token);
        watcher.token({token, column - token}, {start, out.column() - start});
    }
}

// Writes a line of any length.
struct LineWriter {
    Text line;

    std::size_t column() const { return line.size(); }
    void fillTo(std::size_t column) { line.resize(std::max(column, line.size()), u' '); }
};

}  // namespace

// Writes into a line of which there is enough, and knows the column it is at.
class KeyChange::ColumnWriter {
  public:
    explicit ColumnWriter(char16_t* begin) : begin_(begin), end_(begin) {}

    std::size_t column() const { return static_cast<std::size_t>(end_ - begin_); }
    char16_t* end() const { return end_; }
    void put(char16_t c) { *end_++ = c; }
    void put(const Name& name) {
        // Always all three: what is too much is written over, and there is no loop to predict.
        std::copy_n(name.chars.begin(), name.chars.size(), end_);
        end_ += name.length;
    }
    void extendTo(char16_t* end) { end_ = end; }
    void fillTo(std::size_t column) {
        while (this->column() < column) {
            put(u' ');
        }
    }

  private:
    char16_t* begin_;
    char16_t* end_;
};

Text ReplaceAll(TextView text, TextView find, TextView replacement) {
    if (find.empty() || replacement.find(find) != TextView::npos ||
        text.find(find) == TextView::npos) {
        return Text(text);
    }
    // `done` never holds an occurrence, so the first one to appear at its end is the leftmost of
    // the whole text. What replaces it is read like the text behind it: it may complete another
    // occurrence with what stands before it, and never has to be searched from further back.
    Text done;
    Text ahead(text.rbegin(), text.rend());
    while (!ahead.empty()) {
        done += ahead.back();
        ahead.pop_back();
        if (done.ends_with(find)) {
            done.resize(done.size() - find.size());
            ahead.append(replacement.rbegin(), replacement.rend());
        }
    }
    return done;
}

Text TransposeLine(TextView line, Direction direction, Spelling spelling) {
    Text transposed;
    KeyChange(direction, spelling).appendTransposed(line, transposed);
    return transposed;
}

Text RealignLine(TextView before, TextView transposed) {
    std::vector<ChordToken> tokens;  // still to be written, the next one last
    ScanTokens(transposed, tokens);
    NoWatcher nobody;
    LineWriter out;
    std::size_t end = 0;  // of the last one written
    const auto putNext = [&] {
        out.line += tokens.back().text;
        tokens.pop_back();
        end = out.column();
    };
    realign(before, nobody, out, [&](std::size_t column) {
        while (column < before.size() && !separates(before, column, nobody)) {
            ++column;
        }
        if (!tokens.empty()) {
            putNext();
        }
        return column;
    });
    out.line.resize(end);
    while (!tokens.empty()) {
        out.fillTo(placeToken(0, end, end == 0));
        putNext();
    }
    out.fillTo(before.size());
    return std::move(out.line);
}

std::vector<ColumnRange> noteColumns(TextView line, std::span<const ColumnRange> fixed) {
    MovedLine nothing;
    Recorder pictures(fixed, nothing);
    std::vector<ColumnRange> notes;
    for (std::size_t column = 0; column < line.size(); ++column) {
        if (!isNoteLetter(line[column]) || pictures.isFixed(column))
            continue;
        const std::size_t longest = noteLength(line.substr(column));
        std::size_t length = 1;
        while (length < longest && !pictures.isFixed(column + length))
            ++length;
        notes.push_back({column, length});
        column += length - 1;
    }
    return notes;
}

MovedLine renameNotes(TextView line, std::span<const TextView> names,
                      std::span<const ColumnRange> fixed) {
    const std::vector<ColumnRange> notes = noteColumns(line, fixed);
    MovedLine moved;
    Recorder recorder(fixed, moved);
    LineWriter out;
    std::size_t next = 0;
    realign(line, recorder, out, [&](std::size_t column) {
        while (column < line.size() && !separates(line, column, recorder)) {
            if (next == std::min(notes.size(), names.size()) || notes[next].column != column) {
                out.line += line[column++];
                continue;
            }
            const std::size_t start = out.column();
            out.line += names[next];
            if (names[next] != line.substr(column, notes[next].length))
                recorder.note(notes[next], {start, names[next].size()});
            column += notes[next++].length;
        }
        return column;
    });
    // No blanks behind a shorter last chord: a way up and down ends where it began.
    const ColumnRange last = moved.tokens.empty() ? ColumnRange() : moved.tokens.back().after;
    const bool endsInToken = !line.empty() && !separates(line, line.size() - 1, recorder);
    if (endsInToken && out.column() > last.column + last.length) {
        out.line.resize(last.column + last.length);
        moved.edits.pop_back();
    }
    moved.line = std::move(out.line);
    moved.changed = moved.line != line;
    return moved;
}

KeyChange::KeyChange(Direction direction, Spelling spelling, unsigned steps)
    : direction_(direction), spelling_(spelling), steps_(steps) {
    for (char16_t letter = u'A'; letter <= u'G'; ++letter) {
        for (const TextView accidental : {TextView(u""), TextView(u"#"), TextView(u"b")}) {
            const Text note = letter + Text(accidental);
            const char16_t mark = accidental.empty() ? u'\0' : accidental[0];
            Name& name = names_[letterIndex(letter)][accidentalIndex(mark)];
            name.length = static_cast<std::size_t>(writeLongNote(note, name.chars.data()) -
                                                   name.chars.data());
        }
    }
}

// Writes a letter with any number of accidentals behind it. Only a name moves with its accidental;
// what else stands behind the letter stays, and becomes part of a name as soon as the letter in
// front makes one with it: "Cb" goes up to "C#b", that to "Db", and that to "D".
char16_t* KeyChange::writeLongNote(TextView note, char16_t* out) const {
    const int way = direction_ == Direction::Up ? 1 : -1;
    TextView name = note.substr(0, 1);
    TextView rest = note.substr(1);
    for (unsigned step = 0; step < steps_; ++step) {
        int moved = halfSteps(name) + way;
        if (name.size() == 1 && !rest.empty() && isNoteName(name[0], rest[0])) {
            moved += halfSteps(rest[0]);
            rest.remove_prefix(1);
        }
        name = noteName(moved, spelling_);
    }
    out = std::copy(name.begin(), name.end(), out);
    return std::copy(rest.begin(), rest.end(), out);
}

// Moves the note at `column` and returns the column behind its last accidental.
template <class Watcher>
std::size_t KeyChange::moveNote(TextView line, std::size_t column, Watcher& watcher,
                                ColumnWriter& out) const {
    std::size_t end = column + 1;
    while (end < line.size() && isAccidental(line[end]) && !watcher.isFixed(end)) {
        ++end;
    }
    const std::size_t start = out.column();
    if (end - column <= 2) {
        const char16_t accidental = end - column == 2 ? line[column + 1] : u'\0';
        out.put(names_[letterIndex(line[column])][accidentalIndex(accidental)]);
    } else {
        out.extendTo(writeLongNote(line.substr(column, end - column), out.end()));
    }
    watcher.note({column, end - column}, {start, out.column() - start});
    return end;
}

template <class Watcher>
char16_t* KeyChange::moveInto(char16_t* begin, TextView line, Watcher& watcher) const {
    ColumnWriter out(begin);
    realign(line, watcher, out, [&](std::size_t column) {
        while (column < line.size() && !separates(line, column, watcher)) {
            if (isNoteLetter(line[column]) && !watcher.isFixed(column)) {
                column = moveNote(line, column, watcher, out);
            } else {
                out.put(line[column++]);
            }
        }
        return column;
    });
    return out.end();
}

void KeyChange::appendMoved(TextView line, Text& out) const {
    appendBounded(out, growthBound(line.size()), [&](char16_t* begin) {
        NoWatcher nobody;
        return moveInto(begin, line, nobody);
    });
}

MovedLine KeyChange::moveLine(TextView line, std::span<const ColumnRange> fixed) const {
    MovedLine moved;
    appendBounded(moved.line, growthBound(line.size()), [&](char16_t* begin) {
        Recorder recorder(fixed, moved);
        return moveInto(begin, line, recorder);
    });
    moved.changed = moved.line != line;
    return moved;
}

void KeyChange::appendTransposed(TextView line, Text& out) const {
    appendBounded(out, growthBound(line.size()), [&](char16_t* begin) {
        NoWatcher nobody;
        ColumnWriter writer(begin);
        for (std::size_t column = 0; column < line.size();) {
            if (isNoteLetter(line[column])) {
                column = moveNote(line, column, nobody, writer);
            } else {
                writer.put(line[column++]);
            }
        }
        return writer.end();
    });
}

}  // namespace melvorin
