#include "app/MenuBar.h"

namespace melvorin {

void MenuBar::build(std::span<const CommandRow> rows) {
    rows_ = rows;
    bar_ = ::CreateMenu();
    for (const CommandRow& row : rows) {
        if (row.menu.kind == MenuKind::None)
            continue;
        const HMENU parent = row.menu.parent == Command::none ? bar_ : submenu(row.menu.parent);
        menus_[static_cast<std::size_t>(row.id)] = parent;
        if (!row.menu.startsHidden)
            insert(row, static_cast<UINT>(::GetMenuItemCount(parent)));
    }
}

void MenuBar::insert(const CommandRow& row, UINT position) {
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_ID | MIIM_FTYPE | MIIM_STRING;
    info.wID = idOf(row.id);
    Text text = menuText(row, row.menu.caption);
    info.dwTypeData = wideBuffer(text);
    if (row.menu.kind == MenuKind::Separator) {
        info.fMask = MIIM_ID | MIIM_FTYPE;
        info.fType = MFT_SEPARATOR;
    } else if (row.menu.kind == MenuKind::Submenu) {
        info.fMask |= MIIM_SUBMENU;
        info.hSubMenu = ::CreatePopupMenu();
    }
    ::InsertMenuItemW(menuOf(row.id), position, TRUE, &info);
}

HMENU MenuBar::submenu(Command item) const {
    MENUITEMINFOW info{};
    info.cbSize = sizeof info;
    info.fMask = MIIM_SUBMENU;
    ::GetMenuItemInfoW(menuOf(item), idOf(item), FALSE, &info);
    return info.hSubMenu;
}

bool MenuBar::isVisible(Command item) const {
    return menuOf(item) != nullptr &&
           ::GetMenuState(menuOf(item), idOf(item), MF_BYCOMMAND) != static_cast<UINT>(-1);
}

void MenuBar::show(Command item, bool visible) {
    if (visible == isVisible(item))
        return;
    if (!visible) {
        ::RemoveMenu(menuOf(item), idOf(item), MF_BYCOMMAND);
        return;
    }
    // Behind the entries before it that are there.
    UINT position = 0;
    for (const CommandRow& row : rows_) {
        if (row.id == item) {
            insert(row, position);
            return;
        }
        if (menuOf(row.id) == menuOf(item) && isVisible(row.id))
            ++position;
    }
}

void MenuBar::enable(Command item, bool enabled) {
    if (menuOf(item) != nullptr)
        ::EnableMenuItem(menuOf(item), idOf(item),
                         static_cast<UINT>(MF_BYCOMMAND | (enabled ? MF_ENABLED : MF_GRAYED)));
}

bool MenuBar::isEnabled(Command item) const {
    if (menuOf(item) == nullptr)
        return true;
    const UINT state = ::GetMenuState(menuOf(item), idOf(item), MF_BYCOMMAND);
    return state != static_cast<UINT>(-1) && (state & (MF_GRAYED | MF_DISABLED)) == 0;
}

void MenuBar::check(Command item, bool checked) {
    ::CheckMenuItem(menuOf(item), idOf(item),
                    MF_BYCOMMAND | static_cast<UINT>(checked ? MF_CHECKED : MF_UNCHECKED));
}

bool MenuBar::isChecked(Command item) const {
    return (::GetMenuState(menuOf(item), idOf(item), MF_BYCOMMAND) & MF_CHECKED) != 0;
}

void MenuBar::setCaption(Command item, TextView caption) {
    Text text = menuText(rowOf(item), caption);
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
    return buffer.substr(0, buffer.find(u'\t'));
}

}  // namespace melvorin
