// Move-only owners of Windows handles, and guards that undo what they did.
#pragma once

#include <utility>

#include "platform/Win.h"

namespace melvorin {

// Owns one handle; `Close` is called with it once, at the end. `Empty` is the value that means
// "none" for this kind of handle.
template <class Handle, auto Close, Handle Empty = Handle{}>
class Unique {
  public:
    Unique() = default;
    explicit Unique(Handle handle) : handle_(handle) {}
    Unique(Unique&& other) noexcept : handle_(std::exchange(other.handle_, Empty)) {}
    Unique& operator=(Unique&& other) noexcept {
        if (this != &other)
            reset(std::exchange(other.handle_, Empty));
        return *this;
    }
    Unique(const Unique&) = delete;
    Unique& operator=(const Unique&) = delete;
    ~Unique() { reset(); }

    Handle get() const { return handle_; }
    explicit operator bool() const { return handle_ != Empty; }
    // Whoever takes it owns it.
    Handle release() { return std::exchange(handle_, Empty); }
    void reset(Handle handle = Empty) {
        if (handle_ != Empty)
            Close(handle_);
        handle_ = handle;
    }

  private:
    Handle handle_ = Empty;
};

using UniqueBitmap = Unique<HBITMAP, ::DeleteObject>;
using UniqueBrush = Unique<HBRUSH, ::DeleteObject>;
using UniqueFont = Unique<HFONT, ::DeleteObject>;
using UniqueRegion = Unique<HRGN, ::DeleteObject>;
using UniqueIcon = Unique<HICON, ::DestroyIcon>;
using UniqueMenu = Unique<HMENU, ::DestroyMenu>;
using UniqueImageList = Unique<HIMAGELIST, ::ImageList_Destroy>;
using UniqueAccelerators = Unique<HACCEL, ::DestroyAcceleratorTable>;
using UniqueMemoryDc = Unique<HDC, ::DeleteDC>;
using UniqueRegistryKey = Unique<HKEY, ::RegCloseKey>;

// A file handle: its "none" is INVALID_HANDLE_VALUE, which is no constant expression.
class UniqueFile {
  public:
    explicit UniqueFile(HANDLE handle) : handle_(handle) {}
    UniqueFile(UniqueFile&& other) noexcept
        : handle_(std::exchange(other.handle_, INVALID_HANDLE_VALUE)) {}
    UniqueFile(const UniqueFile&) = delete;
    UniqueFile& operator=(const UniqueFile&) = delete;
    ~UniqueFile() { close(); }

    HANDLE get() const { return handle_; }
    explicit operator bool() const { return handle_ != INVALID_HANDLE_VALUE; }
    void close() {
        if (handle_ != INVALID_HANDLE_VALUE)
            ::CloseHandle(std::exchange(handle_, INVALID_HANDLE_VALUE));
    }

  private:
    HANDLE handle_;
};

// A search through a folder.
class UniqueSearch {
  public:
    // Finds the first entry; `found` takes it and those of `next`.
    UniqueSearch(const Text& pattern, WIN32_FIND_DATAW& found)
        : found_(found), handle_(::FindFirstFileW(wide(pattern), &found)) {}
    UniqueSearch(const UniqueSearch&) = delete;
    UniqueSearch& operator=(const UniqueSearch&) = delete;
    ~UniqueSearch() {
        if (handle_ != INVALID_HANDLE_VALUE)
            ::FindClose(handle_);
    }

    explicit operator bool() const { return handle_ != INVALID_HANDLE_VALUE; }
    bool next() { return ::FindNextFileW(handle_, &found_) != 0; }

  private:
    WIN32_FIND_DATAW& found_;
    HANDLE handle_;
};

// Selects a GDI object into a device context and puts the former one back.
class SelectedObject {
  public:
    SelectedObject(HDC dc, HGDIOBJ object) : dc_(dc), former_(::SelectObject(dc, object)) {}
    SelectedObject(const SelectedObject&) = delete;
    SelectedObject& operator=(const SelectedObject&) = delete;
    ~SelectedObject() { ::SelectObject(dc_, former_); }

  private:
    HDC dc_;
    HGDIOBJ former_;
};

// BeginPaint and EndPaint.
class PaintScope {
  public:
    explicit PaintScope(HWND window) : window_(window), dc_(::BeginPaint(window, &paint_)) {}
    PaintScope(const PaintScope&) = delete;
    PaintScope& operator=(const PaintScope&) = delete;
    ~PaintScope() { ::EndPaint(window_, &paint_); }

    HDC dc() const { return dc_; }

  private:
    HWND window_;
    PAINTSTRUCT paint_{};
    HDC dc_;
};

// The device context of a window (or, with null, of the screen).
class WindowDc {
  public:
    explicit WindowDc(HWND window) : window_(window), dc_(::GetDC(window)) {}
    WindowDc(const WindowDc&) = delete;
    WindowDc& operator=(const WindowDc&) = delete;
    ~WindowDc() { ::ReleaseDC(window_, dc_); }

    HDC get() const { return dc_; }

  private:
    HWND window_;
    HDC dc_;
};

// Shows a pointer (the hourglass) while it lives.
class CursorScope {
  public:
    explicit CursorScope(const wchar_t* standardCursor)
        : former_(::SetCursor(::LoadCursorW(nullptr, standardCursor))) {}
    CursorScope(const CursorScope&) = delete;
    CursorScope& operator=(const CursorScope&) = delete;
    ~CursorScope() { ::SetCursor(former_); }

  private:
    HCURSOR former_;
};

}  // namespace melvorin
