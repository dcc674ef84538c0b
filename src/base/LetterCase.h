// Upper and lower case, the same on every machine. Which of the two alphabets a function knows
// stands in its name.
#pragma once

#include "base/Text.h"

namespace melvorin {

enum class LetterCase { Upper, Lower };

// The other case of a letter where that is one UTF-16 unit as well, so that a text keeps its
// length and its columns; anything else comes back unchanged (German sharp s, ligatures, digits).
// Covers Latin with its accents, Greek, Cyrillic, Armenian and full-width letters, after the
// simple case mappings of the Unicode character data. Dotted and dotless i are left alone: their
// case depends on the language. For what people write: words, chords, searches.
char16_t unicodeUpperCase(char16_t c);
char16_t unicodeLowerCase(char16_t c);
Text unicodeUpperCase(TextView text);
Text unicodeLowerCase(TextView text);

// Only A to Z change. For what programs write: extensions, names of settings, faces and encodings.
char16_t asciiLowerCase(char16_t c);
Text asciiLowerCase(TextView text);

}  // namespace melvorin
