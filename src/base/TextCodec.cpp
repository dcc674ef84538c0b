#include "base/TextCodec.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace melvorin {

namespace {

class Windows1252 final : public AnsiCodec {
  public:
    Text decode(std::string_view bytes) const override;
    std::optional<std::string> encode(TextView text) const override;

  private:
    // The bytes 0x80 to 0x9F; all others are the Latin-1 characters of the same number.
    static constexpr std::array<char16_t, 32> special = {
        0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
        0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
        0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

    static bool isLatin1(char16_t c) { return c < 0x80 || (c >= 0xA0 && c <= 0xFF); }
};

Text Windows1252::decode(std::string_view bytes) const {
    Text text(bytes.size(), u'\0');
    std::transform(bytes.begin(), bytes.end(), text.begin(), [](char byte) {
        const auto code = static_cast<unsigned char>(byte);
        return isLatin1(code) ? char16_t{code} : special[code - 0x80U];
    });
    return text;
}

std::optional<std::string> Windows1252::encode(TextView text) const {
    std::string bytes(text.size(), '\0');
    for (std::size_t i = 0; i < text.size(); ++i) {
        std::ptrdiff_t code = text[i];
        if (!isLatin1(text[i])) {
            const auto* const found = std::find(special.begin(), special.end(), text[i]);
            if (found == special.end()) {
                return std::nullopt;
            }
            code = 0x80 + (found - special.begin());
        }
        bytes[i] = static_cast<char>(code);
    }
    return bytes;
}

// Where the low byte of a UTF-16 unit stands, 0 or 1.
std::size_t lowBytePlace(TextEncoding encoding) {
    return encoding == TextEncoding::Utf16BeWithBom ? 1 : 0;
}

bool isUtf16(TextEncoding encoding) {
    return encoding == TextEncoding::Utf16LeWithBom || encoding == TextEncoding::Utf16BeWithBom;
}

DecodedText decodeUtf16(std::string_view bytes, TextEncoding encoding) {
    const std::size_t low = lowBytePlace(encoding);
    const auto byteAt = [bytes](std::size_t i) {
        return static_cast<unsigned>(static_cast<unsigned char>(bytes[i]));
    };
    DecodedText decoded{Text(bytes.size() / 2, u'\0'), encoding, bytes.size() % 2 != 0};
    for (std::size_t i = 0; i < decoded.text.size(); ++i) {
        decoded.text[i] = static_cast<char16_t>(byteAt(2 * i + low) | byteAt(2 * i + 1 - low) << 8);
    }
    if (decoded.lossy) {
        decoded.text += u'\uFFFD';
    }
    return decoded;
}

std::string encodeUtf16(TextView text, TextEncoding encoding) {
    const std::size_t low = lowBytePlace(encoding);
    std::string bytes(2 * text.size(), '\0');
    for (std::size_t i = 0; i < text.size(); ++i) {
        bytes[2 * i + low] = static_cast<char>(text[i] & 0xFF);
        bytes[2 * i + 1 - low] = static_cast<char>(text[i] >> 8);
    }
    return bytes;
}

bool isLineFeed(std::string_view bytes, std::size_t at, TextEncoding encoding) {
    if (!isUtf16(encoding)) {
        return bytes[at] == '\n';
    }
    const std::size_t low = lowBytePlace(encoding);
    return bytes[at + low] == '\n' && bytes[at + 1 - low] == '\0';
}

}  // namespace

const AnsiCodec& windows1252() {
    static const Windows1252 codec;
    return codec;
}

TextEncoding detectEncoding(std::string_view bytes) {
    for (const TextEncoding marked :
         {TextEncoding::Utf8WithBom, TextEncoding::Utf16LeWithBom, TextEncoding::Utf16BeWithBom}) {
        if (bytes.starts_with(byteOrderMark(marked))) {
            return marked;
        }
    }
    return isValidUtf8(bytes) ? TextEncoding::Utf8 : TextEncoding::Ansi;
}

std::string_view byteOrderMark(TextEncoding encoding) {
    switch (encoding) {
        case TextEncoding::Utf8WithBom:
            return "\xEF\xBB\xBF";
        case TextEncoding::Utf16LeWithBom:
            return "\xFF\xFE";
        case TextEncoding::Utf16BeWithBom:
            return "\xFE\xFF";
        case TextEncoding::Ansi:
        case TextEncoding::Utf8:
            break;
    }
    return {};
}

DecodedText decodeText(std::string_view bytes, const AnsiCodec& ansi) {
    const TextEncoding encoding = detectEncoding(bytes);
    return decodePart(bytes.substr(byteOrderMark(encoding).size()), encoding, ansi);
}

std::optional<std::string> encodeText(TextView text, TextEncoding encoding, const AnsiCodec& ansi) {
    std::optional<std::string> bytes = encodePart(text, encoding, ansi);
    if (bytes) {
        bytes->insert(0, byteOrderMark(encoding));
    }
    return bytes;
}

DecodedText decodePart(std::string_view bytes, TextEncoding encoding, const AnsiCodec& ansi) {
    if (isUtf16(encoding)) {
        return decodeUtf16(bytes, encoding);
    }
    // ASCII is the same everywhere.
    if (encoding != TextEncoding::Ansi || isAscii(bytes)) {
        return {fromUtf8(bytes), encoding, !isValidUtf8(bytes)};
    }
    Text text = ansi.decode(bytes);
    const bool lossy = ansi.encode(text) != bytes;
    return {std::move(text), encoding, lossy};
}

std::optional<std::string> encodePart(TextView text, TextEncoding encoding, const AnsiCodec& ansi) {
    if (isUtf16(encoding)) {
        return encodeUtf16(text, encoding);
    }
    if (encoding == TextEncoding::Ansi) {
        return ansi.encode(text);
    }
    return loneSurrogates(text) == 0 ? std::optional(toUtf8(text)) : std::nullopt;
}

std::size_t partLength(std::string_view bytes, TextEncoding encoding, std::size_t wanted) {
    const std::size_t unit = isUtf16(encoding) ? 2 : 1;
    std::size_t length = wanted - wanted % unit;
    while (length + unit <= bytes.size()) {
        length += unit;
        if (isLineFeed(bytes, length - unit, encoding)) {
            return length;
        }
    }
    return bytes.size();
}

}  // namespace melvorin
