#include "rtf/RtfDiagrams.h"

#include <set>
#include <vector>

#include "base/DiagramFont.h"
#include "base/Hex.h"
#include "base/Text.h"
#include "rtf/RtfLexer.h"

namespace melvorin {
namespace {

constexpr std::int32_t kSymbolCharset = 2;

struct State {
    bool started = false;
    bool isFontTable = false;
    std::int32_t font = -1;  // -1: the document's default
    std::int32_t skip = 1;
};

class DiagramWriter {
  public:
    explicit DiagramWriter(const std::string& rtf) : rtf_(rtf), lexer_(rtf) {}

    std::string run();

  private:
    void word(const RtfToken& token);
    void fontWord(const RtfToken& token);
    void fontText(const RtfToken& token);
    void endEntry();
    void character(const RtfToken& token);
    bool isDiagram() const;
    void replace(std::size_t begin, std::size_t end, const std::string& by) {
        out_.append(rtf_, copied_, begin - copied_).append(by);
        copied_ = end;
    }

    const std::string& rtf_;
    RtfLexer lexer_;
    std::string out_;
    std::size_t copied_ = 0;
    std::vector<State> states_;
    std::set<std::int32_t> diagramFonts_;
    std::int32_t defaultFont_ = 0;

    // The entry of the font table at hand. Groups in one are no part of its name.
    std::size_t entryDepth_ = 0;
    std::int32_t number_ = -1;
    RtfToken charset_;
    Text name_;
};

std::string DiagramWriter::run() {
    for (;;) {
        const RtfToken token = lexer_.next();
        if (token.kind == RtfToken::Kind::End)
            break;
        if (token.kind == RtfToken::Kind::Open) {
            State inner = states_.empty() ? State{} : states_.back();
            inner.started = false;
            states_.push_back(inner);
        } else if (token.kind == RtfToken::Kind::Close) {
            if (states_.back().isFontTable && states_.size() <= entryDepth_)
                endEntry();
            states_.pop_back();
            if (states_.empty())
                break;
        } else if (token.kind == RtfToken::Kind::Word) {
            word(token);
        } else if (token.kind == RtfToken::Kind::Byte) {
            fontText(token);
        }
    }
    return out_.append(rtf_, copied_);
}

void DiagramWriter::word(const RtfToken& token) {
    State& here = states_.back();
    if (!here.started && token.name == "fonttbl")
        here.isFontTable = true;
    here.started = true;
    if (here.isFontTable)
        return fontWord(token);
    if (token.name == "f")
        here.font = token.number;
    else if (token.name == "plain")
        here.font = -1;
    else if (token.name == "deff")
        defaultFont_ = token.number;
    else if (token.name == "uc")
        here.skip = token.hasNumber ? token.number : 1;
    else if (token.name == "u")
        character(token);
}

void DiagramWriter::fontWord(const RtfToken& token) {
    if (token.name == "f") {
        endEntry();
        number_ = token.number;
        entryDepth_ = states_.size();
    } else if (token.name == "fcharset") {
        charset_ = token;
    }
}

void DiagramWriter::fontText(const RtfToken& token) {
    if (!states_.back().isFontTable || number_ < 0 || states_.size() != entryDepth_)
        return;
    if (token.byte == ';')
        endEntry();
    else
        name_ += static_cast<char16_t>(token.byte);
}

void DiagramWriter::endEntry() {
    if (isDiagramFace(name_) && charset_.number == kSymbolCharset) {
        diagramFonts_.insert(number_);
        replace(charset_.begin, charset_.end, "\\fcharset0 ");
    }
    number_ = -1;
    charset_ = {};
    name_.clear();
}

bool DiagramWriter::isDiagram() const {
    const std::int32_t font = states_.back().font;
    return diagramFonts_.contains(font < 0 ? defaultFont_ : font);
}

void DiagramWriter::character(const RtfToken& token) {
    const std::uint32_t unit = static_cast<std::uint32_t>(token.number) & 0xFFFFU;
    if (unit < 0xF020 || unit > 0xF0FF || !isDiagram())
        return;
    const std::size_t end = takeStandIns(lexer_, states_.back().skip);
    std::string byte = "\\'";
    appendHex(byte, unit, 2);
    replace(token.begin, end, byte);
}

}  // namespace

std::string withPlainDiagrams(std::string rtf) {
    // Few documents have a symbol font at all.
    if (rtf.find("\\fcharset2") == std::string::npos)
        return rtf;
    return DiagramWriter(rtf).run();
}

}  // namespace melvorin
