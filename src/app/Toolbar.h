// The toolbar control with pictures from a strip of 32-bit images.
#pragma once

#include <span>

#include "app/CommandMap.h"
#include "platform/Handles.h"

namespace melvorin {

// Resource ids of the picture strips are their picture size in pixels at this base: 16, 20, ...
inline constexpr int kToolbarStripBase = 200;

class Toolbar {
  public:
    // Creates the bar as a child of `parent`; a button's command id is idOf(its command).
    bool create(HWND parent, std::span<const ToolButton> buttons);
    HWND handle() const { return handle_; }

    // Buttons go by their number, 1 for the first, separators counted.
    void enable(int number, bool enabled);
    void setChecked(int number, bool checked);
    bool isEnabled(int number) const;
    // The rectangle of a button in screen coordinates, for its drop-down menu.
    RECT buttonOnScreen(int number) const;

    // Whether tips show; while a menu is open they would cover it.
    void showTips(bool show);
    // Follows its parent's width; the height it then has, in pixels.
    int resize();
    // Draws the pictures anew on the button face, after the system colours changed.
    void reloadPictures();
    // The key of a button by its command id; empty if unknown.
    TextView keyOf(UINT_PTR commandId) const;
    // The tip of a button by its command id, as TTN_GETDISPINFO asks for it; empty if unknown.
    TextView tipOf(UINT_PTR commandId) const;

  private:
    LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return ::SendMessageW(handle_, message, wParam, lParam);
    }

    HWND handle_ = nullptr;  // owned by the parent window
    std::span<const ToolButton> buttons_;
    UniqueImageList pictures_;
    UniqueImageList disabledPictures_;
};

}  // namespace melvorin
