#include "app/RtfRepair.h"

#include <algorithm>
#include <numeric>

#include "app/RtfMap.h"
#include "app/TextCodec.h"

namespace melvorin {
namespace {

bool isAtRisk(char16_t c) {
    return c > 0xFF && !windows1252().encode(TextView(&c, 1));
}

// A part of the line that stays as it is but for its characters.
LineRewrite respelled(std::size_t start, TextView text) {
    LineRewrite part{start, text.size(), Text(text), {}, {}};
    part.source.resize(text.size());
    std::iota(part.source.begin(), part.source.end(), 0U);
    part.keepColour.assign(text.size(), true);
    return part;
}

}  // namespace

std::string withLostCharacters(std::string rtf, TextView text) {
    if (std::none_of(text.begin(), text.end(), isAtRisk))
        return rtf;
    const auto map = RtfMap::parse(rtf);
    if (!map || map->text().size() != text.size())
        return rtf;
    const TextView written = map->text();
    std::vector<LineRewrite> parts;
    for (std::size_t i = 0; i < text.size();) {
        if (written[i] == text[i]) {
            ++i;
            continue;
        }
        // A difference elsewhere means that this map is not of this text.
        std::size_t end = i;
        while (end < text.size() && written[end] != text[end] && isAtRisk(text[end]))
            ++end;
        if (end == i)
            return rtf;
        parts.push_back(respelled(i, text.substr(i, end - i)));
        i = end;
    }
    return parts.empty() ? rtf : map->rewrite(parts, Rgb{});
}

}  // namespace melvorin
