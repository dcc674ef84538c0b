// What is a line of the editor's text.
#pragma once

#include <algorithm>
#include <cstddef>

#include "base/Text.h"

namespace melvorin {

// Cuts the first line, with its end, off `rest`, as takeLine does. A soft line break (VT) ends a
// line too, and so does the CR LF before and behind a row of a table, each of the two a position of
// its own.
inline TextLine takeEditorLine(TextView& rest) {
    const std::size_t length = std::min(rest.find_first_of(u"\r\n\v"), rest.size());
    const TextView behind = rest.substr(length);
    const std::size_t end =
        behind.starts_with(u"\r\n") ? 2 : std::min<std::size_t>(behind.size(), 1);
    const TextLine line{rest.substr(0, length), behind.substr(0, end)};
    rest = behind.substr(end);
    return line;
}

}  // namespace melvorin
