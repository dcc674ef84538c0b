#include "rtf/RtfMap.h"

#include <algorithm>
#include <array>
#include <limits>

#include "rtf/RtfCharacters.h"
#include "rtf/RtfCodePages.h"
#include "rtf/RtfFormatWords.h"
#include "rtf/RtfLexer.h"

namespace melvorin {
namespace {

constexpr std::size_t kMaxDepth = 64;
constexpr std::size_t kMaxColours = 0xFFFE;
// The bytes of a symbol font are characters of the private area from here on.
constexpr int kSymbols = 0xF000;

std::uint8_t colourPart(std::int32_t number) {
    return static_cast<std::uint8_t>(std::clamp<std::int32_t>(number, 0, 255));
}

}  // namespace

// Reads a document from its first brace to its last. Every step is false where the map would not
// be exact.
class RtfMapParser {
  public:
    using Kind = RtfToken::Kind;

    explicit RtfMapParser(std::string_view rtf) : lexer_(rtf) { map_.source_ = rtf; }

    std::optional<RtfMap> parse();

  private:
    struct State {
        std::uint16_t font = RtfMap::kNoFont;
        std::uint16_t colour = 0;
        std::uint8_t skip = 1;
    };

    bool body();
    bool token(const RtfToken& token);
    bool open(const RtfToken& brace);
    bool skipGroup(RtfToken token);
    bool picture(const RtfToken& brace, const RtfToken& word);
    bool close(const RtfToken& brace);
    bool word(const RtfToken& token);
    bool colourWord(const RtfToken& token);
    bool fontWord(const RtfToken& token);
    bool plain(const RtfToken& token);
    bool symbol(const RtfToken& token);
    bool unicode(const RtfToken& token);
    bool encoded(const RtfToken& token);
    const RtfFontPage* pageOf(const RtfMap::Font& font) const;
    std::optional<char16_t> character(const RtfFontPage& page, RtfToken& token);
    bool add(char16_t unit, const RtfToken& token);

    bool fontTable();
    bool fontEntry(RtfToken token, bool isGroup);
    bool fontEntryWord(const RtfToken& token, RtfMap::Font& font);
    void faceByte(RtfToken token, RtfMap::Font& font);
    bool faceUnicode(const RtfToken& token, RtfMap::Font& font);
    bool colourTable();
    bool tail(std::size_t begin) const;
    void finish(std::size_t end);

    // The next token that is not a line end of the source.
    RtfToken next() {
        RtfToken token = lexer_.next();
        while (token.kind == Kind::Break)
            token = lexer_.next();
        return token;
    }
    void piece(const RtfToken& token, RtfMap::Piece::Kind kind) {
        map_.pieces_.push_back({static_cast<std::uint32_t>(token.begin),
                                static_cast<std::uint32_t>(token.end), kind, state_.colour});
    }
    std::uint16_t fontIndex(std::int32_t number) const;

    RtfMap map_;
    RtfLexer lexer_;
    State state_;
    std::vector<State> outer_;
    std::int32_t defaultFont_ = 0;
    std::uint16_t defaultIndex_ = RtfMap::kNoFont;
    const RtfFontPage* ansiPage_ = RtfFontPage::of(1252);  // of the machine's default charset
    RtfToken last_;
};

std::optional<RtfMap> RtfMapParser::parse() {
    const std::string_view source = map_.source_;
    if (source.size() >= std::numeric_limits<std::uint32_t>::max())
        return std::nullopt;
    lexer_ = RtfLexer(source);
    if (lexer_.next().kind != Kind::Open || !lexer_.next().isWord("rtf") || !body())
        return std::nullopt;
    return std::move(map_);
}

bool RtfMapParser::body() {
    outer_.push_back(state_);
    while (!outer_.empty()) {
        const RtfToken next = lexer_.next();
        if (next.kind == Kind::End || next.cut || !token(next))
            return false;
        last_ = next;
    }
    finish(last_.begin);
    return map_.bodyStart_ != 0 && tail(last_.end);
}

bool RtfMapParser::token(const RtfToken& token) {
    switch (token.kind) {
        case Kind::Open:
            return open(token);
        case Kind::Close:
            return close(token);
        case Kind::Word:
            return word(token);
        case Kind::Symbol:
            return symbol(token);
        case Kind::Hex:
        case Kind::Byte:
            return encoded(token);
        case Kind::Break:
        case Kind::End:
            break;
    }
    return true;
}

bool RtfMapParser::open(const RtfToken& brace) {
    const std::size_t content = lexer_.offset();
    RtfToken first = next();
    const bool isHeader = outer_.size() == 1 && map_.chars_.empty() && map_.pieces_.empty();
    if (first.isWord("fonttbl"))
        return isHeader && map_.bodyStart_ == 0 && fontTable();
    if (first.isWord("colortbl"))
        return isHeader && !map_.coloursClose_ && colourTable();
    if (first.kind == Kind::Word && isRtfSilentGroup(first.name))
        return skipGroup(first);
    if (first.isSymbol('*')) {
        first = next();
        if (first.isWord("shppict"))
            return picture(brace, first);
        return first.kind == Kind::Word && isRtfSkippedGroup(first.name) && skipGroup(first);
    }
    if (first.isWord("pict"))
        return picture(brace, first);
    if (outer_.size() >= kMaxDepth || map_.bodyStart_ == 0)
        return false;
    lexer_ = RtfLexer(map_.source_, content);
    piece(brace, RtfMap::Piece::Kind::Open);
    outer_.push_back(state_);
    return true;
}

// Skips to the end of a group, from a token inside it.
bool RtfMapParser::skipGroup(RtfToken token) {
    for (std::size_t depth = 1;; token = lexer_.next()) {
        if (token.kind == Kind::End || token.cut || token.name == "bin")
            return false;
        if (token.kind == Kind::Hex && token.byte < 0)
            return false;
        if (token.kind == Kind::Open)
            ++depth;
        else if (token.kind == Kind::Close && --depth == 0)
            return true;
    }
}

// A picture is one character; some controls show it as a blank.
bool RtfMapParser::picture(const RtfToken& brace, const RtfToken& word) {
    if (!skipGroup(word))
        return false;
    RtfToken whole = brace;
    whole.end = lexer_.offset();
    return add(u'\uFFFC', whole);
}

bool RtfMapParser::close(const RtfToken& brace) {
    if (outer_.size() > 1) {
        state_ = outer_.back();
        piece(brace, RtfMap::Piece::Kind::Reset);
    }
    outer_.pop_back();
    return true;
}

bool RtfMapParser::word(const RtfToken& token) {
    if (token.overflow)
        return false;
    if (isRtfFormatWord(token.name))
        return true;
    if (const auto character = rtfWordCharacter(token.name))
        return !token.hasNumber && add(*character, token);
    if (token.name == "cf")
        return colourWord(token);
    if (token.name == "f" || token.name == "deff")
        return fontWord(token);
    if (token.name == "u")
        return unicode(token);
    if (token.name == "plain")
        return plain(token);
    if (token.name == "uc") {
        state_.skip = static_cast<std::uint8_t>(token.number);
        return token.hasNumber && token.number >= 0 && token.number <= 16;
    }
    if (token.name == "ansicpg") {
        ansiPage_ = RtfFontPage::of(static_cast<unsigned>(token.number));
        return map_.bodyStart_ == 0;
    }
    return token.name == "itap" && token.hasNumber && token.number == 0;
}

bool RtfMapParser::colourWord(const RtfToken& token) {
    const auto count = static_cast<std::int32_t>(std::max<std::size_t>(map_.colours_.size(), 1));
    if (!token.hasNumber || token.number < 0 || token.number >= count || map_.bodyStart_ == 0)
        return false;
    state_.colour = static_cast<std::uint16_t>(token.number);
    piece(token, RtfMap::Piece::Kind::Colour);
    return true;
}

bool RtfMapParser::fontWord(const RtfToken& token) {
    if (token.name == "deff") {
        defaultFont_ = token.number;
        return token.hasNumber && map_.bodyStart_ == 0;
    }
    state_.font = fontIndex(token.number);
    return token.hasNumber && state_.font != RtfMap::kNoFont;
}

bool RtfMapParser::plain(const RtfToken& token) {
    // Controls do not agree whether this brings the default font back.
    if (state_.font != defaultIndex_)
        state_.font = RtfMap::kNoFont;
    state_.colour = 0;
    piece(token, RtfMap::Piece::Kind::Reset);
    return map_.bodyStart_ != 0;
}

bool RtfMapParser::symbol(const RtfToken& token) {
    switch (token.byte) {
        case '~':
            return add(u'\u00A0', token);
        case '-':
            return add(u'\u00AD', token);
        case '_':
            return add(u'\u2011', token);
        case '\r':
        case '\n':
            return add(u'\r', token);
        case '\\':
        case '{':
        case '}':
            return add(static_cast<char16_t>(token.byte), token);
        default:
            return false;
    }
}

bool RtfMapParser::unicode(const RtfToken& token) {
    if (!token.hasNumber || token.number < -0x8000 || token.number > 0xFFFF)
        return false;
    RtfToken whole = token;
    for (int i = 0; i < state_.skip; ++i) {
        const RtfToken skipped = lexer_.next();
        if (skipped.kind != Kind::Byte && skipped.kind != Kind::Hex)
            return false;
        if (skipped.byte < 0x20)
            return false;
        whole.end = skipped.end;
        whole.kind = skipped.kind;
    }
    const auto unit = static_cast<char16_t>(token.number & 0xFFFF);
    return unit >= 0x20 && add(unit, whole);
}

bool RtfMapParser::encoded(const RtfToken& token) {
    // A hyphen that looks like the sign of a number that is missing.
    if (token.byte == '-' && last_.kind == Kind::Word && !last_.hasNumber &&
        map_.source_[token.begin - 1] != ' ' && last_.end == token.begin)
        return false;
    if (token.byte == '\t' && token.kind == Kind::Byte)
        return add(u'\t', token);
    if (state_.font == RtfMap::kNoFont)
        return false;
    const RtfMap::Font& font = map_.fonts_[state_.font];
    // A control has written NUL where its symbol font lacks a character.
    const bool isSymbol = font.charset == RtfMap::Charset::Symbol;
    if (token.byte < 0x20 && !(isSymbol && token.byte == 0 && token.kind == Kind::Byte))
        return false;
    if (isSymbol)
        return add(static_cast<char16_t>(kSymbols + token.byte), token);
    if (font.charset == RtfMap::Charset::Latin)
        return add(latinCharacter(static_cast<unsigned char>(token.byte)), token);
    if (token.byte < 0x80)
        return add(static_cast<char16_t>(token.byte), token);
    const RtfFontPage* const page = pageOf(font);
    RtfToken whole = token;
    const auto c = page == nullptr ? std::nullopt : character(*page, whole);
    return c && add(*c, whole);
}

const RtfFontPage* RtfMapParser::pageOf(const RtfMap::Font& font) const {
    return font.charset == RtfMap::Charset::Default ? ansiPage_ : font.page;
}

// The character that begins with the byte of `token`, which is made to reach to its end.
std::optional<char16_t> RtfMapParser::character(const RtfFontPage& page, RtfToken& token) {
    if (!page.isLead(token.byte))
        return page.character(token.byte);
    const RtfToken trail = lexer_.next();
    if ((trail.kind != Kind::Byte && trail.kind != Kind::Hex) || trail.byte < 0x20)
        return std::nullopt;
    token.end = trail.end;
    return page.character(token.byte, trail.byte);
}

bool RtfMapParser::add(char16_t unit, const RtfToken& token) {
    if (map_.bodyStart_ == 0)
        return false;
    const bool isLineEnd = unit == u'\r' || unit == u'\v';
    if (!isLineEnd && state_.font == RtfMap::kNoFont)
        return false;
    const bool endsOpen = token.kind == Kind::Word && isAlphanumeric(map_.source_[token.end - 1]);
    const bool isWhole = unit == u'\uFFFC' && token.kind == Kind::Open;
    map_.chars_.push_back({static_cast<std::uint32_t>(token.begin),
                           static_cast<std::uint32_t>(token.end), state_.font, state_.colour,
                           state_.skip, endsOpen, isWhole});
    map_.text_.push_back(unit);
    return true;
}

std::uint16_t RtfMapParser::fontIndex(std::int32_t number) const {
    const auto& fonts = map_.fonts_;
    const auto found = std::find_if(fonts.begin(), fonts.end(), [&](const RtfMap::Font& font) {
        return font.number == number;
    });
    return found == fonts.end() ? RtfMap::kNoFont
                                : static_cast<std::uint16_t>(found - fonts.begin());
}

bool RtfMapParser::fontTable() {
    RtfToken token = next();
    for (; token.kind != Kind::Close; token = next()) {
        const bool isGroup = token.kind == Kind::Open;
        if (map_.fonts_.size() >= RtfMap::kNoFont - 1U ||
            !fontEntry(isGroup ? next() : token, isGroup))
            return false;
    }
    map_.fontsEnd_ = token.end;
    map_.bodyStart_ = token.end;
    defaultIndex_ = fontIndex(defaultFont_);
    state_.font = defaultIndex_;
    return true;
}

// One font, in a group of its own or without, from its first token.
bool RtfMapParser::fontEntry(RtfToken token, bool isGroup) {
    RtfMap::Font font;
    font.number = -1;
    bool ended = false;
    for (;; token = next()) {
        if (token.kind == Kind::Close) {
            if (!isGroup)
                return false;
            break;
        }
        if (token.kind == Kind::Open) {
            if (!skipGroup(next()))
                return false;
        } else if (token.isWord("u")) {
            if (ended || !faceUnicode(token, font))
                return false;
        } else if (token.kind == Kind::Word) {
            if (ended || !fontEntryWord(token, font))
                return false;
        } else if ((token.kind == Kind::Byte || token.kind == Kind::Hex) && token.byte >= 0x20 &&
                   !ended) {
            ended = token.kind == Kind::Byte && token.byte == ';';
            if (ended && !isGroup)
                break;
            if (!ended)
                faceByte(token, font);
        } else {
            return false;
        }
    }
    while (font.face.ends_with(u' '))
        font.face.pop_back();
    const bool isNew = font.number >= 0 && fontIndex(font.number) == RtfMap::kNoFont;
    map_.fonts_.push_back(std::move(font));
    return isNew;
}

// A name that cannot be read exactly is that of no font in particular: it has a substitute.
void RtfMapParser::faceByte(RtfToken token, RtfMap::Font& font) {
    const bool isLatin = font.charset == RtfMap::Charset::Latin || token.byte < 0x80;
    const RtfFontPage* const page = isLatin ? nullptr : pageOf(font);
    const std::size_t behind = lexer_.offset();
    std::optional<char16_t> c;
    if (isLatin)
        c = latinCharacter(static_cast<unsigned char>(token.byte));
    else if (page != nullptr)
        c = character(*page, token);
    if (!c)
        lexer_ = RtfLexer(map_.source_, behind);
    font.face += c.value_or(u'\uFFFD');
}

bool RtfMapParser::faceUnicode(const RtfToken& token, RtfMap::Font& font) {
    if (!token.hasNumber || token.number < -0x8000 || token.number > 0xFFFF)
        return false;
    font.face += static_cast<char16_t>(token.number & 0xFFFF);
    // Stand-ins, as far as there are any.
    for (int i = 0; i < state_.skip; ++i) {
        const std::size_t behind = lexer_.offset();
        const RtfToken skipped = lexer_.next();
        const bool isByte = skipped.kind == Kind::Byte && skipped.byte != ';';
        if (!isByte && skipped.kind != Kind::Hex) {
            lexer_ = RtfLexer(map_.source_, behind);
            break;
        }
    }
    return true;
}

bool RtfMapParser::fontEntryWord(const RtfToken& token, RtfMap::Font& font) {
    static constexpr auto known = std::to_array<std::string_view>(
        {"fnil", "froman", "fswiss", "fmodern", "fscript", "fdecor", "ftech", "fbidi", "fprq",
         "fbias", "flomajor", "fhimajor", "fdbmajor", "fbimajor", "flominor", "fhiminor",
         "fdbminor", "fbiminor"});
    if (token.overflow || !font.face.empty())
        return false;
    if (token.name == "f") {
        font.number = token.number;
        return token.hasNumber;
    }
    if (token.name == "cpg" && token.hasNumber && token.number > 0) {
        font.charset = RtfMap::Charset::Other;
        font.page = RtfFontPage::of(static_cast<unsigned>(token.number));
        return true;
    }
    if (token.name != "fcharset")
        return std::find(known.begin(), known.end(), token.name) != known.end();
    // Controls do not agree which of two counts.
    if (font.charset != RtfMap::Charset::Default)
        return false;
    if (token.number == 0) {
        font.charset = RtfMap::Charset::Latin;
    } else if (token.number == 2) {
        font.charset = RtfMap::Charset::Symbol;
    } else if (token.number != 1) {
        font.charset = RtfMap::Charset::Other;
        const std::optional<unsigned> page = codePageOfCharset(token.number);
        font.page = page ? RtfFontPage::of(*page) : nullptr;
    }
    return token.hasNumber;
}

bool RtfMapParser::colourTable() {
    Rgb colour;
    bool isSet = false;
    for (;;) {
        const RtfToken token = next();
        if (token.kind == Kind::Close) {
            map_.coloursClose_ = token.begin;
            map_.bodyStart_ = std::max(map_.fontsEnd_, token.end);
            return !isSet && map_.fontsEnd_ != 0;
        }
        if (token.kind == Kind::Byte && token.byte == ' ')
            continue;
        if (token.kind == Kind::Byte && token.byte == ';') {
            if (map_.colours_.size() >= kMaxColours)
                return false;
            map_.colours_.push_back(isSet ? std::optional(colour) : std::nullopt);
            colour = {};
            isSet = false;
            continue;
        }
        if (token.isWord("red"))
            colour.red = colourPart(token.number);
        else if (token.isWord("green"))
            colour.green = colourPart(token.number);
        else if (token.isWord("blue"))
            colour.blue = colourPart(token.number);
        else
            return false;
        isSet = true;
    }
}

bool RtfMapParser::tail(std::size_t begin) const {
    const std::string_view rest = std::string_view(map_.source_).substr(begin);
    return rest.find_first_not_of(std::string_view("\0 \t\r\n", 5)) == std::string_view::npos;
}

void RtfMapParser::finish(std::size_t end) {
    // The last \par only ends the last paragraph; its place is the end of the text.
    if (!map_.text_.empty() && map_.text_.back() == u'\r') {
        map_.text_.pop_back();
        return;
    }
    const auto offset = static_cast<std::uint32_t>(end);
    map_.chars_.push_back({offset, offset, state_.font, state_.colour, state_.skip, false, false});
}

std::optional<RtfMap> RtfMap::parse(std::string_view rtf) {
    return RtfMapParser(rtf).parse();
}

std::optional<RtfMap> RtfMap::matching(std::string_view rtf, TextView shown) {
    std::optional<RtfMap> map = parse(rtf);
    if (map)
        map->takeBlanks(shown);
    return map && map->text() == shown ? std::move(map) : std::nullopt;
}

void RtfMap::takeBlanks(TextView shown) {
    if (shown.size() != text_.size())
        return;
    for (std::size_t i = 0; i < shown.size(); ++i) {
        if (shown[i] != u' ' || (text_[i] != u'\v' && !chars_[i].isWhole))
            continue;
        text_[i] = u' ';
        chars_[i].isWhole = true;
    }
}

bool RtfMap::isSymbolAt(std::size_t position) const {
    const std::uint16_t font = chars_[position].font;
    return font != kNoFont && fonts_[font].charset == Charset::Symbol;
}

std::optional<Rgb> RtfMap::colourAt(std::size_t position) const {
    const std::uint16_t colour = chars_[position].colour;
    return colour < colours_.size() ? colours_[colour] : std::nullopt;
}

TextView RtfMap::fontNameAt(std::size_t position) const {
    const std::uint16_t font = chars_[position].font;
    return font == kNoFont ? TextView() : TextView(fonts_[font].face);
}

}  // namespace melvorin
