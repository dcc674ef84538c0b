// What the suffix of a chord symbol says, in whatever notation it is written.
#pragma once

#include <array>
#include <cstddef>
#include <optional>

#include "base/Text.h"
#include "chords/NoteNames.h"

namespace melvorin {

enum class Degree { Fourth, Sixth, Seventh, Fifth, Ninth, Eleventh, Thirteenth, Count };

inline constexpr auto kDegrees = static_cast<std::size_t>(Degree::Count);

// A degree that is there both lowered and raised.
inline constexpr char16_t kBothAccidentals = u'*';

struct ChordSuffix {
    bool minor = false;
    bool diminished = false;
    bool halfDiminished = false;
    bool majorSeventh = false;
    // Accidental of each degree that is there: ' ', '#', 'b' or kBothAccidentals; 0 where it is
    // not. A plain fifth tells that there is no third, unless the chord is a minor one.
    std::array<char16_t, kDegrees> degrees{};
    std::optional<NamedNote> bass;

    char16_t& at(Degree degree) { return degrees[static_cast<std::size_t>(degree)]; }
    char16_t at(Degree degree) const { return degrees[static_cast<std::size_t>(degree)]; }
};

// The suffix behind `root`, in its usual signs. Nothing where any part of it means nothing, or may
// mean one thing or another ("C+9", "Cm+7"): such a chord is refused as a whole.
std::optional<ChordSuffix> readChordSuffix(TextView suffix, const NamedNote& root,
                                           const ChordReading& reading);

}  // namespace melvorin
