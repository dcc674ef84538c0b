// What a file holds, judged from its bytes, before a control is given them.
//
// The rich-edit control reads some damaged documents as an empty or shortened text and reports
// success, and with others it goes down and takes the program along. So nothing reaches it that
// was not found sound here first.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "base/Text.h"

namespace melvorin {

// Groups inside groups, the document's own included. Of the controls we run on, the one with the
// smallest stack reads 32 levels, whatever the groups hold, and crashes at 33. Word processors
// stay far below.
inline constexpr std::size_t kMaxRtfDepth = 30;
// Letters and digits of a control word. A control crashes somewhat above 1,030; Rich Text itself
// allows 32 letters.
inline constexpr std::size_t kMaxRtfWordLength = 250;
// Bytes of a name in the font table or the style sheet; crashes above 1,040.
inline constexpr std::size_t kMaxRtfNameLength = 250;

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

// True when the bytes begin with {\rtf, after an optional UTF-8 byte-order mark and white space.
bool looksLikeRtf(std::string_view bytes);

// True when a file that claims to be text holds something else. Text in UTF-16 with a byte-order
// mark is text unless it holds U+0000. Otherwise a NUL is a sure sign; and so are more control
// characters than 3 plus 1 in 100 bytes, where TAB, LF, VT, FF, CR, ESC and the old end-of-file
// mark 0x1A do not count: compressed data has about ten in 100.
bool looksBinary(std::string_view bytes);

}  // namespace melvorin
