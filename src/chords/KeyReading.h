// What a song says about its key: its chords in order, and a line that names the key.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "base/Text.h"
#include "chords/SongKey.h"

namespace melvorin {

// A key in words: "G", "Bb major", "F#m", "A minor", "es-moll", "B-Dur" (Bb). Nothing where the
// text is no key.
std::optional<Key> readKey(TextView text);

// "Key: G", "Tom: G", "{key: G}".
struct StatedKey {
    Key key;
    bool isGerman = false;   // "Es-Dur": notes have German names
    std::size_t line = 0;    // 0-based
    std::size_t column = 0;  // of the note, 0-based, in UTF-16 units
    std::size_t length = 0;  // of the note alone: "F#" in "F#m"
};

// Nothing where the line states no key.
std::optional<StatedKey> readStatedKey(TextView line);

// The quality that a chord's suffix tells, without its bass; what cannot be read is told by how it
// begins. "7+" is a major seventh, or an augmented dominant where `plusIsMajor` is false.
ChordQuality qualityOf(TextView suffix, bool plusIsMajor = true);

struct SongChords {
    std::vector<KeyChord> chords;
    // The first line that states a key.
    std::optional<StatedKey> stated;
};

// Reads chords over words, in brackets, and behind labels, with bars or without. Where
// some names are German ("H", "Fis"), B is a half step below H.
SongChords readSongChords(TextView song);

}  // namespace melvorin
