#include "app/RtfRepair.h"

#include <algorithm>
#include <numeric>

#include "app/RtfCharacters.h"
#include "app/RtfMap.h"

namespace melvorin {
namespace {

// Whether a control may have written something else for `text`: it knows the characters of each
// font's code page, and takes a look-alike for others. Windows-1252 is what most fonts have.
bool mayHaveLost(std::string_view rtf, TextView text) {
    const auto isStrange = [](char16_t c) { return c > 0xFF && latinByte(c) < 0; };
    if (std::any_of(text.begin(), text.end(), isStrange))
        return true;
    const bool isAsciiOnly =
        std::all_of(text.begin(), text.end(), [](char16_t c) { return c < 0x80; });
    constexpr std::string_view word = "\\fcharset";
    for (std::size_t at = rtf.find(word); at != std::string_view::npos; at = rtf.find(word, at)) {
        at += word.size();
        const std::string_view number = rtf.substr(at, 2);
        const bool isSymbol =
            number.starts_with('2') && (number.size() < 2 || number[1] < '0' || number[1] > '9');
        const bool isWestern = number.starts_with('0');
        if (isSymbol || (!isWestern && !isAsciiOnly))
            return true;
    }
    return false;
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
    if (!mayHaveLost(rtf, text))
        return rtf;
    std::optional<RtfMap> map = RtfMap::parse(rtf);
    if (!map || map->text().size() != text.size())
        return rtf;
    map->takeBlanks(text);
    const TextView written = map->text();
    const auto isAtRisk = [&](std::size_t i) {
        return text[i] >= 0x80 || (text[i] >= 0x20 && map->isSymbolAt(i));
    };
    std::vector<LineRewrite> parts;
    for (std::size_t i = 0; i < text.size();) {
        if (written[i] == text[i]) {
            ++i;
            continue;
        }
        // A difference elsewhere means that this map is not of this text.
        std::size_t end = i;
        while (end < text.size() && written[end] != text[end] && isAtRisk(end))
            ++end;
        if (end == i)
            return rtf;
        parts.push_back(respelled(i, text.substr(i, end - i)));
        i = end;
    }
    return parts.empty() ? rtf : map->rewrite(parts, Rgb{});
}

}  // namespace melvorin
