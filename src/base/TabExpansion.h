// Tabs turned into blanks, so that chords and syllables stay in their columns.
#pragma once

#include "base/Text.h"

namespace melvorin {

// Takes a text in parts and expands its tabs. Every TAB becomes 1 to 8 blanks, up to the next
// column that is a multiple of 8. Columns count UTF-16 units since the last line end (CR, LF, CR LF
// or a soft line break, VT); everything else is unchanged.
class TabExpander {
  public:
    // The text's first line starts at `startColumn`, where it is inserted within a line.
    explicit TabExpander(std::size_t startColumn = 0) : column_(startColumn) {}
    // Appends the next part, expanded, to `expanded`. Linear.
    void append(TextView part, Text& expanded);

  private:
    std::size_t column_;
};

// A whole text at once.
Text expandTabs(TextView text, std::size_t startColumn = 0);

}  // namespace melvorin
