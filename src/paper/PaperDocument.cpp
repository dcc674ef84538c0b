#include "paper/PaperDocument.h"

#include <algorithm>
#include <iterator>

#include "paper/PaperMeasure.h"

namespace melvorin {
namespace {

constexpr double kEntryPoints = 10.5;
constexpr double kHeadingPoints = 16;
constexpr double kNumberPoints = 9;
constexpr double kLeading = 1.25;  // of the table's lines
constexpr double kGap = 12;        // between an entry and its number
constexpr TextView kHeading = u"Contents";

Text written(std::size_t number) {
    return decimal(static_cast<std::int64_t>(number));
}

// Adds the pages of a song to a document, with its bookmarks from `level` on and its links.
void append(PaperDocument& document, LaidSong&& laid, const PaperSong& song, double top) {
    const std::size_t start = document.pages.size();
    document.bookmarks.push_back({song.title, 0, start, top});
    for (LaidSong::Mark& mark : laid.marks)
        document.bookmarks.push_back({std::move(mark.name), 1, start + mark.page, mark.y});
    for (std::size_t i = 0; i < laid.pages.size(); ++i) {
        for (const PlacedRun& run : laid.pages[i].runs) {
            if (run.text.starts_with(u"http://") || run.text.starts_with(u"https://")) {
                document.links.push_back(
                    {start + i, run.x, run.y - run.size, run.width, 1.25 * run.size, 0, run.text});
            }
        }
    }
    std::move(laid.pages.begin(), laid.pages.end(), std::back_inserter(document.pages));
}

void place(PaperPage& page, const std::vector<PaperWord>& words, double x, double y,
           double factor = 1) {
    for (const PaperWord& word : words) {
        page.runs.push_back({.x = x + word.x * factor,
                             .y = y,
                             .width = word.width * factor,
                             .size = word.size * factor,
                             .font = word.font,
                             .text = word.text});
    }
}

double endOf(const std::vector<PaperWord>& words) {
    return words.empty() ? 0 : words.back().end();
}

}  // namespace

PaperDocument songDocument(LaidSong laid, const PaperSong& song, const PageSetup& setup) {
    PaperDocument document{.paper = setup.paper, .title = song.title};
    append(document, std::move(laid), song, setup.margin);
    return document;
}

void PaperBook::add(LaidSong laid, const PaperSong& song) {
    entries_.push_back({song.title, document_.pages.size()});
    append(document_, std::move(laid), song, setup_.margin);
}

double PaperBook::lineHeight(const Text& face) {
    const PaperFont& font = fonts_.font(fonts_.find({face, false, false}));
    return (font.ascent() + font.descent()) * kEntryPoints * kLeading;
}

std::size_t PaperBook::linesOfPage(const Text& face) {
    const double room = setup_.paper.height - 2 * setup_.margin - 2 * kHeadingPoints;
    return std::max<std::size_t>(1, static_cast<std::size_t>(room / lineHeight(face)));
}

std::vector<PaperPage> PaperBook::contents(const Text& face, std::size_t pages,
                                           std::vector<PaperLink>& links) {
    std::vector<PaperPage> result(pages);
    const double left = setup_.margin;
    const double right = setup_.paper.width - setup_.margin;
    const double height = lineHeight(face);
    place(result[0], measureText(kHeading, {face, true, false}, kHeadingPoints, fonts_), left,
          setup_.margin + kHeadingPoints);
    const std::size_t lines = linesOfPage(face);
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        const std::size_t page = i / lines;
        const std::size_t target = entries_[i].page + pages;
        const double top =
            setup_.margin + 2 * kHeadingPoints + static_cast<double>(i % lines) * height;
        const double y = top + height / kLeading;
        const auto number =
            measureText(written(target + 1), {face, false, false}, kEntryPoints, fonts_);
        const auto title =
            measureText(entries_[i].title, {face, false, false}, kEntryPoints, fonts_);
        const double room = right - left - kGap - endOf(number);
        place(result[page], title, left, y, std::min(1.0, room / std::max(1.0, endOf(title))));
        place(result[page], number, right - endOf(number), y);
        links.push_back({page, left, top, right - left, height, target, {}});
    }
    return result;
}

PaperDocument PaperBook::finish(const Text& face) {
    const std::size_t lines = linesOfPage(face);
    const std::size_t count = (entries_.size() + lines - 1) / lines;
    std::vector<PaperLink> links;
    std::vector<PaperPage> pages = contents(face, count, links);
    for (PaperBookmark& bookmark : document_.bookmarks)
        bookmark.page += count;
    document_.bookmarks.push_front({Text(kHeading), 0, 0, setup_.margin});
    for (PaperLink& link : document_.links)
        link.page += count;
    document_.links.insert(document_.links.end(), links.begin(), links.end());
    std::move(document_.pages.begin(), document_.pages.end(), std::back_inserter(pages));
    for (std::size_t i = 0; i < pages.size(); ++i) {
        const auto number =
            measureText(written(i + 1), {face, false, false}, kNumberPoints, fonts_);
        place(pages[i], number, (setup_.paper.width - endOf(number)) / 2,
              setup_.paper.height - setup_.margin / 2);
    }
    document_.pages = std::move(pages);
    document_.paper = setup_.paper;
    return std::move(document_);
}

}  // namespace melvorin
