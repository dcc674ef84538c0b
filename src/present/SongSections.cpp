#include "present/SongSections.h"

#include <iterator>

#include "chords/CellWidth.h"
#include "chords/LineVerdict.h"

namespace melvorin {
namespace {

constexpr std::size_t kMostLabels = 30;

Text bareLabel(TextView line) {
    TextView label = trimmed(line);
    if (label.starts_with(u'[') && label.ends_with(u']'))
        label = label.substr(1, label.size() - 2);
    else if (label.ends_with(u':'))
        label.remove_suffix(1);
    return Text(trimmed(label));
}

}  // namespace

SectionLabels sectionLabels(TextView song) {
    SectionLabels labels;
    int number = 0;
    for (const TextView line : splitLines(song)) {
        ++number;
        const std::size_t length = sectionLabelLength(line);
        if (Text label = bareLabel(line.substr(0, length)); !label.empty())
            labels.emplace(number, std::move(label));
    }
    return labels;
}

Text lineInWords(int line, const SectionLabels& labels) {
    Text text = u"line " + decimal(line);
    const auto behind = labels.upper_bound(line);
    if (behind != labels.begin())
        text += u", " + std::prev(behind)->second;
    return text;
}

Text labelsInWords(const SectionLabels& labels) {
    Text text;
    std::size_t count = 0;
    for (const auto& [line, label] : labels) {
        if (count++ == kMostLabels)
            return text + u"\r\n\u2026";
        text.append(text.empty() ? u"" : u"\r\n").append(decimal(line)).append(u"  ").append(label);
    }
    return text;
}

Text noteInWords(const RunNote& note, const SectionLabels& labels) {
    if (note.countIn > 0)
        return u"Count-in " + decimal(note.countIn);
    return note.next ? u"then " + lineInWords(*note.next, labels) : Text();
}

}  // namespace melvorin
