// Tells how chords are gripped, by the best diagram that the chord book has of each.
#pragma once

#include <unordered_map>

#include "base/Files.h"
#include "chords/CapoChoice.h"

namespace melvorin {

class BookGrips : public ChordGrips {
  public:
    // Reads the program's own chord database. The cause of a failure is a sentence; nothing is
    // known then.
    Result<Done> open(TextView databasePath);

    // Without regard to case, as chords are searched for.
    std::optional<Grip> gripOf(TextView chord) const override;

  private:
    std::unordered_map<Text, Grip> grips_;  // by symbols in capitals
};

}  // namespace melvorin
