// A menu bar built from the command map.
#pragma once

#include <array>
#include <span>

#include "app/CommandMap.h"
#include "platform/Win.h"

namespace melvorin {

class MenuBar {
  public:
    // Builds the menus; entries that start hidden are left out. The bar belongs to the window it
    // is given to, which destroys it.
    void build(std::span<const MenuEntry> entries);
    HMENU bar() const { return bar_; }

    void enable(Command item, bool enabled);
    bool isEnabled(Command item) const;
    void setCaption(Command item, TextView caption);
    Text caption(Command item) const;

  private:
    HMENU menuOf(Command item) const { return menus_[static_cast<std::size_t>(item)]; }

    HMENU bar_ = nullptr;
    // Per item, the menu that it stands in.
    std::array<HMENU, static_cast<std::size_t>(Command::count)> menus_{};
};

}  // namespace melvorin
