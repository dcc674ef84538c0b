// The colours of a document's text, read in the plainest way there is, so that what rewrites
// Rich Text is not judged by its own reading.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include "base/Editor.h"
#include "rtf/RtfFormatWords.h"
#include "rtf/RtfLexer.h"

namespace melvorin {

// One for every character, nothing for the automatic colour; a \par that ends the document counts.
// For documents in fonts of one byte a character.
inline std::vector<std::optional<Rgb>> coloursOf(std::string_view rtf) {
    struct Group {
        std::size_t colour = 0;
        std::int32_t skip = 1;
        bool isText = true;
        bool isTable = false;
        bool isFirst = true;
    };
    std::vector<std::optional<Rgb>> table;
    std::vector<std::optional<Rgb>> colours;
    std::optional<Rgb> entry;
    std::vector<Group> groups;
    RtfLexer lexer(rtf);
    do {
        const RtfToken token = lexer.next();
        if (token.kind == RtfToken::Kind::Open) {
            groups.push_back(groups.empty() ? Group{} : groups.back());
            groups.back().isFirst = true;
        } else if (token.kind == RtfToken::Kind::Close) {
            groups.pop_back();
        } else if (token.kind == RtfToken::Kind::End) {
            return {};
        } else if (token.kind != RtfToken::Kind::Break) {
            Group& here = groups.back();
            const bool isFirst = std::exchange(here.isFirst, false);
            const bool isWord = token.kind == RtfToken::Kind::Word;
            const bool isAside = token.isSymbol('*') || token.isWord("fonttbl") ||
                                 token.isWord("colortbl") ||
                                 (isWord && isRtfSilentGroup(token.name));
            here.isText = here.isText && !(isFirst && isAside);
            here.isTable = here.isTable || token.isWord("colortbl");
            const bool isStop = token.kind == RtfToken::Kind::Byte && token.byte == ';';
            if (here.isTable && isStop)
                table.push_back(std::exchange(entry, std::nullopt));
            else if (here.isTable &&
                     (token.isWord("red") || token.isWord("green") || token.isWord("blue"))) {
                Rgb colour = entry.value_or(Rgb{});
                (token.name == "red"     ? colour.red
                 : token.name == "green" ? colour.green
                                         : colour.blue) = static_cast<std::uint8_t>(token.number);
                entry = colour;
            }
            if (!here.isText)
                continue;
            if (token.isWord("cf") || token.isWord("plain"))
                here.colour = token.isWord("cf") ? static_cast<std::size_t>(token.number) : 0;
            else if (token.isWord("uc"))
                here.skip = token.number;
            else if (token.isWord("u"))
                takeStandIns(lexer, here.skip);
            if (!isWord || token.isWord("u") || rtfWordCharacter(token.name))
                colours.push_back(here.colour < table.size() ? table[here.colour] : std::nullopt);
        }
    } while (!groups.empty());
    return colours;
}

}  // namespace melvorin
