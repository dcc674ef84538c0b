// The one place where windows.h is included, and the bridge between its strings and ours.
#pragma once

#include <windows.h>
// Common controls and the rest need windows.h first.
#include <commctrl.h>
#include <shellapi.h>

#include "base/Text.h"

namespace melvorin {

static_assert(sizeof(wchar_t) == sizeof(char16_t), "Text is handed to Windows as it stands");

// The bridges below reinterpret pointers; the Windows build is compiled without strict aliasing.
inline const wchar_t* wide(const Text& text) {
    return reinterpret_cast<const wchar_t*>(text.c_str());
}
inline const wchar_t* wide(const char16_t* text) {
    return reinterpret_cast<const wchar_t*>(text);
}
inline wchar_t* wideBuffer(Text& text) {
    return reinterpret_cast<wchar_t*>(text.data());
}
inline TextView textOf(const wchar_t* wideText) {
    return reinterpret_cast<const char16_t*>(wideText);
}

// Packs a pointer for a message parameter.
template <class T>
LPARAM lparamOf(T* pointer) {
    return reinterpret_cast<LPARAM>(pointer);
}

}  // namespace melvorin
