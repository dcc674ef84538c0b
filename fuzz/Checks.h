// What must hold for any text at all. The fuzzers feed it what they invent, the core tests a few
// seeds. A check that fails prints why and aborts.
#pragma once

#include "app/Text.h"

namespace melvorin::fuzz {

// The importer loses nothing, its reports are true, and what it exports comes back.
void checkImport(TextView song);

// The suffix normaliser does what its rows do one after the other.
void checkNormaliser(TextView text);

}  // namespace melvorin::fuzz
