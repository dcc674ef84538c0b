#include "chords/ChordNames.h"

#include <array>

#include "chords/ChordSpelling.h"
#include "chords/InternationalName.h"
#include "chords/KeySpelling.h"
#include "chords/Note.h"
#include "chords/NoteNames.h"
#include "chords/SongImport.h"
#include "chords/Transpose.h"

namespace melvorin {
namespace {

// The place of a written note on the line of fifths: F -1, C 0, F# 6, Bb -2.
int writtenFifths(TextView note) {
    constexpr std::array<int, 7> naturals{3, 5, 0, 2, 4, -1, 1};
    int fifths = naturals[letterIndex(note[0])];
    for (const char16_t accidental : note.substr(1))
        fifths += 7 * halfSteps(accidental);
    return fifths;
}

// "4", "b7": a note by its number in the major key with the signature of `key`.
Text numberOf(TextView note, Key key, Spelling side) {
    constexpr int flattest = -6;
    constexpr int sharpest = 8;
    constexpr std::array<char16_t, 7> numbers{u'4', u'1', u'5', u'2', u'6', u'3', u'7'};
    int place = writtenFifths(note) - fifthsOf(key, side) + (key.minor ? 3 : 0);
    // A name from the other side, as B for Cb in Gb.
    place += place < flattest ? 12 : place > sharpest ? -12 : 0;
    const int fromFourth = place + 1;
    Text number;
    if (fromFourth < 0)
        number = u'b';
    else if (fromFourth >= 7)
        number = u'#';
    return number + numbers[static_cast<std::size_t>((fromFourth % 7 + 7) % 7)];
}

Text nameOf(TextView note, ChordNames names, Key key, Spelling side) {
    switch (names) {
        case ChordNames::German:
            return germanName(note, GermanSigns::Endings);
        case ChordNames::Solfege:
            return solfegeName(note, melvorin::Solfege::Plain, false);
        case ChordNames::Nashville:
            return numberOf(note, key, side);
        case ChordNames::House:
        case ChordNames::International:
            break;
    }
    return Text(note);
}

// Behind a number a figure or an accidental would be read with it, and a slash as the one of a
// bass.
Text besideNumber(TextView suffix) {
    const bool isMinor = suffix.starts_with(u'm');
    const TextView rest = suffix.substr(isMinor ? 1 : 0);
    const bool runsInto =
        !isMinor && !rest.empty() && TextView(u"0123456789#b").find(rest[0]) != TextView::npos;
    if (!runsInto && rest.find(u'/') == TextView::npos)
        return Text(suffix);
    return Text(isMinor ? u"m(" : u"(").append(rest).append(u")");
}

}  // namespace

Text chordByNames(TextView chord, ChordNames names, Key key, Spelling side) {
    const std::size_t root = noteLength(chord);
    if (root == 0 || names == ChordNames::House)
        return Text(chord);
    if (names == ChordNames::International)
        return internationalName(chord);
    const std::size_t slash = chord.rfind(u'/');
    const bool hasBass =
        slash != TextView::npos && noteLength(chord.substr(slash + 1)) == chord.size() - slash - 1;
    const TextView suffix = chord.substr(root, hasBass ? slash - root : TextView::npos);
    Text name = nameOf(chord.substr(0, root), names, key, side);
    name += names == ChordNames::Nashville ? besideNumber(suffix) : Text(suffix);
    if (hasBass)
        name.append(u"/").append(nameOf(chord.substr(slash + 1), names, key, side));
    return name;
}

SongChordNames::SongChordNames(TextView song, ChordNames names) : names_(names) {
    if (names != ChordNames::House)
        reading_ = importSong(song).notation.reading;
    if (names != ChordNames::Nashville)
        return;
    key_ = findKey(song).first.value_or(Key());
    side_ = sideOf(song);
}

Text SongChordNames::operator()(TextView written) const {
    if (names_ == ChordNames::House)
        return Text(written);
    const auto house = houseSpelling(written, reading_);
    return house ? chordByNames(*house, names_, key_, side_) : Text(written);
}

}  // namespace melvorin
