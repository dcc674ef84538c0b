// Characters as Rich Text writes them, for the parts that read and write its source.
#pragma once

#include <cstdint>
#include <string>

namespace melvorin {

// The character of a Windows-1252 byte; a byte that the code page leaves open gives the control
// character of the same number.
char16_t latinCharacter(unsigned char byte);

// The Windows-1252 byte of a character; -1 for none, and for the bytes the code page leaves open.
int latinByte(char16_t c);

// Appends a character as \u, with as many stand-ins for readers without Unicode as \uc says, or a
// blank that ends the number.
void appendUnicode(std::string& rtf, char16_t c, std::int32_t skip);

// The three characters that are text only behind a backslash.
constexpr bool needsBackslash(char16_t c) {
    return c == u'\\' || c == u'{' || c == u'}';
}

constexpr bool isAlphanumeric(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

}  // namespace melvorin
