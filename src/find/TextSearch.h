// The search of the editing control, for texts that are in no control.
#pragma once

#include "find/FindReplace.h"

namespace melvorin {

// First match of `what` in `text` at or after `from`; nothing for an empty `what`. Case is folded
// unit by unit; a whole word has neither a letter nor a digit beside it, as in the control.
std::optional<std::size_t> findText(TextView text, TextView what, std::size_t from,
                                    FindOptions options);

// A text in memory with a movable gap, so that replacing matches from its start to its end takes
// linear time.
class GapText : public FindTarget {
  public:
    explicit GapText(TextView text);

    std::optional<Selection> find(TextView what, std::int32_t from, FindOptions options) override;
    void replace(Selection match, TextView with) override;
    Text text() const;

  private:
    void moveGap(std::size_t position);

    Text before_;
    Text after_;  // reversed, so that its start is where characters are cheap to take
};

}  // namespace melvorin
