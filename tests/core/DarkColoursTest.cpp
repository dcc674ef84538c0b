// A document in light colours and back again.
#include <gtest/gtest.h>

#include <random>

#include "base/Contrast.h"
#include "rtf/DarkColours.h"
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

}  // namespace
}  // namespace melvorin
