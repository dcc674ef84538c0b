// Where the parts of a window stand: a tree of rows, columns and groups that knows what its texts
// need, and so cuts none off in any font. Only arithmetic; `Form` makes the controls.
//
//     columnOf({columnOf({label(L"&Files:"), list(kFiles).least(190, 230).grows(1, 1)}).close(),
//               atRight({button(ok_, IDOK, u"OK")})}).apart()
//
// A cell is as wide as the place that its row or column has for it, and stands in the middle of its
// height unless it grows downwards. What a window has beyond its least size goes to the cells that
// grow; a row or column that holds one grows with it.
#pragma once

#include <functional>
#include <initializer_list>
#include <vector>

#include "base/Services.h"

namespace melvorin {

struct Size {
    int width = 0;
    int height = 0;

    friend bool operator==(const Size&, const Size&) = default;
};

// The one rhythm of all windows, in pixels at 96 dpi.
struct Spacing {
    static constexpr int kMargin = 12;       // around everything
    static constexpr int kGap = 8;           // between two parts
    static constexpr int kCloseGap = 4;      // between a label and what it names, or options
    static constexpr int kGroupInset = 10;   // from a group's frame to what stands in it
    static constexpr int kButtonWidth = 88;  // of a push button, unless its caption needs more
    static constexpr int kButtonHeight = 26;
};

struct Cell {
    enum class Kind { Part, Blank, Grid, Group };

    Kind kind = Kind::Blank;
    int part = -1;            // what it places; of a group, its frame
    int columns = 1;          // of a grid
    std::vector<Cell> cells;  // a grid's, row by row; the one of a group
    int gap = Spacing::kGap;  // of a grid, at 96 dpi
    Size atLeast;             // at 96 dpi
    int across = -1;  // how much of the spare room it takes, beside others; -1: as its cells
    int down = -1;
    bool isCentred = false;

    // No smaller than this, in pixels at 96 dpi. A text that wraps does so at that width.
    Cell least(int width, int height = 0) const;
    // Its shares of the width and the height that are to spare; 0 is none.
    Cell grows(int sharesAcross, int sharesDown) const;
    // In the middle of its height, though what it holds might grow or be longer.
    Cell centred() const;
    // Its cells close together, as a label and what it names, or apart, as a window and its foot.
    Cell close() const;
    Cell apart() const;
};

Cell rowOf(std::initializer_list<Cell> cells);
Cell columnOf(std::initializer_list<Cell> cells);
// Row by row; a column is as wide as its widest cell.
Cell gridOf(int columns, std::initializer_list<Cell> cells);
Cell groupOf(int frame, const Cell& content);
Cell partOf(int part);
// Nothing, as wide and high as its row and column leave it.
Cell blank();
// A row that stands at the right, as the buttons at the foot of a window; it makes none grow.
Cell atRight(std::initializer_list<Cell> cells);

struct Placed {
    int part = 0;
    Area area;  // device pixels of the client area

    friend bool operator==(const Placed&, const Placed&) = default;
};

class Layout {
  public:
    // What a part needs, in device pixels; where its text wraps, when it is `width` wide (0: it has
    // no width of its own). Of a group's frame: its caption.
    using Measure = std::function<Size(int part, int width)>;

    Layout() = default;
    // Measures everything once. `dpi` is that of the window.
    Layout(const Cell& root, int dpi, const Measure& measure);

    // The least client area that holds everything, margins included, in device pixels.
    Size least() const;
    bool isEmpty() const { return root_.part < 0 && root_.cells.empty(); }
    bool growsAcross() const { return root_.across > 0; }
    bool growsDown() const { return root_.down > 0; }
    // Where all stands in a client area of that size, in the order of the tree. A smaller one than
    // the least is not for this.
    std::vector<Placed> place(Size client) const;

  private:
    struct Node {
        Cell::Kind kind = Cell::Kind::Blank;
        int part = -1;
        Size least;
        int across = 0;
        int down = 0;
        bool isCentred = false;
        int gap = 0;
        Size inset;  // of a group: from its corner to its content
        std::vector<Node> cells;
        // Of a grid: what its columns and rows need, and their shares.
        std::vector<int> widths, heights, acrossShares, downShares;
    };

    Node measured(const Cell& cell, const Measure& measure) const;
    void measureGrid(Node& node, const Cell& cell) const;
    int pixels(int at96) const;
    static void put(const Node& node, Area area, std::vector<Placed>& placed);
    static void putGrid(const Node& node, const Area& area, std::vector<Placed>& placed);

    Node root_;
    int dpi_ = 96;
};

}  // namespace melvorin
