#include "chords/ChordSuffix.h"

#include <algorithm>
#include <initializer_list>

#include "chords/CellWidth.h"

namespace melvorin {
namespace {

constexpr std::initializer_list<TextView> kDiminishedWords = {u"dim", u"Dim", u"DIM", u"\u00B0"};
constexpr std::initializer_list<TextView> kMinorWords = {u"minor", u"min", u"Min", u"MIN",
                                                         u"mi",    u"Mi",  u"MI",  u"m"};

// Takes the suffix part by part. A part that has begun and cannot be read to its end makes the
// whole suffix unreadable: no other part may have a try at what is left of it.
class SuffixReader {
  public:
    SuffixReader(TextView text, const NamedNote& root, const ChordReading& reading)
        : rest_(text), root_(root), reading_(reading) {
        suffix_.minor = root.isSmall;
    }
    std::optional<ChordSuffix> read();

  private:
    enum class Origin { Stacked, Added };  // "9" behind a chord, "add9"

    bool fail() {
        failed_ = true;
        return true;
    }
    bool takeAny(std::initializer_list<TextView> words);
    bool takeMajor();
    bool takeMinor();
    bool takeDiminished();
    bool takeMinus();
    bool takePlus();
    bool takeSlash();
    bool takeSuspension();
    bool takeAdded();
    bool takeOmitted();
    bool takeAccidental();
    bool takeNumber(char16_t accidental, Origin origin = Origin::Stacked);
    bool takeSeventh(char16_t accidental);
    bool takeMajorNumber(int number, char16_t accidental);
    bool takeSign();
    bool takePart();
    void takeOwnSeventh();
    char16_t accidentalBehind(int number);
    bool bassDegree(int above);
    bool addNote(const NamedNote& note);
    bool add(int number, char16_t accidental);
    bool finish();
    bool has(Degree degree) const { return suffix_.at(degree) != 0; }
    bool isThirdKnown() const {
        return suffix_.minor || suffix_.diminished || suffix_.halfDiminished || majorAhead_;
    }
    bool digitAhead(std::size_t at = 0) const { return at < rest_.size() && isDigit(rest_[at]); }
    bool endsAhead(TextView ends) const {
        return rest_.empty() || ends.find(rest_[0]) != TextView::npos;
    }

    TextView rest_;
    const NamedNote& root_;
    const ChordReading& reading_;
    ChordSuffix suffix_;
    int open_ = 0;   // parentheses
    int count_ = 0;  // of the numbers read
    bool failed_ = false;
    bool majorAhead_ = false;   // "maj" waits for its number
    bool numbers_ = false;      // a degree has been read
    bool behindSlash_ = false;  // the next number is an added one
    bool suspended_ = false;
    bool suspendedSecond_ = false;
    bool noThird_ = false;
    bool noFifth_ = false;
    bool seventhBelow_ = false;  // a plain 9, 11 or 13 is the first number
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

// ---- Degrees ---------------------------------------------------------------------------------

// Always true: what cannot be added fails.
bool SuffixReader::add(int number, char16_t accidental) {
    struct Rule {
        int number;
        Degree degree;
        TextView accidentals;
    };
    // A raised sixth is a seventh, a lowered fourth a third: nobody means those.
    static constexpr Rule rules[] = {
        {2, Degree::Ninth, u" "},    {4, Degree::Fourth, u" "},     {5, Degree::Fifth, u" #b"},
        {6, Degree::Sixth, u" b"},   {7, Degree::Seventh, u" "},    {9, Degree::Ninth, u" #b"},
        {4, Degree::Eleventh, u"#"}, {11, Degree::Eleventh, u" #"}, {13, Degree::Thirteenth, u" b"},
    };
    const auto rule = std::find_if(std::begin(rules), std::end(rules), [&](const Rule& r) {
        return r.number == number && r.accidentals.find(accidental) != TextView::npos;
    });
    if (rule == std::end(rules))
        return fail();
    char16_t& place = suffix_.at(rule->degree);
    const bool isOther = place != 0 && place != accidental;
    if (isOther && (place == u' ' || accidental == u' '))
        return fail();
    place = isOther ? kBothAccidentals : accidental;
    numbers_ = true;
    return true;
}

// "C(add G#)": what the note is depends on how far above the root it stands.
bool SuffixReader::addNote(const NamedNote& note) {
    switch ((note.steps - root_.steps + 12) % 12) {
        case 1:
            return add(9, u'b');
        case 2:
            return add(9, u' ');
        case 3:
            return suffix_.minor ? fail() : add(9, u'#');
        case 5:
            return add(11, u' ');
        case 6:
            return add(11, u'#');
        case 8:
            return add(13, u'b');
        case 9:
            return add(6, u' ');
        case 10:
            return add(7, u' ');
        case 11:
            suffix_.majorSeventh = true;
            return add(7, u' ');
        default:
            return fail();
    }
}

// An accidental behind a number is the number's, unless the next number wants it. No seventh does:
// "C5+7".
char16_t SuffixReader::accidentalBehind(int number) {
    const bool isNext = digitAhead(1) && !(number == 5 && rest_[1] == u'7');
    if (rest_.empty() || isNext)
        return u' ';
    const char16_t sign = rest_[0];
    const char16_t accidental = sign == u'b' || sign == u'-'   ? u'b'
                                : sign == u'#' || sign == u'+' ? u'#'
                                                               : u' ';
    if (accidental != u' ')
        rest_.remove_prefix(1);
    return accidental;
}

// "7", "7M", "7+".
bool SuffixReader::takeSeventh(char16_t accidental) {
    const bool word = takeAny({u"maj", u"Maj", u"MAJ", u"MA", u"M"});
    const bool plus = !word && rest_.starts_with(u'+') && !digitAhead(1);
    if (plus)
        rest_.remove_prefix(1);
    suffix_.majorSeventh = suffix_.majorSeventh || majorAhead_ || word || plus;
    majorAhead_ = false;
    return add(7, accidental);
}

// "maj9" takes its seventh along, "maj6" has none.
bool SuffixReader::takeMajorNumber(int number, char16_t accidental) {
    majorAhead_ = false;
    if (number == 6 || (number == 5 && accidental != u' '))
        return add(number, accidental);
    if (accidental != u' ' || number < 9)
        return fail();
    suffix_.majorSeventh = true;
    return add(7, u' ') && add(number, accidentalBehind(number));
}

bool SuffixReader::takeNumber(char16_t accidental, Origin origin) {
    if (!digitAhead())
        return false;
    int number = rest_[0] - u'0';
    rest_.remove_prefix(1);
    if (number == 1 && digitAhead()) {
        number = 10 + (rest_[0] - u'0');
        rest_.remove_prefix(1);
    }
    const bool isFirst = count_++ == 0;
    const bool isStacked = origin == Origin::Stacked && !behindSlash_ && open_ == 0;
    behindSlash_ = false;
    if (origin == Origin::Added)
        majorAhead_ = false;
    if (number == 7)
        return takeSeventh(accidental);
    if (majorAhead_)
        return takeMajorNumber(number, accidental);
    // "C9M" is the ninth on a major seventh.
    const bool isHigh = number >= 9 && accidental == u' ';
    const TextView behind = rest_;
    if (isFirst && isHigh && isStacked && !numbers_ && takeAny({u"maj", u"Maj", u"MA", u"M"})) {
        if (!digitAhead())
            return takeMajorNumber(number, accidental);
        rest_ = behind;  // "C9maj7"
    }
    const bool mayEnd = number != 2 && number != 4 && accidental == u' ';
    if (mayEnd || (number == 4 && rest_.starts_with(u'+')))
        accidental = accidentalBehind(number);
    seventhBelow_ = seventhBelow_ || (isFirst && isHigh && isStacked && accidental == u' ');
    if (number == 5 && accidental == u' ' && (numbers_ || suffix_.diminished))
        return fail();
    if (number == 6 && accidental == u' ' && takeAny({u"9"}))  // "69"
        return add(6, u' ') && add(9, accidentalBehind(9));
    return add(number, accidental);
}

bool SuffixReader::takeAccidental() {
    const bool sharp = rest_.starts_with(u'#');
    if ((!sharp && !rest_.starts_with(u'b')) || !digitAhead(1))
        return false;
    rest_.remove_prefix(1);
    return takeNumber(sharp ? u'#' : u'b');
}

// "-" is minor in front, and a flat with a number in parentheses or behind another one: "C-7",
// "C(-5)", "C7-9". Nobody writes a minor chord with its fifth: "C-5".
bool SuffixReader::takeMinus() {
    if (!takeAny({u"-"}))
        return false;
    const bool mayBeMinor = !numbers_ && !isThirdKnown() && open_ == 0;
    if (mayBeMinor && !rest_.starts_with(u'5')) {
        suffix_.minor = true;
        return true;
    }
    return takeNumber(u'b') || fail();
}

// "+" in front is an augmented fifth, and a sharp with a number behind another one. In front of
// other numbers it says too little: "C+9", "Cm+7".
bool SuffixReader::takePlus() {
    if (!takeAny({u"+"}))
        return false;
    if (!digitAhead())
        return add(5, u'#');
    if (rest_[0] == u'7')
        return suffix_.minor || numbers_ ? fail() : add(5, u'#');
    return numbers_ || rest_[0] == u'5' ? takeNumber(u'#') : fail();
}

// ---- Words -----------------------------------------------------------------------------------

bool SuffixReader::takeMajor() {
    if (rest_.starts_with(u"mad"))  // "madd9"
        return false;
    if (takeAny({u"^", u"\u0394"})) {  // has its seventh also alone
        if (!digitAhead()) {
            suffix_.majorSeventh = true;
            numbers_ = true;
            return true;
        }
        majorAhead_ = true;
        return true;
    }
    const bool added = rest_.starts_with(u"Mad") || rest_.starts_with(u"MAD");
    const bool jazz = rest_.size() > 1 && rest_[0] == u'j' && isDigit(rest_[1]);
    const bool word =
        added || jazz
            ? takeAny({u"M", u"j"})
            : takeAny({u"major", u"Major", u"maj", u"Maj", u"MAJ", u"ma", u"Ma", u"MA"}) ||
                  (!rest_.starts_with(u"Mi") && !rest_.starts_with(u"MI") && takeAny({u"M"}));
    if (!word)
        return false;
    // Behind something else it is the major seventh or nothing: "Cm(maj7)", "C6maj7".
    if ((numbers_ || isThirdKnown()) && !digitAhead())
        return fail();
    majorAhead_ = true;
    return true;
}

// Also behind its number: "C7m".
bool SuffixReader::takeMinor() {
    if (!takeAny(kMinorWords))
        return false;
    const bool isLate = numbers_ && (count_ != 1 || has(Degree::Fifth) || !endsAhead(u"(/"));
    if (isLate || suspended_ || suffix_.majorSeventh || (isThirdKnown() && !root_.isSmall))
        return fail();
    suffix_.minor = true;
    return true;
}

// The seventh that the sign before it has anyway, unless it is a major one.
void SuffixReader::takeOwnSeventh() {
    if (rest_.size() < 2 || (rest_[1] != u'+' && rest_[1] != u'M' && rest_[1] != u'm'))
        takeAny({u"7"});
}

bool SuffixReader::takeDiminished() {
    const bool isSeventh = numbers_ && count_ == 1 && has(Degree::Seventh) && !suffix_.majorSeventh;
    if (isSeventh && takeAny(kDiminishedWords)) {  // "C7dim"
        if (suffix_.minor)
            return fail();
        suffix_.diminished = true;
        return true;
    }
    if (numbers_)
        return false;
    // A letter o or a nought is a ring as well.
    const bool isRing = !isThirdKnown() && (rest_[0] == u'o' || rest_[0] == u'0') &&
                        (rest_.size() == 1 || TextView(u"7M(/").find(rest_[1]) != TextView::npos);
    if (takeAny(kDiminishedWords) || (isRing && takeAny({u"o", u"0"}))) {
        suffix_.diminished = true;
        takeOwnSeventh();
        return true;
    }
    if (takeAny({u"\u00F8", u"halfdim", u"half-dim"})) {
        suffix_.halfDiminished = true;
        takeOwnSeventh();
        return true;
    }
    return false;
}

bool SuffixReader::takeSuspension() {
    if (!takeAny({u"sus", u"Sus", u"SUS"}))
        return false;
    if (suffix_.diminished || suffix_.halfDiminished)
        return fail();
    majorAhead_ = false;
    suspended_ = true;
    if (takeAny({u"2/4", u"4/2", u"24", u"42"}))
        return add(4, u' ') && add(9, u' ');
    if (takeAny({u"2", u"(2)"})) {
        suspendedSecond_ = true;
        return has(Degree::Ninth) ? fail() : add(9, u' ');
    }
    // A "sus9" is a sus2 to some, a ninth with a fourth to others.
    if (rest_.starts_with(u'9'))
        return fail();
    takeAny({u"4", u"(4)"});
    return add(4, u' ');
}

bool SuffixReader::takeOmitted() {
    if (!takeAny({u"no", u"omit"}))
        return false;
    takeAny({u" "});
    if (takeAny({u"3rd", u"3"})) {
        noThird_ = true;
        return true;
    }
    noFifth_ = takeAny({u"5th", u"5"});
    return noFifth_ || fail();
}

bool SuffixReader::takeAdded() {
    if (takeOmitted())
        return true;
    if (!takeAny({u"add", u"Add", u"ADD", u"ad", u"Ad"}))
        return false;
    takeAny({u" "});
    if (const auto note = readNoteName(rest_, {reading_.naming, false, false})) {
        rest_.remove_prefix(note->length);
        return rest_.empty() || rest_.starts_with(u')') ? addNote(*note) : fail();
    }
    // An added fourth leaves the third in its place: it is an eleventh.
    if (!suspended_ && takeAny({u"4"}))
        return add(11, u' ');
    if (rest_.starts_with(u'5'))
        return fail();
    const char16_t accidental = takeAny({u"b"}) ? u'b' : takeAny({u"#"}) ? u'#' : u' ';
    return takeNumber(accidental, Origin::Added) || fail();
}

// ---- Signs and basses ------------------------------------------------------------------------

bool SuffixReader::takeSign() {
    if (takeAny({u"("})) {
        ++open_;
        return rest_.starts_with(u')') ? fail() : true;
    }
    if (takeAny({u")"}))
        return --open_ >= 0 || fail();
    return open_ > 0 && takeAny({u",", u" "});
}

bool SuffixReader::bassDegree(int above) {
    suffix_.bass = NamedNote{0, (root_.steps + above) % 12, root_.spelling, false, false, false};
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
    const auto bass = readNoteName(rest_, reading_, NotePlace::Bass);
    if (bass && bass->length == rest_.size()) {
        suffix_.bass = bass;
        rest_ = {};
        return true;
    }
    behindSlash_ = true;
    const bool goesOn = digitAhead() || rest_.starts_with(u"maj") || rest_.starts_with(u"sus") ||
                        (!rest_.empty() && TextView(u"b#(+-aAM").find(rest_[0]) != TextView::npos);
    return goesOn || fail();
}

// ---- The whole -------------------------------------------------------------------------------

bool SuffixReader::takePart() {
    // "Cdom7" is C7.
    if (!numbers_ && !isThirdKnown() && rest_.starts_with(u"dom7"))
        rest_.remove_prefix(3);
    return takeMajor() || takeSuspension() || takeAdded() || takeSign() || takeSlash() ||
           takeDiminished() || (takeAny({u"aug", u"Aug", u"AUG"}) && add(5, u'#')) || takeMinor() ||
           takeAccidental() || takePlus() || takeMinus() || takeNumber(u' ');
}

// What the parts say together; false where they contradict each other.
bool SuffixReader::finish() {
    const bool isDim = suffix_.diminished || suffix_.halfDiminished;
    const char16_t fifth = suffix_.at(Degree::Fifth);
    if (open_ != 0 || (majorAhead_ && (suffix_.minor || isDim)))
        return false;
    if ((isDim && fifth != 0) || (suffix_.halfDiminished && suffix_.majorSeventh))
        return false;
    // The house says that there is no third by naming the fifth; it has no word for a chord
    // without its fifth, which then is played.
    noThird_ = noThird_ || (suspendedSecond_ && !has(Degree::Fourth));
    if ((noThird_ && ((fifth != 0 && fifth != u' ') || isDim || noFifth_)) ||
        (noFifth_ && fifth != 0))
        return false;
    if (noThird_) {
        if (suffix_.minor && !suspendedSecond_)
            return false;
        suffix_.minor = false;
        suffix_.at(Degree::Fifth) = u' ';
    }
    // "C9sus4" has the seventh that its ninth stands on, in any song.
    const bool isSuspendedNinth = suspended_ && has(Degree::Fourth);
    if (seventhBelow_ && !has(Degree::Sixth) && !isDim &&
        (reading_.ninthsHaveSevenths || isSuspendedNinth))
        suffix_.at(Degree::Seventh) = u' ';
    return true;
}

std::optional<ChordSuffix> SuffixReader::read() {
    while (!rest_.empty()) {
        if (!takePart() || failed_)
            return std::nullopt;
    }
    if (!finish())
        return std::nullopt;
    return suffix_;
}

}  // namespace

std::optional<ChordSuffix> readChordSuffix(TextView suffix, const NamedNote& root,
                                           const ChordReading& reading) {
    return SuffixReader(suffix, root, reading).read();
}

}  // namespace melvorin
