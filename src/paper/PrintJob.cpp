#include "paper/PrintJob.h"

#include <algorithm>

#include "platform/SystemError.h"

namespace melvorin {
namespace {

constexpr double kPointsPerInch = 72;

}  // namespace

Result<std::unique_ptr<PrintJob>> PrintJob::open(const PrintChoice& choice) {
    // A block of the driver's own kind, and aligned like one.
    const auto* const settings = choice.settings.size() >= sizeof(DEVMODEW)
                                     ? reinterpret_cast<const DEVMODEW*>(choice.settings.data())
                                     : nullptr;
    UniqueMemoryDc dc(::CreateDCW(L"WINSPOOL", wide(choice.printer), nullptr, settings));
    if (!dc)
        return Failure{u"The printer \"" + choice.printer + u"\" cannot be reached."};
    return Result<std::unique_ptr<PrintJob>>::success(
        std::unique_ptr<PrintJob>(new PrintJob(std::move(dc), choice.output)));
}

PrintJob::PrintJob(UniqueMemoryDc dc, Text output)
    : dc_(std::move(dc)), output_(std::move(output)) {
    place_.scaleX = ::GetDeviceCaps(dc_.get(), LOGPIXELSX) / kPointsPerInch;
    place_.scaleY = ::GetDeviceCaps(dc_.get(), LOGPIXELSY) / kPointsPerInch;
    // A printer counts from where it can print, not from the corner of the sheet.
    place_.left = -::GetDeviceCaps(dc_.get(), PHYSICALOFFSETX);
    place_.top = -::GetDeviceCaps(dc_.get(), PHYSICALOFFSETY);
}

PaperSize PrintJob::paper() const {
    const auto length = [this](int whole, int printable, double scale) {
        const int pixels = ::GetDeviceCaps(dc_.get(), whole);
        return (pixels > 0 ? pixels : ::GetDeviceCaps(dc_.get(), printable)) / scale;
    };
    return {length(PHYSICALWIDTH, HORZRES, place_.scaleX),
            length(PHYSICALHEIGHT, VERTRES, place_.scaleY)};
}

double PrintJob::leastMargin() const {
    const auto caps = [this](int what) { return ::GetDeviceCaps(dc_.get(), what); };
    if (caps(PHYSICALWIDTH) <= 0 || caps(PHYSICALHEIGHT) <= 0)
        return 0;
    const int right = caps(PHYSICALWIDTH) - caps(PHYSICALOFFSETX) - caps(HORZRES);
    const int below = caps(PHYSICALHEIGHT) - caps(PHYSICALOFFSETY) - caps(VERTRES);
    return std::max({caps(PHYSICALOFFSETX) / place_.scaleX, right / place_.scaleX,
                     caps(PHYSICALOFFSETY) / place_.scaleY, below / place_.scaleY, 0.0});
}

Result<Done> PrintJob::refused() {
    const DWORD error = ::GetLastError();
    withdraw();
    isCalledOff_ = error == ERROR_CANCELLED || error == ERROR_PRINT_CANCELLED;
    if (isCalledOff_)
        return Failure{u"It was called off."};
    return Failure{error == 0 ? Text(u"The printer does not take it.")
                              : systemErrorSentence(error)};
}

Result<Done> PrintJob::begin(const Text& name) {
    DOCINFOW document{};
    document.cbSize = sizeof document;
    document.lpszDocName = wide(name);
    document.lpszOutput = output_.empty() ? nullptr : wide(output_);
    ::SetLastError(0);
    isBegun_ = ::StartDocW(dc_.get(), &document) > 0;
    return isBegun_ ? done() : refused();
}

Result<Done> PrintJob::print(const PaperPage& page, const SystemFonts& fonts) {
    ::SetLastError(0);
    if (::StartPage(dc_.get()) <= 0)
        return refused();
    PagePainter(fonts, PagePainter::Quality::Sharp).paint(dc_.get(), page, place_, true);
    return ::EndPage(dc_.get()) > 0 ? done() : refused();
}

Result<Done> PrintJob::end() {
    ::SetLastError(0);
    if (::EndDoc(dc_.get()) <= 0)
        return refused();
    isBegun_ = false;
    return done();
}

void PrintJob::withdraw() {
    if (isBegun_)
        ::AbortDoc(dc_.get());
    isBegun_ = false;
}

std::vector<std::size_t> printOrder(const PrintChoice& choice, std::size_t count) {
    std::vector<std::size_t> order;
    const std::size_t first = std::max<std::size_t>(choice.from, 1) - 1;
    const std::size_t end = std::min<std::size_t>(choice.to, count);
    const std::size_t length = end > first ? end - first : 0;
    order.reserve(length * choice.copies);
    for (std::size_t i = 0; i < length * choice.copies; ++i)
        order.push_back(first + (choice.collates ? i % length : i / choice.copies));
    return order;
}

}  // namespace melvorin
