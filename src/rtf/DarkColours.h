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
    // Of every other colour to the background; it is lightened until then.
    static constexpr double kContrast = 4.5;

    // The same document in light colours: only its colour table, and which colour text without one
    // has. `rtf` is one that checkRtf accepts.
    std::string darkened(std::string_view rtf);
    // A document in the colours of darkened(), whatever was written into it since, in its own
    // again. Colours that have come since stay as they are.
    std::string restored(std::string_view rtf) const;

    // What stands for a colour: the same one each time, and for no two the same.
    Rgb lightOf(Rgb colour);

  private:
    std::map<std::uint32_t, Rgb> light_;  // by the colours of the document
    std::map<std::uint32_t, Rgb> own_;    // by those that stand for them
};

}  // namespace melvorin
