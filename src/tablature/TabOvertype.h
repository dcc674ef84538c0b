// Typing in a line of a tablature: what is typed takes the place of what stands there, so that
// every string keeps its length and the bars stay under one another.
//
// Indices count UTF-16 units of the line, which comes without its end. That the line is one of a
// tablature is for the caller to know. The string's letter in front of the staff, its bars and a
// remark behind it stay as they are.
#pragma once

#include <cstddef>
#include <optional>

#include "base/Text.h"

namespace melvorin {

// As many characters as `text` has, from `index` on, give way to it; none where only the caret
// moves.
struct TabChange {
    std::size_t index = 0;
    Text text;
    std::size_t caret = 0;

    friend bool operator==(const TabChange&, const TabChange&) = default;
};

// What is typed or pasted over the selection [begin, end), or at the caret where both are the same.
// It goes past bars; of a selection that is longer, the rest becomes dashes. Nothing where the
// control shall do it: behind the staff, where the staff is too short for it, and for text with a
// line end or with characters that do not take one cell each.
std::optional<TabChange> typedOverTab(TextView line, std::size_t begin, std::size_t end,
                                      TextView typed);

enum class TabErase { Backspace, Delete };

// Backspace puts a dash in place of the character in front of the caret and goes there, Delete puts
// one in place of that behind the caret and goes past it, so that either key can be held down; both
// go past bars and the string's letter. A selection becomes dashes. Nothing where the control shall
// do it: in a remark behind the staff.
std::optional<TabChange> erasedInTab(TextView line, std::size_t begin, std::size_t end,
                                     TabErase key);

}  // namespace melvorin
