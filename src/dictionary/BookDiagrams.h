// The best diagram that the chord book has of each chord.
#pragma once

#include <map>
#include <optional>

#include "dictionary/Recordset.h"

namespace melvorin {

// Makes the row of a chord the current one, found by its symbol or else by its name, as the
// dictionary does. Fails with a sentence for a chord that is not there.
Result<Done> seekChord(Recordset& chords, TextView chord);

struct BookDiagram {
    Text font;       // its number, of two digits
    Text character;  // that shows the diagram in it
};

class BookDiagrams {
  public:
    // Reads the program's own chord database. The cause of a failure is a sentence; nothing is
    // found then.
    Result<Done> open(TextView databasePath);
    std::optional<BookDiagram> find(TextView chord);

  private:
    Recordset chords_;
    std::map<Text, std::optional<BookDiagram>> known_;
};

}  // namespace melvorin
