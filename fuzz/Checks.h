// What must hold for any input at all. The fuzzers feed it what they invent, the core tests a few
// seeds. A check that fails prints why and aborts.
#pragma once

#include <span>
#include <string_view>

#include "base/Text.h"

namespace melvorin::fuzz {

// The importer loses nothing, its reports are true, and what it exports comes back.
void checkImport(TextView song);
// The suffix normaliser does what its rows do one after the other.
void checkNormaliser(TextView text);
// A key change does what the rules do one after the other, and tells the truth about it.
void checkTransposer(TextView text);
// No tab is left, columns are right, and it does not matter in which parts a text comes.
void checkTabs(TextView text);

// What is said of a key makes sense, and a song respelled by it keeps its lines and other words.
void checkKey(TextView song);

// The check of Rich Text ends with one opinion; what the map reads it writes back.
void checkRichText(std::string_view bytes);
// A journal never leads out of its folder nor to a state that there is not.
void checkJournal(std::string_view bytes);
// The list of recent files, whatever an INI file holds.
void checkRecent(std::string_view bytes);
// The batch tool writes where it was told to, or nothing.
void checkArguments(std::string_view bytes);
// A search criterion is a comparison with a text, or refused.
void checkCriterion(std::string_view bytes);

struct Subject {
    const char* name;
    void (*check)(std::string_view bytes);
    const char* seed;  // an input that gets far
};
std::span<const Subject> subjects();

// What the export does not keep is a line's blanks at its end.
Text withoutTrailingBlanks(TextView chart);
// For checks: prints and aborts where something does not hold.
void require(bool holds, const char* what, TextView text);

}  // namespace melvorin::fuzz
