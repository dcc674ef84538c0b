#include "RtfDialects.h"

#include <array>
#include <functional>

#include "base/CodePages.h"

namespace melvorin::dialects {
namespace {

using Kind = Line::Kind;

const std::vector<Chart>& allCharts() {
    static const std::vector<Chart> list{
        {"English",
         {{u"Amazing Grace"},
          {u""},
          {u"*G*              *G7*       *C*       *G*"},
          {u"Amazing grace! How sweet the sound"},
          {u"*Em*                  *A7*    *D7*"},
          {u"That saved a wretch like me!"}}},
        {"Portuguese",
         {{u"Canção do verão"},
          {u"*Am*        *E7/G#*   *F7M(9)*"},
          {u"Não há manhã sem coração,"},
          {u"*Dm*   *E7*      *Am*"},
          {u"é só voltar – “já vou”…"}}},
        {"Russian",
         {{u"Во поле берёза стояла"},
          {u"*Dm*      *Gm*   *A7*  *Dm*"},
          {u"Во поле берёза стояла,"},
          {u"*Dm*       *A7*      *Dm*"},
          {u"Люли, люли, стояла. {2x}"}}},
        {"Czech",
         {{u"Ach synku, synku"},
          {u"*D*         *A7*      *D*"},
          {u"Ach synku, synku, doma-li jsi?"},
          {u"*G*             *D*   *A7*   *D*"},
          {u"Tatíček se ptá, oral-li jsi \\ čtvrtou žeň?"}}},
        {"Line breaks",
         {{u"*C*     *F*    *C*", Kind::Soft},
          {u"Row, row, row your boat,", Kind::Soft},
          {u"*C*            *G7*   *C*", Kind::Soft},
          {u"Gently down the stream."},
          {u"", Kind::Soft},
          {u"*C*              *G7*      *C*", Kind::Soft},
          {u"Merrily, merrily: life is but a dream."}}},
        {"Lists and links",
         {{u"Set for Saturday"},
          {u"Scarborough Fair (Am, capo 2)", Kind::Bullet},
          {u"Greensleeves, slowly", Kind::Bullet},
          {u"words of all verses", Kind::Link},
          {u"*Am*\t*G*\t*Am*"},
          {u"Are you going to Scarborough Fair?"}}},
        {"Table",
         {{u"Auld Lang Syne"},
          {u"*F*  *C7*  *F*|Should auld acquaintance be forgot", Kind::Row},
          {u"*Bb*  *F*|and never brought to mind?", Kind::Row},
          {u"*F*   *Dm*  *Gm*  *C7*"},
          {u"For auld lang syne, my dear"}},
         true},
        {"Signs",
         {{u"Sinais: ♭ and ♯, 5½ €, ‘tune’, naïve • two"},
          {u"*B♭maj7*   *F♯°*  *C△*"},
          {u"la la — la\u00A0la, a-la-\u2011la"}}},
    };
    return list;
}

// ---- What the programs have in common ---------------------------------------------------------

struct Run {
    Text text;
    bool isChord = false;
};

std::vector<Run> runsOf(TextView line) {
    std::vector<Run> runs(1);
    for (const char16_t c : line) {
        if (c == u'*')
            runs.push_back({{}, !runs.back().isChord});
        else
            runs.back().text += c;
    }
    std::erase_if(runs, [](const Run& run) { return run.text.empty(); });
    return runs;
}

// How a program spells a character that is not ASCII.
using Spell = std::function<std::string(char16_t)>;

std::string spelled(TextView text, const Spell& spell) {
    std::string out;
    for (const char16_t c : text) {
        if (c == u'\\' || c == u'{' || c == u'}')
            out += '\\';
        if (c == u'\t')
            out += "\\tab ";
        else if (c < 0x80)
            out += static_cast<char>(c);
        else
            out += spell(c);
    }
    return out;
}

std::string hex(unsigned char byte) {
    constexpr std::string_view digits = "0123456789abcdef";
    return {'\\', '\'', digits[byte >> 4U], digits[byte & 15U]};
}

std::string byteIn(unsigned codePageNumber, char16_t c) {
    const auto bytes = codePage(codePageNumber)->encode(TextView(&c, 1));
    return bytes && bytes->size() == 1 ? hex(static_cast<unsigned char>(bytes->front())) : "";
}

std::string number(char16_t c) {
    return std::to_string(static_cast<std::int16_t>(c));
}

// A picture of one dot.
constexpr std::string_view kDot =
    "89504e470d0a1a0a0000000d49484452000000010000000108060000001f15c4890000000d49444154789c63600000"
    "0200010005fe02fea7359d0000000049454e44ae426082";

std::string fontNumber(const std::string& name, std::string_view charset) {
    return "{\\f" + name + "\\fnil\\fcharset" + std::string(charset) + " Courier New;}";
}

// ---- The rich-edit controls -------------------------------------------------------------------

struct RichEditStyle {
    std::string head;       // between \ansicpg1252 and the font table
    std::string generator;  // with what follows up to the first paragraph
    std::string paragraph;
    bool hasLinks = false;
};

// A font for each alphabet, changed to within the line, and single characters as \u.
std::string richEditText(TextView text) {
    std::string out;
    unsigned font = 0;
    for (const char16_t c : text) {
        constexpr auto fonts = std::to_array<unsigned>({1252, 1251, 1250});
        unsigned wanted = font;
        std::string spelling;
        if (c >= 0x80) {
            for (unsigned i = 0; i < fonts.size() && spelling.empty(); ++i) {
                spelling = byteIn(fonts[i], c);
                wanted = spelling.empty() ? font : i;
            }
            if (c == u'\u00A0' || c == u'\u2011')
                spelling = c == u'\u00A0' ? "\\~" : "\\_";
            if (spelling.empty())
                spelling = "\\u" + number(c) + "?";
        } else {
            spelling = spelled(TextView(&c, 1), {});
        }
        if (wanted != font)
            out += "\\f" + std::to_string(wanted) + "\\lang1033" + (spelling[0] == '\\' ? "" : " ");
        font = wanted;
        out += spelling;
    }
    return font == 0 ? out : out + "\\f0\\lang1033 ";
}

std::string richEditRuns(TextView line) {
    std::string out;
    for (const Run& run : runsOf(line))
        out += run.isChord ? "\\cf1\\b " + richEditText(run.text) + "\\cf0\\b0 "
                           : richEditText(run.text);
    return out;
}

std::string richEdit(const Chart& chart, const RichEditStyle& style) {
    std::string rtf = "{\\rtf1\\ansi\\ansicpg1252\\deff0" + style.head + "{\\fonttbl" +
                      fontNumber("0", "0") + fontNumber("1", "204") + fontNumber("2", "238") +
                      "{\\f3\\fnil\\fcharset2 Symbol;}}\r\n{\\colortbl ;\\red192\\green0\\blue0;"
                      "\\red0\\green0\\blue255;}\r\n" +
                      style.generator + style.paragraph;
    Kind before = Kind::Paragraph;
    for (const Line& line : chart.lines) {
        if (line.kind != before && (before == Kind::Bullet || before == Kind::Row))
            rtf += style.paragraph;
        const std::size_t bar = line.text.find(u'|');
        if (line.kind == Kind::Row)
            rtf +=
                "\\trowd\\trgaph108\\trleft-108\\trbrdrl\\brdrs\\brdrw10 \\cellx4320\\cellx8748"
                "\\pard\\intbl " +
                richEditRuns(line.text.substr(0, bar)) + "\\cell " +
                richEditRuns(line.text.substr(bar + 1)) + "\\cell\\row ";
        else if (line.kind == Kind::Bullet && before != Kind::Bullet)
            rtf +=
                "\\pard{\\pntext\\f3\\'B7\\tab}{\\*\\pn\\pnlvlblt\\pnf3\\pnindent0{\\pntxtb\\'B7}}"
                "\\fi-360\\li720 " +
                richEditRuns(line.text) + "\\par\r\n";
        else if (line.kind == Kind::Bullet)
            rtf += "{\\pntext\\f3\\'B7\\tab}" + richEditRuns(line.text) + "\\par\r\n";
        else if (line.kind == Kind::Link && style.hasLinks)
            rtf += "{{\\field{\\*\\fldinst{HYPERLINK https://songs.example/all }}{\\fldrslt{" +
                   richEditRuns(line.text) + "\\ul0\\cf0}}}}\\f0\\fs20\\par\r\n";
        else
            rtf += richEditRuns(line.text) + (line.kind == Kind::Soft ? "\\line " : "\\par\r\n");
        before = line.kind;
    }
    if (chart.hasPicture)
        rtf += "\\pard{\\pict{\\*\\picprop}\\pngblip\\picw26\\pich26\\picwgoal15\\pichgoal15 \r\n" +
               std::string(kDot) + "\r\n}\\par\r\n";
    return rtf + "}\r\n" + std::string(1, '\0');
}

std::string msftedit541(const Chart& chart) {
    return richEdit(chart,
                    {"\\deflang1033", "{\\*\\generator Msftedit 5.41.15.1515;}\\viewkind4\\uc1",
                     "\\pard\\f0\\fs20 "});
}
std::string wordPad7(const Chart& chart) {
    return richEdit(chart,
                    {"\\deflang1033", "{\\*\\generator Msftedit 5.41.21.2510;}\\viewkind4\\uc1",
                     "\\pard\\sa200\\sl276\\slmult1\\lang9\\f0\\fs20 "});
}
std::string wordPad10(const Chart& chart) {
    return richEdit(chart,
                    {"\\nouicompat\\deflang1033\\deflangfe1033",
                     "{\\*\\generator Riched20 10.0.19041}{\\*\\mmathPr\\mnaryLim0\\mdispDef1"
                     "\\mwrapIndent1440 }\\viewkind4\\uc1 \r\n",
                     "\\pard\\widctlpar\\sa160\\sl252\\slmult1\\f0\\fs20 ", true});
}
std::string wordPad11(const Chart& chart) {
    return richEdit(chart,
                    {"\\nouicompat", "{\\*\\generator Riched20 10.0.22621}\\viewkind4\\uc1 \r\n",
                     "\\pard\\nowidctlpar\\sl240\\slmult1\\f0\\fs20\\lang1033 ", true});
}

// ---- The word processor -----------------------------------------------------------------------

struct WordStyle {
    bool isNew = false;     // since 2007: bidirectional runs and data of its own at the end
    bool isRecent = false;  // since 2010: names the fonts of all scripts in every run
    bool isMac = false;
    std::string generator;
    std::string spacing;  // of every paragraph
};

constexpr std::string_view kParagraph =
    "\\ql \\li0\\ri0\\widctlpar\\wrapdefault\\aspalpha\\aspnum\\faauto\\adjustright\\rin0\\lin0";

std::string wordSpell(char16_t c, const WordStyle& style) {
    switch (c) {
        case u'\u00A0':
            return "\\~";
        case u'\u2011':
            return "\\_";
        case u'–':
            return "\\endash ";
        case u'—':
            return "\\emdash ";
        case u'‘':
            return "\\lquote ";
        case u'’':
            return "\\rquote ";
        case u'“':
            return "\\ldblquote ";
        case u'”':
            return "\\rdblquote ";
        case u'•':
            return "\\bullet ";
        default:
            break;
    }
    const std::string own = byteIn(style.isMac ? 10000 : 1252, c);
    if (!own.empty())
        return own;
    for (const unsigned page : {1251U, 1250U}) {
        const std::string byte = byteIn(page, c);
        if (!byte.empty())
            return "\\u" + number(c) + byte;
    }
    return (style.isNew ? "\\u" + number(c) + "\\'3f" : "{\\u" + number(c) + "\\'3f}");
}

std::string wordRun(TextView text, bool isChord, const WordStyle& style,
                    const std::string& behind = "") {
    const std::string format = style.isNew
                                   ? std::string("\\rtlch\\fcs1 ") + (isChord ? "\\ab" : "") +
                                         "\\af2\\afs20 "
                                         "\\ltrch\\fcs0 "
                                   : std::string();
    return "{" + format + (isChord ? "\\b\\f2\\fs20\\cf6" : "\\f2\\fs20") + "\\insrsid4325376" +
           (style.isNew ? "\\charrsid4325376" : "") +
           (style.isRecent ? " \\hich\\af2\\dbch\\af31505\\loch\\f2 " : " ") +
           spelled(text, [&](char16_t c) { return wordSpell(c, style); }) + behind + "}";
}

std::string wordRuns(TextView line, const WordStyle& style, const std::string& behind) {
    std::string out;
    for (const Run& run : runsOf(line))
        out += wordRun(run.text, run.isChord, style);
    return behind.empty() ? out : out + wordRun(u"", false, style, behind);
}

std::string wordFonts(const WordStyle& style, bool isUnicode) {
    const std::string latin = style.isMac ? "256" : "0";
    std::string fonts =
        "{\\fonttbl{\\f0\\froman\\fcharset" + latin +
        "\\fprq2{\\*\\panose 02020603050405020304}Times New Roman;}{\\f2\\fmodern\\fcharset" +
        latin +
        "\\fprq1{\\*\\panose 02070309020205020404}Courier New;}"
        "{\\f3\\froman\\fcharset2\\fprq2{\\*\\panose 05050102010706020507}Symbol;}";
    if (style.isMac)
        fonts += isUnicode ? "{\\f13\\fnil\\fcharset78\\fprq0{\\*\\panose 00000000000000000000}"
                             "\\uc2\\u-3\\'82\\'6c;}"
                           : "{\\f13\\fnil\\fcharset78\\fprq0 \\'82\\'6c;}";
    else
        fonts +=
            "{\\f38\\fmodern\\fcharset238\\fprq1 Courier New CE;}"
            "{\\f39\\fmodern\\fcharset204\\fprq1 Courier New Cyr;}";
    if (style.isNew)
        fonts +=
            "{\\flomajor\\f31500\\fbidi \\froman\\fcharset0\\fprq2{\\*\\panose "
            "02020603050405020304}Times New Roman;}{\\fhiminor\\f31506\\fbidi \\fswiss"
            "\\fcharset0\\fprq2{\\*\\panose 020f0502020204030204}Calibri;}";
    return fonts + "}";
}

std::string wordStyles(const WordStyle& style) {
    const std::string run =
        style.isNew ? "\\rtlch\\fcs1 \\af0\\afs22\\alang1025 \\ltrch\\fcs0 \\f31506\\fs22"
                    : "\\fs24";
    std::string sheet = "{\\stylesheet{" + std::string(kParagraph) + "\\itap0 " + run +
                        "\\lang1033\\langfe1033\\cgrid\\langnp1033\\langfenp1033 \\snext0 ";
    sheet += style.isNew ? "\\sqformat \\spriority0 Normal;}" : "Normal;}";
    sheet +=
        "{\\*\\cs10 \\additive \\ssemihidden Default Paragraph Font;}{\\*\n\\ts11\\tsrowd"
        "\\trftsWidthB3\\trpaddl108\\trpaddr108\\trpaddfl3\\tscellwidthfts0\\tsvertalt " +
        std::string(kParagraph) + "\\itap0 " + run + " \\snext11 \\ssemihidden Normal Table;}";
    if (style.isNew)
        sheet +=
            "{\\*\\cs15 \\additive \\rtlch\\fcs1 \\af0 \\ltrch\\fcs0 \\ul\\cf2 \\sbasedon10 "
            "\\sunhideused \\styrsid4325376 Hyperlink;}";
    return sheet + "}";
}

std::string twice(const WordStyle& style, const std::string& plain, const std::string& unicode) {
    return style.isMac ? "{\\upr" + plain + "{\\*\\ud" + unicode + "}}" : plain;
}

std::string wordHead(const WordStyle& style) {
    std::string rtf = style.isNew ? "{\\rtf1\\adeflang1025\\ansi" : "{\\rtf1\\ansi";
    rtf += style.isMac ? "\\ansicpg10000" : "\\ansicpg1252";
    rtf +=
        "\\uc1 \\deff0\\stshfdbch0\\stshfloch0\\stshfhich0\\stshfbi0\\deflang1033\\deflangfe1033";
    rtf += style.isNew ? "\\themelang1033\\themelangfe0\\themelangcs0" : "";
    rtf += twice(style, wordFonts(style, false), wordFonts(style, true));
    rtf +=
        "{\\colortbl;\\red0\\green0\\blue0;\\red0\\green0\\blue255;\\red0\\green255\\blue255;\n"
        "\\red0\\green255\\blue0;\\red255\\green0\\blue255;\\red192\\green0\\blue0;}";
    if (style.isNew)
        rtf += "{\\*\\defchp \\f31506\\fs22 }{\\*\\defpap " + std::string(kParagraph) +
               "\\itap0 }\\noqfpromote ";
    rtf += twice(style, wordStyles(style), wordStyles(style));
    rtf +=
        "{\\*\\listtable{\\list\\listtemplateid1\\listhybrid{\\listlevel\\levelnfc23\\leveljc0"
        "\\levelstartat1{\\leveltext\\'01\\u-3913 ?;}{\\levelnumbers;}\\f3\\fi-360\\li720 }"
        "{\\listname ;}\\listid16}}{\\*\\listoverridetable{\\listoverride\\listid16"
        "\\listoverridecount0\\ls1}}";
    if (style.isNew)
        rtf += "{\\*\\pgptbl {\\pgp\\ipgp0\\itap0\\li0\\ri0\\sb0\\sa0}{\\pgp\\ipgp1\\itap0\\li0}}";
    rtf += "{\\*\\rsidtbl \\rsid4325376\\rsid12910551}";
    if (style.isNew)
        rtf += "{\\mmathPr\\mmathFont34\\mbrkBin0\\mbrkBinSub0\\msmallFrac0\\mdispDef1\\mlMargin0}";
    rtf += "{\\*\\generator " + style.generator + ";}";
    rtf += "{\\info" + twice(style, "{\\title Song}", "{\\title Song}") +
           "{\\author A}{\\creatim\\yr2011\\mo3\\dy4\\hr10\\min5}{\\version1}{\\edmins0}"
           "{\\*\\company B}{\\nofcharsws12}{\\vern49247}}";
    if (style.isNew)
        rtf += "{\\*\\xmlnstbl {\\xmlns1 http://schemas.microsoft.com/office/word/2003/wordml}}";
    rtf +=
        "\\paperw12240\\paperh15840\\margl1440\\margr1440 \\widowctrl\\ftnbj\\aenddoc\\noxlattoyen"
        "\\expshrtn\\dghspace180\\viewkind1\\viewscale100\\fet0";
    rtf += "{\\*\\wgrffmtfilter 013f}";
    const std::string mark = style.isNew ? "{\\rtlch\\fcs1 \\af0 \\ltrch\\fcs0 \\insrsid12910551 "
                                         : "{\\insrsid12910551 ";
    for (const char* const separator : {"ftnsep", "ftnsepc", "aftnsep", "aftnsepc"})
        rtf += std::string("{\\*\\") + separator + " \\pard\\plain \\ltrpar" +
               std::string(kParagraph) + "\\itap0 \\fs22 " + mark + "\\chftnsep \n\\par }}";
    rtf += "\\ltrpar \\sectd \\ltrsect\\linex0\\endnhere\\sectlinegrid360\\sectdefaultcl\\sftnbj ";
    for (int level = 1; level <= 9; ++level)
        rtf += "{\\*\\pnseclvl" + std::to_string(level) +
               "\\pnucrm\\pnstart1\\pnindent720\\pnhang {\\pntxta .}}";
    return rtf;
}

std::string wordTail(const WordStyle& style) {
    if (!style.isNew)
        return "}";
    std::string rtf =
        "{\\*\\themedata 504b030414000600080000002100e9de0fbfff0000001c020000130000\n"
        "005b436f6e74656e745f54797065735d2e786d6c}{\\*\\colorschememapping 3c3f786d6c20"
        "76657273696f6e3d22312e30223f3e}{\\*\\latentstyles\\lsdstimax267\\lsdlockeddef0"
        "\\lsdsemihiddendef1{\\lsdlockedexcept \\lsdqformat1 \\lsdpriority0 \\lsdlocked0 "
        "Normal;\\lsdpriority39 \\lsdlocked0 toc 1;}}{\\*\\datastore 0105000002000000\n"
        "180000004d73786d6c322e534158584d4c5265616465722e362e3000}";
    return rtf + "}";
}

std::string word(const Chart& chart, const WordStyle& style) {
    std::string rtf = wordHead(style);
    const std::string par = "\n\\par ";
    const std::string begin = "\\pard\\plain \\ltrpar" + std::string(kParagraph) + style.spacing;
    const std::string outside = begin + "\\itap0 \\fs22\\lang1033\\cgrid ";
    const std::string cell =
        begin + "\\intbl" + (style.isNew ? "\\yts15 " : "\\itap1 ") + "\\fs22 ";
    rtf += outside;
    Kind before = Kind::Paragraph;
    for (const Line& line : chart.lines) {
        if (line.kind != before && before != Kind::Soft)
            rtf += outside;
        const std::size_t bar = line.text.find(u'|');
        switch (line.kind) {
            case Kind::Row: {
                const std::string row =
                    "\\trowd \\irow0\\irowband0\\ltrrow\\ts11\\trgaph108\\trleft-108\\trftsWidth1"
                    "\\clvertalt\\cltxlrtb\\clftsWidth3\\clwWidth4788 "
                    "\\cellx4680\\clvertalt\\cltxlrtb"
                    "\\clftsWidth3\\clwWidth4788 \\cellx9468";
                rtf += row + cell + wordRuns(line.text.substr(0, bar), style, "\\cell ") +
                       wordRuns(line.text.substr(bar + 1), style, "\\cell ") + begin + "\\intbl {" +
                       row + "\\row }";
                break;
            }
            case Kind::Bullet:
                rtf +=
                    "{\\listtext\\pard\\plain\\ltrpar \\f3\\fs22 \\loch\\af3\\dbch\\af0\\hich\\f3 "
                    "\\'b7\\tab}" +
                    begin + "\\fi-360\\li720\\ls1\\itap0 \\fs22 " + wordRuns(line.text, style, par);
                break;
            case Kind::Link:
                rtf +=
                    "{\\field\\fldedit{\\*\\fldinst {\\insrsid4325376  HYPERLINK "
                    "\"https://songs.example/all\" }{\\insrsid4325376 {\\*\\datafield "
                    "00d0c9ea79f9bace118c8200aa004ba90b0200000003}}}{\\fldrslt " +
                    wordRuns(line.text, style, "") + "}}\\sectd \\linex0 " +
                    wordRun(u"", false, style, par);
                break;
            default:
                rtf += wordRuns(line.text, style, line.kind == Kind::Soft ? "\\line " : par);
        }
        before = line.kind;
    }
    if (chart.hasPicture)
        rtf += outside +
               "{\\*\\shppict{\\pict{\\*\\picprop\\shplid1025{\\sp{\\sn shapeType}{\\sv 75}}}"
               "\\picscalex100\\picw26\\pich26\\pngblip\\bliptag1{\\*\\blipuid 00}" +
               std::string(kDot) + "}}{\\nonshppict{\\pict\\pngblip " + std::string(kDot) + "}}" +
               wordRun(u"", false, style, par);
    return rtf + wordTail(style);
}

std::string word2003(const Chart& chart) {
    return word(chart, {false, false, false, "Microsoft Word 11.0.6359", ""});
}
std::string word2007(const Chart& chart) {
    return word(chart, {true, false, false, "Microsoft Word 12.0.6504", ""});
}
std::string word2010(const Chart& chart) {
    return word(chart, {true, true, false, "Microsoft Word 14.0.0000", "\\sa200\\sl276\\slmult1"});
}
std::string word365(const Chart& chart) {
    return word(chart, {true, true, false, "Riched20 16.0.17029", "\\sa160\\sl278\\slmult1"});
}
std::string wordForMac(const Chart& chart) {
    return word(chart, {false, false, true, "Microsoft Word 11.0.0000", ""});
}

// ---- TextEdit ---------------------------------------------------------------------------------

std::string textEdit(const Chart& chart) {
    const auto spell = [](char16_t c) {
        if (c == u'\u00A0')
            return std::string("\\'a0");
        const std::string byte = byteIn(1252, c);
        return !byte.empty() ? byte : "\\uc0\\u" + number(c) + " ";
    };
    const auto runs = [&](TextView line) {
        std::string out;
        for (const Run& run : runsOf(line))
            out += run.isChord ? "\n\\f1\\b \\cf2 " + spelled(run.text, spell) + "\n\\f0\\b0 \\cf0 "
                               : spelled(run.text, spell);
        return out;
    };
    const std::string paragraph =
        "\\pard\\tx560\\tx1120\\pardirnatural\\partightenfactor0\n\n\\f0\\fs24 \\cf0 \\expnd0"
        "\\expndtw0\\kerning0\n";
    std::string rtf =
        "{\\rtf1\\ansi\\ansicpg1252\\cocoartf2761\n\\cocoatextscaling0\\cocoaplatform0{\\fonttbl"
        "\\f0\\fnil\\fcharset0 Menlo-Regular;\\f1\\fnil\\fcharset0 "
        "Menlo-Bold;}\n{\\colortbl;\\red255"
        "\\green255\\blue255;\\red192\\green0\\blue0;}\n{\\*\\expandedcolortbl;;"
        "\\cssrgb\\c80000\\c0\\c0;}"
        "\n{\\*\\listtable{\\list\\listtemplateid1\\listhybrid{\\listlevel\\levelnfc23\\leveljc0"
        "{\\*\\levelmarker \\{disc\\}}{\\leveltext\\leveltemplateid1\\'01\\uc0\\u8226 ;}"
        "{\\levelnumbers;}\\fi-360\\li720 }{\\listname ;}\\listid1}}\n{\\*\\listoverridetable"
        "{\\listoverride\\listid1\\listoverridecount0\\ls1}}\n\\paperw11900\\paperh16840\\margl1440"
        "\\margr1440\\vieww11520\\viewh8400\\viewkind0\n" +
        paragraph;
    Kind before = Kind::Paragraph;
    for (const Line& line : chart.lines) {
        if (line.kind != before && (before == Kind::Bullet || before == Kind::Row))
            rtf += paragraph;
        const std::size_t bar = line.text.find(u'|');
        if (line.kind == Kind::Row)
            rtf +=
                "\n\\itap1\\trowd \\taflags1 \\trgaph108\\trleft-108 "
                "\\trbrdrt\\brdrnil\n\\clvertalc "
                "\\clshdrawnil \\clwWidth4000\\clftsWidth3 \\cellx4320\n\\clvertalc \\cellx8640\n"
                "\\pard\\intbl\\itap1\\pardeftab720\\partightenfactor0\n\\cf0 " +
                runs(line.text.substr(0, bar)) +
                "\\cell \n\\pard\\intbl\\itap1\\partightenfactor0\n\\cf0 " +
                runs(line.text.substr(bar + 1)) + "\\cell \\lastrow\\row\n";
        else if (line.kind == Kind::Bullet)
            rtf +=
                "\\pard\\tx220\\tx720\\li720\\fi-720\\pardirnatural\n\\ls1\\ilvl0\\cf0 "
                "{\\listtext\t"
                "\\uc0\\u8226 \t}" +
                runs(line.text) + "\\\n";
        else if (line.kind == Kind::Link)
            rtf += "{\\field{\\*\\fldinst{HYPERLINK \"https://songs.example/all\"}}{\\fldrslt " +
                   runs(line.text) + "}}\\\n";
        else
            rtf += runs(line.text) + (line.kind == Kind::Soft ? "\\uc0\\u8232 " : "\\\n");
        before = line.kind;
    }
    return rtf + "}";
}

constexpr auto kDialects = std::to_array<Dialect>({{"Msftedit 5.41", msftedit541},
                                                   {"WordPad 7", wordPad7},
                                                   {"WordPad 10", wordPad10},
                                                   {"WordPad 11", wordPad11},
                                                   {"Word 2003", word2003},
                                                   {"Word 2007", word2007},
                                                   {"Word 2010", word2010},
                                                   {"Word 365", word365},
                                                   {"Word for Mac", wordForMac},
                                                   {"TextEdit", textEdit}});

}  // namespace

std::span<const Chart> charts() {
    return allCharts();
}

std::span<const Dialect> all() {
    return kDialects;
}

Text textOf(const Chart& chart) {
    Text text;
    for (const Line& line : chart.lines) {
        if (!text.empty() || &line != chart.lines.data())
            text += u'\r';
        for (const char16_t c : line.text) {
            if (c == u'|')
                text += u'\t';
            else if (c != u'*')
                text += c;
        }
        if (line.kind == Kind::Row)
            text += u'\t';
    }
    return text;
}

}  // namespace melvorin::dialects
