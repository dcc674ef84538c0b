// The code pages of the machine, by their Windows numbers. The Windows build asks the system, the
// native one iconv; which of the two is settled when the program is linked.
#pragma once

#include "base/TextCodec.h"

namespace melvorin {

// The code page of that number (932, 1251, 20866...); null where the machine has none. What it
// cannot read becomes a substitute, so bytes are in a code page only where encoding what it decodes
// gives them back. The object lives for the whole run. Call it from one thread.
const AnsiCodec* codePage(unsigned number);

}  // namespace melvorin
