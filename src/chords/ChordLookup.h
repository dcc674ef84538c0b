// Where chords are looked up by their name.
#pragma once

#include "base/Text.h"

namespace melvorin {

class ChordLookup {
  public:
    virtual ~ChordLookup() = default;
    // True when there is an entry for the chord, given in the house's spelling.
    virtual bool contains(TextView chord) const = 0;
};

}  // namespace melvorin
