// The floating bar of a run: its caption is the clock, its buttons pause the run or bring the
// panel back, and its keys move the text by hand.
#pragma once

#include <functional>

#include "base/Services.h"
#include "platform/Form.h"
#include "present/StageRun.h"
#include "widgets/TarnelButton.h"

namespace melvorin {

class Form3 : public Form {
  public:
    enum ControlId { Cmd = 101, Cmd2 = IDCANCEL, kNote = 102 };

    struct Callbacks {
        std::function<void()> pauseOrResume;
        std::function<void()> returned;
        std::function<void(RunKey)> key;
        // Any other key; true when the view has taken it.
        std::function<bool(WPARAM)> viewKey;
        // A system command; true when it is not to be carried out.
        std::function<bool(WPARAM)> refuses;
    };

    Form3(const Services& services, Callbacks callbacks);

    // Shows the bar on a screen, the run going. False when Windows refuses.
    bool open(HWND owner, const Area& screen);
    // A line below the buttons, for what comes next.
    void showNote(TextView note);
    // What `Cmd` offers.
    void showPaused(bool paused);

  private:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    bool onKeyDown(WPARAM key) override;
    void onCommand(int id, int event) override;
    void onClose() override;
    bool createWindow(HWND owner);

    Callbacks callbacks_;
    ButtonSounds sounds_;
    TarnelButton Cmd_;
    TarnelButton Cmd2_;
};

// Moves a bar to its place on a screen. Nothing happens where it is not open.
void moveBar(HWND bar, const Area& screen);

}  // namespace melvorin
