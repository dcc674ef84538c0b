// The song that the benches repeat, in UTF-8.
#pragma once

#include <string_view>

namespace melvorin {

inline constexpr std::string_view verse[] = {
    "Lantern on the Hill",
    "",
    "G        Em       C          D7",
    "When the lantern burns upon the hill",
    "    G/B      Am7      D7(9)    G",
    "and the mill wheel turns no more",
    "C   F#m7(9)   Bm   E7   Am   D/F#",
    "I will walk the lane to Mari\xC3\xB1o",
    "Eb\xC2\xBA      Bb6/9    Ab    Gdim   C7M",
    "and be knocking at your door",
};

}  // namespace melvorin
