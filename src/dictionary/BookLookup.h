// Tells the creator of charts which chords the dictionary has.
#pragma once

#include <unordered_set>

#include "chords/ChordLookup.h"
#include "dictionary/Recordset.h"

namespace melvorin {

class BookLookup : public ChordLookup {
  public:
    // Reads the symbols of all rows; `records` is not needed afterwards.
    explicit BookLookup(const Recordset& records);

    bool isEmpty() const { return symbols_.empty(); }
    // As a search by symbol: normalised, and without regard to case.
    bool contains(TextView chord) const override;

  private:
    std::unordered_set<Text> symbols_;
};

}  // namespace melvorin
