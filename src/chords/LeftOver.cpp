#include "chords/LeftOver.h"

#include <algorithm>
#include <cstdint>
#include <iterator>

#include "chords/CapoLine.h"
#include "chords/CellWidth.h"
#include "chords/ChordLine.h"
#include "chords/ChordSpelling.h"
#include "chords/KeyReading.h"
#include "chords/KeyStatement.h"
#include "chords/Note.h"
#include "chords/SongImport.h"

namespace melvorin {
namespace {

constexpr bool isAsciiLetter(char16_t c) {
    return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z');
}

constexpr bool isAlphanumeric(char16_t c) {
    return isAsciiLetter(c) || isDigit(c);
}

// ---- The brief look --------------------------------------------------------------------------

constexpr bool isRootLetter(char16_t c) {
    return (c >= u'A' && c <= u'H') || (c >= 0xFF21 && c <= 0xFF28);
}

// Whether `is` holds for some character, without a jump, so that many are looked at together.
template <class Is>
bool hasAny(TextView line, Is is) {
    std::uint16_t found = 0;
    for (const char16_t c : line)
        found = static_cast<std::uint16_t>(found | static_cast<std::uint16_t>(is(c)));
    return found != 0;
}

// As isRootLetter, by eights.
bool hasRootLetter(TextView line) {
    return hasAny(line, [](char16_t c) {
        return (static_cast<std::uint16_t>(c - u'A') / 8 == 0) |
               (static_cast<std::uint16_t>(c - 0xFF21) / 8 == 0);
    });
}

// Whether letters behind a root can be a suffix or an ending of its name: "m", "min", "bmaj",
// "ism".
bool isSuffixOfLetters(TextView letters) {
    static constexpr TextView words[] = {u"major", u"minor", u"maj", u"min", u"dim", u"aug", u"sus",
                                         u"add",   u"ad",    u"bo",  u"ma",  u"mi",  u"m",   u"b"};
    while (!letters.empty()) {
        if (TextView(u"abdms").find(letters[0] | 0x20) == TextView::npos)
            return false;
        const auto word = std::find_if(std::begin(words), std::end(words), [&](TextView w) {
            return letters.size() >= w.size() &&
                   std::equal(w.begin(), w.end(), letters.begin(),
                              [](char16_t a, char16_t b) { return a == (b | 0x20); });
        });
        if (word == std::end(words))
            return false;
        letters.remove_prefix(word->size());
        const bool isAdded = word->starts_with(u"ad");
        if (isAdded && !letters.empty() && isRootLetter(letters[0]))  // "DaddH"
            return true;
    }
    return true;
}

// Whether a chord may begin with the root letter in front of `text`: nothing but letters of
// suffixes stands behind it, or there is a figure or sign that no word has.
bool mayBeginChord(TextView text) {
    std::size_t end = 1;
    while (end < text.size() && isAsciiLetter(text[end]))
        ++end;
    if (isSuffixOfLetters(text.substr(1, end - 1)))
        return true;
    while (end < text.size() && !isAnyBlank(text[end])) {
        const char16_t c = text[end++];
        if (isDigit(c) || c == u'#' || (c >= 0x80 && !isAnyBlank(c)))
            return true;
    }
    return false;
}

// Where the first chord may begin, at `at` or behind it; else the end of the line.
std::size_t findChord(TextView line, std::size_t at) {
    for (; at < line.size(); ++at) {
        if (!isRootLetter(line[at]))
            continue;
        const bool inWord = at > 0 && isAlphanumeric(line[at - 1]);
        if (line[at] > 0x7F || (!inWord && mayBeginChord(line.substr(at))))
            break;
    }
    return at;
}

// Whether the line may have more chords than words. What stands in front of a colon or a dash, or
// beside brackets or "N.C.", is another matter.
bool mayBeRow(TextView line) {
    std::size_t chords = 0;
    for (std::size_t at = findChord(line, 0); at < line.size(); at = findChord(line, at + 1))
        ++chords;
    const auto isOther = [](char16_t c) {
        return (c == u':') | (c == u'[') | (c == u'(') | (c == u'N') | (c == u'-') | (c == 0x2013) |
               (c == 0x2014) | (c == 0xFF1A) | (c == 0x3010);
    };
    if (chords == 0 || hasAny(line, isOther))
        return chords > 0;
    std::size_t words = 0;
    bool afterBlank = true;
    for (const char16_t c : line) {
        if (afterBlank && c >= u'a' && c <= u'z') {
            // Behind these letters may be "n.c.", "bis" and "x2".
            chords += c == u'n' ? 1U : 0U;
            words += c != u'n' && c != u'b' && c != u'x' ? 1U : 0U;
        }
        afterBlank = c == u' ' || isAnyBlank(c);
    }
    return words == 0 || chords > words;
}

// "[a]" may be a chord of a song whose small letters are minor ones.
bool hasSmallBracket(TextView line) {
    const std::size_t at = line.find(u'[');
    return at + 1 < line.size() && at != TextView::npos && line[at + 1] >= u'a' &&
           line[at + 1] <= u'h';
}

// A label may stand in front of syllables, and brackets around them.
bool maySyllables(TextView line) {
    const std::size_t colon = line.find(u':');
    if (mayBeSyllableRow(line.substr(colon == TextView::npos ? 0 : colon + 1)))
        return true;
    const std::size_t bracket = line.find(u'[');
    return bracket != TextView::npos && solfegeLength(line.substr(bracket + 1)) > 0;
}

// ---- The whole song --------------------------------------------------------------------------

bool hasNoteLetter(TextView line) {
    return std::any_of(line.begin(), line.end(), isNoteLetter);
}

// The notes of a chord, and those of each where dashes join some that cannot all be read.
void addNotes(const ImportedChord& chord, const ChordReading& reading,
              std::vector<ColumnRange>& notes) {
    std::size_t begin = 0;
    do {
        const bool whole = chord.isRead;
        const std::size_t end =
            whole ? chord.written.size()
                  : std::min(chord.written.find(u'-', begin), chord.written.size());
        const TextView part = chord.written.substr(begin, end - begin);
        if (begin == 0 || houseSpelling(part, reading) || resemblesChord(part, reading)) {
            for (const ColumnRange& note : notesOfChord(part, reading))
                notes.push_back({chord.sourceIndex + begin + note.column, note.length});
        }
        begin = end + 1;
    } while (begin < chord.written.size());
}

bool isInBrackets(const SourceLine& line, const ChordReading& reading) {
    const std::size_t label =
        line.verdict == LineVerdict::Section ? sectionLabelLength(line.text, reading) : 0;
    return readBrackets(line.text.substr(label), 0, 0, reading).has_value();
}

class Search {
  public:
    Search(TextView song, std::span<const ColumnRange> pictures) : song_(song), readable_(song) {
        for (const ColumnRange& picture : pictures)
            readable_.replace(picture.column, picture.length, picture.length, u' ');
    }
    LeftOver run();

  private:
    bool lookBriefly();
    void addKeyLines(std::size_t number, TextView line);
    void addLine(std::size_t number, const SourceLine& line, std::span<const ImportedChord> chords);
    void lookForOtherNames(std::span<const ImportedChord> chords);
    TextView originalOf(TextView line) const {
        return song_.substr(static_cast<std::size_t>(line.data() - readable_.data()), line.size());
    }

    TextView song_;
    Text readable_;  // as long as the song
    SongNotation notation_;
    LeftOver result_;
};

void Search::addKeyLines(std::size_t number, TextView line) {
    if (const auto note = statedKey(line)) {
        const auto stated = readStatedKey(line);
        const bool isGerman = (stated && stated->isGerman) ||
                              TextView(u"Hh").find(line[note->column]) != TextView::npos;
        result_.keyLines.push_back({number, *note, isGerman});
    }
    if (const auto capo = readCapo(line); capo && capo->sounding.length > 0)
        result_.keyLines.push_back({number, capo->sounding});
}

// Finds the statements of the key; true where the song has to be imported for the rest.
bool Search::lookBriefly() {
    bool found = false;
    std::size_t number = 0;
    for (TextView rest = readable_; !rest.empty(); ++number) {
        const TextView line = takeLine(rest).chars;
        if (IsChordLine(originalOf(line))) {
            found = found || (hasNoteLetter(line) && importSong(line).chords.empty());
            continue;
        }
        addKeyLines(number, originalOf(line));
        found = found || mayBeLeftOver(line);
    }
    return found;
}

// Whether the song means another note by some name than its letter says.
void Search::lookForOtherNames(std::span<const ImportedChord> chords) {
    const ChordReading& reading = notation_.reading;
    if (reading.naming == Naming::Letters && !notation_.hasGermanNames && !reading.smallMinors)
        return;
    for (const ImportedChord& chord : chords) {
        for (const ColumnRange& range : notesOfChord(chord.written, reading)) {
            const TextView name = chord.written.substr(range.column, range.length);
            const auto note = readNoteName(name, reading, NotePlace::Bass);
            const bool isFlatB = name == u"B" && reading.naming == Naming::German;
            if (!note || !(note->isGerman || note->isSmall || note->isSyllable || isFlatB))
                continue;
            result_.misreadsNames = true;
            result_.misreadsB = result_.misreadsB || (isFlatB && !notation_.isOpen);
        }
    }
}

void Search::addLine(std::size_t number, const SourceLine& line,
                     std::span<const ImportedChord> chords) {
    const TextView original = originalOf(line.text);
    if (IsChordLine(original)) {
        if (chords.empty() && hasNoteLetter(line.text))
            result_.changedWords.push_back(number);
        lookForOtherNames(chords);
        return;
    }
    if (chords.empty())
        return;
    LeftOverLine added{number,
                       {},
                       isInBrackets(line, notation_.reading),
                       notation_.signs,
                       notation_.reading.smallMinors,
                       notation_.solfege};
    for (const ImportedChord& chord : chords)
        addNotes(chord, notation_.reading, added.notes);
    const auto states = [&](const KeyLine& key) {
        return key.number == number && chords.size() == 1 && !added.notes.empty() &&
               added.notes.front().column == key.note.column;
    };
    if (std::none_of(result_.keyLines.begin(), result_.keyLines.end(), states))
        result_.lines.push_back(std::move(added));
}

LeftOver Search::run() {
    if (!lookBriefly())
        return std::move(result_);
    const SongImport song = importSong(readable_);
    notation_ = song.notation;
    result_.hasGermanNames = notation_.hasGermanNames;
    result_.hasH = notation_.isOpen;
    std::span<const ImportedChord> chords = song.chords;
    for (std::size_t number = 0; number < song.source.size(); ++number) {
        std::size_t count = 0;
        while (count < chords.size() && chords[count].sourceLine == number)
            ++count;
        addLine(number, song.source[number], chords.first(count));
        chords = chords.subspan(count);
    }
    return std::move(result_);
}

}  // namespace

LeftOver findLeftOver(TextView song, std::span<const ColumnRange> pictures) {
    return Search(song, pictures).run();
}

std::vector<LeftOverLine> linesWithKeys(const LeftOver& found) {
    std::vector<LeftOverLine> lines = found.lines;
    for (const KeyLine& key : found.keyLines) {
        const auto at =
            std::lower_bound(lines.begin(), lines.end(), key.number,
                             [](const LeftOverLine& l, std::size_t n) { return l.number < n; });
        if (at == lines.end() || at->number != key.number) {
            // As with chords in brackets the words around the note have no columns.
            const GermanSigns signs = key.isGerman ? GermanSigns::Endings : GermanSigns::None;
            lines.insert(at, {key.number, {key.note}, true, signs, key.isGerman});
            continue;
        }
        const auto behind =
            std::find_if(at->notes.begin(), at->notes.end(),
                         [&](const ColumnRange& n) { return n.column >= key.note.column; });
        if (behind == at->notes.end() || behind->column > key.note.column)
            at->notes.insert(behind, key.note);
    }
    return lines;
}

bool mayBeLeftOver(TextView line) {
    const bool mayBe = (hasRootLetter(line) && mayBeRow(line)) || mayBeSmallRow(line) ||
                       hasSmallBracket(line) || maySyllables(line);
    if (!mayBe)
        return false;
    ImportOptions options;
    options.isLoneLine = true;
    return !importSong(line, {}, options).chords.empty();
}

}  // namespace melvorin
