// Runs of the full-screen view at accelerated time, against tables worked out by hand, and where
// its windows stand.
#include <gtest/gtest.h>

#include <fstream>
#include <random>

#include "StandIns.h"
#include "present/StageLayout.h"
#include "present/StageRun.h"

namespace melvorin {
namespace {

class LoggedStage : public StageSurface {
  public:
    void showLine(int line) override { shown.push_back(line); }
    void showCaption(TextView text) override { caption = toUtf8(text); }
    void showNote(const RunNote&) override {}
    void runEnded() override { ++ends; }

    std::vector<int> shown;
    std::string caption;
    int ends = 0;
};

struct Stage {
    Stage() { clock.ms = 12'345; }

    testing::ScriptedClock clock;
    LoggedStage surface;
    StageRun run{clock, surface};
    RunSettings settings;

    bool start(int lines) {
        run.setLineCount(lines);
        return run.start(settings, lines);
    }
    void tickAt(std::int64_t second) {
        clock.ms = 12'345 + second * 1000;
        run.tick();
    }
    // Ticks every 100 ms through so many seconds from now; the line at the end of each.
    std::vector<int> play(int seconds) {
        std::vector<int> lines;
        for (int second = 0; second < seconds; ++second) {
            for (int tick = 0; tick < 10; ++tick, clock.ms += 100)
                run.tick();
            lines.push_back(run.currentLine());
        }
        return lines;
    }
    void playTo(int line) {
        while (run.isRunning() && run.currentLine() < line)
            play(1);
    }
};

JumpRow jump(int from, int to, int times) {
    return {true, from, to, times};
}

struct Pace {
    int seconds;  // per line
    int passes;
    bool repeats;
};

struct Song {
    const char* name;
    int lines;
    Pace pace;
    std::vector<JumpRow> rows;
    std::vector<int> seconds;  // the current line in second 0, 1, ... up to the end
    const char* passText;      // at the end
};

void expectPlayed(std::initializer_list<Song> songs) {
    for (const Song& c : songs) {
        SCOPED_TRACE(c.name);
        Stage stage;
        stage.settings.secondsPerLine = c.pace.seconds;
        stage.settings.passes = c.pace.passes;
        stage.settings.repeats = c.pace.repeats;
        std::copy(c.rows.begin(), c.rows.end(), stage.settings.rows.begin());
        ASSERT_TRUE(stage.start(c.lines));
        EXPECT_EQ(stage.play(static_cast<int>(c.seconds.size()) + 2 * c.pace.seconds), [&] {
            auto all = c.seconds;
            all.resize(all.size() + 2 * static_cast<std::size_t>(c.pace.seconds), all.back());
            return all;
        }());
        EXPECT_EQ(stage.surface.ends, 1);
        EXPECT_EQ(stage.surface.caption, "0:00");
        EXPECT_FALSE(stage.run.isRunning());
        EXPECT_EQ(toUtf8(stage.run.passText()), c.passText);
        EXPECT_EQ(stage.run.passesToCome(), 0);
    }
}

// Every second of whole songs. The last line stands twice, the second time as the line behind it;
// the step that ends a run still goes on by one.
TEST(StageRun, PlaysWholeSongs) {
    expectPlayed({
        {"straight", 4, {1, 1, false}, {}, {1, 2, 3, 4, 5, 6}, "1x"},
        {"two lines, every third second",
         2,
         {3, 1, false},
         {},
         {1, 1, 1, 2, 2, 2, 3, 3, 3, 4},
         "1x"},
        {"passes count only with the box", 2, {1, 5, false}, {}, {1, 2, 3, 4}, "1x"},
        {"three passes", 2, {1, 3, true}, {}, {1, 2, 3, 1, 2, 3, 1, 2, 3, 4}, "3x"},
        {"two jumps, two passes",
         6,
         {1, 2, true},
         {jump(3, 1, 1), jump(5, 3, 2)},
         {1, 2, 3, 2, 3, 4, 5, 4, 5, 4, 5, 6, 7,  // 3 goes to 1, then twice 5 to 3
          1, 2, 3, 2, 3, 4, 5, 4, 5, 4, 5, 6, 7,  // the same again
          8},
         "2x"},
        {"one jump leads to a later row's",
         5,
         {1, 1, false},
         {jump(2, 4, 1), jump(4, 1, 1)},
         {1, 2, 2, 3, 4, 5, 6, 7},
         "1x"},
        {"but not to a former row's",
         5,
         {1, 1, false},
         {jump(4, 1, 1), jump(2, 4, 1)},
         {1, 2, 5, 6, 7},
         "1x"},
        {"to itself", 4, {1, 1, false}, {jump(3, 3, 9)}, {1, 2, 3, 4, 5, 6}, "1x"},
        {"to the line before, until it is used up",
         4,
         {1, 1, false},
         {jump(3, 2, 3)},
         {1, 2, 3, 3, 3, 3, 4, 5, 6},
         "1x"},
        {"two rows of one line",
         3,
         {1, 1, false},
         {jump(2, 1, 1), jump(2, 1, 1)},
         {1, 2, 2, 2, 3, 4, 5},
         "1x"},
        {"a row that is off", 3, {1, 1, false}, {{false, 2, 1, 3}}, {1, 2, 3, 4, 5}, "1x"},
        {"forward over the end",
         4,
         {1, 1, false},
         {jump(2, 3, 1), jump(3, 9, 1)},
         {1, 2, 10},
         "1x"},
    });
}

// The rows on the page of the second example name lines of its song, which may change.
TEST(StageRun, TheProgrammedExamplePlaysItsChorusAfterEveryVerse) {
    const std::string data = MELVORIN_SOURCE_DIR "/data/";
    Stage stage;
    std::size_t row = 0;
    std::ifstream page(data + "help/example-2.md");
    for (std::string line; std::getline(page, line);) {
        int number = 0, from = 0, to = 0, times = 0;
        if (std::sscanf(line.c_str(), "| %d | %d | %d | %d |", &number, &from, &to, &times) == 4)
            stage.settings.rows.at(row++) = jump(from, to, times);
    }
    std::vector<std::string> song;
    std::ifstream chart(data + "examples/Greensleeves.chart");
    for (std::string line; std::getline(chart, line);)
        song.push_back(line);
    stage.settings.secondsPerLine = 4;
    ASSERT_TRUE(stage.start(static_cast<int>(song.size())));
    for (int seconds = 0; stage.run.isRunning() && seconds < 1000; ++seconds)
        stage.play(1);
    std::string sung;
    for (const int line : stage.surface.shown) {
        const auto place = static_cast<std::size_t>(line - 1);
        if (place < song.size() && song[place].starts_with("# "))
            sung += song[place].substr(2) + "; ";
    }
    EXPECT_EQ(sung, "Verse 1; Chorus; Verse 2; Chorus; Verse 3; Chorus; ");
    // As long as the page says.
    EXPECT_GT(stage.surface.shown.size() * 4, 4 * 60U);
    EXPECT_LT(stage.surface.shown.size() * 4, 5 * 60U);
}

TEST(StageRun, CountsOfAPass) {
    Stage stage;
    stage.settings.repeats = true;
    stage.settings.passes = 3;
    stage.settings.rows[4] = jump(2, 1, 2);
    stage.start(3);
    EXPECT_EQ(stage.run.lastLine(), 4);
    EXPECT_EQ(stage.run.passesLeft(), 3);
    EXPECT_EQ(stage.run.passesToCome(), 2);
    EXPECT_EQ(stage.run.passText(), u"");
    EXPECT_EQ(stage.run.jumpsLeft(4), 2);
    stage.play(7);  // 1 2 2 2 3 4, and line 1 again
    EXPECT_EQ(stage.run.currentLine(), 1);
    EXPECT_EQ(stage.run.passesLeft(), 2);
    EXPECT_EQ(stage.run.passesToCome(), 1);
    EXPECT_EQ(stage.run.passText(), u"2x");
    EXPECT_EQ(stage.run.jumpsLeft(4), 2);
    stage.play(2);
    EXPECT_EQ(stage.run.jumpsLeft(4), 1);
    stage.run.showPanel(stage.settings);
    EXPECT_EQ(stage.run.jumpsLeft(4), 2);
    EXPECT_FALSE(stage.run.isRunning());

    stage.surface.shown.clear();
    EXPECT_FALSE(stage.start(1));
    EXPECT_FALSE(stage.start(0));
    stage.play(3);
    EXPECT_EQ(stage.surface.shown, std::vector<int>());
}

TEST(StageRun, Captions) {
    struct Case {
        std::vector<std::int64_t> ticks;  // seconds in which a tick comes
        const char* caption;
    };
    const Case cases[] = {
        {{0}, " 0:00 "},
        {{9}, " 0:09 "},
        {{10}, " 0:10 "},
        {{40, 41}, " 0:41 1x"},
        {{59}, " 0:59 "},
        {{60}, " 1:00 "},
        {{60, 61}, " 1:01 "},
        {{60, 119}, " 1:59 "},
        {{60, 120}, " 2:00 "},
        {{60, 120, 129}, " 2:09 "},
        // Nobody saw the minute begin.
        {{59, 61}, " 0:59 "},
        {{59, 61, 120}, " 0:59 "},
        {{59, 60, 59}, " 1:00 "},
    };
    for (const Case& c : cases) {
        Stage stage;
        stage.settings.secondsPerLine = 40;
        stage.start(100);
        for (const std::int64_t second : c.ticks)
            stage.tickAt(second);
        EXPECT_EQ(stage.surface.caption, c.caption);
    }
    // In the second pass; a tick shows the pass that it found.
    Stage stage;
    stage.settings.secondsPerLine = 11;
    stage.settings.repeats = true;
    stage.settings.passes = 2;
    stage.start(4);
    stage.play(66);
    EXPECT_EQ(stage.surface.caption, " 1:05 2x");
    stage.play(2);
    EXPECT_EQ(stage.surface.caption, " 1:07 2x");
}

TEST(StageRun, PauseBeginsTheIntervalAndTheMinutesAnew) {
    Stage stage;
    stage.settings.secondsPerLine = 4;
    stage.start(50);
    stage.play(63);
    EXPECT_EQ(stage.run.currentLine(), 16);
    stage.run.pause();
    EXPECT_EQ(stage.surface.caption, " Paused");
    EXPECT_TRUE(stage.run.isPaused());
    stage.play(100);
    EXPECT_EQ(stage.run.currentLine(), 16);
    EXPECT_EQ(stage.surface.caption, " Paused");
    stage.run.resume();
    EXPECT_EQ(stage.play(6), (std::vector<int>{16, 16, 16, 16, 17, 17}));
    EXPECT_EQ(stage.surface.caption, " 0:05 1x");
}

TEST(StageRun, ASecondThatNoTickSeesIsNeverDueAgain) {
    Stage stage;
    stage.settings.secondsPerLine = 3;
    stage.start(50);
    for (const std::int64_t second : {2, 4, 5, 6, 7, 9, 12})
        stage.tickAt(second);
    EXPECT_EQ(stage.run.currentLine(), 1);
    EXPECT_EQ(stage.run.dueSecond(), 3);
}

// An hour, with ticks at any time but never more than 200 ms apart.
TEST(StageRun, NoDueSecondIsMissedInAnHour) {
    std::mt19937 random(7);
    for (const int pace : {1, 2, 7, 60}) {
        Stage stage;
        stage.settings.secondsPerLine = pace;
        stage.start(5000);
        const std::int64_t start = stage.clock.ms;
        std::vector<std::int64_t> late;
        while (stage.clock.ms < start + 3'600'000) {
            const auto before = stage.surface.shown.size();
            stage.run.tick();
            const std::int64_t due = static_cast<std::int64_t>(before + 1) * pace * 1000;
            if (stage.surface.shown.size() > before && stage.clock.ms - start - due >= 200)
                late.push_back(due);
            stage.clock.ms += std::uniform_int_distribution<int>(1, 200)(random);
        }
        EXPECT_EQ(stage.surface.shown.size(), static_cast<std::size_t>(3599 / pace));
        EXPECT_EQ(late, std::vector<std::int64_t>()) << pace;
        EXPECT_EQ(stage.surface.caption.substr(0, 4), " 59:");
    }
}

// 30 lines, so the line behind the last is 31.
TEST(StageRun, Keys) {
    struct Case {
        int line;
        RunKey key;
        int after;
        int ends;
    };
    const Case cases[] = {
        {5, RunKey::OneLine, 7, 0},     {5, RunKey::FiveLines, 11, 0},
        {5, RunKey::TenLines, 16, 0},   {20, RunKey::TenLines, 31, 0},
        {21, RunKey::TenLines, 32, 1},  {22, RunKey::OneLine, 24, 1},
        {22, RunKey::FiveLines, 28, 1}, {22, RunKey::TenLines, 33, 2},
        {29, RunKey::OneLine, 31, 1},   {30, RunKey::OneLine, 32, 2},
        {31, RunKey::OneLine, 31, 1},   {31, RunKey::FiveLines, 37, 2},
        {31, RunKey::TenLines, 42, 2},
    };
    for (const Case& c : cases) {
        Stage stage;
        stage.start(30);
        stage.playTo(c.line);
        stage.run.press(c.key);
        EXPECT_EQ(stage.run.currentLine(), c.after) << c.line;
        EXPECT_EQ(stage.surface.ends, c.ends) << c.line;
        EXPECT_EQ(stage.run.isRunning(), c.ends == 0) << c.line;
        const int line = stage.run.currentLine();
        if (c.ends > 0)
            stage.run.press(RunKey::OneLine);
        EXPECT_EQ(stage.run.currentLine(), line) << "after the end";
    }
    // Few lines: every key ends the run. Paused: none does anything.
    Stage stage;
    stage.start(9);
    stage.run.pause();
    stage.run.press(RunKey::OneLine);
    EXPECT_EQ(stage.run.currentLine(), 1);
    stage.run.resume();
    stage.run.press(RunKey::OneLine);
    EXPECT_EQ(stage.surface.ends, 1);
    // A key from the first line to the end of the first pass: that is the second pass.
    stage.settings.repeats = true;
    stage.settings.passes = 2;
    stage.start(10);
    stage.run.press(RunKey::TenLines);
    EXPECT_EQ(stage.run.passText(), u"2x");
    EXPECT_EQ(stage.run.currentLine(), 1);
    stage.settings.repeats = false;
    // A key may land on a jump; its step takes it.
    stage.settings.rows[0] = jump(6, 2, 1);
    stage.start(30);
    stage.run.press(RunKey::FiveLines);
    EXPECT_EQ(stage.run.currentLine(), 3);
}

// ---- What the windows show --------------------------------------------------------------------

TEST(Stage, Texts) {
    EXPECT_EQ(cursorLineText(7), u" 07");
    EXPECT_EQ(cursorLineText(9), u" 09");
    EXPECT_EQ(cursorLineText(10), u" 10");
    EXPECT_EQ(cursorLineText(5000), u" 5000");
    EXPECT_EQ(shownLine(5, 4), 4);
    EXPECT_EQ(shownLine(0, 4), 1);
    EXPECT_EQ(shownLine(3, 4), 3);
    EXPECT_EQ(shownLine(1, 0), 1);
}

TEST(Stage, WindowsStandInSight) {
    struct Case {
        Area screen;
        Area panel;  // 600 by 400
        Area bar;    // 200 by 60
    };
    const Case cases[] = {
        {{0, 0, 1280, 1024}, {680, 624, 600, 400}, {1030, 914, 200, 60}},
        {{0, 0, 800, 600}, {200, 200, 600, 400}, {550, 490, 200, 60}},
        {{1280, 0, 1920, 1080}, {2600, 680, 600, 400}, {2950, 970, 200, 60}},
        {{-1024, -300, 1024, 768}, {-600, 68, 600, 400}, {-250, 358, 200, 60}},
        // Too small: the upper left corner is what stays.
        {{10, 20, 320, 100}, {10, 20, 600, 400}, {80, 20, 200, 60}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(placePanel(c.screen, 600, 400), c.panel) << c.screen.left;
        EXPECT_EQ(placeBar(c.screen, 200, 60), c.bar) << c.screen.left;
    }
    EXPECT_EQ(placeText(800, 600, 96), (Area{0, 7, 800, 593}));
    EXPECT_EQ(placeText(800, 5, 192), (Area{0, 13, 800, 0}));
}

TEST(Stage, Zoom) {
    int percent = 100;
    for (int i = 0; i < 3; ++i)
        percent = zoomed(percent, true);
    EXPECT_EQ(percent, 150);
    for (int i = 0; i < 3; ++i)
        percent = zoomed(percent, false);
    EXPECT_EQ(percent, 100);
    EXPECT_EQ(zoomed(500, true), 500);
    EXPECT_EQ(zoomed(50, false), 50);
}

TEST(Stage, PointerRests) {
    struct Event {
        std::int64_t ms;
        int x;
        bool isRunning;
        bool hidden;
    };
    const Event events[] = {
        {0, 5, false, false},   {5000, 5, false, false}, {5100, 5, true, false},
        {7099, 5, true, false}, {7100, 5, true, true},   {7200, 6, true, false},
        {9199, 6, true, false}, {9200, 6, true, true},   {9300, 6, false, false},
        {9400, 6, true, false},
    };
    PointerRest rest;
    for (const Event& event : events)
        EXPECT_EQ(rest.isHidden(event.ms, event.x, 0, event.isRunning), event.hidden) << event.ms;
}

}  // namespace
}  // namespace melvorin
