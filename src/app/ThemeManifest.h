// The side-by-side manifest that gives the program's controls the visual style of the system. It
// is written beside the program once, so that a copied program folder brings its own.
#pragma once

#include "base/Services.h"

namespace melvorin {

// Read-only + hidden + system + archive.
inline constexpr std::uint32_t kManifestAttributes = 39;

// Full path of the manifest that belongs to a program file.
Text manifestPath(TextView folder, TextView programFileName);
// Ten lines, each ended by CR LF. The program is built for 32 bits, and its manifest says so; the
// 64-bit build of the same source would not start with that beside it.
std::string manifestContent(bool is64Bit);
// Writes it unless a file of that name stands there, hidden or not.
void writeManifestIfMissing(ProgramFolder& program);

// Switches font smoothing off for the user's system, and a browser's own smoothing with it: chord
// letters in the small monospaced faces are drawn on whole pixels.
void switchFontSmoothingOff(SystemSettings& system);

}  // namespace melvorin
