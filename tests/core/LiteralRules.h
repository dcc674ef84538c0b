// The rules of transposition and realignment as they are written down: one replacement after the
// other, one token after the other, with no thought of speed. The engine is compared with them.
#pragma once

#include <random>
#include <string>

#include "base/Text.h"
#include "chords/Transpose.h"

namespace melvorin::literal {

// Replaces the leftmost occurrence and starts over, until there is none. Gives up, returning
// false, when that takes more than `limit` rounds.
bool replaceAll(Text& text, TextView find, TextView replacement, int limit = 1 << 20);

// Every name becomes a glyph of its own and every glyph the name a half step away.
Text transposeLine(Text line, Direction direction, Spelling spelling);

// The tokens of `transposed` in the columns of the tokens of `before`.
Text realignLine(const Text& before, const Text& transposed);

// A line of the characters of chord lines. With `musical` it is mostly made of chords and blanks,
// otherwise every character is as likely as any other.
Text randomChordLine(std::mt19937& random, bool musical);

}  // namespace melvorin::literal
