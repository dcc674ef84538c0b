#include "platform/SystemLibrary.h"

#include "base/Paths.h"

namespace melvorin {

void searchOnlySystemFolder() {
    using Set = BOOL(WINAPI*)(DWORD);
    ::SetDllDirectoryW(L"");
    const auto set = systemFunction<Set>(L"kernel32.dll", "SetDefaultDllDirectories");
    if (set != nullptr)
        set(LOAD_LIBRARY_SEARCH_SYSTEM32 | LOAD_LIBRARY_SEARCH_USER_DIRS);
}

HMODULE systemLibrary(const wchar_t* fileName) {
    Text folder(MAX_PATH, u'\0');
    folder.resize(::GetSystemDirectoryW(wideBuffer(folder), MAX_PATH));
    // By its whole name, which every Windows understands; what it needs itself comes from its
    // folder.
    return folder.empty() ? nullptr
                          : ::LoadLibraryExW(wide(joinPath(folder, textOf(fileName))), nullptr,
                                             LOAD_WITH_ALTERED_SEARCH_PATH);
}

}  // namespace melvorin
