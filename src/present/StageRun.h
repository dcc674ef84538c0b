// A run of the full-screen view: the text moves up by itself, line by line, at the musician's
// pace, with programmed jumps and passes through the whole text. The windows only show it.
//
// Lines count from 1. The names in capitals are the panel's own words for what they hold.
#pragma once

#include <array>
#include <cstdint>

#include "present/ClsElapsed.h"
#include "present/StageKeys.h"

namespace melvorin {

inline constexpr std::size_t kJumpRows = 5;

// One programmed jump. The step's own move follows it: a jump to line 3 shows line 4.
struct JumpRow {
    bool on = false;  // CK
    int from = 0;
    int to = 0;
    int times = 1;
};

// What the panel's lists and boxes say.
struct RunSettings {
    int secondsPerLine = 1;
    int passes = 1;
    bool repeats = false;  // Check1: without it there is one pass, whatever `passes` says
    std::array<JumpRow, kJumpRows> rows{};
};

// The windows around a run.
class StageSurface {
  public:
    virtual ~StageSurface() = default;
    // Brings a line to the top of the view. The number may be beyond the text on both sides.
    virtual void showLine(int line) = 0;
    // The caption of the floating bar; called when it changes.
    virtual void showCaption(TextView caption) = 0;
    // The run is over: the bar goes and the panel comes back.
    virtual void runEnded() = 0;
};

class StageRun {
  public:
    // What is given outlives the run.
    StageRun(Clock& clock, StageSurface& surface) : elapsed_(clock), surface_(surface) {}

    // Takes over how many lines the text has. The run goes on one line beyond them, so that the
    // last line stands as long as every other.
    // kept: one-line-beyond
    void setLineCount(int lines) { L3_ = lines + 1; }

    // Begins at line 1. False, and nothing happens, for a text of less than two lines.
    bool start(const RunSettings& settings, int linesInText);
    void pause();
    // A whole line interval begins anew, and so do the minutes.
    void resume();
    // The panel is shown: the clock stops and the jumps have all their times again.
    void showPanel(const RunSettings& settings);
    // The clock's tick, as often as the machine likes. A line is due in a certain second of the
    // clock, and moves when a tick sees that second; so ticks have to come in every second.
    void tick();
    // Moves 1, 5 or 10 lines and one more. Where ten lines or less are left, the run ends first.
    // Nothing happens unless the clock runs.
    void press(RunKey key);

    bool isRunning() const { return Timer1_; }
    bool isPaused() const { return paused_; }
    int currentLine() const { return LC_; }
    int lastLine() const { return L3_; }
    int passesLeft() const { return L2_; }
    int passesToCome() const { return LzR_; }
    int jumpsLeft(std::size_t row) const { return LX_[row]; }
    std::int64_t dueSecond() const { return lblElapsed2_; }
    const Text& passText() const { return LB_; }
    const Text& caption() const { return caption_; }

  private:
    void step();
    void countPass();
    void takeJumps();
    void endRun();
    void loadJumps();
    void showClock(std::int64_t seconds);
    void showCaption(TextView caption);

    ClsElapsed elapsed_;
    StageSurface& surface_;
    RunSettings settings_;
    bool Timer1_ = false;  // the clock runs
    bool paused_ = false;
    std::int64_t lblElapsed2_ = 0;     // the second in which the next step is due
    std::int64_t L7_ = 0;              // minutes
    int LC_ = 0;                       // the line at the top
    int L2_ = 0;                       // passes, this one included
    int L3_ = 0;                       // one more than the text has lines
    int LzR_ = 0;                      // passes still to come
    int pass_ = 0;                     // the number in LB
    std::array<int, kJumpRows> LX_{};  // jumps still to be made
    Text LB_;                          // "1x", "2x", ...; empty before the first step
    Text caption_;
};

// The cursor's line as the panel shows it: a blank and at least two digits.
Text cursorLineText(int line);

// The line of a text of `lines` that a run at `line` shows at the top.
int shownLine(int line, int lines);

}  // namespace melvorin
