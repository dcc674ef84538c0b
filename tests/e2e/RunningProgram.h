// The windows of a Melvorin that runs as a program of its own.
#pragma once

#include "platform/Win.h"

namespace melvorin {

inline constexpr ULONGLONG kLimitMs = 60'000;
// After which a key that has not come counts as lost, and is tried again.
inline constexpr ULONGLONG kSoonMs = 2'000;

inline HWND mainWindow() {
    const HWND window = ::FindWindowW(L"MelvorinForm1", nullptr);
    return window != nullptr && ::IsWindowVisible(window) ? window : nullptr;
}

inline HWND editor() {
    const HWND edit = ::FindWindowExW(mainWindow(), nullptr, L"RICHEDIT50W", nullptr);
    return edit != nullptr ? edit : ::FindWindowExW(mainWindow(), nullptr, L"RichEdit20W", nullptr);
}

// Until the condition holds; false when it does not in a minute, or within another limit.
template <class Condition>
bool waitFor(Condition condition, ULONGLONG limitMs = kLimitMs) {
    const ULONGLONG limit = ::GetTickCount64() + limitMs;
    while (!condition()) {
        if (::GetTickCount64() > limit)
            return false;
        ::Sleep(20);
    }
    return true;
}

}  // namespace melvorin
