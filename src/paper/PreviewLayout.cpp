#include "paper/PreviewLayout.h"

#include <algorithm>
#include <cmath>

namespace melvorin {
namespace {

constexpr int kPercents[] = {25, 33, 50, 67, 75, 100, 125, 150, 200, 300, 400};
constexpr double kPointsPerInch = 72;
constexpr double kLeastScale = 0.05;

// At which so many pages are to be seen, `across` of them beside each other.
double scaleFor(PaperSize paper, int across, int down, ScreenSize window, int gap) {
    const double width = window.width - gap * (across + 1);
    const double height = window.height - gap * (down + 1);
    return std::max(std::min(width / (across * paper.width), height / (down * paper.height)),
                    kLeastScale);
}

// As many beside each other as make all of them largest.
int acrossForAll(PaperSize paper, int pages, ScreenSize window, int gap) {
    int best = 1;
    double largest = 0;
    for (int across = 1; across <= std::min(pages, 20); ++across) {
        const double scale = scaleFor(paper, across, (pages + across - 1) / across, window, gap);
        if (scale > largest)
            best = across;
        largest = std::max(largest, scale);
    }
    return best;
}

}  // namespace

PreviewLayout layOutPreview(PaperSize paper, std::size_t pages, PreviewView view, ScreenSize window,
                            int gap, int dpi) {
    PreviewLayout layout;
    const int count = static_cast<int>(pages);
    int across = 1;
    switch (view.kind) {
        case PreviewView::Kind::OnePage:
            layout.scale = scaleFor(paper, 1, 1, window, gap);
            break;
        case PreviewView::Kind::TwoPages:
            across = 2;
            layout.scale = scaleFor(paper, 2, 1, window, gap);
            break;
        case PreviewView::Kind::AllPages:
            across = acrossForAll(paper, count, window, gap);
            layout.scale = scaleFor(paper, across, (count + across - 1) / across, window, gap);
            break;
        case PreviewView::Kind::PageWidth:
            layout.scale = std::max((window.width - 2 * gap) / paper.width, kLeastScale);
            break;
        case PreviewView::Kind::Percent:
            layout.scale = view.percent / 100.0 * dpi / kPointsPerInch;
            break;
    }
    const int width = static_cast<int>(std::floor(paper.width * layout.scale));
    const int height = static_cast<int>(std::floor(paper.height * layout.scale));
    const int used = std::min(across, std::max(count, 1));
    const int rows = (count + across - 1) / across;
    layout.width = std::max(window.width, used * width + (used + 1) * gap);
    layout.height = std::max(window.height, rows * height + (rows + 1) * gap);
    const int left = (layout.width - used * width - (used - 1) * gap) / 2;
    // What fits stands in the middle.
    const int top = std::max(gap, (layout.height - rows * height - (rows - 1) * gap) / 2);
    layout.pages.reserve(pages);
    for (int i = 0; i < count; ++i) {
        layout.pages.push_back(
            {left + i % across * (width + gap), top + i / across * (height + gap), width, height});
    }
    return layout;
}

PreviewView nextSize(double scale, bool larger, int dpi) {
    const double percent = scale * kPointsPerInch / dpi * 100;
    PreviewView view{PreviewView::Kind::Percent, larger ? *std::rbegin(kPercents) : kPercents[0]};
    // A size that is nearly the present one is none.
    constexpr double step = 1;
    if (larger) {
        const auto found = std::find_if(std::begin(kPercents), std::end(kPercents),
                                        [&](int size) { return size > percent + step; });
        if (found != std::end(kPercents))
            view.percent = *found;
    } else {
        const auto found = std::find_if(std::rbegin(kPercents), std::rend(kPercents),
                                        [&](int size) { return size < percent - step; });
        if (found != std::rend(kPercents))
            view.percent = *found;
    }
    return view;
}

std::size_t pageAt(const PreviewLayout& layout, int top, int height) {
    for (std::size_t i = 0; i < layout.pages.size(); ++i) {
        const Area& page = layout.pages[i];
        const int seen = std::min(page.top + page.height, top + height) - std::max(page.top, top);
        if (2 * seen >= std::min(page.height, height))
            return i;
    }
    return layout.pages.empty() ? 0 : layout.pages.size() - 1;
}

}  // namespace melvorin
