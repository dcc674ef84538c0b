// What a Rich Text document holds, read from its source: the words that it should show, and what
// else is in it that a control may leave out.
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "base/Text.h"

namespace melvorin {

struct RtfContents {
    struct Part {
        std::size_t begin = 0;  // in UTF-16 units of `text`
        std::size_t length = 0;
    };

    // The body as it should be read: CR behind paragraphs, table rows, pages and sections (the
    // paragraph's end at the very end of the document is none), U+000B for a line break, TAB for
    // \tab and behind the cells of a table. Without hidden text.
    Text text;
    // Bullets and numbers of lists, which are in `text` too. A control that makes them itself has
    // them on the screen, not in its text.
    std::vector<Part> labels;
    std::size_t pictures = 0;
    std::size_t tables = 0;  // rows without text between them are one table
    std::size_t tableRows = 0;
    std::size_t objects = 0;
    std::size_t links = 0;      // that lead out of the document
    std::size_t footnotes = 0;  // like the following, those with words in them
    std::size_t comments = 0;
    std::size_t textBoxes = 0;
    std::size_t headers = 0;  // and footers, of pages
    bool hidden = false;      // text that a writer hid, or deleted with the deletion on record
    bool textBehind = false;  // words or Rich Text behind the document's last brace
};

// Reads the bytes of a file (best as they lie there: some of what they hold is no longer in what
// checkRtf gives to load) or what a control wrote. Characters are read by the code pages of their
// fonts; what a code page or the machine lacks becomes a substitute. Whatever the bytes are, it
// ends, in linear time; of what is no Rich Text it gives nothing useful. From one thread.
RtfContents readRtf(std::string_view bytes);

}  // namespace melvorin
