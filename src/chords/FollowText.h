// Text that knows where each of its characters came from, so that lines can be cut, joined and
// spaced anew, and a document then be edited into them with the formats of everything that stays.
//
// Text is that of the editing control. Positions count UTF-16 units of the whole document, columns
// are 0-based cells of the screen (CellWidth.h).
#pragma once

#include <cstddef>
#include <vector>

#include "base/Text.h"

namespace melvorin {

// A character in a diagram font, which the caller has measured.
struct DiagramCells {
    std::size_t position = 0;  // in the document
    std::size_t cells = 1;     // at least 1
};

// Whole lines of a document, one below the other. The last one comes without its end.
struct Excerpt {
    std::size_t start = 0;  // position of the first character
    Text chars;
    std::vector<DiagramCells> diagrams;  // those of the excerpt, in order

    std::size_t end() const { return start + chars.size(); }
};

// `length` characters at `position` give way to `text`.
struct TextEdit {
    std::size_t position = 0;
    std::size_t length = 0;
    Text text;
};

enum class Origin {
    New,       // blanks and line ends that were nowhere before
    Document,  // the character stood elsewhere in the document
    Incoming,  // the character is one of what is typed, pasted or put in
};

// An edit of the document whose new text may bring its formats from where it was. What is new takes
// those of its neighbours, like typed text.
struct FollowEdit {
    std::size_t position = 0;
    std::size_t length = 0;
    Text text;
    Origin origin = Origin::New;
    std::size_t from =
        0;  // where `text` begins in the document before the edits, or in the incoming text

    friend bool operator==(const FollowEdit&, const FollowEdit&) = default;
};

// Edits stand in the order of the document, with positions from before all of them; to be made from
// the last to the first. Several may have one position: the first may take characters away, the
// others insert. `text` begins at position `start`.
void applyEdits(Text& text, const std::vector<FollowEdit>& edits, std::size_t start = 0);

// Where a position from before the edits is after them: in front of what comes in there, and behind
// what took the place of its surroundings.
std::size_t positionAfter(const std::vector<FollowEdit>& edits, std::size_t position);

struct Trace {
    Origin origin = Origin::New;
    std::size_t from = 0;   // position in the document, or index in the incoming text
    std::size_t cells = 0;  // of a diagram; 0 for writing
};

class FollowText {
  public:
    FollowText() = default;
    // `from` is where the first character stands.
    explicit FollowText(TextView chars, Origin origin = Origin::New, std::size_t from = 0);

    TextView chars() const { return chars_; }
    std::size_t size() const { return chars_.size(); }
    bool empty() const { return chars_.empty(); }
    const Trace& trace(std::size_t index) const { return traces_[index]; }
    Trace& trace(std::size_t index) { return traces_[index]; }

    FollowText part(std::size_t begin, std::size_t end = Text::npos) const;
    void append(const FollowText& other);
    void appendBlanks(std::size_t count);

    bool hasDiagrams() const;
    // The line as it would read without its diagrams, each of them a blank.
    Text writing() const;
    // Column of every unit, and behind the last one the width. The second half of a pair and a
    // combining mark have the column behind their character. The text begins at `column`.
    std::vector<std::size_t> columns(std::size_t column = 0) const;
    std::size_t cells(std::size_t column = 0) const { return columns(column).back() - column; }
    bool isBlank() const;

  private:
    Text chars_;
    std::vector<Trace> traces_;
};

struct FollowLine {
    FollowText text;
    FollowText end;  // CR, as a rule; empty behind the last line
};

using FollowLines = std::vector<FollowLine>;

// A place between two characters.
struct LinePlace {
    std::size_t line = 0;
    std::size_t index = 0;

    friend bool operator==(const LinePlace&, const LinePlace&) = default;
};

FollowLines linesOf(const Excerpt& excerpt);
// The lines of a text, at least one; the last one has no end.
FollowLines cutAtLineEnds(const FollowText& text);
// `position` lies within the excerpt.
LinePlace placeOf(const FollowLines& lines, std::size_t start, std::size_t position);
std::size_t positionOf(const FollowLines& lines, std::size_t start, LinePlace place);
FollowText joined(const FollowLines& lines);
// Lines `first` to `last`, the latter included, give way to `lines`.
void replaceLines(FollowLines& all, std::size_t first, std::size_t last, const FollowLines& lines);

// The edits that make `text` of the document between two positions. As much as can be stays where
// it is; what has changed places is carried.
std::vector<FollowEdit> editsTo(const FollowText& text, std::size_t begin, std::size_t end);

}  // namespace melvorin
