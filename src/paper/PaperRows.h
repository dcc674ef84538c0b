// A measured song set into a width: rows that are never taken apart, and how they belong together.
#pragma once

#include <deque>
#include <span>
#include <vector>

#include "paper/PaperMeasure.h"

namespace melvorin {

// A line, or the part of it that stands in a row.
struct RowLine {
    std::span<const PaperWord> words;
    double shift = 0;      // added to the words' x, in points of the row
    double baseLine = 0;   // below the row's top
    std::size_t line = 0;  // in PaperSong::lines
};

// Chords with the words below them, or a line by itself. Its size is `factor` times that of its
// lines.
struct PaperRow {
    std::vector<RowLine> lines;
    double height = 0;
    double factor = 1;

    double scaledHeight() const { return height * factor; }
};

// Rows that come from one line and its chords, or from one tablature.
struct PaperUnit {
    std::vector<PaperRow> rows;
    double gap = 0;  // empty lines above it, within its section
    bool isLabel = false;

    double height() const;
};

// From a label, or an empty line, to the next.
struct PaperSection {
    std::vector<PaperUnit> units = {};
    double gap = 0;  // empty lines above it

    double height() const;
};

struct SetSong {
    std::vector<PaperSection> sections;
    // What is not as it was on the screen: how many lines were wrapped, and whether tablature and
    // the like is set smaller than can be read well.
    std::size_t wrapped = 0;
    bool isTiny = false;
    std::deque<std::vector<PaperWord>> cut;  // words that rows show parts of
};

struct ColumnRoom {
    double width = 0;   // at the sizes of the document
    double height = 0;  // of the highest column
    double least = 0;   // points that can still be read, at the sizes of the document
};

// The song outlives the result. Chords and the words below them are wrapped together, at a blank of
// the words where no chord is cut; tablature is set smaller instead, as a block. No row is wider or
// higher than a column. Lines that are before `firstLine` are left out.
SetSong setSong(const MeasuredSong& song, const ColumnRoom& room, std::size_t firstLine,
                const PaperFonts& fonts);

}  // namespace melvorin
