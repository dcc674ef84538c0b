// The question in which code page a text file is: a list of those that can read it and, beside it,
// its first lines as the chosen one reads them.
#pragma once

#include <optional>
#include <vector>

#include "base/Services.h"
#include "base/TextGuess.h"
#include "platform/Handles.h"
#include "platform/Window.h"
#include "widgets/TarnelButton.h"

namespace melvorin {

class frmCodePage : public Dialog {
  public:
    enum ControlId {
        kOpen = IDOK,
        kCancel = IDCANCEL,
        kList = 101,
        kPreview,  // read-only
    };

    // `services` outlive the window.
    explicit frmCodePage(const Services& services)
        : services_(services), sounds_(services), open_(sounds_), cancel_(sounds_) {}

    // Asks over `owner`. The index of the reading that the user takes, the first being marked when
    // the window comes; nothing where they cancel, or where Windows refuses the window.
    std::optional<std::size_t> ask(HWND owner, TextView fileName,
                                   const std::vector<CodePageReading>& readings);

  private:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void onException(const std::exception& error) override;
    bool createWindow(HWND owner, TextView fileName);
    void onCommand(int id, int event);
    void showPreview();
    void take();

    const Services services_;
    ButtonSounds sounds_;
    TarnelButton open_;
    TarnelButton cancel_;
    UniqueFont previewFont_;
    std::vector<CodePageReading> readings_;
    std::optional<std::size_t> taken_;
};

}  // namespace melvorin
