// Pages as a PDF file.
#pragma once

#include <string>

#include "base/Files.h"
#include "paper/FontShelf.h"
#include "paper/PaperDocument.h"

namespace melvorin {

// The bytes of the file, the same for the same pages and fonts. What is used of the fonts is in
// it, and each run is a text of its own at its place. `fonts` is what the pages were laid out with.
// Fails with a sentence.
Result<std::string> writePdf(const PaperDocument& document, const FontShelf& fonts);

}  // namespace melvorin
