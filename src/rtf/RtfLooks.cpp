#include "rtf/RtfLooks.h"

#include <algorithm>

#include "rtf/RtfLexer.h"

namespace melvorin {
namespace {

constexpr int kLeastHalfPoints = 2;
constexpr int kMostHalfPoints = 2 * 1638;

void follow(RtfLook& look, const RtfToken& word) {
    const bool on = !word.hasNumber || word.number != 0;
    if (word.name == "fs")
        look.halfPoints = std::clamp(word.number, kLeastHalfPoints, kMostHalfPoints);
    else if (word.name == "b")
        look.bold = on;
    else if (word.name == "i")
        look.italic = on;
    else if (word.name == "ul" || word.name == "uld" || word.name == "uldb" || word.name == "ulw")
        look.underline = on;
    else if (word.name == "ulnone")
        look.underline = false;
    else if (word.name == "plain")
        look = RtfLook{.alignment = look.alignment};
    else if (word.name == "pard" || word.name == "ql" || word.name == "qj")
        look.alignment = Alignment::Left;
    else if (word.name == "qc")
        look.alignment = Alignment::Center;
    else if (word.name == "qr")
        look.alignment = Alignment::Right;
}

}  // namespace

std::vector<RtfLookChange> looksOf(std::string_view rtf) {
    std::vector<RtfLookChange> changes{{}};
    std::vector<RtfLook> outer;
    RtfLook look;
    RtfLexer lexer(rtf);
    for (RtfToken token = lexer.next(); token.kind != RtfToken::Kind::End; token = lexer.next()) {
        if (token.kind == RtfToken::Kind::Open) {
            outer.push_back(look);
        } else if (token.kind == RtfToken::Kind::Close && !outer.empty()) {
            look = outer.back();
            outer.pop_back();
        } else if (token.kind == RtfToken::Kind::Word) {
            follow(look, token);
        }
        if (look != changes.back().look)
            changes.push_back({token.end, look});
    }
    return changes;
}

}  // namespace melvorin
