// Where a document comes from and where it goes to: its file, and what is known of that.
#pragma once

#include <optional>

#include "app/FileMark.h"
#include "base/Text.h"
#include "base/TextFormat.h"

namespace melvorin {

struct DocumentOrigin {
    Text path;                     // empty for an untitled document
    std::optional<FileMark> mark;  // what the file held when it was read or written, if known
    TextFormat format;             // how the document is written as plain text
    Text loss;                     // what of the file the editor does not have, in words
};

}  // namespace melvorin
