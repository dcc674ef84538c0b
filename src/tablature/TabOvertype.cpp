#include "tablature/TabOvertype.h"

#include <algorithm>

namespace melvorin {
namespace {

bool isBar(char16_t c) {
    return c == u'|' || c == 0xA6 || c == 0x2016;
}

// The staff of a line: from its first bar or dash to its last one, and the fret behind that.
struct Staff {
    std::size_t begin = 0;
    std::size_t end = 0;
};

Staff staffOf(TextView line) {
    constexpr TextView signs = u"|-\u00A6\u2016";
    Staff staff{line.find_first_of(signs), line.find_last_of(signs)};
    if (staff.begin == TextView::npos)
        return {line.size(), line.size()};
    ++staff.end;
    while (staff.end < line.size() && line[staff.end] >= u'0' && line[staff.end] <= u'9')
        ++staff.end;
    return staff;
}

// Combining marks and what begins at the first East Asian letters take no cell, or two.
bool takesOneCell(char16_t c) {
    return c >= u' ' && c != 0x7F && c < 0x1100 && !(c >= 0x300 && c < 0x370);
}

// All of the stretch but its bars.
void fillWithDashes(Text& line, std::size_t begin, std::size_t end) {
    std::replace_if(
        line.begin() + static_cast<std::ptrdiff_t>(begin),
        line.begin() + static_cast<std::ptrdiff_t>(end), [](char16_t c) { return !isBar(c); },
        u'-');
}

TabChange change(const Text& line, std::size_t begin, std::size_t end, std::size_t caret) {
    return {begin, line.substr(begin, end - begin), caret};
}

}  // namespace

std::optional<TabChange> typedOverTab(TextView line, std::size_t begin, std::size_t end,
                                      TextView typed) {
    const Staff staff = staffOf(line);
    if (begin >= staff.end || typed.empty() ||
        !std::all_of(typed.begin(), typed.end(), takesOneCell))
        return std::nullopt;
    Text now(line);
    begin = std::max(begin, staff.begin);
    end = std::min(std::max(begin, end), staff.end);
    std::size_t at = begin;
    for (const char16_t c : typed) {
        while (at < staff.end && isBar(line[at]))
            ++at;
        if (at == staff.end)
            return std::nullopt;
        now[at++] = c;
    }
    if (at < end)
        fillWithDashes(now, at, end);
    return change(now, begin, std::max(at, end), at);
}

std::optional<TabChange> erasedInTab(TextView line, std::size_t begin, std::size_t end,
                                     TabErase key) {
    const Staff staff = staffOf(line);
    const bool isBehind = begin > staff.end || (begin == staff.end && begin < end);
    if (isBehind || (begin == staff.end && key == TabErase::Delete)) {
        // The line below is another string: it is not drawn up.
        if (key == TabErase::Delete && begin == line.size())
            return TabChange{begin, Text(), begin};
        return std::nullopt;
    }
    Text now(line);
    if (begin < end) {
        const std::size_t from = std::max(begin, staff.begin);
        const std::size_t to = std::max(from, std::min(end, staff.end));
        fillWithDashes(now, from, to);
        return change(now, from, to, begin);
    }
    std::size_t at = begin;
    if (key == TabErase::Backspace) {
        while (at > staff.begin && isBar(line[at - 1]))
            --at;
        if (at <= staff.begin)
            return TabChange{0, Text(), 0};
        now[at - 1] = u'-';
        return change(now, at - 1, at, at - 1);
    }
    at = std::max(at, staff.begin);
    while (at < staff.end && isBar(line[at]))
        ++at;
    if (at == staff.end)
        return TabChange{at, Text(), at};
    now[at] = u'-';
    return change(now, at, at + 1, at + 1);
}

}  // namespace melvorin
