// Tablature blocks: what an empty tablature looks like as plain text for a monospaced font.
#pragma once

#include <optional>
#include <span>

#include "base/Text.h"

namespace melvorin {

enum class StringOrder { HighOnTop, LowOnTop };

// One instrument in one string order. The views live as long as the program.
struct TabForm {
    std::span<const TextView> letters;  // top line first
    TextView title;
    TextView underline;  // as long as the title
};

// `instrument`: 0 guitar, 1 bass, 2 small guitar; nothing for any other number.
std::optional<TabForm> tabForm(int instrument, StringOrder order);

// Inner dividers that can be chosen: 0 to 4.
inline constexpr int kMostDividers = 4;

// A staff line without its letter, for a screen of this width ("1280"): 121, 93 or 73 characters
// with the bars where `dividers` puts them. The width is compared with "1024" as text, which
// lets "800", "640" and "900" pass and "1000" fail. Nothing for a width that no pattern is for;
// the pattern of an earlier block then stays in use.
std::optional<Text> staffPattern(TextView screenWidth, int dividers);

// The same, 56 characters long, as the window shows it.
Text previewPattern(int dividers);

// The whole block with CR LF between its lines: marker, one line per string, title, underline. No
// line break at its end.
Text tabBlock(const TabForm& form, TextView pattern);

}  // namespace melvorin
