#include "chords/DirectiveLines.h"

#include <algorithm>
#include <set>

#include "chords/CellWidth.h"
#include "chords/Directives.h"
#include "chords/SongParts.h"

namespace melvorin {
namespace {

// As in a song that has directives.
constexpr ChordReading kBrackets{Naming::Letters, false, false, true};
constexpr TextView kEnd = u"end_of_";

bool isBlank(const SourceLine& line) {
    return trimmed(line.text).empty();
}

std::optional<Directive> directiveOf(const SourceLine& line) {
    return line.verdict == LineVerdict::Directive ? readDirective(line.text) : std::nullopt;
}

// The label that the chart has for the line, where it has one.
std::optional<Text> labelOf(const SourceLine& line) {
    if (line.verdict == LineVerdict::Section)
        return Text(trimmedRight(line.text));
    const auto directive = directiveOf(line);
    if (!directive)
        return std::nullopt;
    if (directive->name != u"comment")
        return shownSection(*directive);
    auto shown = shownRemark(*directive);
    return shown && judgeLine(*shown) == LineVerdict::Section ? shown : std::nullopt;
}

bool isStart(const std::optional<Directive>& directive) {
    return directive && directive->name.starts_with(u"start_of_");
}

// The line that ends the section of line `number`, or begins another one.
struct SectionStop {
    std::size_t line = 0;
    bool isEnd = false;
};

SectionStop sectionStop(const std::vector<SourceLine>& source, std::size_t number,
                        TextView section) {
    for (std::size_t i = number + 1; i < source.size(); ++i) {
        const bool isLabel = source[i].verdict == LineVerdict::Section;
        if (isLabel && sectionOfLabel(trimmedRight(source[i].text)))
            return {i, false};
        const auto directive = directiveOf(source[i]);
        if (!directive)
            continue;
        if (directive->name.starts_with(kEnd) && directive->name.substr(kEnd.size()) == section)
            return {i, true};
        if (isStart(directive) && sectionOfDirective(*directive))
            return {i, false};
    }
    return {source.size(), false};
}

class Reader {
  public:
    explicit Reader(const std::vector<SourceLine>& source)
        : source_(source), lines_(source.size()) {}
    std::vector<DirectiveLine> read();

  private:
    void readDirectiveAt(std::size_t i, const Directive& directive);
    void readTitle(std::size_t i, const Directive& directive);
    void readStart(std::size_t i, TextView section, const Directive& directive);
    void readRepeat(std::size_t i, const Directive& directive);
    void readTab(std::size_t i);
    void readEnd(std::size_t i, TextView environment);
    void keep(std::size_t i);
    void endSection(std::size_t begin, std::size_t end);
    bool isTabStart(std::size_t i) const;
    // A section ends in front of it by itself: a blank line, a label, a tablature, the end.
    bool endsSection(std::size_t i) const;

    const std::vector<SourceLine>& source_;
    std::vector<DirectiveLine> lines_;
    std::set<Text> keptStarts_;  // environments whose start is kept, and not their end yet
    std::vector<bool> isDone_ = std::vector<bool>(source_.size());
    bool isHead_ = true;    // facts of the song stand above its chords
    bool mayTitle_ = true;  // nothing but facts and kept lines so far
    SectionStop repeatStop_;
    std::size_t titleEnd_ = 0;    // behind the title
    std::size_t sectionEnd_ = 0;  // in front of it another section would end the one that is open
};

// A tablature that tells by itself where it begins and ends.
bool Reader::isTabStart(std::size_t i) const {
    const auto directive = directiveOf(source_[i]);
    if (!directive || directive->name != u"start_of_tab" || !directive->value.empty() ||
        (i > 0 && source_[i - 1].verdict == LineVerdict::Tablature))
        return false;
    std::size_t end = i + 1;
    bool isClear = false;
    while (end < source_.size() && source_[end].verdict == LineVerdict::Tablature) {
        const bool isString = isTablature(source_[end].text);
        if (!isString && !mayBeDenseString(source_[end].text))
            break;
        isClear = isClear || isString;
        ++end;
    }
    if (!isClear)
        return false;
    // An end that is missing is clear.
    const auto closing = end < source_.size() ? directiveOf(source_[end]) : std::nullopt;
    const std::size_t behind = end + (closing && closing->name == u"end_of_tab" ? 1 : 0);
    if (behind >= source_.size())
        return true;
    const auto next = directiveOf(source_[behind]);
    return source_[behind].verdict != LineVerdict::Tablature &&
           !(next && next->name == u"start_of_tab");
}

bool Reader::endsSection(std::size_t i) const {
    if (i >= source_.size() || isBlank(source_[i]) ||
        source_[i].verdict == LineVerdict::Tablature || labelOf(source_[i]) || isTabStart(i))
        return true;
    return isStart(directiveOf(source_[i]));
}

void Reader::readTitle(std::size_t i, const Directive& directive) {
    const bool isSubtitle = directive.name == u"subtitle";
    const bool fits =
        isSubtitle ? titleEnd_ > 0 && titleEnd_ == i : mayTitle_ && i + 1 < source_.size();
    if (!fits || !mayBeTitle(directive.value))
        return keep(i);
    // Right below it the export would take chords for the title's, and a line for a subtitle.
    const bool isApart = i + 1 < source_.size() && !isBlank(source_[i + 1]);
    const bool hasText = isApart && source_[i + 1].verdict == LineVerdict::Lyrics;
    const bool hasChords = isApart && (source_[i + 1].verdict == LineVerdict::Chords ||
                                       (hasText && mayHaveChords(source_[i + 1])));
    lines_[i] = {Text(directive.value),
                 hasChords || (hasText && (isSubtitle || mayBeSubtitle(source_, i + 1)))};
    mayTitle_ = false;
    titleEnd_ = isSubtitle ? 0 : i + 1;
}

void Reader::keep(std::size_t i) {
    lines_[i].text = Text(trimmed(source_[i].text));
    const auto directive = directiveOf(source_[i]);
    if (isStart(directive))
        keptStarts_.insert(directive->name.substr(TextView(u"start_of_").size()));
}

// An end without a beginning has nothing to tell.
void Reader::readEnd(std::size_t i, TextView environment) {
    if (keptStarts_.erase(Text(environment)) > 0)
        keep(i);
}

// The end of a section is the next blank line or label where that says the same.
void Reader::endSection(std::size_t begin, std::size_t end) {
    isDone_[end] = true;
    sectionEnd_ = end;
    bool isSimple = end > begin + 1;
    for (std::size_t i = begin + 1; i < end; ++i)
        isSimple = isSimple && !endsSection(i);
    if (isSimple)
        lines_[end].hasBlankBelow = !endsSection(end + 1);
    else
        keep(end);
}

void Reader::readStart(std::size_t i, TextView section, const Directive& directive) {
    auto label = shownSection(directive);
    const auto end = explicitSectionEnd(source_, i, section);
    if (!label || (!end && endsSection(i + 1)))
        return keep(i);
    lines_[i].text = std::move(label);
    if (end)
        endSection(i, *end);
}

void Reader::readRepeat(std::size_t i, const Directive& directive) {
    auto label = shownSection(directive);
    // One look serves all repeats up to what it finds.
    if (i >= repeatStop_.line)
        repeatStop_ = sectionStop(source_, i, u"chorus");
    if (!label || i < sectionEnd_ || repeatStop_.isEnd)
        return keep(i);
    const bool isTab = i + 1 < source_.size() &&
                       (source_[i + 1].verdict == LineVerdict::Tablature || isTabStart(i + 1));
    const bool isApart =
        i + 1 >= source_.size() || isBlank(source_[i + 1]) || labelOf(source_[i + 1]).has_value();
    lines_[i] = {std::move(label), isTab || !isApart};
}

void Reader::readTab(std::size_t i) {
    if (!isTabStart(i))
        return keep(i);
    std::size_t end = i + 1;
    while (end < source_.size() && source_[end].verdict == LineVerdict::Tablature)
        ++end;
    if (end == source_.size())
        return;
    const auto closing = directiveOf(source_[end]);
    isDone_[end] = closing && closing->name == u"end_of_tab";
}

void Reader::readDirectiveAt(std::size_t i, const Directive& directive) {
    const TextView name = directive.name;
    if (name == u"title" || name == u"subtitle")
        return readTitle(i, directive);
    if (name == u"start_of_tab")
        return readTab(i);
    if (name.starts_with(kEnd))
        return readEnd(i, name.substr(kEnd.size()));
    if (const auto section = sectionOfDirective(directive)) {
        mayTitle_ = false;
        if (name == *section)
            return readRepeat(i, directive);
        return readStart(i, *section, directive);
    }
    if (auto fact = shownFact(directive, isHead_)) {
        lines_[i].text = std::move(fact);
        return;
    }
    auto remark = shownRemark(directive);
    if (!remark || (i < sectionEnd_ && sectionOfLabel(*remark)))
        return keep(i);
    mayTitle_ = false;
    lines_[i].text = std::move(remark);
}

std::vector<DirectiveLine> Reader::read() {
    for (std::size_t i = 0; i < source_.size(); ++i) {
        const SourceLine& line = source_[i];
        if (line.verdict == LineVerdict::Directive) {
            // The chart has letters.
            if (statedNaming(line.text))
                continue;
            if (const auto directive = readDirective(line.text); directive && !isDone_[i])
                readDirectiveAt(i, *directive);
            else if (!directive && line.text.starts_with(u'#'))
                lines_[i].text = shownHashRemark(line.text);
            continue;
        }
        mayTitle_ = mayTitle_ && isBlank(line);
        isHead_ = isHead_ && !mayHaveChords(line);
        if (line.verdict == LineVerdict::Section && !isBlank(line)) {
            const auto section = sectionOfLabel(trimmedRight(line.text));
            const auto end = section ? explicitSectionEnd(source_, i, *section) : std::nullopt;
            if (end && !isDone_[*end])
                endSection(i, *end);
        }
    }
    return std::move(lines_);
}

}  // namespace

bool mayHaveChords(const SourceLine& line) {
    switch (line.verdict) {
        case LineVerdict::Chords:
            return true;
        case LineVerdict::Lyrics:
            return readBrackets(line.text, 0, 0, kBrackets).has_value();
        case LineVerdict::Section:
            return isRowOfChords(readRow(
                line.text.substr(std::min(line.text.size(), sectionLabelLength(line.text)))));
        default:
            return false;
    }
}

std::optional<std::size_t> explicitSectionEnd(const std::vector<SourceLine>& source,
                                              std::size_t number, TextView section) {
    const SectionStop stop = sectionStop(source, number, section);
    return stop.isEnd ? std::optional(stop.line) : std::nullopt;
}

std::vector<DirectiveLine> directiveLines(const std::vector<SourceLine>& source) {
    const bool hasSome = std::any_of(source.begin(), source.end(), [](const SourceLine& line) {
        return line.verdict == LineVerdict::Directive;
    });
    return hasSome ? Reader(source).read() : std::vector<DirectiveLine>(source.size());
}

}  // namespace melvorin
