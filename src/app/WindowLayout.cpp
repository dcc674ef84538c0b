#include "app/WindowLayout.h"

#include <algorithm>

namespace melvorin {
namespace {

constexpr int kNarrowScreen = 800;
// kept: screen-640
constexpr int kToleratedScreen = 640;
// Below this height not even the toolbar, the title and some lines of a song fit.
constexpr int kLeastWorkHeight = 400;

// Twips: gaps around the parts, and what is taken off the side panel's share of the window.
constexpr int kGap = 60;
constexpr int kToolbarGap = 30;
constexpr int kFootGap = 50;
constexpr int kPanelGap = 20;
constexpr int kLeastEditor = 500;
constexpr int kNarrowPanelMargin = 200;
constexpr int kWidePanelMargin = 470;

int pixels(int twips, int dpi) {
    return (twips * dpi + 720) / 1440;
}

}  // namespace

ScreenSupport screenSupport(ScreenSize screen, ScreenSize workArea) {
    const bool fits = screen.width >= kNarrowScreen && workArea.height >= kLeastWorkHeight;
    if (fits)
        return screen.width == kNarrowScreen ? ScreenSupport::Narrow : ScreenSupport::Wide;
    return screen.width == kToleratedScreen ? ScreenSupport::Tolerated : ScreenSupport::Unsupported;
}

MainLayout layoutMainWindow(int clientWidth, int clientHeight, int toolbarHeight, int statusHeight,
                            int dpi, ScreenSupport screen, PanelWidth panelWidth) {
    const int gap = pixels(kGap, dpi);
    const int top = toolbarHeight + pixels(kToolbarGap, dpi);
    const int height = std::max(0, clientHeight - top - statusHeight - pixels(kFootGap, dpi));
    const int inner = std::max(0, clientWidth - 2 * gap);
    const int margin = screen == ScreenSupport::Wide ? kWidePanelMargin : kNarrowPanelMargin;
    const int panelGap = pixels(kPanelGap, dpi);
    const int room = std::max(0, inner - panelGap - pixels(kLeastEditor, dpi));
    const int share = panelWidth == PanelWidth::Expanded ? inner / 2 : inner / 3;
    const int panel =
        panelWidth == PanelWidth::Closed ? 0 : std::clamp(share - pixels(margin, dpi), 0, room);
    const int editorWidth = panel > 0 ? inner - panel - panelGap : inner;
    return {{gap, top, editorWidth, height},
            {gap, std::max(0, clientHeight - statusHeight), inner, statusHeight},
            {gap + editorWidth + panelGap, top, panel, height}};
}

}  // namespace melvorin
