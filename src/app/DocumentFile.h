// What stands in a document file, told apart and checked before the editor sees any of it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "base/FileSize.h"
#include "base/Files.h"
#include "base/Text.h"
#include "base/TextCodec.h"
#include "base/TextFormat.h"
#include "base/TextGuess.h"

namespace melvorin {

// A file's content, ready for the editor: Rich Text, or plain text with tabs expanded and without
// its one final line end.
struct DocumentContent {
    bool isRichText = false;
    std::string rtf;
    EditorText text;
    // Of plain text: how to write it again.
    TextFormat format;
};

// Asks the user in which way a text is to be read, the likeliest first; its index, or nothing to
// leave the file alone.
using ReadingChooser =
    std::function<std::optional<std::size_t>(const std::vector<CodePageReading>& readings)>;

// Decides by content: bytes that begin as Rich Text are Rich Text, anything else must be text.
// Fails with a sentence for broken Rich Text, for binary content, and for an empty file that
// should hold Rich Text by its extension. A text whose code page is in doubt is read as `choose`
// says, without it as `ansi` has it; the cause is empty where `choose` left the file alone.
Result<DocumentContent> readDocument(std::string_view bytes, TextView extension,
                                     const AnsiCodec& ansi, const ReadingChooser& choose = {});

// The bytes of a plain-text save, and how they are written.
struct PlainFile {
    std::string bytes;
    TextFormat format;
};

// The text in the format it came in. Where that has no place for a character, or would be read as
// another text, it becomes UTF-8 with a byte-order mark; halves of surrogate pairs, which UTF-8
// cannot hold, make it UTF-16.
PlainFile plainDocument(const EditorText& text, const TextFormat& format, const AnsiCodec& ansi);

}  // namespace melvorin
