// What the directives of ChordPro songs are in a chart, and the way back.
//
// A chart is read by people. What they read has a line of its own there: the title as the first
// one and the subtitle below it, facts ("Key: G"), the names of sections, remarks behind a mark:
// "* slower" is a comment, "~ slower" one in italics, "** slower" a highlight, "| slower |" one in
// a box. What is for programs alone ("{new_page}", "{define: ...}"), and what would come back as
// something else, stays the line that it is.
#pragma once

#include <optional>

#include "base/Text.h"
#include "chords/LineVerdict.h"

namespace melvorin {

// "Key: G" for "{key: G}"; nothing for a directive that states no fact. Below the first chords only
// what cannot be words is one: a key, a number.
std::optional<Text> shownFact(const Directive& directive, bool isHead);
// The directive for a line that states a fact of the song: "{key: G}" for "Key: G".
std::optional<Text> factDirective(TextView line, bool isHead);

// "* slower" for "{comment: slower}". What is a label, or can only be a comment on the way out, is
// shown as it is. Nothing where the line would be read otherwise, and for other directives.
std::optional<Text> shownRemark(const Directive& directive);
// The directive for a line behind a mark: "{comment: slower}" for "* slower".
std::optional<Text> remarkDirective(TextView line);

// "{# typed by hand}" for "# typed by hand", which is for those who edit a ChordPro song, and the
// way back; nothing for other directives.
Text shownHashRemark(TextView line);
std::optional<Text> hashRemark(const Directive& directive);

// "chorus", "verse" or "bridge" for a label that begins with that word, or one that means the same:
// "Verse 2:", "Refrain".
std::optional<TextView> sectionOfLabel(TextView label);
// The section that the directive begins ("{start_of_verse}"), or repeats ("{chorus}").
std::optional<TextView> sectionOfDirective(const Directive& directive);
// The label of such a section: "Verse 1", "Chorus: All" for the chorus that is called "All".
// Nothing where that is no label.
std::optional<Text> shownSection(const Directive& directive);
// The directive that begins such a section, or repeats it, and shows as its label.
Text sectionDirective(TextView section, TextView label, bool isRepeated = false);

// A directive of our own, which other programs pass over, for songs whose names of notes do not
// tell by themselves what they are: "{x_melvorin_names: german}" or "solfege". Nothing for letters.
std::optional<Text> namingDirective(Naming naming);
std::optional<Naming> statedNaming(TextView line);

// True for a name that a chart never shows otherwise than as it stands: "new_page", "define".
bool isAlwaysKept(const Directive& directive);

// What there is to read of a directive that stands in a chart as it is; nothing of one for
// programs.
std::optional<Text> wordsOfDirective(TextView line);

// True where the text can be the title or subtitle that stands as a line of a chart.
bool mayBeTitle(TextView text);

}  // namespace melvorin
