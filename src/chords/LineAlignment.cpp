#include "chords/LineAlignment.h"

#include <algorithm>
#include <cstdint>

#include "chords/SongDiagrams.h"

namespace melvorin {
namespace {

constexpr std::size_t kMostCells = 1 << 18;

// No letters outweigh a diagram.
std::uint32_t weightOf(char16_t c) {
    return isDiagramToken(c) ? 1U << 16 : c == u' ' ? 1 : 4;
}

void add(LineAlignment& alignment, TextView after, std::size_t index, std::size_t column) {
    alignment.columns[index] = column;
    alignment.weight += weightOf(after[index]);
}

// The middle of two lines, which begins at `front` in both.
void alignMiddle(TextView before, TextView after, std::size_t front, LineAlignment& alignment) {
    const std::size_t width = after.size() + 1;
    std::vector<std::uint32_t> best((before.size() + 1) * width);
    const auto with = [&](std::size_t i, std::size_t j) {
        return best[(i + 1) * width + j + 1] + weightOf(after[j]);
    };
    for (std::size_t i = before.size(); i-- > 0;) {
        for (std::size_t j = after.size(); j-- > 0;) {
            std::uint32_t& cell = best[i * width + j];
            cell = std::max(best[(i + 1) * width + j], best[i * width + j + 1]);
            if (before[i] == after[j])
                cell = std::max(cell, with(i, j));
        }
    }
    for (std::size_t i = 0, j = 0; i < before.size() && j < after.size();) {
        const std::uint32_t cell = best[i * width + j];
        if (before[i] == after[j] && cell == with(i, j)) {
            alignment.columns[front + j] = front + i;
            alignment.weight += weightOf(after[j]);
            ++i;
            ++j;
        } else {
            ++(cell == best[(i + 1) * width + j] ? i : j);
        }
    }
}

}  // namespace

LineAlignment alignLine(TextView before, TextView after) {
    LineAlignment alignment{std::vector<std::size_t>(after.size(), kNoColumn), 0};
    const std::size_t shorter = std::min(before.size(), after.size());
    std::size_t front = 0;
    for (; front < shorter && before[front] == after[front]; ++front)
        add(alignment, after, front, front);
    std::size_t back = 0;
    for (; back < shorter - front &&
           before[before.size() - 1 - back] == after[after.size() - 1 - back];
         ++back)
        add(alignment, after, after.size() - 1 - back, before.size() - 1 - back);
    before = before.substr(front, before.size() - front - back);
    after = after.substr(front, after.size() - front - back);
    if ((before.size() + 1) * (after.size() + 1) <= kMostCells)
        alignMiddle(before, after, front, alignment);
    return alignment;
}

}  // namespace melvorin
