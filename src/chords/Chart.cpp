#include "chords/Chart.h"

#include <algorithm>
#include <cstddef>

namespace melvorin {

Text transposeChart(TextView chart, const KeyChange& change, bool* leavesSome) {
    Text result;
    result.reserve(chart.size() + chart.size() / 16);
    // Lyrics and line ends are copied in stretches as long as chord lines leave them.
    TextView rest = chart;
    const char16_t* copied = chart.data();
    while (!rest.empty()) {
        const TextView line = takeLine(rest).chars;
        if (!line.empty() && IsChordLine(line)) {
            result.append(copied, static_cast<std::size_t>(line.data() - copied));
            change.appendMoved(line, result);
            copied = line.data() + line.size();
        } else if (leavesSome != nullptr && !*leavesSome) {
            *leavesSome = mayBeLeftOver(line);
        }
    }
    const char16_t* const end = chart.data() + chart.size();
    result.append(copied, static_cast<std::size_t>(end - copied));
    return result;
}

Text transposeChartWith(TextView chart, const KeyChange& change,
                        const std::vector<LeftOverLine>& others) {
    Text result;
    auto other = others.begin();
    std::size_t number = 0;
    for (TextView rest = chart; !rest.empty(); ++number) {
        const TextLine line = takeLine(rest);
        if (other != others.end() && other->number == number)
            result += moveLeftOver(line.chars, *other++, change).line;
        else if (IsChordLine(line.chars))
            change.appendMoved(line.chars, result);
        else
            result += line.chars;
        result += line.end;
    }
    return result;
}

bool ChartReader::next(ChartLine& line) {
    if (rest_.empty()) {
        return false;
    }
    line.chars = takeLine(rest_).chars;
    line.isChordLine = IsChordLine(line.chars);
    if (line.isChordLine) {
        ScanTokens(line.chars, line.tokens);
        std::reverse(line.tokens.begin(), line.tokens.end());
    } else {
        line.tokens.clear();
    }
    return true;
}

}  // namespace melvorin
