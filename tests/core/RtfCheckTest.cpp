#include "rtf/RtfCheck.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>

#include "RtfSamples.h"
#include "rtf/FileKind.h"
#include "rtf/RtfReader.h"
#include "rtf/RtfRows.h"

namespace melvorin {
namespace {

using Kind = RtfVerdict::Kind;
using namespace std::string_literals;

std::string nested(std::size_t depth, const std::string& opening) {
    std::string rtf = "{\\rtf1 ";
    for (std::size_t i = 1; i < depth; ++i)
        rtf += opening;
    return rtf + "x" + std::string(depth, '}');
}

std::string row(std::size_t defined, std::size_t used) {
    std::string rtf = "{\\rtf1\\trowd";
    for (std::size_t i = 0; i < defined; ++i)
        rtf += "\\cellx" + std::to_string(100 * (i + 1));
    rtf += "\\intbl ";
    for (std::size_t i = 0; i < used; ++i)
        rtf += "x\\cell ";
    return rtf + "\\row\\pard y}";
}

void expectVerdicts(const std::vector<std::pair<std::string, Kind>>& cases) {
    for (const auto& [rtf, expected] : cases) {
        const RtfVerdict verdict = checkRtf(rtf);
        EXPECT_EQ(verdict.kind, expected) << rtf.substr(0, 200);
        EXPECT_EQ(verdict.sentence.empty(), expected == Kind::Ok);
    }
}

TEST(RtfCheck, JudgesWholeDocuments) {
    const std::string word250 = "\\" + std::string(kMaxRtfWordLength - 2, 'q');
    expectVerdicts({
        {"", Kind::NotRtf},
        {"plain text", Kind::NotRtf},
        {"{\\rtfx a}", Kind::NotRtf},
        {"{ \\rtf1 a}", Kind::NotRtf},
        {"{\\RTF1 a}", Kind::NotRtf},
        {"{\\rtf1}", Kind::Ok},
        {"{\\rtf1 a\\{b\\}\\\\\\'e9\\u233?\\~\\unknown-5 c}", Kind::Ok},
        // Incomplete.
        {"{\\rtf", Kind::Truncated},
        {"{\\rtf1 a", Kind::Truncated},
        {"{\\rtf1 {a}", Kind::Truncated},
        {"{\\rtf1 a\\}", Kind::Truncated},
        {"{\\rtf1 a\\", Kind::Truncated},
        {"{\\rtf1 a\\'4", Kind::Truncated},
        {"{\\rtf1{\\pict\\bin5 ab}}", Kind::Truncated},
        {"{\\rtf1{\\pict\\bin2147483647 ab}}", Kind::Truncated},
        {"{\\rtf1{\\pict\\bin99999999999999999999 ab}}", Kind::Truncated},
        // Behind the end.
        {"{\\rtf1 a}\r\n\0\0"s, Kind::Ok},
        {"{\\rtf1 a}\x1A", Kind::Ok},
        {"{\\rtf1 a}b}", Kind::Ok},
        {"{\\rtf1 a}{\\rtf1 b}", Kind::Ok},
        // Codes and lengths.
        {"{\\rtf1 \\'zz}", Kind::Malformed},
        {"{\\rtf1{\\info{\\author \\'4\r\n1}}}", Kind::Malformed},
        {"{\\rtf1 a\0b}"s, Kind::Malformed},
        {"{\\rtf1 \\bin-1 a}", Kind::Malformed},
        {"{\\rtf1 \\uc17 a}", Kind::Malformed},
        {"{\\rtf1 \\uc-1 a}", Kind::Malformed},
        {"{\\rtf1 \\u x}", Kind::Malformed},
        {"{\\rtf1\\ansicpg99999 a}", Kind::Malformed},
        {"{\\rtf1\\mac\\ansicpg10001 a}", Kind::Ok},
        {"{\\rtf1\\ansicpg10007 a}", Kind::Ok},
        {"{\\rtf1" + word250 + " a}", Kind::Ok},
        {"{\\rtf1" + word250 + "qq a}", Kind::Malformed},
        {"{\\rtf1\\fs" + std::string(kMaxRtfWordLength, '1') + " a}", Kind::Malformed},
        {nested(kMaxRtfDepth, "{"), Kind::Ok},
        {nested(kMaxRtfDepth + 1, "{"), Kind::TooDeep},
        {nested(kMaxRtfDepth + 1, "{\\*\\x "), Kind::TooDeep},
        {nested(200000, "{\\b\\cf1 "), Kind::TooDeep},
    });
}

TEST(RtfCheck, JudgesFontTables) {
    const std::string name250(kMaxRtfNameLength - 1, 'N');
    expectVerdicts({
        {"{\\rtf1{\\fonttbl}a}", Kind::Ok},
        {"{\\rtf1{\\fonttbl\r\n{\\f0\\fnil{\\*\\panose 02}X{\\*\\falt Y};}}a}", Kind::Ok},
        {"{\\rtf1{\\fonttbl\\f0 X;\\f1 Y;}a}", Kind::Ok},
        {"{\\rtf1{\\fonttbl{\\f0 X\\u233?\\~\\'e9 Y;}}a}", Kind::Ok},
        {"{\\rtf1{\\fonttbl{\\f0 " + name250 + ";}}a}", Kind::Ok},
        {"{\\rtf1{\\fonttbl{\\f0 " + name250 + "N;}}a}", Kind::Malformed},
        {"{\\rtf1{\\fonttbl{}}a}", Kind::Malformed},
        {"{\\rtf1{\\fonttbl{\\f0\\fnil}}a}", Kind::Malformed},
        {"{\\rtf1{\\fonttbl{{\\f0 X;}}}a}", Kind::Malformed},
        {"{\\rtf1{\\fonttbl{\\f0 X;Y;}}a}", Kind::Malformed},
        {"{\\rtf1{\\fonttbl{\\f0 X\\b}}a}", Kind::Malformed},
        {"{\\rtf1{\\fonttbl{\\f0 X;}\\*}a}", Kind::Malformed},
        {"{\\rtf1{\\fonttbl{\\f0 X\t}}a}", Kind::Malformed},
        {"{\\rtf1{\\fonttbl{\\f0 X}}a}", Kind::Ok},
        {"{\\rtf1{\\fonttbl{\\f0 X;}\\f1 Y;}a}", Kind::Malformed},
        {"{\\rtf1{\\fonttbl\\f0 X;{\\f1 Y;}}a}", Kind::Malformed},
        {"{\\rtf1{\\pict{\\fonttbl{\\f0 X;}}}a}", Kind::Malformed},
        {"{\\rtf1 a{\\fonttbl\\f0 b;}}", Kind::Malformed},
        {"{\\rtf1\\fonttbl{\\f0 X;}a}", Kind::Malformed},
        {"{\\rtf1 a\\u0?b}", Kind::Malformed},
        {"{\\rtf1 a\\u65536?b}", Kind::Malformed},
        {"{\\rtf1 a\\'00b}", Kind::Malformed},
        {"{\\rtf1\\u233?{\\fonttbl{\\f0 X;}}a}", Kind::Malformed},
    });
}

TEST(RtfCheck, JudgesOtherParts) {
    expectVerdicts({
        // Colours.
        {"{\\rtf1{\\colortbl ;\\red1\\green2\\blue3;\r\n}a}", Kind::Ok},
        {"{\\rtf1{\\colortbl;\\red1\\green2\\blue3}a}", Kind::Malformed},
        {"{\\rtf1{\\colortbl;{\\red1}}a}", Kind::Malformed},
        {"{\\rtf1{\\colortbl;zz;}a}", Kind::Malformed},
        // Style sheet.
        {"{\\rtf1{\\stylesheet{Normal;}{\\*\\cs10\\additive D;}{\\s1{\\*\\k x}H;}}a}", Kind::Ok},
        {"{\\rtf1{\\stylesheet{\\s0 Normal}}a}", Kind::Malformed},
        {"{\\rtf1{\\stylesheet{\\s0 Normal{\\*\\x y};}}a}", Kind::Malformed},
        {"{\\rtf1{\\stylesheet Normal;}a}", Kind::Malformed},
        {"{\\rtf1{\\stylesheet{{\\s0 Normal;}}}a}", Kind::Malformed},
        // Parts of their own.
        {"{\\rtf1{\\header h}{\\*\\x y}{ \\field{\\*\\fldinst z}{\\fldrslt r}}a}", Kind::Ok},
        {"{\\rtf1 a{\\*}b}", Kind::Malformed},
        {"{\\rtf1 a\\header b}", Kind::Malformed},
        {"{\\rtf1 {a\\*\\x b}}", Kind::Malformed},
        {"{\\rtf1{\\pict{\\bin1 a\\*\\x b}}}", Kind::Malformed},
        {"{\\rtf1{\\pict{\\bin0 \\*\\x b}}}", Kind::Ok},
    });
}

TEST(RtfCheck, JudgesTables) {
    expectVerdicts({
        {row(2, 2), Kind::Ok},
        {row(3, 1), Kind::Ok},
        {row(1, 2), Kind::Malformed},
        {row(kMaxRtfCells, kMaxRtfCells), Kind::Ok},
        {row(kMaxRtfCells + 1, kMaxRtfCells), Kind::Malformed},
        {"{\\rtf1\\trowd\\cellx9\\cellx99\\pard\\intbl a\\cell b\\cell\\pard\\intbl{\\trowd\\cellx9"
         "\\cellx99\\row}\\pard c}",
         Kind::Ok},
        {"{\\rtf1{\\header\\trowd\\cellx9\\intbl a\\cell b\\cell\\row}c}", Kind::Ok},
        {"{\\rtf1\\intbl a\\par\\pard b}", Kind::Malformed},
        {"{\\rtf1\\trowd\\cellx9\\intbl a\\cell\\row b}", Kind::Ok},
        {"{\\rtf1\\trowd\\cellx9\\intbl a\\cell b\\row\\pard c}", Kind::Malformed},
        {"{\\rtf1\\trowd\\cellx9\\cellx99\\intbl a\\cell\\trowd\\cellx9 b\\cell\\row\\pard c}",
         Kind::Malformed},
        {"{\\rtf1\\trowd\\cellx9\\cellx99\\intbl a\\cell\\pard b\\row\\pard c}", Kind::Malformed},
        {"{\\rtf1{\\*\\s1\\intbl\\row\\par b}}", Kind::Ok},
        {"{\\rtf1{\\*\\defpap \\itap0 "
         "}{\\*\\pgptbl{\\pgp\\itap0}}{\\*\\ftnsep\\itap0{\\chftnsep\\par}}b}",
         Kind::Ok},
        {"{\\rtf1{\\pict\\pngblip 00\\intbl a\\cell}b}", Kind::Ok},
        {"{\\rtf1\\itap2 a\\pard}", Kind::Malformed},
        {"{\\rtf1 a\\nestcell b}", Kind::Malformed},
    });
}

// Little-endian numbers of two and four bytes as hexadecimal digits.
std::string number(std::uint32_t value, int bytes) {
    std::string hex;
    char digits[3];
    for (; bytes > 0; --bytes, value >>= 8) {
        std::snprintf(digits, sizeof digits, "%02x", value & 0xFFu);
        hex += digits;
    }
    return hex;
}

TEST(RtfCheck, RefusesDamagedPictures) {
    const std::string wmf = "\\wmetafile8 " + number(1, 2) + number(9, 2) + number(0x300, 2);
    const std::string wmfRest = number(1, 2) + number(4, 4) + number(0, 2);
    const std::string wmfEnd = number(3, 4) + number(0, 2);
    const std::string emf = "\\emfblip " + number(1, 4) + number(88, 4) + std::string(64, '0') +
                            number(0x464D4520, 4) + number(0x10000, 4) + number(108, 4) +
                            std::string(72, '0');
    const std::string emfEnd = number(14, 4) + number(20, 4) + std::string(24, '0');
    const auto dib = [](std::uint32_t width, std::uint32_t height, std::uint32_t bits) {
        return "\\dibitmap0 " + number(40, 4) + number(width, 4) + number(height, 4) +
               number(1, 2) + number(bits, 2) + std::string(48, '0');
    };
    const struct {
        std::string picture;
        bool sound;
    } cases[] = {
        {wmf + number(12, 4) + wmfRest + wmfEnd, true},
        {wmf + number(12, 4) + wmfRest + "\r\n" + wmfEnd.substr(0, 3) + " " + wmfEnd.substr(3),
         true},
        {wmf + number(13, 4) + wmfRest + wmfEnd, false},
        {wmf + number(12, 4) + wmfRest, false},
        {"\\wmetafile8 010009000003", false},
        {wmf + number(16, 4) + wmfRest + number(4, 4) + number(0x12D, 2) + number(0, 2) + wmfEnd,
         true},
        {wmf + number(16, 4) + wmfRest + number(4, 4) + number(0x12D, 2) + number(1, 2) + wmfEnd,
         false},
        {wmf + number(15, 4) + wmfRest + number(3, 4) + number(0x1F0, 2) + wmfEnd, false},
        {wmf + number(12, 4) + wmfRest + number(0x80000003, 4) + number(5, 2), false},
        {wmf + number(12, 4) + wmfRest + number(2, 4) + number(5, 2) + wmfEnd, false},
        {emf + emfEnd, true},
        {emf, false},
        {emf + number(14, 4) + number(24, 4) + std::string(24, '0'), false},
        {emf + number(2, 4) + number(0, 4) + emfEnd, false},
        {dib(2, 1, 24) + std::string(16, '0'), true},
        {dib(2, 1, 24) + std::string(14, '0'), false},
        {dib(2, 0xFFFFFFFF, 24) + std::string(16, '0'), true},
        {dib(0x7FFFFFFF, 0x7FFFFFFF, 32), false},
        {dib(1, 1, 8) + std::string(8, '0'), false},
        {"\\pngblip 00", true},
    };
    for (const auto& [picture, sound] : cases) {
        const RtfVerdict verdict = checkRtf("{\\rtf1{\\pict" + picture + "}a}");
        EXPECT_EQ(verdict.kind, sound ? Kind::Ok : Kind::Malformed) << picture;
    }
    // Raw bytes are data as well.
    EXPECT_EQ(checkRtf("{\\rtf1{\\pict\\wmetafile8\\bin4 abcd}a}").kind, Kind::Malformed);
}

TEST(RtfCheck, GivesWhatEveryControlReads) {
    const struct {
        std::string rtf;
        std::string expected;
    } cases[] = {
        {"\xEF\xBB\xBF\r\n {\\rtf1 a}\r\n\0"s, "{\\rtf1 a}"},
        {"{\\rtf1{\\fonttbl {\\f0 A B; } \t{\\f1 C;} }{\\stylesheet {\\s1 N; } }a b}",
         "{\\rtf1{\\fonttbl {\\f0 A B;}{\\f1 C;}}{\\stylesheet {\\s1 N;}}a b}"},
        {"{\\rtf1{\\pict\\pngblip\\bin4 }\\{\0}x}"s, "{\\rtf1{\\pict\\pngblip\r\n7d5c7b00}x}"},
        {"{\\rtf1{\\object{\\*\\objdata\\bin2 }}}}x}",
         "{\\rtf1{\\object{\\*\\objdata\r\n7d7d}}\\nop x}"},
        {"{\\rtf1\\tx-1a\\fi99999 b\\li-99999999999\\tx31680 c\\tx d}",
         "{\\rtf1\\tx0 a\\fi31680 b\\li-31680 \\tx31680 c\\tx0 d}"},
        {"{\\rtf1{\\fonttbl\\f0\\fnil\t\tA;\\f1 \tB;}a}",
         "{\\rtf1{\\fonttbl\\f0\\fnil A;\\f1 B;}a}"},
        {"{\\rtf1{\\fonttbl{\\f0 A;\\bin1 x\t}}a}", "{\\rtf1{\\fonttbl{\\f0 A;\r\n}}a}"},
        {"{\\rtf1{\\fonttbl{\\f0\\fcharset7 A;}{\\f1\\fcharset204 B;}}a}",
         "{\\rtf1{\\fonttbl{\\f0\\fcharset1 A;}{\\f1\\fcharset204 B;}}a}"},
        {"{\\rtf1 a\\bin3 }}}b\\bin0 c}", "{\\rtf1 a\r\nb\r\nc}"},
        {"{\\rtf1 \\u233\\bin1 x{b}}", "{\\rtf1 \\u233\r\n?{b}}"},
        {"{\\rtf1 \\u233{\\b x}\\u233 ?{\\uc2\\u233{}}\\uc0\\u233{y}\\u233}",
         "{\\rtf1 \\u233?{\\b x}\\u233 ?{\\uc2\\u233??{}}\\uc0\\u233{y}\\u233}"},
    };
    for (const auto& [rtf, expected] : cases) {
        EXPECT_TRUE(looksLikeRtf(rtf));
        EXPECT_EQ(checkRtf(rtf).document, expected);
        EXPECT_EQ(checkRtf(expected).document, expected);
    }
}

TEST(RtfCheck, TellsTextFromBinary) {
    std::string compressed;
    for (unsigned i = 1; i < 2000; ++i)
        compressed += static_cast<char>(static_cast<unsigned char>(1 + i * 89 % 255));
    const struct {
        std::string bytes;
        bool expected;
    } cases[] = {
        {"", false},
        {"C  Am\r\n\tcaf\xE9\f\x1A", false},
        {"\x1B[1mbold\x1B[0m", false},
        {"a\0b"s, true},
        {"\xFF\xFE"
         "a\0b\0"s,
         false},
        {"\xFE\xFF\0a\0b"s, false},
        {"\xFF\xFE\0\0a\0"s, true},
        {"\x01\x02\x03", false},
        {"\x01\x02\x03\x04", true},
        {compressed, true},
    };
    for (const auto& [bytes, expected] : cases)
        EXPECT_EQ(looksBinary(bytes), expected) << testing::PrintToString(bytes.substr(0, 20));
}

// Without blanks and line ends.
std::string wordsIn(const std::string& rtf) {
    Text text = readRtf(rtf).text;
    std::erase_if(text, [](char16_t c) { return c <= u' '; });
    return toUtf8(text);
}

TEST(RtfCheck, JudgesDamageWithoutHarm) {
    samples::Random random(20);
    std::size_t accepted = 0;
    for (int i = 0; i < 4000; ++i) {
        const std::string rtf = samples::damaged(random, samples::randomSample(random).rtf);
        const RtfVerdict verdict = checkRtf(rtf);
        EXPECT_EQ(verdict.sentence.empty(), verdict.kind == Kind::Ok);
        if (verdict.kind != Kind::Ok)
            continue;
        ++accepted;
        const RtfVerdict again = checkRtf(verdict.document);
        EXPECT_EQ(again.kind, Kind::Ok);
        EXPECT_EQ(again.document, verdict.document);
        // What is written differently says the same.
        EXPECT_EQ(wordsIn(verdict.document), wordsIn(rtf)) << rtf << "\n" << verdict.document;
    }
    EXPECT_GT(accepted, 400u);
    EXPECT_LT(accepted, 3600u);
}

}  // namespace
}  // namespace melvorin
