#include "chords/SongNotation.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "chords/CellWidth.h"
#include "chords/ChordRow.h"
#include "chords/ChordSpelling.h"

namespace melvorin {
namespace {

constexpr ChordReading kSmallReading{Naming::Letters, true, false, false};
constexpr ChordReading kSyllableReading{Naming::Solfege, false, false, false};
constexpr std::size_t kLongestBracket = 80;

bool contains(TextView text, TextView part) {
    return text.find(part) != TextView::npos;
}

bool isLetterOrDigit(char16_t c) {
    return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z') || isDigit(c) ||
           (c >= 0xC0 && c < 0x2000);
}

bool isSmall(TextView chord) {
    return !chord.empty() && chord[0] >= u'a' && chord[0] <= u'h';
}

// Calls `use` with every run of the text that has no blank, bar or bracket in it.
template <class Use>
void forEachRun(TextView text, Use use) {
    const auto parts = [](char16_t c) {
        return isAnyBlank(c) || c == u'|' || c == u'(' || c == u')' || c == u'[' || c == u']';
    };
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at;
        while (end < text.size() && !parts(text[end]))
            ++end;
        if (end > at)
            use(text.substr(at, end - at));
        at = end + 1;
    }
}

// "Am(maj7)": parentheses within a chord part no runs. Calls `use` with what the runs of the text
// mean as chords.
template <class Use>
void forEachChordRun(TextView text, Use use) {
    const auto parts = [](char16_t c) {
        return isAnyBlank(c) || c == u'|' || c == u'[' || c == u']';
    };
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at;
        while (end < text.size() && !parts(text[end]))
            ++end;
        const TextView run = text.substr(at, end - at);
        at = end + 1;
        const std::size_t open = run.find(u'(', 1);
        const bool isWhole = open != TextView::npos && run.find(u')', open) != TextView::npos &&
                             run[0] >= u'A' && run[0] <= u'H' && houseSpelling(run);
        if (isWhole)
            use(run);
        else
            forEachRun(run, use);
    }
}

// Calls `use` with what stands in each bracket.
template <class Use>
void forEachBracket(TextView line, Use use) {
    for (std::size_t at = line.find(u'['); at != TextView::npos; at = line.find(u'[', at + 1)) {
        const std::size_t close = line.substr(0, at + kLongestBracket).find(u']', at);
        if (close != TextView::npos)
            use(line.substr(at + 1, close - at - 1));
    }
}

// "C9", "Am11": no accidental and no other number.
bool isPlainNinth(TextView suffix) {
    if (suffix.starts_with(u'm'))
        suffix.remove_prefix(1);
    suffix = suffix.substr(0, suffix.find(u'/'));
    return suffix == u"9" || suffix == u"11" || suffix == u"13";
}

bool isAmerican(TextView suffix) {
    const std::size_t seventh = suffix.find(u"M7");
    return contains(suffix, u"maj") || contains(suffix, u"Maj") || contains(suffix, u"sus") ||
           contains(suffix, u"add") || seventh != TextView::npos || contains(suffix, u"m7b5") ||
           contains(suffix, u"aug") || suffix.starts_with(u"69") || suffix.starts_with(u"m69");
}

bool isOfTheHouse(TextView suffix) {
    if (contains(suffix, u"7M") || suffix.ends_with(u"7+") || contains(suffix, u"7+/"))
        return true;
    const std::size_t fourth = suffix.find(u'4');
    return fourth != TextView::npos && !contains(suffix, u"sus") && !contains(suffix, u"add") &&
           (fourth == 0 || suffix[fourth - 1] == u'/' || suffix[fourth - 1] == u'7' ||
            suffix[fourth - 1] == u'm');
}

// Whether a line may have a German name: most lines of chords have none of these.
bool mayHaveGermanName(TextView line, bool small) {
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char16_t c = line[i];
        const bool isBass = i > 0 && line[i - 1] == u'/';
        if (c == u'H' || ((small || isBass) && c == u'h') || c == 0xFF28 ||
            (c == u's' && i > 0 && TextView(u"AEaeie").find(line[i - 1]) != TextView::npos))
            return true;
    }
    return false;
}

// "Mi7", "Sol/Si", "Fa#": no word has such a sign, so that one of them speaks for the others.
bool hasSureSign(TextView symbol) {
    return symbol.find_first_of(u"0123456789#/\u266F") != TextView::npos;
}

}  // namespace

// A run of a row of chords. Signs are looked for by their text, which is enough: the row has been
// judged.
void NotationReader::addChord(TextView written) {
    const Text chordText = usualNote(written);
    const TextView chord = chordText;
    if (chord.empty() || isSmall(chord))
        return;
    const auto root = readNoteName(chord, {});
    if (!root)
        return;
    TextView suffix = chord.substr(root->length);
    hasPlainB_ = hasPlainB_ || chord.substr(0, root->length) == u"B";
    hasFlatB_ = hasFlatB_ || chord.substr(0, root->length) == u"Bb";
    addSuffix(suffix);
    const bool isMinor = suffix.starts_with(u'm') && !suffix.starts_with(u"ma");
    hasCapitalMinors_ = hasCapitalMinors_ || isMinor || suffix == u"-" || suffix.starts_with(u"-7");
    if (const std::size_t slash = suffix.rfind(u'/'); slash != TextView::npos) {
        const TextView bass = suffix.substr(slash + 1);
        hasPlainB_ = hasPlainB_ || bass == u"B";
        hasFlatB_ = hasFlatB_ || bass == u"Bb";
    }
}

void NotationReader::addSuffix(TextView suffix) {
    americanSigns_ += isAmerican(suffix) ? 1U : 0U;
    houseSigns_ += isOfTheHouse(suffix) ? 1U : 0U;
    hasPlainNinths_ = hasPlainNinths_ || isPlainNinth(suffix);
}

// German names are sure only where the whole symbol can be read: "Hold" is none. Small ones are
// sure only where the song has small chords.
void NotationReader::addItems(TextView line, const ChordReading& reading) {
    if ((hasGermanNames_ && hasEndings_) || !mayHaveGermanName(line, reading.smallMinors))
        return;
    for (const RowItem& item : readRow(line, 0, 0, reading)) {
        if (item.kind != RowItemKind::Chord)
            continue;
        const Text chord = usualNote(line.substr(item.index, item.length));
        for (const ColumnRange& range : notesOfChord(chord, reading)) {
            const NotePlace place = range.column > 1 ? NotePlace::Bass : NotePlace::Root;
            const auto note = readNoteName(TextView(chord).substr(range.column), reading, place);
            if (!note || !note->isGerman)
                continue;
            // "C/h" is no small chord.
            const bool isSmallChord = note->isSmall && isSmall(chord);
            (isSmallChord ? hasSmallGerman_ : hasGermanNames_) = true;
            if (note->length > 1)
                (isSmallChord ? hasSmallEndings_ : hasEndings_) = true;
        }
    }
}

void NotationReader::addSmall(TextView row) {
    const std::vector<RowItem> items = readRow(row, 0, 0, kSmallReading);
    std::size_t small = 0;
    std::size_t capital = 0;
    bool isWords = true;  // "Des", "des"
    for (const RowItem& item : items) {
        if (item.kind == RowItemKind::Word || item.kind == RowItemKind::Unknown)
            return;
        if (item.kind != RowItemKind::Chord)
            continue;
        isWords = isWords && item.wordToo != WordToo::No;
        const TextView written = row.substr(item.index, item.length);
        ++(isSmall(written.substr(written.starts_with(u'(') ? 1 : 0)) ? small : capital);
    }
    if (small == 0 || capital == 0 || isWords)
        return;
    ++mixedRows_;
    longMixedRows_ += small + capital >= 3 ? 1U : 0U;
    addItems(row, kSmallReading);
}

// Each bracket counts, and of rows those that are no words: in capitals, with signs, or apart.
void NotationReader::addSyllables(TextView text, bool inBrackets) {
    std::size_t chords = 0;
    std::size_t firm = 0;
    bool isSure = false;
    unsigned roots = 0;
    std::size_t end = 0;
    for (const RowItem& item : readRow(text, 0, 0, kSyllableReading)) {
        if (item.kind == RowItemKind::Word || item.kind == RowItemKind::Unknown)
            return;
        // "Do, Re, Mi" are no more apart than words are.
        if (item.kind == RowItemKind::Separator && item.column == end)
            end += item.cells;
        if (item.kind != RowItemKind::Chord)
            continue;
        const TextView written = text.substr(item.index, item.length);
        const TextView symbol = written.substr(written.starts_with(u'(') ? 1 : 0);
        const auto note = readNoteName(usualNote(symbol), kSyllableReading);
        if (!note || !note->isSyllable)
            return;
        addSuffix(symbol.substr(note->length));
        hasAccents_ = hasAccents_ || symbol.find_first_of(u"\u00E9\u00C9") != TextView::npos;
        hasPortugueseAccents_ = hasPortugueseAccents_ ||
                                symbol.find_first_of(u"\u00F3\u00D3\u00E1\u00C1") != TextView::npos;
        const bool isApart = chords > 0 && item.column >= end + 2;
        firm += item.wordToo == WordToo::No || isApart ? 1U : 0U;
        isSure = isSure || hasSureSign(symbol);
        roots |= 1U << static_cast<unsigned>(note->steps);
        end = item.column + item.cells;
        ++chords;
    }
    hasSyllables_ = hasSyllables_ || chords > 0;
    const bool isMixed = (roots & (roots - 1)) != 0;
    if (inBrackets)
        syllableBrackets_ += chords > 0 ? 1U : 0U;
    else if (isMixed && firm > 0 && (isSure || firm + 1 >= chords))
        ++syllableRows_;
}

void NotationReader::addRow(TextView row) {
    // "A" may be a word of a song in syllables.
    const TextView text = trimmed(row);
    letterRows_ += text == u"A" || text == u"E" ? 0U : 1U;
    forEachChordRun(row, [this](TextView run) { addChord(run); });
    addItems(row, {});
    if (mayBeSmallRow(row))
        addSmall(row);
}

void NotationReader::addBrackets(TextView line) {
    forEachBracket(line, [this](TextView inside) {
        forEachChordRun(inside, [this](TextView run) { addChord(run); });
        addItems(inside, isSmall(inside) ? kSmallReading : ChordReading());
        if (mayBeSyllableRow(inside))
            addSyllables(inside, true);
        if (inside.empty() || !houseSpelling(inside, kSmallReading))
            return;
        ++(isSmall(inside) ? smallBrackets_ : capitalBrackets_);
    });
}

void NotationReader::addWords(TextView line) {
    if (mayBeSyllableRow(line))
        addSyllables(line, false);
    if (!mayBeSmallRow(line))
        return;
    const std::size_t former = mixedRows_;
    addSmall(line);
    if (mixedRows_ > former)
        forEachChordRun(line, [this](TextView run) { addChord(run); });
}

SongNotation NotationReader::result(PlainB b, PlainNinth ninth) const {
    SongNotation notation;
    if (stated_ == Naming::Solfege || (stated_ == Naming::German && b == PlainB::Auto)) {
        notation.hasPlainNinths = hasPlainNinths_;
        notation.reading.naming = stated_;
        notation.reading.ninthsHaveSevenths =
            ninth == PlainNinth::HasSeventh ||
            (ninth == PlainNinth::Auto && americanSigns_ > houseSigns_);
        notation.hasGermanNames = stated_ == Naming::German;
        notation.signs = notation.hasGermanNames ? GermanSigns::Endings : GermanSigns::None;
        notation.solfege = notation.hasGermanNames ? Solfege::None : Solfege::Plain;
        return notation;
    }
    const bool isMixed =
        longMixedRows_ > 0 || mixedRows_ > 1 || (smallBrackets_ > 1 && capitalBrackets_ > 1);
    const bool isSmall = isMixed && !hasCapitalMinors_;
    notation.reading.smallMinors = isSmall;
    notation.hasGermanNames = hasGermanNames_ || (isSmall && hasSmallGerman_);
    notation.hasPlainNinths = hasPlainNinths_;
    notation.reading.ninthsHaveSevenths =
        ninth == PlainNinth::HasSeventh ||
        (ninth == PlainNinth::Auto && americanSigns_ > houseSigns_);
    const std::size_t syllables = syllableRows_ + (syllableBrackets_ > 1 ? syllableBrackets_ : 0);
    if (syllables > letterRows_ + capitalBrackets_) {
        notation.solfege = hasPortugueseAccents_ ? Solfege::Portuguese
                           : hasAccents_         ? Solfege::French
                                                 : Solfege::Plain;
        notation.reading.naming = Naming::Solfege;
        notation.hasGermanNames = false;
        notation.reading.smallMinors = false;
        return notation;
    }
    const bool isGerman = b == PlainB::IsFlat || (b == PlainB::Auto && notation.hasGermanNames);
    notation.reading.naming = isGerman ? Naming::German : Naming::Letters;
    notation.isOpen = b == PlainB::Auto && notation.hasGermanNames && hasPlainB_ && hasFlatB_;
    if (isGerman || notation.hasGermanNames)
        notation.signs = hasEndings_ || (isSmall && hasSmallEndings_) ? GermanSigns::Endings
                                                                      : GermanSigns::Signs;
    return notation;
}

bool mayBeSyllableRow(TextView line) {
    constexpr std::size_t longest = 16;
    bool some = false;
    for (std::size_t at = 0; at < line.size();) {
        std::size_t end = at;
        while (end < line.size() && !isAnyBlank(line[end]) && line[end] != u'|')
            ++end;
        TextView run = line.substr(at, end - at);
        at = end + 1;
        while (!run.empty() && !isLetterOrDigit(run[0]))
            run.remove_prefix(1);
        if (run.empty())
            continue;
        if (run.size() > longest)
            return false;
        const bool is = solfegeLength(run) > 0;
        if (!is && TextView(u"xXbNn0123456789").find(run[0]) == TextView::npos)
            return false;
        some = some || is;
    }
    return some;
}

bool mayBeSmallRow(TextView line) {
    constexpr std::size_t longest = 12;
    bool some = false;
    bool may = true;
    std::size_t length = 0;
    for (const char16_t c : line) {
        if (isAnyBlank(c) || c == u'|' || c == u'(' || c == u')') {
            length = 0;
            continue;
        }
        const bool small = c >= u'a' && c <= u'h';
        if (length++ == 0) {
            some = some || small;
            may = small || (c >= u'A' && c <= u'H') || !isLetterOrDigit(c) || isDigit(c) ||
                  c == u'x' || c == u'N';
        }
        if (!may || length > longest)
            return false;
    }
    return some;
}

}  // namespace melvorin
