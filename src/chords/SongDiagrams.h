// Chord diagrams of a song that is worked on as plain text.
//
// A diagram is a letter in a font of its own. Among plain text it would be read as that letter, so
// it stands there as a token: a character of the private use area, which no song is written with.
// Pictures are carried in the same way.
#pragma once

#include <map>
#include <optional>

#include "base/Editor.h"
#include "base/Text.h"

namespace melvorin {

// The characters that may be tokens. Wherever chords are looked for, they are signs of one cell.
inline constexpr char16_t kFirstDiagramToken = u'\uE000';
inline constexpr char16_t kLastDiagramToken = u'\uEFFF';

inline constexpr bool isDiagramToken(char16_t c) {
    return c >= kFirstDiagramToken && c <= kLastDiagramToken;
}

// What a token stands for. Diagrams of one letter and font have one token.
struct SongDiagram {
    char16_t letter = u' ';  // as the editor's text has it
    Text face;               // empty: a picture, which can stay in its line but not leave it
    std::optional<int> halfPoints;
    std::optional<Rgb> colour;
};

class SongDiagrams {
  public:
    // A token that none of the diagrams has yet and that does not occur in `song`; nothing where
    // all are taken.
    std::optional<char16_t> add(SongDiagram diagram, TextView song);
    std::optional<char16_t> tokenOf(char16_t letter, TextView face) const;
    // Null where the character is no token of these.
    const SongDiagram* find(char16_t token) const;
    bool isEmpty() const { return diagrams_.empty(); }

    // The text with the letters of its diagrams, as the editor has it.
    Text letters(TextView text) const;
    // Whether a key change takes the line for one of chords, and finds more than diagrams in it.
    bool changesWithKey(TextView line) const;

  private:
    std::map<char16_t, SongDiagram> diagrams_;
};

}  // namespace melvorin
