#include "base/Text.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace melvorin {

namespace {

constexpr char32_t replacementCharacter = 0xFFFD;

bool isLineEnd(char16_t c) {
    return c == u'\r' || c == u'\n';
}

Text withLineEnds(TextView any, TextView lineEnd) {
    Text result;
    result.reserve(any.size() + any.size() / 16);
    while (!any.empty()) {
        const TextLine line = takeLine(any);
        result += line.chars;
        if (!line.end.empty()) {
            result += lineEnd;
        }
    }
    return result;
}

unsigned char byteAt(std::string_view bytes, std::size_t index) {
    return static_cast<unsigned char>(bytes[index]);
}

// How many bytes at the start of `bytes` are ASCII. Charts are nearly all ASCII, so this looks at
// eight bytes at a time.
std::size_t asciiPrefix(std::string_view bytes) {
    constexpr std::uint64_t highBits = 0x8080808080808080U;
    std::size_t count = 0;
    for (; count + 8 <= bytes.size(); count += 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data() + count, 8);
        if ((word & highBits) != 0) {
            break;
        }
    }
    while (count < bytes.size() && byteAt(bytes, count) < 0x80) {
        ++count;
    }
    return count;
}

// The same for text that is about to become bytes.
std::size_t asciiPrefix(TextView text) {
    constexpr std::uint64_t aboveAscii = 0xFF80FF80FF80FF80U;
    std::size_t count = 0;
    for (; count + 8 <= text.size(); count += 8) {
        std::uint64_t words[2];
        std::memcpy(words, text.data() + count, 16);
        if (((words[0] | words[1]) & aboveAscii) != 0) {
            break;
        }
    }
    while (count < text.size() && text[count] < 0x80) {
        ++count;
    }
    return count;
}

// What may follow a lead byte: how many bytes the character has, and the range of its second
// byte, which alone rules out overlong forms, surrogates and everything above U+10FFFF.
struct LeadByte {
    std::size_t length;
    unsigned char secondLow;
    unsigned char secondHigh;
};

LeadByte classifyLead(unsigned char lead) {
    if (lead >= 0xC2 && lead <= 0xDF) {
        return {2, 0x80, 0xBF};
    }
    if (lead >= 0xE0 && lead <= 0xEF) {
        return {3, static_cast<unsigned char>(lead == 0xE0 ? 0xA0 : 0x80),
                static_cast<unsigned char>(lead == 0xED ? 0x9F : 0xBF)};
    }
    if (lead >= 0xF0 && lead <= 0xF4) {
        return {4, static_cast<unsigned char>(lead == 0xF0 ? 0x90 : 0x80),
                static_cast<unsigned char>(lead == 0xF4 ? 0x8F : 0xBF)};
    }
    return {1, 0, 0};
}

struct Sequence {
    char32_t codePoint;
    std::size_t length;
    bool valid;
};

// The character at the start of `bytes`, which must begin with a byte outside ASCII. A malformed
// sequence is as long as the part that could still have become a character, at least one byte.
Sequence takeSequence(std::string_view bytes) {
    const unsigned char lead = byteAt(bytes, 0);
    const LeadByte form = classifyLead(lead);
    if (form.length == 1) {
        return {replacementCharacter, 1, false};
    }
    char32_t codePoint = lead & (0x7FU >> form.length);
    unsigned char low = form.secondLow;
    unsigned char high = form.secondHigh;
    for (std::size_t i = 1; i < form.length; ++i) {
        if (i == bytes.size() || byteAt(bytes, i) < low || byteAt(bytes, i) > high) {
            return {replacementCharacter, i, false};
        }
        codePoint = (codePoint << 6) | (byteAt(bytes, i) & 0x3FU);
        low = 0x80;
        high = 0xBF;
    }
    return {codePoint, form.length, true};
}

char16_t* appendUtf16(char32_t codePoint, char16_t* out) {
    if (codePoint >= 0x10000) {
        *out++ = static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10));
        *out++ = static_cast<char16_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF));
    } else {
        *out++ = static_cast<char16_t>(codePoint);
    }
    return out;
}

char* appendUtf8(char32_t codePoint, char* out) {
    const auto continuation = [codePoint](unsigned shift) {
        return static_cast<char>(0x80 | ((codePoint >> shift) & 0x3F));
    };
    if (codePoint < 0x80) {
        *out++ = static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        *out++ = static_cast<char>(0xC0 | (codePoint >> 6));
        *out++ = continuation(0);
    } else if (codePoint < 0x10000) {
        *out++ = static_cast<char>(0xE0 | (codePoint >> 12));
        *out++ = continuation(6);
        *out++ = continuation(0);
    } else {
        *out++ = static_cast<char>(0xF0 | (codePoint >> 18));
        *out++ = continuation(12);
        *out++ = continuation(6);
        *out++ = continuation(0);
    }
    return out;
}

// The code point at the start of `text` and how many units it takes; a lone surrogate is U+FFFD.
Sequence takeCodePoint(TextView text) {
    const char32_t first = text[0];
    if (first < 0xD800 || first > 0xDFFF) {
        return {first, 1, true};
    }
    if (first > 0xDBFF || text.size() < 2 || text[1] < 0xDC00 || text[1] > 0xDFFF) {
        return {replacementCharacter, 1, false};
    }
    return {0x10000 + ((first - 0xD800) << 10) + (text[1] - 0xDC00U), 2, true};
}

// Never less than the text takes in UTF-8, and exact for text without characters of two units.
std::size_t utf8Bound(TextView text) {
    std::size_t bytes = text.size();
    for (const char16_t c : text) {
        bytes += static_cast<std::size_t>(c >= 0x80) + static_cast<std::size_t>(c >= 0x800);
    }
    return bytes;
}

}  // namespace

TextLine takeLine(TextView& rest) {
    std::size_t length = 0;
    while (length < rest.size() && !isLineEnd(rest[length])) {
        ++length;
    }
    std::size_t end = length;
    if (end < rest.size()) {
        const bool pair = rest[end] == u'\r' && end + 1 < rest.size() && rest[end + 1] == u'\n';
        end += pair ? 2 : 1;
    }
    const TextLine line{rest.substr(0, length), rest.substr(length, end - length)};
    rest.remove_prefix(end);
    return line;
}

CrLfText toCrLf(TextView any) {
    return {withLineEnds(any, u"\r\n")};
}

EditorText toEditorText(TextView any) {
    return {withLineEnds(any, u"\r")};
}

std::vector<TextView> splitLines(TextView text) {
    std::vector<TextView> lines;
    TextLine line;
    do {
        line = takeLine(text);
        lines.push_back(line.chars);
    } while (!line.end.empty());
    return lines;
}

Text fromUtf8(std::string_view bytes) {
    Text result(bytes.size(), u'\0');
    char16_t* out = result.data();
    while (!bytes.empty()) {
        const std::size_t ascii = asciiPrefix(bytes);
        for (std::size_t i = 0; i < ascii; ++i) {
            out[i] = byteAt(bytes, i);
        }
        out += ascii;
        bytes.remove_prefix(ascii);
        while (!bytes.empty() && byteAt(bytes, 0) >= 0x80) {
            const Sequence sequence = takeSequence(bytes);
            out = appendUtf16(sequence.codePoint, out);
            bytes.remove_prefix(sequence.length);
        }
    }
    result.resize(static_cast<std::size_t>(out - result.data()));
    return result;
}

std::string toUtf8(TextView text) {
    std::string result(utf8Bound(text), '\0');
    char* out = result.data();
    while (!text.empty()) {
        const std::size_t ascii = asciiPrefix(text);
        for (std::size_t i = 0; i < ascii; ++i) {
            out[i] = static_cast<char>(text[i]);
        }
        out += ascii;
        text.remove_prefix(ascii);
        while (!text.empty() && text[0] >= 0x80) {
            const Sequence sequence = takeCodePoint(text);
            out = appendUtf8(sequence.codePoint, out);
            text.remove_prefix(sequence.length);
        }
    }
    result.resize(static_cast<std::size_t>(out - result.data()));
    return result;
}

std::size_t loneSurrogates(TextView text) {
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (text[at] < 0xD800 || text[at] > 0xDFFF)
            continue;
        const Sequence sequence = takeCodePoint(text.substr(at));
        count += sequence.valid ? 0U : 1U;
        at += sequence.length - 1;
    }
    return count;
}

Text decimal(std::int64_t number) {
    return fromUtf8(std::to_string(number));
}

bool isAscii(std::string_view bytes) {
    return asciiPrefix(bytes) == bytes.size();
}

bool isValidUtf8(std::string_view bytes) {
    while (!bytes.empty()) {
        bytes.remove_prefix(asciiPrefix(bytes));
        while (!bytes.empty() && byteAt(bytes, 0) >= 0x80) {
            const Sequence sequence = takeSequence(bytes);
            if (!sequence.valid) {
                return false;
            }
            bytes.remove_prefix(sequence.length);
        }
    }
    return true;
}

}  // namespace melvorin
