// The toolbar control with pictures from a strip of 32-bit images.
#pragma once

#include "app/CommandMap.h"
#include "platform/Handles.h"

namespace melvorin {

// Resource ids of the picture strips are their picture size in pixels at this base: 16, 20, ...
inline constexpr int kToolbarStripBase = 200;

class Toolbar {
  public:
    // Creates the bar of the table's buttons as a child of `parent`; the id of a button is idOf(its
    // command).
    bool create(HWND parent);
    HWND handle() const { return handle_; }

    // Of commands that have a button; of others nothing happens.
    void enable(Command command, bool enabled);
    void setChecked(Command command, bool checked);
    bool isEnabled(Command command) const;
    // The rectangle of a button in screen coordinates, for its drop-down menu.
    RECT buttonOnScreen(Command command) const;

    // Whether tips show; while a menu is open they would cover it.
    void showTips(bool show);
    // Follows its parent's width; the height it then has, in pixels.
    int resize();
    // Draws the pictures anew on the button face, after the system colours changed.
    void reloadPictures();

  private:
    LRESULT send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0) const {
        return ::SendMessageW(handle_, message, wParam, lParam);
    }

    HWND handle_ = nullptr;  // owned by the parent window
    UniqueImageList pictures_;
    UniqueImageList disabledPictures_;
};

}  // namespace melvorin
