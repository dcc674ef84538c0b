#include "rtf/PictureCheck.h"

#include <cstdint>
#include <optional>

namespace melvorin {
namespace {

std::optional<std::uint32_t> number(std::string_view bytes, std::size_t at, std::size_t size) {
    if (at > bytes.size() || bytes.size() - at < size)
        return std::nullopt;
    std::uint32_t value = 0;
    for (std::size_t i = size; i-- > 0;)
        value = value << 8 | static_cast<unsigned char>(bytes[at + i]);
    return value;
}
std::uint32_t word(std::string_view bytes, std::size_t at) {
    return number(bytes, at, 2).value_or(0);
}
std::uint32_t doubleWord(std::string_view bytes, std::size_t at) {
    return number(bytes, at, 4).value_or(0);
}

// Records: a size in words, a function, and what the function takes.
bool isSoundMetafile(std::string_view bytes) {
    constexpr std::size_t header = 18;
    constexpr std::uint32_t headerWords = 9;
    constexpr std::uint32_t shortest = 3;
    constexpr std::uint32_t select = 0x012D;
    constexpr std::uint32_t selectPalette = 0x0234;
    constexpr std::uint32_t remove = 0x01F0;
    if (word(bytes, 0) != 1 || word(bytes, 2) != headerWords ||
        doubleWord(bytes, 6) > bytes.size() / 2)
        return false;
    const std::uint32_t objects = word(bytes, 10);
    for (std::size_t at = header;;) {
        const auto size = number(bytes, at, 4);
        const auto function = number(bytes, at + 4, 2);
        if (!size || !function || *size < shortest || *size > (bytes.size() - at) / 2)
            return false;
        if (*function == 0)
            return true;
        const bool usesObject =
            *function == select || *function == selectPalette || *function == remove;
        if (usesObject && (*size <= shortest || word(bytes, at + 6) >= objects))
            return false;
        at += std::size_t{*size} * 2;
    }
}

// Records: a type, a size in bytes, and what the type takes.
bool isSoundEnhancedMetafile(std::string_view bytes) {
    constexpr std::uint32_t headerType = 1;
    constexpr std::uint32_t endType = 14;
    constexpr std::uint32_t signature = 0x464D4520;
    constexpr std::uint32_t shortestHeader = 88;
    if (doubleWord(bytes, 0) != headerType || doubleWord(bytes, 4) < shortestHeader ||
        doubleWord(bytes, 40) != signature || doubleWord(bytes, 48) > bytes.size())
        return false;
    for (std::size_t at = 0;;) {
        const auto type = number(bytes, at, 4);
        const auto size = number(bytes, at + 4, 4);
        if (!type || !size || *size < 8 || *size % 4 != 0 || *size > bytes.size() - at)
            return false;
        if (*type == endType)
            return true;
        at += *size;
    }
}

bool isSoundBitmap(std::string_view bytes) {
    constexpr std::uint32_t headerSize = 40;
    constexpr std::uint32_t most = 1 << 15;  // pixels a side
    if (bytes.size() < headerSize || doubleWord(bytes, 0) != headerSize)
        return false;
    const std::uint32_t width = doubleWord(bytes, 4);
    const auto signedHeight = static_cast<std::int32_t>(doubleWord(bytes, 8));
    const std::uint32_t bits = word(bytes, 14);
    const std::uint32_t compression = doubleWord(bytes, 16);
    const std::uint32_t used = doubleWord(bytes, 32);
    if (width == 0 || width > most || signedHeight == 0 ||
        signedHeight > static_cast<std::int32_t>(most) ||
        signedHeight < -static_cast<std::int32_t>(most) || compression != 0 || used > 256)
        return false;
    if (bits != 1 && bits != 4 && bits != 8 && bits != 16 && bits != 24 && bits != 32)
        return false;
    const std::uint64_t colours = used > 0 ? used : bits <= 8 ? 1u << bits : 0u;
    const std::uint64_t row = (std::uint64_t{width} * bits + 31) / 32 * 4;
    const auto height = static_cast<std::uint64_t>(signedHeight < 0 ? -signedHeight : signedHeight);
    return headerSize + colours * 4 + row * height <= bytes.size();
}

}  // namespace

PictureKind pictureKind(std::string_view word) {
    return word == "wmetafile"  ? PictureKind::Metafile
           : word == "emfblip"  ? PictureKind::EnhancedMetafile
           : word == "dibitmap" ? PictureKind::Bitmap
                                : PictureKind::Other;
}

bool isSoundPicture(PictureKind kind, std::string_view bytes) {
    switch (kind) {
        case PictureKind::Metafile:
            return isSoundMetafile(bytes);
        case PictureKind::EnhancedMetafile:
            return isSoundEnhancedMetafile(bytes);
        case PictureKind::Bitmap:
            return isSoundBitmap(bytes);
        case PictureKind::Other:
            break;
    }
    return true;
}

}  // namespace melvorin
