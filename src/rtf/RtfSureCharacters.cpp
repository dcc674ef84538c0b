#include "rtf/RtfSureCharacters.h"

#include <algorithm>
#include <vector>

#include "base/CodePages.h"
#include "rtf/RtfCodePages.h"
#include "rtf/RtfLexer.h"
#include "rtf/RtfWords.h"

namespace melvorin {
namespace {

// More stand-ins no sound document has.
constexpr std::int32_t kMaxSkip = 16;

struct State {
    bool started = false;
    bool isFontTable = false;
    bool isText = true;
    std::int32_t font = -1;
    std::int32_t skip = 1;
};

class SureWriter {
  public:
    explicit SureWriter(const std::string& rtf) : rtf_(rtf), lexer_(rtf) {}

    std::string run();

  private:
    void other(const RtfToken& token);
    void word(const RtfToken& token);
    void byte(const RtfToken& token);
    void flush();

    const std::string& rtf_;
    RtfLexer lexer_;
    std::string out_;
    std::size_t copied_ = 0;
    std::vector<State> states_;
    RtfFonts fonts_;
    std::int32_t missing_ = 0;  // stand-ins still to come behind a \u

    // A run of text whose bytes are not sure.
    std::string run_;
    std::size_t runBegin_ = 0;
    std::size_t runEnd_ = 0;
};

bool isByte(const RtfToken& token) {
    return token.kind == RtfToken::Kind::Byte ||
           (token.kind == RtfToken::Kind::Hex && token.byte >= 0) || token.isSymbol('{') ||
           token.isSymbol('}') || token.isSymbol('\\');
}

std::string SureWriter::run() {
    do {
        const RtfToken token = lexer_.next();
        if (token.kind == RtfToken::Kind::End)
            break;
        if (token.kind == RtfToken::Kind::Break)
            continue;
        const bool isCharacter = token.isCharacter();
        if (isCharacter && missing_ > 0) {
            --missing_;
        } else if (isByte(token) && !states_.empty()) {
            missing_ = 0;
            byte(token);
        } else {
            flush();
            other(token);
        }
    } while (!states_.empty());
    return out_.append(rtf_, copied_);
}

void SureWriter::other(const RtfToken& token) {
    if (!token.isWord("bin"))
        missing_ = 0;
    if (token.kind == RtfToken::Kind::Open) {
        State inner = states_.empty() ? State{} : states_.back();
        if (!states_.empty())
            states_.back().started = true;
        inner.started = false;
        states_.push_back(inner);
    } else if (token.kind == RtfToken::Kind::Close) {
        states_.pop_back();
    } else if (token.kind == RtfToken::Kind::Word) {
        word(token);
    } else if (token.isSymbol('*') && !states_.back().started) {
        states_.back().isText = false;
    }
}

void SureWriter::word(const RtfToken& token) {
    State& here = states_.back();
    if (!here.started && isDestination(token.name)) {
        here.isFontTable = token.name == "fonttbl";
        here.isText = here.isText && isTextDestination(token.name);
    }
    here.started = true;
    if (here.isFontTable)
        return fonts_.tableWord(token);
    if (token.name == "f")
        here.font = token.number;
    else if (token.name == "plain")
        here.font = -1;
    else if (token.name == "uc")
        here.skip = token.hasNumber ? token.number : 1;
    else if (token.name == "u")
        missing_ = here.skip;
    else
        fonts_.word(token);
}

void SureWriter::byte(const RtfToken& token) {
    const State& here = states_.back();
    states_.back().started = true;
    if (!here.isText || fonts_.isSure(here.font))
        return;
    if (run_.empty())
        runBegin_ = token.begin;
    run_ += static_cast<char>(token.byte);
    runEnd_ = token.end;
}

void SureWriter::flush() {
    if (run_.empty())
        return;
    const State& here = states_.back();
    const AnsiCodec* const codec = isAscii(run_) ? nullptr : codePage(fonts_.codePage(here.font));
    if (codec != nullptr && here.skip >= 0 && here.skip <= kMaxSkip) {
        out_.append(rtf_, copied_, runBegin_ - copied_);
        for (const char16_t c : codec->decode(run_)) {
            if (c == u'\\' || c == u'{' || c == u'}') {
                out_ += '\\';
                out_ += static_cast<char>(c);
            } else if (c < 0x80) {
                out_ += static_cast<char>(c);
            } else {
                out_ += "\\u" + std::to_string(static_cast<std::int16_t>(c));
                out_ +=
                    here.skip == 0 ? " " : std::string(static_cast<std::size_t>(here.skip), '?');
            }
        }
        copied_ = runEnd_;
    }
    run_.clear();
}

}  // namespace

std::string withSureCharacters(const std::string& rtf) {
    return SureWriter(rtf).run();
}

}  // namespace melvorin
