// The text types of the program.
//
// Text is UTF-16 everywhere (std::u16string), on Linux too, so that a column, a length or a
// position means the same in every build. Columns and positions are 0-based and count UTF-16
// units.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace melvorin {

using Text = std::u16string;
using TextView = std::u16string_view;

// Text as the editing control numbers it: every line end is one CR, so an index into `chars` is
// a position of the control.
struct EditorText {
    Text chars;
};

// Text as the rest of the program and plain-text files have it: every line end is CR LF.
struct CrLfText {
    Text chars;
};

// Both accept CR, LF and CR LF as a line end and write their own kind.
CrLfText toCrLf(TextView any);
EditorText toEditorText(TextView any);

// A line as it stands in a text; `end` is its CR, LF or CR LF, empty only where the text ends.
// Both are views into the text and live as long as it does.
struct TextLine {
    TextView chars;
    TextView end;
};

// Cuts the first line, with its end, off `rest`. An empty `rest` gives an empty line without an
// end, so "until the line has no end" and "until nothing is left" are the two ways to walk a text:
// the first also visits the empty line behind a final line end.
TextLine takeLine(TextView& rest);

// The lines of a text without their line ends. CR, LF and CR LF each end a line; a text that does
// not end in a line end has its rest as last line, one that does has an empty last line. The
// views live as long as `text`'s characters.
std::vector<TextView> splitLines(TextView text);
std::vector<TextView> splitLines(Text&&) = delete;

// UTF-8 conversion. Decoding replaces each malformed sequence by U+FFFD, encoding each lone
// surrogate likewise; nothing throws.
Text fromUtf8(std::string_view bytes);
std::string toUtf8(TextView text);

// How many halves of surrogate pairs stand alone: no encoding but UTF-16 can keep them.
std::size_t loneSurrogates(TextView text);

// "-12".
Text decimal(std::int64_t number);

bool isAscii(std::string_view bytes);

// True when `bytes` is well-formed UTF-8 (no overlong forms, no surrogates, at most U+10FFFF).
bool isValidUtf8(std::string_view bytes);

}  // namespace melvorin
