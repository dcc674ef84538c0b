// The rows of a document's tables, followed word by word. A control drops the text of a row that is
// not finished, and some cells are more than it can hold.
#pragma once

#include <cstddef>
#include <string_view>

#include "rtf/RtfLexer.h"

namespace melvorin {

// Cells of a table row. A control crashes at 65 and loses one at 64.
inline constexpr std::size_t kMaxRtfCells = 63;

class RtfRows {
  public:
    // A word of the document's text. False when the document must be refused: nested tables, too
    // many cells, or more than the row defines.
    bool word(const RtfToken& token);
    // A character of the document's text.
    void text();
    static bool isRowWord(std::string_view name);
    // At the document's end: no row is left open, and none had text from outside in its middle.
    bool finished() const { return !isOpen_ && !isBroken_; }

  private:
    bool endCell();
    bool endRow();

    bool inTable_ = false;   // paragraphs are in a table
    bool isOpen_ = false;    // a row has begun and not ended
    bool isBroken_ = false;  // text outside the table stands in the middle of a row
    std::size_t defined_ = 0;
    std::size_t used_ = 0;
    bool hasText_ = false;  // since the last cell
};

}  // namespace melvorin
