#include "rtf/RtfLexer.h"

#include <algorithm>
#include <limits>

#include "base/Hex.h"

namespace melvorin {

namespace {

bool isLetter(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

}  // namespace

RtfToken RtfLexer::next() {
    RtfToken token;
    token.begin = token.end = at_;
    if (at_ >= source_.size())
        return token;
    const char c = source_[at_];
    if (c == '\\')
        return escape();
    token.end = ++at_;
    token.byte = static_cast<unsigned char>(c);
    if (c == '{')
        token.kind = RtfToken::Kind::Open;
    else if (c == '}')
        token.kind = RtfToken::Kind::Close;
    else if (c == '\r' || c == '\n')
        token.kind = RtfToken::Kind::Break;
    else
        token.kind = RtfToken::Kind::Byte;
    return token;
}

RtfToken RtfLexer::escape() {
    RtfToken token;
    token.begin = at_++;
    token.kind = RtfToken::Kind::Symbol;
    if (at_ >= source_.size()) {
        token.cut = true;
    } else if (isLetter(source_[at_])) {
        word(token);
    } else if (source_[at_] != '\'') {
        token.byte = static_cast<unsigned char>(source_[at_++]);
    } else {
        token.kind = RtfToken::Kind::Hex;
        token.cut = source_.size() - at_ < 3;
        const int high = token.cut ? -1 : hexDigit(source_[at_ + 1]);
        const int low = token.cut ? -1 : hexDigit(source_[at_ + 2]);
        token.byte = high < 0 || low < 0 ? -1 : high * 16 + low;
        at_ = std::min(at_ + 3, source_.size());
    }
    token.end = at_;
    return token;
}

void RtfLexer::word(RtfToken& token) {
    token.kind = RtfToken::Kind::Word;
    const std::size_t begin = at_;
    while (at_ < source_.size() && isLetter(source_[at_]))
        ++at_;
    token.name = source_.substr(begin, at_ - begin);
    number(token);
    if (at_ < source_.size() && source_[at_] == ' ')
        ++at_;
    if (token.name == "bin")
        rawData(token);
}

void RtfLexer::number(RtfToken& token) {
    const bool negative = at_ < source_.size() && source_[at_] == '-' && isDigitAt(at_ + 1);
    if (!negative && !isDigitAt(at_))
        return;
    at_ += negative ? 1 : 0;
    token.hasNumber = true;
    constexpr std::int64_t limit = std::numeric_limits<std::int32_t>::max();
    std::int64_t value = 0;
    for (; isDigitAt(at_); ++at_) {
        value = value * 10 + (source_[at_] - '0');
        token.overflow = token.overflow || value > limit;
        value = std::min(value, limit);
    }
    token.number = static_cast<std::int32_t>(negative ? -value : value);
}

void RtfLexer::rawData(RtfToken& token) {
    token.data = at_;
    if (token.number <= 0)
        return;
    const auto length = static_cast<std::size_t>(token.number);
    token.cut = length > source_.size() - at_;
    at_ += std::min(length, source_.size() - at_);
}

bool RtfLexer::isDigitAt(std::size_t offset) const {
    return offset < source_.size() && source_[offset] >= '0' && source_[offset] <= '9';
}

std::size_t takeStandIns(RtfLexer& lexer, std::int32_t count) {
    RtfLexer ahead = lexer;
    while (count > 0) {
        const RtfToken next = ahead.next();
        if (next.isCharacter()) {
            lexer = ahead;
            --count;
        } else if (next.kind != RtfToken::Kind::Break && !next.isWord("bin")) {
            break;
        }
    }
    return lexer.offset();
}

}  // namespace melvorin
