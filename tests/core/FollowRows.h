// Keys pressed in a song, and what must have become of it.
#pragma once

#include <gtest/gtest.h>

#include "FollowedSong.h"

namespace melvorin::testing {

struct Row {
    const char* what;
    const char* before;
    const char* keys;
    const char* after;
};

inline void check(const Row& row) {
    for (const bool correctsAfterwards : {false, true}) {
        FollowedSong song(row.before);
        song.correctsAfterwards = correctsAfterwards;
        song.press(row.keys);
        EXPECT_EQ(song.drawn(), row.after) << row.what << ", afterwards: " << correctsAfterwards;
        EXPECT_FALSE(song.hasWrongSource) << row.what;
    }
}

}  // namespace melvorin::testing
