// The fonts that a document can be written with.
#pragma once

#include <deque>
#include <map>
#include <set>
#include <string>

#include "base/Files.h"
#include "paper/PaperFont.h"
#include "paper/TrueTypeFont.h"

namespace melvorin {

// A face whose characters are as wide, or nearly so; empty where none is known.
TextView alikeFace(TextView face);

class FontShelf : public PaperFonts {
  public:
    // Puts a font there by its file, and gives its number; the numbers count from 0. The first one
    // stands for every face that is not there. Fails as TrueTypeFont::read does, or where there are
    // too many.
    Result<FontNumber> add(std::string bytes, FontUse use = FontUse::Documents);
    bool isEmpty() const { return fonts_.empty(); }

    // A face that is not there has that of a metrically similar one, else the first font, in the
    // style that is wanted where there is one. Not for an empty shelf.
    FontNumber find(const WantedFont& wanted) override;
    const PaperFont& font(FontNumber number) const override { return fonts_[number]; }
    // Never a font of diagrams.
    std::optional<FontNumber> fontWith(char32_t character, FontNumber first) const override;

    // A font that is to be drawn bolder or slanted, as its face has none that is.
    struct Drawn {
        bool bolder = false;
        bool slanted = false;
    };
    void setDrawn(FontNumber number, Drawn drawn) { drawn_[number] = drawn; }
    Drawn drawn(FontNumber number) const {
        const auto found = drawn_.find(number);
        return found == drawn_.end() ? Drawn() : found->second;
    }

    const TrueTypeFont& trueType(FontNumber number) const { return fonts_[number]; }
    bool hasFace(TextView face) const override;
    // Faces that were asked for and are not there.
    const std::set<Text>& missingFaces() const { return missing_; }

  private:
    std::optional<FontNumber> inFamily(TextView family, const WantedFont& wanted) const;

    std::deque<TrueTypeFont> fonts_;
    std::map<WantedFont, FontNumber> known_;
    std::map<FontNumber, Drawn> drawn_;
    std::set<Text> missing_;
};

}  // namespace melvorin
