#include "chords/SuffixRows.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <span>
#include <utility>

namespace melvorin {
namespace {

using Pair = std::pair<TextView, TextView>;

// kept: rewrite-anywhere
constexpr Pair kFirst[] = {{u"#- ", u"#m "}, {u"Cb", u"B"}, {u"Fb", u"E"}};

// L14 and L15.
// kept: nine-plus
// kept: eleven-plus
// kept: double-rows
constexpr Pair kSuffixes[] = {
    {u"b-", u"bm"},     {u"A-", u"Am"},     {u"B-", u"Bm"},     {u"C-", u"Cm"},
    {u"D-", u"Dm"},     {u"E-", u"Em"},     {u"F-", u"Fm"},     {u"G-", u"Gm"},
    {u"C-", u"Cm"},     {u"9/6", u"6/9"},   {u"9-", u"9b"},     {u"-4", u"m4"},
    {u"-6", u"m6"},     {u"-7", u"m7"},     {u"-9", u"m9"},     {u"-7/4", u"m4/7"},
    {u"7M", u"7+"},     {u"7/4", u"4/7"},   {u"-6/7", u"m6/7"}, {u"7/6", u"6/7"},
    {u"m6/7", u"m6/7"}, {u"-7/9", u"m7/9"}, {u"-9/7", u"m7/9"}, {u"9+", u"9#"},
    {u"11+", u"9#"},    {u"-/7", u"m/7"},   {u"5+", u"5#"},     {u"5+/4", u"5#/4"},
    {u"4/5+", u"5#/4"}, {u"4/5#", u"5#/4"}, {u"-7/9", u"m7/9"}, {u"9+ ", u"9#"},
};

// L12: the notes, then what a suffix may end in.
constexpr TextView kItems[] = {u"A",  u"A#", u"Bb", u"B",  u"C",  u"C#",    u"Db", u"D",
                               u"D#", u"Eb", u"E",  u"F",  u"F#", u"Gb",    u"G",  u"G#",
                               u"Ab", u"#",  u"m",  u"b",  u"+",  u"-",     u"1",  u"4",
                               u"5",  u"6",  u"7",  u"/9", u"9)", u"\u00B0"};
constexpr std::size_t kNoteCount = 17;
constexpr std::span<const TextView> kNotes(kItems, kNoteCount);

// L13: a major third above each note.
constexpr TextView kThirds[kNoteCount] = {u"C#", u"D",  u"D", u"D#", u"E",  u"F", u"F", u"F#", u"G",
                                          u"G",  u"G#", u"A", u"A#", u"Bb", u"B", u"C", u"C"};

// L9 and L10: a note and the minor third below it.
constexpr Pair kRelatives[] = {
    {u"A", u"F#"},  {u"A", u"Gb"},  {u"A#", u"G"},  {u"Bb", u"G"},  {u"B", u"G#"},  {u"B", u"Ab"},
    {u"C", u"A"},   {u"C#", u"A#"}, {u"C#", u"Bb"}, {u"Db", u"A#"}, {u"Db", u"Bb"}, {u"D", u"B"},
    {u"D#", u"C"},  {u"Eb", u"C"},  {u"E", u"C#"},  {u"E", u"Db"},  {u"F", u"D"},   {u"F#", u"D#"},
    {u"F#", u"Eb"}, {u"Gb", u"D#"}, {u"Gb", u"Eb"}, {u"G", u"E"},   {u"G#", u"F"},  {u"Ab", u"F"}};

constexpr TextView kSharpRoots[] = {u"A",  u"B",  u"D",  u"E",  u"G",
                                    u"Am", u"Bm", u"Dm", u"Em", u"Gm"};   // L3
constexpr TextView kFlatRoots[] = {u"C", u"F", u"Cm", u"Fm"};             // L6
constexpr TextView kFlatBasses[] = {u"Bb", u"Db", u"Eb", u"Gb", u"Ab"};   // L4
constexpr TextView kSharpBasses[] = {u"A#", u"C#", u"D#", u"F#", u"G#"};  // L5

// L7 and L8.
// kept: fm9-row
constexpr Pair kBasses[] = {
    {u"A/A#", u"A/Bb"},   {u"Am/A#", u"Am/Bb"},   {u"C/C#", u"C/Db"},     {u"Cm/C#", u"Cm/Db"},
    {u"D/D#", u"D/Eb"},   {u"Dm/D#", u"Dm/Eb"},   {u"F/F#", u"F/Gb"},     {u"Fm/F#", u"Fm/Gb"},
    {u"G/G#", u"G/Ab"},   {u"Gm/G#", u"Gm/Ab"},   {u"C9/A#", u"C9/Bb"},   {u"Cm9/A#", u"Cm9/Bb"},
    {u"F9/D#", u"F9/Eb"}, {u"Fm9/D#", u"Cm9/Eb"}, {u"A6/A#", u"A6/Bb"},   {u"Am6/A#", u"Am6/Bb"},
    {u"C6/C#", u"C6/Db"}, {u"Cm6/C#", u"Cm6/Db"}, {u"D6/D#", u"D6/Eb"},   {u"Dm6/D#", u"Dm6/Eb"},
    {u"F6/F#", u"F6/Gb"}, {u"Fm6/F#", u"Fm6/Gb"}, {u"G6/G#", u"G6/Ab"},   {u"Gm6/G#", u"Gm6/Ab"},
    {u"A6/Ab", u"A6/G#"}, {u"B6/Bb", u"B6/A#"},   {u"D6/Db", u"D6/C#"},   {u"E6/Eb", u"E6/D#"},
    {u"G6/Gb", u"G6/F#"}, {u"G7/D#", u"G7/Eb"},   {u"Gm7/D#", u"Gm7/Eb"}, {u"G/A#", u"G/Bb"},
    {u"Gm/A#", u"Gm/Bb"}, {u"G/C#", u"G/Db"},     {u"Gm/C#", u"Gm/Db"},   {u"G/D#", u"G/Eb"}};

Text joined(std::initializer_list<TextView> parts) {
    Text whole;
    for (const TextView part : parts)
        whole += part;
    return whole;
}

bool isNote(TextView item) {
    return std::find(kNotes.begin(), kNotes.end(), item) != kNotes.end();
}

class RowList {
  public:
    std::vector<SuffixRow> build();

  private:
    void addStored(std::span<const Pair> pairs);
    // Pads the replacement to the length of `find`.
    void add(Text find, Text replacement);
    // The same where a chord ends: at a blank, which the padding comes before, or a line end.
    void addAtEnd(const Text& find, const Text& replacement);
    void addNinthsInParentheses();
    void addAddedNinths();
    void addDegreeBasses();
    void addParentheses();
    void addHalfDiminished();
    void addBassSpellings(std::span<const TextView> roots, std::span<const TextView> from,
                          std::span<const TextView> to);

    std::vector<SuffixRow> rows_;
};

void RowList::addStored(std::span<const Pair> pairs) {
    for (const auto& [find, replacement] : pairs)
        rows_.push_back({Text(find), Text(replacement), false});
}

void RowList::add(Text find, Text replacement) {
    replacement.resize(std::max(replacement.size(), find.size()), u' ');
    rows_.push_back({std::move(find), std::move(replacement), true});
}

void RowList::addAtEnd(const Text& find, const Text& replacement) {
    for (const TextView end : {u" ", u"\r", u"\n"}) {
        Text padded = replacement;
        padded.resize(find.size(), u' ');
        add(joined({find, end}), joined({padded, end}));
    }
}

// A blank that strayed in front of the parenthesis goes behind it: "(Cm9 ) " to "(Cm9)  ".
void RowList::addNinthsInParentheses() {
    for (const TextView note : kNotes) {
        for (const TextView ninth : {u"9", u"m9"})
            addAtEnd(joined({note, ninth, u" )"}), joined({note, ninth, u")"}));
    }
}

// An added ninth is a plain 9 behind a note, its "m" or "°", and "/9" behind any other suffix;
// where there is a ninth already, nothing is added to it. Only at the end of a chord, since the
// blanks that keep the column would else fall between the chord and its bass.
void RowList::addAddedNinths() {
    const auto ninthBehind = [](TextView item) -> TextView {
        if (isNote(item) || item == u"m" || item == u"\u00B0")
            return u"9";
        return item == u"/9" || item == u"9)" ? u"" : u"/9";
    };
    for (const TextView item : kItems) {
        for (const TextView added : {u"(add9)", u"(ad9)", u"Ad9", u"add9", u"Add9"})
            addAtEnd(joined({item, added}), joined({item, ninthBehind(item)}));
    }
}

void RowList::addDegreeBasses() {
    for (std::size_t i = 0; i < kNoteCount; ++i)
        rows_.push_back({joined({kItems[i], u"/3"}), joined({kItems[i], u"/", kThirds[i]}), false});
}

// Parentheses that stand apart from the chords they enclose: an opening one goes to the chord
// behind it, a closing one to the chord before it, and the chords stay in their columns.
void RowList::addParentheses() {
    for (const TextView item : kItems) {
        add(joined({item, u" ( "}), joined({item, u"  ("}));
        addAtEnd(joined({item, u" )"}), joined({item, u")"}));
        // The row of the letter alone finds the letter with an accidental too.
        if (item.size() == 2 && isNote(item))
            continue;
        add(joined({u" ( ", item}), joined({u"  (", item}));
        add(joined({u" ) ", item}), joined({u")  ", item}));
    }
}

// A minor chord over the note a minor third below it is the half-diminished chord of that note.
// The longer spelling is written where the blanks behind the chord leave room for it.
void RowList::addHalfDiminished() {
    for (int round = 0; round < 3; ++round) {
        for (const auto& [note, below] : kRelatives) {
            const Text halfDiminished = joined({below, u"m5b/7 "});
            Text find = joined({note, u"m/", below});
            find.resize(halfDiminished.size(), u' ');
            add(std::move(find), halfDiminished);
        }
    }
}

void RowList::addBassSpellings(std::span<const TextView> roots, std::span<const TextView> from,
                               std::span<const TextView> to) {
    for (const TextView root : roots) {
        for (const TextView suffix : {u"7+/", u"7/", u"/"}) {
            for (std::size_t i = 0; i < from.size(); ++i)
                add(joined({root, suffix, from[i]}), joined({root, suffix, to[i]}));
        }
    }
}

std::vector<SuffixRow> RowList::build() {
    addStored(kFirst);
    addStored(kSuffixes);
    addNinthsInParentheses();
    addAddedNinths();
    addDegreeBasses();
    addParentheses();
    addHalfDiminished();
    addBassSpellings(kSharpRoots, kFlatBasses, kSharpBasses);
    addBassSpellings(kFlatRoots, kSharpBasses, kFlatBasses);
    addStored(kBasses);
    return std::move(rows_);
}

}  // namespace

const std::vector<SuffixRow>& suffixRows() {
    static const std::vector<SuffixRow> rows = RowList().build();
    return rows;
}

}  // namespace melvorin
