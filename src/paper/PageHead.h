// What stands above the song on its pages: title, key, capo, page of pages, and its diagrams.
#pragma once

#include <vector>

#include "paper/PageMaker.h"
#include "paper/PaperMeasure.h"

namespace melvorin {

class PageHead {
  public:
    // The text's face is that of the heads.
    PageHead(const PaperSong& song, const PageSetup& setup, const Text& face, PaperFonts& fonts);

    // Below the upper margin, with the space below the head; 0 without one.
    double firstHeight() const { return firstHeight_; }
    double height() const { return height_; }
    void addDiagrams(const std::vector<Text>& chords, const FindDiagram& find);

    // The head of page `number` of `count`, from 0.
    std::vector<PlacedRun> runs(std::size_t number, std::size_t count);

  private:
    void layOutTitle();
    double diagramRows(const std::vector<Text>& chords, const FindDiagram& find, double scale,
                       std::vector<PlacedRun>& runs);
    void place(std::vector<PlacedRun>& runs, const std::vector<PaperWord>& words, double x,
               double baseLine) const;
    void placeRight(std::vector<PlacedRun>& runs, TextView text, double baseLine);
    Text facts(std::size_t number, std::size_t count) const;
    double width() const { return setup_.paper.width - 2 * setup_.margin; }

    const PaperSong& song_;
    const PageSetup& setup_;
    Text face_;
    PaperFonts& fonts_;
    std::vector<PlacedRun> first_;  // all of the first page's but its facts
    double factsBase_ = 0;
    double firstHeight_ = 0;
    double height_ = 0;
};

}  // namespace melvorin
