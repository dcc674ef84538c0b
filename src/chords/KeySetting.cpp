#include "chords/KeySetting.h"

#include <cstdlib>

namespace melvorin {

SpellingCaptions captionsOf(Spelling spelling, bool followsKey) {
    constexpr TextView unmarked = u"         Follow the Key";
    // kept: caption-paddings
    if (followsKey)
        return {u"        Use Sharps", u"         Use Flats", u">>    Follow the Key"};
    if (spelling == Spelling::Sharps)
        return {u">>    Use Sharps", u"         Use Flats", unmarked};
    return {u"        Use Sharps", u">>    Use Flats", unmarked};
}

Text keyTag(int halfSteps) {
    constexpr int tags = 34;
    const int count = (std::abs(halfSteps) + tags - 1) % tags + 1;
    const std::string digits = std::to_string(count);
    return (count >= 10 ? u"Melvorin " : u"Melvorin 0") + fromUtf8(digits);
}

}  // namespace melvorin
