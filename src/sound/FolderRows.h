// The folder list of the player as text: the way from the root to a folder, and what is in it.
#pragma once

#include <vector>

#include "base/Text.h"

namespace melvorin {

struct FolderRow {
    Text caption;  // the folder's name, indented by its depth
    Text path;
};

struct FolderRows {
    std::vector<FolderRow> rows;
    std::size_t current = 0;  // the row of the folder itself
};

// `folder` is absolute; `subfolders` are the names of the folders in it, in any order.
FolderRows folderRows(TextView folder, std::vector<Text> subfolders);

// Sorts file and folder names for a list: without regard to the case of ASCII letters.
void sortNames(std::vector<Text>& names);

}  // namespace melvorin
