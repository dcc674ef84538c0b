// Fonts as the page maker sees them: how wide their characters are. Whoever paints the pages has
// them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <tuple>

#include "base/Text.h"

namespace melvorin {

// All lengths in em: times the size of a text they are those of the text.
class PaperFont {
  public:
    virtual ~PaperFont() = default;
    // How far a character moves the pen, exactly; nothing where the font does not have it.
    virtual std::optional<double> advance(char32_t character) const = 0;
    // Of a line, above and below its base line; both positive.
    virtual double ascent() const = 0;
    virtual double descent() const = 0;
};

using FontNumber = std::uint16_t;

struct WantedFont {
    Text face;
    bool bold = false;
    bool italic = false;

    friend bool operator<(const WantedFont& a, const WantedFont& b) {
        return std::tie(a.face, a.bold, a.italic) < std::tie(b.face, b.bold, b.italic);
    }
};

class PaperFonts {
  public:
    virtual ~PaperFonts() = default;
    // Never fails: where the face is not there another one stands for it.
    virtual FontNumber find(const WantedFont& wanted) = 0;
    virtual bool hasFace(TextView face) const = 0;
    // The reference lives as long as the object.
    virtual const PaperFont& font(FontNumber number) const = 0;
    // A font for a character that `first` lacks; nothing where none has it.
    virtual std::optional<FontNumber> fontWith(char32_t character, FontNumber first) const = 0;
};

}  // namespace melvorin
