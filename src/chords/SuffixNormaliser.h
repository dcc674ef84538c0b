// Chord suffixes in the one spelling of the house.
#pragma once

#include "base/Text.h"

namespace melvorin {

// The text after every row of `suffixRows`, in their order, has replaced what it finds, with the
// end marker behind the text meanwhile; it is then taken out wherever it stands, and behind the
// text also where a row took its blank. The rows look at
// neither lines nor words: lyrics that read like a suffix are rewritten too.
//
// The result is the one of running the rows over the whole text one after the other, but the work
// is in proportion to the length of the text. Throws only for want of memory.
Text normaliseSuffixes(TextView text);

}  // namespace melvorin
