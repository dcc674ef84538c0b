// What a file is, judged from its bytes alone.
#pragma once

#include <string_view>

namespace melvorin {

// True when the bytes begin with {\rtf, after an optional UTF-8 byte-order mark and white space.
bool looksLikeRtf(std::string_view bytes);

// The bytes from the first that is no byte-order mark and no white space.
std::string_view fromDocumentStart(std::string_view bytes);

// True when a file that claims to be text holds something else. Text in UTF-16 with a byte-order
// mark is text unless it holds U+0000. Otherwise a NUL is a sure sign; and so are more control
// characters than 3 plus 1 in 100 bytes, where TAB, LF, VT, FF, CR, ESC and the old end-of-file
// mark 0x1A do not count: compressed data has about ten in 100.
bool looksBinary(std::string_view bytes);

}  // namespace melvorin
