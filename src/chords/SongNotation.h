// What the chord symbols of one song mean, where a symbol by itself leaves it open: a song tells by
// the signs it uses elsewhere. Nothing is taken for granted without a sign.
#pragma once

#include <cstddef>

#include "base/Text.h"
#include "chords/NoteNames.h"

namespace melvorin {

// What the user says about it; Auto leaves it to the song.
enum class PlainB { Auto, IsFlat, IsNatural };
enum class PlainNinth { Auto, HasSeventh, IsAdded };

struct SongNotation {
    ChordReading reading;
    // The song writes H, "Fis" or "Es", so that the user may want to say what its B is.
    bool hasGermanNames = false;
    // It writes "Bb" too beside B and these names: B is read as a flat one, but may be neither.
    bool isOpen = false;
    // How it writes accidentals; None where its names are letters.
    GermanSigns signs = GermanSigns::None;
    // Other than None where it writes syllables, all through or not at all.
    Solfege solfege = Solfege::None;
    // It has a plain "C9", "C11" or "C13", so that the user may want to say what that is.
    bool hasPlainNinths = false;

    friend bool operator==(const SongNotation&, const SongNotation&) = default;
};

// Gathers the signs of a song from its lines, in any order. A line costs little more than a look
// where it has none.
class NotationReader {
  public:
    // A line of chords, or what stands behind a label, with bars and remarks.
    void addRow(TextView row);
    // Words with chords in brackets.
    void addBrackets(TextView line);
    // A line that was read as words: it counts only where it is chords once small letters are minor
    // ones, or syllables are notes.
    void addWords(TextView line);

    // The song says so itself: German names or syllables, whatever its signs.
    void state(Naming naming) { stated_ = naming; }

    // German naming where a chord has a name of it. Small letters are minor chords where they stand
    // beside capital ones, in two rows at least or in one of three chords, and no capital chord is
    // a minor one. A plain ninth has its seventh where the song writes "add", "maj7", "sus",
    // "m7b5", "aug" and "69" more often than "7+", "7M" and a 4. Syllables where more lines are
    // made of them than of letters; words like "La" and "Mi" side by side are no such line.
    SongNotation result(PlainB b = PlainB::Auto, PlainNinth ninth = PlainNinth::Auto) const;
    // True where some line is syllables if it stands in a song of such.
    bool maySyllables() const { return hasSyllables_; }

  private:
    void addChord(TextView written);
    void addSuffix(TextView suffix);
    void addSmall(TextView row);
    void addSyllables(TextView text, bool inBrackets);
    void addItems(TextView line, const ChordReading& reading);

    Naming stated_ = Naming::Letters;
    std::size_t americanSigns_ = 0;
    std::size_t houseSigns_ = 0;
    std::size_t mixedRows_ = 0;      // of small and capital chords
    std::size_t longMixedRows_ = 0;  // the same, of three or more
    std::size_t smallBrackets_ = 0;
    std::size_t capitalBrackets_ = 0;
    std::size_t letterRows_ = 0;
    std::size_t syllableRows_ = 0;
    std::size_t syllableBrackets_ = 0;
    bool hasSyllables_ = false;  // also such that are words
    bool hasAccents_ = false;
    bool hasPortugueseAccents_ = false;
    bool hasCapitalMinors_ = false;
    bool hasGermanNames_ = false;
    bool hasEndings_ = false;
    bool hasSmallGerman_ = false;  // "h", "fis"
    bool hasSmallEndings_ = false;
    bool hasPlainB_ = false;
    bool hasFlatB_ = false;
    bool hasPlainNinths_ = false;
};

// True where every run of the line may be a chord by its first letter and length, some of them a
// small one: what is worth being read as such.
bool mayBeSmallRow(TextView line);
// The same for syllables.
bool mayBeSyllableRow(TextView line);

}  // namespace melvorin
