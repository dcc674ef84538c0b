// Font files of several fonts, and fonts that are given table by table.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "base/Files.h"

namespace melvorin {

// The fonts of a collection (".ttc"), each as a file of its own; of any other file itself. Fails
// with a sentence for a damaged collection.
Result<std::vector<std::string>> fontsOf(std::string bytes);

// A font file of its tables, each under its name of four letters; the names are in order.
std::string fontOfTables(const std::vector<std::pair<std::string, std::string>>& tables);

}  // namespace melvorin
