// A document in colours for a black background, and the way back to its own.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "base/Editor.h"

namespace melvorin {

class DarkColours {
  public:
    static constexpr Rgb kBackground{0, 0, 0};
    // Of text without a colour of its own.
    static constexpr Rgb kText{235, 235, 235};
    // Of every letter to what is behind it.
    static constexpr double kContrast = 4.5;
    // To the background, of the letters of a song that has marked words: what is left between the
    // two is for the marks.
    static constexpr double kBesideMarks = 7;

    // The same document in light colours, with dark ones behind marked words: only its colour table
    // and the words that name what is in it. `rtf` is one that checkRtf accepts.
    std::string darkened(std::string_view rtf);
    // A document in the colours of darkened(), whatever was written into it since, in its own
    // again. Colours that have come since stay as they are.
    std::string restored(std::string_view rtf) const;

    // What stands for the colour of letters: the same one each time, and for no two the same.
    Rgb lightOf(Rgb colour) { return lightOf(colour, light_, kContrast); }
    // The colour that this one stands for; itself where it stands for none.
    Rgb ownOf(Rgb colour) const;

  private:
    using StandIns = std::map<std::uint32_t, Rgb>;  // by the colours of the document

    Rgb lightOf(Rgb colour, StandIns& known, double least);
    Rgb markOf(Rgb colour);
    template <typename Allowed>
    Rgb standIn(Rgb colour, Rgb wanted, StandIns& known, const Allowed& allowed);

    StandIns light_;
    StandIns besideMarks_;
    StandIns marks_;
    std::map<std::uint32_t, Rgb> own_;  // by those that stand for them
};

}  // namespace melvorin
