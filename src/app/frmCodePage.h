// The question in which code page a text file is: a list of those that can read it and, beside it,
// its first lines as the chosen one reads them.
#pragma once

#include <optional>
#include <vector>

#include "base/Services.h"
#include "base/TextGuess.h"
#include "platform/Form.h"
#include "platform/Handles.h"
#include "widgets/TarnelButton.h"

namespace melvorin {

class frmCodePage : public Form {
  public:
    enum ControlId {
        kOpen = IDOK,
        kCancel = IDCANCEL,
        kList = 101,
        kPreview,  // read-only
    };

    // `services` outlive the window.
    explicit frmCodePage(const Services& services)
        : Form(services), sounds_(services), open_(sounds_), cancel_(sounds_) {}

    // Asks over `owner`. The index of the reading that the user takes, the first being marked when
    // the window comes; nothing where they cancel, or where Windows refuses the window.
    std::optional<std::size_t> ask(HWND owner, TextView fileName,
                                   const std::vector<CodePageReading>& readings);

  private:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    bool createWindow(HWND owner, TextView fileName);
    Cell createList();
    Cell createPreview();
    void onCommand(int id, int event) override;
    void showPreview();
    void take();

    ButtonSounds sounds_;
    TarnelButton open_;
    TarnelButton cancel_;
    UniqueFont previewFont_;
    std::vector<CodePageReading> readings_;
    std::optional<std::size_t> taken_;
};

}  // namespace melvorin
