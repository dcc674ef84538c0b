// The small bar that stays while the panel is reduced and the text has the screen for itself.
#pragma once

#include <functional>

#include "base/Services.h"
#include "platform/Form.h"
#include "widgets/TarnelButton.h"

namespace melvorin {

class Form3b : public Form {
  public:
    enum ControlId { Cmd3 = IDCANCEL };

    struct Callbacks {
        std::function<void()> enlarged;
        // Any key; true when the view has taken it.
        std::function<bool(WPARAM)> viewKey;
    };

    Form3b(const Services& services, Callbacks callbacks);

    // Shows the bar on a screen. False when Windows refuses.
    bool open(HWND owner, const Area& screen);

  private:
    void onClose() override { callbacks_.enlarged(); }
    bool onKeyDown(WPARAM key) override { return callbacks_.viewKey(key); }
    bool createWindow(HWND owner);

    Callbacks callbacks_;
    ButtonSounds sounds_;
    TarnelButton Cmd3_;
};

}  // namespace melvorin
