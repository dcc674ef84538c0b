#include "chords/Proportional.h"

#include <algorithm>

#include "chords/CellWidth.h"

namespace melvorin {
namespace {

// Typical widths of a sans-serif face in thousandths of its size; every common face is near.
std::size_t widthOf(char32_t c) {
    if (isAnyBlank(c))
        return 278;
    constexpr std::u32string_view narrow = U"iIjlt'.,:;!|()[]-/\\`f\u2019";
    constexpr std::u32string_view wide = U"mwMWQO@%\u2014";
    if (narrow.find(c) != std::u32string_view::npos)
        return 270;
    if (wide.find(c) != std::u32string_view::npos)
        return 800;
    const bool capital = c >= U'A' && c <= U'Z';
    return capital ? 680 : c >= 0x1100 ? 1000 : 550;
}

// Where each character begins, and where the last one ends: on the screen, and in cells.
struct Edges {
    std::vector<std::size_t> widths;
    std::vector<std::size_t> cells;
};

Edges edgesOf(TextView line) {
    Edges edges;
    CellReader reader(line);
    CellCharacter character;
    std::size_t width = 0;
    std::size_t cells = 0;
    while (reader.next(character)) {
        edges.widths.resize(character.index + character.length, width);
        edges.cells.resize(character.index + character.length, cells);
        width += widthOf(character.code);
        cells += character.width;
    }
    edges.widths.push_back(width);
    edges.cells.push_back(cells);
    return edges;
}

std::size_t lastItemBegin(TextView chords) {
    chords = trimmedRight(chords);
    const std::size_t blank = chords.find_last_of(u" \t\u00A0");
    return blank == TextView::npos ? 0 : blank + 1;
}

}  // namespace

void ProportionalTest::addPair(TextView chords, TextView words) {
    constexpr std::size_t slack = 3;  // a last chord often stands just behind the words
    constexpr std::size_t slackWidth = 1100;
    const std::size_t last = lastItemBegin(chords);
    // A tab is not typed to line up in a proportional font, and one chord alone tells nothing.
    if (last == 0 || chords.find(u'\t') != TextView::npos)
        return;
    ++pairs_;
    const bool over = cellsOf(chords.substr(0, last)) > cellsOf(trimmedRight(words)) + slack;
    const bool fits = over && edgesOf(chords).widths[last] <=
                                  edgesOf(trimmedRight(words)).widths.back() + slackWidth;
    overshooting_ += fits ? 1U : 0U;
}

void moveToSyllables(std::vector<RowItem>& row, TextView chords, TextView words) {
    const Edges over = edgesOf(chords);
    const Edges under = edgesOf(words);
    const std::vector<std::size_t>& edges = under.widths;
    std::size_t at = 0;
    for (RowItem& item : row) {
        const std::size_t edge = over.widths[item.index];
        while (at + 1 < edges.size() && edges[at + 1] <= edge)
            ++at;
        if (at + 1 >= edges.size()) {
            item.column = under.cells.back() + (edge - edges.back()) / widthOf(U'n');
            continue;
        }
        // The nearer edge of the character, and the beginning of a word one character away.
        std::size_t near = edge - edges[at] > edges[at + 1] - edge ? at + 1 : at;
        if (near + 1 < words.size() && isAnyBlank(words[near]) && !isAnyBlank(words[near + 1]))
            ++near;
        item.column = under.cells[near];
    }
}

}  // namespace melvorin
