// A run before it is played: which lines it shows, in which order, and for how long.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "base/Text.h"
#include "present/RunPath.h"

namespace melvorin {

// Lines that are shown one after the other, from 1; `last` may be the line beyond the text.
struct RunPart {
    int first = 1;
    int last = 1;

    friend bool operator==(const RunPart&, const RunPart&) = default;
};

struct RunPlan {
    std::vector<RunPart> parts;  // the first kMostParts
    // From the first line to the end of the run; also of what `parts` has no room for.
    std::int64_t steps = 0;
    std::array<bool, kJumpRows> acts{};  // which rows make a jump

    // What the panel has room for to say.
    static constexpr std::size_t kMostParts = 2000;
};

// Of a text of so many lines, from `place` on or from its beginning. Takes as long as there are
// jumps and passes, however long the text is.
RunPlan planRun(const RunSettings& settings, int linesInText,
                const std::optional<RunPath::Place>& place = {});

// What all of it takes, without the count-in.
std::int64_t runMs(const RunPlan& plan, const RunSettings& settings);

// "1-15, 35-44, 16-25; 4:30", with an ellipsis where it is long; "line" is as the text has it.
Text planInWords(const RunPlan& plan, const RunSettings& settings, int linesInText);

// "Row 3 never jumps." or "Rows 2 and 3 never jump.", of those that are on; empty where all do.
Text idleRowsInWords(const RunPlan& plan, const RunSettings& settings);

// That rows lead back so often that nobody plays so long; empty for up to ten hours.
Text circlesInWords(const RunPlan& plan, const RunSettings& settings);

// The lines that a run at `place` shows after the next jump, or after the next pass begins, where
// that is at most `within` steps away.
std::optional<int> nextJump(const RunSettings& settings, int linesInText,
                            const RunPath::Place& place, int within);

// "4:30" and "1:02:03" of whole seconds, rounded.
Text minutesText(std::int64_t ms);
// Reads "4:30", "4.30", "4", which is minutes, and "1:02:03", in milliseconds. Nothing for anything
// else, for no time at all and for more than ten hours.
std::optional<std::int64_t> readMinutes(TextView text);

}  // namespace melvorin
