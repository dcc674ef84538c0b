// The program's own INI file: its name with ".ini", beside the program.
#pragma once

#include "base/Services.h"

namespace melvorin {

inline constexpr TextView kCourierNew = u"Courier New";
inline constexpr TextView kLucidaConsole = u"Lucida Console";
// Size in points of every new chart.
inline constexpr int kEditorFontPoints = 10;

// Full path of the INI file.
Text programIniPath(ProgramFolder& program);

// Face of the editor: "Courier New" when the user chose it, else "Lucida Console".
Text editorFontFace(const Services& services);
// Whether the chords follow the words while somebody writes: yes, unless the user switched it off.
bool chordsFollow(const Services& services);
// False when the INI file cannot be written.
bool storeChordsFollow(const Services& services, bool on);
// Stores that choice, `face` being one of the two. False when the INI file cannot be written.
bool storeEditorFont(const Services& services, TextView face);

}  // namespace melvorin
