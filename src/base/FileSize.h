// How large a file may be, and how that is told.
#pragma once

#include <cstdint>

#include "base/Text.h"

namespace melvorin {

// A document above this many bytes takes the control noticeable time, so the user is asked first.
inline constexpr std::uint64_t kLargeFile = 8u << 20;
// Files above this many bytes are refused: with the control's own copies they would not fit into
// a 32-bit program's memory.
inline constexpr std::uint64_t kLargestFile = 64u << 20;

// "8.3 MB", for messages.
Text sizeInWords(std::uint64_t bytes);

}  // namespace melvorin
