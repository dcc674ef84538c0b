#include "rtf/RtfReader.h"

#include <algorithm>
#include <array>
#include <string>

#include "base/CodePages.h"
#include "rtf/RtfCharacters.h"
#include "rtf/RtfCodePages.h"
#include "rtf/RtfLexer.h"

namespace melvorin {
namespace {

constexpr unsigned kLatin = 1252;

// What the words of a group are to the document.
enum class Part {
    Body,   // as a destination: what the group around it is
    Aside,  // text that is not the body's: counted where it has words
    Fonts,
    Instruction,  // of a field
    Upr,          // the same thing twice, first without Unicode
    Shape,        // no text but in its box
    Nothing
};

struct Destination {
    std::string_view word;
    Part part;
    std::size_t RtfContents::*counter = nullptr;
};

// Of what is not here, and not in the list below, starred groups are nothing and others text.
constexpr auto kDestinations = std::to_array<Destination>({
    {"fonttbl", Part::Fonts},
    {"fldinst", Part::Instruction},
    {"upr", Part::Upr},
    {"ud", Part::Body},
    {"shppict", Part::Body},
    {"fldrslt", Part::Body},
    {"result", Part::Body},
    {"mmath", Part::Body},
    {"moMath", Part::Body},
    {"moMathPara", Part::Body},
    {"object", Part::Body, &RtfContents::objects},
    {"pict", Part::Nothing, &RtfContents::pictures},
    {"shp", Part::Body},
    {"shpgrp", Part::Body},
    {"shpinst", Part::Shape},
    {"shptxt", Part::Aside, &RtfContents::textBoxes},
    {"header", Part::Aside, &RtfContents::headers},
    {"headerf", Part::Aside, &RtfContents::headers},
    {"headerl", Part::Aside, &RtfContents::headers},
    {"headerr", Part::Aside, &RtfContents::headers},
    {"footer", Part::Aside, &RtfContents::headers},
    {"footerf", Part::Aside, &RtfContents::headers},
    {"footerl", Part::Aside, &RtfContents::headers},
    {"footerr", Part::Aside, &RtfContents::headers},
    {"footnote", Part::Aside, &RtfContents::footnotes},
    {"annotation", Part::Aside, &RtfContents::comments},
});
constexpr auto kNothing = std::to_array<std::string_view>(
    {"aftncn",   "aftnsep",      "aftnsepc",  "atnauthor",  "atnid",   "author",    "background",
     "bkmkend",  "bkmkstart",    "colortbl",  "comment",    "company", "creatim",   "doccomm",
     "falt",     "filetbl",      "ftncn",     "ftnsep",     "ftnsepc", "generator", "info",
     "keywords", "listtable",    "manager",   "nonshppict", "objdata", "objclass",  "objname",
     "operator", "nonesttables", "pn",        "pnseclvl",   "printim", "revtbl",    "revtim",
     "rxe",      "shprslt",      "sn",        "stylesheet", "subject", "tc",        "tcn",
     "title",    "txe",          "userprops", "xe"});

struct Spelling {
    std::string_view word;
    char16_t character;
};
constexpr auto kCharacters = std::to_array<Spelling>(
    {{"par", u'\r'},         {"line", u'\v'},          {"tab", u'\t'},
     {"cell", u'\t'},        {"nestcell", u'\t'},      {"row", u'\r'},
     {"nestrow", u'\r'},     {"page", u'\r'},          {"sect", u'\r'},
     {"column", u'\r'},      {"softline", u'\v'},      {"emdash", u'\u2014'},
     {"endash", u'\u2013'},  {"bullet", u'\u2022'},    {"lquote", u'\u2018'},
     {"rquote", u'\u2019'},  {"ldblquote", u'\u201C'}, {"rdblquote", u'\u201D'},
     {"emspace", u'\u2003'}, {"enspace", u'\u2002'},   {"qmspace", u'\u2005'},
     {"zwj", u'\u200D'},     {"zwnj", u'\u200C'},      {"ltrmark", u'\u200E'},
     {"rtlmark", u'\u200F'}});

bool isWordCharacter(char16_t c) {
    return c > u' ' && c != u'\u00A0';
}

// Whether a field's instruction is a link to somewhere outside the document.
bool leadsOut(std::string_view instruction) {
    constexpr std::string_view name = "HYPERLINK";
    const std::size_t at = instruction.find(name);
    if (at == std::string_view::npos)
        return false;
    const std::size_t target = instruction.find_first_not_of(' ', at + name.size());
    return target != std::string_view::npos && !instruction.substr(target).starts_with("\\l");
}

struct State {
    Part part = Part::Body;
    std::size_t RtfContents::*counter = nullptr;  // of an aside, still to be counted
    std::int32_t font = -1;
    std::int32_t skip = 1;
    bool isHidden = false;
    bool isDeleted = false;
    bool isLabel = false;
    bool inLabel = false;  // in this group or one around it
    bool started = false;
    bool starred = false;
    std::size_t children = 0;
    Part around = Part::Body;  // of an Upr: what it stands in
    std::size_t labelBegin = 0;
};

class Reader {
  public:
    explicit Reader(std::string_view bytes) : bytes_(bytes), lexer_(bytes, start(bytes)) {}

    RtfContents read();

  private:
    static std::size_t start(std::string_view bytes) {
        return std::min(bytes.find('{'), bytes.size());
    }
    void open();
    void close();
    void word(const RtfToken& token);
    void begin(std::string_view name);
    void take(const Destination& destination);
    void formatting(const RtfToken& token);
    void symbol(const RtfToken& token);
    void byte(int value);
    void character(char16_t c);
    bool isOutOfSight();
    void flush();
    bool isBehind() const;

    State& state() { return states_.back(); }

    std::string_view bytes_;
    RtfLexer lexer_;
    std::vector<State> states_;
    RtfContents contents_;
    std::string pending_;  // bytes of the body whose characters are not read yet
    unsigned pendingPage_ = kLatin;
    RtfFonts fonts_;
    bool inTable_ = false;
    bool isTable_ = false;  // rows have begun and no text outside came since
    std::string instruction_;
};

RtfContents Reader::read() {
    for (;;) {
        const RtfToken token = lexer_.next();
        if (token.kind == RtfToken::Kind::End)
            break;
        const bool isCharacter = token.isCharacter();
        if (token.kind == RtfToken::Kind::Open)
            open();
        else if (token.kind == RtfToken::Kind::Close)
            close();
        else if (token.kind == RtfToken::Kind::Word)
            word(token);
        else if (token.kind == RtfToken::Kind::Symbol)
            symbol(token);
        else if (isCharacter && token.byte >= 0)
            byte(token.byte);
        if (states_.empty())
            break;
    }
    flush();
    contents_.textBehind = isBehind();
    if (contents_.text.ends_with(u'\r')) {
        contents_.text.pop_back();
        for (RtfContents::Part& label : contents_.labels) {
            label.begin = std::min(label.begin, contents_.text.size());
            label.length = std::min(label.length, contents_.text.size() - label.begin);
        }
    }
    return std::move(contents_);
}

// Blanks, NULs and braces are nothing.
bool Reader::isBehind() const {
    const std::string_view rest = bytes_.substr(std::min(lexer_.offset(), bytes_.size()));
    return std::any_of(rest.begin(), rest.end(), [](char c) {
        return static_cast<unsigned char>(c) > 0x20 && c != '{' && c != '}';
    });
}

void Reader::open() {
    flush();
    State inner;
    if (!states_.empty()) {
        State& outer = state();
        outer.started = true;
        ++outer.children;
        inner = outer;
        inner.started = inner.starred = inner.isLabel = false;
        inner.children = 0;
        // The first of the two ways to say it is for readers without Unicode.
        if (outer.part == Part::Upr)
            inner.part = outer.children == 1 ? Part::Nothing : outer.around;
    }
    states_.push_back(inner);
}

void Reader::close() {
    flush();
    const State closed = state();
    states_.pop_back();
    if (closed.isLabel)
        contents_.labels.push_back({closed.labelBegin, contents_.text.size() - closed.labelBegin});
    // An aside is counted once, in whichever group its words are.
    if (!states_.empty() && closed.counter == nullptr && closed.part == Part::Aside &&
        state().part == Part::Aside)
        state().counter = nullptr;
    if (closed.part == Part::Instruction && !states_.empty() && state().part != Part::Instruction) {
        if (leadsOut(instruction_))
            ++contents_.links;
        instruction_.clear();
    }
}

void Reader::word(const RtfToken& token) {
    flush();
    State& here = state();
    const bool isFirst = !here.started;
    here.started = true;
    if (isFirst)
        begin(token.name);
    if (here.part == Part::Fonts)
        return fonts_.tableWord(token);
    if (token.name == "u" && token.hasNumber) {
        const auto unit = static_cast<char16_t>(static_cast<std::uint32_t>(token.number) & 0xFFFFU);
        character(unit == u'\u2028' || unit == u'\u2029' ? u'\v' : unit);
        takeStandIns(lexer_, here.skip);
        return;
    }
    formatting(token);
    if (here.part == Part::Body && inTable_ && token.name == "row") {
        if (!isTable_)
            ++contents_.tables;
        ++contents_.tableRows;
        isTable_ = true;
    }
    for (const Spelling& spelling : kCharacters) {
        if (token.name == spelling.word)
            character(spelling.character);
    }
}

// The first word of a group tells what the group is.
void Reader::begin(std::string_view name) {
    State& here = state();
    if (here.part == Part::Nothing || here.part == Part::Fonts || here.part == Part::Instruction)
        return;
    if (name == "pntext" || name == "listtext") {
        here.isLabel = here.part == Part::Body && !here.inLabel;
        here.inLabel = true;
        here.labelBegin = contents_.text.size();
        return;
    }
    for (const Destination& destination : kDestinations) {
        if (destination.word == name)
            return take(destination);
    }
    if (here.starred || std::find(kNothing.begin(), kNothing.end(), name) != kNothing.end())
        here.part = Part::Nothing;
}

void Reader::take(const Destination& destination) {
    State& here = state();
    here.around = here.part;
    if (destination.part != Part::Body)
        here.part = destination.part;
    if (destination.part == Part::Aside)
        here.counter = destination.counter;
    else if (destination.counter != nullptr)
        ++(contents_.*destination.counter);
}

void Reader::formatting(const RtfToken& token) {
    State& here = state();
    if (token.name == "f") {
        here.font = token.number;
    } else if (token.name == "plain") {
        here.font = -1;
        here.isHidden = here.isDeleted = false;
    } else if (token.name == "v" || token.name == "deleted") {
        (token.name == "v" ? here.isHidden : here.isDeleted) =
            !token.hasNumber || token.number != 0;
    } else if (token.name == "uc") {
        here.skip = token.hasNumber ? token.number : 1;
    } else if (token.name == "pard") {
        inTable_ = inTable_ && here.part != Part::Body;
    } else if (token.name == "intbl" || token.name == "itap") {
        inTable_ = token.name == "intbl" || token.number > 0;
    } else {
        fonts_.word(token);
    }
}

void Reader::symbol(const RtfToken& token) {
    State& here = state();
    switch (token.byte) {
        case '*':
            here.starred = here.starred || !here.started;
            return;
        case '~':
            return character(u'\u00A0');
        case '_':
            return character(u'\u2011');
        case '-':
            return;
        case '\r':
        case '\n':
            return character(u'\r');
        case '\t':
            return character(u'\t');
        case '{':
        case '}':
        case '\\':
            return byte(token.byte);
        default:
            return;
    }
}

void Reader::byte(int value) {
    State& here = state();
    here.started = true;
    if (here.part == Part::Instruction)
        instruction_ += static_cast<char>(value);
    if (here.part == Part::Aside)
        return character(static_cast<char16_t>(value));
    if (here.part != Part::Body || isOutOfSight())
        return;
    const unsigned page = fonts_.codePage(here.font);
    if (page != pendingPage_)
        flush();
    pendingPage_ = page;
    pending_ += static_cast<char>(value);
    isTable_ = isTable_ && inTable_;
}

void Reader::character(char16_t c) {
    State& here = state();
    if (here.part == Part::Body && isOutOfSight())
        return;
    if (here.part == Part::Aside && here.counter != nullptr && isWordCharacter(c)) {
        ++(contents_.*here.counter);
        here.counter = nullptr;
    }
    if (here.part != Part::Body)
        return;
    flush();
    contents_.text += c;
    isTable_ = isTable_ && (inTable_ || c == u'\r');
}

bool Reader::isOutOfSight() {
    const bool isOut = state().isHidden || state().isDeleted;
    contents_.hidden = contents_.hidden || isOut;
    return isOut;
}

void Reader::flush() {
    if (pending_.empty())
        return;
    const AnsiCodec* codec = isAscii(pending_) ? nullptr : codePage(pendingPage_);
    contents_.text += (codec != nullptr ? *codec : windows1252()).decode(pending_);
    pending_.clear();
}

}  // namespace

RtfContents readRtf(std::string_view bytes) {
    return Reader(bytes).read();
}

}  // namespace melvorin
