#include "base/Contrast.h"

#include <algorithm>
#include <cmath>

namespace melvorin {

double luminance(Rgb colour) {
    const auto linear = [](int part) {
        const double c = part / 255.0;
        return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.red) + 0.7152 * linear(colour.green) +
           0.0722 * linear(colour.blue);
}

double contrast(Rgb a, Rgb b) {
    const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
    return (lighter + 0.05) / (darker + 0.05);
}

}  // namespace melvorin
