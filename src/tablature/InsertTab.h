// Insert Tablature: puts a tablature block in place of the selection.
#pragma once

#include "base/Editor.h"
#include "tablature/TabBlock.h"

namespace melvorin {

// What the user chose in the window; without an order there is no block yet.
struct TabChoice {
    int instrument = 0;  // as `tabForm` counts
    std::optional<StringOrder> order;
    int dividers = kMostDividers;
};

// Lives as long as the program: a screen that no pattern is for gets the last one used.
class TabWriter {
  public:
    // What is to stand in place of the selection whose start is `caret`, in a text of the editing
    // control: the block, behind a line break where the caret's line is not empty. Nothing
    // when the choice gives no block.
    std::optional<Text> insertion(const TabChoice& choice, TextView screenWidth, TextView chars,
                                  std::size_t caret);

    // Replaces the editor's selection by the block, in the format at the caret; where that is a
    // diagram font, in `textFace`. False when the choice gives no block; nothing has changed then.
    bool insert(Editor& editor, const TabChoice& choice, TextView screenWidth, TextView textFace);

  private:
    // kept: former-pattern
    Text X1_;  // the staff pattern in use
};

}  // namespace melvorin
