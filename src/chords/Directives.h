// What the directives of ChordPro songs are in a chart, and the way back.
#pragma once

#include <optional>

#include "base/Text.h"
#include "chords/LineVerdict.h"

namespace melvorin {

// The line that the chart has for a directive: the value of "{title: Row}", "Key: G" for
// "{key: G}", the label of "{start_of_verse: Verse 1}". Nothing for one that has no place there.
std::optional<Text> shownDirective(const Directive& directive);

// The directive for a line that states a fact of the song: "{key: G}" for "Key: G".
std::optional<Text> factDirective(TextView line);

// "chorus", "verse" or "bridge" for a label that begins with that word: "Verse 2:".
std::optional<TextView> sectionOfLabel(TextView label);
// The directive that begins such a section and shows as its label.
Text sectionDirective(TextView section, TextView label);

}  // namespace melvorin
