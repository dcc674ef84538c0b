// The menu tree and the toolbar as data: names, captions, keys, order. Form1 builds its menus and
// buttons from these tables and asks them what a toolbar key runs.
#pragma once

#include <cstdint>
#include <optional>
#include <span>

#include "base/Text.h"

namespace melvorin {

// Menu items under their own names, submenus and separators included, then the toolbar's commands
// that no menu has.
enum class Command : std::uint16_t {
    none,
    mnuFile,
    mnuFileNew,
    mnuFileOpen,
    mnuFileSave3,
    mnuFileSaveAs,
    mnuRecent,
    mnuRecentFile0,
    mnuRecentFile1,
    mnuRecentFile2,
    mnuRecentFile3,
    mnuRecentFile4,
    mnuRecentFile5,
    mnuRecentFile6,
    mnuRecentFile7,
    mnuRecentFile8,
    mnuLn,
    mnuReset,
    mnuFileSpace,
    mnuFileExit,
    mnuEdit,
    mnuEditCut,
    mnuEditCopy,
    mnuEditPaste,
    mnuEditDelete,
    mnuSelectAll,
    mnuFind,
    mnuEditSpace1,
    mnuEditUndo,
    mnuEditRedo,
    mnuFormat,
    mnuFont,
    mnuPss,
    mnuBold,
    mnuItalic,
    mnuUnderline,
    mnuUnder2,
    mnuUpper,
    mnuLowe,
    Exibir,
    mnuEditDic,
    mnuFullScreen,
    mnuCifrar,
    mnuEditCifra,
    mnuChDigt,
    mnuTab,
    mnuDps,
    mnuTom,
    mnuDwn,
    mnuUp,
    mnuSgn,
    mnuSus,
    mnuBem,
    mnuExp,
    mnuEpl,
    mnuEpl2,
    ExMovie1,
    ExMovie2,
    ExMovie3,
    ExMovie4,
    About,
    mnuHlpTcs,
    mnuLn2,
    mnuFileAbout,
    // The dirty flag: an item that is never shown, whose click is the Save command.
    mnuFileSave,
    alignLeft,
    alignCenter,
    alignRight,
    // F3, which no menu shows.
    findAgain,
    // The toolbar's "Find", which does more than the menu's.
    toolbarFind,
    count,
};

struct MenuEntry {
    Command item;
    Command parent;     // none: on the menu bar
    TextView caption;   // "-" is a separator
    bool isSubmenu;     // other entries name it as parent
    bool startsHidden;  // what belongs to recent files, until there are some
};

// In menu order, every submenu before its entries.
std::span<const MenuEntry> menuEntries();

enum class ToolButtonKind { Push, Check, DropDown, Separator };

struct ToolButton {
    TextView key;  // empty for a separator
    Command runs;
    TextView tip;
    ToolButtonKind kind;
};

// In toolbar order; a button's number is its index + 1 (Undo is 12, the key buttons 28 and 29).
std::span<const ToolButton> toolButtons();

// Numbers of the buttons that the shell's rules name.
inline constexpr int kUndoButton = 12;
inline constexpr int kRedoButton = 13;
inline constexpr int kBoldButton = 15;
inline constexpr int kItalicButton = 16;
inline constexpr int kUnderlineButton = 17;
inline constexpr int kLeftButton = 19;
inline constexpr int kCenterButton = 20;
inline constexpr int kRightButton = 21;
inline constexpr int kKeyDownButton = 28;
inline constexpr int kKeyUpButton = 29;

// What a toolbar key runs; the comparison is exact. Nothing for an unknown key.
std::optional<Command> commandOfKey(TextView key);

// The keyboard shortcuts that hold wherever the focus is in the main window; the editor has more of
// its own (Ctrl+A, C, F, V, X).
struct Shortcut {
    std::uint16_t key;  // virtual-key code
    bool control;
    Command runs;
};
std::span<const Shortcut> shortcuts();

// Numbers under which windows and accelerators know the commands.
inline constexpr std::uint16_t kFirstCommandId = 1000;
constexpr std::uint16_t idOf(Command command) {
    return static_cast<std::uint16_t>(kFirstCommandId + static_cast<std::uint16_t>(command));
}
// Nothing for an id that is none of ours.
constexpr std::optional<Command> commandOfId(std::uint32_t id) {
    if (id <= kFirstCommandId || id >= idOf(Command::count))
        return std::nullopt;
    return static_cast<Command>(id - kFirstCommandId);
}

}  // namespace melvorin
