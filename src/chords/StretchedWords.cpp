#include "chords/StretchedWords.h"

#include <algorithm>
#include <cstddef>
#include <optional>

#include "chords/BracketedLine.h"
#include "chords/CellWidth.h"

namespace melvorin {
namespace {

// The hyphens of a stretched word that end in front of unit `at`; 0 where there are no such.
std::size_t hyphensBefore(TextView words, std::size_t at) {
    std::size_t begin = at;
    while (begin > 0 && words[begin - 1] == u'-')
        --begin;
    const bool isWord = at < words.size() && begin > 0 && isStretchable(words[at]) &&
                        isStretchable(words[begin - 1]);
    return isWord && at - begin > 1 ? at - begin : 0;
}

// Whether the item stands where it does because of the one in front. Two hyphens are the fewest.
bool isPushed(const RowItem& former, const RowItem& item, std::size_t hyphens) {
    const std::size_t free = former.column + former.cells + 1;
    return former.kind == RowItemKind::Chord && item.kind == RowItemKind::Chord &&
           cellsOf(former.shown) < former.cells &&
           (item.column == free || (hyphens == 2 && item.column == free + 1));
}

}  // namespace

void joinStretchedWords(std::vector<RowItem>& row, Text& words) {
    if (words.find(u"--") == Text::npos)
        return;
    Text joined;
    std::size_t copied = 0;  // units of the words
    std::size_t taken = 0;   // cells that were taken out
    std::size_t roomEnd = 0;
    CellReader reader(words);
    CellCharacter character;
    bool more = reader.next(character);
    std::optional<RowItem> former;  // as it was
    for (RowItem& item : row) {
        while (more && character.column < item.column)
            more = reader.next(character);
        const bool isOver = more && character.column == item.column;
        const std::size_t hyphens = isOver ? hyphensBefore(words, character.index) : 0;
        const bool isRoom = former && hyphens > 0 && isPushed(*former, item, hyphens);
        former = item;
        if (isRoom) {
            const std::size_t column = item.column - taken - hyphens;
            const std::size_t need =
                roomEnd > column ? std::max<std::size_t>(2, roomEnd - column) : 0;
            const std::size_t kept = std::min(need, hyphens);
            joined.append(words, copied, character.index - hyphens - copied).append(kept, u'-');
            copied = character.index;
            taken += hyphens - kept;
        }
        item.column -= taken;
        roomEnd = item.column + cellsOf(item.shown) + 1;
    }
    words = joined.append(words, copied, Text::npos);
}

}  // namespace melvorin
