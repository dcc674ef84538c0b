#include "app/TextCodec.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace melvorin {

namespace {

constexpr std::string_view utf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view utf16LeMark = "\xFF\xFE";
constexpr std::string_view utf16BeMark = "\xFE\xFF";

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

// `lowByte` is the place of the low byte within a unit, 0 or 1.
DecodedText decodeUtf16(std::string_view bytes, TextEncoding encoding, std::size_t lowByte) {
    const auto byteAt = [bytes](std::size_t i) { return static_cast<unsigned char>(bytes[i]); };
    DecodedText decoded{Text(bytes.size() / 2, u'\0'), encoding, bytes.size() % 2 != 0};
    for (std::size_t i = 0; i < decoded.text.size(); ++i) {
        const unsigned low = byteAt(2 * i + lowByte);
        const unsigned high = byteAt(2 * i + 1 - lowByte);
        decoded.text[i] = static_cast<char16_t>(low | high << 8);
    }
    if (decoded.lossy) {
        decoded.text += u'\uFFFD';
    }
    return decoded;
}

std::string encodeUtf16(TextView text, std::string_view mark, std::size_t lowByte) {
    std::string bytes(mark);
    bytes.resize(mark.size() + 2 * text.size());
    char* unit = bytes.data() + mark.size();
    for (const char16_t c : text) {
        unit[lowByte] = static_cast<char>(c & 0xFF);
        unit[1 - lowByte] = static_cast<char>(c >> 8);
        unit += 2;
    }
    return bytes;
}

}  // namespace

const AnsiCodec& windows1252() {
    static const Windows1252 codec;
    return codec;
}

DecodedText decodeText(std::string_view bytes, const AnsiCodec& ansi) {
    if (bytes.starts_with(utf8Mark)) {
        const std::string_view body = bytes.substr(utf8Mark.size());
        return {fromUtf8(body), TextEncoding::Utf8WithBom, !isValidUtf8(body)};
    }
    if (bytes.starts_with(utf16LeMark)) {
        return decodeUtf16(bytes.substr(utf16LeMark.size()), TextEncoding::Utf16LeWithBom, 0);
    }
    if (bytes.starts_with(utf16BeMark)) {
        return decodeUtf16(bytes.substr(utf16BeMark.size()), TextEncoding::Utf16BeWithBom, 1);
    }
    if (isValidUtf8(bytes)) {
        Text text = fromUtf8(bytes);
        // Every character outside ASCII has fewer units than bytes.
        const bool ascii = text.size() == bytes.size();
        return {std::move(text), ascii ? TextEncoding::Ansi : TextEncoding::Utf8};
    }
    Text text = ansi.decode(bytes);
    const bool lossy = ansi.encode(text) != bytes;
    return {std::move(text), TextEncoding::Ansi, lossy};
}

std::optional<std::string> encodeText(TextView text, TextEncoding encoding,
                                      const AnsiCodec& ansi) {
    switch (encoding) {
        case TextEncoding::Ansi:
            return ansi.encode(text);
        case TextEncoding::Utf8:
            return toUtf8(text);
        case TextEncoding::Utf8WithBom:
            return std::string(utf8Mark) + toUtf8(text);
        case TextEncoding::Utf16LeWithBom:
            return encodeUtf16(text, utf16LeMark, 0);
        case TextEncoding::Utf16BeWithBom:
            return encodeUtf16(text, utf16BeMark, 1);
    }
    return std::nullopt;
}

}  // namespace melvorin
