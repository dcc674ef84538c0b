#include "rtf/RtfMap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

#include "RtfCharts.h"
#include "RtfColours.h"
#include "RtfSamples.h"

namespace melvorin {
namespace {

const std::string kHeader =
    "{\\rtf1\\ansi\\ansicpg1252\\deff0{\\fonttbl{\\f0\\fcharset0 Courier New;}"
    "{\\f1\\fnil\\fcharset0 Melvorin 01{\\*\\falt M};}{\\f2\\fcharset2 Symbol;}"
    "{\\f3\\fcharset204 Arial;}{\\f4 Tahoma ;}{\\f5\\fcharset128 \\'82\\'6c\\'82r;}"
    "{\\f6\\fcharset250 Odd;}{\\f7\\fcharset0\\cpg1253 Melvorin 02;}{\\f8 \\'cc\\u1055?\\u8364;}}"
    "{\\colortbl;\\red192\\green0\\blue0;\\red0\\green0\\blue255;}";

std::string document(const std::string& body) {
    return kHeader + body + "}";
}

TEST(RtfMap, FollowsTheText) {
    const struct {
        std::string body;
        TextView text;
    } cases[] = {
        {"", u""},
        {"\\par", u""},
        {"a\\par b", u"a\rb"},
        {"a\\par\r\nb\\par\r\n", u"a\rb"},
        {"a\\par\\par", u"a\r"},
        {"{a\\par}\\pard\\b0 ", u"a"},
        {"a\\line b\\line", u"a\vb\v"},
        {"a\\\r\nb\\\n", u"a\rb"},
        {"a\\tab b\tc", u"a\tb\tc"},
        {"a\rb\nc", u"abc"},
        {"\\emdash\\endash\\lquote\\rquote\\ldblquote\\rdblquote\\bullet\\~\\_\\{\\}\\\\x",
         u"\u2014\u2013\u2018\u2019\u201C\u201D\u2022\u00A0\u2011{}\\x"},
        {"\\'e9\\'C3\\'80\xE9", u"\u00E9\u00C3\u20AC\u00E9"},
        {"\\u233?\\u-257?\\u8364\\'80\\uc0\\u233 b\\uc2\\u233??{\\uc1\\u233 ?}\\u233??",
         u"\u00E9\uFEFF\u20AC\u00E9b\u00E9\u00E9\u00E9"},
        {"\\u-10179?\\u-8704?", u"\U0001F600"},
        {"\\b  a\\b0\\fs20\\cf1  b\\plain c\\v0 d", u" a bcd"},
        {"{\\*\\generator X;}{\\info{\\author me}}{\\header h}\\pard\\ql a", u"a"},
        {"\\f3 ascii\\f0\\'e9\\f4 \\'e9", u"ascii\u00E9\u00E9"},
        // The bytes of a font's own code page.
        {"\\f3 \\'cf\\'f0\xE8\\f7 \\'e1\\f0\\'e1", u"\u041F\u0440\u0438\u03B1\u00E1"},
        {"\\f5 \\'83\\'7b\\'83R\x83\x52\\'b1a\\\\",
         u"\u30DC\u30B3\u30B3\uFF71"
         u"a\\"},
        {"\\f5 \\uc2\\u12508\\'83\\'7b-\\par", u"\u30DC-"},
        {"\\f2 a\\'b7\\u97?",
         u"\uF061\uF0B7"
         u"a"},
        {"\\f6 abc", u"abc"},
        // What stands beside the text, and what it looks like.
        {"{\\pntext\\f2\\'b7\\tab}{\\*\\pn\\pnlvlblt{\\pntxtb\\'b7}}\\fi-360 a", u"a"},
        {"a{\\field{\\*\\fldinst HYPERLINK x}{\\fldrslt{\\ul b}}}c", u"abc"},
        {"\\s1\\cs2\\hyphpar0\\itap0\\rtlch\\fcs1\\af0\\ltrch\\fcs0\\insrsid12 a{\\v b}c", u"abc"},
        {"a{\\pict\\wmetafile8 0100}{\\*\\shppict{\\pict\\emfblip 01\n02}}b", u"a\uFFFC\uFFFCb"},
    };
    for (const auto& [body, text] : cases) {
        const auto map = RtfMap::parse(document(body) + "\r\n" + '\0');
        ASSERT_TRUE(map) << body;
        EXPECT_EQ(map->text(), text) << body;
    }
}

TEST(RtfMap, KnowsFontsAndColours) {
    const std::string lacking = "\\f2 a" + std::string(1, '\0') + "b";
    const auto symbols = RtfMap::parse(document(lacking));
    ASSERT_TRUE(symbols);
    EXPECT_EQ(symbols->text(), u"\uF061\uF000\uF062");
    EXPECT_FALSE(RtfMap::parse(document("\\f0 " + lacking.substr(4))));
    const auto fonts = RtfMap::parse(document("a\\f1\\cf2 b{\\f4\\cf0 c}d"));
    ASSERT_TRUE(fonts);
    EXPECT_EQ(fonts->fontNameAt(0), u"Courier New");
    EXPECT_EQ(fonts->fontNameAt(1), u"Melvorin 01");
    EXPECT_EQ(fonts->fontNameAt(2), u"Tahoma");
    const auto faces = RtfMap::parse(document("\\f5 a\\f7 b\\f8 c"));
    ASSERT_TRUE(faces);
    EXPECT_EQ(faces->fontNameAt(0), u"\uFF2D\uFF33");
    EXPECT_EQ(faces->fontNameAt(1), u"Melvorin 02");
    EXPECT_EQ(faces->fontNameAt(2), u"\u00CC\u041F\u20AC");
    EXPECT_EQ(fonts->fontNameAt(3), u"Melvorin 01");
}

TEST(RtfMap, RefusesWhatIsNotExact) {
    for (const std::string body : {"a\\trowd\\cellx9\\intbl b\\cell\\row",
                                   "a{\\pict\\bin2 ab}",
                                   "a{\\object{\\result R}}",
                                   "{\\field{\\fldinst X}{\\fldrslt Y}}",
                                   "{\\listtext x}a",
                                   "\\itap1 a",
                                   "a\\page b",
                                   "a\\sect b",
                                   "\\f6 \\'e9",
                                   "\\f5 \\'83",
                                   "\\f5 \\'83\\b\\'7b",
                                   "\\f5 \\'83{\\'7b}",
                                   "\\f5 \\'83\\'20",
                                   "\\f5 \\'fd",
                                   "\\f7 \\'d2",
                                   "\\f9 a",
                                   "\\cf3 a",
                                   "\\cf a",
                                   "\\u233 {?}a",
                                   "\\u233\\b a",
                                   "\\u99999?a",
                                   "\\u5?a",
                                   "\\unknown a",
                                   "\\b-a",
                                   "\\'zz",
                                   "\\'00",
                                   "\x01",
                                   "{\\*\\unknown a}b",
                                   "\\bin1 xa",
                                   "\\f1 a\\plain b",
                                   "{a",
                                   "a}}",
                                   "a}b{",
                                   "\\par1 a",
                                   "{\\fonttbl{\\f7 X;}}a",
                                   "\\fs99999999999 a",
                                   "\\"})
        EXPECT_FALSE(RtfMap::parse(document(body))) << body;
    EXPECT_FALSE(RtfMap::parse("{\\rtf1 a}"));
    EXPECT_FALSE(RtfMap::parse("{\\rtf1{\\fonttbl{\\f0 X;}{\\f0 Y;}}a}"));
    EXPECT_FALSE(RtfMap::parse("{\\rtf1{\\fonttbl{\\f0 X;}}{\\colortbl;\\red1}a}"));
}

TEST(RtfMap, RewritesAndKeepsTheRest) {
    const struct {
        std::string body;
        LineRewrite line;
        std::string expected;
    } cases[] = {
        // The colour goes before the characters and back before the line's end.
        {"A\\par B\\par C", {2, 1, u"C#", {0, 0}, {}}, "A\\par \\cf1 C#\\cf0 \\par C"},
        {"\\cf2 A \\b B\\b0\\par C",
         {0, 3, u"XYZ", {0, 1, 2}, {}},
         "\\cf1 XY\\b Z\\b0\\cf2 \\par C"},
        // A word whose colour word is dropped must not run into the text.
        {"A\\b\\cf2 B\\cf0\\par", {0, 2, u"1-", {0, 1}, {}}, "\\cf1 1\\b -\\cf0 \\par"},
        {"A\\par\\cf1\\'e9\\cf0\\par", {2, 1, u"e", {0}, {false}}, "A\\par\\cf1 e\\cf0 \\par"},
        // A picture keeps its colour and its font; the words between characters keep their order.
        {"A\\f1\\cf2 B\\f0\\cf0  C\\par",
         {0, 4, u"A#B C", {0, 0, 1, 2, 3}, {0, 0, 1, 0, 0}},
         "\\cf1 A#\\f1\\cf2 B\\f0\\cf1  C\\cf0 \\par"},
        // A group that ends in a later line must not carry the new colour there.
        {"\\cf2 A{\\b B\\par C}D",
         {0, 2, u"AB", {0, 1}, {}},
         "\\cf1 A\\cf2 {\\b \\cf1 B\\cf2 \\par C}D"},
        {"\\uc2 A\\par",
         {0, 1, u"\u4E2D\u00E9{\t", {0, 0, 0, 0}, {}},
         "\\uc2 \\cf1 \\u20013??\\'e9\\{\\tab \\cf0 \\par"},
        {"\\uc0\\f3 A\\par",
         {0,
          1,
          u"\u00E9"
          u"1",
          {0, 0},
          {}},
         "\\uc0\\f3 \\cf1 \\u233 1\\cf0 \\par"},
        // An empty line takes text, a full one can lose all, and a part can be a word.
        {"\\par B", {0, 0, u"A", {0}, {}}, "\\cf1 A\\cf0 \\par B"},
        {"A\\b B\\par", {0, 2, u"", {}, {}}, "\\b \\par"},
        {"A\\b\\cf2 BC", {0, 1, u"", {}, {}}, "\\b\\cf2 BC"},
        {"A B C", {2, 1, u"X", {0}, {}}, "A \\cf1 X\\cf0  C"},
        // Only a western font has bytes for what is not ASCII.
        {"\\f5 A\\'83\\'7b\\par",
         {0, 2, u"B\u30DC\u00E9", {0, 1, 1}, {}},
         "\\f5 \\cf1 B\\u12508?\\u233?\\cf0 \\par"},
        // A picture is taken over once, as it is, and what is in its place is a character.
        {"A{\\pict 01}B\\par",
         {0, 3, u"A#\uFFFC\uFFFCC", {0, 0, 1, 1, 2}, {}},
         "\\cf1 A#{\\pict 01}\\u-4?C\\cf0 \\par"},
        {"A{\\pict 01}B\\par", {0, 3, u"A-C", {0, 1, 2}, {}}, "\\cf1 A-C\\cf0 \\par"},
        // Lines come and go; what their paragraphs look like stays with those that do not.
        {"A\\par\\b B\\par C",
         {0, 1, u"A\rX", {0, 0, 0}, {true, true, true}},
         "A\\par X\\par\\b B\\par C"},
        {"A\\par\\qc\\b B\\par C", {0, 4, u"", {}, {}}, "\\qc\\b C"},
        {"A\\line B\\par C", {0, 4, u"D\rE", {0, 1, 2}, {true, true, true}}, "D\\par EC"},
    };
    for (const auto& [body, line, expected] : cases) {
        const auto map = RtfMap::parse(document(body));
        ASSERT_TRUE(map) << body;
        EXPECT_EQ(map->rewrite(std::span(&line, 1), {192, 0, 0}), document(expected)) << body;
    }
}

TEST(RtfMap, TakesTheBlanksThatAControlShows) {
    auto map = RtfMap::parse(document("C \\line G{\\pict 01}A\\tab "));
    ASSERT_TRUE(map);
    EXPECT_EQ(map->text(), u"C \vG\uFFFCA\t");
    map->takeBlanks(u"C  G A");
    EXPECT_EQ(map->text(), u"C \vG\uFFFCA\t");
    map->takeBlanks(u"C  G A ");
    EXPECT_EQ(map->text(), u"C  G A\t");
    for (std::size_t i = 0; i < map->text().size(); ++i)
        EXPECT_EQ(map->isWholeAt(i), i == 2 || i == 4) << i;
    const LineRewrite line{0, 6, u"D  A  B", {0, 1, 2, 3, 4, 4, 5}, {}};
    EXPECT_EQ(map->rewrite(std::span(&line, 1), {192, 0, 0}),
              document("\\cf1 D \\line A{\\pict 01} B\\cf0 \\tab "));
}

// Bytes of charts in many scripts, as many programs write them: the text is known.
TEST(RtfMap, ReadsEveryScript) {
    for (const charts::Chart& chart : charts::all()) {
        if (chart.name.ends_with("table"))
            continue;
        const auto map = RtfMap::parse(chart.rtf);
        ASSERT_TRUE(map) << chart.name;
        Text text;
        for (const Text& line : chart.lines)
            text.append(text.empty() ? u"" : u"\r").append(line);
        EXPECT_EQ(toUtf8(map->text()), toUtf8(text)) << chart.name;
    }
}

TEST(RtfMap, AddsTheColour) {
    const std::string fonts = "{\\rtf1{\\fonttbl{\\f0\\fcharset0 X;}}";
    const LineRewrite line{0, 1, u"B", {0}, {}};
    for (const auto& [before, after] : {
             std::pair{"", "{\\colortbl;\\red7\\green8\\blue9;}\\f0 \\cf1 B"},
             std::pair{"{\\colortbl}", "{\\colortbl;\\red7\\green8\\blue9;}\\f0 \\cf1 B"},
             std::pair{"{\\colortbl;\\red1\\green1\\blue1;}",
                       "{\\colortbl;\\red1\\green1\\blue1;\\red7\\green8\\blue9;}\\f0 \\cf2 B"},
             std::pair{"{\\colortbl\\red7\\green8\\blue9;}",
                       "{\\colortbl\\red7\\green8\\blue9;\\red7\\green8\\blue9;}\\f0 \\cf1 B"},
         }) {
        const auto map = RtfMap::parse(fonts + before + "\\f0 A}");
        ASSERT_TRUE(map) << before;
        EXPECT_EQ(map->rewrite(std::span(&line, 1), {7, 8, 9}), fonts + after + "\\cf0 }");
        EXPECT_EQ(map->rewrite({}, {7, 8, 9}), fonts + before + "\\f0 A}");
    }
}

TEST(RtfMap, ThrowsForPartsThatDoNotFit) {
    const auto map = RtfMap::parse(document("AB\\par CD"));
    ASSERT_TRUE(map);
    const std::vector<LineRewrite> cases[] = {
        {{5, 1, u"", {}, {}}},
        {{0, 9, u"", {}, {}}},
        {{0, 2, u"A\nB", {0, 0, 0}, {}}},
        {{0, 2, u"AB", {0}, {}}},
        {{0, 2, u"AB", {1, 0}, {}}},
        {{0, 2, u"A", {3}, {}}},
        {{0, 2, u"AB", {0, 1}, {true}}},
        {{3, 2, u"", {}, {}}, {0, 2, u"", {}, {}}},
        {{0, 1, u"", {}, {}}, {1, 1, u"", {}, {}}},
    };
    for (const auto& lines : cases)
        EXPECT_THROW(map->rewrite(lines, {}), std::invalid_argument);
}

void expectHolds(const RtfMap& map, const std::string& rtf, const samples::Sample& sample) {
    ASSERT_EQ(map.text(), sample.text());
    const auto colours = coloursOf(rtf);
    ASSERT_GE(colours.size(), map.text().size());
    std::size_t position = 0;
    for (const samples::Line& line : sample.lines) {
        for (const auto& [c, format] : line.cells) {
            EXPECT_EQ(map.fontNameAt(position), samples::kFaces[format.face]) << position;
            const auto colour = format.colour == 0
                                    ? std::nullopt
                                    : std::optional(samples::kColours[format.colour - 1]);
            EXPECT_EQ(colours[position], colour) << position;
            ++position;
        }
        ++position;
    }
}

// The lines that were not rewritten are in the result, in order, byte for byte.
void expectKept(const std::string& result, const samples::Sample& sample,
                const std::vector<std::size_t>& kept) {
    std::size_t at = 0;
    for (const std::size_t index : kept) {
        const samples::Line& line = sample.lines[index];
        const std::string source =
            sample.rtf.substr(line.begin, line.finish - line.begin) + "\\par\r\n";
        if (sample.rtf.compare(line.begin, source.size(), source) != 0)
            continue;
        at = result.find(source, at);
        ASSERT_NE(at, std::string::npos) << source << "\nnot in\n" << result;
        at += source.size();
    }
}

TEST(RtfMap, SurvivesRandomRewrites) {
    samples::Random random(12);
    for (int i = 0; i < 3000 && !::testing::Test::HasFailure(); ++i) {
        samples::Sample sample = samples::randomSample(random);
        SCOPED_TRACE(sample.rtf);
        const auto map = RtfMap::parse(sample.rtf);
        ASSERT_TRUE(map);
        expectHolds(*map, sample.rtf, sample);
        const std::size_t colour = 1 + samples::below(random, samples::kColours.size());
        const auto rewrites = samples::randomRewrites(random, sample, colour);
        const std::string result = map->rewrite(rewrites, samples::kColours[colour - 1]);
        SCOPED_TRACE(result);
        const auto changed = RtfMap::parse(result);
        ASSERT_TRUE(changed);
        expectHolds(*changed, result, sample);

        std::vector<std::size_t> kept;
        std::size_t start = 0;
        const TextView before = map->text();
        for (std::size_t line = 0; line < sample.lines.size(); ++line) {
            if (std::none_of(rewrites.begin(), rewrites.end(),
                             [&](const LineRewrite& part) { return part.start == start; }))
                kept.push_back(line);
            start = std::min(before.find(u'\r', start), before.size()) + 1;
        }
        expectKept(result, sample, kept);
    }
}

TEST(RtfMap, ReadsDamageConsistently) {
    samples::Random random(13);
    std::size_t parsed = 0;
    for (int i = 0; i < 4000; ++i) {
        const std::string rtf = samples::damaged(random, samples::randomSample(random).rtf);
        const auto map = RtfMap::parse(rtf);
        if (!map)
            continue;
        ++parsed;
        // All lines rewritten to what they are: the same text in the same fonts.
        std::vector<LineRewrite> lines;
        const TextView text = map->text();
        for (std::size_t start = 0; start <= text.size();) {
            const std::size_t length =
                std::min(text.find_first_of(u"\r\v", start), text.size()) - start;
            LineRewrite line{start, length, Text(text.substr(start, length)), {}, {}};
            for (std::uint32_t column = 0; column < length; ++column)
                line.source.push_back(column);
            lines.push_back(std::move(line));
            start += length + 1;
        }
        const std::string rewritten = map->rewrite(lines, {1, 2, 3});
        const auto again = RtfMap::parse(rewritten);
        ASSERT_TRUE(again) << rtf;
        ASSERT_EQ(again->text(), text) << rtf;
        const auto colours = coloursOf(rewritten);
        ASSERT_GE(colours.size(), text.size()) << rewritten;
        for (std::size_t at = 0; at < text.size(); ++at) {
            EXPECT_EQ(again->fontNameAt(at), map->fontNameAt(at));
            if (text[at] != u'\r' && text[at] != u'\v') {
                EXPECT_EQ(colours[at], (Rgb{1, 2, 3}));
            }
        }
    }
    EXPECT_GT(parsed, 300u);
    EXPECT_LT(parsed, 3600u);
}

}  // namespace
}  // namespace melvorin
