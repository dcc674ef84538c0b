// What the opening and the steps of the full-screen view take.
#include "BenchProgram.h"
#include "EditorBenches.h"

namespace melvorin::bench {
namespace {

// ---- Full screen ------------------------------------------------------------------------------

// Steps all over the song, each until it is drawn; and the same with the reading and writing back
// of the whole text, which the program leaves out.
void fullScreen(std::int32_t lines) {
    OpenChart chart(static_cast<std::size_t>(lines));
    frmFScreen& view = chart.form().fullScreen();
    Times load;
    Times opening;
    for (int round = 0; round < 5; ++round) {
        load.push_back(timeOfFreshLoad(chart, chart.editor().rtf()));
        opening.push_back(timeOfOpening(chart));
        if (!view.isOpen())
            giveUp("the full-screen view did not open");
        view.close();
        chart.pump();
    }
    timeOfOpening(chart);
    RichEdit& text = view.FSRTB();
    constexpr std::int32_t kSteps = 300;
    Times step;
    const double workBefore = workOfThread();
    for (std::int32_t i = 0; i < kSteps; ++i)
        step.push_back(timeOf([&] { text.bringToTop((i * 37 + i % 2) % lines); }));
    const double work = (workOfThread() - workBefore) / kSteps;
    Times rewritingStep;
    for (std::int32_t i = 0; i < 5; ++i)
        rewritingStep.push_back(timeOf([&] {
            text.loadRtf(text.rtf());
            text.bringToTop(i * 37 % lines);
        }));
    view.close();
    const std::string name = "full_screen_" + std::to_string(lines) + "_lines";
    report(name + "_load", median(load), "ms");
    report(name + "_opening", median(opening), "ms");
    report(name + "_opening_to_load", median(opening) / median(load), "ratio");
    report(name + "_step_median", median(step), "ms");
    report(name + "_step_99th", quantile(step, 99), "ms");
    report(name + "_step_work_mean", work, "ms");
    report(name + "_step_to_load", median(step) / median(load), "ratio");
    report(name + "_step_with_write_back_median", median(rewritingStep), "ms");
}

}  // namespace

void stageBench() {
    for (const std::int32_t lines : {200, 2000, 5000})
        fullScreen(lines);
}

}  // namespace melvorin::bench
