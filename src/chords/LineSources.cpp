#include "chords/LineSources.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "base/EditorLine.h"
#include "chords/CellWidth.h"

namespace melvorin {
namespace {

struct Stretch {
    std::size_t begin = 0;
    std::size_t end = 0;

    std::size_t size() const { return end - begin; }
};

std::vector<TextView> linesOf(TextView text) {
    std::vector<TextView> lines;
    for (;;) {
        const TextLine line = takeEditorLine(text);
        lines.push_back(line.chars);
        if (line.end.empty())
            return lines;
    }
}

// How much of the two lines is the same where one of them is a part of the other; else 0.
std::size_t sharedPart(TextView a, TextView b) {
    a = trimmed(a);
    b = trimmed(b);
    return (a.size() <= b.size() ? b.find(a) : a.find(b)) != TextView::npos
               ? std::min(a.size(), b.size())
               : 0;
}

class Pairing {
  public:
    Pairing(TextView before, TextView after)
        : before_(linesOf(before)), after_(linesOf(after)), sources_(after_.size(), kNoLine) {}
    std::vector<std::size_t> run();

  private:
    using Pairs = std::vector<std::pair<std::size_t, std::size_t>>;

    Pairs longestCommon(Stretch before, Stretch after) const;
    Pairs nextCommon(Stretch before, Stretch after) const;
    void pairGap(Stretch before, Stretch after);

    std::vector<TextView> before_;
    std::vector<TextView> after_;
    std::vector<std::size_t> sources_;
};

// The longest sequence of lines that both stretches have.
Pairing::Pairs Pairing::longestCommon(Stretch before, Stretch after) const {
    const std::size_t width = after.size() + 1;
    std::vector<std::uint16_t> longest((before.size() + 1) * width);
    const auto same = [&](std::size_t i, std::size_t j) {
        return before_[before.begin + i] == after_[after.begin + j];
    };
    for (std::size_t i = before.size(); i-- > 0;) {
        for (std::size_t j = after.size(); j-- > 0;) {
            const std::size_t at = i * width + j;
            longest[at] = same(i, j) ? static_cast<std::uint16_t>(longest[at + width + 1] + 1)
                                     : std::max(longest[at + width], longest[at + 1]);
        }
    }
    Pairs pairs;
    for (std::size_t i = 0, j = 0; i < before.size() && j < after.size();) {
        const std::size_t at = i * width + j;
        if (same(i, j))
            pairs.emplace_back(before.begin + i++, after.begin + j++);
        else
            ++(longest[at + width] >= longest[at + 1] ? i : j);
    }
    return pairs;
}

// For texts too long for that: each line with the next one that is the same.
Pairing::Pairs Pairing::nextCommon(Stretch before, Stretch after) const {
    constexpr std::size_t farthest = 1000;
    Pairs pairs;
    for (std::size_t line = after.begin; line < after.end; ++line) {
        for (std::size_t i = before.begin; i < std::min(before.end, before.begin + farthest); ++i) {
            if (before_[i] == after_[line]) {
                pairs.emplace_back(i, line);
                before.begin = i + 1;
                break;
            }
        }
    }
    return pairs;
}

// Lines between two that are the same. As many as before are the same lines, edited.
void Pairing::pairGap(Stretch before, Stretch after) {
    constexpr std::size_t most = 1000;
    for (std::size_t line = after.begin; line < after.end; ++line) {
        if (before.size() == after.size()) {
            sources_[line] = before.begin + (line - after.begin);
            continue;
        }
        std::size_t best = 0;
        for (std::size_t i = before.begin; i < std::min(before.end, before.begin + most); ++i) {
            const std::size_t shared = sharedPart(before_[i], after_[line]);
            if (shared > best) {
                best = shared;
                sources_[line] = i;
            }
        }
    }
}

std::vector<std::size_t> Pairing::run() {
    const std::size_t shorter = std::min(before_.size(), after_.size());
    std::size_t front = 0;
    for (; front < shorter && before_[front] == after_[front]; ++front)
        sources_[front] = front;
    Stretch old{front, before_.size()};
    Stretch now{front, after_.size()};
    while (std::min(old.size(), now.size()) > 0 && before_[old.end - 1] == after_[now.end - 1])
        sources_[--now.end] = --old.end;
    if (old.size() != now.size()) {
        constexpr std::size_t most = 1 << 20;
        const bool few = (old.size() + 1) * (now.size() + 1) <= most &&
                         std::min(old.size(), now.size()) < 0xFFFF;
        for (const auto& [from, to] : few ? longestCommon(old, now) : nextCommon(old, now)) {
            pairGap({old.begin, from}, {now.begin, to});
            sources_[to] = from;
            old.begin = from + 1;
            now.begin = to + 1;
        }
    }
    pairGap(old, now);
    return std::move(sources_);
}

}  // namespace

std::vector<std::size_t> lineSources(TextView before, TextView after) {
    return Pairing(before, after).run();
}

}  // namespace melvorin
