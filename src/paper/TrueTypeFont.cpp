#include "paper/TrueTypeFont.h"

#include <algorithm>
#include <map>

namespace melvorin {
namespace {

// Part of a file that is never read beyond its end: what lies there is 0, and is known to.
class Table {
  public:
    Table() = default;
    explicit Table(std::string_view bytes) : bytes_(bytes) {}

    std::size_t size() const { return bytes_.size(); }
    std::uint16_t u16(std::size_t at) const {
        return static_cast<std::uint16_t>(byte(at) << 8 | byte(at + 1));
    }
    std::int16_t i16(std::size_t at) const { return static_cast<std::int16_t>(u16(at)); }
    std::uint32_t u32(std::size_t at) const {
        return static_cast<std::uint32_t>(u16(at)) << 16 | u16(at + 2);
    }
    // What is left from an offset on, at most `length` bytes.
    Table part(std::size_t at, std::size_t length = std::string_view::npos) const {
        return at > size() ? Table() : Table(bytes_.substr(at, length));
    }

  private:
    unsigned byte(std::size_t at) const {
        return at < size() ? static_cast<unsigned char>(bytes_[at]) : 0U;
    }
    std::string_view bytes_;
};

constexpr std::uint32_t kTrueType = 0x00010000;
constexpr std::uint32_t kOldTrueType = 0x74727565;  // "true"
constexpr std::uint32_t kCollection = 0x74746366;   // "ttcf"
constexpr std::uint32_t kCompact = 0x4F54544F;      // "OTTO"
constexpr TextView kDamaged = u"The font file is damaged.";

}  // namespace

class TrueTypeReader {
  public:
    TrueTypeReader(TrueTypeFont& font, FontUse use)
        : font_(font), file_(font.bytes_), isForDocuments_(use == FontUse::Documents) {}
    // Empty where all is well.
    TextView read();

  private:
    bool findTables();
    bool readMetrics();
    bool readCharacters();
    bool mapSegment(const Table& map, std::size_t segments, std::size_t i);
    bool checkOutlines();
    bool checkParts(std::size_t glyph);
    bool readNames();
    bool hasTable(const char* name) const { return tables_.contains(name); }
    const Table& table(const char* name) { return tables_[name]; }

    TrueTypeFont& font_;
    Table file_;
    bool isForDocuments_;
    std::map<std::string, Table> tables_;
    std::size_t glyphCount_ = 0;
    std::vector<std::size_t> offsets_;
};

TextView TrueTypeReader::read() {
    const std::uint32_t kind = file_.u32(0);
    if (kind == kCollection)
        return u"It is a collection of fonts, not a font.";
    if (kind == kCompact && isForDocuments_)
        return u"Its outlines are not those of TrueType.";
    if (kind != kTrueType && kind != kOldTrueType && kind != kCompact)
        return u"It is not a TrueType font.";
    if (!findTables())
        return kDamaged;
    // The maker's wish: 2 is "restricted", and higher bits relax it.
    constexpr unsigned restricted = 2;
    if (isForDocuments_ && (table("OS/2").u16(8) & 0xFU) == restricted)
        return u"Its maker does not allow to put it into documents.";
    if (!readMetrics() || (isForDocuments_ && !checkOutlines()) || !readCharacters() ||
        !readNames())
        return kDamaged;
    return u"";
}

bool TrueTypeReader::findTables() {
    const std::size_t count = file_.u16(4);
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t row = 12 + 16 * i;
        const std::size_t offset = file_.u32(row + 8);
        const std::size_t length = file_.u32(row + 12);
        if (row + 16 > file_.size() || offset > file_.size() || length > file_.size() - offset)
            return false;
        tables_[font_.bytes_.substr(row, 4)] = file_.part(offset, length);
    }
    const auto needed = std::to_array<std::pair<const char*, std::size_t>>({{"head", 54},
                                                                            {"hhea", 36},
                                                                            {"maxp", 6},
                                                                            {"hmtx", 4},
                                                                            {"cmap", 4},
                                                                            {"name", 6},
                                                                            {"loca", 4},
                                                                            {"glyf", 0},
                                                                            {"OS/2", 78}});
    constexpr std::ptrdiff_t forMeasures = 6;
    const auto end = isForDocuments_ ? needed.end() : needed.begin() + forMeasures;
    return std::all_of(needed.begin(), end, [&](const auto& row) {
        return hasTable(row.first) && table(row.first).size() >= row.second;
    });
}

bool TrueTypeReader::readMetrics() {
    const unsigned unitsPerEm = table("head").u16(18);
    constexpr unsigned least = 16;
    constexpr unsigned most = 16384;
    glyphCount_ = table("maxp").u16(4);
    const std::size_t metrics = table("hhea").u16(34);
    const Table& widths = table("hmtx");
    if (unitsPerEm < least || unitsPerEm > most || glyphCount_ == 0 || metrics == 0 ||
        metrics > glyphCount_ || widths.size() < 4 * metrics + 2 * (glyphCount_ - metrics))
        return false;
    font_.unitsPerEm_ = unitsPerEm;
    font_.ascent_ = table("hhea").i16(4) / font_.unitsPerEm_;
    font_.descent_ = -table("hhea").i16(6) / font_.unitsPerEm_;
    font_.advances_.reserve(glyphCount_);
    for (std::size_t i = 0; i < glyphCount_; ++i)
        font_.advances_.push_back(widths.u16(4 * std::min(i, metrics - 1)));
    return font_.ascent_ > 0 && font_.descent_ >= 0 && font_.ascent_ + font_.descent_ < 8;
}

bool TrueTypeReader::checkOutlines() {
    const bool isShort = table("head").u16(50) == 0;
    const Table& places = table("loca");
    const std::size_t end = table("glyf").size();
    if (places.size() < (glyphCount_ + 1) * (isShort ? 2 : 4))
        return false;
    offsets_.reserve(glyphCount_ + 1);
    for (std::size_t i = 0; i <= glyphCount_; ++i)
        offsets_.push_back(isShort ? 2U * places.u16(2 * i) : places.u32(4 * i));
    if (!std::is_sorted(offsets_.begin(), offsets_.end()) || offsets_.back() > end)
        return false;
    for (std::size_t i = 0; i < glyphCount_; ++i) {
        if (!checkParts(i))
            return false;
    }
    return true;
}

// A glyph that is made of others names some that there are.
bool TrueTypeReader::checkParts(std::size_t glyph) {
    const Table outline =
        table("glyf").part(offsets_[glyph], offsets_[glyph + 1] - offsets_[glyph]);
    if (outline.size() == 0 || outline.i16(0) >= 0)
        return outline.size() == 0 || outline.size() >= 10;
    constexpr unsigned wordArguments = 1;
    constexpr unsigned scale = 8;
    constexpr unsigned more = 32;
    constexpr unsigned twoScales = 64;
    constexpr unsigned matrix = 128;
    unsigned flags = more;
    for (std::size_t at = 10; (flags & more) != 0;) {
        if (at + 4 > outline.size() || outline.u16(at + 2) >= glyphCount_)
            return false;
        flags = outline.u16(at);
        at += (flags & wordArguments) != 0 ? 8 : 6;
        if ((flags & scale) != 0)
            at += 2;
        else if ((flags & twoScales) != 0)
            at += 4;
        else if ((flags & matrix) != 0)
            at += 8;
    }
    return true;
}

bool TrueTypeReader::readCharacters() {
    const Table& maps = table("cmap");
    constexpr std::uint32_t unicode = 0x00030001;
    Table map;
    for (std::size_t i = 0; i < maps.u16(2); ++i) {
        const std::size_t row = 4 + 8 * i;
        const Table found = maps.part(maps.u32(row + 4));
        if (maps.u32(row) == unicode && found.u16(0) == 4)
            map = found.part(0, found.u16(2));
    }
    const std::size_t segments = map.u16(6) / 2U;
    if (segments == 0 || map.size() < 16 + 8 * segments || map.u16(12 + 2 * segments) != 0xFFFF)
        return false;
    font_.glyphs_.assign(0x10000, 0);
    for (std::size_t i = 0; i < segments; ++i) {
        if (!mapSegment(map, segments, i))
            return false;
    }
    return true;
}

bool TrueTypeReader::mapSegment(const Table& map, std::size_t segments, std::size_t i) {
    const std::size_t end = map.u16(14 + 2 * i);
    const std::size_t start = map.u16(16 + 2 * (segments + i));
    const unsigned delta = map.u16(16 + 2 * (2 * segments + i));
    const std::size_t rangeAt = 16 + 2 * (3 * segments + i);
    const std::size_t range = map.u16(rangeAt);
    if (i > 0 && end < map.u16(12 + 2 * i))
        return false;
    for (std::size_t c = start; c <= end; ++c) {
        // The end of the table, in some fonts with a range that leads nowhere.
        if (c == 0xFFFF)
            break;
        const std::size_t at = rangeAt + range + 2 * (c - start);
        if (range != 0 && at + 2 > map.size())
            return false;
        const unsigned base = range == 0 ? static_cast<unsigned>(c) : map.u16(at);
        const unsigned glyph = base == 0 ? 0 : (base + delta) & 0xFFFFU;
        if (glyph >= glyphCount_)
            return false;
        font_.glyphs_[c] = static_cast<std::uint16_t>(glyph);
    }
    return true;
}

bool TrueTypeReader::readNames() {
    const Table& names = table("name");
    constexpr unsigned family = 1;
    constexpr unsigned windows = 3;
    const std::size_t texts = names.u16(4);
    for (std::size_t i = 0; i < names.u16(2); ++i) {
        const std::size_t row = 6 + 12 * i;
        const std::size_t length = names.u16(row + 8);
        const Table text = names.part(texts + names.u16(row + 10), length);
        if (text.size() != length)
            return false;
        if (names.u16(row) != windows || names.u16(row + 6) != family || !font_.family_.empty())
            continue;
        for (std::size_t c = 0; c + 1 < length; c += 2)
            font_.family_ += static_cast<char16_t>(text.u16(c));
    }
    const unsigned style = table("head").u16(44);
    font_.bold_ = (style & 1U) != 0;
    font_.italic_ = (style & 2U) != 0;
    return !font_.family_.empty();
}

Result<TrueTypeFont> TrueTypeFont::read(std::string bytes, FontUse use) {
    TrueTypeFont font;
    font.bytes_ = std::move(bytes);
    if (const TextView trouble = TrueTypeReader(font, use).read(); !trouble.empty())
        return Failure{Text(trouble)};
    return Result<TrueTypeFont>::success(std::move(font));
}

std::optional<double> TrueTypeFont::advance(char32_t character) const {
    const std::size_t glyph = character < glyphs_.size() ? glyphs_[character] : 0U;
    if (glyph == 0)
        return std::nullopt;
    return advances_[glyph] / unitsPerEm_;
}

}  // namespace melvorin
