#include "find/TabExpansion.h"

#include <algorithm>

namespace melvorin {

constexpr std::size_t kTabWidth = 8;

Text expandTabs(TextView text, std::size_t startColumn) {
    const auto tabs = static_cast<std::size_t>(std::count(text.begin(), text.end(), u'\t'));
    if (tabs == 0)
        return Text(text);
    Text expanded;
    expanded.reserve(text.size() + tabs * (kTabWidth - 1));
    std::size_t column = startColumn;
    for (const char16_t c : text) {
        if (c == u'\t') {
            const std::size_t blanks = kTabWidth - column % kTabWidth;
            expanded.append(blanks, u' ');
            column += blanks;
        } else {
            expanded += c;
            column = c == u'\r' || c == u'\n' || c == u'\v' ? 0 : column + 1;
        }
    }
    return expanded;
}

}  // namespace melvorin
