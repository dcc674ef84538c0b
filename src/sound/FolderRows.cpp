#include "sound/FolderRows.h"

#include <algorithm>

#include "base/LetterCase.h"
#include "base/Paths.h"

namespace melvorin {
namespace {

constexpr std::size_t kIndent = 2;  // blanks for each level

// "C:", "\\server\share": there is nothing above them.
bool isRoot(TextView folder) {
    const TextView parent = folderPart(folder);
    return parent.empty() || (folder.starts_with(u"\\\\") && parent.rfind(u'\\') == 1);
}

}  // namespace

void sortNames(std::vector<Text>& names) {
    std::sort(names.begin(), names.end(), [](const Text& left, const Text& right) {
        const Text a = asciiLowerCase(left);
        const Text b = asciiLowerCase(right);
        return a != b ? a < b : left < right;
    });
}

FolderRows folderRows(TextView folder, std::vector<Text> subfolders) {
    FolderRows list;
    while (folder.size() > 1 && folder.ends_with(u'\\'))
        folder.remove_suffix(1);
    for (TextView path = folder;; path = folderPart(path)) {
        const bool root = isRoot(path);
        FolderRow row{Text(path), Text(path)};
        if (!root)
            row.caption = fileNamePart(path);
        else if (path.ends_with(u':'))  // a drive's name alone would be its current folder
            row.caption = row.path += u'\\';
        list.rows.push_back(std::move(row));
        if (root)
            break;
    }
    std::reverse(list.rows.begin(), list.rows.end());
    list.current = list.rows.size() - 1;
    sortNames(subfolders);
    for (const Text& name : subfolders)
        list.rows.push_back({name, joinPath(list.rows[list.current].path, name)});
    for (std::size_t i = 0; i < list.rows.size(); ++i)
        list.rows[i].caption.insert(0, kIndent * std::min(i, list.current + 1), u' ');
    return list;
}

}  // namespace melvorin
