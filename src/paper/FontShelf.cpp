#include "paper/FontShelf.h"

#include <utility>

#include "base/DiagramFont.h"
#include "base/LetterCase.h"

namespace melvorin {
namespace {

// Faces whose characters are as wide, or nearly so.
constexpr std::pair<TextView, TextView> kAlike[] = {{u"courier new", u"Liberation Mono"},
                                                    {u"courier", u"Liberation Mono"},
                                                    {u"lucida console", u"DejaVu Sans Mono"},
                                                    {u"consolas", u"DejaVu Sans Mono"},
                                                    {u"arial", u"Liberation Sans"},
                                                    {u"helvetica", u"Liberation Sans"},
                                                    {u"times new roman", u"Liberation Serif"},
                                                    {u"verdana", u"DejaVu Sans"}};

constexpr std::size_t kMostFonts = 500;

}  // namespace

TextView alikeFace(TextView face) {
    const Text lower = unicodeLowerCase(face);
    for (const auto& [known, alike] : kAlike) {
        if (known == lower)
            return alike;
    }
    return {};
}

Result<FontNumber> FontShelf::add(std::string bytes, FontUse use) {
    if (fonts_.size() >= kMostFonts)
        return Failure{u"There are too many fonts."};
    Result<TrueTypeFont> font = TrueTypeFont::read(std::move(bytes), use);
    if (!font)
        return Failure{font.cause};
    fonts_.push_back(std::move(*font.value));
    known_.clear();
    return Result<FontNumber>::success(static_cast<FontNumber>(fonts_.size() - 1));
}

std::optional<FontNumber> FontShelf::inFamily(TextView family, const WantedFont& wanted) const {
    std::optional<FontNumber> best;
    int most = -1;
    const Text lower = unicodeLowerCase(family);
    for (std::size_t i = 0; i < fonts_.size(); ++i) {
        const TrueTypeFont& font = fonts_[i];
        const int alike =
            (font.isBold() == wanted.bold ? 2 : 0) + (font.isItalic() == wanted.italic ? 1 : 0);
        if (alike > most && unicodeLowerCase(font.family()) == lower) {
            best = static_cast<FontNumber>(i);
            most = alike;
        }
    }
    return best;
}

bool FontShelf::hasFace(TextView face) const {
    return inFamily(face, {}).has_value();
}

FontNumber FontShelf::find(const WantedFont& wanted) {
    const auto [entry, isNew] = known_.try_emplace(wanted, FontNumber{0});
    if (!isNew)
        return entry->second;
    std::optional<FontNumber> found = inFamily(wanted.face, wanted);
    if (!found && !wanted.face.empty()) {
        missing_.insert(wanted.face);
        found = inFamily(alikeFace(wanted.face), wanted);
    }
    if (!found)
        found = inFamily(fonts_.front().family(), wanted);
    return entry->second = found.value_or(FontNumber{0});
}

std::optional<FontNumber> FontShelf::fontWith(char32_t character, FontNumber first) const {
    if (fonts_[first].advance(character))
        return first;
    // One in the same style is nearer.
    for (const bool sameStyle : {true, false}) {
        for (std::size_t i = 0; i < fonts_.size(); ++i) {
            const TrueTypeFont& font = fonts_[i];
            const bool isAlike = font.isBold() == fonts_[first].isBold() &&
                                 font.isItalic() == fonts_[first].isItalic();
            if (isAlike == sameStyle && font.advance(character) && !isDiagramFace(font.family()))
                return static_cast<FontNumber>(i);
        }
    }
    return std::nullopt;
}

}  // namespace melvorin
