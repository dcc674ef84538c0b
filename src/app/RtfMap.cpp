#include "app/RtfMap.h"

#include <algorithm>
#include <array>
#include <limits>
#include <stdexcept>

#include "app/RtfLexer.h"
#include "app/TextCodec.h"

namespace melvorin {
namespace {

constexpr std::size_t kMaxDepth = 64;
constexpr std::size_t kMaxColours = 0xFFFE;

// Words that change how text looks, or what is around it, and never what it is. Sorted.
constexpr auto kFormatWords = std::to_array<std::string_view>({"ansi",       "b",
                                                               "caps",       "cb",
                                                               "charscalex", "chcbpat",
                                                               "deflang",    "deflangfe",
                                                               "deftab",     "dn",
                                                               "embo",       "expnd",
                                                               "expndtw",    "fbidis",
                                                               "fi",         "fs",
                                                               "highlight",  "horzdoc",
                                                               "i",          "impr",
                                                               "keep",       "keepn",
                                                               "kerning",    "lang",
                                                               "langfe",     "langfenp",
                                                               "langnp",     "li",
                                                               "lin",        "lisa",
                                                               "lisb",       "ltrch",
                                                               "ltrpar",     "margb",
                                                               "margl",      "margr",
                                                               "margt",      "nofeaturethrottle",
                                                               "noproof",    "nosupersub",
                                                               "nouicompat", "nowidctlpar",
                                                               "outl",       "paperh",
                                                               "paperw",     "pard",
                                                               "protect",    "qc",
                                                               "qj",         "ql",
                                                               "qr",         "ri",
                                                               "rin",        "sa",
                                                               "saauto",     "sb",
                                                               "sbauto",     "scaps",
                                                               "shad",       "sl",
                                                               "slmult",     "strike",
                                                               "striked",    "sub",
                                                               "super",      "tb",
                                                               "tldot",      "tleq",
                                                               "tlhyph",     "tlth",
                                                               "tlul",       "tqc",
                                                               "tqdec",      "tqr",
                                                               "tx",         "ul",
                                                               "uld",        "uldash",
                                                               "uldashd",    "uldashdd",
                                                               "uldb",       "ulhair",
                                                               "ulhwave",    "ulldash",
                                                               "ulnone",     "ulth",
                                                               "ulthd",      "ulthdash",
                                                               "ulthdashd",  "ulthdashdd",
                                                               "ulthldash",  "ululdbwave",
                                                               "ulw",        "ulwave",
                                                               "up",         "viewkind",
                                                               "viewscale",  "widctlpar"});
static_assert(std::is_sorted(kFormatWords.begin(), kFormatWords.end()));

// Words that are one character.
struct WordCharacter {
    std::string_view word;
    char16_t character;
};
constexpr auto kCharacterWords = std::to_array<WordCharacter>({
    {"par", u'\r'},
    {"line", u'\v'},
    {"tab", u'\t'},
    {"emdash", u'\u2014'},
    {"endash", u'\u2013'},
    {"lquote", u'\u2018'},
    {"rquote", u'\u2019'},
    {"ldblquote", u'\u201C'},
    {"rdblquote", u'\u201D'},
    {"bullet", u'\u2022'},
    {"zwj", u'\u200D'},
    {"zwnj", u'\u200C'},
    {"ltrmark", u'\u200E'},
    {"rtlmark", u'\u200F'},
});

// Destinations without any text of the document.
constexpr auto kSilentGroups =
    std::to_array<std::string_view>({"footer", "footerf", "footerl", "footerr", "header", "headerf",
                                     "headerl", "headerr", "info", "stylesheet"});
// Starred destinations that every control skips. Others may hold words that some control obeys.
constexpr auto kSkippedGroups = std::to_array<std::string_view>(
    {"bkmkend", "bkmkstart", "colorschememapping", "datastore", "generator", "latentstyles",
     "listoverridetable", "listtable", "mmathPr", "pgptbl", "revtbl", "rsidtbl", "themedata",
     "xmlnstbl"});

const std::array<char16_t, 256>& latin() {
    static const std::array<char16_t, 256> table = [] {
        std::string bytes(256, '\0');
        for (std::size_t i = 0; i < bytes.size(); ++i)
            bytes[i] = static_cast<char>(static_cast<unsigned char>(i));
        std::array<char16_t, 256> characters{};
        const Text decoded = windows1252().decode(bytes);
        std::copy_n(decoded.begin(), characters.size(), characters.begin());
        return characters;
    }();
    return table;
}

// The Windows-1252 byte of a character; -1 for none, and for the bytes the code page leaves open.
int latinByte(char16_t c) {
    if (c < 0x80 || (c >= 0xA0 && c <= 0xFF))
        return c;
    const auto* const begin = latin().data() + 0x80;
    const auto* const end = latin().data() + 0xA0;
    const auto* const found = std::find(begin, end, c);
    return found == end || c < 0xA0 ? -1 : static_cast<int>(found - latin().data());
}

template <class Range, class Value>
bool contains(const Range& range, const Value& value) {
    return std::find(range.begin(), range.end(), value) != range.end();
}

bool isAlphanumeric(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool needsColour(const LineRewrite& line) {
    return line.keepColour.size() != line.text.size() || contains(line.keepColour, false);
}

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
    bool close(const RtfToken& brace);
    bool word(const RtfToken& token);
    bool colourWord(const RtfToken& token);
    bool fontWord(const RtfToken& token);
    bool plain(const RtfToken& token);
    bool symbol(const RtfToken& token);
    bool unicode(const RtfToken& token);
    bool encoded(const RtfToken& token);
    bool add(char16_t unit, const RtfToken& token);

    bool fontTable();
    bool fontEntry(RtfToken token, bool isGroup);
    bool fontEntryWord(const RtfToken& token, RtfMap::Font& font);
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
    bool isWestern_ = true;  // characters of the machine's default charset are Windows-1252
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
    if (first.kind == Kind::Word && contains(kSilentGroups, first.name))
        return skipGroup(first);
    if (first.isSymbol('*')) {
        first = next();
        return first.kind == Kind::Word && contains(kSkippedGroups, first.name) && skipGroup(first);
    }
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
    if (std::binary_search(kFormatWords.begin(), kFormatWords.end(), token.name))
        return true;
    const auto* const character =
        std::find_if(kCharacterWords.begin(), kCharacterWords.end(),
                     [&](const WordCharacter& known) { return known.word == token.name; });
    if (character != kCharacterWords.end())
        return !token.hasNumber && add(character->character, token);
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
        isWestern_ = token.number == 1252;
        return map_.bodyStart_ == 0;
    }
    return token.name == "v" && token.hasNumber && token.number == 0;
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
    if (token.byte < 0x20 || state_.font == RtfMap::kNoFont)
        return false;
    const RtfMap::Charset charset = map_.fonts_[state_.font].charset;
    const bool isLatin =
        charset == RtfMap::Charset::Latin || (charset == RtfMap::Charset::Unknown && isWestern_);
    if (charset == RtfMap::Charset::Symbol || (token.byte >= 0x80 && !isLatin))
        return false;
    return add(latin()[static_cast<std::size_t>(token.byte)], token);
}

bool RtfMapParser::add(char16_t unit, const RtfToken& token) {
    if (map_.bodyStart_ == 0)
        return false;
    const bool isLineEnd = unit == u'\r' || unit == u'\v';
    if (!isLineEnd && (state_.font == RtfMap::kNoFont || !map_.fonts_[state_.font].isExact))
        return false;
    const bool endsOpen = token.kind == Kind::Word && isAlphanumeric(map_.source_[token.end - 1]);
    map_.chars_.push_back({static_cast<std::uint32_t>(token.begin),
                           static_cast<std::uint32_t>(token.end), state_.font, state_.colour,
                           state_.skip, endsOpen});
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
        } else if (token.kind == Kind::Word) {
            if (ended || !fontEntryWord(token, font))
                return false;
        } else if ((token.kind == Kind::Byte || token.kind == Kind::Hex) && token.byte >= 0x20 &&
                   !ended) {
            ended = token.kind == Kind::Byte && token.byte == ';';
            if (ended && !isGroup)
                break;
            if (!ended)
                font.face += latin()[static_cast<std::size_t>(token.byte)];
            font.isExact =
                font.isExact && (token.byte < 0x80 || font.charset == RtfMap::Charset::Latin);
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

bool RtfMapParser::fontEntryWord(const RtfToken& token, RtfMap::Font& font) {
    static constexpr auto known = std::to_array<std::string_view>(
        {"fnil", "froman", "fswiss", "fmodern", "fscript", "fdecor", "ftech", "fbidi", "fprq"});
    if (token.overflow || !font.face.empty())
        return false;
    if (token.name == "f") {
        font.number = token.number;
        return token.hasNumber;
    }
    if (token.name != "fcharset")
        return contains(known, token.name);
    // Controls do not agree which of two counts.
    if (font.charset != RtfMap::Charset::Unknown)
        return false;
    if (token.number == 0)
        font.charset = RtfMap::Charset::Latin;
    else if (token.number == 2)
        font.charset = RtfMap::Charset::Symbol;
    else if (token.number != 1)
        font.charset = RtfMap::Charset::OtherAscii;
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
    map_.chars_.push_back({offset, offset, state_.font, state_.colour, state_.skip, false});
}

// Writes the source anew, part by part.
class RtfRewriter {
  public:
    explicit RtfRewriter(const RtfMap& map) : map_(map), source_(map.source_) {}

    std::string rewrite(std::span<const LineRewrite> lines, Rgb colour);

  private:
    using Char = RtfMap::Char;
    using Piece = RtfMap::Piece;

    void chooseColour(Rgb colour);
    void copyUntil(std::size_t offset);
    void check(const LineRewrite& line, std::size_t minStart) const;
    void part(const LineRewrite& line);
    void controlsUntil(std::size_t offset);
    void controls(std::size_t begin, std::size_t end);
    void setColour(std::uint16_t colour);
    void character(char16_t c, const Char& format);
    void escaped(char16_t c, const Char& format);
    void number(std::int32_t value);

    const RtfMap& map_;
    std::string_view source_;
    std::string out_;
    std::size_t done_ = 0;  // source bytes dealt with
    std::uint16_t newColour_ = 0;
    std::string addition_;        // to the colour table
    std::size_t additionAt_ = 0;  // where it goes; no place when empty
    std::size_t nextPiece_ = 0;
    std::uint16_t colourNow_ = 0;  // in force in what is written
    bool isOpen_ = false;          // written text ends in a control word without blank
};

std::string RtfRewriter::rewrite(std::span<const LineRewrite> lines, Rgb colour) {
    if (std::any_of(lines.begin(), lines.end(), needsColour))
        chooseColour(colour);
    std::size_t added = addition_.size();
    for (const LineRewrite& line : lines)
        added += line.text.size() + 16;
    out_.reserve(source_.size() + added);
    out_.append(source_.substr(0, additionAt_)).append(addition_);
    done_ = additionAt_;
    std::size_t minStart = 0;
    for (const LineRewrite& line : lines) {
        check(line, minStart);
        part(line);
        minStart = line.start + line.length + 1;
    }
    copyUntil(source_.size());
    return std::move(out_);
}

void RtfRewriter::chooseColour(Rgb colour) {
    const auto& colours = map_.colours_;
    // The first entry stands for the automatic colour, whatever it says.
    const auto first = colours.begin() + (colours.empty() ? 0 : 1);
    const auto found = std::find(first, colours.end(), std::optional(colour));
    newColour_ = static_cast<std::uint16_t>(found - colours.begin());
    additionAt_ = map_.coloursClose_.value_or(map_.fontsEnd_);
    if (found != colours.end())
        return;
    if (colours.empty()) {
        addition_ = ";";
        newColour_ = 1;
    }
    addition_ += "\\red" + std::to_string(colour.red) + "\\green" + std::to_string(colour.green) +
                 "\\blue" + std::to_string(colour.blue) + ";";
    if (!map_.coloursClose_)
        addition_ = "{\\colortbl" + addition_ + "}";
}

void RtfRewriter::copyUntil(std::size_t offset) {
    if (offset <= done_)
        return;
    out_.append(source_.substr(done_, offset - done_));
    done_ = offset;
}

void RtfRewriter::check(const LineRewrite& line, std::size_t minStart) const {
    const TextView text = map_.text_;
    const auto fits = [&] {
        if (line.start < minStart || line.start > text.size() ||
            line.length > text.size() - line.start)
            return false;
        if (text.substr(line.start, line.length).find_first_of(u"\r\v") != TextView::npos)
            return false;
        if (line.text.find_first_of(u"\r\n") != Text::npos)
            return false;
        return line.source.size() == line.text.size() &&
               (line.keepColour.empty() || line.keepColour.size() == line.text.size()) &&
               std::is_sorted(line.source.begin(), line.source.end()) &&
               (line.source.empty() || line.source.back() <= line.length);
    };
    if (!fits())
        throw std::invalid_argument("RtfMap::rewrite: a part does not fit the text");
}

void RtfRewriter::part(const LineRewrite& line) {
    const Char* const old = map_.chars_.data() + line.start;
    const Char* const before = line.start == 0 ? nullptr : old - 1;
    copyUntil(before == nullptr ? map_.bodyStart_ : before->end);
    colourNow_ = before == nullptr ? std::uint16_t{0} : before->colour;
    isOpen_ = before != nullptr && before->endsOpen;
    while (nextPiece_ < map_.pieces_.size() && map_.pieces_[nextPiece_].begin < done_)
        ++nextPiece_;

    std::size_t column = 0;  // the first old character whose controls are not yet written
    const auto controlsFor = [&](std::size_t last) {
        for (; column <= last; ++column) {
            controlsUntil(old[column].begin);
            done_ = column < line.length ? old[column].end : old[column].begin;
        }
    };
    for (std::size_t i = 0; i < line.text.size(); ++i) {
        const std::size_t from = line.source[i];
        controlsFor(from);
        const bool keeps = !line.keepColour.empty() && line.keepColour[i];
        setColour(keeps ? old[from].colour : newColour_);
        character(line.text[i], old[from]);
    }
    controlsFor(line.length);
    setColour(old[line.length].colour);
    if (isOpen_ && done_ < source_.size() && source_[done_] != '\\' && source_[done_] != '}')
        out_ += ' ';
}

// Writes what stands between two old characters, without their colours.
void RtfRewriter::controlsUntil(std::size_t offset) {
    const auto& pieces = map_.pieces_;
    for (; nextPiece_ < pieces.size() && pieces[nextPiece_].begin < offset; ++nextPiece_) {
        const Piece& piece = pieces[nextPiece_];
        controls(done_, piece.begin);
        done_ = piece.end;
        if (piece.kind == Piece::Kind::Colour)
            continue;
        // What a group ends with counts again behind it: the original's colour, or a group that
        // ends in a later line would carry the new one there.
        if (piece.kind == Piece::Kind::Open)
            setColour(piece.colour);
        controls(piece.begin, piece.end);
        colourNow_ = piece.colour;
    }
    controls(done_, offset);
}

void RtfRewriter::controls(std::size_t begin, std::size_t end) {
    if (begin >= end)
        return;
    out_.append(source_.substr(begin, end - begin));
    isOpen_ = isAlphanumeric(out_.back());
}

void RtfRewriter::setColour(std::uint16_t colour) {
    if (colour == colourNow_)
        return;
    out_ += "\\cf";
    number(colour);
    out_ += ' ';
    isOpen_ = false;
    colourNow_ = colour;
}

void RtfRewriter::character(char16_t c, const Char& format) {
    const bool isSymbol = format.font != RtfMap::kNoFont &&
                          map_.fonts_[format.font].charset == RtfMap::Charset::Symbol;
    if (c >= 0x20 && c < 0x7F && c != u'\\' && c != u'{' && c != u'}' && !isSymbol) {
        if (isOpen_)
            out_ += ' ';
        out_ += static_cast<char>(c);
    } else {
        escaped(c, format);
    }
    isOpen_ = false;
}

void RtfRewriter::escaped(char16_t c, const Char& format) {
    const bool isLatin = format.font != RtfMap::kNoFont &&
                         map_.fonts_[format.font].charset == RtfMap::Charset::Latin;
    const int byte = isLatin ? latinByte(c) : -1;
    if (c == u'\\' || c == u'{' || c == u'}') {
        out_ += '\\';
        out_ += static_cast<char>(c);
    } else if (c == u'\t') {
        out_ += "\\tab ";
    } else if (c == u'\v') {
        out_ += "\\line ";
    } else if (byte >= 0x20) {
        constexpr std::string_view digits = "0123456789abcdef";
        out_ += "\\'";
        out_ += digits[static_cast<std::size_t>(byte) >> 4U];
        out_ += digits[static_cast<std::size_t>(byte) & 15U];
    } else {
        out_ += "\\u";
        number(c < 0x8000 ? c : c - 0x10000);
        // The stand-ins for readers without Unicode also end the number.
        out_.append(format.skip == 0 ? 1 : format.skip, format.skip == 0 ? ' ' : '?');
    }
}

void RtfRewriter::number(std::int32_t value) {
    std::array<char, 12> digits;
    char* const end = digits.data() + digits.size();
    char* at = end;
    const bool negative = value < 0;
    for (std::uint32_t rest = static_cast<std::uint32_t>(negative ? -value : value);; rest /= 10) {
        *--at = static_cast<char>('0' + rest % 10);
        if (rest < 10)
            break;
    }
    if (negative)
        *--at = '-';
    out_.append(at, end);
}

std::optional<RtfMap> RtfMap::parse(std::string_view rtf) {
    return RtfMapParser(rtf).parse();
}

TextView RtfMap::fontNameAt(std::size_t position) const {
    const std::uint16_t font = chars_[position].font;
    return font == kNoFont ? TextView() : TextView(fonts_[font].face);
}

std::optional<Rgb> RtfMap::colourAt(std::size_t position) const {
    const std::uint16_t colour = chars_[position].colour;
    return colour < colours_.size() ? colours_[colour] : std::nullopt;
}

std::string RtfMap::rewrite(std::span<const LineRewrite> lines, Rgb colour) const {
    return RtfRewriter(*this).rewrite(lines, colour);
}

}  // namespace melvorin
