// What the program does with songs on paper: print, preview, page setup, PDF.
#pragma once

#include <functional>
#include <optional>

#include "base/Services.h"
#include "paper/PageChoices.h"
#include "paper/PageMaker.h"
#include "paper/PaperDocument.h"
#include "paper/SystemFonts.h"

namespace melvorin {

// A song on its way to paper.
struct PaperSource {
    PaperSong song;
    FindDiagram findDiagram;
    Text name;  // of its file, for the printer's list
};

struct LaidPaper {
    LaidSong facts;  // without its pages
    PaperDocument document;
};

class PaperDesk {
  public:
    // What the desk asks of the main window.
    struct Outside {
        // Where a PDF goes; what exists there may be replaced. Nothing when the user cancels.
        std::function<std::optional<Text>()> askTarget;
        // Tells in the status line what was done.
        std::function<void(TextView said)> say;
    };

    // `services` outlive the desk.
    PaperDesk(const Services& services, Outside outside);

    void print(HWND owner, const PaperSource& source);
    void preview(HWND owner, const PaperSource& source);
    void setUp(HWND owner);
    void savePdf(const PaperSource& source);

    // For the preview.
    PageChoices choices() const { return chosen_ ? *chosen_ : pageChoices(services_); }
    void store(const PageChoices& choices);
    LaidPaper layOut(const PaperSource& source, const PageSetup& setup, SystemFonts& fonts) const;
    // Those that are on the screen and on printers; null after it was told that there are none.
    SystemFonts* screenFonts();

  private:
    bool isEmpty(const PaperSource& source, TextView what);

    const Services& services_;
    Outside outside_;
    std::optional<SystemFonts> screen_;
    std::optional<PageChoices> chosen_;  // in this run, whether or not they could be stored
    bool storeFailed_ = false;           // it was told
};

// What is to be known before a song is printed as it is laid out: fonts and characters that are not
// there, each in a sentence; empty where all is well.
Text paperNotes(const LaidPaper& laid, const SystemFonts& fonts);

}  // namespace melvorin
