#include "present/StageLayout.h"

#include <algorithm>
#include <iterator>

namespace melvorin {
namespace {

constexpr int kTextTopTwips = 100;
constexpr std::int64_t kRestMs = 2000;
constexpr int kZooms[] = {50, 60, 75, 90, 100, 110, 125, 150, 175, 200, 250, 300, 350, 400, 500};

// At the far corner, so far from its edges; the near corner stays in sight.
Area atCorner(const Area& outer, int width, int height, int right, int below) {
    return {outer.left + std::max(0, outer.width - width - right),
            outer.top + std::max(0, outer.height - height - below), width, height};
}

}  // namespace

Area placePanel(const Area& work, int width, int height) {
    return atCorner(work, width, height, 0, 0);
}

Area placeBar(const Area& screen, int width, int height) {
    return atCorner(screen, width, height, width / 4, width / 4);
}

Area placeText(int clientWidth, int clientHeight, int dpi) {
    const int top = (kTextTopTwips * dpi + 720) / 1440;
    return {0, top, clientWidth, std::max(0, clientHeight - top)};
}

int zoomed(int percent, bool larger) {
    if (larger) {
        const auto next = std::upper_bound(std::begin(kZooms), std::end(kZooms), percent);
        return next == std::end(kZooms) ? percent : *next;
    }
    const auto same = std::lower_bound(std::begin(kZooms), std::end(kZooms), percent);
    return same == std::begin(kZooms) ? percent : *std::prev(same);
}

bool PointerRest::isHidden(std::int64_t nowMs, int x, int y, bool isRunning) {
    const bool isStill = isRunning && wasRunning_ && x == x_ && y == y_;
    if (!isStill)
        since_ = nowMs;
    x_ = x;
    y_ = y;
    wasRunning_ = isRunning;
    return isStill && nowMs - since_ >= kRestMs;
}

}  // namespace melvorin
