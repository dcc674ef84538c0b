// Upper and lower case of single characters, the same on every machine.
#pragma once

#include "base/Text.h"

namespace melvorin {

// The other case of a letter where that is one UTF-16 unit as well, so that a text keeps its
// length and its columns; anything else comes back unchanged (German sharp s, ligatures, digits).
// Covers Latin with its accents, Greek, Cyrillic, Armenian and full-width letters, after the
// simple case mappings of the Unicode character data. Dotted and dotless i are left alone: their
// case depends on the language.
char16_t upperCaseOf(char16_t c);
char16_t lowerCaseOf(char16_t c);

Text toUpperCase(TextView text);
Text toLowerCase(TextView text);

}  // namespace melvorin
