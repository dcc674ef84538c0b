// How the program's moments grow with the song: everything a user waits for, at several lengths of
// one song, beside what the control alone takes to load it.
#include <map>

#include "BenchProgram.h"
#include "EditorBenches.h"

namespace melvorin::bench {
namespace {

using Moments = std::map<std::string, Times>;

// The song as a coloured chord notation, in a file that is gone at the end.
class SongFile {
  public:
    explicit SongFile(OpenChart& chart) : files_(chart.files()) {
        path_ = files_.createTemporary(u"mbn").value.value_or(u"");
        chart.form().run(Command::mnuUp);
        files_.write(path_, chart.editor().rtf());
    }
    SongFile(const SongFile&) = delete;
    SongFile& operator=(const SongFile&) = delete;
    ~SongFile() { files_.remove(path_); }
    const Text& path() const { return path_; }

  private:
    Files& files_;
    Text path_;
};

void typeAndFind(OpenChart& chart, std::int32_t lines, Moments& moments) {
    RichEdit& editor = chart.editor();
    for (std::int32_t i = 0; i < 20; ++i) {
        const std::int32_t at = editor.firstOfLine((i * 37 + 11) % lines);
        editor.select({at, at});
        editor.scrollCaretIntoView();
        chart.pump();
        moments[i % 2 == 0 ? "type" : "type_control_alone"].push_back(
            i % 2 == 0 ? timeOfCharacter(chart) : timeOfUnrecordedCharacter(chart));
    }
    // A word at the end, from the start on.
    const std::int32_t end = editor.firstOfLine(lines - 1);
    editor.select({end, end});
    editor.replaceSelection(u"zebra");
    testing::ScriptedMessages messages;
    ReplaceFollower nothing;
    FindReplace finder(
        editor, messages, nothing, [] {}, [] {});
    bool found = false;
    moments["find"].push_back(timeOf([&] { found = finder.findNext({u"zebra", u"", {}}); }));
    if (!found)
        giveUp("the last line was not found");
}

void fullScreenMoments(OpenChart& chart, std::int32_t lines, Moments& moments) {
    moments["full_screen_opening"].push_back(timeOfOpening(chart));
    frmFScreen& view = chart.form().fullScreen();
    if (!view.isOpen())
        giveUp("the full-screen view did not open");
    constexpr std::int32_t kSteps = 60;
    const double before = workOfThread();
    for (std::int32_t i = 0; i < kSteps; ++i)
        view.FSRTB().bringToTop((i * 37 + i % 2) % lines);
    moments["full_screen_step"].push_back((workOfThread() - before) / kSteps);
    view.close();
    chart.pump();
}

void measureMoments(OpenChart& chart, const Text& song, std::int32_t lines, Moments& moments) {
    const auto timed = [&](Command command) {
        const double time = timeOf([&] {
            chart.form().run(command);
            ::UpdateWindow(chart.editor().handle());
        });
        chart.pump();
        return time;
    };
    moments["open"].push_back(timeOf([&] { chart.open(song); }));
    chart.pump();
    moments["control_load_alone"].push_back(timeOfFreshLoad(chart, chart.editor().rtf()));
    typeAndFind(chart, lines, moments);
    moments["key_change"].push_back(timed(Command::mnuUp));
    moments["undo"].push_back(timed(Command::mnuEditUndo));
    // In every tenth line.
    testing::ScriptedMessages messages;
    FindReplace finder(
        chart.editor(), messages, chart.form().follower(), [] {}, [] {});
    moments["replace_all"].push_back(timeOf([&] {
        finder.replaceEach({u"lantern", u"candle", {}}, [&] { chart.pump(); });
    }));
    fullScreenMoments(chart, lines, moments);
}

// Time that grows as the lines do gives 1.
void reportGrowth(const Moments& small, std::int32_t fewLines, const Moments& large,
                  std::int32_t manyLines) {
    for (const auto& [name, times] : large) {
        const double growth = median(times) / median(small.at(name)) * fewLines / manyLines;
        report("scale_" + name + "_growth_" + std::to_string(fewLines) + "_to_" +
                   std::to_string(manyLines) + "_lines",
               growth, "ratio");
    }
}

}  // namespace

void scaleBench() {
    constexpr std::pair<std::int32_t, int> lengths[] = {{200, 9}, {2000, 7}, {5000, 5}, {10000, 1}};
    std::map<std::int32_t, Moments> all;
    for (const auto& [lines, rounds] : lengths) {
        OpenChart chart(static_cast<std::size_t>(lines));
        const SongFile song(chart);
        Moments& moments = all[lines];
        for (int round = 0; round < rounds; ++round)
            measureMoments(chart, song.path(), lines, moments);
        const double load = median(moments["control_load_alone"]);
        for (const auto& [name, times] : moments) {
            const std::string whole = "scale_" + name + "_" + std::to_string(lines) + "_lines";
            report(whole, median(times), "ms");
            report(whole + "_to_control_load", median(times) / load, "ratio");
        }
    }
    reportGrowth(all[200], 200, all[2000], 2000);
    reportGrowth(all[2000], 2000, all[5000], 5000);
    reportGrowth(all[5000], 5000, all[10000], 10000);
}

}  // namespace melvorin::bench
