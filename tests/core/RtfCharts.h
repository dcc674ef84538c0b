// Charts in many scripts, as different programs write them into Rich Text.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "base/CodePages.h"

namespace melvorin::charts {

struct Script {
    std::string name;
    int charset;
    unsigned page;
    TextView face;
    TextView words;
};

inline const std::vector<Script>& scripts() {
    static const std::vector<Script> all = {
        {"Western", 0, 1252, u"Courier New", u"Canção da manhã, não há ninguém…"},
        {"Czech", 238, 1250, u"Courier New CE", u"Čekám, až přijde řeka k nám"},
        {"Polish", 238, 1250, u"Courier New", u"Świeci żółte słońce nad łąką"},
        {"Russian", 204, 1251, u"Courier New Cyr", u"Тихо плывёт луна над рекой"},
        {"Greek", 161, 1253, u"Courier New Greek", u"Το φεγγάρι πάνω απ' το ποτάμι"},
        {"Turkish", 162, 1254, u"Courier New Tur", u"Güneş doğar, ışık saçar dağlara"},
        {"Hebrew", 177, 1255, u"Miriam Fixed", u"שיר קטן על הנהר"},
        {"Arabic", 178, 1256, u"Courier New", u"أغنية صغيرة عند النهر"},
        {"Baltic", 186, 1257, u"Courier New Baltic", u"Mėnulis šviečia ąžuolams"},
        {"Thai", 222, 874, u"Cordia New", u"ดวงจันทร์เหนือแม่น้ำ"},
        {"Japanese", 128, 932, u"ＭＳ ゴシック", u"川の上に月がのぼる ソ表"},
        {"Korean", 129, 949, u"굴림체", u"강 위에 달이 뜬다"},
        {"Simplified", 134, 936, u"宋体", u"月亮升起在河上"},
        {"Traditional", 136, 950, u"細明體", u"月亮在河上升起 功"},
        {"Vietnamese", 163, 1258, u"Courier New", u"Trăng lên trên sông đó"},
        {"Macintosh", 77, 10000, u"Courier", u"Canção da manhã"},
    };
    return all;
}

enum class Dialect { Old, Unicode, Word, Office, Cocoa, Bullets, Link, Hidden, Picture, Table };

struct Chart {
    std::string name;
    std::string rtf;
    std::vector<Text> lines;
};

// Text as a program writes it that knows the code page of its font, or one that does not.
class Speller {
  public:
    Speller(const Script& script, Dialect dialect)
        : codec_(codePage(script.page)), dialect_(dialect) {}

    std::string operator()(TextView text) const {
        std::string out;
        for (const char16_t c : text)
            put(c, out);
        return out;
    }

    std::string bytes(TextView text) const {
        std::string out;
        for (const char16_t c : text)
            putBytes(c, out);
        return out;
    }

  private:
    void put(char16_t c, std::string& out) const {
        const std::string number = std::to_string(c > 0x7FFF ? c - 0x10000 : c);
        if (c < 0x80 || dialect_ == Dialect::Old)
            putBytes(c, out);
        else if (dialect_ == Dialect::Cocoa)
            out += "\\uc0\\u" + number + " ";
        else if (dialect_ == Dialect::Unicode)
            out += "\\u" + number + "?";
        else if (const auto known = codec_->encode(TextView(&c, 1)); dialect_ == Dialect::Word)
            out += "\\uc" + std::to_string(known->size()) + "\\u" + number + hex(*known);
        else
            putBytes(c, out);
    }

    void putBytes(char16_t c, std::string& out) const {
        const std::string known = codec_->encode(TextView(&c, 1)).value();
        out += c < 0x80 ? known : hex(known);
    }

    static std::string hex(const std::string& bytes) {
        constexpr std::string_view digits = "0123456789abcdef";
        std::string out;
        for (const char byte : bytes) {
            const auto value = static_cast<unsigned char>(byte);
            out += "\\'";
            out += digits[value / 16];
            out += digits[value % 16];
        }
        return out;
    }

    const AnsiCodec* codec_;
    Dialect dialect_;
};

// A picture of nothing, which every control can draw.
inline constexpr std::string_view kPicture =
    "{\\pict\\wmetafile8\\picw1000\\pich1000\\picwgoal567\\pichgoal567 "
    "010009000003120000000000050000000000050000000b0200000000050000000c0264006400"
    "030000000000}";

class Composer {
  public:
    Composer(const Script& script, Dialect dialect)
        : script_(script), dialect_(dialect), spell_(script, dialect) {}

    Chart chart(std::string name) {
        chart_.name = std::move(name);
        head();
        const Text words(script_.words);
        for (int verse = 0; verse < 3; ++verse) {
            line(verse == 1 ? u"C     Am7/G   F#m7(9)" : u"   Dm7   G7      C7+");
            line(words);
            special(words);
        }
        end();
        return std::move(chart_);
    }

  private:
    std::string& out() { return chart_.rtf; }

    void head() {
        const bool isCocoa = dialect_ == Dialect::Cocoa;
        out() = isCocoa ? "{\\rtf1\\ansi\\ansicpg1252\\cocoartf2639\\cocoaplatform0"
                        : "{\\rtf1\\ansi\\ansicpg1252\\uc1\\deff0";
        out() += "{\\fonttbl{\\f0\\fmodern\\fcharset0 Courier New;}{\\f1\\fnil\\fcharset" +
                 std::to_string(script_.charset) + " ";
        out() += spell_.bytes(script_.face) + ";}{\\f2\\fnil\\fcharset2 Symbol;}}\n";
        out() += "{\\colortbl ;\\red192\\green0\\blue0;\\red0\\green0\\blue255;}\n";
        if (dialect_ == Dialect::Word)
            out() +=
                "{\\stylesheet{\\ql \\li0\\ri0\\widctlpar\\wrapdefault\\itap0 \\fs24 \\snext0 "
                "Normal;}{\\s15\\ql\\b \\sbasedon0 Head;}{\\*\\cs10 \\additive Font;}}"
                "{\\*\\rsidtbl \\rsid123}{\\info{\\author me}}\\paperw11906\\paperh16838"
                "\\widowctrl\\ftnbj\\aenddoc\\noxlattoyen\\expshrtn\\viewkind1\\fet0\\sectd"
                "\\linex0\\endnhere\\sectdefaultcl\n";
        if (dialect_ == Dialect::Office)
            out() +=
                "{\\stylesheet{\\s0\\snext0\\widctlpar\\hyphpar0\\cf0\\kerning1\\dbch\\af5"
                "\\langfe2052\\loch\\f0\\fs24\\lang1033 Default Style;}}\\deftab709"
                "\\viewscale100\\sectd\\sbknone\\pgwsxn11906\\pghsxn16838\\ftnbj"
                "\\ftnstart1\\aftnnrlc\n";
        if (dialect_ == Dialect::Old)
            out() += "\\viewkind4\\uc1\\pard\\lang1033\\f0\\fs20\n";
        if (isCocoa)
            out() += "\\margl1440\\margr1440\\pard\\tx560\\tx1120\\pardirnatural\\f0\\fs24 \\cf0 ";
        if (dialect_ == Dialect::Unicode)
            out() += "\\viewkind4 \\pard\\sa200\\sl276\\slmult1\\cf1\\f0\\fs20\\lang9 ";
    }

    // A paragraph, with chords in the western font and words in that of the script.
    void line(TextView text) {
        const std::string font = text == script_.words ? "\\f1" : "\\f0";
        const std::string words = spell_(text);
        switch (dialect_) {
            case Dialect::Word:
                out() +=
                    "\\pard\\plain \\ltrpar\\s15\\ql \\li0\\ri0\\widctlpar\\wrapdefault\\faauto"
                    "\\rin0\\lin0\\itap0 \\rtlch\\fcs1 \\af0\\afs20\\alang1025 \\ltrch\\fcs0 "
                    "\\fs20\\lang1046\\langfe1033\\cgrid\\langnp1046\\langfenp1033 {\\rtlch\\fcs1 "
                    "\\af2 \\ltrch\\fcs0 " +
                    font + "\\insrsid123 " + words + "\n\\par }";
                break;
            case Dialect::Office:
                out() +=
                    "\\pard\\plain \\s0\\widctlpar\\hyphpar0\\aspalpha\\cf0\\dbch\\af5"
                    "\\langfe2052\\loch\\fs24\\lang1033{" +
                    font + "\\loch " + words + "}\\par ";
                break;
            case Dialect::Cocoa:
                out() += font + "\\cf0 " + words + "\\\n";
                break;
            case Dialect::Old:
                out() += font + " " + words + "\\par\n";
                break;
            default:
                out() += "\\pard" + font + "\\fs20 " + words + "\\par\n";
        }
        chart_.lines.emplace_back(text);
    }

    // What only this dialect has, and a control changes when it writes.
    void special(TextView text) {
        const std::string words = spell_(text);
        if (dialect_ == Dialect::Bullets)
            out() +=
                "\\pard{\\pntext\\f2\\'b7\\tab}{\\*\\pn\\pnlvlblt\\pnf2\\pnindent0"
                "{\\pntxtb\\'b7}}\\fi-360\\li720\\f1 " +
                words + "\\par\n{\\pntext\\f2\\'b7\\tab}";
        else if (dialect_ == Dialect::Link)
            out() += "\\f1 " + words +
                     " {\\field{\\*\\fldinst{HYPERLINK \"http://a.example\"}}"
                     "{\\fldrslt{\\ul\\cf2 " +
                     words + "}}}\\par\n";
        else if (dialect_ == Dialect::Hidden)
            out() += "\\keepn\\noline\\hyphpar0\\f1\\highlight1 " + words +
                     "\\highlight0{\\v\\f0 hidden}\\tab\\v0\\protect " + words +
                     "\\protect0\\par\n";
        else if (dialect_ == Dialect::Picture)
            out().append("\\f1 ").append(words).append(kPicture).append(words).append("\\par\n");
        else if (dialect_ == Dialect::Table)
            out() += "\\trowd\\cellx2000\\cellx4000\\pard\\intbl\\f1 " + words +
                     "\\cell\\f0 C  G\\cell\\row\n";
        else
            return;
        Text shown(text);
        if (dialect_ == Dialect::Link)
            shown.append(u" ").append(text);
        if (dialect_ == Dialect::Hidden)
            shown.append(u"hidden\t").append(text);
        if (dialect_ == Dialect::Picture)
            shown.append(u"\uFFFC").append(text);
        chart_.lines.push_back(shown);
    }

    void end() {
        if (dialect_ == Dialect::Table)
            out() += "\\pard\\f0 C  G\\par end";
        out() += "}";
    }

    const Script& script_;
    Dialect dialect_;
    Speller spell_;
    Chart chart_;
};

// Every script in every dialect; tables, whose place in a control's text no source tells, for a
// few.
inline std::vector<Chart> all() {
    std::vector<Chart> charts;
    constexpr std::pair<Dialect, const char*> dialects[] = {
        {Dialect::Old, "old"},       {Dialect::Unicode, "unicode"}, {Dialect::Word, "word"},
        {Dialect::Office, "office"}, {Dialect::Cocoa, "cocoa"},     {Dialect::Bullets, "bullets"},
        {Dialect::Link, "link"},     {Dialect::Hidden, "hidden"},   {Dialect::Picture, "picture"},
        {Dialect::Table, "table"}};
    for (const auto& [dialect, name] : dialects) {
        std::size_t count = 0;
        for (const Script& script : scripts()) {
            if (dialect != Dialect::Table || count++ % 4 == 0)
                charts.push_back(Composer(script, dialect).chart(script.name + " " + name));
        }
    }
    return charts;
}

}  // namespace melvorin::charts
