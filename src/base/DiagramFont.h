// The fonts of chord diagrams: a diagram is one character in one of them.
#pragma once

#include <cstddef>

#include "base/Text.h"

namespace melvorin {

inline constexpr std::size_t kDiagramFontCount = 34;
// What the face names begin with; the number follows in two digits, from 01 on.
inline constexpr TextView kDiagramFaceStart = u"Melvorin ";

// True for the face name of one of them.
bool isDiagramFace(TextView face);

}  // namespace melvorin
