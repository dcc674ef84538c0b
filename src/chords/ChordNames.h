// Chords called otherwise than in the house's spelling, for readers who know them so.
#pragma once

#include <optional>

#include "base/Text.h"
#include "chords/NoteNames.h"
#include "chords/SongKey.h"

namespace melvorin {

// Nashville: numbers of the scale, of a minor key by its relative major (Am in A minor is 6m). What
// would run into the number stands in parentheses: "5(7)", "7m(5b/7)", "b7", "1/3".
// International: the suffixes as other programs and books have them (`InternationalName.h`).
// German: H for B, B for Bb, "Fis", "Es". Solfege: Do, Re, Mi, Fa, Sol, La, Si with # and b.
enum class ChordNames { House, International, Nashville, German, Solfege };

// A chord in the house's spelling, by other names; its suffix stays. German and Solfege names can
// be read back to the same chord. `key` counts for Nashville alone, `side` is on which side of F#
// and Gb it stands. A text without a root stays as it is. Throws only for want of memory.
Text chordByNames(TextView chord, ChordNames names, Key key = {}, Spelling side = Spelling::Sharps);

struct SongImport;

// What the chords of a song are called in an export: those that can be read, as `chordByNames` has
// them, and all other texts as they are. Made for one song, by its key. International ninths are
// such that the song reads them as what they are: "Em9" where it has signs of that notation, else
// "Em7(9)".
class SongChordNames {
  public:
    SongChordNames(TextView song, ChordNames names);
    // The same for a song that has been read.
    SongChordNames(TextView song, const SongImport& read, ChordNames names);

    // A chord, or all that a line of chords has between two blanks: bars and marks stay.
    Text operator()(TextView written) const;
    ChordNames names() const { return names_; }
    const ChordReading& reading() const { return reading_; }

  private:
    std::optional<Text> nameOfChord(TextView written) const;
    void findNinths(const SongImport& read);

    ChordNames names_;
    ChordReading reading_;  // what the symbols of the song mean
    Key key_;
    Spelling side_ = Spelling::Sharps;
    bool plainNinths_ = true;
};

// Whether an import reads the chords of `exported` as those of `song`: German and solfege names
// cannot be told from letters in some songs. Always true for names that are not to be read back.
bool namesComeBack(TextView song, TextView exported, ChordNames names);

}  // namespace melvorin
