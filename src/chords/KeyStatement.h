// The line of a song that states its key: "Key: G", "Tom: F#m", "Tonart: e-Moll".
#pragma once

#include <optional>

#include "base/Text.h"
#include "chords/Transpose.h"

namespace melvorin {

// Where the note of the key stands in such a line: a letter, also a small one or an H, and what
// belongs to it ("Bb", "Fis"). Nothing where the line states no key. Knows the word for a key in
// the languages of the songs that are met; a line may state other things too.
std::optional<ColumnRange> statedKey(TextView line);

}  // namespace melvorin
