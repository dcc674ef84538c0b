#include "chords/CapoChoice.h"

#include <algorithm>
#include <array>
#include <tuple>
#include <unordered_set>

#include "chords/Note.h"
#include "chords/SongImport.h"
#include "chords/Transpose.h"

namespace melvorin {
namespace {

constexpr std::size_t kStrings = 6;

// A chord so many half steps higher, by names that the chord book has; its bass has one of two.
Text movedChord(TextView chord, int steps, Spelling bass) {
    Text moved;
    std::size_t copied = 0;
    for (const ColumnRange& note : noteColumns(chord)) {
        const TextView name = chord.substr(note.column, note.length);
        moved.append(chord.substr(copied, note.column - copied))
            .append(noteName(halfSteps(name) + steps, copied == 0 ? Spelling::Sharps : bass));
        copied = note.column + note.length;
    }
    return moved.append(chord.substr(copied));
}

std::optional<Grip> gripOrWithoutBass(const ChordGrips& grips, TextView written, int steps) {
    const Text chord = movedChord(written, steps, Spelling::Sharps);
    for (const Text& name : {chord, movedChord(written, steps, Spelling::Flats)}) {
        if (const auto grip = grips.gripOf(name))
            return grip;
    }
    const std::size_t slash = chord.rfind(u'/');
    const bool hasBass =
        slash != TextView::npos && slash + 1 < chord.size() && isNoteLetter(chord[slash + 1]);
    return hasBass ? grips.gripOf(TextView(chord).substr(0, slash)) : std::nullopt;
}

void countGrips(CapoChoice& choice, std::span<const Text> chords, int steps,
                const ChordGrips& grips) {
    for (const Text& chord : chords) {
        const auto grip = gripOrWithoutBass(grips, chord, steps);
        ++(!grip                  ? choice.unknown
           : *grip == Grip::Open  ? choice.open
           : *grip == Grip::Barre ? choice.barres
                                  : choice.closed);
    }
}

}  // namespace

std::vector<Text> fretsIn(TextView frets) {
    std::vector<Text> found;
    const bool isParted = frets.find(u'-') != TextView::npos;
    bool isNew = true;
    for (const char16_t c : frets) {
        if (c == u'-') {
            isNew = true;
            continue;
        }
        if (isNew || !isParted)
            found.emplace_back();
        found.back() += c;
        isNew = false;
    }
    return found;
}

std::optional<Grip> gripOf(TextView frets, TextView fingers) {
    const std::vector<Text> strings = fretsIn(frets);
    if (strings.size() != kStrings || fingers.size() != kStrings)
        return std::nullopt;
    for (const char16_t finger : {u'1', u'2', u'3', u'4'}) {
        if (std::count(fingers.begin(), fingers.end(), finger) > 1)
            return Grip::Barre;
    }
    const bool rings = std::find(strings.begin(), strings.end(), u"0") != strings.end();
    return rings ? Grip::Open : Grip::Closed;
}

std::vector<Text> chordsOfSong(TextView song) {
    std::vector<Text> chords;
    std::unordered_set<Text> known;
    const SongImport imported = importSong(song);
    for (const ImportedChord& chord : imported.chords) {
        if (chord.isRead && known.insert(chord.chord).second)
            chords.push_back(chord.chord);
    }
    return chords;
}

std::vector<CapoChoice> capoChoices(std::span<const Text> chords, Key written, int capo,
                                    const ChordGrips* grips) {
    std::vector<CapoChoice> choices;
    choices.reserve(kHighestCapo + 1);
    for (int fret = 0; fret <= kHighestCapo; ++fret) {
        CapoChoice& choice = choices.emplace_back();
        choice.fret = fret;
        choice.shapes = movedKey(written, capo - fret);
        if (grips != nullptr)
            countGrips(choice, chords, capo - fret, *grips);
    }
    const auto effort = [](const CapoChoice& choice) {
        return std::tuple(choice.barres, choice.closed + choice.unknown, choice.fret);
    };
    std::sort(choices.begin(), choices.end(),
              [&](const CapoChoice& a, const CapoChoice& b) { return effort(a) < effort(b); });
    return choices;
}

}  // namespace melvorin
