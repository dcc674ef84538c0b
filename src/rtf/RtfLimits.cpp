#include "rtf/RtfLimits.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace melvorin {
namespace {

constexpr auto kCodePages = std::to_array<std::int32_t>(
    {0,     437,   708,   720,   737,   775,   850,   852,   855,   857,   860,   861,   862,
     863,   864,   865,   866,   869,   874,   932,   936,   949,   950,   1250,  1251,  1252,
     1253,  1254,  1255,  1256,  1257,  1258,  1361,  10000, 10001, 10002, 10003, 10004, 10005,
     10006, 10007, 10008, 10010, 10017, 10021, 10029, 10079, 10081, 10082, 20866, 21866, 65001});

constexpr auto kCharsets = std::to_array<std::int32_t>(
    {0,   1,   2,   77,  78,  79,  80,  81,  83,  84,  85,  86,  87,  88,  89,  128, 129,
     130, 134, 136, 161, 162, 163, 177, 178, 179, 180, 181, 186, 204, 222, 238, 254, 255});

// In twips.
struct Distance {
    std::string_view name;
    std::int32_t least;
    std::int32_t most;
};
constexpr auto kDistances = std::to_array<Distance>({{"fi", -31'680, 31'680},
                                                     {"li", -31'680, 31'680},
                                                     {"ri", -31'680, 31'680},
                                                     {"tb", 0, 31'680},
                                                     {"tx", 0, 31'680}});

}  // namespace

bool isKnownCodePage(std::int32_t number) {
    return std::find(kCodePages.begin(), kCodePages.end(), number) != kCodePages.end();
}

bool isKnownCharset(std::int32_t number) {
    return std::find(kCharsets.begin(), kCharsets.end(), number) != kCharsets.end();
}

std::optional<std::int32_t> keptDistance(const RtfToken& word) {
    for (const Distance& distance : kDistances) {
        if (word.name == distance.name)
            return word.hasNumber ? std::clamp(word.number, distance.least, distance.most) : 0;
    }
    return std::nullopt;
}

}  // namespace melvorin
