// The encodings of texts by the names that users give them.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/Text.h"
#include "base/TextCodec.h"

namespace melvorin {

struct NamedEncoding {
    // Marks are beside it: a UTF-16 text may have none.
    TextEncoding encoding = TextEncoding::Utf8;
    bool wantsMark = false;            // written with a byte-order mark even where it came without
    const AnsiCodec* codec = nullptr;  // of Ansi; lives for the whole run
};

// "utf-8", "utf-8-bom", "utf-16le", "utf-16be", the number of a code page, "windows-1251", "cp437",
// "iso-8859-2", or one of the names that knownEncodings lists. Capitals do not count. Nothing for
// what this machine does not know.
std::optional<NamedEncoding> encodingNamed(TextView name);

// The names as a phrase for the user.
Text knownEncodings();

}  // namespace melvorin
