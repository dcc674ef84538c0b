#include "rtf/RtfRepair.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <utility>
#include <vector>

#include "base/CodePages.h"
#include "base/TextCodec.h"
#include "rtf/RtfCharacters.h"
#include "rtf/RtfMap.h"
#include "rtf/RtfWalk.h"

namespace melvorin {
namespace {

// Whether a control may have written something else for `text`: it knows the characters of each
// font's code page, and takes a look-alike for others. Windows-1252 is what most fonts have.
bool mayHaveLost(std::string_view rtf, TextView text) {
    const auto isStrange = [](char16_t c) { return c > 0xFF && latinByte(c) < 0; };
    if (std::any_of(text.begin(), text.end(), isStrange))
        return true;
    const bool isAsciiOnly =
        std::all_of(text.begin(), text.end(), [](char16_t c) { return c < 0x80; });
    constexpr std::string_view word = "\\fcharset";
    for (std::size_t at = rtf.find(word); at != std::string_view::npos; at = rtf.find(word, at)) {
        at += word.size();
        const std::string_view number = rtf.substr(at, 2);
        const bool isSymbol =
            number.starts_with('2') && (number.size() < 2 || number[1] < '0' || number[1] > '9');
        const bool isWestern = number.starts_with('0');
        if (isSymbol || (!isWestern && !isAsciiOnly))
            return true;
    }
    return false;
}

// A part of the line that stays as it is but for its characters.
LineRewrite respelled(std::size_t start, TextView text) {
    LineRewrite part{start, text.size(), Text(text), {}, {}};
    part.source.resize(text.size());
    std::iota(part.source.begin(), part.source.end(), 0U);
    part.keepColour.assign(text.size(), true);
    return part;
}

// Where there is no map (of tables, lists and more), the visible characters of text and source are
// gone through side by side, whatever blanks and line ends are between them.
class SideBySide {
  public:
    SideBySide(const std::string& rtf, TextView text) : rtf_(rtf), text_(text), walk_(rtf) {}

    // The source put right; as it was where the two do not go together.
    std::string run();

  private:
    bool agrees(const RtfToken& token);
    bool byte(const RtfToken& token);
    bool character(char16_t c);
    bool isDone();
    char16_t decoded(int byte) const;

    const std::string& rtf_;
    TextView text_;
    std::size_t at_ = 0;  // in the text
    RtfWalk walk_;
};

std::string SideBySide::run() {
    for (;;) {
        const RtfToken token = walk_.next();
        if (token.kind == RtfToken::Kind::End)
            return rtf_;
        walk_.follow(token);
        if (walk_.isOutside())
            return isDone() ? walk_.result() : rtf_;
        if (walk_.isText() && !agrees(token))
            return rtf_;
    }
}

bool SideBySide::agrees(const RtfToken& token) {
    if (token.isWord("u"))
        return character(static_cast<char16_t>(static_cast<std::uint32_t>(token.number) & 0xFFFFU));
    return !token.isByte() || byte(token);
}

bool isBlank(char16_t c) {
    return c <= u' ' || c == u'\uFFFC';
}

// The next visible character of the text is this one.
bool SideBySide::character(char16_t c) {
    if (isBlank(c))
        return true;
    return !isDone() && text_[at_++] == c;
}

bool SideBySide::isDone() {
    while (at_ < text_.size() && isBlank(text_[at_]))
        ++at_;
    return at_ == text_.size();
}

bool SideBySide::byte(const RtfToken& token) {
    if (token.byte <= ' ')
        return true;
    if (isDone())
        return false;
    const char16_t wanted = text_[at_++];
    const bool isSymbol = wanted == (0xF000 | token.byte);
    if (isSymbol || wanted == decoded(token.byte))
        return true;
    if (wanted < 0x80 || !walk_.hasSoundSkip())
        return false;
    std::string unicode;
    appendUnicode(unicode, wanted, walk_.skip());
    walk_.replace(token.begin, token.end, unicode);
    return true;
}

char16_t SideBySide::decoded(int byte) const {
    if (byte < 0x80)
        return static_cast<char16_t>(byte);
    const AnsiCodec* const codec = codePage(walk_.codePage());
    const char bytes = static_cast<char>(static_cast<unsigned char>(byte));
    const Text text = (codec != nullptr ? *codec : windows1252()).decode({&bytes, 1});
    return text.empty() ? u'\uFFFD' : text.front();
}

// With a question mark for each control character that a control may write for what it does not
// know: it takes the byte from a memory that nothing was put into. No text of a control has any.
std::string withoutJunk(std::string rtf) {
    RtfLexer lexer(rtf);
    std::string out;
    std::size_t copied = 0;
    for (RtfToken token = lexer.next(); token.kind != RtfToken::Kind::End; token = lexer.next()) {
        const bool isByte = token.kind == RtfToken::Kind::Byte || token.kind == RtfToken::Kind::Hex;
        if (!isByte || token.byte < 0 || token.byte >= ' ' || token.byte == '\t')
            continue;
        out.append(rtf, copied, token.begin - copied).append("?");
        copied = token.end;
    }
    if (copied == 0)
        return rtf;
    return out.append(rtf, copied);
}

// How the characters of a text stand to those of a source that has fewer.
struct Alignment {
    std::vector<std::size_t> place;  // in the source, of each character: its own, or the next one
    std::vector<bool> isMissing;
};

// A control that does not know a character at all writes nothing for it. Nothing where more is
// missing than that, or something else is there.
std::optional<Alignment> aligned(const RtfMap& map, TextView text) {
    const TextView written = map.text();
    Alignment result;
    std::size_t at = 0;
    for (const char16_t c : text) {
        const bool isThere =
            at < written.size() &&
            (written[at] == c || (map.isSymbolAt(at) && c >= u' ' && written[at] == (0xF000 | c)));
        if (!isThere && c < 0x80)
            return std::nullopt;
        result.place.push_back(at);
        result.isMissing.push_back(!isThere);
        at += isThere ? 1U : 0U;
    }
    if (at != written.size())
        return std::nullopt;
    return result;
}

// What is missing is put in again, in the format of the next character that the stretch has.
std::string withMissingCharacters(const RtfMap& map, const std::string& rtf, TextView text) {
    const auto found = aligned(map, text);
    if (!found)
        return SideBySide(rtf, text).run();
    const TextView written = map.text();
    const auto isRight = [&](std::size_t i) {
        return !found->isMissing[i] && written[found->place[i]] == text[i];
    };
    std::vector<LineRewrite> parts;
    for (std::size_t i = 0; i < text.size();) {
        if (isRight(i)) {
            ++i;
            continue;
        }
        LineRewrite part;
        part.start = found->place[i];
        for (; i < text.size() && !isRight(i); ++i) {
            part.text += text[i];
            part.source.push_back(static_cast<std::uint32_t>(found->place[i] - part.start));
            part.length = found->place[i] - part.start + (found->isMissing[i] ? 0U : 1U);
        }
        for (std::uint32_t& source : part.source) {
            if (part.length > 0 && source == part.length)
                --source;
        }
        part.keepColour.assign(part.text.size(), true);
        parts.push_back(std::move(part));
    }
    return map.rewrite(parts, Rgb{});
}

}  // namespace

std::string withLostCharacters(std::string rtf, TextView text) {
    if (!mayHaveLost(rtf, text))
        return rtf;
    rtf = withoutJunk(std::move(rtf));
    std::optional<RtfMap> map = RtfMap::parse(rtf);
    if (!map || map->text().size() > text.size())
        return SideBySide(rtf, text).run();
    if (map->text().size() < text.size())
        return withMissingCharacters(*map, rtf, text);
    map->takeBlanks(text);
    const TextView written = map->text();
    const auto isAtRisk = [&](std::size_t i) {
        return text[i] >= 0x80 || (text[i] >= 0x20 && map->isSymbolAt(i));
    };
    std::vector<LineRewrite> parts;
    for (std::size_t i = 0; i < text.size();) {
        if (written[i] == text[i]) {
            ++i;
            continue;
        }
        // A difference elsewhere means that this map is not of this text.
        std::size_t end = i;
        while (end < text.size() && written[end] != text[end] && isAtRisk(end))
            ++end;
        if (end == i)
            return rtf;
        parts.push_back(respelled(i, text.substr(i, end - i)));
        i = end;
    }
    return parts.empty() ? rtf : map->rewrite(parts, Rgb{});
}

}  // namespace melvorin
