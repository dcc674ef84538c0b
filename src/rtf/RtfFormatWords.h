// What the words of Rich Text mean to whoever follows the text of a document.
#pragma once

#include <optional>
#include <string_view>

namespace melvorin {

// True for a word that says how text looks, or what is around it, and never what it is, whatever
// its number: character, paragraph, section and document formatting.
bool isRtfFormatWord(std::string_view name);

// The character that a word stands for: U+000D for \par, U+000B for \line.
std::optional<char16_t> rtfWordCharacter(std::string_view name);

// True for the first word of a group without any text of the document.
bool isRtfSilentGroup(std::string_view name);

// The same for a group that begins with \*, where every control skips it. Others may hold words
// that some control obeys.
bool isRtfSkippedGroup(std::string_view name);

}  // namespace melvorin
