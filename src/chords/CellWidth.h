// Columns as a monospaced font shows them: most characters take one cell, East Asian ones two,
// combining marks none.
#pragma once

#include <cstddef>

#include "base/Text.h"

namespace melvorin {

// A character of a line and the cells it takes there.
struct CellCharacter {
    char32_t code = 0;       // U+FFFD for half a surrogate pair
    std::size_t index = 0;   // of its first UTF-16 unit in the line
    std::size_t length = 0;  // in UTF-16 units
    std::size_t column = 0;  // of its first cell
    std::size_t width = 0;   // in cells; a tab takes those up to the next multiple of 8
};

// Walks over a line, which comes without its line end, from left to right.
class CellReader {
  public:
    // The characters of `line` must outlive the reader. The line begins at `column`.
    explicit CellReader(TextView line, std::size_t column = 0) : line_(line), column_(column) {}
    // Puts the next character into `character`, or returns false behind the last one.
    bool next(CellCharacter& character);

  private:
    TextView line_;
    std::size_t index_ = 0;
    std::size_t column_ = 0;
};

// Every blank that text from the web is spaced with: tabs, no-break, thin and ideographic blanks,
// the blank of no width, and the line separators that are no line ends here.
constexpr bool isAnyBlank(char32_t code) {
    if (code < 0x1680)
        return code == U' ' || code == U'\t' || code == 0xA0 || code == 0x85 || code == 0x0B ||
               code == 0x0C;
    return (code >= 0x2000 && code <= 0x200B) || code == 0x3000 || code == 0xFEFF ||
           code == 0x2028 || code == 0x2029 || code == 0x202F || code == 0x205F || code == 0x1680;
}
// From 0 to 9; no other script's digits.
constexpr bool isDigit(char16_t c) {
    return c >= u'0' && c <= u'9';
}

// How many cells the line takes.
std::size_t cellsOf(TextView line);

// The line with each of its blanks, except ideographic ones, as the ordinary blanks that fill its
// cells.
Text withOrdinaryBlanks(TextView line, std::size_t column = 0);

// The line without blanks at its ends, and at its right end.
TextView trimmed(TextView line);
TextView trimmedRight(TextView line);

}  // namespace melvorin
