// What the rich-text control asks its host about objects: pictures have a place to be, everything
// else is refused.
#pragma once

#include <richedit.h>
#include <richole.h>
#include "platform/Win.h"

namespace melvorin {

// The one answer for all controls, for EM_SETOLECALLBACK. Without a callback the newer controls
// drop every picture that they load. It outlives them; nobody owns it.
IRichEditOleCallback* picturesOnly();

}  // namespace melvorin
