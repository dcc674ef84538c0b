// What paper takes in the real main window: from the command to the preview's first page on the
// screen, beside the making of the PDF.
#include "BenchProgram.h"
#include "EditorBenches.h"
#include "paper/frmPreview.h"

namespace melvorin::bench {
namespace {

std::chrono::steady_clock::time_point shownAt;

// Comes when nothing is left to be painted.
void CALLBACK whenPainted(HWND, UINT, UINT_PTR, DWORD) {
    const HWND window = ::FindWindowW(L"MelvorinfrmPreview", nullptr);
    const HWND pages = window != nullptr ? ::GetDlgItem(window, frmPreview::kPages) : nullptr;
    if (pages == nullptr || !::IsWindowVisible(pages) || ::GetUpdateRect(pages, nullptr, FALSE))
        return;
    shownAt = std::chrono::steady_clock::now();
    ::PostMessageW(window, WM_CLOSE, 0, 0);
}

struct PreviewTime {
    double passed = 0;
    double worked = 0;  // by this thread, until the window was closed again
};

PreviewTime timeOfPreview(OpenChart& chart) {
    const UINT_PTR timer = ::SetTimer(nullptr, 0, USER_TIMER_MINIMUM, whenPainted);
    const double workBefore = workOfThread();
    const auto start = std::chrono::steady_clock::now();
    chart.form().run(Command::mnuPreview);
    ::KillTimer(nullptr, timer);
    const double worked = workOfThread() - workBefore;
    chart.pump();
    return {std::chrono::duration<double, std::milli>(shownAt - start).count(), worked};
}

}  // namespace

void previewBench() {
    for (const std::size_t lines : {50U, 200U, 2000U}) {
        OpenChart chart(lines);
        Times passed;
        Times worked;
        for (int i = 0; i < 9; ++i) {
            const PreviewTime time = timeOfPreview(chart);
            passed.push_back(time.passed);
            worked.push_back(time.worked);
        }
        report("preview_" + std::to_string(lines), median(passed), "ms");
        report("preview_work_" + std::to_string(lines), median(worked), "ms");
    }
}

}  // namespace melvorin::bench
