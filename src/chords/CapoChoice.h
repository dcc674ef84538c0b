// Where a capo makes a song easy: at each fret, the key of the shapes that are played, and how many
// of its chords are open ones there.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

#include "base/Text.h"
#include "chords/CapoLine.h"
#include "chords/SongKey.h"

namespace melvorin {

// How a chord is gripped: with strings that ring open and no finger over several of them, with a
// finger over several, or closed without such a one.
enum class Grip { Open, Barre, Closed };

// A grip told by its frets and fingers, from the low E string up: "x32010" and "-32-1-"; hyphens
// part the frets where one has two digits. Nothing for a text that is none.
std::optional<Grip> gripOf(TextView frets, TextView fingers);

// The frets of such a text, string by string.
std::vector<Text> fretsIn(TextView frets);

// Tells how chords are gripped, usually by the chord book.
class ChordGrips {
  public:
    virtual ~ChordGrips() = default;
    // The best grip of a chord in the house's spelling; nothing for one that is not there.
    virtual std::optional<Grip> gripOf(TextView chord) const = 0;
};

// The chords of a song in the house's spelling, each once, in the order in which they come.
std::vector<Text> chordsOfSong(TextView song);

struct CapoChoice {
    int fret = 0;
    Key shapes;  // the key that is written and played
    std::size_t open = 0;
    std::size_t barres = 0;
    std::size_t closed = 0;
    std::size_t unknown = 0;  // not in the book, even without their bass

    friend bool operator==(const CapoChoice&, const CapoChoice&) = default;
};

// Frets 0 to kHighestCapo for a song that is written in `written` for a capo at `capo` (0: none),
// the easiest first: with the fewest barres, then the fewest closed and unknown grips, then the
// lowest fret. `grips` may be null; the frets are in order then and nothing is counted.
std::vector<CapoChoice> capoChoices(std::span<const Text> chords, Key written, int capo,
                                    const ChordGrips* grips);

}  // namespace melvorin
