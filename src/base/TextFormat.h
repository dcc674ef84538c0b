// What a plain-text file has beside its text, kept from opening to saving.
#pragma once

#include "base/Text.h"
#include "base/TextCodec.h"

namespace melvorin {

enum class LineEnd { CrLf, Lf, Cr };

// Whether the last line has a line end. That of an empty file is not known: it gets one with its
// first text.
enum class FinalLineEnd { Yes, No, WithText };

// As it stands here a new file is written.
struct TextFormat {
    TextEncoding encoding = TextEncoding::Utf8;
    unsigned codePage = 0;  // of Ansi: its number, 0 for that of the machine
    LineEnd lineEnd = LineEnd::CrLf;
    FinalLineEnd finalLineEnd = FinalLineEnd::Yes;

    friend bool operator==(const TextFormat&, const TextFormat&) = default;
};

// The kind that ends most lines; CR LF where no kind has more than each of the others.
LineEnd commonLineEnd(TextView text);

// The same text with this kind only. CR, LF and CR LF count as line ends.
Text withLineEnds(TextView text, LineEnd lineEnd);

}  // namespace melvorin
