// The splash window, shown for the moment between the load of the main window and its first sight.
#pragma once

#include <functional>

#include "base/Services.h"
#include "platform/Handles.h"
#include "platform/Window.h"

namespace melvorin {

class frmSplash : public Window {
  public:
    // `whenDone` runs once, when the splash's time is over, just before the window goes.
    frmSplash(const Services& services, std::function<void()> whenDone);

    // Writes the theme manifest if none is there, shows the picture in the middle of the screen
    // and starts the clock.
    bool show();

  private:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void onPaint();
    void onTimer1();

    const Services services_;
    std::function<void()> whenDone_;
    UniqueBitmap picture_;
};

}  // namespace melvorin
