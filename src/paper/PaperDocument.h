// Pages with what leads through them: bookmarks, links, title and author.
#pragma once

#include <cstddef>
#include <deque>
#include <vector>

#include "paper/PageMaker.h"

namespace melvorin {

struct PaperBookmark {
    Text name;
    unsigned level = 0;  // at most one more than that of the one before it
    std::size_t page = 0;
    double y = 0;  // of what it names, from the top
};

// An area of a page that leads to a page, or to an address.
struct PaperLink {
    std::size_t page = 0;
    double x = 0;
    double y = 0;  // of its top
    double width = 0;
    double height = 0;
    std::size_t target = 0;
    Text address = {};  // where it is not empty it counts instead of `target`
};

struct PaperDocument {
    PaperSize paper = kA4;
    std::vector<PaperPage> pages = {};
    std::deque<PaperBookmark> bookmarks = {};
    std::vector<PaperLink> links = {};
    Text title = {};
    Text author = {};
};

// One song as a document. Addresses in it are links.
PaperDocument songDocument(LaidSong laid, const PaperSong& song, const PageSetup& setup);

// A book: a table of contents, then the songs, each from a new page, with page numbers at the foot.
class PaperBook {
  public:
    PaperBook(const PageSetup& setup, PaperFonts& fonts) : setup_(setup), fonts_(fonts) {}

    // The order of the calls is that of the book. `face` is that of the numbers and of the table.
    void add(LaidSong laid, const PaperSong& song);
    PaperDocument finish(const Text& face);

  private:
    struct Entry {
        Text title;
        std::size_t page = 0;  // from the first song's on
    };
    std::vector<PaperPage> contents(const Text& face, std::size_t pages,
                                    std::vector<PaperLink>& links);
    double lineHeight(const Text& face);
    std::size_t linesOfPage(const Text& face);

    PageSetup setup_;
    PaperFonts& fonts_;
    PaperDocument document_;
    std::vector<Entry> entries_;
};

}  // namespace melvorin
