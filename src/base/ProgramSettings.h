// The program's own INI file: its name with ".ini", beside the program.
#pragma once

#include "base/Services.h"

namespace melvorin {

inline constexpr TextView kCourierNew = u"Courier New";
inline constexpr TextView kLucidaConsole = u"Lucida Console";
// Size in points of every new chart.
inline constexpr int kEditorFontPoints = 10;

// What is said where it cannot be written.
inline constexpr TextView kNotStored =
    u"This is so for now, and not the next time: the program's settings cannot be written.";

// Full path of the INI file.
Text programIniPath(ProgramFolder& program);

// A number of the INI file; `fallback` where it says none from `least` to `most`.
struct NumberRange {
    int least = 0;
    int most = 0;
    int fallback = 0;
};
int numberSetting(const Services& services, TextView section, TextView key,
                  const NumberRange& range);
// Empty where the file does not have it; at most 15 characters.
Text shortSetting(const Services& services, TextView section, TextView key);
// False when the INI file cannot be written.
bool storeSetting(const Services& services, TextView section, TextView key, TextView value);

// Face of the editor: "Courier New" when the user chose it, else "Lucida Console".
Text editorFontFace(const Services& services);
// Whether the chords follow the words while somebody writes: yes, unless the user switched it off.
bool chordsFollow(const Services& services);
// These return false when the INI file cannot be written.
bool storeChordsFollow(const Services& services, bool on);

// What a key change does with lines of chords that are more than chords.
enum class OtherLines { Ask, Move, Leave };
OtherLines otherLines(const Services& services);
bool storeOtherLines(const Services& services, OtherLines choice);

// Whether accidentals follow the key of the song, whatever the choice of sharps or flats is.
bool followsKey(const Services& services);
bool storeFollowsKey(const Services& services, bool on);

// How large the editor shows its text, in percent; 100 where the file says nothing sensible.
int editorZoom(const Services& services);
bool storeEditorZoom(const Services& services, int percent);
bool showsStatusLine(const Services& services);
bool storeShowsStatusLine(const Services& services, bool shown);

// Stores the face of the editor, `face` being one of the two. False when the INI file cannot be
// written.
bool storeEditorFont(const Services& services, TextView face);

}  // namespace melvorin
