#include "paper/PageHead.h"

#include <algorithm>

#include "paper/PaperRows.h"

namespace melvorin {
namespace {

constexpr double kTitlePoints = 15;
constexpr double kFactPoints = 9;
constexpr double kGap = 18;      // between title and facts
constexpr double kBelow = 8;     // below the head
constexpr double kDiagram = 38;  // size of the diagrams' font, in points
constexpr double kApart = 10;    // between diagrams
// What is smaller than this part of it shows no fingers.
constexpr double kLeastScale = 0.3;

double endOf(const std::vector<PaperWord>& words) {
    return words.empty() ? 0 : words.back().end();
}

}  // namespace

PageHead::PageHead(const PaperSong& song, const PageSetup& setup, const Text& face,
                   PaperFonts& fonts)
    : song_(song), setup_(setup), face_(face), fonts_(fonts) {
    if (!setup.header)
        return;
    layOutTitle();
    const PaperFont& font = fonts.font(fonts.find({face, false, false}));
    height_ = (font.ascent() + font.descent()) * kFactPoints + kBelow;
}

Text PageHead::facts(std::size_t number, std::size_t count) const {
    Text text;
    const auto add = [&text](TextView fact, TextView value) {
        if (!value.empty())
            text.append(text.empty() ? u"" : u"   ").append(fact).append(value);
    };
    if (number == 0) {
        add(u"Key ", song_.key);
        add(u"Capo ", song_.capo);
    }
    if (count > 1) {
        const auto written = [](std::size_t n) { return decimal(static_cast<std::int64_t>(n)); };
        add(u"Page ", written(number + 1) + u" of " + written(count));
    }
    return text;
}

void PageHead::place(std::vector<PlacedRun>& runs, const std::vector<PaperWord>& words, double x,
                     double baseLine) const {
    for (const PaperWord& word : words) {
        runs.push_back({.x = x + word.x,
                        .y = baseLine,
                        .width = word.width,
                        .size = word.size,
                        .font = word.font,
                        .text = word.text,
                        .isDiagram = word.isDiagram});
    }
}

void PageHead::placeRight(std::vector<PlacedRun>& runs, TextView text, double baseLine) {
    const std::vector<PaperWord> words =
        measureText(text, {face_, false, false}, kFactPoints, fonts_);
    place(runs, words, setup_.paper.width - setup_.margin - endOf(words), baseLine);
}

// The title wraps where it must; the facts stand behind its first line, or below.
void PageHead::layOutTitle() {
    PaperSong title;
    title.looks.push_back({.face = face_, .points = kTitlePoints, .bold = true});
    title.lines.push_back(
        {.text = song_.title, .looks = std::vector<std::uint16_t>(song_.title.size())});
    const MeasuredSong measured = measureSong(title, fonts_, false);
    const std::vector<PaperWord> reserved =
        measureText(facts(0, 99), {face_, false, false}, kFactPoints, fonts_);
    const SetSong set = setSong(measured, {width(), setup_.paper.height / 4, 0}, 0, fonts_);
    double y = setup_.margin;
    for (const PaperSection& section : set.sections) {
        for (const PaperRow& row : section.units[0].rows) {
            for (const RowLine& line : row.lines) {
                for (PaperWord word : line.words) {
                    word.x = (word.x + line.shift) * row.factor;
                    word.width *= row.factor;
                    word.size *= row.factor;
                    place(first_, {word}, setup_.margin, y + line.baseLine * row.factor);
                }
            }
            y += row.scaledHeight();
        }
    }
    const PaperFont& font = fonts_.font(fonts_.find({face_, false, false}));
    const bool isBeside =
        measured.lines[0].width + kGap + endOf(reserved) <= width() && !first_.empty();
    factsBase_ = isBeside ? first_.front().y : y + font.ascent() * kFactPoints;
    if (!isBeside)
        y += (font.ascent() + font.descent()) * kFactPoints;
    firstHeight_ = y - setup_.margin + kBelow;
}

// As large as half of the page has room for all of them.
void PageHead::addDiagrams(const std::vector<Text>& chords, const FindDiagram& find) {
    const double most = setup_.paper.height / 2;
    double below = 0;
    std::vector<PlacedRun> runs;
    for (double scale = 1; scale > kLeastScale && (scale == 1 || below > most); scale *= 0.9) {
        runs.clear();
        below = diagramRows(chords, find, scale, runs);
    }
    if (runs.empty())
        return;
    if (below > most) {
        std::erase_if(runs, [most](const PlacedRun& run) { return run.y > most; });
        below = most;
    }
    first_.insert(first_.end(), runs.begin(), runs.end());
    firstHeight_ = below - setup_.margin + kBelow;
}

// Returns where they end.
double PageHead::diagramRows(const std::vector<Text>& chords, const FindDiagram& find, double scale,
                             std::vector<PlacedRun>& runs) {
    const double right = setup_.paper.width - setup_.margin;
    const double nameSize = kFactPoints * scale;
    const double shapeSize = kDiagram * scale;
    double x = setup_.margin;
    double top = setup_.margin + firstHeight_;
    double below = top;
    for (const Text& chord : chords) {
        const std::optional<DiagramOfChord> diagram = find(chord);
        if (!diagram || !fonts_.hasFace(diagram->face))
            continue;
        const std::vector<PaperWord> name =
            measureText(chord, {face_, true, false}, nameSize, fonts_);
        const std::vector<PaperWord> shape =
            measureText(diagram->character, {diagram->face, false, false}, shapeSize, fonts_);
        if (name.empty() || shape.empty())
            continue;
        const double width = std::max(endOf(name), endOf(shape));
        if (x + width > right && x > setup_.margin) {
            x = setup_.margin;
            top = below + kApart * scale / 2;
        }
        const PaperFont& nameFont = fonts_.font(name[0].font);
        const PaperFont& font = fonts_.font(shape[0].font);
        const double nameBase = top + nameFont.ascent() * nameSize;
        const double shapeBase =
            nameBase + nameFont.descent() * nameSize + font.ascent() * shapeSize;
        place(runs, name, x + (width - endOf(name)) / 2, nameBase);
        place(runs, shape, x + (width - endOf(shape)) / 2, shapeBase);
        below = std::max(below, shapeBase + font.descent() * shapeSize);
        x += width + kApart * scale;
    }
    return below;
}

std::vector<PlacedRun> PageHead::runs(std::size_t number, std::size_t count) {
    if (number == 0) {
        std::vector<PlacedRun> runs = first_;
        if (setup_.header)
            placeRight(runs, facts(number, count), factsBase_);
        return runs;
    }
    std::vector<PlacedRun> runs;
    if (!setup_.header)
        return runs;
    const PaperFont& font = fonts_.font(fonts_.find({face_, false, false}));
    const double base = setup_.margin + font.ascent() * kFactPoints;
    placeRight(runs, facts(number, count), base);
    // As many words of the title as there is room for.
    std::vector<PaperWord> words =
        measureText(song_.title, {face_, false, false}, kFactPoints, fonts_);
    const double end = runs.front().x - kGap - setup_.margin;
    words.erase(std::find_if(words.begin(), words.end(),
                             [end](const PaperWord& word) { return word.end() > end; }),
                words.end());
    place(runs, words, setup_.margin, base);
    return runs;
}

}  // namespace melvorin
