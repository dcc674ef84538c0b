// The chord-diagram fonts beside the program. They are this process's alone: nothing is installed.
#pragma once

#include <vector>

#include "app/Text.h"

namespace melvorin {

inline constexpr std::size_t kDiagramFontCount = 34;

class DiagramFonts {
  public:
    DiagramFonts() = default;
    DiagramFonts(const DiagramFonts&) = delete;
    DiagramFonts& operator=(const DiagramFonts&) = delete;
    ~DiagramFonts();

    // Makes the fonts in `Fonts` below the program folder known, those of an earlier call aside.
    // Returns how many font files were taken.
    std::size_t load(TextView programFolder);

  private:
    std::vector<Text> files_;
};

}  // namespace melvorin
