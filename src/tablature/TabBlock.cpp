#include "tablature/TabBlock.h"

#include <algorithm>

namespace melvorin {
namespace {

// kept: tab-marker
constexpr TextView kMarker = u"-\u00AC ";
constexpr TextView kLineEnd = u"\r\n";

constexpr TextView kGuitarHigh[] = {u"E", u"B", u"G", u"D", u"A", u"E"};
constexpr TextView kGuitarLow[] = {u"E", u"A", u"D", u"G", u"B", u"E"};
constexpr TextView kBassHigh[] = {u"G", u"D", u"A", u"E"};
constexpr TextView kBassLow[] = {u"E", u"A", u"D", u"G"};
constexpr TextView kSmallHigh[] = {u"D", u"B", u"G", u"D"};
constexpr TextView kSmallLow[] = {u"D", u"G", u"B", u"D"};

struct Instrument {
    std::span<const TextView> highOnTop;
    std::span<const TextView> lowOnTop;
    TextView title;
    TextView underline;
};

constexpr Instrument kInstruments[] = {
    {kGuitarHigh, kGuitarLow, u"Guitar Tablature", u"================"},
    {kBassHigh, kBassLow, u"Bass Tablature", u"=============="},
    {kSmallHigh, kSmallLow, u"Small Guitar Tablature", u"======================"},
};

// Dashes of each column; a 0 ends the row.
using Runs = int[kMostDividers + 1];
using PatternSet = Runs[kMostDividers + 1];

// The columns are uneven where the width does not divide; blocks of older songs have them so.
// kept: uneven-columns
constexpr PatternSet kWide = {
    {119}, {60, 58}, {38, 40, 39}, {29, 29, 29, 29}, {23, 23, 23, 23, 23}};
constexpr PatternSet kMiddle = {
    {91}, {45, 45}, {30, 30, 29}, {22, 22, 22, 22}, {17, 18, 18, 17, 17}};
constexpr PatternSet kNarrow = {
    {71}, {35, 35}, {23, 23, 23}, {17, 17, 17, 17}, {14, 13, 13, 13, 14}};
constexpr PatternSet kPreview = {
    {54}, {26, 27}, {17, 18, 17}, {13, 13, 13, 12}, {10, 10, 10, 10, 10}};

Text patternOf(const PatternSet& set, int dividers) {
    Text pattern = u"|";
    for (const int run : set[std::clamp(dividers, 0, kMostDividers)]) {
        if (run > 0)
            pattern.append(static_cast<std::size_t>(run), u'-').push_back(u'|');
    }
    return pattern;
}

}  // namespace

std::optional<TabForm> tabForm(int instrument, StringOrder order) {
    if (instrument < 0 || instrument >= static_cast<int>(std::size(kInstruments)))
        return std::nullopt;
    const Instrument& chosen = kInstruments[instrument];
    return TabForm{order == StringOrder::HighOnTop ? chosen.highOnTop : chosen.lowOnTop,
                   chosen.title, chosen.underline};
}

std::optional<Text> staffPattern(TextView screenWidth, int dividers) {
    if (screenWidth == u"800")
        return patternOf(kMiddle, dividers);
    if (screenWidth == u"640")
        return patternOf(kNarrow, dividers);
    // kept: screen-widths
    if (screenWidth >= u"1024")
        return patternOf(kWide, dividers);
    return std::nullopt;
}

Text previewPattern(int dividers) {
    return patternOf(kPreview, dividers);
}

Text tabBlock(const TabForm& form, TextView pattern) {
    Text block(kMarker);
    for (const TextView letter : form.letters)
        block.append(kLineEnd).append(letter).append(pattern);
    // kept: title-below
    return block.append(kLineEnd).append(form.title).append(kLineEnd).append(form.underline);
}

}  // namespace melvorin
