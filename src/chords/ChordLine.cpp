#include "chords/ChordLine.h"

#include <algorithm>
#include <array>

namespace melvorin {

namespace {

constexpr std::array<bool, 256> chordLineTable = [] {
    std::array<bool, 256> table{};
    for (const char16_t c : ChordLineCharacters) {
        table[c] = true;
    }
    return table;
}();

constexpr bool isChordLineCharacter(char16_t c) {
    return c < chordLineTable.size() && chordLineTable[c];
}

// Why a token may run to the next separator: on a chord line every character belongs to the
// notation, ends a token, or is one of the two letters that are never a token of their own.
constexpr bool tokensCoverChordLines() {
    return std::all_of(ChordLineCharacters.begin(), ChordLineCharacters.end(), [](char16_t c) {
        return ChordTokenCharacters.find(c) != TextView::npos || isTokenSeparator(c) || c == u'i' ||
               c == u'M';
    });
}
static_assert(tokensCoverChordLines());
static_assert(std::all_of(TokenSeparators.begin(), TokenSeparators.end(), isTokenSeparator));

}  // namespace

std::size_t CountChordCharacters(TextView line) {
    return static_cast<std::size_t>(std::count_if(line.begin(), line.end(), isChordLineCharacter));
}

// kept: no-word-list
bool IsChordLine(TextView line) {
    return std::all_of(line.begin(), line.end(), isChordLineCharacter);
}

void ScanTokens(TextView line, std::vector<ChordToken>& tokens) {
    tokens.clear();
    std::size_t end = line.size();
    while (end > 0) {
        std::size_t start = end;
        while (start > 0 && !isTokenSeparator(line[start - 1])) {
            --start;
        }
        if (start < end) {
            tokens.push_back({start, line.substr(start, end - start)});
        }
        end = start;
        while (end > 0 && isTokenSeparator(line[end - 1])) {
            --end;
        }
    }
}

}  // namespace melvorin
