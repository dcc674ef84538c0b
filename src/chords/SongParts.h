// Which lines of a song belong together, for what leaves the program.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "chords/SongImport.h"

namespace melvorin {

// The line that names the song: the first one that is neither blank, a fact nor a directive, where
// no chords stand right below it.
std::optional<std::size_t> titleLine(const SongImport& song);
// Whether the line below the title is a subtitle: nothing of the song stands below it.
bool isSubtitleBelow(const SongImport& song, std::size_t title);
// The same for any line, should a title stand above it and no remarks below.
bool mayBeSubtitle(const std::vector<SourceLine>& source, std::size_t number);

// Whether line `number` is words that chords right above it belong to: no remark, fact, directive
// or line of marks.
bool areWordsBelow(const SongImport& song, std::size_t number);

// Whether line `number` stands above chords and has nothing but repeat marks, rests and remarks
// ("*softly"), or only such remarks above words: "N.C.", "x2".
bool isLineOfMarks(const SongImport& song, std::size_t number);
// True for brackets that held no chord, and marks between them: "   [Clyd]  [riff]". At the start
// of a line a bracket with words in it is a label.
bool isRowOfUnread(TextView line);
// Whether line `number` is such a row above chords or words.
bool isLineOfUnread(const SongImport& song, std::size_t number);

}  // namespace melvorin
