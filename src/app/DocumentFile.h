// What stands in a document file, told apart and checked before the editor sees any of it.
#pragma once

#include <cstdint>
#include <string>

#include "app/Files.h"
#include "app/Text.h"
#include "app/TextCodec.h"

namespace melvorin {

// A file's content, ready for the editor: Rich Text, or plain text with tabs expanded and without
// its one final line end.
struct DocumentContent {
    bool isRichText = false;
    std::string rtf;
    EditorText text;
};

// A document above this many bytes takes the control noticeable time, so the user is asked first.
inline constexpr std::uint64_t kLargeFile = 8u << 20;
// Files above this many bytes are refused: with the control's own copies they would not fit into
// a 32-bit program's memory.
inline constexpr std::uint64_t kLargestFile = 64u << 20;

// Decides by content: bytes that begin as Rich Text are Rich Text, anything else must be text.
// Fails with a sentence for broken Rich Text, for binary content, and for an empty file that
// should hold Rich Text by its extension.
Result<DocumentContent> readDocument(std::string_view bytes, TextView extension,
                                     const AnsiCodec& ansi);

// The bytes of a plain-text save: the text and one final line end, in the machine's code page if
// every character fits, else UTF-8 with a byte-order mark.
std::string plainDocument(const EditorText& text, const AnsiCodec& ansi);

// "8.3 MB", for messages.
Text sizeInWords(std::uint64_t bytes);

}  // namespace melvorin
