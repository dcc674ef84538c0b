// Pages painted by GDI, on the screen or on a printer.
#pragma once

#include <map>
#include <utility>

#include "base/Services.h"
#include "paper/PageMaker.h"
#include "paper/SystemFonts.h"

namespace melvorin {

// Where a page stands on a device.
struct PaperPlace {
    double scaleX = 1;  // device pixels per point
    double scaleY = 1;
    double left = 0;  // of the paper's corner, in device pixels
    double top = 0;
};

class PagePainter {
  public:
    enum class Quality { Screen, Sharp };

    // `fonts` are those that the pages were laid out with, and outlive the painter. With Sharp no
    // edge is softened, as for a printer and for what is reduced afterwards.
    PagePainter(const SystemFonts& fonts, Quality quality) : fonts_(fonts), quality_(quality) {}

    // Every character stands where it was measured, whatever the device makes of a font's size.
    // With `outlines` diagrams are filled areas and not text: their fonts are the program's own,
    // and a printer that has a job by itself does not know them.
    void paint(HDC dc, const PaperPage& page, const PaperPlace& place, bool outlines);

  private:
    HFONT fontFor(FontNumber number, int height);
    void paintText(HDC dc, const PlacedRun& run, const PaperPlace& place);
    bool paintOutline(HDC dc, const PlacedRun& run, const PaperPlace& place);
    static void underline(HDC dc, const PlacedRun& run, const PaperPlace& place);

    const SystemFonts& fonts_;
    Quality quality_;
    std::map<std::pair<FontNumber, int>, UniqueFont> made_;
};

// A page as a picture of its own, `size` in pixels, white where nothing is. What is smaller than
// the paper at 96 dpi is drawn fourfold and reduced, which keeps small letters apart. Null where
// memory ends.
UniqueBitmap pictureOf(const PaperPage& page, const PaperSize& paper, ScreenSize size,
                       const SystemFonts& fonts);

}  // namespace melvorin
