#include "paper/FontCollection.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string_view>

namespace melvorin {
namespace {

constexpr std::string_view kCollection = "ttcf";
constexpr std::size_t kMostFonts = 100;
constexpr std::size_t kMostTables = 200;
constexpr std::size_t kHead = 12;  // bytes before the rows of a font's directory
constexpr std::size_t kRow = 16;

// Nothing beyond the end.
std::optional<std::uint32_t> number(std::string_view bytes, std::size_t at, std::size_t length) {
    if (at > bytes.size() || length > bytes.size() - at)
        return std::nullopt;
    std::uint32_t value = 0;
    for (const char byte : bytes.substr(at, length))
        value = value << 8U | static_cast<unsigned char>(byte);
    return value;
}

void add(std::string& bytes, std::uint32_t value, unsigned length) {
    while (length-- > 0)
        bytes += static_cast<char>(value >> 8U * length & 0xFFU);
}

std::uint32_t sumOf(std::string_view table) {
    std::uint32_t sum = 0;
    for (std::size_t at = 0; at < table.size(); at += 4) {
        std::string word(table.substr(at, 4));
        word.resize(4);
        sum += *number(word, 0, 4);
    }
    return sum;
}

std::optional<std::string> fontAt(std::string_view file, std::size_t start) {
    const auto count = number(file, start + 4, 2);
    if (!count || *count == 0 || *count > kMostTables)
        return std::nullopt;
    std::vector<std::pair<std::string, std::string>> tables;
    tables.reserve(*count);
    for (std::size_t i = 0; i < *count; ++i) {
        const std::size_t row = start + kHead + kRow * i;
        const auto offset = number(file, row + 8, 4);
        const auto length = number(file, row + 12, 4);
        if (!offset || !length || *offset > file.size() || *length > file.size() - *offset)
            return std::nullopt;
        tables.emplace_back(file.substr(row, 4), file.substr(*offset, *length));
    }
    return fontOfTables(tables);
}

}  // namespace

std::string fontOfTables(const std::vector<std::pair<std::string, std::string>>& tables) {
    const bool isCompact = std::any_of(tables.begin(), tables.end(),
                                       [](const auto& table) { return table.first == "CFF "; });
    const auto count = static_cast<std::uint32_t>(tables.size());
    std::string font = isCompact ? "OTTO" : std::string("\0\1\0\0", 4);
    std::uint32_t power = 1;
    std::uint32_t exponent = 0;
    for (; power * 2 <= count; power *= 2)
        ++exponent;
    add(font, count, 2);
    add(font, power * kRow, 2);
    add(font, exponent, 2);
    add(font, (count - power) * kRow, 2);
    std::string content;
    for (const auto& [name, table] : tables) {
        font += name;
        add(font, sumOf(table), 4);
        add(font, static_cast<std::uint32_t>(kHead + kRow * count + content.size()), 4);
        add(font, static_cast<std::uint32_t>(table.size()), 4);
        content += table;
        content.resize((content.size() + 3) / 4 * 4);
    }
    return font + content;
}

Result<std::vector<std::string>> fontsOf(std::string bytes) {
    std::vector<std::string> fonts;
    if (!bytes.starts_with(kCollection)) {
        fonts.push_back(std::move(bytes));
        return Result<std::vector<std::string>>::success(std::move(fonts));
    }
    const std::size_t count = number(bytes, 8, 4).value_or(0);
    for (std::size_t i = 0; i < count && i < kMostFonts; ++i) {
        const auto start = number(bytes, kHead + 4 * i, 4);
        auto font = start ? fontAt(bytes, *start) : std::nullopt;
        if (!font)
            return Failure{u"The font file is damaged."};
        fonts.push_back(std::move(*font));
    }
    if (fonts.empty())
        return Failure{u"The font file is damaged."};
    return Result<std::vector<std::string>>::success(std::move(fonts));
}

}  // namespace melvorin
