// What the opening and the steps of the full-screen view take.
#include "BenchProgram.h"
#include "EditorBenches.h"
#include "base/DiagramFont.h"
#include "base/ProgramSettings.h"
#include "dictionary/RichEditDiagrams.h"
#include "platform/DiagramFonts.h"

namespace melvorin::bench {
namespace {

// ---- Full screen ------------------------------------------------------------------------------

void open(OpenChart& chart, Times& times) {
    times.push_back(timeOfOpening(chart));
    if (!chart.form().fullScreen().isOpen())
        giveUp("the full-screen view did not open");
}

void close(OpenChart& chart) {
    chart.form().fullScreen().close();
    chart.pump();
}

// The first opening where the program has been idle before, as it usually has.
void openingAfterIdle(std::int32_t lines) {
    OpenChart chart(static_cast<std::size_t>(lines));
    while (!chart.form().fullScreen().panel().isOpen()) {
        chart.pump();
        ::Sleep(20);
    }
    Times first;
    open(chart, first);
    report("full_screen_" + std::to_string(lines) + "_lines_first_opening_after_idle",
           first.front(), "ms");
    close(chart);
}

// Beside a load of the same song into the control alone. The first opening of a program that had no
// time to make the panel makes it, so it is told by itself.
void openings(OpenChart& chart, const std::string& name) {
    Times load;
    Times first;
    Times next;
    open(chart, first);
    close(chart);
    for (int round = 0; round < 7; ++round) {
        load.push_back(timeOfFreshLoad(chart, chart.editor().rtf()));
        open(chart, next);
        close(chart);
    }
    report(name + "_load", median(load), "ms");
    report(name + "_first_opening", first.front(), "ms");
    report(name + "_opening", median(next), "ms");
    report(name + "_opening_to_load", median(next) / median(load), "ratio");
}

// Steps all over the song, each until it is drawn.
void steps(OpenChart& chart, const std::string& name) {
    Times times;
    open(chart, times);
    RichEdit& text = chart.form().fullScreen().FSRTB();
    const std::int32_t lines = text.lineCount();
    constexpr std::int32_t kSteps = 300;
    Times step;
    const double workBefore = workOfThread();
    for (std::int32_t i = 0; i < kSteps; ++i)
        step.push_back(timeOf([&] { text.bringToTop((i * 37 + i % 2) % lines); }));
    const double work = (workOfThread() - workBefore) / kSteps;
    close(chart);
    report(name + "_step_median", median(step), "ms");
    report(name + "_step_99th", quantile(step, 99), "ms");
    report(name + "_step_work_mean", work, "ms");
}

// The same with the reading and writing back of the whole text, which the program leaves out.
void rewritingSteps(OpenChart& chart, const std::string& name) {
    Times times;
    open(chart, times);
    RichEdit& text = chart.form().fullScreen().FSRTB();
    const std::int32_t lines = text.lineCount();
    Times step;
    for (std::int32_t i = 0; i < 5; ++i)
        step.push_back(timeOf([&] {
            text.loadRtf(text.rtf());
            text.bringToTop(i * 37 % lines);
        }));
    close(chart);
    report(name + "_step_with_write_back_median", median(step), "ms");
}

// From what a MIDI pedal says to the line that is drawn on top, in a run; on and back by turns.
void pedal(OpenChart& chart, const std::string& name) {
    constexpr MidiMessage on{0x90, 60, 100};
    constexpr MidiMessage back{0x90, 62, 100};
    testing::StandIns& outside = chart.standIns();
    outside.midi.inputs = {u"Foot"};
    const auto learn = [&](TextView act, TextView signal) {
        outside.profiles.values[{programIniPath(chart.folder()), u"Pedals", Text(act)}] = signal;
    };
    learn(u"TenLines", u"midi 90 3C Foot");
    learn(u"Back", u"midi 90 3E Foot");
    Times times;
    open(chart, times);
    frmFScreen& view = chart.form().fullScreen();
    frmFScreenB& panel = view.panel();
    // A line a minute, so that no step of the clock comes between.
    ::SendMessageW(::GetDlgItem(panel.handle(), frmFScreenB::Seconds), CB_SETCURSEL, 59, 0);
    ::SendMessageW(::GetDlgItem(panel.handle(), frmFScreenB::Command4), BM_CLICK, 0, 0);
    chart.pump();
    Times press;
    for (int i = 0; i < 300; ++i) {
        press.push_back(timeOf([&] {
            outside.midi.send(u"Foot", i % 3 == 2 ? back : on);
            ::UpdateWindow(view.FSRTB().handle());
        }));
        chart.pump();
    }
    if (panel.run().currentLine() != 1 + 10 * (200 - 100))
        giveUp("the pedal did not lead the run");
    close(chart);
    report(name + "_pedal_to_picture_median", median(press), "ms");
    report(name + "_pedal_to_picture_99th", quantile(press, 99), "ms");
}

void fullScreen(std::int32_t lines) {
    OpenChart chart(static_cast<std::size_t>(lines));
    const std::string name = "full_screen_" + std::to_string(lines) + "_lines";
    openings(chart, name);
    steps(chart, name);
    rewritingSteps(chart, name);
}

Text diagramFace(std::size_t number) {
    const std::size_t font = number % kDiagramFontCount + 1;
    return Text(kDiagramFaceStart) + (font < 10 ? u"0" : u"") +
           decimal(static_cast<std::int64_t>(font));
}

// Of all fonts, each at the beginning of a line.
void fullScreenWithDiagrams(std::int32_t lines, std::int32_t diagrams) {
    DiagramFonts fonts;
    if (fonts.load(Win32ProgramFolder().folder()) != kDiagramFontCount)
        giveUp("the diagram fonts are not beside this program");
    OpenChart chart(static_cast<std::size_t>(lines));
    RichEdit& editor = chart.editor();
    {
        const EditorWork work(editor);
        RichEditDiagrams document(editor);
        for (std::int32_t i = 0; i < diagrams; ++i) {
            const std::int32_t position = editor.firstOfLine(i * lines / diagrams);
            editor.select({position, position});
            insertDiagram(document, Text(1, static_cast<char16_t>(u'a' + i % 26)),
                          diagramFace(static_cast<std::size_t>(i)));
        }
    }
    const std::string name =
        "full_screen_" + std::to_string(lines) + "_lines_" + std::to_string(diagrams) + "_diagrams";
    openings(chart, name);
    steps(chart, name);
}

}  // namespace

void stageBench() {
    openingAfterIdle(200);
    for (const std::int32_t lines : {200, 2000, 5000})
        fullScreen(lines);
    fullScreenWithDiagrams(5000, 500);
    OpenChart chart(5000);
    pedal(chart, "full_screen_5000_lines");
}

}  // namespace melvorin::bench
