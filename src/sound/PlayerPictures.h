// The signs on the player's buttons, drawn for the size that the screen needs.
#pragma once

#include "widgets/ButtonPicture.h"

namespace melvorin {

// A triangle that points to the right, and a square; `side` pixels wide and high, at least 1.
Pixels playPicture(int side);
Pixels stopPicture(int side);

}  // namespace melvorin
