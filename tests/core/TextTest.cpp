#include "CodePageSamples.h"
#include "base/Text.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/TextCodec.h"

namespace melvorin {
namespace {

using namespace std::string_literals;

TEST(Text, LineEndsOfEveryKind) {
    const struct {
        TextView text, crLf, editor;
        std::vector<TextView> lines;
    } cases[] = {
        {u"", u"", u"", {u""}},
        {u"a", u"a", u"a", {u"a"}},
        {u"a\n", u"a\r\n", u"a\r", {u"a", u""}},
        {u"a\r\nb\rc\nd", u"a\r\nb\r\nc\r\nd", u"a\rb\rc\rd", {u"a", u"b", u"c", u"d"}},
        {u"\n\r\r\n\n", u"\r\n\r\n\r\n\r\n", u"\r\r\r\r", {u"", u"", u"", u"", u""}},
        {u"a\r", u"a\r\n", u"a\r", {u"a", u""}},
    };
    for (const auto& example : cases) {
        EXPECT_EQ(toCrLf(example.text).chars, example.crLf);
        EXPECT_EQ(toEditorText(example.text).chars, example.editor);
        EXPECT_EQ(splitLines(example.text), example.lines);
    }
}

TEST(Text, TakeLineCutsOffLineAndEnd) {
    TextView rest = u"C\r\n\rG";
    const TextView expected[][3] = {
        {u"C", u"\r\n", u"\rG"}, {u"", u"\r", u"G"}, {u"G", u"", u""}, {u"", u"", u""}};
    for (const auto& [chars, end, left] : expected) {
        const TextLine line = takeLine(rest);
        EXPECT_EQ(line.chars, chars);
        EXPECT_EQ(line.end, end);
        EXPECT_EQ(rest, left);
    }
}

// The letters around each sequence show that decoding goes on in the right place, and stand at
// every distance from the start so that no block boundary is special.
TEST(Text, Utf8Decoding) {
    const struct {
        const char* bytes;
        TextView text;
        bool valid;
    } cases[] = {
        {"", u"", true},
        {"\xC2\x80", u"\u0080", true},
        {"\xDF\xBF", u"\u07FF", true},
        {"\xE0\xA0\x80", u"\u0800", true},
        {"\xED\x9F\xBF", u"\uD7FF", true},
        {"\xEE\x80\x80", u"\uE000", true},
        {"\xEF\xBF\xBF", u"\uFFFF", true},
        {"\xF0\x90\x80\x80", u"\U00010000", true},
        {"\xF4\x8F\xBF\xBF", u"\U0010FFFF", true},
        {"\xC2\xB0\xC2\xBA", u"\u00B0\u00BA", true},
        {"\x80", u"\uFFFD", false},            // no lead byte
        {"\xFF\xFE", u"\uFFFD\uFFFD", false},  // never in UTF-8
        {"\xC0\xAF", u"\uFFFD\uFFFD", false},  // overlong
        {"\xC1\xBF", u"\uFFFD\uFFFD", false},
        {"\xE0\x9F\xBF", u"\uFFFD\uFFFD\uFFFD", false},
        {"\xF0\x8F\xBF\xBF", u"\uFFFD\uFFFD\uFFFD\uFFFD", false},
        {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD", false},            // surrogate
        {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD", false},  // above U+10FFFF
        {"\xF5\x80", u"\uFFFD\uFFFD", false},
        {"\xE2\x82", u"\uFFFD", false},  // cut short
        {"\xF0\x9F\x8E", u"\uFFFD", false},
        {"\xC3\xC3\xA9", u"\uFFFD\u00E9", false},  // the next character survives
    };
    for (const auto& example : cases) {
        for (std::size_t before = 0; before < 20; ++before) {
            const std::string lead(before, 'a');
            for (const std::string& tail : {""s, "z"s, "zzzzzzzzzzzzzzzzz"s}) {
                const std::string bytes = std::string(lead).append(example.bytes).append(tail);
                const Text text = Text(before, u'a').append(example.text).append(tail.size(), u'z');
                ASSERT_EQ(fromUtf8(bytes), text) << bytes;
                ASSERT_EQ(isValidUtf8(bytes), example.valid) << bytes;
                if (example.valid) {
                    ASSERT_EQ(toUtf8(text), bytes);
                }
            }
        }
    }
}

TEST(Text, Utf8EncodingReplacesLoneSurrogates) {
    const struct {
        Text text;
        const char* bytes;
    } cases[] = {
        {{0xD800}, "\xEF\xBF\xBD"},
        {{0xDC00}, "\xEF\xBF\xBD"},
        {{0xDBFF, u'a'},
         "\xEF\xBF\xBD"
         "a"},
        {{0xDC00, 0xD800}, "\xEF\xBF\xBD\xEF\xBF\xBD"},
        {{0xD83C, 0xD83C, 0xDFB8}, "\xEF\xBF\xBD\xF0\x9F\x8E\xB8"},
    };
    for (const auto& example : cases) {
        EXPECT_EQ(toUtf8(example.text), example.bytes);
    }
}

TEST(TextCodec, Windows1252KeepsEveryByte) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte) {
        all += static_cast<char>(byte);
    }
    const Text text = windows1252().decode(all);
    EXPECT_EQ(windows1252().encode(text), all);
    EXPECT_EQ(text.substr(0x80, 4), (Text{0x20AC, 0x0081, 0x201A, 0x0192}));
    EXPECT_EQ(text.substr(0x9E, 3), (Text{0x017E, 0x0178, 0x00A0}));
    EXPECT_EQ(text[0xBA], u'\u00BA');
    for (const TextView outside : {u"\u0080", u"\u0100", u"\u2603", u"\uFFFD"}) {
        EXPECT_EQ(windows1252().encode(outside), std::nullopt) << toUtf8(outside);
    }
}

// A code page that cannot give back what it reads.
class Forgetful final : public AnsiCodec {
  public:
    Text decode(std::string_view bytes) const override { return Text(bytes.size(), u'?'); }
    std::optional<std::string> encode(TextView text) const override {
        return std::string(text.size(), '?');
    }
};

TEST(TextCodec, DetectsAndRestores) {
    const struct {
        std::string bytes;
        TextView text;
        TextEncoding encoding;
    } cases[] = {
        {"", u"", TextEncoding::Utf8},
        {"Am\r\n", u"Am\r\n", TextEncoding::Utf8},
        {"B\xB0", u"B\u00B0", TextEncoding::Ansi},
        {"B\xC2\xB0", u"B\u00B0", TextEncoding::Utf8},
        {"\xEF\xBB\xBF"
         "Am",
         u"Am", TextEncoding::Utf8WithBom},
        {"\xEF\xBB\xBF", u"", TextEncoding::Utf8WithBom},
        {"\xFF\xFE"
         "A\0\xB0\0"s,
         u"A\u00B0", TextEncoding::Utf16LeWithBom},
        {"\xFE\xFF\0A\0\xB0"s, u"A\u00B0", TextEncoding::Utf16BeWithBom},
        {"\xFF\xFE\x00\xD8"s, {u"\xD800", 1}, TextEncoding::Utf16LeWithBom},
    };
    for (const auto& example : cases) {
        const DecodedText decoded = decodeText(example.bytes, windows1252());
        EXPECT_EQ(decoded.text, example.text) << example.bytes;
        EXPECT_EQ(decoded.encoding, example.encoding) << example.bytes;
        EXPECT_FALSE(decoded.lossy) << example.bytes;
        EXPECT_EQ(encodeText(decoded.text, decoded.encoding, windows1252()), example.bytes);
    }
    EXPECT_EQ(encodeText(u"\u2603", TextEncoding::Ansi, windows1252()), std::nullopt);
    EXPECT_EQ(encodeText({u"a\xD83C", 2}, TextEncoding::Utf8, windows1252()), std::nullopt);
    EXPECT_EQ(loneSurrogates({u"\xDC00\xD83C\xDFB8\xD800"
                              u"a\xD83C",
                              6}),
              3U);
}

TEST(TextCodec, SaysWhenAFileCannotBeRestored) {
    for (const std::string& bytes : {"\xEF\xBB\xBF"
                                     "A\xFF"s,
                                     "\xFF\xFE"
                                     "A\0B"s,
                                     "\xFE\xFF\0"s}) {
        const DecodedText decoded = decodeText(bytes, windows1252());
        EXPECT_TRUE(decoded.lossy) << bytes;
        EXPECT_EQ(decoded.text.back(), u'\uFFFD');
    }
    EXPECT_TRUE(decodeText("\xB0", Forgetful()).lossy);
    EXPECT_FALSE(decodeText("plain", Forgetful()).lossy);
}

TEST(CodePages, ReadAndWriteTheSameOnEverySystem) {
    checkCodePages();
}

}  // namespace
}  // namespace melvorin
