#include "sound/PlayerPictures.h"

#include <cmath>

namespace melvorin {
namespace {

constexpr std::uint32_t kGreen = 0x1A7F37;
constexpr std::uint32_t kRed = 0xB3261E;
constexpr int kSamples = 4;  // each way in a pixel, for smooth edges

// `covers` tells for a point of the unit square whether the sign is there.
template <class Covers>
Pixels drawn(int side, std::uint32_t colour, Covers covers) {
    Pixels picture{side, side, {}, true};
    for (int y = 0; y < side; ++y) {
        for (int x = 0; x < side; ++x) {
            std::uint32_t hits = 0;
            for (int k = 0; k < kSamples * kSamples; ++k) {
                const int column = k % kSamples;
                const int row = k / kSamples;
                const double px = (x + (column + 0.5) / kSamples) / side;
                const double py = (y + (row + 0.5) / kSamples) / side;
                hits += covers(px, py) ? 1U : 0U;
            }
            const std::uint32_t alpha = hits * 255 / (kSamples * kSamples);
            picture.argb.push_back(alpha << 24 | (alpha > 0 ? colour : 0));
        }
    }
    return picture;
}

}  // namespace

Pixels playPicture(int side) {
    return drawn(side, kGreen, [](double x, double y) {
        return x > 0.15 && std::abs(y - 0.5) < 0.45 * (0.95 - x) / 0.8;
    });
}

Pixels stopPicture(int side) {
    return drawn(side, kRed, [](double x, double y) {
        return std::abs(x - 0.5) < 0.35 && std::abs(y - 0.5) < 0.35;
    });
}

}  // namespace melvorin
