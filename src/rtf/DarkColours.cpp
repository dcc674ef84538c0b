#include "rtf/DarkColours.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "base/Contrast.h"
#include "rtf/RtfLexer.h"

namespace melvorin {
namespace {

using Table = std::vector<std::optional<Rgb>>;

std::uint32_t keyOf(Rgb colour) {
    return static_cast<std::uint32_t>(colour.red) << 16U |
           static_cast<std::uint32_t>(colour.green) << 8U | colour.blue;
}

// So much of the way to white.
Rgb lightened(Rgb colour, int sixteenths) {
    const auto part = [sixteenths](int value) {
        return static_cast<std::uint8_t>(value + (255 - value) * sixteenths / 16);
    };
    return {part(colour.red), part(colour.green), part(colour.blue)};
}

bool isGrey(Rgb colour) {
    const auto [least, most] = std::minmax({colour.red, colour.green, colour.blue});
    constexpr int near = 24;
    return most - least < near;
}

struct ColourGroup {
    std::size_t begin = 0;  // of its brace
    std::size_t end = 0;    // behind its brace
    Table colours;          // nothing for the automatic one
};

// The colour table whose brace the lexer has just given; nothing for another group.
std::optional<ColourGroup> readTable(std::string_view rtf, std::size_t brace) {
    RtfLexer lexer(rtf, brace + 1);
    if (!lexer.next().isWord("colortbl"))
        return std::nullopt;
    ColourGroup group{brace, 0, {}};
    Rgb colour;
    bool isOwn = false;
    for (RtfToken token = lexer.next(); token.kind != RtfToken::Kind::Close; token = lexer.next()) {
        if (token.kind == RtfToken::Kind::End || token.kind == RtfToken::Kind::Open)
            return std::nullopt;
        const auto part = [&](std::uint8_t& value) {
            value = static_cast<std::uint8_t>(std::clamp(token.number, 0, 255));
            isOwn = true;
        };
        if (token.isWord("red")) {
            part(colour.red);
        } else if (token.isWord("green")) {
            part(colour.green);
        } else if (token.isWord("blue")) {
            part(colour.blue);
        } else if (token.kind == RtfToken::Kind::Byte && token.byte == ';') {
            group.colours.push_back(isOwn ? std::optional(colour) : std::nullopt);
            colour = {};
            isOwn = false;
        }
    }
    group.end = lexer.offset();
    return group;
}

std::string written(const Table& colours) {
    std::string text = "{\\colortbl ";
    for (const std::optional<Rgb>& colour : colours) {
        if (colour)
            text += "\\red" + std::to_string(colour->red) + "\\green" +
                    std::to_string(colour->green) + "\\blue" + std::to_string(colour->blue);
        text += ';';
    }
    return text + '}';
}

// Where the colour table is, or where one may stand: behind the fonts.
ColourGroup tablePlace(std::string_view rtf) {
    RtfLexer lexer(rtf);
    int depth = 0;
    std::optional<std::size_t> behindFonts;
    std::size_t behindHead = 0;
    bool inFonts = false;
    for (;;) {
        const RtfToken token = lexer.next();
        switch (token.kind) {
            case RtfToken::Kind::Open:
                ++depth;
                if (auto table = depth == 2 ? readTable(rtf, token.begin) : std::nullopt)
                    return std::move(*table);
                break;
            case RtfToken::Kind::Close:
                --depth;
                if (depth == 1 && std::exchange(inFonts, false))
                    behindFonts = token.end;
                break;
            case RtfToken::Kind::Word:
                inFonts = inFonts || (depth == 2 && token.name == "fonttbl");
                if (depth == 1 && token.name == "rtf")
                    behindHead = token.end;
                break;
            case RtfToken::Kind::End: {
                const std::size_t place = behindFonts.value_or(behindHead);
                return {place, place, {std::nullopt}};
            }
            default:
                break;
        }
    }
}

// Words that name a colour behind text.
bool isMark(const RtfToken& token) {
    static constexpr std::string_view words[] = {"highlight", "cb",      "chcbpat",
                                                 "cbpat",     "clcbpat", "trcbpat"};
    return token.kind == RtfToken::Kind::Word && token.number > 0 &&
           std::find(std::begin(words), std::end(words), token.name) != std::end(words);
}

// The colours of the table that are behind text anywhere in the document, by their numbers.
std::map<std::int32_t, Rgb> marksOf(std::string_view rtf, const ColourGroup& group) {
    std::map<std::int32_t, Rgb> marks;
    RtfLexer lexer(rtf, group.end);
    for (RtfToken token = lexer.next(); token.kind != RtfToken::Kind::End; token = lexer.next()) {
        const auto number = static_cast<std::size_t>(std::max(token.number, 0));
        if (isMark(token) && number < group.colours.size() && group.colours[number])
            marks.emplace(token.number, *group.colours[number]);
    }
    return marks;
}

double brightness(Rgb colour) {
    return contrast(colour, DarkColours::kBackground);
}

}  // namespace

// The wanted one or one near it: the way back must know them apart.
template <typename Allowed>
Rgb DarkColours::standIn(Rgb colour, Rgb wanted, StandIns& known, const Allowed& allowed) {
    const auto isFree = [&](Rgb candidate) {
        return candidate != kText && candidate != kBackground && !own_.contains(keyOf(candidate)) &&
               allowed(candidate);
    };
    const auto take = [&](Rgb candidate) {
        known.emplace(keyOf(colour), candidate);
        own_.emplace(keyOf(candidate), colour);
        return candidate;
    };
    for (int side = 1; side <= 256; side *= 2) {
        for (int n = 0; n < side * side * side; ++n) {
            for (const int sign : {1, -1}) {
                const int red = wanted.red + sign * (n / side / side);
                const int green = wanted.green + sign * (n / side % side);
                const int blue = wanted.blue + sign * (n % side);
                if (std::min({red, green, blue}) < 0 || std::max({red, green, blue}) > 255)
                    continue;
                const Rgb candidate{static_cast<std::uint8_t>(red),
                                    static_cast<std::uint8_t>(green),
                                    static_cast<std::uint8_t>(blue)};
                if (isFree(candidate))
                    return take(candidate);
            }
        }
    }
    return wanted;  // no document has so many
}

Rgb DarkColours::lightOf(Rgb colour, StandIns& known, double least) {
    if (const auto found = known.find(keyOf(colour)); found != known.end())
        return found->second;
    Rgb light = colour;
    if (isGrey(colour) && brightness(colour) < least) {
        const auto turned = static_cast<std::uint8_t>(255 - colour.red);
        light = {turned, turned, turned};
    }
    for (int part = 1; part <= 16 && brightness(light) < least; ++part)
        light = lightened(colour, part);
    return standIn(colour, light, known, [&](Rgb it) { return brightness(it) >= least; });
}

Rgb DarkColours::markOf(Rgb colour) {
    constexpr double most = kBesideMarks / kContrast;
    constexpr int whole = 64;
    if (const auto found = marks_.find(keyOf(colour)); found != marks_.end())
        return found->second;
    Rgb dark = colour;
    for (int part = whole - 1; part >= 0 && brightness(dark) > most; --part) {
        const auto of = [part](int value) {
            return static_cast<std::uint8_t>(value * part / whole);
        };
        dark = {of(colour.red), of(colour.green), of(colour.blue)};
    }
    return standIn(colour, dark, marks_, [&](Rgb it) { return brightness(it) <= most; });
}

Rgb DarkColours::ownOf(Rgb colour) const {
    const auto own = own_.find(keyOf(colour));
    return own == own_.end() ? colour : own->second;
}

std::string DarkColours::darkened(std::string_view rtf) {
    ColourGroup group = tablePlace(rtf);
    const std::map<std::int32_t, Rgb> marks = marksOf(rtf, group);
    for (std::optional<Rgb>& colour : group.colours) {
        if (colour)
            colour =
                marks.empty() ? lightOf(*colour) : lightOf(*colour, besideMarks_, kBesideMarks);
    }
    const std::string text = "\\cf" + std::to_string(group.colours.size()) + ' ';
    group.colours.emplace_back(kText);
    std::map<std::int32_t, std::size_t> numbers;
    for (const auto& [number, colour] : marks) {
        numbers.emplace(number, group.colours.size());
        group.colours.emplace_back(markOf(colour));
    }
    std::string result(rtf.substr(0, group.begin));
    result += written(group.colours) + text;
    RtfLexer lexer(rtf, group.end);
    for (RtfToken token = lexer.next(); token.kind != RtfToken::Kind::End; token = lexer.next()) {
        if (token.isWord("cf") && token.number == 0) {
            result += text;
            continue;
        }
        if (isMark(token) && numbers.contains(token.number)) {
            result.append("\\").append(token.name);
            result += std::to_string(numbers[token.number]) + ' ';
            continue;
        }
        result += rtf.substr(token.begin, token.end - token.begin);
        if (token.isWord("plain"))
            result += text;
    }
    return result;
}

std::string DarkColours::restored(std::string_view rtf) const {
    ColourGroup group = tablePlace(rtf);
    std::vector<bool> isText(group.colours.size());
    for (std::size_t i = 0; i < group.colours.size(); ++i) {
        std::optional<Rgb>& colour = group.colours[i];
        isText[i] = colour == kText;
        if (colour)
            colour = ownOf(*colour);
    }
    std::string result(rtf.substr(0, group.begin));
    if (group.end > group.begin)
        result += written(group.colours);
    RtfLexer lexer(rtf, group.end);
    for (RtfToken token = lexer.next(); token.kind != RtfToken::Kind::End; token = lexer.next()) {
        const bool names = token.isWord("cf") && token.number > 0 &&
                           static_cast<std::size_t>(token.number) < isText.size();
        if (names && isText[static_cast<std::size_t>(token.number)])
            result += "\\cf0 ";
        else
            result += rtf.substr(token.begin, token.end - token.begin);
    }
    return result;
}

}  // namespace melvorin
