// The fonts of this machine, measured exactly, for the page maker and for whoever paints its pages.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include "paper/FontShelf.h"
#include "platform/Handles.h"

namespace melvorin {

class SystemFonts : public PaperFonts {
  public:
    // For documents, fonts that cannot be put into one count as not there. `usual` is the face that
    // stands for those that are not there.
    explicit SystemFonts(FontUse use, Text usual = u"Courier New");

    // False where the machine has no font that can be read; nothing else may be asked then.
    bool isReady() { return !shelf_.isEmpty() || take({usual_, false, false}) || takeAny(); }

    FontNumber find(const WantedFont& wanted) override;
    bool hasFace(TextView face) const override;
    const PaperFont& font(FontNumber number) const override { return shelf_.font(number); }
    std::optional<FontNumber> fontWith(char32_t character, FontNumber first) const override;

    FontUse use() const { return use_; }
    // What GDI finds the font by, its height 0.
    const LOGFONTW& logFont(FontNumber number) const { return logFonts_[number]; }
    const FontShelf& shelf() const { return shelf_; }
    // Faces that were asked for and are not there, or not for documents.
    const std::set<Text>& missingFaces() const { return missing_; }
    void forgetMissing() { missing_.clear(); }

  private:
    std::optional<FontNumber> take(const WantedFont& wanted) const;
    bool takeAny();
    std::optional<FontNumber> searchFor(char32_t character) const;
    const std::vector<Text>& families() const;

    FontUse use_;
    Text usual_;
    UniqueMemoryDc dc_;
    std::set<Text> missing_;
    // Filled as fonts are asked for, by their faces or by what they show.
    mutable FontShelf shelf_;
    mutable std::vector<LOGFONTW> logFonts_;
    mutable std::map<WantedFont, std::optional<FontNumber>> taken_;
    mutable std::map<char32_t, std::optional<FontNumber>> byCharacter_;
    mutable std::vector<Text> families_;
};

}  // namespace melvorin
