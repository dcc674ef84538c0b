// The key of a song, from its chords.
//
// What is looked at: which chords there are and how long, by their roots' distance from a tonic;
// the first and the last ones; what resolves where. A conditional logit over the 24 keys weighs it
// (McFadden, "Conditional logit analysis of qualitative choice behavior", 1974). Where a song
// changes its key is the likeliest path through a hidden Markov model whose states are the keys
// (Raphael and Stoddard, "Functional harmonic analysis using probabilistic models", Computer Music
// Journal 28(3), 2004). tools/fit-key.py fits both and says how good they are.
//
// A song moved by any number of half steps has its key moved by as many, with the same percents:
// nothing depends on the names of the notes or on where the octave begins. Nothing here throws but
// for want of memory; the work is in proportion to the length of the song.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "base/Text.h"
#include "chords/Note.h"

namespace melvorin {

struct Key {
    int tonic = 0;  // half steps above C, 0 to 11
    bool minor = false;

    friend bool operator==(const Key&, const Key&) = default;
};

// The key so many half steps higher, or lower.
Key movedKey(Key key, int steps);

// Steps from C to the tonic along the line of fifths (F -1, C 0, G 1, F# 6, Gb -6): of two ways to
// write it the one with fewer accidentals in its signature, of F# and Gb, D#m and Ebm that on
// `side`.
int fifthsOf(Key key, Spelling side);

// "Gb", "F#m".
Text keyName(Key key, Spelling side = Spelling::Sharps);

enum class ChordQuality {
    Major,
    MajorSeventh,
    Minor,
    Dominant,
    HalfDiminished,
    Diminished,
    Other  // suspended, augmented
};

struct KeyChord {
    int root = 0;  // half steps above C, 0 to 11
    ChordQuality quality = ChordQuality::Major;
    double time = 1;             // in bars where the song has bars, else 1
    std::size_t line = 0;        // 0-based, in the song
    bool startsSection = false;  // the first one behind a label or an empty line
};

// From `line` on the song is in `key`.
struct KeyStretch {
    std::size_t line = 0;
    Key key;

    friend bool operator==(const KeyStretch&, const KeyStretch&) = default;
};

struct FoundKey {
    // Nothing where it is not sure, or there is nothing to tell by.
    std::optional<Key> key;
    // The likeliest and the second, also where `key` is one of them; nothing without chords.
    std::optional<Key> first;
    std::optional<Key> second;
    // How sure `first` is; 100 for a key that the song states and its chords do not contradict.
    int percent = 0;
    bool isStated = false;
    // The changes of key behind the first stretch; empty where the song stays in its key.
    std::vector<KeyStretch> changes;
};

// A stated key wins unless the chords contradict it clearly.
FoundKey findKey(std::span<const KeyChord> chords, std::optional<Key> stated = std::nullopt);

// The key of a song in plain text: a chart, or as songs are written on the web.
FoundKey findKey(TextView song);

// "G", "G or Em?", or "?" where there is nothing to tell by.
Text keyInWords(const FoundKey& found, Spelling side = Spelling::Sharps);

}  // namespace melvorin
