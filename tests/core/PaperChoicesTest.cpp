// The choices of a page, where the preview puts the pages, and fonts that share a file.
#include <gtest/gtest.h>

#include <cstring>
#include <fstream>
#include <iterator>

#include "MemoryFiles.h"
#include "StandIns.h"
#include "base/ProgramSettings.h"
#include "paper/FontCollection.h"
#include "paper/PageChoices.h"
#include "paper/PaperNotes.h"
#include "paper/PreviewLayout.h"
#include "paper/TrueTypeFont.h"

namespace melvorin {
namespace {

using testing::shown;

class PageChoicesTest : public ::testing::Test {
  protected:
    void put(TextView key, TextView value) {
        all_.profiles.values[{programIniPath(all_.program), u"Page", Text(key)}] = value;
    }

    testing::StandIns all_;
    testing::MemoryFiles files_;
    Services services_ = testing::ServicesBuilder(all_, files_, windows1252()).build();
};

TEST_F(PageChoicesTest, AreKeptAndForgiveAFileThatMakesNoSense) {
    EXPECT_EQ(pageChoices(services_), PageChoices());
    all_.printers.letter = true;
    EXPECT_EQ(pageChoices(services_).paper, PaperName::Letter);
    const PageChoices own{.paper = PaperName::A5,
                          .landscape = true,
                          .marginMm = 8,
                          .columns = 4,
                          .fit = false,
                          .leastPoints = 7,
                          .mostPoints = 20,
                          .colours = false,
                          .header = false,
                          .diagrams = true};
    EXPECT_TRUE(storePageChoices(services_, own));
    EXPECT_EQ(pageChoices(services_), own);

    put(u"Paper", u"A99");
    put(u"Margin", u"-3");
    put(u"Columns", u"5");
    put(u"Fit", u"yes");
    put(u"Least", u"30");
    put(u"Most", u"99999999999999");
    const PageChoices read = pageChoices(services_);
    EXPECT_EQ(read.paper, PaperName::Letter);
    EXPECT_EQ(read.marginMm, 15);
    EXPECT_EQ(read.columns, 2);
    EXPECT_TRUE(read.fit);
    EXPECT_EQ(read.leastPoints, 30);
    EXPECT_EQ(read.mostPoints, 30) << "never below the smallest";
    all_.profiles.writable = false;
    EXPECT_FALSE(storePageChoices(services_, own));

    const PageSetup setup = setupOf(own);
    EXPECT_NEAR(setup.paper.width, 595.28, 0.01);
    EXPECT_NEAR(setup.paper.height, 419.53, 0.01);
    EXPECT_NEAR(setup.margin, 22.68, 0.01);  // 8 mm of 72 points to 25.4 mm
}

TEST(PreviewLayout, ShowsPagesWholeInEveryView) {
    using enum PreviewView::Kind;
    constexpr PaperSize paper{600, 800};
    struct Case {
        PreviewView view;
        std::size_t pages;
        double scale;
        std::vector<Area> places;  // of the first pages
        int height;
    };
    // A window of 640 by 440 pixels, 20 around each page.
    const Case cases[] = {
        {{OnePage}, 3, 0.5, {{170, 20, 300, 400}, {170, 440, 300, 400}}, 1280},
        {{OnePage}, 1, 0.5, {{170, 20, 300, 400}}, 440},
        {{TwoPages},
         3,
         290.0 / 600,
         {{20, 20, 290, 386}, {330, 20, 290, 386}, {20, 426, 290, 386}},
         832},
        // Two rows of two are 190 high, one row of four is 180 high and 135 wide.
        {{AllPages}, 4, 0.2375, {{168, 20, 142, 190}, {330, 20, 142, 190}}, 440},
        {{PageWidth}, 1, 1, {{20, 20, 600, 800}}, 840},
        {{Percent, 75}, 1, 1, {{20, 20, 600, 800}}, 840},
    };
    for (const Case& row : cases) {
        const PreviewLayout layout = layOutPreview(paper, row.pages, row.view, {640, 440}, 20, 96);
        SCOPED_TRACE(static_cast<int>(row.view.kind));
        EXPECT_NEAR(layout.scale, row.scale, 0.001);
        EXPECT_EQ(layout.pages.size(), row.pages);
        EXPECT_EQ(layout.height, row.height);
        EXPECT_GE(layout.width, 640);
        for (std::size_t i = 0; i < row.places.size(); ++i)
            EXPECT_EQ(layout.pages[i], row.places[i]) << i;
        for (const Area& page : layout.pages) {
            EXPECT_GE(page.left, 20);
            EXPECT_LE(page.left + page.width, layout.width - 20);
            EXPECT_LE(page.top + page.height, layout.height - 20);
        }
    }
    // All of any number are in the window.
    for (const std::size_t count : {1U, 2U, 5U, 30U}) {
        const PreviewLayout layout = layOutPreview(paper, count, {AllPages}, {900, 600}, 10, 96);
        EXPECT_EQ(layout.width, 900);
        EXPECT_EQ(layout.height, 600) << count;
    }
    const PreviewLayout three = layOutPreview(paper, 3, {OnePage}, {640, 440}, 20, 96);
    EXPECT_EQ(pageAt(three, 0, 440), 0U);
    EXPECT_EQ(pageAt(three, 199, 440), 0U);
    EXPECT_EQ(pageAt(three, 420, 440), 1U);
    EXPECT_EQ(pageAt(three, 840, 440), 2U);
    EXPECT_EQ(pageAt({}, 0, 440), 0U);
}

TEST(PreviewLayout, GoesFromSizeToSize) {
    const auto percent = [](double now, bool larger) {
        return nextSize(now / 100 * 96 / 72, larger, 96).percent;
    };
    EXPECT_EQ(percent(60, true), 67);
    EXPECT_EQ(percent(60, false), 50);
    EXPECT_EQ(percent(100, true), 125);
    EXPECT_EQ(percent(99.7, true), 125) << "nearly the same";
    EXPECT_EQ(percent(100.3, false), 75);
    EXPECT_EQ(percent(400, true), 400);
    EXPECT_EQ(percent(10, false), 25);
}

TEST(PaperNotes, NameWhatIsMissing) {
    EXPECT_EQ(shown(unwritableInWords({{U'\u05D0', 6}, {0x1F600, 9}, {0x1F600, 2}})),
              "no font has U+05D0 (line 7), U+1F600 (line 3)");
    std::set<std::pair<char32_t, std::size_t>> many;
    for (char32_t c = 0x600; c < 0x620; ++c)
        many.emplace(c, 0);
    EXPECT_TRUE(unwritableInWords(many).ends_with(u" and 12 more"));
    EXPECT_EQ(shown(missingInWords({})), "");
    EXPECT_EQ(shown(missingInWords({u"Papyrus"})),
              "The font Papyrus is not there; another stands for it.");
    LaidSong laid;
    laid.points = 11.25;
    laid.columns = 2;
    EXPECT_EQ(shown(pageInWords(laid, 0, 2)), "Page 1 of 2, set in 11.25 points, in 2 columns");
    laid.points = 14.0;
    laid.columns = 1;
    EXPECT_EQ(shown(pageInWords(laid, 1, 2)), "Page 2 of 2, set in 14 points");
}

// ---- Collections ------------------------------------------------------------------------------

std::string fileOf(const char* path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string big(std::uint32_t value, int length) {
    std::string bytes;
    while (length-- > 0)
        bytes += static_cast<char>(value >> 8 * length & 0xFF);
    return bytes;
}

// Two fonts behind a head, the places in their directories those of the whole file, as the format
// has it.
std::string collectionOf(const std::vector<std::string>& fonts) {
    std::string file =
        "ttcf" + big(0x00010000, 4) + big(static_cast<std::uint32_t>(fonts.size()), 4);
    std::size_t start = file.size() + 4 * fonts.size();
    for (const std::string& font : fonts) {
        file += big(static_cast<std::uint32_t>(start), 4);
        start += font.size();
    }
    for (std::string font : fonts) {
        const std::size_t base = file.size();
        const auto count = static_cast<std::size_t>(static_cast<unsigned char>(font[5]));
        for (std::size_t i = 0; i < count; ++i) {
            std::uint32_t offset = 0;
            for (std::size_t b = 0; b < 4; ++b)
                offset = offset << 8 | static_cast<unsigned char>(font[12 + 16 * i + 8 + b]);
            font.replace(12 + 16 * i + 8, 4, big(offset + static_cast<std::uint32_t>(base), 4));
        }
        file += font;
    }
    return file;
}

TEST(FontCollection, GivesEachFontAsAFile) {
    const std::string mono = fileOf("/usr/share/fonts/truetype/dejavu/DejaVuSansMono.ttf");
    const std::string bold = fileOf("/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf");
    const std::string file = collectionOf({mono, bold});
    EXPECT_FALSE(TrueTypeFont::read(file)) << "not as it stands";
    const auto fonts = fontsOf(file);
    ASSERT_TRUE(fonts);
    ASSERT_EQ(fonts.value->size(), 2U);
    const auto first = TrueTypeFont::read((*fonts.value)[0]);
    const auto second = TrueTypeFont::read((*fonts.value)[1]);
    ASSERT_TRUE(first && second) << shown(first.cause + second.cause);
    EXPECT_EQ(shown(first.value->family()), "DejaVu Sans Mono");
    EXPECT_EQ(shown(second.value->family()), "DejaVu Sans");
    EXPECT_TRUE(second.value->isBold());
    EXPECT_NEAR(first.value->advance(U'i').value_or(0), 1233.0 / 2048, 1e-9);
    // Any other file is its own only font.
    ASSERT_TRUE(fontsOf(mono));
    EXPECT_EQ(fontsOf(mono).value->at(0), mono);
    // What is cut off or wrong is refused or read, and never more than that.
    for (std::size_t length = 0; length < 700; length += 3)
        static_cast<void>(fontsOf(file.substr(0, length)));
    EXPECT_FALSE(fontsOf("ttcf"));
    EXPECT_FALSE(fontsOf(file.substr(0, 400)));
    std::string wild = file;
    wild.replace(12, 4, "\xFF\xFF\xFF\xF0");
    EXPECT_FALSE(fontsOf(wild));
}

}  // namespace
}  // namespace melvorin
