#include "paper/PageForm.h"

#include <algorithm>

namespace melvorin {
namespace {

constexpr PaperName kPapers[] = {PaperName::A4, PaperName::A5, PaperName::Letter, PaperName::Legal};

TextView unitOf(int id) {
    return id == PageForm::kMargin ? u" mm" : id == PageForm::kColumns ? u"" : u" pt";
}

}  // namespace

// A list of numbers; each entry keeps its number.
Cell PageForm::numbers(int id, std::initializer_list<int> offered, int marked) {
    Cell made = dropDown(id, CBS_DROPDOWNLIST);
    for (const int number : offered)
        mark(id, number);
    mark(id, marked);
    return made;
}

// One that is not offered comes into the list.
void PageForm::mark(int id, int number) {
    const LRESULT count = ::SendMessageW(item(id), CB_GETCOUNT, 0, 0);
    const auto numberAt = [&](LRESULT row) {
        return ::SendMessageW(item(id), CB_GETITEMDATA, static_cast<WPARAM>(row), 0);
    };
    LRESULT row = 0;
    while (row < count && numberAt(row) < number)
        ++row;
    if (row == count || numberAt(row) != number) {
        const Text caption = decimal(number) + Text(unitOf(id));
        ::SendMessageW(item(id), CB_INSERTSTRING, static_cast<WPARAM>(row),
                       lparamOf(wide(caption)));
        ::SendMessageW(item(id), CB_SETITEMDATA, static_cast<WPARAM>(row), number);
    }
    ::SendMessageW(item(id), CB_SETCURSEL, static_cast<WPARAM>(row), 0);
}

int PageForm::numberIn(int id) const {
    const LRESULT row = ::SendMessageW(item(id), CB_GETCURSEL, 0, 0);
    return static_cast<int>(::SendMessageW(item(id), CB_GETITEMDATA,
                                           static_cast<WPARAM>(std::max<LRESULT>(row, 0)), 0));
}

bool PageForm::isChecked(int id) const {
    return ::SendMessageW(item(id), BM_GETCHECK, 0, 0) == BST_CHECKED;
}

Cell PageForm::choiceControls(const PageChoices& shown) {
    const auto checked = [this](const wchar_t* caption, int id, bool on) {
        Cell made = check(caption, id);
        ::SendMessageW(windowOf(made), BM_SETCHECK, on ? BST_CHECKED : BST_UNCHECKED, 0);
        return made;
    };
    const Cell paperWord = label(L"&Paper:");
    const Cell paper = dropDown(kPaper, CBS_DROPDOWNLIST);
    for (const PaperName name : kPapers)
        ::SendMessageW(windowOf(paper), CB_ADDSTRING, 0, lparamOf(wide(Text(paperCaption(name)))));
    ::SendMessageW(
        windowOf(paper), CB_SETCURSEL,
        static_cast<WPARAM>(std::find(std::begin(kPapers), std::end(kPapers), shown.paper) -
                            std::begin(kPapers)),
        0);
    const Cell marginWord = label(L"&Margins:");
    const Cell margin = numbers(kMargin, {5, 8, 10, 12, 15, 18, 20, 25, 30, 40}, shown.marginMm);
    const Cell landscape = checked(L"&Landscape", kLandscape, shown.landscape);
    const Cell sheet =
        group(L"Paper",
              columnOf({gridOf(2, {paperWord, paper.grows(1, 0), marginWord, margin.grows(1, 0)}),
                        landscape}));
    const Cell fit = checked(L"&Fit on one page, or on two", kFit, shown.fit);
    const Cell mostWord = label(L"L&argest:");
    const Cell most = numbers(kMost, {9, 10, 11, 12, 14, 16, 18, 20, 24}, shown.mostPoints);
    const Cell leastWord = label(L"&Smallest:");
    const Cell least = numbers(kLeast, {6, 7, 8, 9, 10, 11, 12}, shown.leastPoints);
    const Cell columnsWord = label(L"&Columns, at most:", 0, -1);
    const Cell columns = numbers(kColumns, {1, 2, 3, 4}, shown.columns);
    const Cell size = group(
        L"Size", columnOf({fit, gridOf(2, {mostWord, most.grows(1, 0), leastWord, least.grows(1, 0),
                                           columnsWord, columns.grows(1, 0)})}));
    const Cell header = checked(L"&Title, key and page at the top", kHeader, shown.header);
    const Cell diagrams = checked(L"&Diagrams of its chords", kDiagrams, shown.diagrams);
    const Cell colours = checked(L"C&olors; else black, chords bold", kColors, shown.colours);
    const Cell content = group(L"Content", columnOf({header, diagrams, colours}).close());
    enableLimits();
    return columnOf({sheet, size, content});
}

void PageForm::enableLimits() {
    for (const int id : {kLeast, kMost})
        ::EnableWindow(item(id), isChecked(kFit));
}

PageChoices PageForm::choices() {
    enableLimits();
    const LRESULT paper = ::SendMessageW(item(kPaper), CB_GETCURSEL, 0, 0);
    PageChoices chosen{.paper = kPapers[std::max<LRESULT>(paper, 0)],
                       .landscape = isChecked(kLandscape),
                       .marginMm = numberIn(kMargin),
                       .columns = numberIn(kColumns),
                       .fit = isChecked(kFit),
                       .leastPoints = numberIn(kLeast),
                       .mostPoints = numberIn(kMost),
                       .colours = isChecked(kColors),
                       .header = isChecked(kHeader),
                       .diagrams = isChecked(kDiagrams)};
    if (chosen.leastPoints > chosen.mostPoints) {
        chosen.leastPoints = chosen.mostPoints;
        mark(kLeast, chosen.leastPoints);
    }
    return chosen;
}

bool PageForm::isChoice(int id, int event) {
    const bool isList =
        id == kPaper || id == kMargin || id == kColumns || id == kLeast || id == kMost;
    return id >= kPaper && id < kChoicesEnd && event == (isList ? CBN_SELCHANGE : BN_CLICKED);
}

}  // namespace melvorin
