// The pages of a song as they will be printed, with the choices of the page at their side.
#pragma once

#include "paper/PageCanvas.h"
#include "paper/PageForm.h"
#include "paper/PaperDesk.h"
#include "widgets/TarnelButton.h"

namespace melvorin {

class frmPreview : public PageForm {
  public:
    enum ControlId { kClose = IDCANCEL, kPages = 101, kView, kPrint, kSavePdf, kSaid, kNotes };

    // All outlive the window.
    frmPreview(const Services& services, PaperDesk& desk, const PaperSource& source,
               SystemFonts& fonts)
        : PageForm(services),
          desk_(desk),
          source_(source),
          fonts_(fonts),
          canvas_([this] { tell(); }),
          sounds_(services),
          print_(sounds_),
          savePdf_(sounds_),
          close_(sounds_) {}

    // Shows it over `owner` until it is closed.
    void show(HWND owner);

  private:
    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    void onCommand(int id, int event) override;
    bool onKeyDown(WPARAM key) override;
    void onPlaced() override;
    bool createWindow(HWND owner);
    Cell viewList();
    void take(const PageChoices& choices);
    void showView();
    void tell();

    PaperDesk& desk_;
    const PaperSource& source_;
    SystemFonts& fonts_;
    LaidPaper laid_;
    PageChoices taken_;
    PageCanvas canvas_;
    Cell place_;
    ButtonSounds sounds_;
    TarnelButton print_;
    TarnelButton savePdf_;
    TarnelButton close_;
};

}  // namespace melvorin
