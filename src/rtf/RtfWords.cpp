#include "rtf/RtfWords.h"

#include <algorithm>
#include <array>

namespace melvorin {
namespace {

// (By hand: one word a line would fill screens.)
// clang-format off
constexpr auto kDestinations = std::to_array<std::string_view>({
    "aftncn", "aftnsep", "aftnsepc", "annotation", "atnauthor", "atnicn", "atnid", "atnparent",
    "atnref", "atntime", "atrfend", "atrfstart", "author", "background", "bkmkend", "bkmkstart",
    "blipuid", "buptim", "category", "colortbl", "comment", "company", "creatim", "datafield",
    "docvar", "falt", "field", "file", "filetbl", "fldinst", "fldrslt", "fldtype", "fname",
    "fontemb", "fontfile", "fonttbl", "footer", "footerf", "footerl", "footerr", "footnote",
    "formfield", "ftncn", "ftnsep", "ftnsepc", "generator", "header", "headerf", "headerl",
    "headerr", "info", "keycode", "keywords", "leveltext", "list", "listlevel", "listname",
    "listoverride", "listoverridetable", "listtable", "listtext", "manager", "nesttableprops",
    "nextfile", "nonesttables", "nonshppict", "objalias", "objclass", "objdata", "object",
    "objname", "objsect", "objtime", "operator", "panose", "password", "picprop", "pict", "pn",
    "pnseclvl", "pntext", "pntxta", "pntxtb", "printim", "private", "propname", "result",
    "revtbl", "rsidtbl", "rxe", "shp", "shpgrp", "shpinst", "shppict", "shprslt", "shptxt",
    "sn", "sp", "staticval", "stylesheet", "subject", "sv", "tc", "template", "title", "txe",
    "ud", "upr", "userprops", "xe"});
// clang-format on
static_assert(std::is_sorted(kDestinations.begin(), kDestinations.end()));

constexpr auto kAsides = std::to_array<std::string_view>(
    {"annotation", "fldinst", "fldrslt", "footer", "footerf", "footerl", "footerr", "footnote",
     "header", "headerf", "headerl", "headerr", "info", "listtext", "nonshppict", "pntext"});

constexpr auto kText = std::to_array<std::string_view>(
    {"field", "fldrslt", "object", "result", "shp", "shpgrp", "ud", "upr"});

}  // namespace

bool isDestination(std::string_view word) {
    return std::binary_search(kDestinations.begin(), kDestinations.end(), word);
}

bool isAside(std::string_view word) {
    return std::find(kAsides.begin(), kAsides.end(), word) != kAsides.end();
}

bool isTextDestination(std::string_view word) {
    return std::find(kText.begin(), kText.end(), word) != kText.end();
}

}  // namespace melvorin
