#include "chords/InternationalName.h"

#include <utility>

#include "chords/ChordSuffix.h"
#include "chords/Note.h"

namespace melvorin {
namespace {

class Writer {
  public:
    Writer(TextView root, const ChordSuffix& suffix, bool plainNinths)
        : name_(root), suffix_(suffix), plainNinths_(plainNinths) {}

    Text write();

  private:
    bool has(Degree degree, char16_t accidental = u' ') const {
        return suffix_.at(degree) == accidental;
    }
    void drop(Degree degree) { suffix_.at(degree) = 0; }
    void findThird();
    void putTriad();
    void putNumber();
    void putSuspension();
    void putAltered(TextView number, Degree degree);
    void raise(Degree low, Degree high);
    void putAdded(TextView number, Degree degree);

    Text name_;
    ChordSuffix suffix_;
    bool plainNinths_;
    TextView suspension_;
    bool noThird_ = false;
    bool isNinthApart_ = false;  // "7(9)"
};

// What stands in the place of the third.
void Writer::findThird() {
    if (suffix_.minor || suffix_.diminished || suffix_.halfDiminished) {
        if (has(Degree::Fifth))
            drop(Degree::Fifth);
        return;
    }
    if (has(Degree::Fourth)) {
        suspension_ = u"sus4";
        drop(Degree::Fourth);
        if (has(Degree::Eleventh))
            drop(Degree::Eleventh);
        if (has(Degree::Fifth))
            drop(Degree::Fifth);
    } else if (has(Degree::Fifth)) {
        noThird_ = !has(Degree::Ninth);
        if (!noThird_) {
            suspension_ = u"sus2";
            drop(Degree::Ninth);
        }
        drop(Degree::Fifth);
    }
}

void Writer::putTriad() {
    const bool isHalf = suffix_.halfDiminished;
    if (isHalf) {
        suffix_.at(Degree::Fifth) = u'b';
        suffix_.at(Degree::Seventh) = u' ';
    }
    if (suffix_.diminished) {
        name_ += u"dim";
        // The house's has its seventh.
        if (!suffix_.majorSeventh)
            suffix_.at(Degree::Seventh) = u' ';
    } else if (suffix_.minor || isHalf) {
        name_ += u"m";
    }
}

// The seventh, or the highest of the thirds on top of it; a sixth.
void Writer::putNumber() {
    const bool isMajor = std::exchange(suffix_.majorSeventh, false);
    if (isMajor || has(Degree::Seventh)) {
        drop(Degree::Seventh);
        TextView number = u"7";
        isNinthApart_ = !isMajor && !plainNinths_;
        if (has(Degree::Ninth) && suspension_ != u"sus2" && !suffix_.diminished && !isNinthApart_) {
            number = u"9";
            drop(Degree::Ninth);
        }
        const bool hasThird = suffix_.minor || suffix_.diminished;
        name_.append(isMajor ? hasThird ? u"(maj" : u"maj" : u"")
            .append(number)
            .append(isMajor && hasThird ? u")" : u"");
    } else if (has(Degree::Sixth)) {
        drop(Degree::Sixth);
        name_ += u"6";
        if (has(Degree::Ninth)) {
            name_ += u"9";
            drop(Degree::Ninth);
        }
    }
}

void Writer::putSuspension() {
    if (!noThird_) {
        name_ += suspension_;
        return;
    }
    const bool isPower = name_.back() != u'7' && name_.back() != u'6' && name_.back() != u'9';
    name_ += isPower ? u"5" : u"(no3)";
}

// Directly behind a letter the accidental would be the root's.
void Writer::putAltered(TextView number, Degree degree) {
    const char16_t accidental = std::exchange(suffix_.at(degree), u'\0');
    if (accidental == 0)
        return;
    const auto put = [&](char16_t sign) {
        const bool isApart = name_.back() < u'0' || name_.back() > u'9' || !suspension_.empty();
        name_.append(isApart ? u"(" : u"")
            .append(1, sign)
            .append(number)
            .append(isApart ? u")" : u"");
    };
    if (accidental != kBothAccidentals)
        return put(accidental);
    put(u'b');
    put(u'#');
}

void Writer::raise(Degree low, Degree high) {
    if (!has(low))
        return;
    if (suffix_.at(high) != 0 && !has(high))
        return;  // it is altered there
    drop(low);
    suffix_.at(high) = u' ';
}

void Writer::putAdded(TextView number, Degree degree) {
    if (!has(degree))
        return;
    drop(degree);
    const bool isPlain = name_.back() != u')' && (name_.back() < u'0' || name_.back() > u'9');
    const bool isNinth = isNinthApart_ && degree == Degree::Ninth;
    name_.append(isPlain   ? u"add"
                 : isNinth ? u"("
                           : u"(add")
        .append(number)
        .append(isPlain ? u"" : u")");
}

Text Writer::write() {
    const bool isAugmented = !suffix_.minor && !suffix_.majorSeventh && has(Degree::Fifth, u'#') &&
                             !has(Degree::Seventh) && !has(Degree::Sixth) && !has(Degree::Fourth);
    findThird();
    putTriad();
    if (isAugmented) {
        name_ += u"aug";
        drop(Degree::Fifth);
    }
    putNumber();
    putSuspension();
    // What is left of these is the same note an octave up.
    raise(Degree::Fourth, Degree::Eleventh);
    raise(Degree::Sixth, Degree::Thirteenth);
    putAdded(u"4", Degree::Fourth);
    for (const auto& [number, degree] :
         {std::pair(TextView(u"5"), Degree::Fifth), std::pair(TextView(u"6"), Degree::Sixth),
          std::pair(TextView(u"9"), Degree::Ninth), std::pair(TextView(u"11"), Degree::Eleventh),
          std::pair(TextView(u"13"), Degree::Thirteenth)}) {
        if (has(degree))
            putAdded(number, degree);
        else
            putAltered(number, degree);
    }
    if (suffix_.bass)
        name_.append(u"/").append(noteName(suffix_.bass->steps, suffix_.bass->spelling));
    return std::move(name_);
}

}  // namespace

Text internationalName(TextView chord, bool plainNinths) {
    const bool isOpen = chord.starts_with(u'(');
    TextView inside = chord.substr(isOpen ? 1 : 0);
    const bool isClosed = inside.ends_with(u')') && inside.find(u'(') == TextView::npos;
    inside.remove_suffix(isClosed ? 1 : 0);
    const ChordReading house;
    const auto root = readNoteName(inside, house);
    const auto suffix =
        root ? readChordSuffix(inside.substr(root->length), *root, house) : std::nullopt;
    if (!suffix)
        return Text(chord);
    return Text(isOpen ? u"(" : u"")
        .append(Writer(inside.substr(0, root->length), *suffix, plainNinths).write())
        .append(isClosed ? u")" : u"");
}

}  // namespace melvorin
