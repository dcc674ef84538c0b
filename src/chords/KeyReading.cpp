#include "chords/KeyReading.h"

#include <algorithm>
#include <iterator>
#include <map>

#include "base/LetterCase.h"
#include "chords/CellWidth.h"
#include "chords/ChordSpelling.h"
#include "chords/KeyStatement.h"
#include "chords/LineVerdict.h"
#include "chords/Note.h"

namespace melvorin {
namespace {

bool contains(TextView text, TextView part) {
    return text.find(part) != TextView::npos;
}

template <std::size_t count>
bool containsAny(TextView text, const TextView (&parts)[count]) {
    return std::any_of(std::begin(parts), std::end(parts),
                       [&](TextView part) { return contains(text, part); });
}

// The note that the text begins with; H is one too.
std::size_t noteOrHLength(TextView text) {
    return text.starts_with(u'H') ? 1 : noteLength(text);
}

int rootOf(TextView note) {
    const int steps = note[0] == u'H' ? 11 : halfSteps(note);
    return (steps % 12 + 12) % 12;
}

// "es-dur", "fis moll", "b-dur" in small letters: B is a half step below H here. Names with signs
// are none.
std::optional<Key> readGermanKey(TextView text) {
    const bool minor = text.ends_with(u"moll");
    if (!minor && !text.ends_with(u"dur"))
        return std::nullopt;
    text.remove_suffix(minor ? 4 : 3);
    while (!text.empty() && (text.back() == u'-' || text.back() == u' '))
        text.remove_suffix(1);
    constexpr TextView letters = u"abcdefgh";
    constexpr int steps[] = {9, 10, 0, 2, 4, 5, 7, 11};
    const std::size_t letter = text.empty() ? TextView::npos : letters.find(text[0]);
    if (letter == TextView::npos)
        return std::nullopt;
    const TextView ending = text.substr(1);
    const bool lowered = ending == u"es" || ending == u"s";
    if (!ending.empty() && !lowered && ending != u"is")
        return std::nullopt;
    return movedKey({steps[letter], minor}, ending.empty() ? 0 : lowered ? -1 : 1);
}

// A chord as it is written, without what stands around it.
struct Spelled {
    int root = 0;
    bool isGermanB = false;     // "B" itself: a half step lower where there are German names
    bool isGerman = false;      // "H", "Fis"
    bool hasMajorWord = false;  // writes major sevenths as "maj7" or "M7", so "7+" is none
    ChordQuality quality = ChordQuality::Major;
    ChordQuality qualityBesideWords = ChordQuality::Major;
};

enum class TokenKind { Chord, Bar, Sign, Other };

struct Token {
    TokenKind kind = TokenKind::Other;
    Spelled chord;
};

// Nothing where the text begins with no note.
std::optional<Spelled> spelledChord(TextView text) {
    const Text usual = usualNote(text);
    const auto note = readNoteName(usual, {});
    if (!note)
        return std::nullopt;
    const TextView suffix = TextView(usual).substr(note->length);
    constexpr TextView words[] = {u"M7", u"maj7", u"Maj7", u"j7"};
    return Spelled{note->steps,       note->length == 1 && usual[0] == u'B',
                   note->isGerman,    containsAny(suffix, words),
                   qualityOf(suffix), qualityOf(suffix, false)};
}

Token readToken(TextView text) {
    constexpr TextView signs[] = {u"/", u"%", u"-", u"*", u"(", u")", u"N.C.", u"NC", u"x2"};
    if (text.find_first_not_of(u"|:\u00A6") == TextView::npos)
        return {contains(text, u"|") ? TokenKind::Bar : TokenKind::Sign, {}};
    if (std::find(std::begin(signs), std::end(signs), text) != std::end(signs))
        return {TokenKind::Sign, {}};
    while (!text.empty() && (text.front() == u'(' || text.front() == u'['))
        text.remove_prefix(1);
    const bool isClosed = contains(text, u"(");
    while (!text.empty() && (text.back() == u',' || (text.back() == u')' && !isClosed)))
        text.remove_suffix(1);
    const auto spelled = spelledChord(text);
    // What is a word as well depends on the row.
    const bool isChord = spelled && wordToo(text) != WordToo::Anywhere &&
                         (houseSpelling(text) || resemblesChord(text));
    return isChord ? Token{TokenKind::Chord, *spelled} : Token{};
}

class Reader {
  public:
    SongChords read(TextView song);

  private:
    void readLine(TextView line);
    bool readPlainRow(TextView line);
    void readItems(TextView line, const std::vector<RowItem>& items);
    void readJudged(TextView line);
    const Token& token(TextView text);
    void add(const Spelled& chord);
    void endRow();

    SongChords song_;
    // Songs repeat their chords; each is read once.
    std::map<Text, Token, std::less<>> known_;
    std::vector<Spelled> spelled_;  // one for each of song_.chords
    std::vector<Token> row_;
    std::size_t line_ = 0;
    std::size_t barBegin_ = 0;  // number of the first chord of the bar that is open
    bool hasBars_ = false;
    bool sectionAhead_ = true;
};

const Token& Reader::token(TextView text) {
    const auto found = known_.find(text);
    if (found != known_.end())
        return found->second;
    return known_.emplace(Text(text), readToken(text)).first->second;
}

void Reader::add(const Spelled& chord) {
    song_.chords.push_back({chord.root, chord.quality, 1, line_, sectionAhead_});
    spelled_.push_back(chord);
    sectionAhead_ = false;
}

// The chords of a bar share its time.
void Reader::endRow() {
    const std::size_t count = song_.chords.size() - barBegin_;
    for (std::size_t i = barBegin_; hasBars_ && i < song_.chords.size(); ++i)
        song_.chords[i].time = 1.0 / static_cast<double>(count);
    barBegin_ = song_.chords.size();
}

// A row of nothing but chords, bars and signs; most rows are.
bool Reader::readPlainRow(TextView line) {
    row_.clear();
    std::size_t chords = 0;
    for (std::size_t at = 0; at < line.size();) {
        const bool isBar = line[at] == u'|';
        const auto belongs = [&](char16_t c) {
            return c != u' ' && c != u'\t' && c != 0xA0 && (c == u'|') == isBar;
        };
        const auto end =
            std::find_if_not(line.begin() + static_cast<std::ptrdiff_t>(at), line.end(), belongs);
        const std::size_t length = static_cast<std::size_t>(end - line.begin()) - at;
        if (length > 0) {
            constexpr std::size_t longest = 24;
            if (length > longest)
                return false;
            const Token& read = token(line.substr(at, length));
            if (read.kind == TokenKind::Other)
                return false;
            chords += read.kind == TokenKind::Chord ? 1U : 0U;
            row_.push_back(read);
        }
        at += std::max<std::size_t>(length, 1);
    }
    if (chords == 0)
        return !row_.empty();
    hasBars_ = std::any_of(row_.begin(), row_.end(),
                           [](const Token& read) { return read.kind == TokenKind::Bar; });
    for (const Token& read : row_) {
        if (read.kind == TokenKind::Bar)
            endRow();
        else if (read.kind == TokenKind::Chord)
            add(read.chord);
    }
    endRow();
    return true;
}

void Reader::readItems(TextView line, const std::vector<RowItem>& items) {
    hasBars_ = std::any_of(items.begin(), items.end(),
                           [](const RowItem& item) { return item.kind == RowItemKind::Bar; });
    for (const RowItem& item : items) {
        if (item.kind == RowItemKind::Bar)
            endRow();
        if (item.kind != RowItemKind::Chord && item.kind != RowItemKind::Unknown)
            continue;
        const TextView written = line.substr(item.index, item.length);
        if (const Token& read = token(written); read.kind == TokenKind::Chord)
            add(read.chord);
        else if (const auto spelled = spelledChord(written); spelled)
            add(*spelled);
    }
    endRow();
}

void Reader::readJudged(TextView line) {
    const LineVerdict verdict = judgeLine(line);
    if (verdict == LineVerdict::Section) {
        sectionAhead_ = true;
        const std::size_t label = sectionLabelLength(line);
        const TextView behind = line.substr(label);
        if (const auto bracketed = readBrackets(behind, 0, label))
            readItems(line, bracketed->chords);
        else if (const auto row = readRow(behind, 0, label); label > 0 && isRowOfChords(row))
            readItems(line, row);
    } else if (verdict == LineVerdict::Chords || verdict == LineVerdict::Lyrics) {
        if (const auto bracketed = readBrackets(line))
            readItems(line, bracketed->chords);
        else if (verdict == LineVerdict::Chords)
            readItems(line, readRow(line));
    }
}

// Most lines are words, and cost no more than a look: chords begin with a capital, behind a label's
// colon or in brackets.
bool mayHoldChords(TextView line) {
    std::size_t runs = 0;
    std::size_t notes = 0;
    for (std::size_t at = 0; at < line.size(); ++at) {
        if (line[at] == u'[' || line[at] == u':' || line[at] == u'{')
            return true;
        const bool begins = line[at] != u' ' && (at == 0 || line[at - 1] == u' ');
        runs += begins ? 1U : 0U;
        notes += begins && (isNoteLetter(line[at]) || line[at] == u'H' || line[at] == u'(' ||
                            line[at] == u'|')
                     ? 1U
                     : 0U;
    }
    return notes * 2 >= runs || runs <= 2;
}

void Reader::readLine(TextView line) {
    if (line.find_first_not_of(u" \t") == TextView::npos) {
        sectionAhead_ = true;
        return;
    }
    if (!song_.stated) {
        if (auto stated = readStatedKey(line)) {
            stated->line = line_;
            song_.stated = stated;
            return;
        }
    }
    if (!readPlainRow(line) && mayHoldChords(line))
        readJudged(line);
}

SongChords Reader::read(TextView song) {
    for (; !song.empty(); ++line_)
        readLine(takeLine(song).chars);
    const auto any = [&](bool Spelled::*member) {
        return std::any_of(spelled_.begin(), spelled_.end(),
                           [&](const Spelled& chord) { return chord.*member; });
    };
    const bool german = any(&Spelled::isGerman);
    const bool words = any(&Spelled::hasMajorWord);
    for (std::size_t i = 0; i < spelled_.size(); ++i) {
        if (german && spelled_[i].isGermanB)
            song_.chords[i].root = 10;
        if (words)
            song_.chords[i].quality = spelled_[i].qualityBesideWords;
    }
    return std::move(song_);
}

}  // namespace

ChordQuality qualityOf(TextView suffix, bool plusIsMajor) {
    TextView s = suffix;
    if (const std::size_t slash = s.rfind(u'/'); slash != TextView::npos) {
        const TextView bass = s.substr(slash + 1);
        if (noteOrHLength(bass) > 0 && noteOrHLength(bass) == bass.size())
            s = s.substr(0, slash);
    }
    const char16_t begin = s.empty() ? u'\0' : s[0];
    constexpr TextView lowered[] = {u"b5", u"5b", u"5-", u"-5"};
    constexpr TextView majors[] = {u"maj", u"Maj", u"ma7", u"Ma7", u"M7",    u"M9",
                                   u"M13", u"7M",  u"9M",  u"j7",  u"\u0394"};
    constexpr TextView suspended[] = {u"sus", u"/4", u"(4"};
    constexpr TextView augmented[] = {u"+", u"aug", u"5#", u"#5"};
    if (contains(s, u"\u00F8"))
        return ChordQuality::HalfDiminished;
    const bool isMajorWord = s.starts_with(u"ma") && !s.starts_with(u"mad");
    if (begin == u'-' || (begin == u'm' && !isMajorWord))
        return containsAny(s, lowered) ? ChordQuality::HalfDiminished : ChordQuality::Minor;
    if (begin == u'o' || begin == u'0' || begin == u'\u00B0' || begin == u'\u00BA' ||
        s.starts_with(u"dim") || s.starts_with(u"Dim"))
        return ChordQuality::Diminished;
    const bool isTriad = s == u"maj" || s == u"Maj" || s == u"major";
    if ((containsAny(s, majors) && !isTriad) || (plusIsMajor && s.starts_with(u"7+")))
        return ChordQuality::MajorSeventh;
    if (begin == u'4' || containsAny(s, suspended))
        return ChordQuality::Other;
    if (begin == u'7' || begin == u'9' || begin == u'1' || contains(s, u"7"))
        return ChordQuality::Dominant;
    return containsAny(s, augmented) ? ChordQuality::Other : ChordQuality::Major;
}

std::optional<Key> readKey(TextView text) {
    const Text usual = usualNote(trimmed(text));
    if (const auto german = readGermanKey(unicodeLowerCase(usual)))
        return german;
    const std::size_t length = noteOrHLength(usual);
    if (length == 0)
        return std::nullopt;
    const TextView behind = TextView(usual).substr(length);
    const Text mode = unicodeLowerCase(trimmed(behind));
    constexpr TextView majors[] = {u"", u"major", u"maj", u"dur", u"maior", u"mayor", u"majeur"};
    constexpr TextView minors[] = {u"m",     u"minor", u"min",    u"mi",
                                   u"menor", u"moll",  u"mineur", u"-"};
    // "GM" is no Gm.
    if (behind == u"M" || std::find(std::begin(majors), std::end(majors), mode) != std::end(majors))
        return Key{rootOf(TextView(usual).substr(0, length)), false};
    if (std::find(std::begin(minors), std::end(minors), mode) != std::end(minors))
        return Key{rootOf(TextView(usual).substr(0, length)), true};
    return std::nullopt;
}

std::optional<StatedKey> readStatedKey(TextView line) {
    const auto note = statedKey(line);
    if (!note)
        return std::nullopt;
    // A remark may follow in parentheses, another label behind two blanks.
    TextView value = line.substr(note->column);
    value = value.substr(0, std::min({value.find_first_of(u"}],;|("), value.find(u"  "),
                                      value.find(u'\t'), value.size()}));
    const auto key = readKey(value);
    if (!key)
        return std::nullopt;
    const bool isGerman = readGermanKey(unicodeLowerCase(usualNote(trimmed(value)))).has_value();
    return StatedKey{*key, isGerman, 0, note->column, note->length};
}

SongChords readSongChords(TextView song) {
    return Reader().read(song);
}

}  // namespace melvorin
