// Elapsed time since a reset, in whole seconds as a run counts them.
#pragma once

#include "base/Services.h"

namespace melvorin {

class ClsElapsed {
  public:
    // `clock` outlives the object.
    explicit ClsElapsed(Clock& clock) : clock_(clock) { reset(); }

    void reset() { start_ = clock_.nowMs(); }
    std::int64_t elapsed() const { return elapsedMs() / 1000; }
    std::int64_t elapsedMs() const { return clock_.nowMs() - start_; }

  private:
    Clock& clock_;
    std::int64_t start_ = 0;  // ms
};

}  // namespace melvorin
