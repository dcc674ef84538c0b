#include "chords/Directives.h"

#include <utility>

#include "base/LetterCase.h"
#include "chords/CellWidth.h"

namespace melvorin {
namespace {

struct SectionName {
    TextView section;
    TextView label;
};
constexpr SectionName kSections[] = {
    {u"chorus", u"Chorus"}, {u"verse", u"Verse"}, {u"bridge", u"Bridge"}};
constexpr TextView kStart = u"start_of_";
// Their value is text of the song.
constexpr TextView kTextDirectives[] = {u"title",          u"subtitle",    u"comment",
                                        u"comment_italic", u"comment_box", u"highlight"};
constexpr std::pair<TextView, TextView> kFactDirectives[] = {
    {u"artist", u"Artist"},       {u"composer", u"Composer"},
    {u"lyricist", u"Words"},      {u"arranger", u"Arranger"},
    {u"copyright", u"Copyright"}, {u"album", u"Album"},
    {u"year", u"Year"},           {u"key", u"Key"},
    {u"time", u"Time"},           {u"tempo", u"Tempo"},
    {u"duration", u"Duration"},   {u"capo", u"Capo"}};

// The label of an environment: "{start_of_verse: Verse 1}" or "{start_of_verse label="Verse 1"}".
TextView environmentLabel(TextView value) {
    constexpr TextView attribute = u"label=\"";
    const std::size_t at = value.find(attribute);
    if (at == TextView::npos)
        return value;
    value.remove_prefix(at + attribute.size());
    return value.substr(0, value.find(u'"'));
}

// Where it can stand in a directive as it is.
bool isPlainValue(TextView value) {
    return !value.empty() && trimmed(value) == value &&
           value.find_first_of(u"{}=\"") == TextView::npos;
}

}  // namespace

std::optional<Text> shownDirective(const Directive& directive) {
    for (const TextView name : kTextDirectives) {
        if (directive.name == name)
            return Text(directive.value);
    }
    for (const auto& [name, label] : kFactDirectives) {
        if (directive.name == name)
            return Text(label).append(u": ").append(directive.value);
    }
    const bool starts = directive.name.starts_with(kStart);
    const TextView given = environmentLabel(directive.value);
    for (const auto& [section, label] : kSections) {
        const bool begins = starts && TextView(directive.name).substr(kStart.size()) == section;
        if (begins || (section == u"chorus" && directive.name == section))
            return Text(given.empty() ? label : given);
    }
    if (directive.name == u"meta")
        return Text(directive.value);
    return starts && !given.empty() ? std::optional(Text(given)) : std::nullopt;
}

std::optional<Text> factDirective(TextView line) {
    for (const auto& [name, label] : kFactDirectives) {
        const std::size_t length = label.size() + 2;
        if (line.starts_with(label) && line.substr(label.size(), 2) == u": " &&
            isPlainValue(line.substr(length)))
            return Text(u"{").append(name).append(u": ").append(line.substr(length)).append(u"}");
    }
    return std::nullopt;
}

std::optional<TextView> sectionOfLabel(TextView label) {
    if (!isPlainValue(label))
        return std::nullopt;
    const Text small = asciiLowerCase(label);
    for (const auto& [section, usual] : kSections) {
        const bool isWord =
            small.size() == section.size() ||
            (small.size() > section.size() &&
             TextView(u" :0123456789").find(small[section.size()]) != TextView::npos);
        if (small.starts_with(section) && isWord)
            return section;
    }
    return std::nullopt;
}

Text sectionDirective(TextView section, TextView label) {
    Text directive = Text(u"{").append(kStart).append(section);
    for (const auto& [name, usual] : kSections) {
        if (name == section && usual == label)
            return directive.append(u"}");
    }
    return directive.append(u": ").append(label).append(u"}");
}

}  // namespace melvorin
