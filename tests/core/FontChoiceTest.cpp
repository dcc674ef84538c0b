// What the font and colours window offers, and the setting that it keeps.
#include <gtest/gtest.h>

#include <set>

#include "widgets/FontChoice.h"

namespace melvorin {
namespace {

TEST(FontChoice, SizesAsTyped) {
    struct Case {
        TextView typed;
        std::optional<int> halfPoints;
    };
    const Case cases[] = {
        {u"10", 20},   {u"10.5", 21},  {u"10,5", 21},          {u"010", 20},   {u"12.", 24},
        {u"4", 8},     {u"400", 800},  {u"3.5", std::nullopt}, {u"400.5", {}}, {u"", {}},
        {u".", {}},    {u"12pt", {}},  {u"-12", {}},           {u"1.2.5", {}}, {u"10.25", {}},
        {u"10.3", {}}, {u"99999", {}}, {u"999999999999", {}},  {u" 12", {}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(parseFontSize(c.typed), c.halfPoints) << toUtf8(c.typed);
        if (c.halfPoints) {
            EXPECT_EQ(parseFontSize(fontSizeText(*c.halfPoints)), c.halfPoints);
        }
    }
}

double luminance(Rgb colour) {
    return 0.3 * colour.red + 0.59 * colour.green + 0.11 * colour.blue;
}

TEST(FontChoice, FortyColoursTwelveWithNames) {
    const char* const names[] = {"Branco",  "Cinza Claro", "Vermelho Claro", "Laranja Claro",
                                 "Rosa",    "Cinza",       "Vermelho",       "Laranja",
                                 "Amarelo", "Azul",        "Verde",          "Preto"};
    std::set<std::string> titles;
    std::set<int> colours;
    for (std::size_t i = 0; i < kSwatchCount; ++i) {
        const Swatch& swatch = swatches()[i];
        EXPECT_EQ(toUtf8(swatch.name), i < kNamedSwatchCount ? names[i] : "");
        titles.insert(toUtf8(swatchTitle(swatch)));
        colours.insert(swatch.colour.red << 16 | swatch.colour.green << 8 | swatch.colour.blue);
        // A caption is read on its colour.
        EXPECT_GT(std::abs(luminance(inkOn(swatch.colour)) - luminance(swatch.colour)), 75)
            << toUtf8(swatchTitle(swatch));
    }
    EXPECT_EQ(titles.size(), kSwatchCount);
    EXPECT_EQ(colours.size(), kSwatchCount);
    EXPECT_EQ(toUtf8(swatchTitle(swatches()[26])), "Red 128, green 0, blue 0");
}

TEST(FontChoice, ArrowsLeadToTheNearest) {
    // Two wide ones above three narrow ones.
    const Area areas[] = {
        {0, 0, 40, 10}, {50, 0, 40, 10}, {0, 20, 20, 10}, {30, 20, 20, 10}, {60, 20, 30, 10}};
    struct Case {
        std::size_t from;
        Arrow arrow;
        std::size_t to;
    };
    for (const auto& [from, arrow, to] : {Case{0, Arrow::Right, 1},
                                          {1, Arrow::Right, 1},
                                          {1, Arrow::Left, 0},
                                          {0, Arrow::Down, 2},
                                          {1, Arrow::Down, 4},
                                          {3, Arrow::Up, 0},
                                          {4, Arrow::Up, 1},
                                          {2, Arrow::Down, 2},
                                          {4, Arrow::Left, 3}})
        EXPECT_EQ(neighbour(areas, from, arrow), to) << from;
}

TEST(FontChoice, NamesInOrderAndFoundAsTyped) {
    const std::vector<Text> faces =
        shownFaces({u"Tahoma", u"@Batang", u"courier", u"Melvorin 07", u"Arial", u"Tahoma", u"",
                    u"Melvorin", u"Courier New", u"Ares", u"Batang"});
    const std::vector<Text> expected = {u"Ares",        u"Arial",    u"Batang", u"courier",
                                        u"Courier New", u"Melvorin", u"Tahoma"};
    EXPECT_EQ(faces, expected);
    struct Case {
        TextView typed;
        std::optional<std::size_t> row;
    };
    for (const auto& [typed, row] :
         {Case{u"a", 0}, Case{u"ARI", 1}, Case{u"courier ", 4}, Case{u"Tahoma", 6},
          Case{u"Tahomas", std::nullopt}, Case{u"", std::nullopt}})
        EXPECT_EQ(findFace(faces, typed), row) << toUtf8(typed);
}

}  // namespace
}  // namespace melvorin
