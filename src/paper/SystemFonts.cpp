#include "paper/SystemFonts.h"

#include <algorithm>

#include "base/DiagramFont.h"
#include "base/LetterCase.h"
#include "paper/FontCollection.h"

namespace melvorin {
namespace {

// What a font for documents consists of. Of a collection the system gives no file, but its tables.
constexpr const char* kTables[] = {"CFF ", "OS/2", "cmap", "cvt ", "fpgm", "glyf", "gasp", "head",
                                   "hhea", "hmtx", "loca", "maxp", "name", "post", "prep"};
// They have what others lack, and come first.
constexpr TextView kWideFaces[] = {u"Segoe UI", u"Segoe UI Symbol", u"MS Gothic",
                                   u"SimSun",   u"Malgun Gothic",   u"DejaVu Sans"};

DWORD tagOf(std::string_view name) {
    DWORD tag = 0;
    for (std::size_t i = name.size(); i-- > 0;)
        tag = tag << 8U | static_cast<unsigned char>(name[i]);
    return tag;
}

// A table of the font in `dc`, or with 0 all of them; empty where there is none.
std::string fontData(HDC dc, DWORD table) {
    const DWORD size = ::GetFontData(dc, table, 0, nullptr, 0);
    if (size == GDI_ERROR || size == 0)
        return {};
    std::string bytes(size, '\0');
    if (::GetFontData(dc, table, 0, bytes.data(), size) != size)
        return {};
    return bytes;
}

std::string fontFile(HDC dc) {
    constexpr std::string_view collection = "ttcf";
    std::string whole = fontData(dc, 0);
    if (!whole.starts_with(collection) && fontData(dc, tagOf(collection)).empty())
        return whole;
    std::vector<std::pair<std::string, std::string>> tables;
    for (const char* const name : kTables) {
        std::string table = fontData(dc, tagOf(name));
        if (!table.empty())
            tables.emplace_back(name, std::move(table));
    }
    return fontOfTables(tables);
}

LOGFONTW logFontOf(const WantedFont& wanted) {
    LOGFONTW font{};
    font.lfCharSet = DEFAULT_CHARSET;
    font.lfWeight = wanted.bold ? FW_BOLD : FW_NORMAL;
    font.lfItalic = wanted.italic ? TRUE : FALSE;
    font.lfOutPrecision = OUT_TT_PRECIS;
    const std::size_t length = std::min<std::size_t>(wanted.face.size(), LF_FACESIZE - 1);
    std::copy_n(wanted.face.begin(), length, font.lfFaceName);
    return font;
}

Text faceIn(HDC dc) {
    wchar_t name[LF_FACESIZE] = L"";
    ::GetTextFaceW(dc, LF_FACESIZE, name);
    return Text(textOf(name));
}

int CALLBACK addFamily(const LOGFONTW* font, const TEXTMETRICW*, DWORD type, LPARAM families) {
    // A name that begins so is of letters that lie on their side.
    if ((type & TRUETYPE_FONTTYPE) != 0 && font->lfFaceName[0] != L'@')
        reinterpret_cast<std::vector<Text>*>(families)->emplace_back(textOf(font->lfFaceName));
    return 1;
}

}  // namespace

SystemFonts::SystemFonts(FontUse use, Text usual)
    : use_(use), usual_(std::move(usual)), dc_(::CreateCompatibleDC(nullptr)) {}

// The number of a face that is there.
std::optional<FontNumber> SystemFonts::take(const WantedFont& wanted) const {
    const auto [entry, isNew] = taken_.try_emplace(wanted);
    if (!isNew || wanted.face.empty() || wanted.face.size() >= LF_FACESIZE)
        return entry->second;
    LOGFONTW logFont = logFontOf(wanted);
    const UniqueFont font(::CreateFontIndirectW(&logFont));
    const SelectedObject selected(dc_.get(), font.get());
    // The system gives another face for one that is not there.
    if (unicodeLowerCase(faceIn(dc_.get())) != unicodeLowerCase(wanted.face))
        return std::nullopt;
    const Result<FontNumber> added = shelf_.add(fontFile(dc_.get()), use_);
    if (!added)
        return std::nullopt;
    logFonts_.push_back(logFont);
    // The system draws a style that the face does not have out of one that it has.
    const TrueTypeFont& read = shelf_.trueType(*added.value);
    shelf_.setDrawn(*added.value,
                    {wanted.bold && !read.isBold(), wanted.italic && !read.isItalic()});
    return entry->second = added.value;
}

bool SystemFonts::takeAny() {
    const auto& all = families();
    return std::any_of(all.begin(), all.end(), [this](const Text& face) {
        return !isDiagramFace(face) && take({face, false, false}).has_value();
    });
}

FontNumber SystemFonts::find(const WantedFont& wanted) {
    if (const auto found = take(wanted))
        return *found;
    if (!wanted.face.empty())
        missing_.insert(wanted.face);
    for (const Text& face : {Text(alikeFace(wanted.face)), usual_}) {
        if (const auto found = take({face, wanted.bold, wanted.italic}))
            return *found;
    }
    return 0;
}

bool SystemFonts::hasFace(TextView face) const {
    return take({Text(face), false, false}).has_value();
}

const std::vector<Text>& SystemFonts::families() const {
    if (families_.empty()) {
        LOGFONTW every{};
        every.lfCharSet = DEFAULT_CHARSET;
        ::EnumFontFamiliesExW(dc_.get(), &every, addFamily, lparamOf(&families_), 0);
        std::sort(families_.begin(), families_.end());
        families_.erase(std::unique(families_.begin(), families_.end()), families_.end());
    }
    return families_;
}

std::optional<FontNumber> SystemFonts::fontWith(char32_t character, FontNumber first) const {
    if (font(first).advance(character))
        return first;
    const auto [entry, isNew] = byCharacter_.try_emplace(character);
    if (isNew)
        entry->second = searchFor(character);
    return entry->second;
}

std::optional<FontNumber> SystemFonts::searchFor(char32_t character) const {
    const auto takeFor = [&](TextView face) -> std::optional<FontNumber> {
        const auto number = take({Text(face), false, false});
        return number && font(*number).advance(character) ? number : std::nullopt;
    };
    for (const TextView face : kWideFaces) {
        if (const auto found = takeFor(face))
            return found;
    }
    if (character > 0xFFFF)
        return std::nullopt;
    const auto unit = static_cast<wchar_t>(character);
    for (const Text& face : families()) {
        if (isDiagramFace(face))
            continue;
        LOGFONTW logFont = logFontOf({face, false, false});
        const UniqueFont made(::CreateFontIndirectW(&logFont));
        const SelectedObject selected(dc_.get(), made.get());
        WORD glyph = 0xFFFF;
        ::GetGlyphIndicesW(dc_.get(), &unit, 1, &glyph, GGI_MARK_NONEXISTING_GLYPHS);
        if (glyph == 0xFFFF)
            continue;
        if (const auto found = takeFor(face))
            return found;
    }
    return std::nullopt;
}

}  // namespace melvorin
