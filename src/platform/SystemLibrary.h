// Libraries that are loaded during the run: they come from the system's own folder, whatever lies
// beside the program, in the current folder or in PATH.
#pragma once

#include "platform/Win.h"

namespace melvorin {

// From here on no library is looked for outside the system's folder, also by the libraries that the
// system loads for itself. Where Windows lacks the newer call, at least the current folder is left
// out.
void searchOnlySystemFolder();

// The library of that file name, for the rest of the run; null when the system has none.
HMODULE systemLibrary(const wchar_t* fileName);

// A function of it; null when the library or the function is missing.
template <class Function>
Function systemFunction(const wchar_t* fileName, const char* function) {
    const HMODULE library = systemLibrary(fileName);
    return library == nullptr ? nullptr
                              : reinterpret_cast<Function>(
                                    reinterpret_cast<void*>(::GetProcAddress(library, function)));
}

}  // namespace melvorin
