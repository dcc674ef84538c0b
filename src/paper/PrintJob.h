// Pages on their way to a printer.
#pragma once

#include <memory>
#include <vector>

#include "base/Services.h"
#include "paper/PagePainter.h"

namespace melvorin {

class PrintJob {
  public:
    // Opens the printer. Fails with a sentence.
    static Result<std::unique_ptr<PrintJob>> open(const PrintChoice& choice);
    PrintJob(const PrintJob&) = delete;
    PrintJob& operator=(const PrintJob&) = delete;
    // A job that was begun and not ended is withdrawn.
    ~PrintJob() { withdraw(); }

    // The sheet that lies in it.
    PaperSize paper() const;
    // Nearer to an edge of the sheet nothing can be printed, in points.
    double leastMargin() const;
    // The last refusal was the user's, who closed a dialog of the printer's.
    bool isCalledOff() const { return isCalledOff_; }
    // How many printers' pixels make a point.
    const PaperPlace& place() const { return place_; }

    // Each fails with a sentence, and the job is withdrawn then. `fonts` are those that the pages
    // were laid out with.
    Result<Done> begin(const Text& name);
    Result<Done> print(const PaperPage& page, const SystemFonts& fonts);
    Result<Done> end();
    void withdraw();

  private:
    PrintJob(UniqueMemoryDc dc, Text output);
    Result<Done> refused();

    UniqueMemoryDc dc_;
    Text output_;
    PaperPlace place_;
    bool isBegun_ = false;
    bool isCalledOff_ = false;
};

// The pages in the order in which they come out, numbers from 0; `count` is how many there are.
std::vector<std::size_t> printOrder(const PrintChoice& choice, std::size_t count);

}  // namespace melvorin
