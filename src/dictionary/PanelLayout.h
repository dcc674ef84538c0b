// Where the parts of the dictionary panel go in its three views. All in device pixels, counted
// from the panel's top left corner.
#pragma once

#include <array>
#include <cstddef>
#include <functional>

#include "base/Services.h"

namespace melvorin {

// How much room the panel has beside the song.
enum class PanelWidth { Closed, Normal, Expanded };

enum class PanelPart : std::size_t {
    Label1,    // "Find the Chord:"
    TS1,       // the search text
    Option1,   // by symbol
    Option2,   // by name
    Command1,  // "Find Chord"
    Notice,    // what is wrong with the dictionary
    LB,        // name of the shown chord
    Other,     // another chord that the search text may mean
    GB1,       // the diagrams
    GB2,
    GB3,
    GB4,
    GB5,
    GB6,
    Neck,    // caption of the last diagram
    dtaDel,  // the table
    First,   // the data control
    Previous,
    Record,
    Next,
    Last,
    GB7,   // "Show the Window of Search"
    Gb9,   // "Expand Window"
    GB10,  // "Show DataGrid"
    GB15,
    GB8,  // "Close Dictionary"
    GB13,
    GB14,
    count,
};

enum class PanelView { Search, Diagrams, Grid };

enum class PanelNotice {
    None,
    Strip,  // above the entry
    Page,   // in the place of the entry and the table
};

struct PanelLayout {
    // Width 0 for a part that the view does not have.
    std::array<Area, static_cast<std::size_t>(PanelPart::count)> areas;

    Area& operator[](PanelPart part) { return areas[static_cast<std::size_t>(part)]; }
    const Area& operator[](PanelPart part) const { return areas[static_cast<std::size_t>(part)]; }
};

// How wide the main window makes the panel for a view.
constexpr PanelWidth widthOf(PanelView view) {
    return view == PanelView::Search ? PanelWidth::Normal : PanelWidth::Expanded;
}

// What the captions need in the font of the moment, in device pixels.
struct PanelTexts {
    int line = 0;                         // the height of a line
    std::function<int(PanelPart)> width;  // of a part with its caption
};

// `other` tells that there is another chord to offer; the table does not.
PanelLayout layoutPanel(PanelView view, PanelNotice notice, bool other, int width, int height,
                        int dpi, const PanelTexts& texts);

}  // namespace melvorin
