#include "chords/KeySetting.h"

#include <cstdlib>

namespace melvorin {

SpellingCaptions captionsOf(Spelling spelling) {
    // kept: caption-paddings
    if (spelling == Spelling::Sharps)
        return {u">>    Use Sharps", u"         Use Flats"};
    return {u"        Use Sharps", u">>    Use Flats"};
}

Text keyTag(int halfSteps) {
    constexpr int tags = 34;
    const int count = (std::abs(halfSteps) + tags - 1) % tags + 1;
    const std::string digits = std::to_string(count);
    return (count >= 10 ? u"Melvorin " : u"Melvorin 0") + fromUtf8(digits);
}

}  // namespace melvorin
