// Words with chords in brackets between them: "[Am]word".
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include "base/Text.h"
#include "chords/ChordRow.h"

namespace melvorin {

// A bracket that is not closed within so many UTF-16 units is text; so the search for its partner
// stays short on a line of nothing but brackets.
inline constexpr std::size_t kLongestBracket = 80;

struct BracketedLine {
    Text lyrics;  // without the chords; blanks at its end are left out
    // In the columns of their syllables. Where a chord needs more room than its syllables give,
    // the blank behind them is stretched, or the word with hyphens: "ri--ver".
    std::vector<RowItem> chords;
};

// Nothing where no bracket holds a chord. Other brackets, and those without a partner, are text,
// unless `reading.everyBracket`: then "[*slowly]" is a remark, and so is what cannot be a chord,
// which keeps its brackets. `index` is where the line begins in the numbers of the items, `column`
// where on the screen. `reading` is what the symbols of the song mean, `memory` as for `readRow`.
std::optional<BracketedLine> readBrackets(TextView line, std::size_t column = 0,
                                          std::size_t index = 0, const ChordReading& reading = {},
                                          RowMemory* memory = nullptr);

// The same for brackets that are known to hold what is to stand above the words, each as one item
// that is shown as `shown` says of what is in it.
std::optional<BracketedLine> placeBrackets(TextView line,
                                           const std::function<Text(TextView)>& shown);

// True where a bracket is opened and not closed, or closed and not opened.
bool hasLooseBracket(TextView line);

// True for a character that a hyphen of a stretched word may stand beside.
bool isStretchable(char16_t c);

}  // namespace melvorin
