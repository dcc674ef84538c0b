#include "dictionary/PanelLayout.h"

#include <algorithm>
#include <vector>

namespace melvorin {
namespace {

using enum PanelPart;

// Pixels at 96 dpi.
constexpr int kMargin = 8;
constexpr int kGap = 6;
constexpr int kLine = 15;  // of the usual font; what is more the rows are higher
constexpr int kLabel = 18;
constexpr int kBox = 23;
constexpr int kButton = 26;
constexpr int kName = 22;
constexpr int kNotice = 64;
constexpr int kNeckCaption = 18;
constexpr int kArrow = 28;
constexpr int kFindButton = 120;
constexpr int kStripHeight = 92;
constexpr int kLargestDiagram = 190;
constexpr int kLargestExpanded = 290;

constexpr PanelPart kDiagrams[] = {GB1, GB2, GB3, GB4, GB5, GB6};

// The room that is left, cut off row by row.
class Room {
  public:
    Room(int width, int height, int dpi, const PanelTexts& texts)
        : dpi_(dpi),
          more_(std::max(0, texts.line - scale(kLine))),
          texts_(texts),
          rest_{scale(kMargin), scale(kMargin), std::max(0, width - 2 * scale(kMargin)),
                std::max(0, height - 2 * scale(kMargin))} {}

    int scale(int pixels) const { return (pixels * dpi_ + 48) / 96; }
    // Of a row with a text.
    int heightOf(int pixels) const { return scale(pixels) + more_; }
    Area top(int pixels) {
        const int taken = take(pixels);
        const Area row{rest_.left, rest_.top, rest_.width, taken};
        rest_.top += std::min(taken + scale(kGap), taken + rest_.height);
        rest_.height = std::max(0, rest_.height - scale(kGap));
        return row;
    }
    Area bottom(int pixels) {
        const int taken = take(pixels);
        const Area row{rest_.left, rest_.top + rest_.height, rest_.width, taken};
        rest_.height = std::max(0, rest_.height - scale(kGap));
        return row;
    }
    const Area& rest() const { return rest_; }
    int needOf(PanelPart part) const { return texts_.width(part); }

  private:
    int take(int pixels) {
        const int taken = std::min(heightOf(pixels), rest_.height);
        rest_.height -= taken;
        return taken;
    }

    int dpi_;
    int more_;
    const PanelTexts& texts_;
    Area rest_;
};

// Equal cells of an area, row by row.
std::vector<Area> cellsOf(const Area& area, int columns, int rows, int gap) {
    std::vector<Area> cells;
    const int width = std::max(0, (area.width - (columns - 1) * gap) / columns);
    const int height = std::max(0, (area.height - (rows - 1) * gap) / rows);
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column)
            cells.push_back({area.left + column * (width + gap), area.top + row * (height + gap),
                             width, height});
    }
    return cells;
}

void placePair(PanelLayout& layout, const Room& room, const Area& row, PanelPart left,
               PanelPart right) {
    const int gap = room.scale(kGap);
    const int half = std::max(0, (row.width - gap) / 2);
    const int needed[] = {room.needOf(left), room.needOf(right)};
    int first = half;
    // Halves, unless one needs more and the other less.
    if (needed[0] > half && needed[1] < half)
        first = std::min(needed[0], 2 * half - needed[1]);
    else if (needed[1] > half && needed[0] < half)
        first = std::max(needed[0], 2 * half - needed[1]);
    layout[left] = {row.left, row.top, first, row.height};
    layout[right] = {row.left + first + gap, row.top, 2 * half - first, row.height};
}

void placeSearch(PanelLayout& layout, Room& room) {
    layout[Label1] = room.top(kLabel);
    Area box = room.top(kBox);
    const int button =
        std::min(std::max(room.scale(kFindButton), room.needOf(Command1)), box.width / 2);
    layout[Command1] = {box.left + box.width - button, box.top, button, box.height};
    box.width -= button + room.scale(kGap);
    layout[TS1] = box;
    placePair(layout, room, room.top(kLabel), Option1, Option2);
}

void placeRecord(PanelLayout& layout, Room& room) {
    const Area row = room.bottom(kButton);
    const int arrow = std::min(room.scale(kArrow), row.width / 6);
    const auto at = [&](int left) { return Area{row.left + left, row.top, arrow, row.height}; };
    layout[First] = at(0);
    layout[Previous] = at(arrow);
    layout[Record] = {row.left + 2 * arrow, row.top, row.width - 4 * arrow, row.height};
    layout[Next] = at(row.width - 2 * arrow);
    layout[Last] = at(row.width - arrow);
}

// In the middle of what is left, no larger than a diagram looks good; two beside each other or
// three, whichever gives the larger ones.
void placeDiagrams(PanelLayout& layout, const Room& room, int most) {
    const int gap = room.scale(kGap);
    const int caption = room.heightOf(kNeckCaption);
    const int largest = room.scale(most);
    Area area = room.rest();
    area.height = std::max(0, area.height - caption);
    const int three = std::min(area.width / 3, area.height / 2);
    const int two = std::min(area.width / 2, area.height / 3);
    const int columns = three > two ? 3 : 2;
    const int rows = 6 / columns;
    const int width = std::min(area.width, columns * largest + (columns - 1) * gap);
    area.left += (area.width - width) / 2;
    area.width = width;
    area.height = std::min(area.height, rows * largest + (rows - 1) * gap);
    const std::vector<Area> cells = cellsOf(area, columns, rows, gap);
    for (std::size_t i = 0; i < std::size(kDiagrams); ++i)
        layout[kDiagrams[i]] = cells[i];
    const Area& last = layout[GB6];
    layout[Neck] = {last.left, last.top + last.height, last.width, caption};
}

void placeEntry(PanelLayout& layout, Room& room, PanelNotice notice, bool other, PanelView view) {
    if (notice == PanelNotice::Page) {
        layout[Notice] = room.rest();
        return;
    }
    placeRecord(layout, room);
    if (notice == PanelNotice::Strip)
        layout[Notice] = room.top(kNotice);
    layout[LB] = room.top(kName);
    if (other && view != PanelView::Grid)
        layout[Other] = room.top(kBox);
    if (view == PanelView::Search)
        return placeDiagrams(layout, room, kLargestDiagram);
    if (view == PanelView::Diagrams)
        return placeDiagrams(layout, room, kLargestExpanded);
    const std::vector<Area> cells = cellsOf(room.top(kStripHeight), 6, 1, room.scale(kGap));
    for (std::size_t i = 0; i < std::size(kDiagrams); ++i)
        layout[kDiagrams[i]] = cells[i];
    layout[dtaDel] = room.rest();
}

}  // namespace

PanelLayout layoutPanel(PanelView view, PanelNotice notice, bool other, int width, int height,
                        int dpi, const PanelTexts& texts) {
    PanelLayout layout{};
    Room room(width, height, dpi, texts);
    switch (view) {
        case PanelView::Search:
            layout[GB14] = room.bottom(kButton);
            placePair(layout, room, room.bottom(kButton), Gb9, GB10);
            break;
        case PanelView::Diagrams:
            layout[GB13] = room.bottom(kButton);
            placePair(layout, room, room.bottom(kButton), GB7, GB15);
            break;
        case PanelView::Grid:
            placePair(layout, room, room.bottom(kButton), GB7, GB8);
            break;
    }
    if (view != PanelView::Grid)
        placeSearch(layout, room);
    placeEntry(layout, room, notice, other, view);
    return layout;
}

}  // namespace melvorin
