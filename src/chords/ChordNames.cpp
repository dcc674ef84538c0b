#include "chords/ChordNames.h"

#include <algorithm>
#include <array>
#include <utility>

#include "chords/ChordRow.h"
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

SongChordNames::SongChordNames(TextView song, ChordNames names)
    : SongChordNames(song, importSong(song), names) {}

SongChordNames::SongChordNames(TextView song, const SongImport& read, ChordNames names)
    : names_(names), reading_(read.notation.reading) {
    if (names == ChordNames::International)
        findNinths(read);
    if (names != ChordNames::Nashville)
        return;
    key_ = findKey(song).first.value_or(Key());
    side_ = sideOf(song);
}

// "Em9" is E minor with a seventh where the names of the song say so.
void SongChordNames::findNinths(const SongImport& read) {
    NotationReader reader;
    for (const ImportedChord& chord : read.chords)
        reader.addRow(chord.isRead ? internationalName(chord.chord) : Text(chord.written));
    plainNinths_ = reader.result().reading.ninthsHaveSevenths;
}

std::optional<Text> SongChordNames::nameOfChord(TextView written) const {
    const auto house = written.empty() ? std::nullopt : houseSpelling(written, reading_);
    if (!house)
        return std::nullopt;
    return names_ == ChordNames::International ? internationalName(*house, plainNinths_)
                                               : chordByNames(*house, names_, key_, side_);
}

Text SongChordNames::operator()(TextView written) const {
    if (names_ == ChordNames::House)
        return Text(written);
    if (auto name = nameOfChord(written))
        return std::move(*name);
    Text text;
    std::size_t copied = 0;
    for (const RowItem& item : readRow(written, 0, 0, reading_)) {
        if (item.kind != RowItemKind::Chord)
            continue;
        // "(Am7", "G)"
        TextView chord = written.substr(item.index, item.length);
        std::size_t at = item.index;
        auto name = nameOfChord(chord);
        if (!name && chord.starts_with(u'(')) {
            chord.remove_prefix(1);
            ++at;
            name = nameOfChord(chord);
        }
        if (!name && chord.ends_with(u')')) {
            chord.remove_suffix(1);
            name = nameOfChord(chord);
        }
        if (!name)
            continue;
        text.append(written.substr(copied, at - copied)).append(*name);
        copied = at + chord.size();
    }
    return text.append(written.substr(copied));
}

bool namesComeBack(TextView song, TextView exported, ChordNames names) {
    if (names != ChordNames::German && names != ChordNames::Solfege)
        return true;
    const SongImport before = importSong(song);
    const SongImport after = importSong(exported);
    return std::equal(before.chords.begin(), before.chords.end(), after.chords.begin(),
                      after.chords.end(), [](const ImportedChord& x, const ImportedChord& y) {
                          return x.isRead == y.isRead && x.chord == y.chord;
                      });
}

}  // namespace melvorin
