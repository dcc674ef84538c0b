// Which lines of a chart hold chords, and where the chords stand on them.
//
// A column is the 0-based number of a UTF-16 unit within its line. Lines come without their line
// ends. Nothing here fails or throws on any text.
#pragma once

#include <cstddef>
#include <vector>

#include "base/Text.h"

namespace melvorin {

// The characters a chord line is made of. The digits 0, 2 and 8, the minus sign and every other
// letter are left out on purpose: they keep most lyrics from passing for chords.
// kept: chord-characters
inline constexpr TextView ChordLineCharacters = u" ABCDEFGmb#1345679\u00B0iSus/+M\u00BAad()";

// The characters of the chord notation as a whole, wider than what a chord line may hold.
inline constexpr TextView ChordTokenCharacters = u"-ad)(bmABCDEFG1234567890+#\u00B0\u00BASus/";

// The characters that end a token.
inline constexpr TextView TokenSeparators = u" &";

inline constexpr bool isTokenSeparator(char16_t c) {
    return c == u' ' || c == u'&';
}

// A chord on its line. `text` is a view into the scanned line.
struct ChordToken {
    std::size_t column = 0;
    TextView text;

    friend bool operator==(const ChordToken&, const ChordToken&) = default;
};

// How many characters of the line are in `ChordLineCharacters`, compared with case.
std::size_t CountChordCharacters(TextView line);

// True when every character is in `ChordLineCharacters`, as it is for an empty line and a line of
// blanks. There is no word list: "Dad" is a chord line.
bool IsChordLine(TextView line);

// Puts the tokens of the line into `tokens`, in place of what was there, from the last one to the
// first. A token is a run of characters that no member of `TokenSeparators` interrupts: `Gdim` and
// `C7M` are one token each although "i" and "M" are not in `ChordTokenCharacters`, and on a lyric
// line the tokens are its words. Together with the separators they make up the whole line. The
// vector is the caller's, so that a walk over many lines allocates once.
void ScanTokens(TextView line, std::vector<ChordToken>& tokens);

}  // namespace melvorin
