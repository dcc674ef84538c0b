#include "paper/PageChoices.h"

#include <algorithm>
#include <utility>

#include "base/ProgramSettings.h"

namespace melvorin {
namespace {

constexpr TextView kSection = u"Page";

struct Paper {
    PaperName name;
    TextView caption;  // and value in the file
    PaperSize size;
};
constexpr Paper kPapers[] = {{PaperName::A4, u"A4", kA4},
                             {PaperName::A5, u"A5", {419.528, 595.276}},
                             {PaperName::Letter, u"Letter", kLetter},
                             {PaperName::Legal, u"Legal", {612, 1008}}};

const Paper& paperOf(PaperName name) {
    return *std::find_if(std::begin(kPapers), std::end(kPapers),
                         [name](const Paper& paper) { return paper.name == name; });
}

struct Switch {
    TextView key;
    bool PageChoices::*is;
};
constexpr Switch kSwitches[] = {{u"Landscape", &PageChoices::landscape},
                                {u"Fit", &PageChoices::fit},
                                {u"Colors", &PageChoices::colours},
                                {u"Header", &PageChoices::header},
                                {u"Diagrams", &PageChoices::diagrams}};

struct Number {
    TextView key;
    int PageChoices::*is;
    int least;
    int most;
};
constexpr Number kNumbers[] = {
    {u"Margin", &PageChoices::marginMm, PageChoices::kLeastMargin, PageChoices::kMostMargin},
    {u"Columns", &PageChoices::columns, 1, 4},
    {u"Least", &PageChoices::leastPoints, PageChoices::kLeastPoints, PageChoices::kMostPoints},
    {u"Most", &PageChoices::mostPoints, PageChoices::kLeastPoints, PageChoices::kMostPoints}};

}  // namespace

PageChoices pageChoices(const Services& services) {
    PageChoices choices;
    choices.paper = services.printers.usesLetter() ? PaperName::Letter : PaperName::A4;
    const Text paper = shortSetting(services, kSection, u"Paper");
    for (const Paper& known : kPapers) {
        if (paper == known.caption)
            choices.paper = known.name;
    }
    for (const auto& [key, is] : kSwitches)
        choices.*is = numberSetting(services, kSection, key, {0, 1, choices.*is ? 1 : 0}) != 0;
    for (const auto& [key, is, least, most] : kNumbers)
        choices.*is = numberSetting(services, kSection, key, {least, most, choices.*is});
    choices.mostPoints = std::max(choices.mostPoints, choices.leastPoints);
    return choices;
}

bool storePageChoices(const Services& services, const PageChoices& choices) {
    bool all = storeSetting(services, kSection, u"Paper", paperCaption(choices.paper));
    for (const auto& [key, is] : kSwitches)
        all = all && storeSetting(services, kSection, key, choices.*is ? u"1" : u"0");
    for (const auto& [key, is, least, most] : kNumbers)
        all = all && storeSetting(services, kSection, key, decimal(choices.*is));
    return all;
}

TextView paperCaption(PaperName paper) {
    return paperOf(paper).caption;
}

PaperSize paperSize(const PageChoices& choices) {
    PaperSize size = paperOf(choices.paper).size;
    if (choices.landscape)
        std::swap(size.width, size.height);
    return size;
}

PageSetup setupOf(const PageChoices& choices) {
    return {.paper = paperSize(choices),
            .margin = choices.marginMm * kPointsPerMm,
            .columns = static_cast<unsigned>(choices.columns),
            .fit = choices.fit,
            .leastPoints = static_cast<double>(choices.leastPoints),
            .mostPoints = static_cast<double>(choices.mostPoints),
            .colours = choices.colours,
            .header = choices.header,
            .diagrams = choices.diagrams};
}

}  // namespace melvorin
