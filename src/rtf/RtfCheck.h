// Whether a control can be given a document, judged from its bytes.
//
// The rich-edit control reads some damaged documents as an empty or shortened text and reports
// success, and with others it goes down and takes the program along. So nothing reaches it that
// was not found sound here first.
#pragma once

#include <string>
#include <string_view>

#include "base/Text.h"
#include "rtf/RtfLimits.h"

namespace melvorin {

struct RtfVerdict {
    enum class Kind {
        Ok,
        NotRtf,     // does not begin with {\rtf
        Truncated,  // ends before its last group is closed
        TooDeep,    // more than kMaxRtfDepth levels
        Malformed   // some part would empty, shorten or crash a control
    };

    Kind kind = Kind::Ok;
    // For the user, a whole sentence; empty when Ok.
    Text sentence;
    // What to load when Ok: the document from its first to its last brace, without byte-order
    // mark and blanks before and blanks and NULs after it. Some things are written differently,
    // with the same meaning, because not every control reads them: raw binary data becomes
    // hexadecimal, blanks between the entries of the font table and the style sheet go, a missing
    // stand-in character between \uN and a brace is added, and an unknown word behind an object;
    // a character set that there is not becomes the machine's own, and a distance beyond 22 inches
    // or a tab stop left of the text the nearest one that can be (without a number, 0). Fields,
    // objects and more become what they show (unfoldRtf), chord diagrams in symbol fonts the
    // characters they mean (withPlainDiagrams), and bytes in code pages that a control may not know
    // Unicode (withSureCharacters).
    std::string document;
    // Behind the document's last brace is more than blanks, NULs and braces, which no program
    // shows.
    bool textBehind = false;
};

// Checks a whole document. Linear in its size; never throws for what the bytes hold.
//
// Accepted are a UTF-8 byte-order mark and white space before the document, and anything behind it.
// Malformed are: \' without two hexadecimal digits and
// NULs (outside raw data); overlong words and names; \u without a number; \uc outside 0 to 16;
// unknown code pages; a font table, colour table or style sheet that is not built as such or comes
// behind text; \* or the word of any other part of its own (\header, \pict, \fldrslt...) in the
// middle of a group; tables with nested tables, unfinished rows, or more cells than their rows
// define.
RtfVerdict checkRtf(std::string_view bytes);

}  // namespace melvorin
