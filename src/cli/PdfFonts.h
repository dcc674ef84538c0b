// The fonts that a PDF is written with: those that the user names, and those of the machine that
// the songs ask for.
#pragma once

#include <set>
#include <vector>

#include "cli/Cli.h"
#include "paper/FontShelf.h"
#include "paper/PaperSong.h"

namespace melvorin {

class PdfFonts {
  public:
    PdfFonts(Files& files, CliPorts& ports) : files_(files), ports_(ports) {}

    // A file of the user's. Fails with a sentence.
    Result<Done> add(const Text& path);
    // The usual font of charts; false where the machine has none and the user named none either.
    bool addUsual();
    // Those of a song's faces and characters that can be found.
    void addFor(const PaperSong& song);
    void addDiagrams(TextView face);

    FontShelf& shelf() { return shelf_; }

  private:
    bool addFace(TextView face);
    bool addFile(const Text& path);

    Files& files_;
    CliPorts& ports_;
    FontShelf shelf_;
    std::set<Text> tried_;  // faces
    bool hasWide_ = false;
};

}  // namespace melvorin
