// The machine's ANSI code page as an AnsiCodec.
#pragma once

#include "base/TextCodec.h"

namespace melvorin {

const AnsiCodec& systemAnsiCodec();

}  // namespace melvorin
