// Hexadecimal digits.
#pragma once

#include <cstdint>

namespace melvorin {

// The value of a digit; -1 for any other character.
template <class Char>
constexpr int hexDigit(Char c) {
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

// Appends the last `count` digits of a number; `ten` is how the digit 10 is written, "a" or "A".
template <class String>
void appendHex(String& out, std::uint32_t number, int count, char ten = 'a') {
    while (count-- > 0) {
        const auto digit = static_cast<char>(number >> (4 * count) & 15U);
        out +=
            static_cast<typename String::value_type>(digit < 10 ? '0' + digit : ten + digit - 10);
    }
}

}  // namespace melvorin
