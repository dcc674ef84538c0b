// What stands between the chords of a row: bars, beats, repeats, time signatures, remarks.
#pragma once

#include <vector>

#include "base/Text.h"
#include "chords/ChordRow.h"

namespace melvorin {

// Bars, and what stands between chords that are written as a chain.
inline constexpr TextView kBars = u"|\u2016\u00A6\u2502\u2503";
inline constexpr TextView kSeparators =
    u"-,;.>~=\u2010\u2011\u2012\u2013\u2014\u2192\u2026\u21D2\u00B7";

inline constexpr TextView kMinuses = u"-\u2010\u2011\u2212";

inline bool isOneOf(TextView set, char16_t c) {
    return set.find(c) != TextView::npos;
}

inline bool consistsOf(TextView text, TextView set) {
    return text.find_first_not_of(set) == TextView::npos;
}

// "(x2)" is "x2"; other text is itself.
TextView withoutParentheses(TextView text);

// "|", "||:". The chart has a slash for each stroke and a parenthesis for a repeat.
bool isBar(TextView text);
Text shownBar(TextView bar);

// "N.C.", "(NC)", "D.C.": what stands among chords and tells to play none of its own.
bool isNoChord(TextView text);
// "D.C.", "D.S.": where the song goes on.
bool isDirection(TextView text);
// "Fine", "Coda", "Segno": where it goes to.
bool isGoal(TextView text);

// "x2", "2x", "(x2)", "bis".
bool isRepeat(TextView text);

// "3/4", "12/8": a time signature, if bars or more than one chord are beside it.
bool isMeter(TextView text);

// Makes one item of what was written with blanks: "x 4", "} 2", "D.C. al Fine", "2 times", "(let
// ring)",
// "[Lick 1]". `line` is what the items were read from, `index` where it begins.
void joinMarks(std::vector<RowItem>& items, TextView line, std::size_t index,
               const ChordReading& reading);

}  // namespace melvorin
