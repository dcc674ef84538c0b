#include "chords/CellWidth.h"

#include <algorithm>
#include <iterator>

namespace melvorin {
namespace {

constexpr std::size_t kTabWidth = 8;

struct Range {
    char32_t first;
    char32_t last;
};

// By the Unicode character database (combining and format characters; East Asian width W and F).
constexpr Range kNoWidth[] = {
    {0x300, 0x36F},   {0x483, 0x489},   {0x591, 0x5BD},   {0x5BF, 0x5BF},   {0x5C1, 0x5C2},
    {0x5C4, 0x5C5},   {0x5C7, 0x5C7},   {0x610, 0x61A},   {0x64B, 0x65F},   {0x670, 0x670},
    {0x6D6, 0x6DC},   {0x6DF, 0x6E4},   {0x93C, 0x93C},   {0x941, 0x948},   {0x94D, 0x94D},
    {0xE31, 0xE31},   {0xE34, 0xE3A},   {0xE47, 0xE4E},   {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF},
    {0x200B, 0x200F}, {0x202A, 0x202E}, {0x2060, 0x2064}, {0x20D0, 0x20FF}, {0x302A, 0x302D},
    {0x3099, 0x309A}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}, {0xFEFF, 0xFEFF}, {0xE0100, 0xE01EF}};
constexpr Range kTwoCells[] = {
    {0x1100, 0x115F},   {0x231A, 0x231B},   {0x2329, 0x232A},  {0x23E9, 0x23EC}, {0x2E80, 0x303E},
    {0x3041, 0x3247},   {0x3250, 0x4DBF},   {0x4E00, 0xA4CF},  {0xA960, 0xA97C}, {0xAC00, 0xD7A3},
    {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},  {0xFFE0, 0xFFE6}, {0x1F300, 0x1F64F},
    {0x1F680, 0x1F6FF}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD}};

template <std::size_t count>
bool isIn(const Range (&ranges)[count], char32_t code) {
    const auto range = std::lower_bound(std::begin(ranges), std::end(ranges), code,
                                        [](const Range& r, char32_t c) { return r.last < c; });
    return range != std::end(ranges) && range->first <= code;
}

std::size_t widthOf(char32_t code, std::size_t column) {
    if (code == U'\t')
        return kTabWidth - column % kTabWidth;
    if (code < 0x300)
        return 1;
    return isIn(kNoWidth, code) ? 0 : isIn(kTwoCells, code) ? 2 : 1;
}

}  // namespace

bool CellReader::next(CellCharacter& character) {
    if (index_ >= line_.size())
        return false;
    const char16_t first = line_[index_];
    character = {first, index_, 1, column_, 0};
    if (first >= 0xD800 && first <= 0xDFFF) {
        const char16_t second = index_ + 1 < line_.size() ? line_[index_ + 1] : u'\0';
        const bool pair = first < 0xDC00 && second >= 0xDC00 && second <= 0xDFFF;
        character.length = pair ? 2 : 1;
        character.code =
            pair ? 0x10000 + ((char32_t{first} - 0xD800) << 10) + (char32_t{second} - 0xDC00)
                 : char32_t{0xFFFD};
    }
    character.width = widthOf(character.code, column_);
    index_ += character.length;
    column_ += character.width;
    return true;
}

std::size_t cellsOf(TextView line) {
    CellReader reader(line);
    CellCharacter character;
    std::size_t cells = 0;
    while (reader.next(character))
        cells += character.width;
    return cells;
}

Text withOrdinaryBlanks(TextView line, std::size_t column) {
    Text result;
    result.reserve(line.size());
    CellReader reader(line, column);
    CellCharacter character;
    while (reader.next(character)) {
        if (isAnyBlank(character.code) && character.code != 0x3000)
            result.append(character.width, u' ');
        else
            result += line.substr(character.index, character.length);
    }
    return result;
}

TextView trimmedRight(TextView line) {
    while (!line.empty() && isAnyBlank(line.back()))
        line.remove_suffix(1);
    return line;
}

TextView trimmed(TextView line) {
    line = trimmedRight(line);
    while (!line.empty() && isAnyBlank(line.front()))
        line.remove_prefix(1);
    return line;
}

}  // namespace melvorin
