// A song and the key that it is to come to: how far it is, what the song will be, and what there is
// to say about its key.
//
// Nothing here throws but for want of memory; the work is in proportion to the length of the song.
#pragma once

#include <optional>
#include <span>

#include "base/Text.h"
#include "chords/CapoLine.h"
#include "chords/LeftOver.h"
#include "chords/SongKey.h"
#include "chords/Transpose.h"

namespace melvorin {

// Half steps from one tonic to the other by the nearer way, -5 to 6.
int nearestSteps(int fromTonic, int toTonic);

// How a key change goes about it.
struct KeyWay {
    FoundKey found;                    // the key of the song as it is
    Spelling side = Spelling::Sharps;  // of F# and Gb
    std::optional<Spelling> table;     // nothing: accidentals follow the key
    bool movesOthers = false;          // what a key change leaves over goes along
};

// The accidentals of what is moved by a table: those chosen, else as the signature of the new key
// has them.
Spelling spellingOf(const KeyWay& way, int steps);

// What a key change by `steps` half steps, -11 to 11, makes of a song in plain text. `left` is what
// it leaves over, found in this song.
Text movedSong(TextView song, const KeyWay& way, int steps, const LeftOver& left);

// The first lines of a text, without the end of the last one.
Text firstLines(TextView text, std::size_t count);

// The song with these edits, which are in the order of their positions.
Text withEdits(TextView song, std::span<const SongEdit> edits);

// "G", "G or Em?", "G, capo 3, sounds Bb"; empty without a key. Where the key is not sure it does
// not say what it sounds in.
Text keyAndCapo(const FoundKey& found, Spelling side, std::optional<int> capo);

// The name of the key that `key` sounds in with a capo.
Text soundingName(Key key, int capo, Spelling side);

}  // namespace melvorin
