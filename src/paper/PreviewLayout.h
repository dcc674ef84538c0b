// Where the pages stand in the preview: arithmetic only.
#pragma once

#include <cstddef>
#include <vector>

#include "base/Services.h"
#include "paper/PageMaker.h"

namespace melvorin {

// How many of the pages are to be seen at once, or in what size.
struct PreviewView {
    enum class Kind { OnePage, TwoPages, AllPages, PageWidth, Percent };

    Kind kind = Kind::OnePage;
    int percent = 100;  // of the paper's size; with Kind::Percent

    friend bool operator==(const PreviewView&, const PreviewView&) = default;
};

struct PreviewLayout {
    double scale = 1;  // pixels per point
    int width = 0;     // of all of it, pixels; at least the window's
    int height = 0;
    std::vector<Area> pages;  // in reading order
};

// `window` is the room in pixels, of which `gap` stays free around each page; `dpi` is that of 100
// per cent.
PreviewLayout layOutPreview(PaperSize paper, std::size_t pages, PreviewView view, ScreenSize window,
                            int gap, int dpi);

// The next size up or down from `scale`, for keys and the wheel.
PreviewView nextSize(double scale, bool larger, int dpi);

// The page that a window at `top` of the whole shows first: the first of which half, or as much as
// the window has room for, lies below. `height` is the window's.
std::size_t pageAt(const PreviewLayout& layout, int top, int height);

}  // namespace melvorin
