#include "present/StageRun.h"

#include <algorithm>

namespace melvorin {
namespace {

constexpr std::int64_t kMinute = 60;
// kept: paused-caption
constexpr TextView kPausedCaption = u" Paused";
constexpr TextView kEndCaption = u"0:00";

// How far a key goes. How far beyond the text it may go grows with it.
int linesOf(RunKey key) {
    return key == RunKey::OneLine ? 1 : key == RunKey::FiveLines ? 5 : 10;
}

// A key pressed so near the end ends the run.
constexpr int kNearEnd = 10;

}  // namespace

bool StageRun::start(const RunSettings& settings, int linesInText) {
    if (linesInText < 2)
        return false;
    settings_ = settings;
    LB_.clear();
    pass_ = 0;
    L2_ = settings_.passes;
    LzR_ = settings_.repeats ? settings_.passes - 1 : 0;
    LC_ = 1;
    loadJumps();
    caption_.clear();
    resume();
    return true;
}

void StageRun::pause() {
    Timer1_ = false;
    paused_ = true;
    elapsed_.reset();
    showCaption(kPausedCaption);
}

void StageRun::resume() {
    lblElapsed2_ = settings_.secondsPerLine;
    L7_ = 0;
    paused_ = false;
    Timer1_ = true;
    elapsed_.reset();
}

void StageRun::showPanel(const RunSettings& settings) {
    settings_ = settings;
    loadJumps();
    Timer1_ = false;
    paused_ = false;
}

void StageRun::loadJumps() {
    std::transform(settings_.rows.begin(), settings_.rows.end(), LX_.begin(),
                   [](const JumpRow& row) { return row.times; });
}

void StageRun::tick() {
    if (!Timer1_)
        return;
    const std::int64_t seconds = elapsed_.elapsed();
    showClock(seconds);
    // kept: due-second
    if (seconds != lblElapsed2_)
        return;
    step();
    lblElapsed2_ += settings_.secondsPerLine;
}

// kept: stuck-minute
// A minute that no tick sees begin stays, and the caption with it, until the clock starts anew.
void StageRun::showClock(std::int64_t seconds) {
    std::int64_t rest = seconds - kMinute * L7_;
    if (rest == kMinute) {
        rest = 0;
        ++L7_;
    }
    if (rest < 0 || rest > kMinute)
        return;
    showCaption(u" " + decimal(L7_) + (rest < 10 ? u":0" : u":") + decimal(rest) + u" " + LB_);
}

void StageRun::showCaption(TextView caption) {
    if (caption_ == caption)
        return;
    caption_ = caption;
    surface_.showCaption(caption_);
}

// ---- The step ---------------------------------------------------------------------------------

void StageRun::step() {
    countPass();
    takeJumps();
    if (LC_ >= L3_ && LzR_ == 0)
        endRun();
    ++LC_;
    surface_.showLine(LC_);
}

void StageRun::countPass() {
    const auto count = [&] { LB_ = decimal(++pass_) + u"x"; };
    if (LB_.empty())
        count();
    if (LC_ < L3_ || LzR_ == 0)
        return;
    count();
    --L2_;
    --LzR_;
    loadJumps();
    LC_ = 0;  // the step goes on to line 1
}

// One row after the other, so a row may take up where a former one has led.
void StageRun::takeJumps() {
    for (std::size_t i = 0; i < kJumpRows; ++i) {
        const JumpRow& row = settings_.rows[i];
        if (!row.on || LX_[i] <= 0 || LC_ != row.from)
            continue;
        // kept: jump-plus-one
        LC_ = row.to;
        --LX_[i];
    }
}

void StageRun::endRun() {
    Timer1_ = false;
    paused_ = false;
    showCaption(kEndCaption);
    surface_.runEnded();
}

void StageRun::press(RunKey key) {
    if (!Timer1_)
        return;
    const int lines = linesOf(key);
    // kept: key-at-end
    if (L3_ + 1 <= LC_ + kNearEnd)
        endRun();
    // kept: key-bounds
    if (LC_ + 1 >= L3_ + lines)
        return;
    LC_ += lines;
    step();
}

// ---- What the windows show --------------------------------------------------------------------

// kept: cursor-line
Text cursorLineText(int line) {
    return (line <= 9 ? u" 0" : u" ") + decimal(line);
}

int shownLine(int line, int lines) {
    return std::clamp(line, 1, std::max(1, lines));
}

}  // namespace melvorin
