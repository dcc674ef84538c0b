// The chord-diagram fonts beside the program. They are this process's alone: nothing is installed.
#pragma once

#include <vector>

#include "base/DiagramFont.h"
#include "base/Text.h"

namespace melvorin {

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
