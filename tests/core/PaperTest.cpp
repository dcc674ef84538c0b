// Songs on paper. MELVORIN_SEED gives the invented songs another course, MELVORIN_SONGS more of
// them.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <random>

#include "paper/FontShelf.h"
#include "paper/PageMaker.h"
#include "paper/PaperDocument.h"
#include "paper/PdfWriter.h"

namespace melvorin {
namespace {

constexpr double kNear = 0.05;

std::string fileOf(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string dejaVu(const std::string& name) {
    return fileOf("/usr/share/fonts/truetype/dejavu/" + name + ".ttf");
}

FontShelf shelf() {
    FontShelf fonts;
    for (const char* name :
         {"DejaVuSansMono", "DejaVuSansMono-Bold", "DejaVuSans", "DejaVuSans-Bold"})
        EXPECT_TRUE(fonts.add(dejaVu(name))) << name;
    return fonts;
}

std::size_t countOf(const char* name, std::size_t usual) {
    const char* value = std::getenv(name);
    return value == nullptr ? usual : std::strtoull(value, nullptr, 10);
}

// What an invented song is made of, told apart from what the program takes it for.
enum class Made { Blank, Label, Words, PairChords, LoneChords, Tab };
struct InventedSong {
    Text text;
    std::vector<Made> made;
    std::vector<std::size_t> section;  // of each line; blank lines count to the one above
};

class Inventor {
  public:
    explicit Inventor(std::size_t seed) : engine_(static_cast<std::uint32_t>(seed)) {}
    std::size_t below(std::size_t count) { return engine_() % count; }

    InventedSong song();

  private:
    void add(const Text& line, Made made);
    void pair();

    std::mt19937 engine_;
    InventedSong song_;
    std::size_t section_ = 0;
    std::size_t mostWords_ = 4;
};

void Inventor::add(const Text& line, Made made) {
    song_.text.append(line).append(u"\n");
    song_.made.push_back(made);
    song_.section.push_back(section_);
}

void Inventor::pair() {
    constexpr TextView kChords[] = {u"C", u"Am", u"G7", u"F#m7(9)", u"Bb", u"D/F#"};
    Text words;
    Text chords;
    for (std::size_t i = 0, count = 3 + below(below(9) == 0 ? mostWords_ : 4); i < count; ++i) {
        // Some begin over the blank before their syllable.
        const std::size_t column = words.size() - std::min<std::size_t>(words.size(), below(2));
        if (chords.size() <= column && below(2) == 0)
            chords.append(column - chords.size(), u' ').append(kChords[below(6)]).append(u" ");
        words.append(1 + below(8), u'w').append(u"izkx ");
    }
    if (chords.empty())
        chords = u"C";
    add(chords, Made::PairChords);
    add(words, Made::Words);
}

InventedSong Inventor::song() {
    mostWords_ = below(3) == 0 ? 40 : 4;
    add(u"The wizkx", Made::Words);
    for (std::size_t i = 0, count = 1 + below(9); i < count; ++i) {
        add(u"", Made::Blank);
        ++section_;
        if (below(2) == 0)
            add(u"[Verse]", Made::Label);
        const std::size_t kind = below(8);
        if (kind == 0) {
            for (const TextView name : {u"e|", u"B|", u"G|"})
                add(Text(name).append(20 + below(130), u'-').append(u"3--|"), Made::Tab);
            continue;
        }
        if (kind == 1)
            add(u"C  G  Am  F", Made::LoneChords);
        const bool plain = kind == 2;
        for (std::size_t line = 0, lines = 1 + below(below(plain ? 2 : 6) == 0 ? 120 : 6);
             line < lines; ++line) {
            if (plain)
                add(u"wizkx wo kwy", Made::Words);
            else
                pair();
        }
    }
    return song_;
}

struct Place {
    std::size_t page = 0;
    PlacedRun run;
};

// Looks at a laid song as a musician would.
class Look {
  public:
    Look(const InventedSong& invented, const PaperSong& song, const PageSetup& setup,
         const LaidSong& laid, FontShelf& fonts)
        : invented_(invented), song_(song), setup_(setup), laid_(laid), fonts_(fonts) {
        for (std::size_t page = 0; page < laid.pages.size(); ++page) {
            for (const PlacedRun& run : laid.pages[page].runs) {
                inside(run);
                if (run.line != PlacedRun::kNoLine)
                    lines_[run.line].push_back({page, run});
            }
        }
    }
    void run();

  private:
    void inside(const PlacedRun& run) const;
    void everyLetter(std::size_t line) const;
    void chordsOverWords(std::size_t line) const;
    void sections() const;
    double advance(std::size_t line, std::size_t begin, std::size_t end) const;
    std::size_t columnOf(const Place& place) const {
        const double all = setup_.paper.width - 2 * setup_.margin;
        const double step = (all + setup_.gap) / laid_.columns;
        return place.page * 4 +
               static_cast<std::size_t>((place.run.x - setup_.margin + kNear) / step);
    }

    const InventedSong& invented_;
    const PaperSong& song_;
    const PageSetup& setup_;
    const LaidSong& laid_;
    FontShelf& fonts_;
    std::map<std::size_t, std::vector<Place>> lines_;
};

void Look::inside(const PlacedRun& run) const {
    const double most = setup_.paper.width - setup_.margin;
    EXPECT_GE(run.x, setup_.margin - kNear);
    EXPECT_LE(run.x + run.width, most + kNear) << toUtf8(run.text);
    EXPECT_GE(run.y - 0.7 * run.size, setup_.margin - kNear);
    EXPECT_LE(run.y, setup_.paper.height - setup_.margin + kNear);
}

// On the screen, at the size of the document.
double Look::advance(std::size_t line, std::size_t begin, std::size_t end) const {
    double sum = 0;
    const PaperFont& font = fonts_.font(fonts_.find({song_.looks[0].face}));
    for (std::size_t i = begin; i < end; ++i)
        sum += *font.advance(song_.lines[line].text[i]);
    return sum * song_.looks[0].points;
}

void Look::everyLetter(std::size_t line) const {
    Text wanted = song_.lines[line].text;
    std::erase(wanted, u' ');
    Text found;
    const auto places = lines_.find(line);
    for (const Place& place : places == lines_.end() ? std::vector<Place>() : places->second)
        found += place.run.text;
    EXPECT_EQ(toUtf8(found), toUtf8(wanted));
    if (places == lines_.end())
        return;
    const bool isTab = invented_.made[line] == Made::Tab;
    for (const Place& place : places->second) {
        if (isTab)
            EXPECT_EQ(place.run.y, places->second[0].run.y);
        else
            EXPECT_NEAR(place.run.size, laid_.points, kNear);
    }
}

// Each chord is over what it was over, or beside the word that it was beside.
void Look::chordsOverWords(std::size_t line) const {
    for (const Place& chord : lines_.at(line)) {
        const double wanted = advance(line, 0, chord.run.index);
        bool fits = false;
        bool isOver = false;
        for (const bool onlyOver : {true, false}) {
            for (const Place& word : lines_.at(line + 1)) {
                const double scale = word.run.size / song_.looks[0].points;
                const double onScreen = wanted - advance(line + 1, 0, word.run.index);
                const double below = word.run.y - chord.run.y;
                const bool overlaps =
                    onScreen * scale < word.run.width && onScreen * scale > -chord.run.width;
                isOver = isOver || overlaps;
                fits = fits || ((overlaps || !onlyOver) && word.page == chord.page && below > 0 &&
                                below < 1.3 * word.run.size &&
                                std::abs(chord.run.x - word.run.x - onScreen * scale) < 0.5);
            }
            if (isOver)
                break;
        }
        const bool isBehind = wanted >= advance(line + 1, 0, song_.lines[line + 1].text.size());
        EXPECT_TRUE(fits || (isBehind && laid_.isWrapped)) << toUtf8(chord.run.text);
    }
}

void Look::sections() const {
    if (laid_.isWrapped)
        return;
    const PaperFont& font = fonts_.font(0);
    const double height = (font.ascent() + font.descent()) * laid_.points;
    std::map<std::size_t, std::map<std::size_t, std::size_t>> pieces;  // lines by column
    std::map<std::size_t, bool> isTab;
    for (const auto& [line, places] : lines_) {
        ++pieces[invented_.section[line]][columnOf(places[0])];
        isTab[invented_.section[line]] |= invented_.made[line] == Made::Tab;
    }
    // The head of a page takes less than 45 points here.
    const double room = setup_.paper.height - 2 * setup_.margin - 45;
    for (const auto& [section, columns] : pieces) {
        std::size_t count = 0;
        for (const auto& [column, lines] : columns) {
            count += lines;
            EXPECT_TRUE(columns.size() == 1 || lines > 1) << "a line alone, section " << section;
        }
        if (!isTab[section] && static_cast<double>(count) * height < room) {
            EXPECT_EQ(columns.size(), 1U) << "section " << section << " of " << count << " lines";
        }
    }
}

void Look::run() {
    for (std::size_t line = 1; line < invented_.made.size(); ++line) {
        SCOPED_TRACE("line " + std::to_string(line) + ": " + toUtf8(song_.lines[line].text));
        everyLetter(line);
        if (invented_.made[line] == Made::PairChords)
            chordsOverWords(line);
    }
    sections();
}

TEST(Paper, KeepsEveryInventedSongTogether) {
    FontShelf fonts = shelf();
    const std::size_t first = countOf("MELVORIN_SEED", 1);
    for (std::size_t seed = first; seed < first + countOf("MELVORIN_SONGS", 100); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        Inventor inventor(seed);
        const InventedSong invented = inventor.song();
        const bool isProportional = inventor.below(4) == 0;
        const PaperLook look{.face = isProportional ? u"DejaVu Sans" : u"DejaVu Sans Mono",
                             .points = 8 + static_cast<double>(inventor.below(8))};
        const PaperSong song = paperSong(invented.text, look, u"name");
        PageSetup setup;
        setup.paper = inventor.below(2) == 0 ? kA4 : kLetter;
        setup.columns = static_cast<unsigned>(1 + inventor.below(3));
        setup.fit = inventor.below(2) == 0;
        setup.colours = inventor.below(2) == 0;
        const LaidSong laid = layOutSong(song, setup, fonts);
        EXPECT_EQ(toUtf8(song.title), "The wizkx");
        Look(invented, song, setup, laid, fonts).run();
        if (HasFailure())
            break;
    }
}

LaidSong laidOf(TextView text, const PageSetup& setup, FontShelf& fonts) {
    return layOutSong(paperSong(text, {.face = u"DejaVu Sans Mono", .points = 10}, u"name"), setup,
                      fonts);
}

Text repeated(TextView text, std::size_t times) {
    Text result;
    while (times-- > 0)
        result += text;
    return result;
}

TEST(Paper, FitsASongOnAPage) {
    FontShelf fonts = shelf();
    const Text verse = u"C      G\nwords and words\n";
    const struct {
        Text song;
        double least;
        double most;
        unsigned columns;
        std::size_t pages;
    } cases[] = {
        {repeated(verse, 20), 14, 14, 1, 1},
        // 757 points between the margins, 26 of them the head's: 60 lines of 1.164 em in each
        // column are 10.45 points.
        {repeated(verse, 60), 10.25, 10.25, 2, 1},
        {repeated(Text(80, u'w') + u"\n", 40), 10.25, 10.5, 1, 1},
        {repeated(Text(80, u'w') + u"\n", 80), 10.25, 10.5, 1, 2},
        // What wraps in every size has no say about the lines that need not.
        {repeated(Text(80, u'w') + u"\n", 20) + repeated(u"words ", 50), 10.25, 10.5, 1, 1},
        {repeated(verse, 1000), 9, 9, 2, 15},
    };
    for (const auto& test : cases) {
        PageSetup setup;
        setup.fit = true;
        const LaidSong laid = laidOf(test.song, setup, fonts);
        SCOPED_TRACE(toUtf8(test.song.substr(0, 12)) + std::to_string(test.song.size()));
        EXPECT_GE(laid.points, test.least);
        EXPECT_LE(laid.points, test.most);
        EXPECT_EQ(laid.columns, test.columns);
        EXPECT_EQ(laid.pages.size(), test.pages);
    }
}

TEST(Paper, LeavesNoLineAlone) {
    FontShelf fonts = shelf();
    for (std::size_t before = 2; before < 140; ++before) {
        const LaidSong laid = laidOf(
            u"head\n\n" + repeated(u"one\n", before) + u"\n" + repeated(u"two\n", 141 - before), {},
            fonts);
        for (const PaperPage& page : laid.pages) {
            std::map<Text, std::size_t> lines;
            for (const PlacedRun& run : page.runs)
                ++lines[run.text];
            EXPECT_NE(lines[u"one"], 1U) << before;
            EXPECT_NE(lines[u"two"], 1U) << before;
        }
    }
}

TEST(Paper, WritesWhateverComes) {
    FontShelf fonts = shelf();
    const struct {
        Text song;
        std::set<std::pair<char32_t, std::size_t>> unwritable;
        double points = 40;
    } cases[] = {
        {u"", {}},
        {u"D\nBig i", {}, 2000},
        {u"\n\n \n", {}},
        {Text(10000, u'w'), {}},
        {Text(10000, u'C') + u"\n" + Text(10000, u'w'), {}},
        {repeated(u"Am G ", 2000) + u"\n" + repeated(u"words ", 2000), {}},
        {repeated(u"words\n", 10000), {}},
        {u"Ťažká Жизнь \u00A0\u200Bx\u0301", {}},
        {u"one\nsmile \U0001F600", {{0x1F600, 1}}},
        {u"\u05D0\u05D1 \u6B4C", {{0x5D0, 0}, {0x5D1, 0}, {0x6B4C, 0}}},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(toUtf8(test.song.substr(0, 20)));
        const PaperSong song =
            paperSong(test.song, {.face = u"DejaVu Sans Mono", .points = test.points}, u"name");
        PageSetup setup;
        setup.columns = test.points > 40 ? 1 : 4;
        LaidSong laid = layOutSong(song, setup, fonts);
        EXPECT_EQ(laid.unwritable, test.unwritable);
        for (const PaperPage& page : laid.pages) {
            for (const PlacedRun& run : page.runs)
                ASSERT_LE(run.x + run.width, setup.paper.width - setup.margin + kNear);
        }
        const PaperDocument document = songDocument(std::move(laid), song, setup);
        const Result<std::string> bytes = writePdf(document, fonts);
        ASSERT_TRUE(bytes) << toUtf8(bytes.cause);
        EXPECT_EQ(*bytes.value, *writePdf(document, fonts).value);
    }
}

TEST(Paper, LeavesNothingBelowThePage) {
    FontShelf fonts = shelf();
    Text chords;
    for (const TextView root : {u"C", u"C#", u"D", u"Eb", u"E", u"F", u"F#", u"G", u"Ab", u"A"}) {
        for (const TextView kind : {u"", u"m", u"7", u"m7", u"6", u"9", u"m6", u"7/9", u"4", u"m9"})
            chords.append(root).append(kind).append(u"\nwizkwa\n");
    }
    const Text letters(4000, u'w');
    const struct {
        Text song;
        char16_t counted;
        std::size_t count;  // at least
    } cases[] = {
        {letters, u'w', 4000},  // no title, but a text
        {u"{title: " + letters + u"}\nwords\n", u'w', 4000},
        {u"head\n\n" + chords, u'@', 90},
    };
    for (const auto& test : cases) {
        SCOPED_TRACE(toUtf8(test.song.substr(0, 20)));
        const PaperSong song =
            paperSong(test.song, {.face = u"DejaVu Sans Mono", .points = 10}, u"name");
        PageSetup setup;
        setup.diagrams = true;
        const LaidSong laid = layOutSong(song, setup, fonts, [](TextView) {
            return DiagramOfChord{u"DejaVu Sans", u"@"};
        });
        std::size_t count = 0;
        for (const PaperPage& page : laid.pages) {
            for (const PlacedRun& run : page.runs) {
                ASSERT_LE(run.y, setup.paper.height - setup.margin) << toUtf8(run.text);
                count += static_cast<std::size_t>(
                    std::count(run.text.begin(), run.text.end(), test.counted));
            }
        }
        EXPECT_GE(count, test.count);
    }
}

TEST(Paper, KeepsChordsBehindWhatItCannotWrite) {
    FontShelf fonts = shelf();
    std::map<std::string, double> x;
    const LaidSong laid = laidOf(u"C    G  D\n\u6B4C\u6B4C word\n", {}, fonts);
    for (const PlacedRun& run : laid.pages[0].runs)
        x[toUtf8(run.text)] = run.x;
    EXPECT_NEAR(x["G"], x["word"], 0.01);
    EXPECT_NEAR(x["G"], x["C"] + 5 * 10 * 1233 / 2048.0, 0.01);
}

TEST(Paper, ReadsTheFormatsOfADocument) {
    FontShelf fonts = shelf();
    const PaperSong song = paperSongOfRtf(
        "{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset0 DejaVu Sans;}{\\f1\\fcharset0 Melvorin 01;}}"
        "{\\colortbl;\\red0\\green0\\blue255;\\red255\\green255\\blue240;}"
        "\\f0\\fs40\\qc Tune\\par\\pard\\fs20\\b C\\b0\\par w{\\i\\cf1 x}\\f1 a\\f0\\par"
        "\\cf2 light\\par}",
        {}, u"name");
    EXPECT_EQ(toUtf8(song.title), "name");  // what stands over chords is no heading
    const LaidSong laid = layOutSong(song, {}, fonts);
    std::map<std::string, PlacedRun> runs;
    for (const PlacedRun& run : laid.pages[0].runs)
        runs[toUtf8(run.text)] = run;
    EXPECT_EQ(runs["Tune"].size, 20);
    EXPECT_NEAR(runs["Tune"].x + runs["Tune"].width / 2, kA4.width / 2, 0.01);
    EXPECT_EQ(runs["x"].colour, (Rgb{0, 0, 255}));
    EXPECT_NEAR(runs["x"].x, runs["w"].x + runs["w"].width, 0.01);
    EXPECT_EQ(runs["light"].colour, Rgb());
    // The diagram's font is not there, and another font's letter is no diagram.
    EXPECT_EQ(laid.unwritable, (std::set<std::pair<char32_t, std::size_t>>{{U'a', 2}}));
}

// Its runs by their texts, on a page between whose margins so many points are.
std::map<std::string, PlacedRun> runsOfRtf(const std::string& body, double width,
                                           bool colours = true) {
    FontShelf fonts = shelf();
    PageSetup setup;
    setup.colours = colours;
    setup.header = false;
    setup.paper.width = width + 2 * setup.margin;
    const PaperSong song = paperSongOfRtf(
        "{\\rtf1\\ansi{\\fonttbl{\\f0\\fcharset0 DejaVu Sans Mono;}{\\f1\\fcharset0 DejaVu Sans;}}"
        "\\f0\\fs20 " +
            body + "}",
        {}, u"name");
    std::map<std::string, PlacedRun> runs;
    for (const PaperPage& page : layOutSong(song, setup, fonts).pages) {
        for (const PlacedRun& run : page.runs)
            runs.emplace(toUtf8(run.text), run);
    }
    return runs;
}

// An em of DejaVu Sans Mono is 1233 / 2048 wide.
constexpr double kCell = 10 * 1233 / 2048.0;

TEST(Paper, WrapsAChordOfSeveralLooksAsOne) {
    // The row ends in front of "three", and the chord over "two" reaches over that place.
    auto runs = runsOfRtf("C        F#m{\\b 7M}\\par one  two wo three four\\par", 16.5 * kCell);
    EXPECT_LT(runs["F#m"].y, runs["one"].y);
    EXPECT_EQ(runs["7M"].y, runs["F#m"].y);
    EXPECT_NEAR(runs["7M"].x, runs["F#m"].x + runs["F#m"].width, 0.01);
    EXPECT_GT(runs["three"].y, runs["one"].y);
}

TEST(Paper, KeepsChordsOverCentredWordsThatItWraps) {
    // Both lines stand around one middle: 28 and 8 columns, so the first chord is over column 10.
    auto runs = runsOfRtf("\\qc G     Am\\par wizk wo wizwizk kwaa wok woz\\par", 20 * kCell);
    EXPECT_NEAR(runs["G"].x - runs["wizwizk"].x, 2 * kCell, 0.01);
    EXPECT_NEAR(runs["Am"].x - runs["kwaa"].x, 0, 0.01);
    EXPECT_GT(runs["wok"].y, runs["wizk"].y);
    // Each row is in the middle again.
    const double middle = 15 * kPointsPerMm + 10 * kCell;
    EXPECT_NEAR((runs["wizk"].x + runs["kwaa"].x + runs["kwaa"].width) / 2, middle, 0.01);
    EXPECT_NEAR((runs["wok"].x + runs["woz"].x + runs["woz"].width) / 2, middle, 0.01);
}

TEST(Paper, PutsAChordBesideTheWordBehindItRatherThanAlone) {
    auto runs = runsOfRtf("        E\\par           kwaaw wiz wo\\par", 10 * kCell);
    EXPECT_NEAR(runs["E"].x, runs["kwaaw"].x - 2 * kCell, 0.01);
    EXPECT_LT(runs["E"].y, runs["kwaaw"].y);
}

TEST(Paper, MakesARowAsHighAsWhatItHas) {
    auto runs = runsOfRtf("C\\par one two {\\fs50 Big}\\par", 10 * kCell);
    EXPECT_NEAR(runs["one"].y - runs["C"].y, 10 * (1901 + 483) / 2048.0, 0.01);
    EXPECT_NEAR(runs["Big"].y - runs["one"].y, (10 * 483 + 25 * 1901) / 2048.0, 0.01);
}

TEST(Paper, KeepsCentredChordsInTheirPlacesWhereTheyAreBold) {
    const std::string song = "\\f1\\qc Am7    Gm\\par wizk wo wizwizk kwaa\\par";
    auto plain = runsOfRtf(song, 300);
    auto bold = runsOfRtf(song, 300, false);
    EXPECT_NE(plain["Gm"].font, bold["Gm"].font);
    EXPECT_NEAR(plain["Am7"].x, bold["Am7"].x, 0.01);
    EXPECT_NEAR(plain["Gm"].x, bold["Gm"].x, 0.01);
}

TEST(Paper, TakesNoLetterOfTheNextWordAlong) {
    // The chord over the gap does not end before the column does, and the first word is too long to
    // go elsewhere.
    auto runs = runsOfRtf("C         E\\par wizkwizkwi kwaa\\par", 10.5 * kCell);
    EXPECT_NEAR(runs["wizkwizkwi"].size, 10, 0.01);
    EXPECT_GT(runs["E"].y, runs["wizkwizkwi"].y);
    EXPECT_NEAR(runs["kwaa"].x, runs["E"].x + kCell, 0.01);
}

TEST(Paper, SaysTitleKeyCapoAndPage) {
    FontShelf fonts = shelf();
    PageSetup setup;
    const Text song = u"My wizkx\nby nobody\nCapo 3\n\n" + repeated(u"G  C  D  G\nwords\n", 90);
    const LaidSong laid = laidOf(song, setup, fonts);
    std::vector<std::string> heads;
    for (const PaperPage& page : laid.pages) {
        std::string& head = heads.emplace_back();
        for (const PlacedRun& run : page.runs)
            head += run.line == PlacedRun::kNoLine ? toUtf8(run.text) + " " : "";
    }
    EXPECT_EQ(heads, (std::vector<std::string>{"My wizkx Key G Capo 3 Page 1 of 3 ",
                                               "Page 2 of 3 My wizkx ", "Page 3 of 3 My wizkx "}));
    setup.colours = false;
    const LaidSong black = laidOf(song, setup, fonts);
    const auto& runs = black.pages[1].runs;
    EXPECT_TRUE(fonts.trueType(runs.at(7).font).isBold()) << toUtf8(runs[7].text);
}

TEST(Paper, HasNoDirectivesForPrograms) {
    const PaperSong song = paperSong(
        u"{title: Row}\n{columns: 2}\n\n[G]Row\n{new_page}\n{comment: Am G}\n", {}, u"name");
    std::string lines;
    for (const PaperLine& line : song.lines)
        lines += toUtf8(line.text) + "/";
    EXPECT_EQ(lines, "Row//G/Row/Am G/");
    EXPECT_TRUE(song.titleIsFirstLine);
}

TEST(TrueType, KnowsWidthsAndRefusesWhatIsDamaged) {
    FontShelf fonts = shelf();
    // As fontTools reads them.
    EXPECT_EQ(fonts.font(0).advance(U'W'), 1233 / 2048.0);
    EXPECT_EQ(fonts.font(2).advance(U'W'), 2025 / 2048.0);
    EXPECT_EQ(fonts.font(2).advance(U'i'), 569 / 2048.0);
    EXPECT_FALSE(fonts.font(0).advance(U'\u6B4C'));
    const std::string whole = dejaVu("DejaVuSansMono");
    EXPECT_FALSE(TrueTypeFont::read(""));
    EXPECT_FALSE(TrueTypeFont::read(whole.substr(0, whole.size() / 2)));
    std::mt19937 dice(static_cast<std::uint32_t>(countOf("MELVORIN_SEED", 1)));
    const PaperSong song = paperSong(u"C  G\nÄwords\n", {}, u"name");
    // Whatever is taken can be written.
    for (std::size_t i = 0; i < countOf("MELVORIN_SONGS", 100) / 2; ++i) {
        std::string damaged = whole;
        for (int byte = 0; byte < 3; ++byte)
            damaged[dice() % (i % 2 == 0 ? 400 : damaged.size())] = static_cast<char>(dice());
        FontShelf one;
        if (!one.add(std::move(damaged)))
            continue;
        (void)writePdf(songDocument(layOutSong(song, {}, one), song, {}), one);
    }
}

}  // namespace
}  // namespace melvorin
