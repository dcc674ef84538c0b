// What the batch tool tells about capos: lines of text, fields between tabs, in UTF-8.
#pragma once

#include <string>

#include "chords/CapoChoice.h"

namespace melvorin {

// A line for each fret from 0 to 9, the easiest first: `name`, fret, the key of the shapes, the key
// that it sounds in, and how many of the song's chords are open grips, barres, closed ones, and not
// in the book. A song without chords has one line with "?" behind the name.
std::string capoReport(TextView name, TextView song, const ChordGrips& grips);

}  // namespace melvorin
