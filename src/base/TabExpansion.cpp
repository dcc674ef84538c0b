#include "base/TabExpansion.h"

#include <algorithm>

namespace melvorin {

constexpr std::size_t kTabWidth = 8;

void TabExpander::append(TextView part, Text& expanded) {
    for (const char16_t c : part) {
        if (c == u'\t') {
            const std::size_t blanks = kTabWidth - column_ % kTabWidth;
            expanded.append(blanks, u' ');
            column_ += blanks;
        } else {
            expanded += c;
            column_ = c == u'\r' || c == u'\n' || c == u'\v' ? 0 : column_ + 1;
        }
    }
}

Text expandTabs(TextView text, std::size_t startColumn) {
    const auto tabs = static_cast<std::size_t>(std::count(text.begin(), text.end(), u'\t'));
    if (tabs == 0)
        return Text(text);
    Text expanded;
    expanded.reserve(text.size() + tabs * (kTabWidth - 1));
    TabExpander(startColumn).append(text, expanded);
    return expanded;
}

}  // namespace melvorin
