// A song taken out of the document as plain text, worked on, and put back in its place: what has
// not changed keeps its formats, colours, diagrams and pictures.
#pragma once

#include "base/Editor.h"
#include "base/Text.h"
#include "chords/InsertChart.h"
#include "chords/SongDiagrams.h"

namespace melvorin {

struct TakenSong {
    Text text;  // lines end in CR, one character each of the document's but for tables
    SongDiagrams diagrams;
    Selection place;           // in the document
    bool isSelection = false;  // else it is the whole song
};

// The lines that the selection touches, or the whole song where it holds no writing. The text is
// empty where the song holds none either. The document, its selection and its view are what they
// were.
TakenSong takeSong(Editor& editor);

// Puts a chart in the place of the song, which has not changed since it was taken. `chart.lines`
// say by their numbers which lines of `chart.source` they came from, and that is the taken text,
// corrected or not. Lines that are the same stay byte for byte. In others what stays keeps its
// formats, and what is new takes those beside it; lines of chords that a key change moves take the
// colour of these. Lines of tables stay as they are. The document is loaded once where its Rich
// Text can be mapped exactly to its text, else it is edited piece by piece. False where nothing has
// changed. Throws std::runtime_error, or want of memory, with the document half changed.
bool putInPlace(Editor& editor, const TakenSong& song, const CreatedChart& chart);

}  // namespace melvorin
