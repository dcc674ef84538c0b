// What the batch tool tells about chords: the chord database in lines of text, fields between
// tabs, in UTF-8.
#pragma once

#include <map>
#include <optional>
#include <string>

#include "dictionary/Recordset.h"

namespace melvorin {

class ChordReport {
  public:
    // The cause of a failure is a sentence.
    Result<Done> open(TextView databasePath);

    // Finds a chord by its symbol, or else by its name, as the dictionary does, and adds a line for
    // each of its diagrams: symbol, name, number of the font, character, frets and fingers, both
    // from the low E string up. Fails, adding nothing, for a chord that is not there.
    Result<Done> describe(TextView chord, std::string& report);
    // Adds every row of the table with all its fields.
    void list(std::string& report) const;

  private:
    struct Shape {
        Text frets;
        Text fingers;
    };

    Recordset chords_;
    std::map<Text, Shape> shapes_;  // by font number and character
};

}  // namespace melvorin
