#include "paper/PaperNotes.h"

#include <cmath>
#include <map>
#include <utility>

#include "base/Hex.h"

namespace melvorin {
namespace {

Text written(std::size_t number) {
    return decimal(static_cast<std::int64_t>(number));
}

// With at most two decimals: 11.25.
Text pointsInWords(double points) {
    const auto hundredths = static_cast<std::int64_t>(std::lround(points * 100));
    Text text = decimal(hundredths / 100);
    std::int64_t rest = hundredths % 100;
    if (rest == 0)
        return text;
    text += u'.';
    text += decimal(rest / 10);
    if (rest %= 10; rest != 0)
        text += decimal(rest);
    return text;
}

}  // namespace

Text unwritableInWords(const std::set<std::pair<char32_t, std::size_t>>& unwritable) {
    std::map<char32_t, std::size_t> firstLines;
    for (const auto& [character, line] : unwritable)
        firstLines.try_emplace(character, line);
    constexpr std::size_t most = 20;
    Text message = u"no font has";
    Text link = u" ";
    std::size_t named = 0;
    for (const auto& [character, line] : firstLines) {
        if (named++ == most)
            return message + u" and " + written(firstLines.size() - most) + u" more";
        message.append(std::exchange(link, u", ")).append(u"U+");
        appendHex(message, character, character > 0xFFFF ? 5 : 4, 'A');
        message.append(u" (line ").append(written(line + 1)).append(u")");
    }
    return message;
}

Text missingInWords(const std::set<Text>& faces, bool isDocument) {
    Text list;
    for (const Text& face : faces)
        list.append(list.empty() ? u"" : u", ").append(face);
    if (faces.empty())
        return {};
    const bool isOne = faces.size() == 1;
    const TextView lacks = isDocument ? u" cannot be put into it"
                           : isOne    ? u" is not there"
                                      : u" are not there";
    return (isOne ? u"The font " : u"The fonts ") + list + Text(lacks) +
           (isOne ? u"; another stands for it." : u"; others stand for them.");
}

Text pageInWords(const LaidSong& laid, std::size_t page, std::size_t pages) {
    Text text = u"Page " + written(page + 1) + u" of " + written(pages) + u", set in " +
                pointsInWords(laid.points) + u" points";
    if (laid.columns > 1)
        text += u", in " + written(laid.columns) + u" columns";
    return text;
}

}  // namespace melvorin
