// Replacements made in memory, as one change of a Rich Text document.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "chords/FollowText.h"
#include "find/TextSearch.h"
#include "rtf/RtfMap.h"

namespace melvorin {

// Takes the replacements of replaceAll, whose matches go from the start of the text to its end, and
// knows for every new character which old one gives it its format: the first one replaced, as in
// the control.
class ReplacePlan : public FindTarget {
  public:
    explicit ReplacePlan(TextView text) : text_(text) {}

    std::optional<Selection> find(TextView what, std::int32_t from, FindOptions options) override {
        return text_.find(what, from, options);
    }
    void replace(Selection match, TextView with) override;

    // The text with the replacements.
    Text text() const { return text_.text(); }
    // What RtfMap::rewrite takes; all colours stay.
    const std::vector<LineRewrite>& parts() const { return parts_; }
    // The same as edits of the old text.
    std::vector<TextEdit> edits() const;
    // Where a character of the text as it is now was in the old one; nothing for what a
    // replacement has put in, and for what is in front of the last one.
    std::optional<std::size_t> formerPlace(std::size_t position) const;

  private:
    // Where the last part ends, now and in the old text; 0 before the first.
    std::size_t partEnd() const {
        return parts_.empty() ? 0 : partBegin_ + parts_.back().text.size();
    }
    std::size_t formerEnd() const {
        return parts_.empty() ? 0 : parts_.back().start + parts_.back().length;
    }

    GapText text_;
    std::vector<LineRewrite> parts_;
    // Of the last part, in the text as it is now.
    std::size_t partBegin_ = 0;
};

// The same for any edits of `text`, positions of which they are: what is put in between takes the
// format of the character in front of it in its line, or else behind it, that is no picture.
// Nothing where there is none such, or where an edit brings its formats from another place.
std::optional<std::vector<LineRewrite>> partsOf(
    TextView text, const std::vector<FollowEdit>& edits,
    const std::function<bool(std::size_t position)>& isPicture);

}  // namespace melvorin
