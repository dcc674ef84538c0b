#include "rtf/RtfFormatWords.h"

#include <algorithm>
#include <array>

namespace melvorin {
namespace {

// Sorted. The words of a field that stand outside its instruction are here too: what it shows is
// text as any other, and so is hidden text.
// (By hand: one word a line would fill screens.)
// clang-format off
constexpr auto kWords = std::to_array<std::string_view>({
    "CocoaLigature", "ab", "acaps", "acf", "adeff", "adeflang", "adjustright", "adn", "aenddoc",
    "aexpnd", "af", "afs", "aftnnalc", "aftnnar", "aftnnauc", "aftnnchi", "aftnnrlc", "aftnnruc",
    "aftnrstcont", "aftnstart", "ai", "alang", "allowfieldendsel", "alntblind", "animtext", "ansi",
    "aoutl", "ascaps", "ashad", "asianbrkrule", "aspalpha", "aspnum", "astrike", "aul", "auld",
    "auldb", "aulnone", "aulw", "aup", "b", "bgbdiag", "bgcross", "bgdcross", "bgdkbdiag",
    "bgdkcross", "bgdkdcross", "bgdkfdiag", "bgdkhoriz", "bgdkvert", "bgfdiag", "bghoriz",
    "bgvert", "box", "brdrb", "brdrbar", "brdrbtw", "brdrcf", "brdrdash", "brdrdashd",
    "brdrdashdd", "brdrdashsm", "brdrdb", "brdrdot", "brdremboss", "brdrengrave", "brdrframe",
    "brdrhair", "brdrinset", "brdrl", "brdrnil", "brdrnone", "brdroutset", "brdrr", "brdrs",
    "brdrsh", "brdrt", "brdrth", "brdrthtnsg", "brdrtnthsg", "brdrtriple", "brdrw", "brdrwavy",
    "brdrwavydb", "brkfrm", "brsp", "cachedcolbal", "caps", "cb", "cbpat", "cfpat", "cgrid",
    "charrsid", "charscalex", "chbrdr", "chcbpat", "chcfpat", "chdate", "chshdng", "cocoaplatform",
    "cocoartf", "cocoascreenfonts", "cocoasubrtf", "cocoatextscaling", "colno", "cols", "colsr",
    "colsx", "colw", "contextualspace", "crauth", "crdate", "cs", "cufi", "culi", "curi", "dbch",
    "defformat", "deflang", "deflangfe", "deftab", "deleted", "delrsid", "dghorigin", "dghshow",
    "dghspace", "dgmargin", "dgvorigin", "dgvshow", "dgvspace", "disabled", "dn", "dntblnsbdb",
    "doctype", "donotembedlingdata", "donotembedsysfont", "ds", "dy", "embo", "endnhere",
    "expansion", "expnd", "expndtw", "expshrtn", "faauto", "facenter", "facingp", "fafixed",
    "fahang", "faroman", "favar", "fbidis", "fcs", "fet", "fi", "field", "flddirty", "fldedit",
    "fldlock", "fldpriv", "fldrslt", "footery", "formshade", "fromtext", "fs", "fsmilli", "ftnbj",
    "ftnlytwnine", "ftnnalc", "ftnnar", "ftnnauc", "ftnnchi", "ftnnrlc", "ftnnruc", "ftnrstcont",
    "ftnstart", "grfdocevents", "gutter", "gutterprl", "guttersxn", "headery", "hich", "highlight",
    "horzdoc", "htmautsp", "hwelev", "hyphauto", "hyphcaps", "hyphconsec", "hyphhotz", "hyphpar",
    "i", "ignoremixedcontent", "ilfomacatclnup", "ilvl", "impr", "indmirror", "insrsid",
    "jcompress", "jexpand", "keep", "keepn", "kern", "kerning", "krnprsnet", "landscape", "lang",
    "langfe", "langfenp", "langnp", "level", "li", "lin", "linex", "lisa", "lisb", "lnbrkrule",
    "lndscpsxn", "loch", "ls", "ltrch", "ltrdoc", "ltrpar", "ltrsect", "lytcalctblwd",
    "lyttblrtgr", "margb", "margbsxn", "margl", "marglsxn", "margmirror", "margr", "margrsxn",
    "margt", "margtsxn", "newtblstyruls", "nobrkwrptbl", "nocwrap", "nofeaturethrottle",
    "nogrowautofit", "nojkernpunct", "noline", "nolnhtadjtbl", "nooverflow", "noproof",
    "nosnaplinegrid", "nospaceforul", "nosupersub", "notbrkcnstfrctbl", "notcvasp", "notvatxbx",
    "nouicompat", "noultrlspc", "nowidctlpar", "nowwrap", "noxlattoyen", "obliqueness", "outl",
    "outlinelevel", "overlay", "pagebb", "paperh", "paperw", "pararsid", "pard", "pardeftab",
    "pardirnatural", "partightenfactor", "pgbrdrfoot", "pgbrdrhead", "pghsxn", "pgncont", "pgndec",
    "pgnrestart", "pgnstart", "pgwsxn", "pnindent", "protect", "qc", "qd", "qj", "qk", "ql", "qr",
    "qt", "readprot", "relyonvml", "revauth", "revdttm", "revised", "ri", "rin", "rsidroot",
    "rtlch", "rtldoc", "rtlgutter", "rtlpar", "rtlsect", "s", "sa", "saauto", "saveinvalidxml",
    "sb", "sbauto", "sbknone", "scaps", "sectd", "sectdefaultcl", "sectlinegrid", "sectrsid",
    "sectunlocked", "sftnbj", "shad", "shading", "showplaceholdtext", "showxmlerrors", "sl",
    "slleading", "slmult", "snaptogridincell", "spltpgpar", "splytwnine", "sprsspbf", "stextflow",
    "strike", "strikec", "striked", "strokec", "strokewidth", "stshfbi", "stshfdbch", "stshfhich",
    "stshfloch", "styrsid", "sub", "super", "tb", "tblrsid", "themelang", "themelangcs",
    "themelangfe", "tightenfactor", "titlepg", "tldot", "tleq", "tlhyph", "tlth", "tlul", "tqc",
    "tqdec", "tqr", "trackformatting", "trackmoves", "ts", "tx", "ul", "ulc", "uld", "uldash",
    "uldashd", "uldashdd", "uldb", "ulhair", "ulhwave", "ulldash", "ulnone", "ulth", "ulthd",
    "ulthdash", "ulthdashd", "ulthdashdd", "ulthldash", "ululdbwave", "ulw", "ulwave", "up",
    "useltbaln", "utinl", "v", "validatexml", "vertalc", "vertalj", "vertalt", "viewbksp",
    "viewkind", "viewnobound", "viewscale", "viewzk", "widctlpar", "widowctl", "widowctrl",
    "wrapdefault", "wrppunct"});
// clang-format on
static_assert(std::is_sorted(kWords.begin(), kWords.end()));

// Words that are one character.
struct WordCharacter {
    std::string_view word;
    char16_t character;
};
constexpr auto kCharacterWords = std::to_array<WordCharacter>({
    {"par", u'\r'},
    {"line", u'\v'},
    {"tab", u'\t'},
    {"emdash", u'\u2014'},
    {"endash", u'\u2013'},
    {"lquote", u'\u2018'},
    {"rquote", u'\u2019'},
    {"ldblquote", u'\u201C'},
    {"rdblquote", u'\u201D'},
    {"bullet", u'\u2022'},
    {"zwj", u'\u200D'},
    {"zwnj", u'\u200C'},
    {"ltrmark", u'\u200E'},
    {"rtlmark", u'\u200F'},
});

// Destinations without any text of the document.
constexpr auto kSilentGroups =
    std::to_array<std::string_view>({"footer", "footerf", "footerl", "footerr", "header", "headerf",
                                     "headerl", "headerr", "info", "pntext", "stylesheet"});
// Starred destinations that every control skips. Others may hold words that some control obeys.
// clang-format off
constexpr auto kSkippedGroups = std::to_array<std::string_view>({
    "bkmkend", "bkmkstart", "colorschememapping", "datafield", "datastore", "defchp", "defpap",
    "docvar", "fldinst", "generator", "latentstyles", "listoverridetable", "listpicture",
    "listtable", "mmathPr", "pgptbl", "pn", "pnseclvl", "revtbl", "rsidtbl", "themedata",
    "userprops", "wgrffmtfilter", "xmlnstbl"});
// clang-format on

}  // namespace

bool isRtfFormatWord(std::string_view name) {
    return std::binary_search(kWords.begin(), kWords.end(), name);
}

std::optional<char16_t> rtfWordCharacter(std::string_view name) {
    const auto* const found =
        std::find_if(kCharacterWords.begin(), kCharacterWords.end(),
                     [&](const WordCharacter& known) { return known.word == name; });
    return found == kCharacterWords.end() ? std::nullopt : std::optional(found->character);
}

bool isRtfSilentGroup(std::string_view name) {
    return std::find(kSilentGroups.begin(), kSilentGroups.end(), name) != kSilentGroups.end();
}

bool isRtfSkippedGroup(std::string_view name) {
    return std::find(kSkippedGroups.begin(), kSkippedGroups.end(), name) != kSkippedGroups.end();
}

}  // namespace melvorin
