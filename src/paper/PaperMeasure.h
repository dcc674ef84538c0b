// The lines of a song measured: every word and every diagram with its place in its line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <set>
#include <utility>
#include <vector>

#include "paper/PaperFont.h"
#include "paper/PaperSong.h"

namespace melvorin {

// A run of characters without blanks in one font and look, or a single diagram. Lengths in points,
// at the sizes of the document.
struct PaperWord {
    Text text;
    double x = 0;  // from the line's left end
    double width = 0;
    double size = 0;
    FontNumber font = 0;
    std::uint16_t look = 0;
    std::size_t index = 0;  // of its first UTF-16 unit in the line
    bool isJoined = false;  // it touches the word before it
    bool isDiagram = false;

    double end() const { return x + width; }
};

struct MeasuredLine {
    std::vector<PaperWord> words = {};  // from left to right
    double width = 0;                   // on the screen; bold chords may reach farther
    double ascent = 0;
    double descent = 0;
    PaperLineKind kind = PaperLineKind::Blank;
    Alignment alignment = Alignment::Left;
    std::size_t number = 0;  // in PaperSong::lines

    double height() const { return ascent + descent; }
};

struct MeasuredSong {
    std::vector<MeasuredLine> lines;
    double points = 10;      // the size that most of the text has
    std::uint16_t look = 0;  // that most of the text has
    // Characters that no font has, or whose script is not written here, and their lines.
    std::set<std::pair<char32_t, std::size_t>> unwritable;
};

// Characters that cannot be written are measured, and written, as a sign that stands for them. With
// `boldChords` lines of chords are in bold, where that moves none of them.
MeasuredSong measureSong(const PaperSong& song, PaperFonts& fonts, bool boldChords);

// The words of a text in one font, the first of them at 0.
std::vector<PaperWord> measureText(TextView text, const WantedFont& font, double size,
                                   PaperFonts& fonts);

// Cuts a word in front of the first character that ends behind `limit`, but takes at least one
// character away. Nothing where it has only one. The word becomes its first part.
std::optional<PaperWord> cutWord(PaperWord& word, double limit, const PaperFonts& fonts);

}  // namespace melvorin
