#include "rtf/RtfCheck.h"

#include <algorithm>
#include <array>
#include <optional>
#include <utility>
#include <vector>

#include "base/Hex.h"
#include "rtf/FileKind.h"
#include "rtf/PictureCheck.h"
#include "rtf/RtfDiagrams.h"
#include "rtf/RtfLexer.h"
#include "rtf/RtfLimits.h"
#include "rtf/RtfRows.h"
#include "rtf/RtfSureCharacters.h"
#include "rtf/RtfUnfold.h"
#include "rtf/RtfWords.h"

namespace melvorin {
namespace {

using Kind = RtfVerdict::Kind;

constexpr TextView kBadFonts = u"The font table of the document is damaged.";
constexpr TextView kBadColours = u"The colour table of the document is damaged.";
constexpr TextView kBadStyles = u"The style sheet of the document is damaged.";
constexpr TextView kBadTable = u"The document has a table that is damaged or too complex.";
constexpr TextView kBadEncoding = u"The character encoding of the document is damaged.";
constexpr TextView kMisplaced = u"A part of the document is not where it belongs.";

// Whatever is no digit is passed over, as the controls do.
std::string bytesOfHex(std::string_view text) {
    std::string bytes;
    int high = -1;
    for (const char c : text) {
        const int digit = hexDigit(c);
        if (digit < 0)
            continue;
        if (high < 0) {
            high = digit;
        } else {
            bytes += static_cast<char>(high << 4 | digit);
            high = -1;
        }
    }
    return bytes;
}

bool isBlank(char c) {
    return c == ' ' || c == '\t' || c == '\r' || c == '\n';
}

bool isFiller(char c) {
    return isBlank(c) || c == '\0' || c == '\x1A' || c == '{' || c == '}';
}

// What a group is, as far as the check is concerned.
enum class Place {
    Body,
    Skipped,  // nothing in it becomes text
    Starred,  // neither, where a control does not know its word
    Data,     // picture or object data, in which raw bytes may be written as hexadecimal
    Fonts,
    Font,
    Colours,
    Styles,
    Style
};

struct Level {
    Place place = Place::Body;
    bool started = false;  // something but an opening \* was seen
    bool isObject = false;
    bool isStarred = false;   // begins with \*
    bool hasText = false;     // of an entry: a name, or the semicolon behind it
    bool ended = false;       // of an entry: the semicolon behind its name was seen
    bool hasEntries = false;  // of a font table: entries are groups
    bool isFlat = false;      // of a font table: entries are not groups
    bool isOpen = false;      // of a colour table, and of a font whose name is not the last thing
                              // in its entry: the semicolon must still come
    std::size_t nameLength = 0;
    std::int32_t skip = 1;  // stand-ins behind a \u
};

class Checker {
  public:
    explicit Checker(std::string_view bytes) : bytes_(bytes), lexer_(bytes) {}

    RtfVerdict run();

  private:
    struct Edit {
        std::size_t begin;
        std::size_t end;
        std::string replacement;
    };

    bool token(const RtfToken& token);
    void countStandIns(const RtfToken& token);
    bool open();
    bool close(std::size_t end);
    bool word(const RtfToken& token);
    bool tableWord(const RtfToken& token);
    bool destination(Place place, TextView sentence);
    bool symbol(const RtfToken& token);
    bool text(const RtfToken& token);
    bool entryText(const RtfToken& token, TextView sentence);
    bool fontTableText(const RtfToken& token);
    void rewriteBinary(const RtfToken& raw);
    bool checkEnd(std::size_t end);
    std::string edited(std::size_t end) const;

    Level& level() { return levels_[depth_ - 1]; }
    bool fail(Kind kind, TextView sentence) {
        verdict_ = {kind, Text(sentence), {}, false};
        return false;
    }
    bool malformed(TextView sentence) { return fail(Kind::Malformed, sentence); }
    // A blank that ends the word before it stays one.
    bool drop(const RtfToken& token) {
        const bool endsWord = token.begin == wordEnd_ && bytes_[token.begin - 1] != ' ';
        edits_.push_back({token.begin, token.end, endsWord ? " " : ""});
        return true;
    }
    void keepDistance(const RtfToken& token);
    void takeData(char hexDigit);

    std::string_view bytes_;
    RtfLexer lexer_;
    std::array<Level, kMaxRtfDepth> levels_;
    std::size_t depth_ = 0;
    RtfRows rows_;
    std::int32_t missing_ = 0;  // stand-ins still to come behind a \u
    bool hasText_ = false;      // the document's text has begun
    std::size_t wordEnd_ = 0;   // where the last word ended
    PictureKind picture_ = PictureKind::Other;
    std::string data_;  // of a picture, as hexadecimal digits
    std::vector<Edit> edits_;
    RtfVerdict verdict_;
};

RtfVerdict Checker::run() {
    for (;;) {
        const RtfToken next = lexer_.next();
        if (next.kind == RtfToken::Kind::End || next.cut) {
            fail(Kind::Truncated, u"The document is incomplete: its end is missing.");
            break;
        }
        if (!token(next))
            break;
        if (depth_ == 0) {
            if (checkEnd(next.end))
                verdict_.document = edited(next.end);
            break;
        }
    }
    return std::move(verdict_);
}

bool Checker::token(const RtfToken& token) {
    countStandIns(token);
    switch (token.kind) {
        case RtfToken::Kind::Open:
            return open();
        case RtfToken::Kind::Close:
            return close(token.end);
        case RtfToken::Kind::Word:
            return word(token);
        case RtfToken::Kind::Symbol:
            return symbol(token);
        case RtfToken::Kind::Hex:
            // Lists of numbers aside from the text have zeros.
            return token.byte > 0 || (token.byte == 0 && level().place != Place::Body)
                       ? text(token)
                       : malformed(u"A character code of the document is damaged.");
        case RtfToken::Kind::Byte:
            return token.byte != 0 ? text(token)
                                   : malformed(u"The document holds bytes that are no text.");
        case RtfToken::Kind::Break:
        case RtfToken::Kind::End:
            break;
    }
    return true;
}

// A control that finds a brace where a stand-in for \u should be miscounts its groups.
void Checker::countStandIns(const RtfToken& token) {
    const bool isStandIn = token.kind == RtfToken::Kind::Byte ||
                           token.kind == RtfToken::Kind::Hex ||
                           token.kind == RtfToken::Kind::Symbol;
    if (token.isWord("u"))
        missing_ = level().skip;
    else if (missing_ > 0 && isStandIn)
        --missing_;
    else if (token.kind != RtfToken::Kind::Break && !token.isWord("bin")) {
        if (missing_ > 0 && token.kind == RtfToken::Kind::Open)
            edits_.push_back(
                {token.begin, token.begin, std::string(static_cast<std::size_t>(missing_), '?')});
        missing_ = 0;
    }
}

bool Checker::open() {
    if (depth_ == kMaxRtfDepth)
        return fail(Kind::TooDeep, u"The formatting of the document is nested too deeply.");
    Place place = Place::Body;
    if (depth_ > 0) {
        Level& outer = level();
        switch (outer.place) {
            case Place::Body:
                break;
            case Place::Fonts:
                if (outer.isFlat)
                    return malformed(kBadFonts);
                outer.hasEntries = true;
                place = Place::Font;
                break;
            case Place::Styles:
                place = Place::Style;
                break;
            case Place::Font:
            case Place::Style:
                if (!outer.started || outer.ended || (outer.place == Place::Style && outer.hasText))
                    return malformed(outer.place == Place::Font ? kBadFonts : kBadStyles);
                outer.isOpen = outer.hasText;
                place = Place::Skipped;
                break;
            case Place::Colours:
                return malformed(kBadColours);
            case Place::Skipped:
            case Place::Starred:
            case Place::Data:
                place = outer.place;
        }
        outer.started = true;
    }
    const std::int32_t skip = depth_ > 0 ? level().skip : 1;
    levels_[depth_++] = Level{.place = place, .skip = skip};
    return true;
}

bool Checker::close(std::size_t end) {
    const Level& closed = level();
    if (closed.place == Place::Starred && !closed.started && closed.isStarred)
        return malformed(kMisplaced);
    if (closed.place == Place::Colours && closed.isOpen)
        return malformed(kBadColours);
    if (closed.place == Place::Font && !closed.ended && (!closed.hasText || closed.isOpen))
        return malformed(kBadFonts);
    if (closed.place == Place::Style && !closed.ended)
        return malformed(kBadStyles);
    if (closed.place == Place::Data && picture_ != PictureKind::Other &&
        !isSoundPicture(std::exchange(picture_, PictureKind::Other), bytesOfHex(data_)))
        return malformed(u"A picture of the document is damaged.");
    // A control swallows what comes next, were it a brace.
    if (closed.isObject && !bytes_.substr(end).starts_with(kNoWord))
        edits_.push_back({end, end, std::string(kNoWord)});
    --depth_;
    return true;
}

bool Checker::word(const RtfToken& token) {
    const std::size_t length = (token.name == "bin" ? token.data : token.end) - token.begin;
    if (length > kMaxRtfWordLength)
        return malformed(u"A command of the document is too long.");
    if (token.name == "bin") {
        if (token.number < 0)
            return malformed(u"The length of binary data in the document is wrong.");
        rewriteBinary(token);
        return true;
    }
    wordEnd_ = token.end;
    keepDistance(token);
    if (level().started && isDestination(token.name))
        return malformed(kMisplaced);
    if ((token.name == "ansicpg" || token.name == "cpg") &&
        (!token.hasNumber || !isKnownCodePage(token.number)))
        return malformed(u"The document is in an unknown code page.");
    if (token.name == "fcharset" && token.hasNumber && !isKnownCharset(token.number))
        edits_.push_back({token.begin, token.end, "\\fcharset1 "});
    // A control that takes U+0000 writes what it does not read again.
    if (token.name == "u" && (!token.hasNumber || token.number % 0x10000 == 0))
        return malformed(kBadEncoding);
    if (token.name == "u" && level().place == Place::Body) {
        // A character as any other.
        rows_.text();
        hasText_ = true;
    }
    if (token.name == "uc") {
        if (token.number < 0 || token.number > kMaxRtfSkip)
            return malformed(kBadEncoding);
        level().skip = token.hasNumber ? token.number : 1;
    }
    if (token.name == "fonttbl")
        return destination(Place::Fonts, kBadFonts);
    if (token.name == "colortbl")
        return destination(Place::Colours, kBadColours);
    if (token.name == "stylesheet")
        return destination(Place::Styles, kBadStyles);
    return tableWord(token);
}

void Checker::keepDistance(const RtfToken& token) {
    const std::optional<std::int32_t> kept = keptDistance(token);
    if (kept && (!token.hasNumber || *kept != token.number || token.overflow))
        edits_.push_back(
            {token.begin, token.end, "\\" + std::string(token.name) + std::to_string(*kept) + " "});
}

// A table or sheet begins: as the first word of its group and before all text, or it would
// swallow text.
bool Checker::destination(Place place, TextView sentence) {
    Level& here = level();
    if (here.started || hasText_ || depth_ != 2 ||
        (here.place != Place::Body && here.place != Place::Starred))
        return malformed(sentence);
    here = Level{.place = place, .started = true, .skip = here.skip};
    return true;
}

bool Checker::tableWord(const RtfToken& token) {
    Level& here = level();
    here.started = true;
    switch (here.place) {
        case Place::Fonts:
            here.isFlat = true;
            return !here.hasEntries || malformed(kBadFonts);
        case Place::Font:
            here.isOpen = here.hasText;
            return !here.ended || malformed(kBadFonts);
        case Place::Colours:
            here.isOpen = true;
            return true;
        case Place::Styles:
            return malformed(kBadStyles);
        case Place::Style:
            return !here.ended || malformed(kBadStyles);
        case Place::Body:
        case Place::Skipped:
        case Place::Starred:
        case Place::Data:
            break;
    }
    here.isObject = here.isObject || token.name == "object";
    if (token.name == "pict" || token.name == "objdata") {
        here.place = Place::Data;
        picture_ = PictureKind::Other;
        data_.clear();
    } else if (here.place == Place::Data && picture_ == PictureKind::Other) {
        picture_ = pictureKind(token.name);
    }
    if (isAside(token.name))
        here.place = Place::Skipped;
    // No table is in such a group, though word processors say of every paragraph that it is in
    // none; some controls would go on with the text in the middle of it.
    if ((here.place == Place::Starred || here.place == Place::Data) &&
        RtfRows::isRowWord(token.name))
        edits_.push_back({token.begin, token.end, std::string(kNoWord)});
    return here.place != Place::Body || rows_.word(token) || malformed(kBadTable);
}

bool Checker::symbol(const RtfToken& token) {
    Level& here = level();
    if (!token.isSymbol('*'))
        return text(token);
    if (here.place == Place::Skipped || here.place == Place::Starred)
        return true;
    if (here.started)
        return malformed(kMisplaced);
    if (here.place == Place::Body || here.place == Place::Data) {
        here.place = Place::Starred;
        here.isStarred = true;
    }
    return true;
}

bool Checker::text(const RtfToken& token) {
    Level& here = level();
    switch (here.place) {
        case Place::Body:
            rows_.text();
            hasText_ = hasText_ || token.byte != ' ';
            break;
        case Place::Fonts:
            return fontTableText(token);
        case Place::Font:
            return entryText(token, kBadFonts);
        case Place::Style:
            return entryText(token, kBadStyles);
        case Place::Styles:
            return token.kind == RtfToken::Kind::Byte && isBlank(static_cast<char>(token.byte))
                       ? drop(token)
                       : malformed(kBadStyles);
        case Place::Colours:
            if (token.kind != RtfToken::Kind::Byte ||
                (token.byte != ';' && !isBlank(static_cast<char>(token.byte))))
                return malformed(kBadColours);
            here.isOpen = here.isOpen && token.byte != ';';
            break;
        case Place::Data:
            takeData(static_cast<char>(token.byte));
            break;
        case Place::Skipped:
        case Place::Starred:
            break;
    }
    here.started = here.started || token.byte != ' ';
    return true;
}

bool Checker::entryText(const RtfToken& token, TextView sentence) {
    Level& here = level();
    const bool isByte = token.kind == RtfToken::Kind::Byte;
    if (here.ended)
        return isByte && isBlank(static_cast<char>(token.byte)) ? drop(token) : malformed(sentence);
    here.ended = isByte && token.byte == ';';
    here.started = here.hasText = true;
    here.isOpen = here.isOpen || token.kind == RtfToken::Kind::Symbol || token.byte == '\t';
    return ++here.nameLength <= kMaxRtfNameLength || malformed(sentence);
}

bool Checker::fontTableText(const RtfToken& token) {
    Level& here = level();
    const bool isByte = token.kind == RtfToken::Kind::Byte;
    if (isByte && isBlank(static_cast<char>(token.byte)) && here.nameLength == 0)
        return drop(token);
    if (!here.isFlat)
        return malformed(kBadFonts);
    here.nameLength = isByte && token.byte == ';' ? 0 : here.nameLength + 1;
    return here.nameLength <= kMaxRtfNameLength || malformed(kBadFonts);
}

void Checker::takeData(char hexDigit) {
    if (picture_ != PictureKind::Other)
        data_ += hexDigit;
}

// What is written instead is judged as if it had stood there.
void Checker::rewriteBinary(const RtfToken& raw) {
    // The line end ends whatever word stands before, and is neither data nor text.
    std::string hex = "\r\n";
    if (level().place == Place::Data) {
        const std::size_t begin = hex.size();
        for (const char c : bytes_.substr(raw.data, raw.end - raw.data))
            appendHex(hex, static_cast<unsigned char>(c), 2);
        RtfToken written;
        written.kind = RtfToken::Kind::Byte;
        for (const char digit : std::string_view(hex).substr(begin)) {
            written.byte = static_cast<unsigned char>(digit);
            token(written);
        }
    }
    edits_.push_back({raw.begin, raw.end, std::move(hex)});
}

bool Checker::checkEnd(std::size_t end) {
    verdict_.textBehind =
        !std::all_of(bytes_.begin() + static_cast<std::ptrdiff_t>(end), bytes_.end(), isFiller);
    return rows_.finished() || malformed(kBadTable);
}

std::string Checker::edited(std::size_t end) const {
    std::string document;
    document.reserve(end);
    std::size_t copied = 0;
    for (const Edit& edit : edits_) {
        document.append(bytes_.substr(copied, edit.begin - copied)).append(edit.replacement);
        copied = edit.end;
    }
    return document.append(bytes_.substr(copied, end - copied));
}

}  // namespace

RtfVerdict checkRtf(std::string_view bytes) {
    if (!looksLikeRtf(bytes))
        return {Kind::NotRtf, u"The file holds no Rich Text.", {}, false};
    const std::string plain =
        withSureCharacters(withPlainDiagrams(unfoldRtf(fromDocumentStart(bytes))));
    return Checker(plain).run();
}

}  // namespace melvorin
