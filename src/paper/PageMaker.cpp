#include "paper/PageMaker.h"

#include <algorithm>
#include <cmath>
#include <tuple>

#include "base/Contrast.h"
#include "paper/PageFlow.h"
#include "paper/PageHead.h"
#include "paper/PaperMeasure.h"
#include "paper/PaperRows.h"

namespace melvorin {
namespace {

// Text in a lighter colour is made for a dark background.
constexpr double kLeastContrast = 1.7;
constexpr Rgb kWhite{255, 255, 255};
// What is smaller cannot be read, in points.
constexpr double kReadable = 5;
// Between two sizes that are tried.
constexpr double kSizeStep = 0.25;

// The song in one size and number of columns.
struct Trial {
    double scale = 1;
    unsigned columns = 1;
    SetSong set;
    std::vector<PlacedRow> rows;

    std::size_t pages() const { return rows.empty() ? 1 : rows.back().page + 1; }
    // The lower the better: what can be read, on one page, or two, with few wrapped lines.
    auto rank() const {
        return std::tuple(set.isTiny, std::max<std::size_t>(pages(), 1), set.wrapped);
    }
};

class SongLayout {
  public:
    SongLayout(const PaperSong& song, const PageSetup& setup, PaperFonts& fonts,
               const FindDiagram& findDiagram)
        : song_(song),
          setup_(setup),
          fonts_(fonts),
          measured_(measureSong(song, fonts, !setup.colours)),
          head_(song, setup, song.looks.empty() ? Text() : song.looks[measured_.look].face, fonts) {
        if (setup.diagrams && findDiagram)
            head_.addDiagrams(song.chords, findDiagram);
    }

    LaidSong run();

  private:
    bool skipsTitle() const { return setup_.header && song_.titleIsFirstLine; }
    double columnWidth(unsigned columns) const;
    bool mayFit(double scale, unsigned columns, std::size_t pages) const;
    Trial attempt(double scale, unsigned columns) const;
    Trial fitted() const;
    void paint(const Trial& trial, const PlacedRow& placed, LaidSong& laid) const;
    Rgb colourOf(const PaperLook& look, bool isChord) const;

    const PaperSong& song_;
    const PageSetup& setup_;
    PaperFonts& fonts_;
    MeasuredSong measured_;
    PageHead head_;
};

double SongLayout::columnWidth(unsigned columns) const {
    const double all = setup_.paper.width - 2 * setup_.margin;
    return (all - setup_.gap * (columns - 1)) / columns;
}

// Everything is laid out at the sizes of the document, on a paper that is as much larger.
Trial SongLayout::attempt(double scale, unsigned columns) const {
    const double high = setup_.paper.height - 2 * setup_.margin;
    const double first = (high - head_.firstHeight()) / scale;
    const double others = (high - head_.height()) / scale;
    const ColumnRoom room{columnWidth(columns) / scale, std::max(first, others), kReadable / scale};
    Trial trial{scale, columns, setSong(measured_, room, skipsTitle() ? 1 : 0, fonts_), {}};
    trial.rows = flowRows(trial.set, {columns, first, others});
    return trial;
}

// False where a song of that size is surely on more pages, for what never is less: without blank
// lines, which go where a column ends, and without tablature and whatever is too large for a
// column, which may be set smaller.
bool SongLayout::mayFit(double scale, unsigned columns, std::size_t pages) const {
    const double width = columnWidth(columns);
    const double high = setup_.paper.height - 2 * setup_.margin;
    double needed = 0;
    for (std::size_t i = skipsTitle() ? 1 : 0; i < measured_.lines.size(); ++i) {
        const MeasuredLine& line = measured_.lines[i];
        const bool isKept = line.kind != PaperLineKind::Blank &&
                            line.kind != PaperLineKind::Tablature && line.width * scale <= width &&
                            line.height() * scale < high / 4;
        needed += isKept ? line.height() * scale : 0;
    }
    const double room =
        high - head_.firstHeight() + static_cast<double>(pages - 1) * (high - head_.height());
    return needed <= columns * room + 1;
}

Trial SongLayout::fitted() const {
    const unsigned most = std::max(setup_.columns, 2U);
    std::optional<Trial> best;
    std::size_t pages = 0;  // that are the goal; 0 while nobody knows
    const auto consider = [&](double size) {
        for (unsigned columns = 1; columns <= most; ++columns) {
            const double scale = size / measured_.points;
            if (pages > 0 && !mayFit(scale, columns, pages))
                continue;
            Trial trial = attempt(scale, columns);
            if (!best || trial.rank() < best->rank())
                best = std::move(trial);
        }
    };
    // Where the smallest is not enough for two pages, the others need not be tried.
    consider(setup_.leastPoints);
    if (best->pages() > 2)
        return std::move(*best);
    const auto goal = best->rank();
    pages = best->pages();
    best.reset();
    const auto steps =
        static_cast<int>(std::ceil((setup_.mostPoints - setup_.leastPoints) / kSizeStep));
    for (int step = 0; step < steps; ++step) {
        consider(setup_.mostPoints - step * kSizeStep);
        if (best && best->rank() <= goal)
            return std::move(*best);
    }
    consider(setup_.leastPoints);
    return std::move(*best);
}

Rgb SongLayout::colourOf(const PaperLook& look, bool isChord) const {
    if (!setup_.colours)
        return {};
    const Rgb colour = look.colour.value_or(isChord ? song_.chordColour.value_or(Rgb()) : Rgb());
    return contrast(colour, kWhite) < kLeastContrast ? Rgb() : colour;
}

void SongLayout::paint(const Trial& trial, const PlacedRow& placed, LaidSong& laid) const {
    const double factor = placed.row->factor * trial.scale;
    const double head = placed.page == 0 ? head_.firstHeight() : head_.height();
    const double left = setup_.margin + placed.column * (columnWidth(trial.columns) + setup_.gap);
    const double top = setup_.margin + head + placed.y * trial.scale;
    for (const RowLine& line : placed.row->lines) {
        const bool isChord = song_.lines[line.line].kind == PaperLineKind::Chords;
        for (const PaperWord& word : line.words) {
            const PaperLook& look = song_.looks[word.look];
            laid.pages[placed.page].runs.push_back(
                {left + (word.x + line.shift) * factor, top + line.baseLine * factor,
                 word.width * factor, word.size * factor, word.font, colourOf(look, isChord),
                 word.text, look.underline, word.isDiagram, line.line, word.index});
        }
    }
    if (placed.isLabel)
        laid.marks.push_back({song_.lines[placed.row->lines[0].line].text, placed.page, top});
}

LaidSong SongLayout::run() {
    const Trial trial = setup_.fit ? fitted() : attempt(1, std::clamp(setup_.columns, 1U, 4U));
    LaidSong laid;
    laid.pages.resize(trial.pages());
    laid.points = measured_.points * trial.scale;
    laid.columns = trial.columns;
    laid.isWrapped = trial.set.wrapped > 0;
    laid.unwritable = measured_.unwritable;
    for (std::size_t i = 0; i < laid.pages.size(); ++i)
        laid.pages[i].runs = head_.runs(i, laid.pages.size());
    for (const PlacedRow& placed : trial.rows)
        paint(trial, placed, laid);
    return laid;
}

}  // namespace

LaidSong layOutSong(const PaperSong& song, const PageSetup& setup, PaperFonts& fonts,
                    const FindDiagram& findDiagram) {
    return SongLayout(song, setup, fonts, findDiagram).run();
}

}  // namespace melvorin
