// What of a document does not come through the control.
#pragma once

#include <string_view>

#include "base/Text.h"
#include "rtf/RtfReader.h"

namespace melvorin {

// What a file holds and the control does not, in words for a sentence ("3 pictures, 1 table, 12
// words"); empty when nothing. `file` is read from the file's own bytes, `shown` is the control's
// text after loading, `written` the Rich Text that the control writes back right then: what is
// missing there will be gone from the file after a Save. Blanks, line ends, soft and fixed hyphens,
// and how the cells of a table are kept apart do not count. Linear in the texts.
Text lossInWords(const RtfContents& file, TextView shown, std::string_view written);

// How many words of one text are not in another, each as often as it is there, by the same rules.
std::size_t wordsMissing(TextView wanted, TextView present);

}  // namespace melvorin
