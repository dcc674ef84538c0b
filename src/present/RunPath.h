// The way of a run through the lines of a song: line by line, with programmed jumps and passes
// through the whole text. It knows no time; the run (`StageRun`) and its plan (`RunPlan`) walk it.
//
// Lines count from 1. The names in capitals are the panel's own words for what they hold.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace melvorin {

inline constexpr std::size_t kJumpRows = 5;

// One programmed jump. The step's own move follows it: a jump to line 3 shows line 4.
struct JumpRow {
    bool on = false;  // CK
    int from = 0;
    int to = 0;
    int times = 1;

    friend bool operator==(const JumpRow&, const JumpRow&) = default;
};

// What the panel's lists and boxes say.
struct RunSettings {
    int secondsPerLine = 1;
    int passes = 1;
    bool repeats = false;  // Check1: without it there is one pass, whatever `passes` says
    std::array<JumpRow, kJumpRows> rows{};
    int countIn = 0;           // steps before the first line goes
    std::int64_t wholeMs = 0;  // by duration: what the whole run takes; 0: by seconds per line

    friend bool operator==(const RunSettings&, const RunSettings&) = default;
};

class RunPath {
  public:
    // What a run has still to do at a line.
    struct Place {
        int line = 1;
        int passesToCome = 0;
        std::array<int, kJumpRows> jumpsLeft{};
    };

    // The run goes on one line beyond the text, so that the last line stands as long as every
    // other.
    // kept: one-line-beyond
    void setLineCount(int lines) { L3_ = lines + 1; }
    void begin(const RunSettings& settings);
    // Goes on at a place of an earlier run of the same rows.
    void beginAt(const RunSettings& settings, const Place& place);
    // The rows have all their times again.
    void reload(const RunSettings& settings);

    // One line on, by the passes and the jumps. Ended: the text and its passes are over; the line
    // has gone on all the same. NewPass: the first line follows once more.
    enum class Step { Moved, NewPass, Ended };
    Step step();
    void moveTo(int line) { LC_ = line; }

    int line() const { return LC_; }
    int lastLine() const { return L3_; }
    int passesToCome() const { return LzR_; }
    int jumpsLeft(std::size_t row) const { return LX_[row]; }
    const RunSettings& settings() const { return settings_; }
    Place place() const { return {LC_, LzR_, LX_}; }

  private:
    bool takesPass();
    void takeJumps();
    void loadJumps();

    RunSettings settings_;
    int LC_ = 0;                       // the line at the top
    int L3_ = 0;                       // one more than the text has lines
    int LzR_ = 0;                      // passes still to come
    std::array<int, kJumpRows> LX_{};  // jumps still to be made
};

}  // namespace melvorin
