// The question how songs are to stand on paper.
#pragma once

#include <optional>

#include "paper/PageForm.h"
#include "widgets/TarnelButton.h"

namespace melvorin {

class frmPageSetup : public PageForm {
  public:
    enum ControlId { kOk = IDOK, kCancel = IDCANCEL };

    explicit frmPageSetup(const Services& services)
        : PageForm(services), sounds_(services), ok_(sounds_), cancel_(sounds_) {}

    // Asks over `owner`. Nothing where the user cancels, or where Windows refuses the window.
    std::optional<PageChoices> ask(HWND owner, const PageChoices& now);

  private:
    void onCommand(int id, int event) override;

    ButtonSounds sounds_;
    TarnelButton ok_;
    TarnelButton cancel_;
    std::optional<PageChoices> taken_;
};

}  // namespace melvorin
