#include "app/FileMark.h"

#include <bit>
#include <cstring>

namespace melvorin {

FileMark markOf(std::string_view bytes) {
    // Eight bytes at a time: a snapshot is marked at every keystroke.
    constexpr std::uint64_t multiplier = 0x9E3779B97F4A7C15u;
    std::uint64_t hash = bytes.size();
    const auto mix = [&hash](std::uint64_t word) {
        hash = std::rotl((hash ^ word) * multiplier, 29);
    };
    std::size_t at = 0;
    for (; at + sizeof(std::uint64_t) <= bytes.size(); at += sizeof(std::uint64_t)) {
        std::uint64_t word = 0;
        std::memcpy(&word, bytes.data() + at, sizeof word);
        mix(word);
    }
    for (; at < bytes.size(); ++at)
        mix(static_cast<unsigned char>(bytes[at]));
    mix(0);
    return {bytes.size(), hash};
}

Compared compare(Files& files, TextView path, const FileMark& mark) {
    const Result<std::uint64_t> size = files.size(path);
    if (!size)
        return Compared::Unknown;
    if (*size.value != mark.size)
        return Compared::Other;
    const Result<std::string> bytes = files.read(path);
    if (!bytes)
        return Compared::Unknown;
    return markOf(*bytes.value) == mark ? Compared::Same : Compared::Other;
}

}  // namespace melvorin
