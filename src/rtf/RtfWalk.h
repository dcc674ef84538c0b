// A walk through Rich Text source that rewrites some of its characters and leaves the rest as it
// is: which group it is in, whether that is text, and how its characters are written there.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "rtf/RtfCodePages.h"
#include "rtf/RtfLexer.h"

namespace melvorin {

class RtfWalk {
  public:
    // The source outlives the walk.
    explicit RtfWalk(std::string_view source) : source_(source), lexer_(source) {}

    // The next token; it counts when `follow` is called with it. So whoever collects text can end
    // that before a word changes its font.
    RtfToken next() { return lexer_.next(); }
    // The offset behind the token, and behind its stand-ins where it is a \u of the text.
    std::size_t follow(const RtfToken& token);
    // Before the first brace and behind the last.
    bool isOutside() const { return groups_.empty(); }

    // Of the group at hand, so not outside:
    bool isText() const { return groups_.back().isText; }
    bool isFontTable() const { return groups_.back().isFontTable; }
    std::size_t depth() const { return groups_.size(); }
    // The number of the font; what it means, RtfFonts tells.
    std::int32_t font() const { return fonts_.number(groups_.back().font); }
    unsigned codePage() const { return fonts_.codePage(groups_.back().font); }
    bool isSure() const { return fonts_.isSure(groups_.back().font); }
    // Stand-ins behind a \u.
    std::int32_t skip() const { return groups_.back().skip; }
    // False where \uc says what no sound document does, and nothing can be written as Unicode.
    bool hasSoundSkip() const;

    // A part of the source, in the order of the source, and what stands there instead.
    void replace(std::size_t begin, std::size_t end, std::string_view by);
    // The source as it is now. Ends the walk.
    std::string result();

  private:
    struct Group {
        bool started = false;  // something but an opening \* was seen
        bool isText = true;
        bool isFontTable = false;
        std::int32_t font = -1;  // -1: the document's default
        std::int32_t skip = 1;
    };
    std::size_t word(const RtfToken& token);

    std::string_view source_;
    RtfLexer lexer_;
    std::vector<Group> groups_;
    RtfFonts fonts_;
    std::string out_;
    std::size_t copied_ = 0;
};

}  // namespace melvorin
