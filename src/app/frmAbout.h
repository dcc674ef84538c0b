// The window "About Melvorin": which version this is, what one may do with it, and what is in it.
#pragma once

#include "base/Services.h"
#include "platform/Form.h"
#include "platform/Handles.h"
#include "widgets/TarnelButton.h"

namespace melvorin {

class frmAbout : public Form {
  public:
    enum ControlId {
        kOk = IDOK,
        kLicences = 101,  // opens the folder with the licences
        kText,            // read-only, to be copied into a message to us
    };

    // `services` outlive the window.
    explicit frmAbout(const Services& services)
        : Form(services), sounds_(services), licences_(sounds_), ok_(sounds_) {}

    // Shows the window over `owner` and returns when it is closed. False when Windows refuses.
    bool show(HWND owner);

  private:
    void onCommand(int id, int event) override;
    bool createWindow(HWND owner);
    void openLicences();

    ButtonSounds sounds_;
    TarnelButton licences_;
    TarnelButton ok_;
    UniqueFont titleFont_;
    UniqueIcon icon_;
};

}  // namespace melvorin
