// What each directive of a song is in its chart, by what stands around it: so that the export finds
// the same directives again.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "base/Text.h"
#include "chords/SongImport.h"

namespace melvorin {

struct DirectiveLine {
    std::optional<Text> text;    // nothing where the chart has no line for it
    bool hasBlankBelow = false;  // an empty line of the chart parts it from what follows
};

// A line for each of the source, by its verdict; those that are no directives are empty.
std::vector<DirectiveLine> directiveLines(const std::vector<SourceLine>& source);

// The line that ends the section of `number` with a directive, before another section begins;
// nothing without one. `number` is that of a label or directive of the section.
std::optional<std::size_t> explicitSectionEnd(const std::vector<SourceLine>& source,
                                              std::size_t number, TextView section);

// Whether the line ends the head of a song: it has chords, or brackets that may be some.
bool mayHaveChords(const SourceLine& line);

}  // namespace melvorin
