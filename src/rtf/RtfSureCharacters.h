// Characters that not every control reads alike.
#pragma once

#include <string>

namespace melvorin {

// Returns the document with characters as Unicode where they are bytes of a code page that some
// controls do not go by: the document's own, in a font that names none, and those of other systems.
// Linear in its size. From one thread.
std::string withSureCharacters(const std::string& rtf);

}  // namespace melvorin
