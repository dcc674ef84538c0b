// What is kept of a song beside its text, with every step of Undo and through a recovery: what its
// lines owe to its key, on which side of F# and Gb it stood when it was opened, and the key that
// the user has told.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "chords/KeyDebt.h"
#include "chords/SongKey.h"

namespace melvorin {

struct SongMemory {
    KeyDebt lines;     // of chords that key changes have passed over
    KeyDebt diagrams;  // lines whose diagrams show the chords of a former key
    Spelling side = Spelling::Sharps;
    std::optional<Key> key;

    bool owesNothing() const { return lines.isZero() && diagrams.isZero(); }
    // The song was edited; no work where nothing is owed.
    void edited(TextView before, TextView after) {
        lines.edited(before, after);
        diagrams.edited(before, after);
    }

    // One line of ASCII text, empty for a song of which nothing is kept.
    std::string text() const;
    // Nothing for text that text() does not write.
    static SongMemory parse(std::string_view text);

    friend bool operator==(const SongMemory&, const SongMemory&) = default;
};

}  // namespace melvorin
