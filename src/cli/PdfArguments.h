// The command line of `melvorin-cli pdf`.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "base/Files.h"
#include "cli/NamedEncoding.h"
#include "paper/PageMaker.h"

namespace melvorin {

struct PdfRequest {
    bool help = false;
    PageSetup setup;
    bool sortsByTitle = false;
    std::vector<Text> fonts;  // paths of files, the first for what has no face of its own
    Text output;
    Text title;
    Text author;
    std::optional<NamedEncoding> encoding;
    std::vector<Text> songs;
};

inline constexpr std::string_view kPdfHelp =
    "melvorin-cli pdf - songs as a PDF, every chord over its syllable\n"
    "\n"
    "  melvorin-cli pdf [OPTIONS] -o FILE SONG...\n"
    "\n"
    "SONG is plain text, Rich Text or ChordPro. Several songs make a book: a table of\n"
    "contents with links, each song from a new page, page numbers at the foot.\n"
    "  -o FILE, --output FILE  the PDF\n"
    "  --paper A4|letter       A4 without it\n"
    "  --columns N             1 to 4; 1 without it\n"
    "  --fit                   the size, from 14 to 9 points, at which a song is on one\n"
    "                          page, else on two, in one column or in two\n"
    "  --black                 no colours, and chords bold\n"
    "  --diagrams              diagrams of its chords at the head of each song\n"
    "  --font FILE             a TrueType font to write with; more than once for its bold\n"
    "                          face and for other faces that a song names\n"
    "  --sort title            songs by their titles, else in the order given\n"
    "  --title TEXT, --author TEXT\n"
    "                          what the PDF says of itself\n"
    "  --encoding NAME         what plain text is in\n"
    "\n"
    "A chart stays as it is on the screen: chords and the words below them wrap\n"
    "together, a section is not split where a column has room for it, tablature is set\n"
    "smaller instead of wrapped. Characters that no font has are named on the standard\n"
    "error. Exit code: 0 done, 1 a file could not be read or written, 2 wrong arguments.\n";

// `arguments` are those behind "pdf". The cause of a failure names the argument at fault; it is a
// phrase without a full stop.
Result<PdfRequest> parsePdfArguments(const std::vector<Text>& arguments);

}  // namespace melvorin
