// What the system says of an error.
#pragma once

#include "platform/Win.h"

namespace melvorin {

// A sentence for a code of GetLastError.
Text systemErrorSentence(DWORD error);

}  // namespace melvorin
