// Runs before they are played, runs by duration, and runs that somebody turns by hand.
// MELVORIN_SEED gives the invented runs another course.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <random>
#include <tuple>

#include "StandIns.h"
#include "present/LineWidths.h"
#include "present/RunPlan.h"
#include "present/SongSections.h"
#include "present/StageRun.h"

namespace melvorin {
namespace {

std::string utf8(TextView text) {
    return toUtf8(text);
}

class LoggedSurface : public StageSurface {
  public:
    void showLine(int line) override { shown.push_back(line); }
    void showCaption(TextView) override {}
    void showNote(const RunNote& note) override { notes.push_back(note); }
    void runEnded() override { ++ends; }

    std::vector<int> shown;
    std::vector<RunNote> notes;
    int ends = 0;
};

struct Stage {
    testing::ScriptedClock clock;
    LoggedSurface surface;
    StageRun run{clock, surface};

    // Ticks every `stepMs` until the end; the time that it took.
    std::int64_t playToTheEnd(std::int64_t stepMs = 100) {
        const std::int64_t start = clock.ms;
        while (run.isRunning()) {
            clock.ms += stepMs;
            run.tick();
        }
        return clock.ms - start;
    }
};

RunSettings settingsOf(std::initializer_list<JumpRow> rows, int passes = 1) {
    RunSettings settings;
    settings.repeats = passes > 1;
    settings.passes = passes;
    std::copy(rows.begin(), rows.end(), settings.rows.begin());
    return settings;
}

std::uint32_t seed() {
    const char* value = std::getenv("MELVORIN_SEED");
    return value == nullptr ? 18U : static_cast<std::uint32_t>(std::strtoul(value, nullptr, 10));
}

RunSettings inventedSettings(std::mt19937& engine, int lines) {
    const auto below = [&](int count) {
        return static_cast<int>(engine() % static_cast<std::uint32_t>(count));
    };
    RunSettings settings;
    settings.repeats = below(3) == 0;
    settings.passes = 1 + below(3);
    for (JumpRow& row : settings.rows)
        row = {below(2) == 0, 1 + below(lines), 1 + below(lines), 1 + below(3)};
    return settings;
}

// ---- The plan ---------------------------------------------------------------------------------

TEST(RunPlan, IsWhatTheRunThenShows) {
    std::mt19937 engine(seed());
    for (int i = 0; i < 2000; ++i) {
        const int lines = 2 + static_cast<int>(engine() % 40);
        const RunSettings settings = inventedSettings(engine, lines);
        const RunPlan plan = planRun(settings, lines);
        Stage stage;
        stage.run.setLineCount(lines);
        ASSERT_TRUE(stage.run.start(settings, lines));
        stage.playToTheEnd(1000);
        std::vector<int> planned;
        for (const RunPart& part : plan.parts) {
            for (int line = part.first; line <= part.last; ++line)
                planned.push_back(line);
        }
        // The run begins at line 1 without showing it anew, and its last step goes one further.
        std::vector<int> shown = {1};
        shown.insert(shown.end(), stage.surface.shown.begin(), stage.surface.shown.end() - 1);
        ASSERT_EQ(planned, shown) << "run " << i;
        ASSERT_EQ(plan.steps, static_cast<std::int64_t>(shown.size()));
    }
}

TEST(RunPlan, InWords) {
    // A jump to line 34 shows line 35; the song has 44 lines.
    const RunSettings refrain = settingsOf({{true, 15, 34, 1}, {true, 44, 15, 1}});
    RunSettings slow = refrain;
    slow.secondsPerLine = 5;
    struct Case {
        RunSettings settings;
        int lines;
        const char* order;
        const char* idle;
    };
    RunSettings timed = refrain;
    timed.wholeMs = 271'000;
    RunSettings idle = settingsOf({{true, 3, 1, 1}, {false, 99, 1, 1}, {true, 99, 1, 1}});
    RunSettings both = settingsOf({{true, 98, 1, 1}, {true, 99, 1, 1}});
    const Case cases[] = {
        // 15 lines, then 10, then 29 and the one behind the text: 55 seconds.
        {refrain, 44, "1-15, 35-44, 16-44; 0:55", ""},
        {slow, 44, "1-15, 35-44, 16-44; 4:35", ""},
        {timed, 44, "1-15, 35-44, 16-44; 4:31", ""},
        {settingsOf({}, 2), 9, "1-9, 1-9; 0:20", ""},
        {idle, 9, "1-3, 2-9; 0:12", "Row 3 never jumps."},
        {both, 9, "1-9; 0:10", "Rows 1 and 2 never jump."},
        // A row that leads to itself is a pause of so many lines.
        {settingsOf({{true, 2, 1, 3}}), 3, "1-2, 2, 2, 2-3; 0:07", ""},
    };
    for (const Case& row : cases) {
        const RunPlan plan = planRun(row.settings, row.lines);
        EXPECT_EQ(utf8(planInWords(plan, row.settings, row.lines)), row.order);
        EXPECT_EQ(utf8(idleRowsInWords(plan, row.settings)), row.idle);
    }
    // The longest run that the lists allow, in a song of 10,000 lines, is planned at once.
    const JumpRow back{true, 9999, 1, 99};
    const RunSettings longest = settingsOf({back, back, back, back, back}, 99);
    const RunPlan plan = planRun(longest, 10'000);
    EXPECT_GT(plan.steps, 90'000'000);
    EXPECT_EQ(plan.parts.size(), RunPlan::kMostParts);
    EXPECT_TRUE(planInWords(plan, longest, 10'000).find(u"\u2026") != Text::npos);
    // The panel says so; not of a long song, and not of what would circle but never does.
    const char* circles = "The rows lead in circles for more than ten hours; Esc ends it.";
    EXPECT_EQ(utf8(circlesInWords(plan, longest)), circles);
    RunSettings once = settingsOf({back}, 1);
    for (const auto& [times, seconds, says] :
         {std::tuple(2, 1, ""), std::tuple(2, 2, circles), std::tuple(1, 1, "")}) {
        once.rows[0].times = times;
        once.secondsPerLine = seconds;
        EXPECT_EQ(utf8(circlesInWords(planRun(once, 10'000), once)), says) << times << seconds;
    }
    const RunSettings beyond = [] {
        RunSettings settings = settingsOf({{true, 11, 1, 99}});
        settings.secondsPerLine = 60;
        return settings;
    }();
    EXPECT_EQ(utf8(circlesInWords(planRun(beyond, 9), beyond)), "") << "the row is beyond the song";
    EXPECT_EQ(utf8(circlesInWords(planRun(settingsOf({}, 99), 10'000), settingsOf({}, 99))), "");
}

TEST(RunPlan, MinutesAsPeopleWriteThem) {
    const std::pair<TextView, std::int64_t> good[] = {
        {u"4:30", 270'000},      {u" 4.30 ", 270'000},      {u"4", 240'000},      {u"0:01", 1000},
        {u"1:02:03", 3'723'000}, {u"10:00:00", 36'000'000}, {u"90:00", 5'400'000}};
    for (const auto& [text, ms] : good)
        EXPECT_EQ(readMinutes(text), ms) << utf8(text);
    for (const TextView bad : {u"", u"0", u"0:00", u"4:60", u"4:", u":30", u"-1", u"four", u"4:3x",
                               u"10:00:01", u"1:2:3:4", u"99999999999999999999"})
        EXPECT_FALSE(readMinutes(bad)) << utf8(bad);
    EXPECT_EQ(utf8(minutesText(59'499)), "0:59");
    EXPECT_EQ(utf8(minutesText(59'500)), "1:00");
    EXPECT_EQ(utf8(minutesText(3'723'000)), "1:02:03");
}

// ---- By duration ------------------------------------------------------------------------------

TEST(RunByDuration, EndsWhenItShall) {
    std::mt19937 engine(seed());
    for (int i = 0; i < 300; ++i) {
        const int lines = 2 + static_cast<int>(engine() % 200);
        RunSettings settings = inventedSettings(engine, lines);
        settings.wholeMs = 1000 + static_cast<std::int64_t>(engine() % 600'000);
        Stage stage;
        stage.clock.ms = static_cast<std::int64_t>(engine() % 1'000'000);
        stage.run.setLineCount(lines);
        ASSERT_TRUE(stage.run.start(settings, lines));
        // A pause costs nothing of the time; ticks come when the machine likes.
        std::int64_t played = 0;
        while (stage.run.isRunning()) {
            const std::int64_t step = 1 + static_cast<std::int64_t>(engine() % 30);
            stage.clock.ms += step;
            played += step;
            stage.run.tick();
            if (stage.run.isRunning() && engine() % 1000 == 0) {
                stage.run.pause();
                stage.clock.ms += 5000;
                stage.run.resume();
            }
        }
        ASSERT_NEAR(static_cast<double>(played), static_cast<double>(settings.wholeMs), 31)
            << "run " << i;
        ASSERT_EQ(stage.surface.ends, 1);
        // Steps that are due between two ticks are seen as one.
        const std::int64_t steps = planRun(settings, lines).steps;
        const auto shown = static_cast<std::int64_t>(stage.surface.shown.size());
        ASSERT_LE(shown, steps);
        ASSERT_TRUE(shown == steps || settings.wholeMs / steps <= 30) << "run " << i;
    }
}

TEST(RunByDuration, MakesUpForAMomentThatNoTickSaw) {
    RunSettings settings;
    settings.wholeMs = 10'000;  // nine lines and one beyond: a second each
    Stage stage;
    stage.run.setLineCount(9);
    ASSERT_TRUE(stage.run.start(settings, 9));
    stage.clock.ms = 3500;
    stage.run.tick();
    EXPECT_EQ(stage.run.currentLine(), 4);
    stage.clock.ms = 3999;
    stage.run.tick();
    EXPECT_EQ(stage.run.currentLine(), 4);
    stage.clock.ms = 4000;
    stage.run.tick();
    EXPECT_EQ(stage.run.currentLine(), 5);
}

// ---- Turned by hand, gone on, counted in ------------------------------------------------------

TEST(StageRun, GoesOnFromTheLineThatSomebodyTurnsTo) {
    RunSettings settings = settingsOf({{true, 20, 5, 1}});
    settings.secondsPerLine = 3;
    Stage stage;
    stage.run.setLineCount(40);
    ASSERT_TRUE(stage.run.start(settings, 40));
    stage.clock.ms = 2500;
    stage.run.tick();
    stage.run.turnTo(19);
    EXPECT_EQ(stage.run.currentLine(), 19);
    // A whole interval from the second in which it was turned.
    const auto lineAt = [&](std::int64_t second) {
        stage.clock.ms = second * 1000;
        stage.run.tick();
        return stage.run.currentLine();
    };
    EXPECT_EQ(lineAt(4), 19);
    EXPECT_EQ(lineAt(5), 20);
    EXPECT_EQ(lineAt(8), 6) << "the jumps go on";
    stage.run.pause();
    stage.run.turnTo(30);
    EXPECT_EQ(stage.run.currentLine(), 30);
    stage.run.resume();
    stage.clock.ms += 3000;
    stage.run.tick();
    EXPECT_EQ(stage.run.currentLine(), 31);
}

TEST(StageRun, FromHereKeepsTheCountsOfTheRunThatWasLeft) {
    const RunSettings settings = settingsOf({{true, 10, 2, 2}}, 2);
    Stage stage;
    stage.run.setLineCount(20);
    ASSERT_TRUE(stage.run.start(settings, 20));
    while (stage.run.jumpsLeft(0) == 2) {
        stage.clock.ms += 1000;
        stage.run.tick();
    }
    EXPECT_EQ(stage.run.jumpsLeft(0), 1);
    stage.run.showPanel(settings);
    EXPECT_EQ(stage.run.jumpsLeft(0), 2) << "the panel shows all again";
    ASSERT_TRUE(stage.run.startAt(8, settings, 20));
    EXPECT_EQ(stage.run.currentLine(), 8);
    EXPECT_EQ(stage.run.jumpsLeft(0), 1);
    EXPECT_EQ(stage.run.passesToCome(), 1);
    // With other rows, after an end, and for another song, all counts are new.
    stage.run.showPanel(settings);
    RunSettings other = settings;
    other.rows[0].to = 3;
    ASSERT_TRUE(stage.run.startAt(8, other, 20));
    EXPECT_EQ(stage.run.jumpsLeft(0), 2);
    stage.playToTheEnd(1000);
    ASSERT_TRUE(stage.run.startAt(8, other, 20));
    EXPECT_EQ(stage.run.jumpsLeft(0), 2);
    stage.run.showPanel(other);
    stage.run.forget();
    ASSERT_TRUE(stage.run.startAt(9, other, 20));
    EXPECT_EQ(stage.run.jumpsLeft(0), 2);
    EXPECT_FALSE(stage.run.startAt(1, other, 1));
}

TEST(StageRun, CountsInAndSaysWhatComes) {
    RunSettings settings = settingsOf({{true, 8, 3, 1}});
    settings.countIn = 2;
    Stage stage;
    stage.run.setLineCount(12);
    ASSERT_TRUE(stage.run.start(settings, 12));
    std::vector<int> lines;
    for (int second = 1; second <= 10; ++second) {
        stage.clock.ms = second * 1000;
        stage.run.tick();
        lines.push_back(stage.run.currentLine());
    }
    EXPECT_EQ(lines, (std::vector<int>{1, 1, 2, 3, 4, 5, 6, 7, 8, 4}));
    // The jump is five lines away from line 4 on, and made from line 8.
    const std::vector<RunNote> notes = {{2, {}}, {1, {}}, {0, {}}, {0, 4}, {0, {}}};
    EXPECT_EQ(stage.surface.notes, notes);

    const SectionLabels labels = sectionLabels(
        u"Title\r\r[Verse 1]\rC  G\rwords\r\rChorus:\rF  C\rwords and: words\rIntro: C G");
    EXPECT_EQ(labels, (SectionLabels{{3, u"Verse 1"}, {7, u"Chorus"}, {10, u"Intro"}}));
    EXPECT_EQ(utf8(noteInWords({0, 8}, labels)), "then line 8, Chorus");
    EXPECT_EQ(utf8(noteInWords({0, 2}, labels)), "then line 2");
    EXPECT_EQ(utf8(noteInWords({3, {}}, labels)), "Count-in 3");
    EXPECT_EQ(utf8(noteInWords({}, labels)), "");
    EXPECT_EQ(utf8(labelsInWords(labels)), "3  Verse 1\r\n7  Chorus\r\n10  Intro");
}

// Ten thousand lines in a minute, on a machine that takes longer to draw one than it has.
TEST(RunByDuration, DrawsNoMoreThanItHasTimeFor) {
    class Slow : public LoggedSurface {
      public:
        explicit Slow(testing::ScriptedClock& given) : clock(given) {}
        void showLine(int line) override {
            LoggedSurface::showLine(line);
            clock.ms += 9;
        }
        testing::ScriptedClock& clock;
    };
    for (const auto& [lines, wholeMs] : {std::pair(10'000, 60'000), std::pair(10'000, 1000)}) {
        testing::ScriptedClock clock;
        Slow surface(clock);
        StageRun run(clock, surface);
        RunSettings settings;
        settings.wholeMs = wholeMs;
        run.setLineCount(lines);
        ASSERT_TRUE(run.start(settings, lines));
        while (run.isRunning()) {
            clock.ms += 10;
            const std::size_t before = surface.shown.size();
            run.tick();
            ASSERT_LE(surface.shown.size(), before + 1) << "a tick is one picture";
        }
        EXPECT_LE(clock.ms, wholeMs + 40);  // a tick, and a picture or two
    }
}

// A size that takes long to change costs a run by duration nothing, no run its count-in, and is no
// step to go back over.
TEST(RunByDuration, IsNotHeldUp) {
    RunSettings settings;
    settings.wholeMs = 210'000;  // 20 lines and the one beyond: 10 seconds each
    settings.countIn = 4;
    Stage stage;
    stage.run.setLineCount(20);
    const auto at = [&](std::int64_t ms) {
        stage.clock.ms = ms;
        stage.run.tick();
        return stage.run.currentLine();
    };
    ASSERT_TRUE(stage.run.start(settings, 20));
    stage.run.heldUp();
    EXPECT_EQ(stage.run.note().countIn, 4);
    settings.countIn = 0;
    ASSERT_TRUE(stage.run.start(settings, 20));
    stage.clock.ms = 9000;
    stage.run.heldUp();
    EXPECT_EQ(at(9999), 1);
    EXPECT_EQ(at(10'000), 2);

    settings.wholeMs = 0;
    settings.secondsPerLine = 10;
    stage.clock.ms = 0;
    ASSERT_TRUE(stage.run.start(settings, 20));
    stage.run.advance(5);
    stage.clock.ms = 12'000;
    stage.run.heldUp();
    EXPECT_EQ(at(21'900), 6);
    EXPECT_EQ(at(22'000), 7);
    stage.run.goBack(2);
    EXPECT_EQ(stage.run.currentLine(), 5);
}

// ---- By pedal ---------------------------------------------------------------------------------

TEST(StageRun, APedalLeadsOnByTheJumpsAndBackTheSameWay) {
    // After line 6 back to line 3, twice; all of it twice. The lines by hand:
    const std::vector<int> lines = {1, 2, 3, 4, 5, 6, 3, 4, 5, 6, 3, 4, 5, 6, 7, 8,
                                    1, 2, 3, 4, 5, 6, 3, 4, 5, 6, 3, 4, 5, 6, 7, 8};
    RunSettings settings = settingsOf({{true, 6, 2, 2}}, 2);
    settings.secondsPerLine = 3;
    Stage stage;
    stage.run.setLineCount(8);
    ASSERT_TRUE(stage.run.start(settings, 8));
    const auto at = [&](std::size_t i) {
        EXPECT_EQ(stage.run.currentLine(), lines[i]) << "line " << i;
    };
    for (std::size_t i = 1; i < lines.size(); ++i) {
        stage.run.advance(1);
        at(i);
    }
    EXPECT_EQ(utf8(stage.run.passText()), "2x");
    stage.run.advance(1);
    stage.run.advance(10);
    at(lines.size() - 1);
    EXPECT_EQ(stage.surface.ends, 0) << "a foot does not end the song";
    for (std::size_t i = lines.size() - 1; i > 0; --i) {
        stage.run.goBack(1);
        at(i - 1);
    }
    EXPECT_EQ(stage.run.jumpsLeft(0), 2);
    EXPECT_EQ(stage.run.passesToCome(), 1);
    stage.run.goBack(5);
    at(0);
    // By fives and tens, on and back, the clock in between; a pause keeps all of it.
    stage.run.advance(10);
    at(10);
    stage.run.goBack(5);
    at(5);
    stage.clock.ms += 3000;
    stage.run.tick();
    at(6);
    stage.run.pause();
    stage.run.goBack(1);
    at(5);
    stage.run.advance(10);
    at(15);
    stage.run.advance(5);
    at(20);
    stage.run.goBack(5);
    at(15);
    stage.run.resume();
    stage.clock.ms += 2999;
    stage.run.tick();
    at(15);
    stage.clock.ms += 1;
    stage.run.tick();
    EXPECT_EQ(stage.run.currentLine(), 9) << "the last line stands as long as every other";
    stage.run.goBack(1);
    at(14);
    stage.run.turnTo(2);
    stage.run.goBack(1);
    at(14);
}

// Before the line where it began, there is only the song.
TEST(StageRun, APedalBeforeTheFirstStepAndDuringTheCountIn) {
    RunSettings settings;
    settings.countIn = 4;
    Stage stage;
    stage.run.setLineCount(30);
    stage.run.advance(1);
    EXPECT_TRUE(stage.surface.shown.empty()) << "no run is on";
    ASSERT_TRUE(stage.run.startAt(12, settings, 30));
    EXPECT_EQ(stage.run.note().countIn, 4);
    stage.run.goBack(5);
    EXPECT_EQ(stage.run.currentLine(), 7);
    EXPECT_EQ(stage.run.note().countIn, 0);
    stage.run.goBack(10);
    EXPECT_EQ(stage.run.currentLine(), 1);
    stage.run.press(RunKey::OneLine);
    stage.run.goBack(1);  // one key, one step back
    stage.run.advance(100);
    EXPECT_EQ(stage.run.currentLine(), 30);
    EXPECT_EQ(stage.surface.shown, (std::vector<int>{7, 1, 3, 1, 30}));
}

TEST(StageRun, APedalShowsWhatTheClockWouldShow) {
    std::mt19937 engine(seed());
    for (int i = 0; i < 300; ++i) {
        const int lines = 2 + static_cast<int>(engine() % 30);
        const RunSettings settings = inventedSettings(engine, lines);
        Stage byClock;
        byClock.run.setLineCount(lines);
        ASSERT_TRUE(byClock.run.start(settings, lines));
        byClock.playToTheEnd(1000);
        // Without the line beyond the text, which shows the last one again.
        std::vector<int> wanted = {1};
        std::copy_if(byClock.surface.shown.begin(), byClock.surface.shown.end() - 1,
                     std::back_inserter(wanted), [lines](int line) { return line <= lines; });
        Stage byFoot;
        byFoot.run.setLineCount(lines);
        ASSERT_TRUE(byFoot.run.start(settings, lines));
        std::vector<int> shown = {1};
        for (std::size_t press = 1; press < wanted.size(); ++press) {
            byFoot.run.advance(1);
            shown.push_back(byFoot.run.currentLine());
        }
        ASSERT_EQ(shown, wanted) << "run " << i;
        std::vector<int> back = {byFoot.run.currentLine()};
        for (std::size_t press = 1; press < wanted.size(); ++press) {
            byFoot.run.goBack(1);
            back.push_back(byFoot.run.currentLine());
        }
        std::reverse(back.begin(), back.end());
        ASSERT_EQ(back, wanted) << "run " << i;
    }
}

// ---- Fit Width --------------------------------------------------------------------------------

TEST(LineWidths, CountsCellsAndSizes) {
    // The third line is the longest, the first the widest; the second is set small in a group.
    constexpr char song[] =
        "{\\rtf1\\ansi{\\fonttbl{\\f0 Courier New;}}\\f0\\fs60 A large title\\par "
        "{\\fs10 what is written small and goes on}\\fs20\\par "
        "a line that has thirty letters\\par short}";
    const Text text =
        u"A large title\rwhat is written small and goes on\ra line that has thirty "
        u"letters\rshort";
    EXPECT_EQ(widestLines(song, text, 3), (std::vector<std::int32_t>{0, 2, 1}));
    // What the source does not explain is judged by its cells.
    EXPECT_EQ(widestLines("{\\rtf1 other}", text, 2), (std::vector<std::int32_t>{1, 2}));
    EXPECT_EQ(widestLines("", u"", 5), std::vector<std::int32_t>{0});
}

}  // namespace
}  // namespace melvorin
