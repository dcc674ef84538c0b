// Where the full-screen view's windows stand, and when its pointer rests. Device pixels.
#pragma once

#include "base/Services.h"

namespace melvorin {

// The control panel: in the lower right corner of what task bars leave free, where it hides least
// of the text. Larger than that, its upper left corner stays in sight.
Area placePanel(const Area& work, int width, int height);

// A floating bar: at the right side, a quarter of its width from the edge, and near the lower one,
// because the line that is played is the uppermost.
Area placeBar(const Area& screen, int width, int height);

// The view's text leaves 100 twips free above itself.
Area placeText(int clientWidth, int clientHeight, int dpi);

// The view's size in percent, one step larger or smaller, within sensible limits.
int zoomed(int percent, bool larger);

// The pointer goes out of sight when it has not moved for two seconds of a run.
class PointerRest {
  public:
    // Called again and again; true when the pointer is to be hidden now.
    bool isHidden(std::int64_t nowMs, int x, int y, bool isRunning);

  private:
    std::int64_t since_ = 0;
    int x_ = 0;
    int y_ = 0;
    bool wasRunning_ = false;
};

}  // namespace melvorin
