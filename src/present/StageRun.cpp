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
// Steps that can be gone back: hours.
constexpr std::size_t kMostPast = 20'000;

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
    past_.clear();
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
    if (!isOn())
        return;
    remember();
    path_.moveTo(line);
    goOnFromHere();
}

void StageRun::goOnFromHere() {
    countIn_ = 0;
    stepsDone_ = 0;
    pausedMs_ = 0;
    baseMs_ = Timer1_ ? elapsed_.elapsedMs() : 0;
    lblElapsed2_ = elapsed_.elapsed() + path_.settings().secondsPerLine;
    tellNote();
}

void StageRun::advance(int lines) {
    if (!isOn())
        return;
    const int start = path_.line();
    const auto isBeyond = [this](int line) { return line >= path_.lastLine(); };
    while (lines > 0) {
        RunPath ahead = path_;
        const RunPath::Step step = ahead.step();
        // Beyond the text, where a pass ends, the last line is still to be seen.
        const bool isSeen = !isBeyond(ahead.line());
        if (step == RunPath::Step::Ended || (!isSeen && ahead.passesToCome() == 0))
            break;
        remember();
        path_ = ahead;
        countStep(step);
        lines -= isSeen ? 1 : 0;
    }
    goOnFromHere();
    if (path_.line() != start)
        surface_.showLine(path_.line());
}

void StageRun::goBack(int steps) {
    if (!isOn())
        return;
    const int start = path_.line();
    // The line beyond the text, where a pass ends, shows the last one once more.
    while (path_.line() >= path_.lastLine() && takePast()) {
    }
    while (steps > 0 && takePast()) {
        while (path_.line() >= path_.lastLine() && takePast()) {
        }
        --steps;
    }
    LB_ = pass_ > 0 ? decimal(pass_) + u"x" : Text();
    if (steps > 0)
        path_.moveTo(std::max(1, std::min(path_.line(), path_.lastLine()) - steps));
    goOnFromHere();
    if (path_.line() != start)
        surface_.showLine(path_.line());
}

bool StageRun::takePast() {
    if (past_.empty())
        return false;
    const Past& past = past_.back();
    path_.beginAt(path_.settings(), past.place);
    L2_ = past.passes;
    pass_ = past.pass;
    past_.pop_back();
    return true;
}

void StageRun::remember() {
    if (past_.size() == kMostPast)
        past_.pop_front();
    past_.push_back({path_.place(), L2_, pass_});
}

void StageRun::showPanel(const RunSettings& settings) {
    if (isOn()) {
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
    // Of many at once nobody sees more than the last; drawn, each would make the next one later.
    bool moved = false;
    while (Timer1_ && elapsed_.elapsedMs() >= dueMs()) {
        ++stepsDone_;
        moved = makeStep() || moved;
    }
    if (moved)
        surface_.showLine(path_.line());
    tellNote();
}

void StageRun::heldUp() {
    if (Timer1_ && path_.settings().wholeMs == 0)
        lblElapsed2_ = elapsed_.elapsed() + path_.settings().secondsPerLine;
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
    if (makeStep())
        surface_.showLine(path_.line());
    tellNote();
}

// False while it only counts in.
bool StageRun::makeStep() {
    if (countIn_ > 0) {
        --countIn_;
        return false;
    }
    remember();
    const RunPath::Step step = path_.step();
    countStep(step);
    if (step == RunPath::Step::Ended)
        endRun();
    return true;
}

void StageRun::countStep(RunPath::Step step) {
    if (LB_.empty())
        countPass();
    if (step == RunPath::Step::NewPass) {
        countPass();
        --L2_;
    }
}

void StageRun::countPass() {
    LB_ = decimal(++pass_) + u"x";
}

void StageRun::tellNote() {
    RunNote note{countIn_, {}};
    if (countIn_ == 0 && isOn())
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
    past_.back().place.line = line;
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
