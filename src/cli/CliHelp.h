// What the batch tool says of itself.
#pragma once

#include <string_view>

namespace melvorin {

// In UTF-8; lines end in LF.
std::string_view cliHelp();

}  // namespace melvorin
