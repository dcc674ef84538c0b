#include "base/FileSize.h"

#include <string>

namespace melvorin {

Text sizeInWords(std::uint64_t bytes) {
    // One decimal, rounded, without touching floating point.
    const std::uint64_t tenths = (bytes * 10 + (1u << 19)) >> 20;
    return fromUtf8(std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " MB");
}

}  // namespace melvorin
