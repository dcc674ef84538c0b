#include "platform/DiagramFonts.h"

#include "base/Paths.h"
#include "platform/Handles.h"

namespace melvorin {

std::size_t DiagramFonts::load(TextView programFolder) {
    const Text folder = joinPath(programFolder, u"Fonts");
    WIN32_FIND_DATAW found{};
    UniqueSearch search(joinPath(folder, u"*.ttf"), found);
    if (!search)
        return 0;
    do {
        const Text file = joinPath(folder, textOf(found.cFileName));
        if (::AddFontResourceExW(wide(file), FR_PRIVATE, nullptr) > 0)
            files_.push_back(file);
    } while (search.next());
    return files_.size();
}

DiagramFonts::~DiagramFonts() {
    for (const Text& file : files_)
        ::RemoveFontResourceExW(wide(file), FR_PRIVATE, nullptr);
}

}  // namespace melvorin
