#include "rtf/RtfCodePages.h"

#include <algorithm>
#include <array>

namespace melvorin {
namespace {

constexpr unsigned kLatin = 1252;

struct CharsetPage {
    std::int32_t charset;
    unsigned codePage;
};
constexpr auto kPages = std::to_array<CharsetPage>(
    {{0, 1252},   {77, 10000}, {78, 10001}, {79, 10003}, {80, 10008}, {81, 10002}, {83, 10005},
     {84, 10004}, {85, 10006}, {86, 10081}, {87, 10021}, {88, 10029}, {89, 10007}, {128, 932},
     {129, 949},  {130, 1361}, {134, 936},  {136, 950},  {161, 1253}, {162, 1254}, {163, 1258},
     {177, 1255}, {178, 1256}, {179, 1256}, {180, 1256}, {181, 1255}, {186, 1257}, {204, 1251},
     {222, 874},  {238, 1250}, {254, 437},  {255, 437}});

}  // namespace

std::optional<unsigned> codePageOfCharset(std::int32_t charset) {
    const auto* const found =
        std::find_if(kPages.begin(), kPages.end(),
                     [&](const CharsetPage& page) { return page.charset == charset; });
    return found == kPages.end() ? std::nullopt : std::optional(found->codePage);
}

void RtfFonts::tableWord(const RtfToken& token) {
    constexpr std::int32_t symbols = 2;
    constexpr std::int32_t firstOfOtherSystems = 77;
    constexpr std::int32_t lastOfOtherSystems = 89;
    constexpr std::int32_t firstOfConsole = 254;
    if (token.name == "f") {
        newFont_ = token.number;
    } else if (token.name == "fcharset") {
        // Symbols have no code page: any that gives each byte a character will do.
        const auto page =
            token.number == symbols ? std::optional(kLatin) : codePageOfCharset(token.number);
        if (page)
            fonts_[newFont_] = {
                *page, token.number < firstOfOtherSystems ||
                           (token.number > lastOfOtherSystems && token.number < firstOfConsole)};
    } else if (token.name == "cpg" && token.number > 0) {
        fonts_[newFont_] = {static_cast<unsigned>(token.number), false};
    }
}

void RtfFonts::word(const RtfToken& token) {
    if (token.name == "deff")
        defaultFont_ = token.number;
    else if (token.name == "ansicpg" && token.number > 0)
        document_ = static_cast<unsigned>(token.number);
    else if (token.name == "mac")
        document_ = 10000;
    else if (token.name == "pc")
        document_ = 437;
    else if (token.name == "pca")
        document_ = 850;
}

const RtfFonts::Font* RtfFonts::find(std::int32_t font) const {
    const auto found = fonts_.find(number(font));
    return found == fonts_.end() ? nullptr : &found->second;
}

unsigned RtfFonts::codePage(std::int32_t font) const {
    const Font* const found = find(font);
    return found != nullptr ? found->codePage : document_;
}

bool RtfFonts::isSure(std::int32_t font) const {
    const Font* const found = find(font);
    return found != nullptr ? found->isSure : document_ == kLatin;
}

}  // namespace melvorin
