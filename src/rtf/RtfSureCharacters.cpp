#include "rtf/RtfSureCharacters.h"

#include "base/CodePages.h"
#include "rtf/RtfCharacters.h"
#include "rtf/RtfWalk.h"

namespace melvorin {
namespace {

class SureWriter {
  public:
    explicit SureWriter(const std::string& rtf) : walk_(rtf) {}

    std::string run();

  private:
    void byte(const RtfToken& token);
    void flush();

    RtfWalk walk_;
    // A run of text whose bytes are not sure.
    std::string run_;
    std::size_t runBegin_ = 0;
    std::size_t runEnd_ = 0;
};

std::string SureWriter::run() {
    do {
        const RtfToken token = walk_.next();
        if (token.kind == RtfToken::Kind::End)
            break;
        if (token.isByte() && !walk_.isOutside())
            byte(token);
        else if (token.kind != RtfToken::Kind::Break)
            flush();
        walk_.follow(token);
    } while (!walk_.isOutside());
    return walk_.result();
}

void SureWriter::byte(const RtfToken& token) {
    if (!walk_.isText() || walk_.isSure())
        return;
    if (run_.empty())
        runBegin_ = token.begin;
    run_ += static_cast<char>(token.byte);
    runEnd_ = token.end;
}

void SureWriter::flush() {
    if (run_.empty())
        return;
    const AnsiCodec* const codec = isAscii(run_) ? nullptr : codePage(walk_.codePage());
    if (codec != nullptr && walk_.hasSoundSkip()) {
        std::string sure;
        for (const char16_t c : codec->decode(run_)) {
            if (c >= 0x80) {
                appendUnicode(sure, c, walk_.skip());
                continue;
            }
            if (needsBackslash(c))
                sure += '\\';
            sure += static_cast<char>(c);
        }
        walk_.replace(runBegin_, runEnd_, sure);
    }
    run_.clear();
}

}  // namespace

std::string withSureCharacters(const std::string& rtf) {
    return SureWriter(rtf).run();
}

}  // namespace melvorin
