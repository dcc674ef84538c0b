// Chord diagrams as pictures in a page.
#pragma once

#include <optional>

#include "base/Text.h"

namespace melvorin {

struct DiagramShape {
    Text symbol;   // what is written above it
    Text frets;    // from the low E string up: "x32010"; hyphens between them where one has two
                   // digits
    Text fingers;  // "-32-1-": a hyphen for a string without one
    int firstFret = 1;
};

// An element `svg` of six strings, with open and muted strings, dots with their fingers, a bar
// where one finger holds several strings, and the first fret beside it where it is not the nut.
// Nothing where the frets are none of a guitar.
std::optional<Text> diagramSvg(const DiagramShape& shape);

}  // namespace melvorin
