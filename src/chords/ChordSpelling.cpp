#include "chords/ChordSpelling.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "chords/CellWidth.h"
#include "chords/Note.h"
#include "chords/SuffixNormaliser.h"

namespace melvorin {
namespace {

// Longer text is no chord; so a line without blanks costs no more than any other.
constexpr std::size_t kLongest = 24;

// The usual sign for each of its look-alikes.
char16_t usualSign(char16_t c) {
    switch (c) {
        case 0x266F:  // sharp
        case 0xFF03:
            return u'#';
        case 0x266D:  // flat
            return u'b';
        case 0xBA:   // masculine ordinal
        case 0x2DA:  // ring above
            return 0xB0;
        case 0x2212:  // minus
        case 0x2010:
        case 0x2011:
        case 0x2013:
            return u'-';
        case 0x25B3:  // triangles
        case 0x2206:
            return 0x394;
        case 0xD8:
        case 0x2205:
        case 0x2300:
            return 0xF8;
        case u'\\':
            return u'/';
        default:
            break;
    }
    return c >= 0xFF01 && c <= 0xFF5E ? static_cast<char16_t>(c - 0xFEE0) : c;
}

// ---- Notes -----------------------------------------------------------------------------------

// A letter with its accidentals, taken from the front of `text`.
std::optional<TextView> takeNote(TextView& text) {
    const std::size_t length = noteLength(text);
    if (length == 0)
        return std::nullopt;
    const TextView note = text.substr(0, length);
    text.remove_prefix(length);
    return note;
}

Spelling spellingOf(TextView note) {
    return note.ends_with(u'b') ? Spelling::Flats : Spelling::Sharps;
}

// The note as one of the 17 names; only those are moved by a key change.
TextView nameOf(TextView note) {
    return noteName(halfSteps(note), spellingOf(note));
}

// ---- Suffixes --------------------------------------------------------------------------------

enum class Degree { Fourth, Sixth, Seventh, Fifth, Ninth, Eleventh, Thirteenth, Count };
constexpr auto kDegrees = static_cast<std::size_t>(Degree::Count);

constexpr char16_t kBoth = u'*';

// What a suffix says, whatever it is written in.
struct Suffix {
    bool minor = false;
    bool diminished = false;
    bool halfDiminished = false;
    bool majorSeventh = false;
    // Accidental of each degree that is there: ' ', '#', 'b' or kBoth; 0 where it is not.
    std::array<char16_t, kDegrees> degrees{};
    std::optional<Text> bass;

    char16_t& at(Degree degree) { return degrees[static_cast<std::size_t>(degree)]; }
    char16_t at(Degree degree) const { return degrees[static_cast<std::size_t>(degree)]; }
};

class SuffixReader {
  public:
    SuffixReader(TextView text, TextView root) : all_(text), rest_(text), root_(root) {}
    // Nothing when some part of the text means nothing.
    std::optional<Suffix> read();

  private:
    bool takeAny(std::initializer_list<TextView> words);
    bool takeMajor();
    bool takeMinus();
    bool takePlus();
    bool takeSlash();
    bool takeSuspension();
    bool takeAdded();
    bool takeAccidental();
    bool takeNumber(char16_t accidental);
    bool takeSign();
    bool takePart();
    void takeOwnSeventh();
    bool bassDegree(int above);
    bool add(int number, char16_t accidental);
    bool atStart() const { return rest_.size() == all_.size(); }
    bool digitAhead(std::size_t at = 0) const { return at < rest_.size() && isDigit(rest_[at]); }

    TextView all_;
    TextView rest_;
    TextView root_;
    Suffix suffix_;
    int open_ = 0;             // parentheses
    bool majorAhead_ = false;  // "maj" waits for its number
    bool numbers_ = false;     // a number has been read
    bool suspended_ = false;
};

bool SuffixReader::takeAny(std::initializer_list<TextView> words) {
    for (const TextView word : words) {
        if (rest_.starts_with(word)) {
            rest_.remove_prefix(word.size());
            return true;
        }
    }
    return false;
}

bool SuffixReader::add(int number, char16_t accidental) {
    Degree degree = Degree::Count;
    switch (number) {
        case 2:
        case 9:
            degree = Degree::Ninth;
            break;
        case 4:
            degree = accidental == u'#' ? Degree::Eleventh : Degree::Fourth;
            break;
        case 5:
            degree = Degree::Fifth;
            break;
        case 6:
            degree = Degree::Sixth;
            break;
        case 7:
            degree = Degree::Seventh;
            break;
        case 11:
            degree = Degree::Eleventh;
            break;
        case 13:
            degree = Degree::Thirteenth;
            break;
        default:
            return false;
    }
    char16_t& place = suffix_.at(degree);
    // A ninth or fifth may be there both lowered and raised.
    if (place != 0 && place != accidental && number != 7)
        place = place == u' ' || accidental == u' ' ? u'?' : kBoth;
    else
        place = accidental;
    if (place == u'?')
        return false;
    numbers_ = true;
    return true;
}

bool SuffixReader::takeMajor() {
    const bool added = rest_.starts_with(u"madd") || rest_.starts_with(u"mad");
    if (!added && takeAny({u"major", u"Major", u"maj", u"Maj", u"MAJ", u"ma", u"Ma", u"M"})) {
        majorAhead_ = true;
        return true;
    }
    if (takeAny({u"\u0394"})) {  // a triangle alone has its seventh
        suffix_.majorSeventh = true;
        takeAny({u"7"});
        return true;
    }
    const bool jazz = rest_.size() > 1 && rest_[0] == u'j' && isDigit(rest_[1]);
    majorAhead_ = majorAhead_ || (jazz && takeAny({u"j"}));
    return jazz;
}

// "-" is minor in front, and a flat with a number behind another one: "C-7", "C7-9", "C9-".
bool SuffixReader::takeMinus() {
    if (!takeAny({u"-"}))
        return false;
    if (!numbers_ && !suffix_.minor) {
        if (rest_ == u"5") {
            rest_ = {};
            return add(5, u'b');
        }
        suffix_.minor = true;
        return true;
    }
    return digitAhead() && takeNumber(u'b');
}

// "+" in front is an augmented fifth or a sharp with its number, and behind a seventh the major
// one, unless a number follows.
bool SuffixReader::takePlus() {
    if (!takeAny({u"+"}))
        return false;
    if (digitAhead() && rest_[0] != u'7')
        return takeNumber(u'#');
    return add(5, u'#');
}

bool SuffixReader::bassDegree(int above) {
    suffix_.bass = Text(noteName(halfSteps(root_) + above, spellingOf(root_)));
    rest_ = {};
    return true;
}

bool SuffixReader::takeSlash() {
    if (!takeAny({u"/"}))
        return false;
    const int third = suffix_.minor || suffix_.diminished || suffix_.halfDiminished ? 3 : 4;
    const int fifth = suffix_.diminished || suffix_.halfDiminished ? 6 : 7;
    if (rest_ == u"3")
        return bassDegree(third);
    if (rest_ == u"3b" || rest_ == u"b3")
        return bassDegree(3);
    if (rest_ == u"5")
        return bassDegree(fifth);
    if (rest_ == u"b7" || rest_ == u"7b")
        return bassDegree(10);
    TextView behind = rest_;
    const auto bass = takeNote(behind);
    if (!bass)
        return digitAhead() ||
               (!rest_.empty() && TextView(u"b#(+-aA").find(rest_[0]) != Text::npos);
    if (!behind.empty())
        return false;
    suffix_.bass = Text(nameOf(*bass));
    rest_ = behind;
    return true;
}

bool SuffixReader::takeSuspension() {
    if (!takeAny({u"sus", u"Sus", u"SUS"}))
        return false;
    suspended_ = true;
    if (takeAny({u"2/4", u"4/2", u"24", u"42"}))
        return add(4, u' ') && add(9, u' ');
    if (takeAny({u"2", u"9"}))
        return add(9, u' ');
    takeAny({u"4"});
    return add(4, u' ');
}

bool SuffixReader::takeAdded() {
    if (takeAny({u"no3rd", u"no3", u"omit3", u"no 3"})) {
        return add(5, u' ');
    }
    if (!takeAny({u"add", u"Add", u"ADD", u"ad", u"Ad"}))
        return false;
    // An added fourth leaves the third in its place: it is an eleventh.
    if (!suspended_ && takeAny({u"4"}))
        return add(11, u' ');
    if (takeAny({u"b"}))
        return takeNumber(u'b');
    return takeNumber(takeAny({u"#"}) ? u'#' : u' ');
}

bool SuffixReader::takeAccidental() {
    const bool sharp = rest_.starts_with(u'#');
    if ((!sharp && !rest_.starts_with(u'b')) || !digitAhead(1))
        return false;
    rest_.remove_prefix(1);
    return takeNumber(sharp ? u'#' : u'b');
}

bool SuffixReader::takeNumber(char16_t accidental) {
    if (!digitAhead())
        return false;
    int number = rest_[0] - u'0';
    rest_.remove_prefix(1);
    if (number == 1 && digitAhead()) {
        number = 10 + (rest_[0] - u'0');
        rest_.remove_prefix(1);
    }
    if (number == 7 || (majorAhead_ && number != 6 && number != 5)) {
        // The number takes its seventh along: "maj9".
        if (accidental != u' ' || !add(7, u' '))
            return false;
        const bool major = number == 7 && takeAny({u"maj", u"Maj", u"M"});
        const bool plus = number == 7 && rest_.starts_with(u'+') && !digitAhead(1);
        if (plus)
            rest_.remove_prefix(1);
        suffix_.majorSeventh = suffix_.majorSeventh || majorAhead_ || major || plus;
        majorAhead_ = false;
        return number == 7 || add(number, u' ');
    }
    majorAhead_ = false;
    // An accidental behind a number is the number's, unless the next number wants it.
    if (accidental == u' ' && !rest_.empty() && !digitAhead(1)) {
        const char16_t sign = rest_[0];
        if (sign == u'b' || sign == u'-')
            accidental = u'b';
        else if (sign == u'#' || sign == u'+')
            accidental = u'#';
        if (accidental != u' ')
            rest_.remove_prefix(1);
    }
    if (number == 6 && accidental == u' ' && takeAny({u"9"}))  // "69"
        return add(6, u' ') && add(9, u' ');
    return add(number, accidental);
}

bool SuffixReader::takeSign() {
    if (takeAny({u"("})) {
        ++open_;
        return true;
    }
    if (takeAny({u")"}))
        return --open_ >= 0;
    return open_ > 0 && takeAny({u",", u" "});
}

// The seventh that the sign before it has anyway, unless it is a major one.
void SuffixReader::takeOwnSeventh() {
    if (rest_.size() < 2 || (rest_[1] != u'+' && rest_[1] != u'M' && rest_[1] != u'm'))
        takeAny({u"7"});
}

// "min" before "m" and so on: the longer words first. "ma" in front of "maj" is the same word.
bool SuffixReader::takePart() {
    if (takeMajor() || takeSuspension() || takeAdded() || takeSign() || takeSlash())
        return true;
    if (!numbers_ && takeAny({u"dim", u"Dim", u"DIM", u"\u00B0"})) {
        suffix_.diminished = true;
        takeOwnSeventh();
        return true;
    }
    if (!numbers_ && takeAny({u"\u00F8"})) {
        suffix_.halfDiminished = true;
        takeOwnSeventh();
        return true;
    }
    if (takeAny({u"aug", u"Aug", u"AUG"}))
        return add(5, u'#');
    if (!numbers_ && !suffix_.minor && takeAny({u"minor", u"min", u"Min", u"MIN", u"mi", u"m"})) {
        suffix_.minor = true;
        return true;
    }
    // A letter o is a ring where it cannot be the end of a word ("Go").
    const bool ring = atStart() && rest_[0] == u'o' && (root_.size() > 1 || digitAhead(1));
    if (ring) {
        rest_.remove_prefix(1);
        suffix_.diminished = true;
        takeOwnSeventh();
        return true;
    }
    return takeAccidental() || takePlus() || takeMinus() || takeNumber(u' ');
}

std::optional<Suffix> SuffixReader::read() {
    while (!rest_.empty()) {
        const std::size_t before = rest_.size();
        if (!takePart() || (rest_.size() == before && !rest_.empty()))
            return std::nullopt;
    }
    if (open_ != 0)
        return std::nullopt;
    // "C9sus4" has the seventh that its ninth stands on.
    if (suspended_ && all_.find(u"sus") > 0 && suffix_.at(Degree::Fourth) != 0 &&
        (all_.starts_with(u"9") || all_.starts_with(u"13")))
        suffix_.at(Degree::Seventh) = u' ';
    return suffix_;
}

// ---- The house's spelling --------------------------------------------------------------------

class SuffixWriter {
  public:
    explicit SuffixWriter(TextView root) : chord_(root) {}

    Text write(Suffix suffix);

  private:
    void put(TextView number, char16_t accidental);

    Text chord_;
    bool first_ = true;
};

void SuffixWriter::put(TextView number, char16_t accidental) {
    if (accidental == 0)
        return;
    if (accidental == kBoth) {
        put(number, u'b');
        put(number, u'#');
        return;
    }
    chord_.append(first_ ? u"" : u"/").append(number);
    if (accidental != u' ')
        chord_ += accidental;
    first_ = false;
}

Text SuffixWriter::write(Suffix suffix) {
    if (suffix.majorSeventh)
        suffix.at(Degree::Seventh) = u' ';
    const bool half =
        suffix.halfDiminished || (suffix.minor && suffix.at(Degree::Fifth) == u'b' &&
                                  suffix.at(Degree::Seventh) != 0 && !suffix.majorSeventh);
    if (half) {
        chord_ += u'm';
        put(u"5", u'b');
        put(u"7", u' ');
        suffix.at(Degree::Fifth) = suffix.at(Degree::Seventh) = 0;
    } else if (suffix.diminished) {
        chord_ += u'\u00B0';
        if (!suffix.majorSeventh)
            suffix.at(Degree::Seventh) = 0;
    } else if (suffix.minor) {
        chord_ += u'm';
    }
    const char16_t fifth = suffix.at(Degree::Fifth);
    const bool plainFifth = fifth == u' ';
    // A plain fifth tells that there is no third. It comes first, as does the altered fifth of a
    // suspended chord; that of a seventh comes behind it.
    const bool suspended = suffix.at(Degree::Fourth) != 0 && suffix.at(Degree::Seventh) == 0;
    if (plainFifth || suspended)
        put(u"5", std::exchange(suffix.at(Degree::Fifth), u'\0'));
    put(u"4", suffix.at(Degree::Fourth));
    put(u"6", suffix.at(Degree::Sixth));
    put(suffix.majorSeventh ? u"7+" : u"7", suffix.at(Degree::Seventh));
    put(u"5", suffix.at(Degree::Fifth));
    put(u"9", suffix.at(Degree::Ninth));
    put(u"11", suffix.at(Degree::Eleventh));
    put(u"13", suffix.at(Degree::Thirteenth));
    if (suffix.bass)
        chord_.append(u"/").append(*suffix.bass);
    return chord_;
}

Text usualSigns(TextView chord) {
    Text usual;
    for (const char16_t c : chord) {
        if (c != 0x266E)  // a natural says nothing here
            usual += usualSign(c);
    }
    return usual;
}

}  // namespace

std::optional<Text> houseSpelling(TextView chord) {
    if (chord.empty() || chord.size() > kLongest)
        return std::nullopt;
    const Text usual = usualSigns(chord);
    TextView rest = usual;
    const auto root = takeNote(rest);
    if (!root)
        return std::nullopt;
    const auto suffix = SuffixReader(rest, *root).read();
    if (!suffix)
        return std::nullopt;
    Text spelled = SuffixWriter(nameOf(*root)).write(*suffix);
    // What is written here is in house style; only the accidental of a bass depends on the rows.
    return suffix->bass ? normaliseSuffixes(spelled) : spelled;
}

bool resemblesChord(TextView text) {
    if (text.size() < 2 || text.size() > kLongest)
        return false;
    const Text usual = usualSigns(text);
    if (usual[0] == u'H') {
        // The German B; what B means in that song is open.
        Text asB = usual;
        asB[0] = u'B';
        return houseSpelling(asB).has_value();
    }
    if (!isNoteLetter(usual[0]))
        return false;
    const bool marked = std::any_of(usual.begin() + 1, usual.end(),
                                    [](char16_t c) { return isDigit(c) || c == u'#'; });
    const bool plain = std::all_of(usual.begin() + 1, usual.end(), [](char16_t c) {
        return isDigit(c) || (c >= u'a' && c <= u'z') || isNoteLetter(c) || c == u'M' ||
               TextView(u"#+-/()\u00B0").find(c) != TextView::npos;
    });
    return marked && plain;
}

std::vector<ColumnRange> notesOfChord(TextView chord) {
    const Text usual = usualNote(chord);
    std::vector<ColumnRange> notes;
    const auto addNote = [&](std::size_t index, bool atEnd) {
        TextView rest = TextView(usual).substr(std::min(index, usual.size()));
        const auto note = takeNote(rest);
        if (note && (!atEnd || rest.empty() || rest == u")"))
            notes.push_back({index, note->size()});
    };
    addNote(usual.starts_with(u'(') ? 1 : 0, false);
    if (const std::size_t slash = usual.rfind(u'/'); slash != Text::npos && !notes.empty())
        addNote(slash + 1, true);
    return notes;
}

Text usualNote(TextView note) {
    Text usual(note);
    std::transform(usual.begin(), usual.end(), usual.begin(), usualSign);
    return usual;
}

}  // namespace melvorin
