// The rows of a song in columns and on pages.
#pragma once

#include <vector>

#include "paper/PaperRows.h"

namespace melvorin {

struct PlacedRow {
    std::size_t page = 0;
    unsigned column = 0;
    double y = 0;  // of the row's top, below the top of the page's columns
    const PaperRow* row = nullptr;
    bool isLabel = false;
};

// The columns of a page are `firstHeight` high on the first page and `height` on others.
struct ColumnHeights {
    unsigned columns = 1;
    double firstHeight = 0;
    double height = 0;
};

// Sections are together where some column has room for them. Where one must be split, no unit is
// where a column has room for it, a label stays with what follows, and no line is alone at the foot
// or the head of a column. The rows belong to `song`.
std::vector<PlacedRow> flowRows(const SetSong& song, const ColumnHeights& heights);

}  // namespace melvorin
