// Where the main window's parts go, and which screens the program refuses. All in device pixels;
// twips are 1/1440 inch.
#pragma once

#include "base/Services.h"
#include "dictionary/PanelLayout.h"

namespace melvorin {

struct MainLayout {
    Area editor;
    Area status;  // at the foot; height 0 without one
    Area panel;   // width 0 while the side panel is closed
};

// What the resize handler does on a given screen.
enum class ScreenSupport {
    Narrow,       // exactly 800 pixels wide
    Wide,         // wider than that
    Tolerated,    // 640 wide: no message, laid out as Narrow
    Unsupported,  // the program says so and ends
};

// `workArea` is the part of the screen that task bars leave free.
ScreenSupport screenSupport(ScreenSize screen, ScreenSize workArea);

// Places the parts inside a client area of the given size below a toolbar of `toolbarHeight`.
// `dpi` is the system's pixels per inch, `statusHeight` what the line at the foot needs.
MainLayout layoutMainWindow(int clientWidth, int clientHeight, int toolbarHeight, int statusHeight,
                            int dpi, ScreenSupport screen, PanelWidth panelWidth);

}  // namespace melvorin
