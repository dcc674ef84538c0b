#include "base/LetterCase.h"

#include <algorithm>
#include <array>
#include <cstdint>

namespace melvorin {
namespace {

// Lower-case letters first to last, every `step`-th of them; the upper-case letter stands
// `distance` below.
struct LowerRange {
    char16_t first;
    char16_t last;
    std::int16_t distance;
    std::uint16_t step;
};

constexpr LowerRange kRanges[] = {
    {u'a', u'z', 32, 1},       {0x00E0, 0x00F6, 32, 1}, {0x00F8, 0x00FE, 32, 1},
    {0x00FF, 0x00FF, -121, 1},  // y with diaeresis: its capital is far above
    {0x0101, 0x012F, 1, 2},    {0x0133, 0x0137, 1, 2},  {0x013A, 0x0148, 1, 2},
    {0x014B, 0x0177, 1, 2},    {0x017A, 0x017E, 1, 2},  {0x01CE, 0x01DC, 1, 2},
    {0x01DF, 0x01EF, 1, 2},    {0x01F9, 0x021F, 1, 2},  {0x0223, 0x0233, 1, 2},
    {0x03AC, 0x03AC, 38, 1},   {0x03AD, 0x03AF, 37, 1}, {0x03B1, 0x03C1, 32, 1},
    {0x03C3, 0x03CB, 32, 1},   {0x03CC, 0x03CC, 64, 1}, {0x03CD, 0x03CE, 63, 1},
    {0x0430, 0x044F, 32, 1},   {0x0450, 0x045F, 80, 1}, {0x0461, 0x0481, 1, 2},
    {0x048B, 0x04BF, 1, 2},    {0x04C2, 0x04CE, 1, 2},  {0x04D1, 0x052F, 1, 2},
    {0x0561, 0x0586, 48, 1},   {0x1E01, 0x1E95, 1, 2},  {0x1EA1, 0x1EFF, 1, 2},
    {0xFF41, 0xFF5A, 32, 1},
};
constexpr char16_t kFinalSigma = 0x03C2;
constexpr char16_t kCapitalSigma = 0x03A3;

bool holds(const LowerRange& range, int lower) {
    return lower >= range.first && lower <= range.last && (lower - range.first) % range.step == 0;
}

char16_t searchUpper(char16_t c) {
    if (c == kFinalSigma)
        return kCapitalSigma;
    for (const LowerRange& range : kRanges) {
        if (holds(range, c))
            return static_cast<char16_t>(c - range.distance);
    }
    return c;
}

char16_t searchLower(char16_t c) {
    for (const LowerRange& range : kRanges) {
        if (holds(range, c + range.distance))
            return static_cast<char16_t>(c + range.distance);
    }
    return c;
}

using Table = std::array<char16_t, 0x10000>;

// One look per character: a search of a long text folds every one of them.
template <char16_t (*Search)(char16_t)>
const Table& tableOf() {
    static const Table table = [] {
        Table filled{};
        for (std::size_t c = 0; c < filled.size(); ++c)
            filled[c] = Search(static_cast<char16_t>(c));
        return filled;
    }();
    return table;
}

Text mapped(TextView text, const Table& table) {
    Text result(text);
    std::transform(result.begin(), result.end(), result.begin(),
                   [&](char16_t c) { return table[c]; });
    return result;
}

}  // namespace

char16_t unicodeUpperCase(char16_t c) {
    return tableOf<searchUpper>()[c];
}

char16_t unicodeLowerCase(char16_t c) {
    return tableOf<searchLower>()[c];
}

Text unicodeUpperCase(TextView text) {
    return mapped(text, tableOf<searchUpper>());
}

Text unicodeLowerCase(TextView text) {
    return mapped(text, tableOf<searchLower>());
}

char16_t asciiLowerCase(char16_t c) {
    return c >= u'A' && c <= u'Z' ? static_cast<char16_t>(c - u'A' + u'a') : c;
}

Text asciiLowerCase(TextView text) {
    Text lower(text);
    for (char16_t& c : lower)
        c = asciiLowerCase(c);
    return lower;
}

}  // namespace melvorin
