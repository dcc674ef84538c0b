// The code pages of Rich Text.
#pragma once

#include <cstdint>
#include <optional>

namespace melvorin {

// The code page of a font's character set (\fcharset), a Windows number; nothing for the default
// set (1), the symbol set (2) and numbers that there are not.
std::optional<unsigned> codePageOfCharset(std::int32_t charset);

}  // namespace melvorin
