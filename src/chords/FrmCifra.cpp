#include "chords/FrmCifra.h"

#include "chords/FrmCifraCreator.h"
#include "chords/InsertChart.h"
#include "chords/TakenSong.h"
#include "platform/Handles.h"

#include <cstdlib>
#include <utility>

namespace melvorin {
namespace {

constexpr UINT_PTR kStartTimer = 1;
constexpr UINT kStartMs = 1;
// Pixels at 96 dpi. With margins and frame the window is 4290 twips wide.
constexpr int kBarWidth = 256;
constexpr int kBarHeight = 18;
constexpr int kFull = 100;
constexpr int kPerLine = 2;
constexpr int kBusyRounds = 500;
constexpr std::int64_t kFrameMs = 15;  // no screen shows more than one picture in this time

}  // namespace

bool FrmCifra::changeKey(HWND owner, int steps, int& halfSteps, MoveSong move) {
    move_ = std::move(move);
    steps_ = steps;
    halfSteps_ = &halfSteps;
    progress_ = 0;
    changed_ = false;
    if (!createWindow(owner))
        return false;
    ::SetTimer(handle(), kStartTimer, kStartMs, nullptr);
    runModal(owner);
    return changed_;
}

bool FrmCifra::createNotation(HWND owner, RichEdit& rtftext, const ChordLookup* lookup) {
    const TakenSong song = takeSong(rtftext);
    FrmCifraCreator creator(services_, lookup);
    const std::optional<CreatedChart> chart = creator.run(owner, song);
    if (!chart)
        return false;
    const CursorScope hourglass(IDC_WAIT);
    const EditorWork work(rtftext);
    const std::string before = rtftext.rtf();
    try {
        if (creator.isInPlace())
            return putInPlace(rtftext, song, *chart);
        insertChart(rtftext, *chart);
        return true;
    } catch (const std::exception& error) {
        rtftext.loadRtf(before);
        reportFailure(services_.messages, u"The chart cannot be put into the document (" +
                                              fromUtf8(error.what()) + u"). It is as it was.");
    }
    return false;
}

bool FrmCifra::createWindow(HWND owner) {
    // kept: window-titles
    WindowSpec spec = smallWindow(L"MelvorinFrmCifra", L" Changing the Key", 0, 0, owner);
    spec.style &= ~DWORD{WS_SYSMENU};
    if (!createForm(spec))
        return false;
    const int count = std::abs(steps_);
    const Text words = Text(steps_ > 0 ? u"Going up " : u"Going down ") +
                       (count == 1 ? Text(u"a half step...") : decimal(count) + u" half steps...");
    const Cell title = label(wide(words));
    const Cell bar = control(PROGRESS_CLASSW, L"", 0, -1);
    bar_ = windowOf(bar);
    layOut(columnOf({title, bar.least(kBarWidth, kBarHeight)}), owner);
    return true;
}

LRESULT FrmCifra::onMessage(UINT message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_TIMER)
        return Form::onMessage(message, wParam, lParam);
    onStartTimer();
    return 0;
}

void FrmCifra::setProgress(int percent) {
    progress_ = percent;
    if (services_.clock.nowMs() < nextFrame_)
        return;
    ::SendMessageW(bar_, PBM_SETPOS, static_cast<WPARAM>(percent), 0);
    ::UpdateWindow(bar_);
    nextFrame_ = services_.clock.nowMs() + kFrameMs;
}

void FrmCifra::animateBar() {
    while (progress_ < kFull) {
        for (int round = 0; round < kBusyRounds; ++round)
            asm volatile("");  // a busy count that the compiler leaves in
        setProgress(progress_ + 1);
    }
}

void FrmCifra::onStartTimer() {
    ::KillTimer(handle(), kStartTimer);
    const CursorScope hourglass(IDC_WAIT);
    ::UpdateWindow(handle());
    nextFrame_ = services_.clock.nowMs() + kFrameMs;
    animateBar();
    setProgress(0);
    // No exception may leave the modal loop with its owner disabled.
    try {
        move_([this] {
            if (progress_ <= kFull - kPerLine)
                setProgress(progress_ + kPerLine);
        });
        *halfSteps_ += steps_;
        changed_ = true;
    } catch (const std::exception& error) {
        reportFailure(services_.messages, u"The key of this song cannot be changed (" +
                                              fromUtf8(error.what()) + u"). It is as it was.");
    }
    setProgress(kFull);
    endModal();
}

}  // namespace melvorin
