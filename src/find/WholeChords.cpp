#include "find/WholeChords.h"

#include <algorithm>
#include <vector>

#include "chords/ChordPair.h"

namespace melvorin {

namespace {

// The chord with its root and its bass in capitals.
Text withLargeNotes(TextView chord) {
    Text large(chord);
    for (std::size_t i = 0; i < large.size(); ++i) {
        if ((i == 0 || large[i - 1] == u'/') && large[i] >= u'a' && large[i] <= u'g')
            large[i] = static_cast<char16_t>(large[i] - u'a' + u'A');
    }
    return large;
}

}  // namespace

bool WholeChords::operator()(std::size_t begin, TextView what) const {
    const std::size_t length = what.size();
    constexpr TextView ends = u"\r\n\v";
    const TextView text = document_.text();
    const std::size_t before = begin == 0 ? TextView::npos : text.find_last_of(ends, begin - 1);
    const std::size_t start = before == TextView::npos ? 0 : before + 1;
    const TextView line =
        text.substr(start, std::min(text.find_first_of(ends, begin), text.size()) - start);
    const TextView found = text.substr(begin, length);
    if (found != what && found != withLargeNotes(what))
        return false;
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
