// A run of the full-screen view: the text moves up by itself, line by line, at the musician's
// pace, with programmed jumps and passes through the whole text. The windows only show it.
//
// Lines count from 1. The names in capitals are the panel's own words for what they hold.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>

#include "present/ClsElapsed.h"
#include "present/RunPath.h"
#include "present/StageKeys.h"

namespace melvorin {

// What the bar says besides the clock.
struct RunNote {
    int countIn = 0;               // steps until the first line goes; 0: it goes
    std::optional<int> next = {};  // the line that a jump or a new pass soon leads to

    friend bool operator==(const RunNote&, const RunNote&) = default;
};

// The windows around a run.
class StageSurface {
  public:
    virtual ~StageSurface() = default;
    // Brings a line to the top of the view. The number may be beyond the text on both sides.
    virtual void showLine(int line) = 0;
    // The caption of the floating bar; called when it changes.
    virtual void showCaption(TextView caption) = 0;
    // Called when it changes.
    virtual void showNote(const RunNote& note) = 0;
    // The run is over: the bar goes and the panel comes back.
    virtual void runEnded() = 0;
};

class StageRun {
  public:
    // What is given outlives the run.
    StageRun(Clock& clock, StageSurface& surface) : elapsed_(clock), surface_(surface) {}

    void setLineCount(int lines) { path_.setLineCount(lines); }

    // Begins at line 1. False, and nothing happens, for a text of less than two lines.
    bool start(const RunSettings& settings, int linesInText);
    // Begins at any line, the rows with the counts that they had when a run of the same rows was
    // left, or else with all.
    bool startAt(int line, const RunSettings& settings, int linesInText);
    void pause();
    // A whole line interval begins anew, and so do the minutes.
    void resume();
    // The panel is shown: the clock stops and the jumps have all their times again.
    void showPanel(const RunSettings& settings);
    // The clock's tick, as often as the machine likes. A line is due in a certain second of the
    // clock, and moves when a tick sees that second; so ticks have to come in every second. By
    // duration every step has a moment of its own, and one that is late makes no later one so.
    void tick();
    // Something has kept the clock from being looked at: the second in which the line was due may
    // have passed unseen. By duration the next tick makes up for it.
    void heldUp();
    // No run was left that could be gone on with.
    void forget() { left_.reset(); }
    // Somebody has turned to another line, the run going or paused: it goes on from there, with a
    // whole line interval.
    void turnTo(int line);
    // So many lines on in the order of the run, with its jumps and passes, and as many steps back
    // in it, and before its beginning line by line; the clock going or paused. It goes on from
    // there, with a whole line interval. There is nothing beyond the last line of the last pass.
    void advance(int lines);
    void goBack(int steps);
    // Moves 1, 5 or 10 lines and one more. Where ten lines or less are left, the run ends first.
    // Nothing happens unless the clock runs.
    void press(RunKey key);

    bool isRunning() const { return Timer1_; }
    bool isPaused() const { return paused_; }
    bool isOn() const { return Timer1_ || paused_; }
    // One was left that can be gone on with.
    bool wasLeft() const { return left_.has_value(); }
    int leftLine() const { return left_ ? left_->line : 1; }
    int currentLine() const { return path_.line(); }
    int lastLine() const { return path_.lastLine(); }
    int passesLeft() const { return L2_; }
    int passesToCome() const { return path_.passesToCome(); }
    int jumpsLeft(std::size_t row) const { return path_.jumpsLeft(row); }
    std::int64_t dueSecond() const { return lblElapsed2_; }
    const Text& passText() const { return LB_; }
    const Text& caption() const { return caption_; }
    const RunNote& note() const { return note_; }

  private:
    // Where the run was before a step or a turn.
    struct Past {
        RunPath::Place place;
        int passes = 0;  // L2_
        int pass = 0;    // pass_
    };

    void remember();
    bool takePast();
    void countStep(RunPath::Step step);
    void goOnFromHere();
    void begin(const RunSettings& settings);
    void tickByDuration();
    void step();
    bool makeStep();
    void countPass();
    void endRun();
    void tellNote();
    void showClock(std::int64_t seconds);
    void showCaption(TextView caption);

    ClsElapsed elapsed_;
    StageSurface& surface_;
    RunPath path_;
    bool Timer1_ = false;  // the clock runs
    bool paused_ = false;
    std::int64_t lblElapsed2_ = 0;  // the second in which the next step is due
    std::int64_t L7_ = 0;           // minutes
    int L2_ = 0;                    // passes, this one included
    int pass_ = 0;                  // the number in LB
    int countIn_ = 0;               // steps until the first line goes
    int lines_ = 0;                 // of the text
    // By duration: steps that the whole run takes, those made since the moment `baseMs_` of the
    // clock, and how far it was when it was paused.
    std::int64_t wholeSteps_ = 1;
    std::int64_t stepsDone_ = 0;
    std::int64_t baseMs_ = 0;
    std::int64_t pausedMs_ = 0;
    // Where a run was left, and its settings.
    std::optional<RunPath::Place> left_;
    RunSettings leftSettings_;
    std::deque<Past> past_;  // the latest last
    RunNote note_;
    Text LB_;  // "1x", "2x", ...; empty before the first step
    Text caption_;
};

// The cursor's line as the panel shows it: a blank and at least two digits.
Text cursorLineText(int line);

// The line of a text of `lines` that a run at `line` shows at the top.
int shownLine(int line, int lines);

}  // namespace melvorin
