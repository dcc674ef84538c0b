#include "widgets/FontChoice.h"

#include <algorithm>

#include "base/Contrast.h"
#include "base/DiagramFont.h"
#include "base/LetterCase.h"
#include "base/Paths.h"

namespace melvorin {
namespace {

constexpr int kSizes[] = {8, 9, 10, 11, 12, 14, 16, 18, 20, 22, 24, 26, 28, 36, 48, 72};
constexpr int kSmallest = 2 * 4;  // half points
constexpr int kLargest = 2 * 400;

// The named ones, then a row of light tones and below it the deep tones of the same hues.
// kept: colour-names
constexpr Swatch kSwatches[kSwatchCount] = {
    {u"Branco", {255, 255, 255}},
    {u"Cinza Claro", {211, 211, 211}},
    {u"Vermelho Claro", {255, 128, 128}},
    {u"Laranja Claro", {255, 204, 128}},
    {u"Rosa", {255, 166, 201}},
    {u"Cinza", {128, 128, 128}},
    {u"Vermelho", {255, 0, 0}},
    {u"Laranja", {255, 128, 0}},
    {u"Amarelo", {255, 255, 0}},
    {u"Azul", {0, 0, 255}},
    {u"Verde", {0, 128, 0}},
    {u"Preto", {0, 0, 0}},
    {u"", {255, 224, 224}},
    {u"", {255, 232, 214}},
    {u"", {255, 243, 209}},
    {u"", {255, 255, 214}},
    {u"", {238, 250, 212}},
    {u"", {220, 245, 220}},
    {u"", {212, 245, 236}},
    {u"", {212, 243, 250}},
    {u"", {214, 230, 252}},
    {u"", {224, 224, 255}},
    {u"", {236, 222, 252}},
    {u"", {250, 220, 245}},
    {u"", {240, 230, 220}},
    {u"", {240, 240, 240}},
    {u"", {128, 0, 0}},
    {u"", {160, 72, 16}},
    {u"", {150, 102, 0}},
    {u"", {122, 122, 0}},
    {u"", {78, 110, 8}},
    {u"", {0, 88, 40}},
    {u"", {0, 104, 92}},
    {u"", {0, 98, 130}},
    {u"", {0, 70, 150}},
    {u"", {32, 32, 128}},
    {u"", {84, 32, 140}},
    {u"", {128, 16, 104}},
    {u"", {96, 64, 32}},
    {u"", {64, 64, 64}},
};

}  // namespace

std::span<const int> fontSizes() {
    return kSizes;
}

std::optional<int> parseFontSize(TextView typed) {
    int tenths = 0;
    int digits = 0;
    int behindPoint = -1;
    for (const char16_t c : typed) {
        if (c >= u'0' && c <= u'9' && digits < 5 && behindPoint < 1) {
            tenths = tenths * 10 + (c - u'0');
            ++digits;
            behindPoint += behindPoint < 0 ? 0 : 1;
        } else if ((c == u'.' || c == u',') && behindPoint < 0) {
            behindPoint = 0;
        } else {
            return std::nullopt;
        }
    }
    if (behindPoint < 1)
        tenths *= 10;
    const int halfPoints = tenths / 5;
    if (tenths % 5 != 0 || halfPoints < kSmallest || halfPoints > kLargest)
        return std::nullopt;
    return halfPoints;
}

Text fontSizeText(int halfPoints) {
    return fromUtf8(std::to_string(halfPoints / 2) + (halfPoints % 2 == 0 ? "" : ".5"));
}

std::span<const Swatch, kSwatchCount> swatches() {
    return kSwatches;
}

Text swatchTitle(const Swatch& swatch) {
    if (!swatch.name.empty())
        return Text(swatch.name);
    const auto part = [](const char* name, int value) { return name + std::to_string(value); };
    return fromUtf8(part("Red ", swatch.colour.red) + part(", green ", swatch.colour.green) +
                    part(", blue ", swatch.colour.blue));
}

Rgb inkOn(Rgb face) {
    constexpr Rgb black{0, 0, 0};
    constexpr Rgb white{255, 255, 255};
    return contrast(face, black) > contrast(face, white) ? black : white;
}

std::size_t neighbour(std::span<const Area> areas, std::size_t index, Arrow arrow) {
    const Area& from = areas[index];
    const bool isSideways = arrow == Arrow::Left || arrow == Arrow::Right;
    const int sign = arrow == Arrow::Left || arrow == Arrow::Up ? -1 : 1;
    const auto centreX = [](const Area& area) { return 2 * area.left + area.width; };
    const auto centreY = [](const Area& area) { return 2 * area.top + area.height; };
    std::size_t best = index;
    long bestDistance = 0;
    for (std::size_t i = 0; i < areas.size(); ++i) {
        const int x = centreX(areas[i]) - centreX(from);
        const int y = centreY(areas[i]) - centreY(from);
        const int along = sign * (isSideways ? x : y);
        const int across = std::abs(isSideways ? y : x);
        // Sideways only in the same row; up and down to the nearest row first.
        if (along <= 0 || (isSideways && across != 0))
            continue;
        const long distance = isSideways ? along : along * 10000L + across;
        if (best == index || distance < bestDistance) {
            best = i;
            bestDistance = distance;
        }
    }
    return best;
}

std::vector<Text> shownFaces(std::vector<Text> installed) {
    std::erase_if(installed, [](const Text& face) {
        return face.empty() || face.front() == u'@' || isDiagramFace(face);
    });
    const auto before = [](const Text& a, const Text& b) {
        const Text lowerA = asciiLowerCase(a);
        const Text lowerB = asciiLowerCase(b);
        return lowerA != lowerB ? lowerA < lowerB : a < b;
    };
    std::sort(installed.begin(), installed.end(), before);
    installed.erase(std::unique(installed.begin(), installed.end()), installed.end());
    return installed;
}

std::optional<std::size_t> findFace(std::span<const Text> faces, TextView typed) {
    if (typed.empty())
        return std::nullopt;
    const Text wanted = asciiLowerCase(typed);
    const auto found = std::find_if(faces.begin(), faces.end(), [&](const Text& face) {
        return asciiLowerCase(face).starts_with(wanted);
    });
    if (found == faces.end())
        return std::nullopt;
    return static_cast<std::size_t>(found - faces.begin());
}

}  // namespace melvorin
