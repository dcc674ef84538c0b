#include "present/StageRun.h"

#include <algorithm>

#include "present/RunPlan.h"

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
// From so many lines on the bar says where a jump leads.
constexpr int kSoon = 5;

}  // namespace

bool StageRun::start(const RunSettings& settings, int linesInText) {
    if (linesInText < 2)
        return false;
    lines_ = linesInText;
    path_.begin(settings);
    LB_.clear();
    pass_ = 0;
    L2_ = settings.passes;
    begin(settings);
    return true;
}

bool StageRun::startAt(int line, const RunSettings& settings, int linesInText) {
    const bool isSame = left_ && leftSettings_.rows == settings.rows &&
                        leftSettings_.repeats == settings.repeats &&
                        leftSettings_.passes == settings.passes;
    if (!isSame) {
        if (!start(settings, linesInText))
            return false;
        path_.moveTo(line);
        tellNote();
        return true;
    }
    if (linesInText < 2)
        return false;
    lines_ = linesInText;
    path_.beginAt(settings, {line, left_->passesToCome, left_->jumpsLeft});
    begin(settings);
    return true;
}

void StageRun::begin(const RunSettings& settings) {
    left_.reset();
    countIn_ = settings.countIn;
    wholeSteps_ = settings.wholeMs > 0 ? planRun(settings, lines_).steps : 1;
    pausedMs_ = 0;
    stepsDone_ = 0;
    caption_.clear();
    note_ = {-1, {}};
    resume();
    tellNote();
}

void StageRun::pause() {
    Timer1_ = false;
    paused_ = true;
    pausedMs_ = elapsed_.elapsedMs() - baseMs_;
    elapsed_.reset();
    showCaption(kPausedCaption);
}

void StageRun::resume() {
    lblElapsed2_ = path_.settings().secondsPerLine;
    L7_ = 0;
    paused_ = false;
    Timer1_ = true;
    // By duration a pause costs nothing of the time.
    baseMs_ = -pausedMs_;
    elapsed_.reset();
}

void StageRun::turnTo(int line) {
    if (!Timer1_ && !paused_)
        return;
    countIn_ = 0;
    path_.moveTo(line);
    stepsDone_ = 0;
    pausedMs_ = 0;
    baseMs_ = Timer1_ ? elapsed_.elapsedMs() : 0;
    lblElapsed2_ = elapsed_.elapsed() + path_.settings().secondsPerLine;
    tellNote();
}

void StageRun::showPanel(const RunSettings& settings) {
    if (Timer1_ || paused_) {
        left_ = path_.place();
        leftSettings_ = path_.settings();
    }
    path_.reload(settings);
    Timer1_ = false;
    paused_ = false;
}

void StageRun::tick() {
    if (!Timer1_)
        return;
    const std::int64_t seconds = elapsed_.elapsed();
    showClock(seconds);
    if (path_.settings().wholeMs > 0)
        return tickByDuration();
    // kept: due-second
    if (seconds != lblElapsed2_)
        return;
    step();
    lblElapsed2_ += path_.settings().secondsPerLine;
}

void StageRun::tickByDuration() {
    // From the beginning each time, so that nothing adds up.
    const auto dueMs = [this] {
        return baseMs_ + (stepsDone_ + 1) * path_.settings().wholeMs / wholeSteps_;
    };
    while (Timer1_ && elapsed_.elapsedMs() >= dueMs()) {
        ++stepsDone_;
        step();
    }
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
    if (countIn_ > 0) {
        --countIn_;
        return tellNote();
    }
    if (LB_.empty())
        countPass();
    const RunPath::Step step = path_.step();
    const int line = path_.line();
    if (step == RunPath::Step::NewPass) {
        countPass();
        --L2_;
    } else if (step == RunPath::Step::Ended) {
        endRun();
    }
    surface_.showLine(line);
    tellNote();
}

void StageRun::countPass() {
    LB_ = decimal(++pass_) + u"x";
}

void StageRun::tellNote() {
    RunNote note{countIn_, {}};
    if (countIn_ == 0 && (Timer1_ || paused_))
        note.next = nextJump(path_.settings(), lines_, path_.place(), kSoon);
    if (note == note_)
        return;
    note_ = note;
    surface_.showNote(note_);
}

void StageRun::endRun() {
    Timer1_ = false;
    paused_ = false;
    left_.reset();
    showCaption(kEndCaption);
    surface_.runEnded();
}

void StageRun::press(RunKey key) {
    if (!Timer1_)
        return;
    countIn_ = 0;
    const int lines = linesOf(key);
    const int line = path_.line();
    // kept: key-at-end
    if (lastLine() + 1 <= line + kNearEnd)
        endRun();
    // kept: key-bounds
    if (line + 1 >= lastLine() + lines)
        return;
    path_.moveTo(line + lines);
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
