#include "cli/NamedEncoding.h"

#include <algorithm>
#include <array>
#include <charconv>

#include "base/CodePages.h"
#include "base/LetterCase.h"

namespace melvorin {
namespace {

struct CodePageName {
    std::string_view name;
    unsigned number;
};
constexpr auto kNames = std::to_array<CodePageName>({{"shift-jis", 932},
                                                     {"euc-jp", 20932},
                                                     {"euc-kr", 949},
                                                     {"gbk", 936},
                                                     {"gb2312", 936},
                                                     {"big5", 950},
                                                     {"koi8-r", 20866},
                                                     {"koi8-u", 21866},
                                                     {"macintosh", 10000}});

struct UnicodeName {
    std::string_view name;
    NamedEncoding encoding;
};
constexpr auto kUnicode =
    std::to_array<UnicodeName>({{"utf-8", {TextEncoding::Utf8, false, nullptr}},
                                {"utf-8-bom", {TextEncoding::Utf8WithBom, true, nullptr}},
                                {"utf-16le", {TextEncoding::Utf16LeWithBom, false, nullptr}},
                                {"utf-16be", {TextEncoding::Utf16BeWithBom, false, nullptr}}});

// 0 for what is no number behind the prefix.
unsigned numberBehind(std::string_view name, std::string_view prefix) {
    if (!name.starts_with(prefix))
        return 0;
    name.remove_prefix(prefix.size());
    unsigned number = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
    return error == std::errc() && end == name.data() + name.size() && number <= 65535 ? number : 0;
}

unsigned codePageNamed(std::string_view name) {
    for (const CodePageName& known : kNames) {
        if (known.name == name)
            return known.number;
    }
    constexpr unsigned isoBase = 28590;
    if (const unsigned part = numberBehind(name, "iso-8859-"))
        return part <= 16 ? isoBase + part : 0;
    return std::max(
        {numberBehind(name, ""), numberBehind(name, "cp"), numberBehind(name, "windows-")});
}

}  // namespace

std::optional<NamedEncoding> encodingNamed(TextView name) {
    const std::string lower = toUtf8(asciiLowerCase(name));
    for (const UnicodeName& known : kUnicode) {
        if (known.name == lower)
            return known.encoding;
    }
    constexpr unsigned utf8 = 65001;
    const unsigned number = codePageNamed(lower);
    if (number == utf8)
        return kUnicode[0].encoding;
    const AnsiCodec* const codec = number == 0 ? nullptr : codePage(number);
    // What works on bytes takes ASCII for granted.
    if (codec == nullptr || codec->decode("C#\n") != u"C#\n")
        return std::nullopt;
    return NamedEncoding{TextEncoding::Ansi, false, codec};
}

Text knownEncodings() {
    Text phrase = u"it can be ";
    for (const UnicodeName& known : kUnicode)
        phrase.append(fromUtf8(known.name)).append(u", ");
    for (const CodePageName& known : kNames)
        phrase.append(fromUtf8(known.name)).append(u", ");
    return phrase +
           u"windows-1250 to windows-1258, iso-8859-1 to iso-8859-16, or the number of a "
           u"code page";
}

}  // namespace melvorin
