#include "rtf/RtfCharacters.h"

#include <algorithm>
#include <array>
#include <string>

#include "base/TextCodec.h"

namespace melvorin {
namespace {

const std::array<char16_t, 256>& latin() {
    static const std::array<char16_t, 256> table = [] {
        std::string bytes(256, '\0');
        for (std::size_t i = 0; i < bytes.size(); ++i)
            bytes[i] = static_cast<char>(static_cast<unsigned char>(i));
        std::array<char16_t, 256> characters{};
        const Text decoded = windows1252().decode(bytes);
        std::copy_n(decoded.begin(), characters.size(), characters.begin());
        return characters;
    }();
    return table;
}

}  // namespace

char16_t latinCharacter(unsigned char byte) {
    return latin()[byte];
}

int latinByte(char16_t c) {
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF))
        return c;
    const auto* const begin = latin().data() + 0x80;
    const auto* const end = latin().data() + 0xA0;
    const auto* const found = std::find(begin, end, c);
    return found == end || c < 0xA0 ? -1 : static_cast<int>(found - latin().data());
}

void appendUnicode(std::string& rtf, char16_t c, std::int32_t skip) {
    rtf += "\\u" + std::to_string(static_cast<std::int16_t>(c));
    rtf.append(skip == 0 ? 1 : static_cast<std::size_t>(skip), skip == 0 ? ' ' : '?');
}

}  // namespace melvorin
