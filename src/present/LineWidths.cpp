#include "present/LineWidths.h"

#include <algorithm>
#include <functional>
#include <utility>

#include "chords/CellWidth.h"
#include "rtf/RtfLooks.h"
#include "rtf/RtfMap.h"

namespace melvorin {
namespace {

// The sizes in half points, asked for from the first character to the last.
class Sizes {
  public:
    Sizes(std::string_view rtf, TextView text) : map_(RtfMap::parse(rtf)) {
        if (map_ && map_->text() == text)
            looks_ = looksOf(rtf);
    }
    int at(std::size_t position) {
        if (looks_.empty())
            return 1;
        const std::size_t source = map_->sourceAt(position);
        while (next_ < looks_.size() && looks_[next_].begin <= source)
            ++next_;
        return looks_[next_ - 1].look.halfPoints;
    }

  private:
    std::optional<RtfMap> map_;
    std::vector<RtfLookChange> looks_;
    std::size_t next_ = 1;
};

}  // namespace

std::vector<std::int32_t> widestLines(std::string_view rtf, TextView text, std::size_t count) {
    Sizes sizes(rtf, text);
    std::vector<std::pair<std::size_t, std::int32_t>> widths;
    std::size_t position = 0;
    for (const TextView line : splitLines(text)) {
        int size = 0;
        for (std::size_t i = 0; i < line.size(); ++i)
            size = std::max(size, sizes.at(position + i));
        widths.emplace_back(cellsOf(line) * static_cast<std::size_t>(size),
                            static_cast<std::int32_t>(widths.size()));
        position += line.size() + 1;
    }
    const std::size_t most = std::min(count, widths.size());
    std::partial_sort(widths.begin(), widths.begin() + static_cast<std::ptrdiff_t>(most),
                      widths.end(), std::greater<>());
    std::vector<std::int32_t> lines(most);
    std::transform(widths.begin(), widths.begin() + static_cast<std::ptrdiff_t>(most),
                   lines.begin(), [](const auto& line) { return line.second; });
    return lines;
}

}  // namespace melvorin
