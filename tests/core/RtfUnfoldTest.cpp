#include "rtf/RtfUnfold.h"

#include <gtest/gtest.h>

#include <span>

#include "rtf/RtfCheck.h"
#include "rtf/RtfReader.h"

namespace melvorin {
namespace {

struct Case {
    std::string body;
    std::string expected;
};

void expectWritten(std::span<const Case> cases, const std::string& head) {
    for (const auto& [body, expected] : cases) {
        const RtfVerdict verdict = checkRtf(head + body + "}");
        EXPECT_EQ(verdict.document, head + expected + "}") << toUtf8(verdict.sentence);
        EXPECT_EQ(checkRtf(head + expected + "}").document, head + expected + "}");
    }
}

TEST(RtfUnfold, WritesWhatPartsShow) {
    const Case cases[] = {
        // Fields.
        {"a {\\field\\flddirty{\\*\\fldinst{\\b HYPERLINK \"x\"}}{\\fldrslt{\\b link}}} b",
         "a {\\nop \\nop {}{\\nop {\\b link}}} b"},
        {"{\\field{\\*\\fldinst A{\\field{\\*\\fldinst B}{\\fldrslt b}}}{\\fldrslt a}}",
         "{\\nop {}{\\nop a}}"},
        {"{\\field{\\*\\fldinst T}{\\fldrslt 1{\\field{\\*\\fldinst P}{\\fldrslt 2}}\\par 3}}",
         "{\\nop {}{\\nop 1{\\nop {}{\\nop 2}}\\par 3}}"},
        {"{\\field{\\*\\fldinst P}{\\*\\fldrslt{a}}}", "{\\nop {}{\\nop {a}}}"},
        {"{\\field{\\*\\fldinst PAGE}}", "{\\field{\\*\\fldinst PAGE}}"},
        {"{\\header{\\field{\\*\\fldinst PAGE}{\\fldrslt 1}}}",
         "{\\header{\\field{\\*\\fldinst PAGE}{\\fldrslt 1}}}"},
        {"{\\*\\x{\\field{\\fldrslt a}}}b", "{\\*\\x{\\field{\\fldrslt a}}}b"},
        // Objects.
        {"{\\object\\objemb\\objw9{\\*\\objclass W}{\\*\\objdata 01}{\\result\\pard\\b r}}c",
         "{\\nop \\nop \\nop {}{}{\\nop \\nop \\b r}}c"},
        {"{\\object\\objemb{\\*\\objdata 01}}c", "{\\object\\objemb{\\*\\objdata 01}}\\nop c"},
        // With and without Unicode.
        {"{\\upr{a}{\\*\\ud{b\\line c}}}{\\upr{\\*\\bkmkstart a}{\\*\\ud{\\*\\bkmkstart b}}}",
         "{b\\par c}{\\*\\bkmkstart b}"},
        {"{\\upr{a}{\\*\\ud b}}", "{\\upr{a}{\\*\\ud b}}"},
        // Lists.
        {"{\\listtext\\pard\\plain\\f1 2.\\tab}\\ls1\\ilvl0 a",
         "{\\nop \\nop \\plain\\nop 2.\\tab}\\nop \\nop a"},
        {"{\\listtext\\f3 \\'b7\\tab}{\\listtext\\f3\\u-3913 ?\\tab}\\'b7",
         "{\\nop \\nop \\bullet \\tab}{\\nop \\nop \\bullet \\tab}\\'b7"},
        {"{\\listtext 1\\line{\\listtext 2}{\\field{\\fldrslt 3}}{\\b .}}a",
         "{\\nop 1\\nop {}{}{\\b .}}a"},
        {"{\\listtext\\tab}{\\*\\pn\\pnlvlblt\\ls1{\\pntxtb *}}a", "{}{}a"},
        {"{\\pntext 1.\\tab}{\\*\\pn\\pnlvlbody}a\\line b",
         "{\\pntext 1.\\tab}{\\*\\pn\\pnlvlbody}a\\par b"},
        {"{\\*\\listtable{\\list\\ls1}}a", "{\\*\\listtable{\\list\\ls1}}a"},
        // Line breaks.
        {"\\qc C\\line\\b la\\column x", "\\qc C\\par \\b la\\par x"},
        {"a\\u8232?b{\\uc0\\u8233 c}\\u8231?", "a\\par b{\\uc0\\par c}\\u8231?"},
        {"{\\footnote a\\line b}c", "{\\footnote a\\line b}c"},
        // Out of sight.
        {"a{\\v hid\\u8364?\\'41}b\\v c\\par\\v0 d{\\deleted e{\\b f}}\\v g\\plain h",
         "a{\\v }b\\v \\par\\v0 d{\\deleted {\\b }}\\v \\plain h"},
        {"{\\stylesheet{\\s1\\v A;}}", "{\\stylesheet{\\s1\\v A;}}"},
        // Words about tables where none can be.
        {"{\\*\\defpap\\itap0 }{\\*\\intbl}a", "{\\*\\defpap\\nop }{\\*\\nop }a"},
    };
    expectWritten(cases, "{\\rtf1 ");
    const Case tables[] = {
        {"{\\upr{\\fonttbl{\\f0 A;}}{\\*\\ud{\\fonttbl{\\f0 B;}}}}a", "{\\fonttbl{\\f0 B;}}a"},
        {"{\\upr{\\stylesheet{A;}}{\\*\\ud{\\stylesheet{B;}}}}a", "{\\stylesheet{B;}}a"},
    };
    expectWritten(tables, "{\\rtf1");
}

TEST(RtfUnfold, EndsTablesWhereTheyEnd) {
    const std::string row = "\\trowd\\cellx9\\cellx99\\intbl a\\cell b\\cell\\row";
    const Case cases[] = {
        {row + "\\par\\pard c", row + "\\pard \\par\\pard c"},
        {row + "\\line c", row + "\\pard \\par c"},
        {"{" + row + "}{\\b c}\\pard", "{" + row + "}\\pard {\\b c}\\pard"},
        {row + "\\pard\\par c", row + "\\pard\\par c"},
        {row + row + "\\pard c", row + row + "\\pard c"},
        // The next row says nothing, and is one.
        {row + " c\\cell\\row\\pard d", row + " c\\cell\\row\\pard d"},
        {row + "\\par c\\cell d\\cell\\row\\pard e", row + "\\par c\\cell d\\cell\\row\\pard e"},
        {"\\trowd\\cellx9\\cellx99 a\\cell b\\cell\\row\\pard c",
         "\\trowd\\cellx9\\cellx99 \\intbl a\\cell b\\cell\\row\\pard c"},
        {"\\trowd\\cellx9 a\\cell b\\cell\\row\\pard c",
         "\\trowd\\cellx9 a\\cell b\\cell\\row\\pard c"},
        {"\\trowd\\cellx9\\pard a\\cell\\row c", "\\trowd\\cellx9\\pard a\\cell\\row c"},
        {"\\trowd\\cellx9\\intbl a\\line b\\cell\\row\\pard",
         "\\trowd\\cellx9\\intbl a\\par b\\cell\\row\\pard"},
    };
    expectWritten(cases, "{\\rtf1");
}

TEST(RtfUnfold, MarksTheRowsThatAControlWrote) {
    const std::string rows =
        "{\\rtf1 a\\line b\\par\r\n\\trowd\\trgaph10\\cellx9\\cellx99\\b one\\cell two\\cell "
        "\\row\r\n"
        "\\trowd\\cellx9three\\cell \\row\r\n\\pard end\\par}";
    EXPECT_EQ(
        withTableRows(rows),
        "{\\rtf1 a\\line b\\par\r\n\\trowd\\trgaph10\\cellx9\\cellx99\\intbl \\b one\\cell two"
        "\\cell \\row\r\n\\trowd\\cellx9three\\cell \\row\r\n\\pard end\\par}");
    EXPECT_EQ(readRtf(withTableRows(rows)).tableRows, 2U);
    EXPECT_EQ(readRtf(rows).tableRows, 0U);
}

TEST(RtfUnfold, DropsWhatIsBehindTheEndButSaysSo) {
    const struct {
        std::string bytes;
        bool textBehind;
    } cases[] = {{"{\\rtf1 a}}\r\n}", false},
                 {"{\\rtf1 a}{}", false},
                 {"{\\rtf1 a} b", true},
                 {"{\\rtf1 a}{\\rtf1 b}", true}};
    for (const auto& [bytes, textBehind] : cases) {
        const RtfVerdict verdict = checkRtf(bytes);
        EXPECT_EQ(verdict.document, "{\\rtf1 a}");
        EXPECT_EQ(verdict.textBehind, textBehind) << bytes;
        EXPECT_EQ(readRtf(bytes).textBehind, textBehind) << bytes;
    }
}

TEST(RtfSureCharacters, AreUnicodeWhereACodePageIsNotKnown) {
    const auto document = [](const std::string& page, const std::string& body) {
        return "{\\rtf1\\ansi\\ansicpg" + page +
               "{\\fonttbl{\\f0\\fcharset0 A;}{\\f1 B;}{\\f2\\fcharset204 C;}{\\f3\\fcharset78 D;}"
               "{\\f4\\fcharset77 E;}}{\\info{\\title \\'8e}}" +
               body + "}";
    };
    const struct {
        const char* page;
        std::string body;
        std::string expected;
    } cases[] = {
        {"10000", "\\f1 caf\\'8e \\f0 caf\\'e9", "\\f1 caf\\u233? \\f0 caf\\'e9"},
        {"10000", "\\f1\\uc2 \\'8e\\'8ex{\\uc0 \\'8e}",
         "\\f1\\uc2 \\u233??\\u233??x{\\uc0 \\u233 }"},
        {"10000", "\\f1 \\u233\\'8e\\'8e\\{", "\\f1 \\u233\\'8e\\u233?\\{"},
        {"1251", "{\\f1 \\'ef{\\b\\'e5}\\f2 \\'ef}", "{\\f1 \\u1087?{\\b\\u1077?}\\f2 \\'ef}"},
        {"1252", "\\f1 \\'e9\\f3 \\'83\\'52\\'81[C\\f4 \\'8e",
         "\\f1 \\'e9\\f3 \\u12467?\\u12540?C\\f4 \\u233?"},
    };
    for (const auto& [page, body, expected] : cases) {
        EXPECT_EQ(checkRtf(document(page, body)).document, document(page, expected));
        EXPECT_EQ(checkRtf(document(page, expected)).document, document(page, expected));
    }
}

TEST(RtfDiagrams, AreWrittenAsTheCharactersTheyMean) {
    const auto document = [](const std::string& charset, const std::string& body) {
        return "{\\rtf1\\deff0{\\fonttbl{\\f0\\fcharset0 Arial;}{\\f1\\fnil" + charset +
               "{\\*\\panose 05}Melvorin 07;}{\\f2\\fcharset2 Symbol;}{\\f3\\fcharset2 Melvorin "
               "99;}}" +
               body + "}";
    };
    const Case cases[] = {
        {"\\f1 A\\u-3999?\\u61441 ?\\'e9\\u-3871\\'e1 b", "\\f1 A\\'61\\u61441 ?\\'e9\\'e1 b"},
        {"{\\f1\\uc0\\u61537}\\u-3999?", "{\\f1\\uc0\\'61}\\u-3999?"},
        {"\\f1\\uc2\\u-3999?\r\n?x\\plain\\u-3999??", "\\f1\\uc2\\'61x\\plain\\u-3999??"},
        {"\\f2\\u-3999?\\f3\\u-3999?\\f1\\u233?", "\\f2\\u-3999?\\f3\\u-3999?\\f1\\u233?"},
    };
    for (const auto& [body, expected] : cases) {
        EXPECT_EQ(checkRtf(document("\\fcharset2", body)).document,
                  document("\\fcharset0 ", expected));
        // With a character set of its own it is what it is.
        EXPECT_EQ(checkRtf(document("\\fcharset0", body)).document, document("\\fcharset0", body));
    }
    const std::string only = "{\\rtf1\\deff1{\\fonttbl\\f1\\fcharset2 Melvorin 34;}\\u-4031?}";
    EXPECT_EQ(checkRtf(only).document,
              "{\\rtf1\\deff1{\\fonttbl\\f1\\fcharset0 Melvorin 34;}\\'41}");
    // Raw data is no stand-in, and what follows it may be one.
    const std::string raw =
        "{\\rtf1\\deff1{\\fonttbl\\f1\\fcharset2 Melvorin 34;}\\uc2\\u-4031?\\bin2 xy?b}";
    EXPECT_EQ(checkRtf(raw).document,
              "{\\rtf1\\deff1{\\fonttbl\\f1\\fcharset0 Melvorin 34;}\\uc2\\'41b}");
}

}  // namespace
}  // namespace melvorin
