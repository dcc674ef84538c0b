// Songs laid out on pages: everything that is to be painted, with its place in points.
//
// Painters (PDF, printer, preview) paint what they are given, where they are told; no painter
// measures. Places count from the top left corner of the paper, to the right and down.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "paper/PaperFont.h"
#include "paper/PaperSong.h"

namespace melvorin {

// In points, 72 to the inch.
struct PaperSize {
    double width = 0;
    double height = 0;
};
inline constexpr PaperSize kA4{595.276, 841.890};
inline constexpr PaperSize kLetter{612, 792};
inline constexpr double kPointsPerMm = 72 / 25.4;

struct PageSetup {
    PaperSize paper = kA4;
    double margin = 15 * kPointsPerMm;  // on all four sides
    unsigned columns = 1;               // 1 to 4; with `fit` the most that are tried
    double gap = 18;                    // between columns
    bool fit = false;                   // the size that brings a song on one page, else on two
    double leastPoints = 9;             // with `fit`, of most of the text
    double mostPoints = 14;
    bool colours = true;    // else everything is black, and chords are bold
    bool header = true;     // title, key, capo, page of pages
    bool diagrams = false;  // a row of the song's diagrams at its head
};

// Text in one font from its base line's left end on.
struct PlacedRun {
    static constexpr std::size_t kNoLine = static_cast<std::size_t>(-1);

    double x = 0;
    double y = 0;  // of the base line
    double width = 0;
    double size = 0;
    FontNumber font = 0;
    Rgb colour = {};
    Text text = {};
    bool underline = false;
    bool isDiagram = false;
    // Where it came from, in PaperSong::lines and UTF-16 units; kNoLine for what the page adds.
    std::size_t line = kNoLine;
    std::size_t index = 0;
};

struct PaperPage {
    std::vector<PlacedRun> runs;
};

struct LaidSong {
    std::vector<PaperPage> pages;  // at least one
    double points = 0;             // of most of the text, as it is set
    unsigned columns = 1;
    bool isWrapped = false;
    // Labels of sections, for bookmarks: page of the song, and y of the top.
    struct Mark {
        Text name;
        std::size_t page = 0;
        double y = 0;
    };
    std::vector<Mark> marks;
    std::set<std::pair<char32_t, std::size_t>> unwritable;  // as in MeasuredSong
};

// The diagram of a chord: face and character; nothing where there is none.
struct DiagramOfChord {
    Text face;
    Text character;
};
using FindDiagram = std::function<std::optional<DiagramOfChord>(TextView chord)>;

// Charts keep what makes them charts: chords and their words never part, a section is together
// where a column has room for it, no line of a section that must be split is left alone. Linear in
// the song.
LaidSong layOutSong(const PaperSong& song, const PageSetup& setup, PaperFonts& fonts,
                    const FindDiagram& findDiagram = {});

}  // namespace melvorin
