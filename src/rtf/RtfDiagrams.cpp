#include "rtf/RtfDiagrams.h"

#include <set>

#include "base/DiagramFont.h"
#include "base/Hex.h"
#include "base/Text.h"
#include "rtf/RtfWalk.h"

namespace melvorin {
namespace {

constexpr std::int32_t kSymbolCharset = 2;

class DiagramWriter {
  public:
    explicit DiagramWriter(const std::string& rtf) : walk_(rtf) {}

    std::string run();

  private:
    void fontWord(const RtfToken& token);
    void fontText(const RtfToken& token);
    void endEntry();
    void character(const RtfToken& token);

    RtfWalk walk_;
    std::set<std::int32_t> diagramFonts_;

    // The entry of the font table at hand. Groups in one are no part of its name.
    std::size_t entryDepth_ = 0;
    std::int32_t number_ = -1;
    RtfToken charset_;
    Text name_;
};

std::string DiagramWriter::run() {
    do {
        const RtfToken token = walk_.next();
        if (token.kind == RtfToken::Kind::End)
            break;
        if (token.kind == RtfToken::Kind::Close && walk_.isFontTable() &&
            walk_.depth() <= entryDepth_)
            endEntry();
        if (token.isWord("u") && !walk_.isFontTable()) {
            character(token);
            continue;
        }
        walk_.follow(token);
        if (token.kind == RtfToken::Kind::Word && walk_.isFontTable())
            fontWord(token);
        else if (token.kind == RtfToken::Kind::Byte && walk_.isFontTable())
            fontText(token);
    } while (!walk_.isOutside());
    return walk_.result();
}

void DiagramWriter::fontWord(const RtfToken& token) {
    if (token.name == "f") {
        endEntry();
        number_ = token.number;
        entryDepth_ = walk_.depth();
    } else if (token.name == "fcharset") {
        charset_ = token;
    }
}

void DiagramWriter::fontText(const RtfToken& token) {
    if (number_ < 0 || walk_.depth() != entryDepth_)
        return;
    if (token.byte == ';')
        endEntry();
    else
        name_ += static_cast<char16_t>(token.byte);
}

void DiagramWriter::endEntry() {
    if (isDiagramFace(name_) && charset_.number == kSymbolCharset) {
        diagramFonts_.insert(number_);
        walk_.replace(charset_.begin, charset_.end, "\\fcharset0 ");
    }
    number_ = -1;
    charset_ = {};
    name_.clear();
}

void DiagramWriter::character(const RtfToken& token) {
    const std::size_t end = walk_.follow(token);
    const std::uint32_t unit = static_cast<std::uint32_t>(token.number) & 0xFFFFU;
    if (unit < 0xF020 || unit > 0xF0FF || !diagramFonts_.contains(walk_.font()))
        return;
    std::string byte = "\\'";
    appendHex(byte, unit, 2);
    walk_.replace(token.begin, end, byte);
}

}  // namespace

std::string withPlainDiagrams(std::string rtf) {
    // Few documents have a symbol font at all.
    if (rtf.find("\\fcharset2") == std::string::npos)
        return rtf;
    return DiagramWriter(rtf).run();
}

}  // namespace melvorin
