// What the font and colours window offers: sizes, colours, font names, and where the arrow keys
// lead among the colours.
#pragma once

#include <optional>
#include <span>
#include <vector>

#include "base/Editor.h"
#include "base/Services.h"

namespace melvorin {

// ---- Sizes ------------------------------------------------------------------------------------

// In points, rising.
std::span<const int> fontSizes();
// A size as typed ("12", "10.5", "10,5") in half points; nothing unless it is a whole number of
// them from 4 to 400 points.
std::optional<int> parseFontSize(TextView typed);
Text fontSizeText(int halfPoints);

// ---- Colours ----------------------------------------------------------------------------------

inline constexpr std::size_t kSwatchCount = 40;
inline constexpr std::size_t kNamedSwatchCount = 12;  // they come first

struct Swatch {
    TextView name;  // its caption; empty but for the named ones
    Rgb colour;
};

std::span<const Swatch, kSwatchCount> swatches();
// What a screen reader or a tip says of a colour: its name, or its parts.
Text swatchTitle(const Swatch& swatch);
// Black or white, whichever is read better on `face`.
Rgb inkOn(Rgb face);

enum class Arrow { Left, Right, Up, Down };
// The area that an arrow key leads to from the one of that index: the nearest one that lies that
// way, `index` itself where none does.
std::size_t neighbour(std::span<const Area> areas, std::size_t index, Arrow arrow);

// ---- Fonts ------------------------------------------------------------------------------------

// The names that the list shows: in alphabetical order, each once, without vertical fonts and
// without those that hold chord diagrams.
std::vector<Text> shownFaces(std::vector<Text> installed);
// The first name that begins as `typed` does, capital or small; nothing for an empty text.
std::optional<std::size_t> findFace(std::span<const Text> faces, TextView typed);

}  // namespace melvorin
