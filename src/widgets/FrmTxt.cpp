#include "widgets/FrmTxt.h"

#include <algorithm>
#include <utility>

namespace melvorin {
namespace {

constexpr UINT_PTR kTimer1 = 1;
constexpr std::size_t kSlice = std::size_t{256} << 10;

}  // namespace

std::optional<Text> FrmTxt::convert(HWND owner, Text text, std::size_t startColumn) {
    if (text.size() < kLongText || !createWindow(owner))
        return expandTabs(text, startColumn);
    txtPad_ = std::move(text);
    expanded_.clear();
    expanded_.reserve(txtPad_.size());
    done_ = 0;
    expander_ = TabExpander(startColumn);
    ::SetTimer(handle(), kTimer1, 1, nullptr);
    runModal(owner);
    if (failure_)
        std::rethrow_exception(std::exchange(failure_, nullptr));
    const bool whole = done_ == txtPad_.size();
    txtPad_ = {};
    return whole ? std::optional(std::exchange(expanded_, {})) : std::nullopt;
}

bool FrmTxt::createWindow(HWND owner) {
    if (!createForm(L"MelvorinFrmTxt", L"Turning Tabs into Blanks", owner))
        return false;
    const Cell bar = control(PROGRESS_CLASSW, L"", 0, -1);
    ProgressBar1_ = windowOf(bar);
    layOut(bar.least(260, 18), owner);
    return true;
}

LRESULT FrmTxt::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_TIMER)
        return Form::onMessage(message, wParam, lParam);
    onTimer1();
    return 0;
}

void FrmTxt::onTimer1() {
    // Memory may end; the caller hears of it, and no slice is taken twice.
    try {
        expander_.append(TextView(txtPad_).substr(done_, kSlice), expanded_);
    } catch (const std::exception&) {
        failure_ = std::current_exception();
        endModal();
        return;
    }
    done_ = std::min(done_ + kSlice, txtPad_.size());
    ::SendMessageW(ProgressBar1_, PBM_SETPOS, done_ * 100 / txtPad_.size(), 0);
    if (done_ == txtPad_.size())
        endModal();
}

}  // namespace melvorin
