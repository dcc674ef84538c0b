#include "paper/PaperDesk.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/LetterCase.h"
#include "base/Paths.h"
#include "base/ProgramSettings.h"
#include "paper/PaperNotes.h"
#include "paper/PdfWriter.h"
#include "paper/PrintJob.h"
#include "paper/frmPageSetup.h"
#include "paper/frmPreview.h"
#include "paper/frmPrinting.h"

namespace melvorin {
namespace {

constexpr TextView kNoFonts =
    u"No font was found on this machine that can be put on paper. Install Courier New.";

Text sentence(Text words) {
    if (!words.empty() && words[0] >= u'a' && words[0] <= u'z')
        words[0] = static_cast<char16_t>(words[0] - u'a' + u'A');
    return words + u".";
}

// A sheet whose sides differ by no more than drivers round.
bool isSame(const PaperSize& a, const PaperSize& b) {
    constexpr double most = 3;  // points
    return std::abs(a.width - b.width) <= most && std::abs(a.height - b.height) <= most;
}

}  // namespace

Text paperNotes(const LaidPaper& laid, const SystemFonts& fonts) {
    Text notes = missingInWords(fonts.missingFaces(), fonts.use() == FontUse::Documents);
    if (!laid.facts.unwritable.empty()) {
        notes += notes.empty() ? u"" : u"\r\n";
        notes += sentence(unwritableInWords(laid.facts.unwritable));
    }
    return notes;
}

PaperDesk::PaperDesk(const Services& services, Outside outside)
    : services_(services), outside_(std::move(outside)) {}

SystemFonts* PaperDesk::screenFonts() {
    // Reading them takes longer than all the rest; what is missing is that of this song.
    if (!screen_)
        screen_.emplace(FontUse::Measures);
    screen_->forgetMissing();
    if (screen_->isReady())
        return &*screen_;
    reportFailure(services_.messages, kNoFonts);
    return nullptr;
}

LaidPaper PaperDesk::layOut(const PaperSource& source, const PageSetup& setup,
                            SystemFonts& fonts) const {
    LaidPaper laid;
    laid.facts = layOutSong(source.song, setup, fonts, source.findDiagram);
    LaidSong pages = laid.facts;
    laid.facts.pages.clear();
    laid.document = songDocument(std::move(pages), source.song, setup);
    return laid;
}

void PaperDesk::store(const PageChoices& choices) {
    chosen_ = choices;
    if (!storePageChoices(services_, choices) && !std::exchange(storeFailed_, true))
        reportFailure(services_.messages, kNotStored);
}

bool PaperDesk::isEmpty(const PaperSource& source, TextView what) {
    const auto& lines = source.song.lines;
    const bool empty = std::all_of(lines.begin(), lines.end(),
                                   [](const PaperLine& line) { return line.text.empty(); });
    if (empty)
        services_.messages.show(u"There is no song to " + Text(what) + u".", kMessageTitle,
                                MessageIcon::Information, MessageButtons::Ok);
    return empty;
}

void PaperDesk::setUp(HWND owner) {
    if (const auto chosen = frmPageSetup(services_).ask(owner, choices()))
        store(*chosen);
}

void PaperDesk::preview(HWND owner, const PaperSource& source) {
    if (isEmpty(source, u"show"))
        return;
    if (SystemFonts* const fonts = screenFonts())
        frmPreview(services_, *this, source, *fonts).show(owner);
}

void PaperDesk::print(HWND owner, const PaperSource& source) {
    if (isEmpty(source, u"print"))
        return;
    // Of its own, as a preview may be open and has others.
    SystemFonts fonts(FontUse::Measures);
    if (!fonts.isReady())
        return reportFailure(services_.messages, kNoFonts);
    const auto refuse = [this](TextView cause) {
        reportFailure(services_.messages, u"The song cannot be printed. " + Text(cause));
    };
    const PageChoices chosen = choices();
    PageSetup setup = setupOf(chosen);
    LaidPaper laid = layOut(source, setup, fonts);
    const auto choice =
        services_.printers.choose({.document = source.name,
                                   .pages = static_cast<unsigned>(laid.document.pages.size()),
                                   .paper = chosen.paper,
                                   .landscape = chosen.landscape});
    if (!choice)
        return refuse(choice.cause);
    if (!*choice.value)
        return;
    const auto opened = PrintJob::open(**choice.value);
    if (!opened)
        return refuse(opened.cause);
    PrintJob& job = **opened.value;
    PrintChoice wanted = **choice.value;
    const double leastMargin = job.leastMargin();
    if (!isSame(job.paper(), setup.paper) || setup.margin < leastMargin) {
        // Another sheet was chosen in the dialog, or it is the only one that the printer has.
        const bool isWhole = wanted.from == 1 && wanted.to >= laid.document.pages.size();
        if (!isSame(job.paper(), setup.paper))
            setup.paper = job.paper();
        // What lies farther out would be cut.
        setup.margin = std::max(setup.margin, leastMargin);
        laid = layOut(source, setup, fonts);
        if (isWhole)
            wanted.to = static_cast<unsigned>(laid.document.pages.size());
    }
    const auto order = printOrder(wanted, laid.document.pages.size());
    if (order.empty())
        return refuse(u"There is no such page.");
    frmPrinting window(services_);
    switch (window.run(owner, job, laid.document.pages, order, fonts, source.name)) {
        case frmPrinting::End::Failed:
            return refuse(window.cause());
        case frmPrinting::End::Cancelled:
            return outside_.say(u"Printing was called off");
        case frmPrinting::End::Done:
            break;
    }
    const Text count = decimal(static_cast<std::int64_t>(order.size()));
    outside_.say(u"Printed " + count + (order.size() == 1 ? u" page on " : u" pages on ") +
                 wanted.printer);
    if (const Text notes = paperNotes(laid, fonts); !notes.empty())
        services_.messages.show(u"The song is printed.\r\n\r\n" + notes, kMessageTitle,
                                MessageIcon::Information, MessageButtons::Ok);
}

void PaperDesk::savePdf(const PaperSource& source) {
    if (isEmpty(source, u"save"))
        return;
    const auto target = outside_.askTarget();
    if (!target)
        return;
    const CursorScope hourglass(IDC_WAIT);
    SystemFonts fonts(FontUse::Documents);
    if (!fonts.isReady())
        return reportFailure(services_.messages, kNoFonts);
    const LaidPaper laid = layOut(source, setupOf(choices()), fonts);
    const Result<std::string> bytes = writePdf(laid.document, fonts.shelf());
    const Result<Done> written =
        bytes ? services_.files.replace(*target, *bytes.value) : Result<Done>::failure(bytes.cause);
    if (!written)
        return reportFailure(services_.messages,
                             u"The song cannot be saved as \"" + *target + u"\". " + written.cause);
    outside_.say(u"Saved as " + Text(fileNamePart(*target)));
    if (const Text notes = paperNotes(laid, fonts); !notes.empty())
        services_.messages.show(u"The PDF is saved.\r\n\r\n" + notes, kMessageTitle,
                                MessageIcon::Information, MessageButtons::Ok);
}

}  // namespace melvorin
