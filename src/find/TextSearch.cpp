#include "find/TextSearch.h"

#include <algorithm>

#include "base/LetterCase.h"

namespace melvorin {
namespace {

bool isBetween(char16_t c, char16_t first, char16_t last) {
    return c >= first && c <= last;
}

// Letters and digits of any script; beyond ASCII that is all but signs and punctuation.
bool isWordCharacter(char16_t c) {
    if (c < 0x80)
        return isBetween(c, u'0', u'9') || isBetween(c, u'A', u'Z') || isBetween(c, u'a', u'z');
    return c >= 0x00C0 && c != 0x00D7 && c != 0x00F7 && !isBetween(c, 0x2000, 0x2BFF) &&
           !isBetween(c, 0x3000, 0x303F);
}

// `at(i)` is the character at i, for i below `size`.
template <class At>
std::optional<std::size_t> search(std::size_t size, At at, TextView what, std::size_t from,
                                  FindOptions options) {
    if (what.empty() || what.size() > size)
        return std::nullopt;
    const auto same = [&](char16_t a, char16_t b) {
        return a == b || (!options.matchCase && unicodeLowerCase(a) == unicodeLowerCase(b));
    };
    const auto isAlone = [&](std::size_t start) {
        const std::size_t end = start + what.size();
        return (start == 0 || !isWordCharacter(at(start - 1))) &&
               (end == size || !isWordCharacter(at(end)));
    };
    for (std::size_t start = from; start + what.size() <= size; ++start) {
        std::size_t length = 0;
        while (length < what.size() && same(at(start + length), what[length]))
            ++length;
        if (length == what.size() && (!options.wholeWord || isAlone(start)))
            return start;
    }
    return std::nullopt;
}

}  // namespace

std::optional<std::size_t> findText(TextView text, TextView what, std::size_t from,
                                    FindOptions options) {
    return search(
        text.size(), [&](std::size_t i) { return text[i]; }, what, from, options);
}

GapText::GapText(TextView text) : after_(text.rbegin(), text.rend()) {
    before_.reserve(text.size() + text.size() / 8);
}

void GapText::moveGap(std::size_t position) {
    while (before_.size() < position && !after_.empty()) {
        before_ += after_.back();
        after_.pop_back();
    }
    while (before_.size() > position) {
        after_ += before_.back();
        before_.pop_back();
    }
}

std::optional<Selection> GapText::find(TextView what, std::int32_t from, FindOptions options) {
    const std::size_t left = before_.size();
    const std::size_t size = left + after_.size();
    const auto at = [&](std::size_t i) {
        return i < left ? before_[i] : after_[after_.size() - 1 - (i - left)];
    };
    const auto start = search(size, at, what, static_cast<std::size_t>(from), options);
    if (!start)
        return std::nullopt;
    return Selection{static_cast<std::int32_t>(*start),
                     static_cast<std::int32_t>(*start + what.size())};
}

void GapText::replace(Selection match, TextView with) {
    moveGap(static_cast<std::size_t>(match.begin));
    after_.resize(after_.size() - static_cast<std::size_t>(match.end - match.begin));
    before_ += with;
}

Text GapText::text() const {
    Text whole = before_;
    return whole.append(after_.rbegin(), after_.rend());
}

}  // namespace melvorin
