#include "base/TextFormat.h"

#include <algorithm>
#include <cstddef>

namespace melvorin {

LineEnd commonLineEnd(TextView text) {
    std::size_t crLf = 0;
    std::size_t lf = 0;
    std::size_t cr = 0;
    while (!text.empty()) {
        const TextLine line = takeLine(text);
        if (line.end.size() == 2)
            ++crLf;
        else if (!line.end.empty())
            ++(line.end == u"\n" ? lf : cr);
    }
    if (lf > crLf && lf > cr)
        return LineEnd::Lf;
    return cr > crLf && cr > lf ? LineEnd::Cr : LineEnd::CrLf;
}

Text withLineEnds(TextView text, LineEnd lineEnd) {
    if (lineEnd == LineEnd::CrLf)
        return toCrLf(text).chars;
    Text lines = toEditorText(text).chars;
    if (lineEnd == LineEnd::Lf)
        std::replace(lines.begin(), lines.end(), u'\r', u'\n');
    return lines;
}

}  // namespace melvorin
