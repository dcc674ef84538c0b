#include "rtf/RtfWalk.h"

#include <utility>

#include "rtf/RtfLimits.h"
#include "rtf/RtfWords.h"

namespace melvorin {

std::size_t RtfWalk::follow(const RtfToken& token) {
    if (token.kind == RtfToken::Kind::Open) {
        const Group outer = groups_.empty() ? Group{} : groups_.back();
        if (!groups_.empty())
            groups_.back().started = true;
        groups_.push_back(outer);
        groups_.back().started = false;
    } else if (groups_.empty()) {
        return token.end;
    } else if (token.kind == RtfToken::Kind::Close) {
        groups_.pop_back();
    } else if (token.kind == RtfToken::Kind::Word) {
        return word(token);
    } else if (token.isSymbol('*') && !groups_.back().started) {
        groups_.back().isText = false;
    } else if (token.isCharacter()) {
        groups_.back().started = true;
    }
    return token.end;
}

std::size_t RtfWalk::word(const RtfToken& token) {
    Group& here = groups_.back();
    if (!here.started && isDestination(token.name)) {
        here.isFontTable = token.name == "fonttbl";
        here.isText = here.isText && isTextDestination(token.name);
    }
    here.started = true;
    if (here.isFontTable)
        fonts_.tableWord(token);
    else if (token.name == "f")
        here.font = token.number;
    else if (token.name == "plain")
        here.font = -1;
    else if (token.name == "uc")
        here.skip = token.hasNumber ? token.number : 1;
    else if (token.name == "u")
        return takeStandIns(lexer_, here.skip);
    else
        fonts_.word(token);
    return token.end;
}

bool RtfWalk::hasSoundSkip() const {
    return skip() >= 0 && skip() <= kMaxRtfSkip;
}

void RtfWalk::replace(std::size_t begin, std::size_t end, std::string_view by) {
    out_.append(source_.substr(copied_, begin - copied_)).append(by);
    copied_ = end;
}

std::string RtfWalk::result() {
    return std::move(out_.append(source_.substr(copied_)));
}

}  // namespace melvorin
