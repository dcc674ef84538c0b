#include "platform/MenuBar.h"

namespace melvorin {

void MenuBar::build(std::span<const MenuEntry> entries) {
    std::array<HMENU, static_cast<std::size_t>(Command::count)> submenus{};
    bar_ = ::CreateMenu();
    submenus[static_cast<std::size_t>(Command::none)] = bar_;
    for (const MenuEntry& entry : entries) {
        if (entry.startsHidden)
            continue;
        const HMENU parent = submenus[static_cast<std::size_t>(entry.parent)];
        menus_[static_cast<std::size_t>(entry.item)] = parent;
        MENUITEMINFOW info{};
        info.cbSize = sizeof info;
        info.fMask = MIIM_ID | MIIM_FTYPE | MIIM_STRING;
        info.wID = idOf(entry.item);
        Text caption(entry.caption);
        info.dwTypeData = wideBuffer(caption);
        if (entry.caption == u"-") {
            info.fMask = MIIM_ID | MIIM_FTYPE;
            info.fType = MFT_SEPARATOR;
        } else if (entry.isSubmenu) {
            info.fMask |= MIIM_SUBMENU;
            info.hSubMenu = ::CreatePopupMenu();
            submenus[static_cast<std::size_t>(entry.item)] = info.hSubMenu;
        }
        ::InsertMenuItemW(parent, static_cast<UINT>(::GetMenuItemCount(parent)), TRUE, &info);
    }
}

void MenuBar::enable(Command item, bool enabled) {
    if (menuOf(item) != nullptr)
        ::EnableMenuItem(menuOf(item), idOf(item),
                         static_cast<UINT>(MF_BYCOMMAND | (enabled ? MF_ENABLED : MF_GRAYED)));
}

bool MenuBar::isEnabled(Command item) const {
    const UINT state = ::GetMenuState(menuOf(item), idOf(item), MF_BYCOMMAND);
    return state != static_cast<UINT>(-1) && (state & (MF_GRAYED | MF_DISABLED)) == 0;
}

void MenuBar::setCaption(Command item, TextView caption) {
    Text text(caption);
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_STRING;
    info.dwTypeData = wideBuffer(text);
    ::SetMenuItemInfoW(menuOf(item), idOf(item), FALSE, &info);
}

Text MenuBar::caption(Command item) const {
    Text buffer(256, u'\0');
    const int length = ::GetMenuStringW(menuOf(item), idOf(item), wideBuffer(buffer),
                                        static_cast<int>(buffer.size()), MF_BYCOMMAND);
    buffer.resize(static_cast<std::size_t>(length));
    return buffer;
}

}  // namespace melvorin
