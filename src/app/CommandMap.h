// The commands as one table: where each stands in the menus and on the toolbar, its keys, its tip
// and what enables it. Form1 builds menus, toolbar and shortcuts from it and binds one handler to
// each command.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>

#include "app/ShellState.h"
#include "base/Keys.h"

namespace melvorin {

// Menu items under their own names, submenus and separators included, then what no menu has.
enum class Command : std::uint16_t {
    none,
    mnuFile,
    mnuFileNew,
    mnuFileOpen,
    mnuFileSave3,
    mnuFileSaveAs,
    mnuFileExport,
    mnuPrint,
    mnuPreview,
    mnuPageSetup,
    mnuSavePdf,
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
    mnuEditSpace2,
    mnuCopyChords,
    mnuPasteChords,
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
    mnuViewSpace,
    mnuStatus,
    mnuCifrar,
    mnuEditCifra,
    mnuChDigt,
    mnuTab,
    mnuDps,
    mnuTom,
    mnuDwn,
    mnuUp,
    mnuToKey,
    mnuOthers,
    mnuOthersAsk,
    mnuOthersMove,
    mnuOthersLeave,
    mnuSgn,
    mnuSus,
    mnuBem,
    mnuByKey,
    mnuSgnSpace,
    mnuRespell,
    mnuFollow,
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
    // The size of the text in view, and the way to the status line: keys alone.
    zoomIn,
    zoomOut,
    zoomReset,
    toStatus,
    // The toolbar's "Find", which does more than the menu's.
    toolbarFind,
    count,
};

// Where a key runs its command.
enum class KeyReach : std::uint8_t {
    Window,  // anywhere in the main window
    Editor,  // in the editor; other texts have the same keys for themselves
    Own,     // the control that has the focus, or Windows, answers it so by itself
};

struct CommandKey {
    KeyStroke stroke;
    KeyReach reach = KeyReach::Window;
};

enum class MenuKind : std::uint8_t { None, Submenu, Entry, Separator };

struct MenuPlace {
    MenuKind kind = MenuKind::None;
    Command parent = Command::none;  // none: on the menu bar
    TextView caption;
    bool startsHidden = false;  // what belongs to recent files, until there are some
};

enum class ToolButtonKind : std::uint8_t { Push, Check, DropDown };

struct ToolPlace {
    int number = 0;  // from 1, in toolbar order; 0: on no toolbar. A number left out is a gap.
    TextView key;
    ToolButtonKind kind = ToolButtonKind::Push;
};

// Null: always.
using EnabledWhen = bool ShellState::*;

struct CommandRow {
    Command id = Command::none;
    MenuPlace menu = {};
    // The first is the one that menu and tip show.
    std::array<CommandKey, 2> keys = {};
    ToolPlace button = {};
    EnabledWhen itemWhen = nullptr;
    EnabledWhen buttonWhen = nullptr;
    TextView name = {};  // of a command that no menu has
    // Whose name and key this one goes by: a button that stands for a menu item.
    Command standsFor = Command::none;
};

// In the order of `Command`, which is that of the menus: every submenu before its entries.
std::span<const CommandRow> commands();
// `command` is one that `commands` has.
const CommandRow& rowOf(Command command);

// The highest number of a toolbar button.
inline constexpr int kLastButton = 34;
// The command with this button; null for a gap between buttons. `number` is 1 to kLastButton.
const CommandRow* rowOfButton(int number);

// What a toolbar key runs; the comparison is exact. Nothing for an unknown key.
std::optional<Command> commandOfKey(TextView key);

// What a stroke in the editor runs, of the keys that reach there alone.
std::optional<Command> commandInText(const KeyStroke& stroke);

// The key that a command shows beside its name; no key where it has none.
KeyStroke shownKey(const CommandRow& row);
// What its menu entry shows behind `caption`: that key, unless the caption names it already.
Text menuText(const CommandRow& row, TextView caption);
// What its button says when the pointer rests on it.
Text tipOf(const CommandRow& row);

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
