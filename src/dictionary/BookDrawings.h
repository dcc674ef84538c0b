// Draws the diagrams of the chord book, told by the font and the letter that show them in a song.
#pragma once

#include <map>
#include <optional>

#include "base/Files.h"
#include "base/Text.h"
#include "chords/DiagramSvg.h"

namespace melvorin {

class BookDrawings {
  public:
    // Reads the program's own chord database. The cause of a failure is a sentence; nothing can be
    // drawn then.
    Result<Done> open(TextView databasePath);

    // For the page (`DiagramSvg.h`); nothing for a face or a letter that shows no diagram.
    std::optional<Text> svgOf(char16_t letter, TextView face) const;

  private:
    std::map<Text, DiagramShape> shapes_;  // by the two digits of the font and the letter
};

}  // namespace melvorin
