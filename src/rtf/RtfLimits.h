// What the controls can take of a document, and what they know.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>

#include "rtf/RtfLexer.h"

namespace melvorin {

// Groups inside groups, the document's own included. Of the controls we run on, the one with the
// smallest stack reads 32 levels, whatever the groups hold, and crashes at 33. Word processors
// stay far below.
inline constexpr std::size_t kMaxRtfDepth = 30;
// Letters and digits of a control word. A control crashes somewhat above 1,030; Rich Text itself
// allows 32 letters.
inline constexpr std::size_t kMaxRtfWordLength = 250;
// Bytes of a name in the font table or the style sheet; crashes above 1,040.
inline constexpr std::size_t kMaxRtfNameLength = 250;
// Stand-ins behind a \u, as \uc says it; no sound document has more.
inline constexpr std::int32_t kMaxRtfSkip = 16;

// Code pages that every control knows; with an unknown one a control reads nothing at all.
bool isKnownCodePage(std::int32_t number);
// Character sets of fonts that have a code page. In a font of any other, a control reads characters
// that it cannot write.
bool isKnownCharset(std::int32_t number);

// Of a word that is a distance, in twips, the nearest one that every control can take: no farther
// than 22 inches, beyond which some crash in writing it. Without a number some take a number of
// their own, below all, so it is 0. Nothing for other words.
std::optional<std::int32_t> keptDistance(const RtfToken& word);

}  // namespace melvorin
