// What lines of a song owe to its key: those of chords that key changes have passed over, and those
// whose diagrams show the chords of a former key.
#pragma once

#include <string>
#include <string_view>

#include "chords/KeyDebt.h"

namespace melvorin {

struct SongDebt {
    KeyDebt lines;
    KeyDebt diagrams;

    bool isZero() const { return lines.isZero() && diagrams.isZero(); }
    // The song was edited; no work where nothing is owed.
    void edited(TextView before, TextView after) {
        lines.edited(before, after);
        diagrams.edited(before, after);
    }

    // One line of ASCII text, empty where nothing is owed.
    std::string text() const {
        return isZero() ? std::string() : lines.text() + "|" + diagrams.text();
    }
    // Nothing owed for text that text() does not write.
    static SongDebt parse(std::string_view text) {
        const std::size_t bar = text.find('|');
        if (bar == std::string_view::npos)
            return {};
        return {KeyDebt::parse(text.substr(0, bar)), KeyDebt::parse(text.substr(bar + 1))};
    }

    friend bool operator==(const SongDebt&, const SongDebt&) = default;
};

}  // namespace melvorin
