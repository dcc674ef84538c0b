// A TrueType font file: its widths, its name, and whether it can be put into a document.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "base/Files.h"
#include "paper/PaperFont.h"

namespace melvorin {

// What a font is read for: to be put into a document, or to be measured, where whoever paints has
// the font by its name.
enum class FontUse { Documents, Measures };

class TrueTypeFont : public PaperFont {
  public:
    // Reads the bytes of a file and keeps them. Everything that is read later on, here or by who
    // puts the font into a document, is known to lie within them. Fails with a sentence for a
    // damaged file and for collections; for documents also where the outlines are not TrueType's,
    // and for a font that its maker does not let be embedded.
    static Result<TrueTypeFont> read(std::string bytes, FontUse use = FontUse::Documents);

    std::optional<double> advance(char32_t character) const override;
    double ascent() const override { return ascent_; }
    double descent() const override { return descent_; }

    // The family's name: "DejaVu Sans Mono".
    const Text& family() const { return family_; }
    bool isBold() const { return bold_; }
    bool isItalic() const { return italic_; }
    const std::string& bytes() const { return bytes_; }

  private:
    friend class TrueTypeReader;
    TrueTypeFont() = default;

    std::string bytes_;
    Text family_;
    bool bold_ = false;
    bool italic_ = false;
    double ascent_ = 0;
    double descent_ = 0;
    std::vector<std::uint16_t> glyphs_;  // of each character up to U+FFFF; 0 for none
    std::vector<std::uint16_t> advances_;
    double unitsPerEm_ = 1;
};

}  // namespace melvorin
