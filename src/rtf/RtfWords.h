// Words of Rich Text by what they do to a group.
#pragma once

#include <string_view>

namespace melvorin {

// Words whose group is something apart from the text around it. In the middle of a group they make
// a control take the rest of the group, or of the document, for that.
bool isDestination(std::string_view word);

// Those of them that are no part of the text: a table in one is complete in itself, or it does not
// count.
bool isAside(std::string_view word);

// Those whose group goes on with the text of the document, in its place.
bool isTextDestination(std::string_view word);

}  // namespace melvorin
