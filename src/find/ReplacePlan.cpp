#include "find/ReplacePlan.h"

#include <algorithm>

namespace melvorin {

void ReplacePlan::replace(Selection match, TextView with) {
    const auto begin = static_cast<std::size_t>(match.begin);
    const auto end = static_cast<std::size_t>(match.end);
    // Where the last part ends, now and in the old text; equal before the first.
    const std::size_t partEnd = parts_.empty() ? 0 : partBegin_ + parts_.back().text.size();
    const std::size_t oldEnd = parts_.empty() ? 0 : parts_.back().start + parts_.back().length;
    // Replacements that touch are one part: a rewritten text keeps a character between two.
    if (parts_.empty() || begin > partEnd) {
        parts_.push_back({begin - partEnd + oldEnd, 0, {}, {}, {}});
        partBegin_ = begin;
    }
    LineRewrite& part = parts_.back();
    const std::size_t at = begin - partBegin_;
    const std::size_t within = std::min(end - partBegin_, part.text.size()) - at;
    const auto format = static_cast<std::uint32_t>(within > 0 ? part.source[at] : part.length);
    part.length += end - begin - within;
    part.text.replace(at, within, with);
    const auto place = part.source.begin() + static_cast<std::ptrdiff_t>(at);
    part.source.insert(part.source.erase(place, place + static_cast<std::ptrdiff_t>(within)),
                       with.size(), format);
    part.keepColour.resize(part.text.size(), true);
    text_.replace(match, with);
}

}  // namespace melvorin
