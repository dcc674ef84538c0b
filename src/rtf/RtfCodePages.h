// The code pages of Rich Text: of the document, and of its fonts.
#pragma once

#include <cstdint>
#include <map>
#include <optional>

#include "rtf/RtfLexer.h"

namespace melvorin {

// The code page of a font's character set (\fcharset), a Windows number; nothing for the default
// set (1), the symbol set (2) and numbers that there are not.
std::optional<unsigned> codePageOfCharset(std::int32_t charset);

// Learns from the words of a document, in their order, how the bytes of its text are to be read.
class RtfFonts {
  public:
    // A word of the font table.
    void tableWord(const RtfToken& token);
    // A word anywhere else.
    void word(const RtfToken& token);

    // In all of these, -1 is the document's default font. Its number:
    std::int32_t number(std::int32_t font) const { return font < 0 ? defaultFont_ : font; }
    // Of the bytes in a font.
    unsigned codePage(std::int32_t font) const;
    // Whether every control reads them so. Some know no character sets of other systems, and take
    // the machine's code page for the document's.
    bool isSure(std::int32_t font) const;

  private:
    struct Font {
        unsigned codePage = 0;
        bool isSure = true;
    };
    const Font* find(std::int32_t font) const;

    std::map<std::int32_t, Font> fonts_;  // those that say their code page
    std::int32_t newFont_ = -1;
    std::int32_t defaultFont_ = 0;
    unsigned document_ = 1252;
};

}  // namespace melvorin
