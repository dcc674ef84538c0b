// A document in light colours and back again.
#include <gtest/gtest.h>

#include <cctype>
#include <cstdio>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "ScriptedEditor.h"
#include "base/Contrast.h"
#include "rtf/DarkColours.h"
#include "rtf/DarkEditor.h"
#include "rtf/RtfCheck.h"
#include "rtf/RtfMap.h"

namespace melvorin {
namespace {

// Each character with its colour, "-" for none.
std::string coloursOf(const std::string& rtf) {
    EXPECT_EQ(checkRtf(rtf).kind, RtfVerdict::Kind::Ok) << rtf;
    const auto map = RtfMap::parse(rtf);
    if (!map)
        return "not read: " + rtf;
    std::string text;
    for (std::size_t i = 0; i < map->text().size(); ++i) {
        text += toUtf8(map->text().substr(i, 1));
        const auto colour = map->colourAt(i);
        text += colour ? std::to_string(colour->red) + "," + std::to_string(colour->green) + "," +
                             std::to_string(colour->blue) + " "
                       : "- ";
    }
    return text;
}

TEST(DarkColours, MakesLightLettersAndGivesTheOldOnesBack) {
    const char* const documents[] = {
        R"({\rtf1\ansi\deff0{\fonttbl{\f0 Courier New;}}{\colortbl ;\red200\green0\blue0;}\pard a\cf1 b\cf0 c\plain d{\cf1 e}f\par g})",
        // Without a table.
        R"({\rtf1\ansi\deff0{\fonttbl{\f0 Courier New;}}\pard a\b b\b0\plain c\par})",
        // Black by name, white, two reds that are nearly the same, a highlight.
        R"({\rtf1{\fonttbl{\f0 A;}}{\colortbl;\red0\green0\blue0;\red255\green255\blue255;\red200\green0\blue0;\red201\green0\blue0;}\cf1 a\cf2 b\cf3 c\cf4 d\highlight2 e\cf0 f})",
    };
    for (const std::string document : documents) {
        DarkColours dark;
        const std::string before = coloursOf(document);
        const std::string shown = dark.darkened(document);
        const auto map = RtfMap::parse(shown);
        ASSERT_TRUE(map) << shown;
        EXPECT_EQ(checkRtf(shown).kind, RtfVerdict::Kind::Ok);
        for (std::size_t i = 0; i < map->text().size(); ++i) {
            if (map->text()[i] == u'\r')
                continue;
            const auto colour = map->colourAt(i);
            ASSERT_TRUE(colour) << shown;
            EXPECT_GE(contrast(*colour, DarkColours::kBackground), 4.5) << shown;
        }
        EXPECT_EQ(coloursOf(dark.restored(shown)), before);
    }
}

TEST(DarkColours, NeedsNoTables) {
    DarkColours dark;
    const std::string shown = dark.darkened("{\\rtf1 a}");
    EXPECT_EQ(shown, "{\\rtf1 {\\colortbl ;\\red235\\green235\\blue235;}\\cf1 a}");
    EXPECT_EQ(dark.restored(shown), "{\\rtf1 {\\colortbl ;\\red235\\green235\\blue235;}\\cf0 a}");
    EXPECT_EQ(dark.restored("{\\rtf1 a}"), "{\\rtf1 a}");
}

TEST(DarkColours, KeepsEveryColourApart) {
    std::mt19937 engine(18);
    std::string table = "{\\colortbl ;";
    std::string text;
    for (int i = 1; i <= 400; ++i) {
        // Dark ones are many and near each other.
        const auto part = [&] { return std::to_string(engine() % (i % 2 == 0 ? 256 : 12)); };
        table += "\\red" + part() + "\\green" + part() + "\\blue" + part() + ";";
        text += "\\cf" + std::to_string(i) + " x";
    }
    const std::string document = "{\\rtf1{\\fonttbl{\\f0 A;}}" + table + "}" + text + "}";
    DarkColours dark;
    const std::string shown = dark.darkened(document);
    EXPECT_EQ(coloursOf(dark.restored(shown)), coloursOf(document));
    EXPECT_EQ(dark.darkened(document), shown) << "the same each time";
    // What is written into it is in the colour of the words around it, there and back.
    const auto withMore = [](std::string rtf) {
        rtf.insert(rtf.rfind("x}"), "y");
        return rtf;
    };
    EXPECT_EQ(coloursOf(dark.restored(withMore(shown))), coloursOf(withMore(document)));
}

// What stands behind the letters, by the number of every word that names it.
std::string marksOf(const std::string& rtf) {
    std::string table = rtf.substr(rtf.find("{\\colortbl"));
    table.resize(table.find('}'));
    std::vector<std::string> colours;
    for (std::size_t at = 11; at < table.size();) {
        const std::size_t end = table.find(';', at);
        colours.push_back(table.substr(at, end - at));
        at = end == std::string::npos ? end : end + 1;
    }
    std::string marks;
    for (std::size_t at = 0; (at = rtf.find('\\', at)) != std::string::npos; ++at) {
        for (const std::string word : {"highlight", "cb", "chcbpat", "cbpat", "clcbpat"}) {
            if (rtf.compare(at + 1, word.size(), word) == 0 &&
                std::isdigit(rtf[at + 1 + word.size()]))
                marks +=
                    word + " " + colours.at(std::stoul(rtf.substr(at + 1 + word.size()))) + "\n";
        }
    }
    return marks;
}

TEST(DarkColours, DarkensWhatIsBehindMarkedWords) {
    const std::string document =
        R"({\rtf1{\fonttbl{\f0 A;}}{\colortbl ;\red255\green255\blue0;\red0\green0\blue160;\red255\green255\blue255;})"
        R"(\cbpat3 a\highlight1 b\cf1 c\highlight0 d\cb2 e\cb0\chcbpat3 f\chcbpat0\cf2 g\cbpat1 h\highlight9 i})";
    const std::string marks =
        "cbpat \\red255\\green255\\blue255\nhighlight \\red255\\green255\\blue0\n"
        "highlight \ncb \\red0\\green0\\blue160\ncb \n"
        "chcbpat \\red255\\green255\\blue255\nchcbpat \n"
        "cbpat \\red255\\green255\\blue0\n";
    // The one without a colour stays as it is.
    const auto known = [](std::string rtf) { return rtf.erase(rtf.find("\\highlight9"), 11); };
    ASSERT_EQ(marksOf(known(document)), marks);
    DarkColours dark;
    const std::string shown = dark.darkened(document);
    EXPECT_EQ(checkRtf(shown).kind, RtfVerdict::Kind::Ok);
    EXPECT_NE(shown.find("\\highlight9"), std::string::npos);
    const std::string behind = marksOf(known(shown));
    const auto map = RtfMap::parse(shown);
    ASSERT_TRUE(map);
    int count = 0;
    for (std::size_t at = 0; (at = behind.find("\\red", at)) != std::string::npos; ++at, ++count) {
        int red = 0;
        int green = 0;
        int blue = 0;
        ASSERT_EQ(std::sscanf(behind.c_str() + at, "\\red%d\\green%d\\blue%d", &red, &green, &blue),
                  3);
        const Rgb mark{static_cast<std::uint8_t>(red), static_cast<std::uint8_t>(green),
                       static_cast<std::uint8_t>(blue)};
        EXPECT_NE(mark, DarkColours::kBackground);
        for (std::size_t i = 0; i < map->text().size(); ++i)
            EXPECT_GE(contrast(map->colourAt(i).value_or(Rgb{}), mark), 4.5) << behind << i;
    }
    EXPECT_EQ(count, 5);
    // Those of tables too, and where one number is of letters and of a mark.
    const std::string cell =
        R"({\rtf1{\colortbl ;\red255\green255\blue0;}\trowd\clcbpat1\cellx9\intbl\cf1 a\cell\row})";
    const std::string darkCell = dark.darkened(cell);
    EXPECT_NE(marksOf(darkCell), marksOf(cell));
    EXPECT_EQ(marksOf(dark.restored(darkCell)), "clcbpat \\red255\\green255\\blue0\n");
    EXPECT_EQ(marksOf(known(dark.restored(shown))), marks);
    EXPECT_EQ(coloursOf(dark.restored(shown)), coloursOf(document));
}

// All the blues there are, and what would be the same as one of them.
TEST(DarkColours, AlwaysFindsOneThatIsFree) {
    DarkColours dark;
    std::set<int> taken;
    for (int round = 0; round < 2; ++round) {
        for (int value = 0; value < 256; ++value) {
            for (const int rest : {0, 250, 255}) {
                const auto part = static_cast<std::uint8_t>(rest);
                const Rgb own{part, part, static_cast<std::uint8_t>(value)};
                const Rgb light = dark.lightOf(own);
                EXPECT_GE(contrast(light, DarkColours::kBackground), 4.5);
                EXPECT_EQ(dark.ownOf(light), own);
                taken.insert(light.red << 16 | light.green << 8 | light.blue);
            }
        }
    }
    EXPECT_EQ(taken.size(), 3U * 256U);
}

// A control that shows a document and writes it as it came.
class PlainSource : public ScriptedEditor {
  public:
    std::string rtf() const override { return document; }
    bool loadRtf(std::string_view rtf) override {
        document = rtf;
        return true;
    }
    bool replaceSelectionRtf(std::string_view rtf) override {
        document.insert(document.size() - 1, rtf.substr(rtf.find("\\cf")));
        document.pop_back();
        return true;
    }

    std::string document;
};

TEST(DarkEditor, GivesACommandTheOwnColoursAndIsDarkAfterwards) {
    const std::string song =
        R"({\rtf1{\fonttbl{\f0 A;}}{\colortbl ;\red200\green0\blue0;\red235\green235\blue235;}\cf1 a\cf0 b\cf2 c})";
    DarkColours dark;
    PlainSource control;
    control.document = dark.darkened(song);
    control.selected = {1, 2};
    control.scroll = {0, 30, 2};
    DarkEditor editor(control, dark);
    EXPECT_EQ(coloursOf(editor.rtf()), coloursOf(song));
    {
        const EditorWork work(editor);
        EXPECT_EQ(coloursOf(control.document), coloursOf(song));
        // What comes in has the table of the song here.
        editor.replaceSelectionRtf(R"({\rtf1 \cf2 d})");
        EXPECT_EQ(control.work, 1);
    }
    EXPECT_EQ(control.work, 0);
    EXPECT_EQ(control.selected, (Selection{1, 2}));
    EXPECT_EQ(control.scroll, (ScrollPosition{0, 30, 2}));
    const auto map = RtfMap::parse(control.document);
    ASSERT_TRUE(map);
    for (std::size_t i = 0; i < map->text().size(); ++i)
        EXPECT_GE(contrast(map->colourAt(i).value_or(Rgb{}), DarkColours::kBackground), 4.5);
    EXPECT_EQ(coloursOf(dark.restored(control.document)), "a200,0,0 b- c235,235,235 d235,235,235 ");
}

}  // namespace
}  // namespace melvorin
