#include "find/WholeChords.h"

#include <algorithm>
#include <vector>

#include "chords/ChordPair.h"

namespace melvorin {

bool WholeChords::operator()(std::size_t begin, std::size_t length) const {
    constexpr TextView ends = u"\r\n\v";
    const TextView text = document_.text();
    const std::size_t before = begin == 0 ? TextView::npos : text.find_last_of(ends, begin - 1);
    const std::size_t start = before == TextView::npos ? 0 : before + 1;
    const TextView line =
        text.substr(start, std::min(text.find_first_of(ends, begin), text.size()) - start);
    std::vector<std::size_t> diagrams;
    for (std::size_t i = 0; i < line.size() && document_.mayHaveDiagrams(); ++i) {
        if (document_.isDiagramAt(start + i))
            diagrams.push_back(i);
    }
    return isWholeChord(line, begin - start, length, diagrams);
}

std::optional<Selection> WantedMatches::find(TextView what, std::int32_t from,
                                             FindOptions options) {
    for (;;) {
        const std::optional<Selection> match = target_.find(what, from, options);
        if (!match || isWanted_(*match))
            return match;
        from = match->begin + 1;
    }
}

}  // namespace melvorin
