#include "rtf/RtfReader.h"

#include <gtest/gtest.h>

#include "rtf/DocumentLoss.h"

namespace melvorin {
namespace {

std::string shown(TextView text) {
    return toUtf8(text);
}

TEST(RtfReader, ReadsTheWordsOfADocument) {
    const struct {
        std::string body;
        TextView text;
    } cases[] = {
        {"C  G\\par la la\\par", u"C  G\rla la"},
        {"a\\line b\\tab c\\~d\\_e\\-f", u"a\vb\tc\u00A0d\u2011ef"},
        {"a\\\r\nb\\\nc", u"a\rb\rc"},
        {"\\{\\}\\\\ \\endash\\emdash\\bullet\\rquote s", u"{}\\ –—•’s"},
        // Code pages of fonts, of the document's default, and without any.
        {"\\f0 \\'e9\\f1 \\'ef\\'e5\\'f1\\'ed\\'ff \\f2 \\'83\\'52\\'81[\\'83\\'68\\f9 \\'e8",
         u"éпесня コードè"},
        {"{\\f1 \\'ef}\\'e9\\plain\\f1\\'ef\\plain \\'e9", u"пéпé"},
        {"\\f3 m\\'b7\\f4\\'8e", u"m·é"},
        {"\\u233?\\u-10179?\\u-9216?\\uc2\\u8211\\'a1\\'aax\\uc0\\u1087y", u"é\U0001F400–xпy"},
        {"{\\uc0\\u233}\\u233 x", u"éé"},
        // Out of the text.
        {"{\\deleted gone}a{\\v hid}\\v den\\v0 b{\\*\\x c}{\\info{\\title t}}{\\header "
         "H}{\\footnote F}c",
         u"abc"},
        {"{\\stylesheet{\\s1 Head;}}{\\colortbl;}a{\\bkmkstart x}{\\xe\\v y}b", u"ab"},
        {"a{\\pict\\pngblip 8950}{\\nonshppict{\\pict 01}}\\bin3 }}}b", u"ab"},
        // In it, by whatever way.
        {"a {\\field{\\*\\fldinst{ HYPERLINK \"x\"}}{\\fldrslt{\\b link}}} b", u"a link b"},
        {"{\\field{\\*\\fldinst TOC}{\\fldrslt A{\\field{\\*\\fldinst PAGE}{\\fldrslt 1}}B}}",
         u"A1B"},
        {"{\\object\\objemb{\\*\\objclass X}{\\*\\objdata 01}{\\result\\pard words}}", u"words"},
        {"{\\upr{a}{\\*\\ud{b}}}{\\upr{\\*\\bkmkstart a}{\\*\\ud{\\*\\bkmkstart b}}}c", u"bc"},
        {"{\\pntext\\f3\\'b7\\tab}item\\par{\\listtext 2.\\tab}next", u"·\titem\r2.\tnext"},
        {"\\trowd\\cellx9\\cellx99\\intbl a\\cell b\\cell\\row\\pard c", u"a\tb\t\rc"},
        {"a\\page b\\sect c\\column d", u"a\rb\rc\rd"},
        // Damage.
        {"a\\'zzb}c", u"ab"},
    };
    for (const auto& [body, text] : cases) {
        const std::string rtf =
            "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fcharset0 A;}{\\f1\\fcharset204 B;}"
            "{\\f2\\fcharset128 C;}{\\f3\\fcharset2 Symbol;}{\\f4\\fcharset77 D;}}" +
            body + "}";
        EXPECT_EQ(shown(readRtf(rtf).text), shown(text)) << body;
    }
    EXPECT_EQ(shown(readRtf("{\\rtf1\\ansi\\ansicpg1250 \\'e8{\\f7 \\'e8}}").text), "čč");
    EXPECT_EQ(shown(readRtf("{\\rtf1\\mac \\'8e}").text), "é");
    for (const char* const rtf : {"", "{", "}", "plain", "{\\rtf1 {{", "{\\rtf1\\", "{\\rtf1\\u"})
        readRtf(rtf);
}

TEST(RtfReader, CountsWhatControlsDrop) {
    const std::string row = "\\trowd\\cellx9\\pard\\intbl a\\cell\\row\\pard ";
    const auto count = [](const std::string& body, std::size_t RtfContents::*counter) {
        return readRtf("{\\rtf1 " + body + "}").*counter;
    };
    const struct {
        std::string body;
        std::size_t RtfContents::*counter;
        std::size_t expected;
    } cases[] = {
        {"{\\pict 00}{\\*\\shppict{\\pict 00}}{\\nonshppict{\\pict 00}}", &RtfContents::pictures,
         2},
        {"{\\shp{\\*\\shpinst{\\sp{\\sn pib}{\\sv{\\pict 00}}}}{\\shprslt{\\pict 00}}}",
         &RtfContents::pictures, 1},
        {"{\\header{\\pict\\pngblip 0011}\\par}", &RtfContents::headers, 0},
        {"{\\header{\\b Hymns}{\\field{\\*\\fldinst PAGE}{\\fldrslt 1}}\\par more}{\\footer\\par}",
         &RtfContents::headers, 1},
        {row + row + "text\\par " + row, &RtfContents::tables, 2},
        {row + row + "text\\par " + row, &RtfContents::tableRows, 3},
        {row + "\\par " + row, &RtfContents::tables, 1},
        {"{\\object{\\*\\objdata 00}{\\result{\\pict 00}}}", &RtfContents::objects, 1},
        {"{\\field{\\*\\fldinst HYPERLINK \"http://x\"}{\\fldrslt x}}", &RtfContents::links, 1},
        {"{\\field{\\*\\fldinst{HYPERLINK \\\\l \"toc\"}}{\\fldrslt x}}", &RtfContents::links, 0},
        {"{\\footnote{\\super 1} words}{\\footnote\\pard}", &RtfContents::footnotes, 1},
        {"{\\*\\annotation a {b} c}", &RtfContents::comments, 1},
        {"{\\shp{\\*\\shpinst\\shpleft0{\\sp{\\sn a}{\\sv 1}}{\\shptxt{a} box}}}",
         &RtfContents::textBoxes, 1},
    };
    for (const auto& [body, counter, expected] : cases)
        EXPECT_EQ(count(body, counter), expected) << body;
    EXPECT_FALSE(readRtf("{\\rtf1 a}\r\n}\x1A").textBehind);
    EXPECT_TRUE(readRtf("{\\rtf1 a} and more").textBehind);
}

TEST(DocumentLoss, IsToldInWords) {
    const std::string table = "\\trowd\\cellx9\\cellx99\\intbl C\\cell la\\cell\\row";
    const struct {
        std::string file;
        TextView shown;
        std::string written;
        std::string told;
    } cases[] = {
        {"C  G\\par la la\\par", u"C  G\rla la", "C  G\\par la la\\par", ""},
        {"C\\line la", u"C la", "C\\line la", ""},
        {"a\\~b\\_c\\-d\\tab e", u"a b-cd e", "a b-cd e", ""},
        {"one two two", u"one two", "one two", "1 word"},
        {"one two three", u"one two three", "one", "2 words"},
        {"caf\\'e9", u"caf?", "caf?", "1 word"},
        {table, u"\r\nC\tla\t\r\n", "C\\par la", "1 table"},
        {table, u"C\tla", "\\trowd\\cellx9\\cellx99 C\\cell la\\cell\\row", "1 table"},
        {table + table, u"C\tla\rC\tla", table, "2 words, 1 row of a table"},
        {table + "\\pard and\\par", u"Cla and", table + "\\pard and", ""},
        {"{\\pict 00}a{\\pict 00}{\\header H}", u"a", "a", "2 pictures, 1 page header or footer"},
        {"{\\pict 00}a",
         u"\uFFFC"
         "a",
         "{\\pict 00}a", ""},
        {"{\\pntext 1.\\tab}a", u"a", "{\\pntext 1.\\tab}a", ""},
        {"{\\pntext 1.\\tab}a 1.", u"a 1.", "a 1.", "1 bullet or number of a list"},
        {"\\f3 \\u-3999?", u"\uF061", "a", ""},
        {"{\\listtext\\'b7\\tab}a{\\listtext\\'d8\\tab}b", u"•\ta•\tb",
         "\\bullet\\tab a\\bullet\\tab b", ""},
        {"a{\\listtext\\par}", u"a", "a", ""},
        {"b{\\listtext 1{\\listtext 2}}a", u"ba", "b{\\listtext 1{\\listtext 2}}a", ""},
        {"a}{b and more", u"a", "a", "what stands behind the end of the document"},
    };
    for (const auto& [file, text, written, told] : cases) {
        const RtfContents contents = readRtf("{\\rtf1 " + file + "}");
        EXPECT_EQ(shown(lossInWords(contents, text, "{\\rtf1 " + written + "}")), told) << file;
    }
}

}  // namespace
}  // namespace melvorin
