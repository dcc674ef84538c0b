// A menu bar built from the command map.
#pragma once

#include <array>
#include <span>

#include "app/CommandMap.h"
#include "platform/Win.h"

namespace melvorin {

class MenuBar {
  public:
    // Builds the menus; entries that start hidden are left out until they are shown. The bar
    // belongs to the window it is given to, which destroys it. `rows` outlive the object.
    void build(std::span<const CommandRow> rows);
    HMENU bar() const { return bar_; }
    // The menu that an entry opens; null if it opens none.
    HMENU submenu(Command item) const;

    void show(Command item, bool visible);
    bool isVisible(Command item) const;

    void enable(Command item, bool enabled);
    // True also for a command that no menu has.
    bool isEnabled(Command item) const;
    // A check mark before the caption.
    void check(Command item, bool checked);
    bool isChecked(Command item) const;
    // Captions are without the column of keys, which is the table's.
    void setCaption(Command item, TextView caption);
    Text caption(Command item) const;

  private:
    void insert(const CommandRow& row, UINT position);
    HMENU menuOf(Command item) const { return menus_[static_cast<std::size_t>(item)]; }

    std::span<const CommandRow> rows_;
    HMENU bar_ = nullptr;
    // Per item, the menu that it stands in.
    std::array<HMENU, static_cast<std::size_t>(Command::count)> menus_{};
};

}  // namespace melvorin
