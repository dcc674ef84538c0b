// What a file held, in a few bytes, to tell later whether it still does.
#pragma once

#include <cstdint>
#include <string_view>

#include "base/Files.h"

namespace melvorin {

struct FileMark {
    std::uint64_t size = 0;  // bytes
    std::uint64_t hash = 0;  // of all of them; against accidents, not against forgers

    friend bool operator==(const FileMark&, const FileMark&) = default;
};

FileMark markOf(std::string_view bytes);

enum class Compared {
    Same,
    Other,
    Unknown,  // there is no file, or it cannot be read
};
// Reads the file only where its size agrees.
Compared compare(Files& files, TextView path, const FileMark& mark);

}  // namespace melvorin
