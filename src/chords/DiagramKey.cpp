#include "chords/DiagramKey.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <iterator>

#include "base/DiagramFont.h"

namespace melvorin {
namespace {

constexpr std::array<TextView, 17> kRoots{u"A",  u"A#", u"Bb", u"B",  u"C", u"C#",
                                          u"Db", u"D",  u"D#", u"Eb", u"E", u"F",
                                          u"F#", u"Gb", u"G",  u"G#", u"Ab"};
constexpr std::size_t kFontsPerRoot = 2;
static_assert(kRoots.size() * kFontsPerRoot == kDiagramFontCount);

}  // namespace

std::optional<Text> movedDiagramFace(TextView face, int halfSteps, Spelling spelling) {
    if (!isDiagramFace(face))
        return std::nullopt;
    if (halfSteps % 12 == 0)
        return Text(face);
    const std::size_t digits = kDiagramFaceStart.size();
    const auto number =
        static_cast<std::size_t>((face[digits] - u'0') * 10 + face[digits + 1] - u'0');
    const TextView root = kRoots[(number - 1) / kFontsPerRoot];
    const TextView moved = noteName(melvorin::halfSteps(root) + halfSteps, spelling);
    const auto place = std::find(kRoots.begin(), kRoots.end(), moved) - kRoots.begin();
    const std::size_t font =
        static_cast<std::size_t>(place) * kFontsPerRoot + (number - 1) % kFontsPerRoot + 1;
    return Text(kDiagramFaceStart)
        .append(font < 10 ? u"0" : u"")
        .append(decimal(static_cast<std::int64_t>(font)));
}

}  // namespace melvorin
