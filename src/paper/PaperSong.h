// A song as it goes to paper: its lines with what each of them is, its formats, its title and key.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "base/Editor.h"
#include "base/Text.h"

namespace melvorin {

struct PaperLook {
    Text face;
    double points = 10;
    bool bold = false;
    bool italic = false;
    bool underline = false;
    std::optional<Rgb> colour = {};  // nothing: the text's own
    bool isDiagram = false;

    friend bool operator==(const PaperLook&, const PaperLook&) = default;
};

enum class PaperLineKind { Blank, Chords, Words, Label, Tablature };

struct PaperLine {
    Text text = {};                         // without its end and blanks before that
    std::vector<std::uint16_t> looks = {};  // of each UTF-16 unit, numbers in PaperSong::looks
    std::uint16_t endLook = 0;              // of the line's end
    PaperLineKind kind = PaperLineKind::Words;
    Alignment alignment = Alignment::Left;
};

struct PaperSong {
    Text title;  // never empty but where `name` was
    Text key;    // "G", "F#m"; empty where it is not sure
    Text capo;   // "3", as the song says it; empty without one
    // The title is line 0 as it stands there, and nothing else is said in that line.
    bool titleIsFirstLine = false;
    // Of chords that have no colour of their own; nothing: the text's.
    std::optional<Rgb> chordColour;
    std::vector<PaperLook> looks;
    std::vector<PaperLine> lines;
    // Its chords in the house's spelling, each once, in the order of their first use.
    std::vector<Text> chords;
};

// A song in plain text: a chart as it stands. What is a ChordPro song (it has a directive that
// ChordPro knows) is imported first. `look` is that of the text, `name` the title where the song
// has none of its own.
PaperSong paperSong(TextView text, const PaperLook& look, TextView name);

// A Rich Text document that checkRtf accepts; `rtf` is RtfVerdict::document. What a map cannot
// explain (tables) is taken as plain text in the formats of its beginning.
PaperSong paperSongOfRtf(std::string_view rtf, const PaperLook& look, TextView name);

}  // namespace melvorin
