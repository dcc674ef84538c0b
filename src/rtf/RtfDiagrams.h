// Chord diagrams in older documents.
#pragma once

#include <string>

namespace melvorin {

// Some programs take the faces of chord diagrams for symbol fonts and write their characters as
// U+F020 to U+F0FF. Returns the document with these faces in the Latin character set and with the
// characters that are meant, so that every control shows them and the dictionary knows them. Other
// symbol fonts stay. Linear in its size.
std::string withPlainDiagrams(std::string rtf);

}  // namespace melvorin
