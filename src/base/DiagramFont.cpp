#include "base/DiagramFont.h"

namespace melvorin {

bool isDiagramFace(TextView face) {
    if (face.size() != kDiagramFaceStart.size() + 2 || !face.starts_with(kDiagramFaceStart))
        return false;
    const char16_t tens = face[face.size() - 2];
    const char16_t ones = face.back();
    if (tens < u'0' || tens > u'3' || ones < u'0' || ones > u'9')
        return false;
    const int number = (tens - u'0') * 10 + (ones - u'0');
    return number >= 1 && number <= static_cast<int>(kDiagramFontCount);
}

}  // namespace melvorin
