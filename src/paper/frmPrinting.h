// Seen while pages go to the printer: how far it is, and a button that calls it off.
#pragma once

#include <exception>
#include <vector>

#include "paper/PrintJob.h"
#include "platform/Form.h"
#include "widgets/TarnelButton.h"

namespace melvorin {

class frmPrinting : public Form {
  public:
    enum class End { Done, Cancelled, Failed };

    explicit frmPrinting(const Services& services)
        : Form(services), sounds_(services), cancel_(sounds_) {}

    // Prints the pages in this order as one job called `name`, over `owner`. What the job refuses
    // is in `cause`, a sentence.
    End run(HWND owner, PrintJob& job, const std::vector<PaperPage>& pages,
            const std::vector<std::size_t>& order, const SystemFonts& fonts, const Text& name);
    const Text& cause() const { return cause_; }

  private:
    enum ControlId { kCancel = IDCANCEL, kSaid = 101, kBar };

    LRESULT onMessage(UINT message, WPARAM wParam, LPARAM lParam) override;
    bool createWindow(HWND owner);
    void printNext();
    void take(const Result<Done>& result);

    ButtonSounds sounds_;
    TarnelButton cancel_;
    // While it runs.
    PrintJob* job_ = nullptr;
    const std::vector<PaperPage>* pages_ = nullptr;
    const std::vector<std::size_t>* order_ = nullptr;
    const SystemFonts* fonts_ = nullptr;
    std::size_t done_ = 0;
    End end_ = End::Cancelled;
    Text cause_;
    std::exception_ptr failure_;
};

}  // namespace melvorin
