// Characters that a control loses when it writes Rich Text.
#pragma once

#include <string>

#include "base/Text.h"

namespace melvorin {

// Some controls write a look-alike for a character outside the code page of its font: "O" for "Ω"
// in a western font, "e" for "é" in a Cyrillic one, and any letter for a character that a symbol
// font does not have. Returns `rtf`, which a control has written for `text` (its own text, line
// ends as CR), with such characters put right; formatting stays. Unchanged where nothing is lost,
// or where the source does not go together with the text.
std::string withLostCharacters(std::string rtf, TextView text);

}  // namespace melvorin
