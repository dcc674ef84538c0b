#include "paper/frmPrinting.h"

#include <utility>

namespace melvorin {
namespace {

constexpr UINT_PTR kTimer = 1;

Text written(std::size_t number) {
    return decimal(static_cast<std::int64_t>(number));
}

}  // namespace

frmPrinting::End frmPrinting::run(HWND owner, PrintJob& job, const std::vector<PaperPage>& pages,
                                  const std::vector<std::size_t>& order, const SystemFonts& fonts,
                                  const Text& name) {
    job_ = &job;
    pages_ = &pages;
    order_ = &order;
    fonts_ = &fonts;
    done_ = 0;
    end_ = End::Cancelled;
    cause_.clear();
    if (const Result<Done> begun = job.begin(name); !begun) {
        cause_ = begun.cause;
        return job.isCalledOff() ? End::Cancelled : End::Failed;
    }
    if (!createWindow(owner)) {
        job.withdraw();
        cause_ = u"Windows has no window left.";
        return End::Failed;
    }
    ::SetTimer(handle(), kTimer, 1, nullptr);
    runModal(owner);
    if (end_ == End::Cancelled)
        job.withdraw();
    if (failure_)
        std::rethrow_exception(std::exchange(failure_, nullptr));
    return end_;
}

bool frmPrinting::createWindow(HWND owner) {
    if (!createForm(L"MelvorinfrmPrinting", L"Printing", owner))
        return false;
    const Cell said = label(L"Page 9999 of 9999", 0, kSaid);
    const Cell bar = control(PROGRESS_CLASSW, L"", 0, kBar);
    layOut(columnOf({said, bar.least(260, 18), atRight({button(cancel_, kCancel, u"Cancel")})}),
           owner);
    ::SetFocus(cancel_.handle());
    return true;
}

LRESULT frmPrinting::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_TIMER)
        return Form::onMessage(message, wParam, lParam);
    // Messages that come from the driver must not begin another page.
    ::KillTimer(handle(), kTimer);
    try {
        printNext();
    } catch (const std::exception&) {
        failure_ = std::current_exception();
        endModal();
    }
    if (isOpen())
        ::SetTimer(handle(), kTimer, 1, nullptr);
    return 0;
}

void frmPrinting::printNext() {
    if (done_ == order_->size()) {
        take(job_->end());
        if (end_ != End::Failed)
            end_ = End::Done;
        endModal();
        return;
    }
    ::SetWindowTextW(item(kSaid),
                     wide(u"Page " + written(done_ + 1) + u" of " + written(order_->size())));
    take(job_->print((*pages_)[(*order_)[done_]], *fonts_));
    ++done_;
    ::SendMessageW(item(kBar), PBM_SETPOS, done_ * 100 / order_->size(), 0);
}

void frmPrinting::take(const Result<Done>& result) {
    if (result)
        return;
    cause_ = result.cause;
    end_ = End::Failed;
    endModal();
}

}  // namespace melvorin
