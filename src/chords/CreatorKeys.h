// The keys of the creator's list of lines: one for each verdict, and back to what the program
// thinks.
#pragma once

#include <optional>

#include "base/Keys.h"
#include "chords/LineVerdict.h"

namespace melvorin {

// Nothing: the program's own verdict.
inline constexpr KeyRow<std::optional<LineVerdict>> kLineKeys[] = {
    {LineVerdict::Chords, plainKey(u'C')},      {LineVerdict::Lyrics, plainKey(u'L')},
    {LineVerdict::Section, plainKey(u'S')},     {LineVerdict::Tablature, plainKey(u'T')},
    {LineVerdict::Directive, plainKey(u'D')},   {std::nullopt, plainKey(u'A')},
    {std::nullopt, plainKey(keys::kBackspace)},
};

}  // namespace melvorin
