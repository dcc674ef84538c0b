#include "present/RunPath.h"

#include <algorithm>

namespace melvorin {

void RunPath::begin(const RunSettings& settings) {
    beginAt(settings, {1, settings.repeats ? settings.passes - 1 : 0, {}});
    loadJumps();
}

void RunPath::beginAt(const RunSettings& settings, const Place& place) {
    settings_ = settings;
    LC_ = place.line;
    LzR_ = place.passesToCome;
    LX_ = place.jumpsLeft;
}

void RunPath::reload(const RunSettings& settings) {
    settings_ = settings;
    loadJumps();
}

void RunPath::loadJumps() {
    std::transform(settings_.rows.begin(), settings_.rows.end(), LX_.begin(),
                   [](const JumpRow& row) { return row.times; });
}

RunPath::Step RunPath::step() {
    const bool isNewPass = takesPass();
    takeJumps();
    const bool isOver = LC_ >= L3_ && LzR_ == 0;
    ++LC_;
    return isOver ? Step::Ended : isNewPass ? Step::NewPass : Step::Moved;
}

bool RunPath::takesPass() {
    if (LC_ < L3_ || LzR_ == 0)
        return false;
    --LzR_;
    loadJumps();
    LC_ = 0;  // the step goes on to line 1
    return true;
}

// One row after the other, so a row may take up where a former one has led.
void RunPath::takeJumps() {
    for (std::size_t i = 0; i < kJumpRows; ++i) {
        const JumpRow& row = settings_.rows[i];
        if (!row.on || LX_[i] <= 0 || LC_ != row.from)
            continue;
        // kept: jump-plus-one
        LC_ = row.to;
        --LX_[i];
    }
}

}  // namespace melvorin
