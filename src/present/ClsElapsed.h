// Elapsed whole seconds since a reset.
#pragma once

#include "base/Services.h"

namespace melvorin {

class ClsElapsed {
  public:
    // `clock` outlives the object.
    explicit ClsElapsed(Clock& clock) : clock_(clock) { reset(); }

    void reset() { start_ = clock_.nowMs(); }
    std::int64_t elapsed() const { return (clock_.nowMs() - start_) / 1000; }

  private:
    Clock& clock_;
    std::int64_t start_ = 0;  // ms
};

}  // namespace melvorin
