// The windows of a Melvorin that runs as a program of its own.
#pragma once

#include "platform/Win.h"

namespace melvorin {

inline constexpr ULONGLONG kLimitMs = 60'000;

inline HWND mainWindow() {
    const HWND window = ::FindWindowW(L"MelvorinForm1", nullptr);
    return window != nullptr && ::IsWindowVisible(window) ? window : nullptr;
}

inline HWND editor() {
    const HWND edit = ::FindWindowExW(mainWindow(), nullptr, L"RICHEDIT50W", nullptr);
    return edit != nullptr ? edit : ::FindWindowExW(mainWindow(), nullptr, L"RichEdit20W", nullptr);
}

// Until the condition holds; false when it does not in a minute.
template <class Condition>
bool waitFor(Condition condition) {
    const ULONGLONG limit = ::GetTickCount64() + kLimitMs;
    while (!condition()) {
        if (::GetTickCount64() > limit)
            return false;
        ::Sleep(20);
    }
    return true;
}

}  // namespace melvorin
