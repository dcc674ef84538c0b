// Plain-text files: which encoding they are in, and the way there and back.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include "base/Text.h"

namespace melvorin {

enum class TextEncoding { Ansi, Utf8, Utf8WithBom, Utf16LeWithBom, Utf16BeWithBom };

// The single-byte (or double-byte) code page of the machine.
class AnsiCodec {
  public:
    virtual ~AnsiCodec() = default;
    virtual Text decode(std::string_view bytes) const = 0;
    // Nothing when some character has no exact place in the code page.
    virtual std::optional<std::string> encode(TextView text) const = 0;
};

// Windows-1252; its five unassigned bytes map to the C1 controls of the same number, as Windows
// does, so that every file survives a round trip.
const AnsiCodec& windows1252();

// By byte-order mark, then by being valid UTF-8, else Ansi. Pure ASCII is UTF-8 too, so that what
// is added to it always fits.
TextEncoding detectEncoding(std::string_view bytes);

// The bytes with which every file of the encoding begins; often none.
std::string_view byteOrderMark(TextEncoding encoding);

struct DecodedText {
    Text text;  // without the byte-order mark, line ends as found
    TextEncoding encoding;
    // True when the bytes do not follow their encoding (malformed UTF-8 behind a byte-order mark,
    // half a UTF-16 unit at the end, bytes the code page cannot give back): the text then holds
    // substitutes, and encoding it does not restore the file.
    bool lossy = false;
};

// The text of a file, its encoding detected.
DecodedText decodeText(std::string_view bytes, const AnsiCodec& ansi);

// The bytes of a file with this text, byte-order mark included where the encoding has one. Nothing
// when the text does not fit the encoding: Ansi has few characters, and UTF-8 no halves of
// surrogate pairs.
std::optional<std::string> encodeText(TextView text, TextEncoding encoding, const AnsiCodec& ansi);

// The same for a part of a file, without byte-order mark. Parts begin and end at characters.
DecodedText decodePart(std::string_view bytes, TextEncoding encoding, const AnsiCodec& ansi);
std::optional<std::string> encodePart(TextView text, TextEncoding encoding, const AnsiCodec& ansi);

// How long a part of roughly `wanted` bytes is that begins at the start of `bytes` and ends behind
// a line feed: that is a character of its own in every encoding, and never half a line end. Without
// a line feed near enough the part is longer, at worst all of `bytes`.
std::size_t partLength(std::string_view bytes, TextEncoding encoding, std::size_t wanted);

}  // namespace melvorin
