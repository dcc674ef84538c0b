#include "platform/Layout.h"

#include <algorithm>
#include <numeric>

namespace melvorin {
namespace {

int sum(const std::vector<int>& numbers) {
    return std::accumulate(numbers.begin(), numbers.end(), 0);
}

int gapsBetween(const std::vector<int>& lines, int gap) {
    return lines.empty() ? 0 : gap * (static_cast<int>(lines.size()) - 1);
}

// The lines of a grid, with what there is to spare: to the last pixel, where anything grows.
std::vector<int> withSpare(const std::vector<int>& lines, const std::vector<int>& shares,
                           int spare) {
    std::vector<int> extents = lines;
    int left = sum(shares);
    for (std::size_t i = 0; i < lines.size() && left > 0; ++i) {
        const int more = std::max(spare, 0) * shares[i] / left;
        extents[i] += more;
        spare -= more;
        left -= shares[i];
    }
    return extents;
}

}  // namespace

Cell Cell::least(int width, int height) const {
    Cell cell = *this;
    cell.atLeast = {width, height};
    return cell;
}

Cell Cell::grows(int sharesAcross, int sharesDown) const {
    Cell cell = *this;
    cell.across = sharesAcross;
    cell.down = sharesDown;
    return cell;
}

Cell Cell::centred() const {
    Cell cell = *this;
    cell.isCentred = true;
    cell.down = 0;
    return cell;
}

Cell Cell::close() const {
    Cell cell = *this;
    cell.gap = Spacing::kCloseGap;
    return cell;
}

Cell Cell::apart() const {
    Cell cell = *this;
    cell.gap = Spacing::kMargin;
    return cell;
}

Cell gridOf(int columns, std::initializer_list<Cell> cells) {
    Cell cell;
    cell.kind = Cell::Kind::Grid;
    cell.columns = std::max(columns, 1);
    cell.cells = cells;
    return cell;
}

Cell rowOf(std::initializer_list<Cell> cells) {
    return gridOf(static_cast<int>(cells.size()), cells);
}

Cell columnOf(std::initializer_list<Cell> cells) {
    return gridOf(1, cells);
}

Cell groupOf(int frame, const Cell& content) {
    Cell cell = partOf(frame);
    cell.kind = Cell::Kind::Group;
    cell.cells = {content};
    return cell;
}

Cell partOf(int part) {
    Cell cell;
    cell.kind = Cell::Kind::Part;
    cell.part = part;
    return cell;
}

Cell blank() {
    return {};
}

Cell atRight(std::initializer_list<Cell> cells) {
    return rowOf({blank().grows(1, 0), rowOf(cells)}).grows(0, 0);
}

// ---- Measuring --------------------------------------------------------------------------------

Layout::Layout(const Cell& root, int dpi, const Measure& measure) : dpi_(dpi) {
    root_ = measured(root, measure);
}

int Layout::pixels(int at96) const {
    return (at96 * dpi_ + 48) / 96;
}

Size Layout::least() const {
    const int margins = 2 * pixels(Spacing::kMargin);
    return {root_.least.width + margins, root_.least.height + margins};
}

Layout::Node Layout::measured(const Cell& cell, const Measure& measure) const {
    Node node;
    node.kind = cell.kind;
    node.part = cell.part;
    node.isCentred = cell.isCentred;
    node.gap = pixels(cell.gap);
    for (const Cell& inner : cell.cells)
        node.cells.push_back(measured(inner, measure));
    if (cell.kind == Cell::Kind::Grid) {
        measureGrid(node, cell);
    } else if (cell.kind == Cell::Kind::Part) {
        node.least = measure(cell.part, pixels(cell.atLeast.width));
    } else if (cell.kind == Cell::Kind::Group) {
        const Size caption = measure(cell.part, 0);
        const Node& content = node.cells.front();
        const int side = pixels(Spacing::kGroupInset);
        node.inset = {side, caption.height + pixels(Spacing::kCloseGap)};
        node.least = {std::max(caption.width, content.least.width + 2 * side),
                      node.inset.height + content.least.height + side};
        node.across = content.across;
        node.down = content.down;
    }
    if (cell.across >= 0)
        node.across = cell.across;
    if (cell.down >= 0)
        node.down = cell.down;
    node.least = {std::max(node.least.width, pixels(cell.atLeast.width)),
                  std::max(node.least.height, pixels(cell.atLeast.height))};
    return node;
}

void Layout::measureGrid(Node& node, const Cell& cell) const {
    const auto columns = static_cast<std::size_t>(cell.columns);
    const std::size_t rows = (node.cells.size() + columns - 1) / columns;
    node.widths.resize(columns);
    node.acrossShares.resize(columns);
    node.heights.resize(rows);
    node.downShares.resize(rows);
    const auto raise = [](int& value, int to) { value = std::max(value, to); };
    for (std::size_t i = 0; i < node.cells.size(); ++i) {
        const Node& inner = node.cells[i];
        raise(node.widths[i % columns], inner.least.width);
        raise(node.acrossShares[i % columns], inner.across);
        raise(node.heights[i / columns], inner.least.height);
        raise(node.downShares[i / columns], inner.down);
    }
    node.least = {sum(node.widths) + gapsBetween(node.widths, node.gap),
                  sum(node.heights) + gapsBetween(node.heights, node.gap)};
    node.across = std::min(sum(node.acrossShares), 1);
    node.down = std::min(sum(node.downShares), 1);
}

// ---- Placing ----------------------------------------------------------------------------------

std::vector<Placed> Layout::place(Size client) const {
    const int margin = pixels(Spacing::kMargin);
    const Size room{client.width - 2 * margin, client.height - 2 * margin};
    std::vector<Placed> placed;
    // What does not grow keeps its size in a window that is larger.
    put(root_,
        {margin, margin, growsAcross() ? room.width : root_.least.width,
         growsDown() ? room.height : root_.least.height},
        placed);
    return placed;
}

void Layout::put(const Node& node, Area area, std::vector<Placed>& placed) {
    const bool isLow = node.isCentred || (node.kind == Cell::Kind::Part && node.down == 0);
    if (isLow && area.height > node.least.height) {
        area.top += (area.height - node.least.height) / 2;
        area.height = node.least.height;
    }
    if (node.part >= 0)
        placed.push_back({node.part, area});
    if (node.kind == Cell::Kind::Grid) {
        putGrid(node, area, placed);
    } else if (node.kind == Cell::Kind::Group) {
        const int below = node.inset.width;
        put(node.cells.front(),
            {area.left + node.inset.width, area.top + node.inset.height,
             area.width - 2 * node.inset.width, area.height - node.inset.height - below},
            placed);
    }
}

void Layout::putGrid(const Node& node, const Area& area, std::vector<Placed>& placed) {
    const auto spare = [&](int extent, const std::vector<int>& lines) {
        return extent - sum(lines) - gapsBetween(lines, node.gap);
    };
    const std::vector<int> widths =
        withSpare(node.widths, node.acrossShares, spare(area.width, node.widths));
    const std::vector<int> heights =
        withSpare(node.heights, node.downShares, spare(area.height, node.heights));
    int left = area.left;
    int top = area.top;
    for (std::size_t i = 0; i < node.cells.size(); ++i) {
        const std::size_t column = i % widths.size();
        const std::size_t row = i / widths.size();
        put(node.cells[i], {left, top, widths[column], heights[row]}, placed);
        left += widths[column] + node.gap;
        if (column + 1 == widths.size()) {
            left = area.left;
            top += heights[row] + node.gap;
        }
    }
}

}  // namespace melvorin
