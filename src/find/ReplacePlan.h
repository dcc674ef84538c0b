// Replacements made in memory, as one change of a Rich Text document.
#pragma once

#include <vector>

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

  private:
    GapText text_;
    std::vector<LineRewrite> parts_;
    // Of the last part, in the text as it is now.
    std::size_t partBegin_ = 0;
};

}  // namespace melvorin
